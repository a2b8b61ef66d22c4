#include <libvue/platform/appkit/NSWindowShadow.h>

#include <libvue/platform/appkit/NSWindowPrivate.h>

namespace libvue {

BOOL drawsShadowOf(const NSWindow* window) {
    return window && window->hasShadow() && !window->isOpaque() && windowServer().hasCompositor();
}

} // namespace libvue
