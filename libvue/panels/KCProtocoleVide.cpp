#include <libvue/panels/KCProtocoleVide.h>

namespace libvue {

KCProtocoleVide::~KCProtocoleVide() = default;

} // namespace libvue
