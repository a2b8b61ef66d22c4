#include <libvue/layout/KCFlippedView.h>

namespace libvue {

static const ClassRegistration<KCFlippedView> enregistrement;

} // namespace libvue
