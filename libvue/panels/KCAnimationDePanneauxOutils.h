#pragma once

#include <libvue/panels/Forward.h>
#include <libvue/panels/KCProtocoleVide.h>
#include <libvue/platform/appkit/NSAnimation.h>
#include <libvue/platform/foundation/NSGeometry.h>

namespace libvue {

/// What the slides share: the animation itself, and what is left at its end. An object is for one swap.
class LIBVUE_API KCAnimationDePanneauxOutils : public NSObject, public KCProtocoleVide {
public:
    static void describe(ClassDescription<KCAnimationDePanneauxOutils>& c);
    KCAnimationDePanneauxOutils();
    ~KCAnimationDePanneauxOutils() override;

    /// Runs the entry of an NSViewAnimation for a quarter of a second, easing in and out, and comes back at its end. No
    /// event is delivered meanwhile. Where the desktop asks for less motion, the view is at its end at once; all the
    /// rest is the same.
    ///
    /// The panels are drawn once, into pictures, which are moved as long as nothing in them changes.
    void animer_avecNouvelleVue_avecVueParent(NSDictionary* entree, NSView* nouvelle,
                                              KCConteneurDePanneauxGlissants* parent);
    /// Leaves the new view alone in the container, as large as it, and tells it so. Nothing where the container is gone
    /// by then, or the view.
    virtual void animationDidEnd(NSAnimation* animation);

private:
    Weak<NSView> maNouvelleVue; ///< for the length of one animation, as the next
    Weak<KCConteneurDePanneauxGlissants> maVueParent;
};

} // namespace libvue
