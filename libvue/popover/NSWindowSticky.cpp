#include <libvue/popover/NSWindowSticky.h>

#include <libvue/platform/appkit/CGSWindowTags.h>
#include <libvue/platform/appkit/NSWindow.h>

namespace libvue {

namespace {

constexpr int kLargeurMarques = 32; ///< bits that are read and written

} // namespace

void setSticky(NSWindow* window, BOOL flag) {
    if (!window) return;
    const CGSConnectionID connexion = _CGSDefaultConnection();
    const NSInteger numero = window->windowNumber();
    CGSWindowTags marques{};
    if (CGSGetWindowTags(connexion, numero, marques.data(), kLargeurMarques) != kCGErrorSuccess) return;
    if (flag)
        marques[0] |= kCGSTagSticky;
    else
        marques[0] &= ~kCGSTagSticky;
    CGSSetWindowTags(connexion, numero, marques.data(), kLargeurMarques);
}

} // namespace libvue
