#pragma once

#include <libvue/panels/KCPanneauxGlissants.h>
#include <libvue/platform/appkit/NSView.h>

namespace libvue {

/// A panel that passes on to the panels within it that it is on display.
class LIBVUE_API KCPanneauGlissant : public NSView, public KCPanneauxGlissants {
public:
    static void describe(ClassDescription<KCPanneauGlissant, NSView>& c);
    using NSView::NSView;
    ~KCPanneauGlissant() override;

    /// To the direct subviews that conform, in their order: a plain view in between keeps those below it from hearing.
    void panneauEstAffichay() override;
};

} // namespace libvue
