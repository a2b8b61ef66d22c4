#pragma once

#include <libvue/panels/Forward.h>
#include <libvue/platform/foundation/Export.h>

namespace libvue {

/// How one panel takes the place of another. Each class that conforms to it also has a class-level animationPanneau,
/// which answers a new animation, as an operation of that name too.
class LIBVUE_API KCAnimationDePanneauxGlissants {
public:
    virtual ~KCAnimationDePanneauxGlissants();
    /// Comes back when `nouvelle` is the container's only subview, and has been told that it is on display. `ancienne`
    /// may be null.
    virtual void animerPourRemplacerVue_avecVue_dansLaVueParent(NSView* ancienne, NSView* nouvelle,
                                                                KCConteneurDePanneauxGlissants* parent) = 0;
};

} // namespace libvue
