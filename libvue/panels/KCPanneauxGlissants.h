#pragma once

#include <libvue/panels/Forward.h>
#include <libvue/platform/foundation/Export.h>

namespace libvue {

/// What a panel of a KCConteneurDePanneauxGlissants conforms to.
class LIBVUE_API KCPanneauxGlissants {
public:
    virtual ~KCPanneauxGlissants();
    /// It is on display now: it has fully arrived, or was there already and is shown again.
    virtual void panneauEstAffichay() = 0;
};

} // namespace libvue
