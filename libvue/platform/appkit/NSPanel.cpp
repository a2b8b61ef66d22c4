#include <libvue/platform/appkit/NSPanel.h>

#include <libvue/platform/appkit/NSApplication.h>

namespace libvue {

void NSPanel::describe(ClassDescription<NSPanel, NSWindow>&) {}

NSPanel::NSPanel() : NSPanel(NSMakeRect(100, 100, 100, 100), NSTitledWindowMask) {}

NSPanel::NSPanel(const NSRect& contentRect, NSUInteger styleMask, NSBackingStoreType backing, BOOL defer)
    : NSWindow(contentRect, styleMask, backing, defer) {}

NSPanel::~NSPanel() = default;

void NSPanel::setFloatingPanel(BOOL flag) {
    floating_ = flag;
    setLevel(flag ? NSFloatingWindowLevel : NSNormalWindowLevel);
}

void NSPanel::setBecomesKeyOnlyIfNeeded(BOOL flag) {
    if (keyOnlyIfNeeded_ == flag) return;
    keyOnlyIfNeeded_ = flag;
    updateNativeSpec();
}

void NSPanel::cancelOperation(NSObject* sender) {
    if (!performCancelButton() && styleMask() & NSClosableWindowMask) performClose(sender);
}

int NSPanel::nativeKind_() const {
    if (NSApp()->modalWindow() == this) return NSDialogNativeWindow;
    // Without a title bar it is decoration or balloon: the desktop lists it nowhere.
    return NSUtilityNativeWindow;
}

BOOL NSPanel::acceptsNativeFocus_() const { return canBecomeKeyWindow() && !keyOnlyIfNeeded_; }

} // namespace libvue
