#include <libvue/platform/appkit/ScrollKeys.h>

#include <iterator>

#include <libvue/platform/appkit/KeyBindings.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSScrollView.h>

namespace libvue {

ScrollStep scrollStepForCommand(SEL command) {
    struct Row {
        SEL command;
        ScrollStep step;
    };
    static const Row rows[] = {
        {sel("moveUp:"), ScrollStep::lineUp},
        {sel("moveDown:"), ScrollStep::lineDown},
        {sel("moveLeft:"), ScrollStep::lineLeft},
        {sel("moveRight:"), ScrollStep::lineRight},
        {sel("pageUp:"), ScrollStep::pageUp},
        {sel("pageDown:"), ScrollStep::pageDown},
        {sel("scrollPageUp:"), ScrollStep::pageUp},
        {sel("scrollPageDown:"), ScrollStep::pageDown},
        {sel("moveToBeginningOfLine:"), ScrollStep::beginning},
        {sel("moveToEndOfLine:"), ScrollStep::end},
        {sel("moveToBeginningOfDocument:"), ScrollStep::beginning},
        {sel("moveToEndOfDocument:"), ScrollStep::end},
    };
    for (const Row& row : rows)
        if (row.command == command) return row.step;
    return ScrollStep::none;
}

ScrollStep scrollStepForEvent(const NSEvent& e) {
    const NSString* keys = e.charactersIgnoringModifiers();
    if (keys && keys->length() == 1 && keys->characterAtIndex(0) == u' ') {
        const NSUInteger flags = e.modifierFlags();
        if (flags & (NSControlKeyMask | NSAlternateKeyMask | NSCommandKeyMask)) return ScrollStep::none;
        return flags & NSShiftKeyMask ? ScrollStep::pageUp : ScrollStep::pageDown;
    }
    return scrollStepForCommand(KeyBindings::commandForEvent(e));
}

namespace {

void findLargest(NSView* v, ScrollStep step, NSScrollView*& best, CGFloat& most) {
    if (v->isHidden()) return;
    if (auto* s = as<NSScrollView>(v); s && s->canScroll_(step)) {
        const NSSize seen = s->visibleRect().size;
        if (seen.width * seen.height > most) {
            most = seen.width * seen.height;
            best = s;
        }
    }
    for (const auto& child : v->subviews())
        findLargest(child, step, best, most);
}

} // namespace

NSScrollView* scrollViewForKeys(NSView* root, NSPoint at, ScrollStep step) {
    for (NSView* v = root->hitTest(at); v; v = v->superview())
        if (auto* s = as<NSScrollView>(v); s && s->canScroll_(step)) return s;
    NSScrollView* best = nullptr;
    CGFloat most = 0;
    findLargest(root, step, best, most);
    return best;
}

} // namespace libvue
