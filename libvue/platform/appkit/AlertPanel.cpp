#include <libvue/platform/appkit/AlertPanel.h>

#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/backend/Backend.h>

namespace libvue {

AlertPanel::AlertPanel() : NSPanel(NSMakeRect(0, 0, 420, 140), NSTitledWindowMask) { setExcludedFromWindowsMenu(YES); }

void AlertPanel::cancelOperation(NSObject*) {
    const Ref<AlertPanel> self(this);
    if (performCancelButton()) return;
    const auto way = leave;
    if (!way || !way()) backend::Backend::current().windows->beep();
}

void AlertPanel::performClose(NSObject*) {
    // The desktop may offer to close any window.
    const Ref<AlertPanel> self(this);
    const auto way = leave;
    if (sheetInFront_() || !way || !way()) backend::Backend::current().windows->beep();
}

void AlertPanel::keyDown(NSEvent* e) {
    if (!scrollByKey(scrolled, e)) NSPanel::keyDown(e);
}

BOOL scrollByKey(NSScrollView* scrolled, NSEvent* e) {
    const NSString* keys = e->charactersIgnoringModifiers();
    if (!scrolled || !keys || keys->length() != 1) return NO;
    const Ref<NSScrollView> kept(scrolled);
    switch (keys->characterAtIndex(0)) {
    case NSPageUpFunctionKey:
        scrolled->pageUp(nullptr);
        return YES;
    case NSPageDownFunctionKey:
        scrolled->pageDown(nullptr);
        return YES;
    case NSUpArrowFunctionKey:
        scrolled->scrollLineUp(nullptr);
        return YES;
    case NSDownArrowFunctionKey:
        scrolled->scrollLineDown(nullptr);
        return YES;
    case NSHomeFunctionKey:
        scrolled->scrollToBeginningOfDocument(nullptr);
        return YES;
    case NSEndFunctionKey:
        scrolled->scrollToEndOfDocument(nullptr);
        return YES;
    default:
        return NO;
    }
}

} // namespace libvue
