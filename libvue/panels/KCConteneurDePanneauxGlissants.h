#pragma once

#include <libvue/panels/Forward.h>
#include <libvue/platform/appkit/NSView.h>

namespace libvue {

/// Shows one panel at a time. A panel conforms to KCPanneauxGlissants as a rule; one that does not is shown all the
/// same.
class LIBVUE_API KCConteneurDePanneauxGlissants : public NSView {
public:
    static void describe(ClassDescription<KCConteneurDePanneauxGlissants, NSView>& c);
    using NSView::NSView;
    ~KCConteneurDePanneauxGlissants() override;

    /// The panel on display; during a slide, the one that arrives. Null before the first.
    [[nodiscard]] NSView* panneauActuel() const noexcept { return monPanneauActuel; }
    /// Kept; changes nothing of what is seen.
    void setPanneauActuel(NSView* panneau);

    /// Comes back when the panel has arrived and been told so. Without an animation it takes the place of all subviews
    /// at once. The panel on display is only told again. Null is ignored.
    void afficherPanneau_avecAnimation(NSView* panneau, KCAnimationDePanneauxGlissants* animation);

private:
    Ref<NSView> monPanneauActuel;
};

} // namespace libvue
