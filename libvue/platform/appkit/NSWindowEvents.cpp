#include <limits>

#include <libvue/platform/appkit/NSApplicationNative.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSWindowPrivate.h>
#include <libvue/platform/appkit/ScrollKeys.h>
#include <libvue/platform/foundation/NSRunLoop.h>

namespace libvue {

NSWindow::Tracking& NSWindow::tracking() {
    if (!tracking_) tracking_ = std::make_unique<Tracking>();
    return *tracking_;
}

namespace {

/// Which of the presses that a window follows: left, right, others.
std::size_t pressOf(const NSEvent& e) { return static_cast<std::size_t>(NSEvent::buttonOfType_(e.type())); }

using Handler = void (NSResponder::*)(NSEvent*);
/// In the order of the presses.
constexpr Handler downs[] = {&NSResponder::mouseDown, &NSResponder::rightMouseDown, &NSResponder::otherMouseDown};
constexpr Handler drags[] = {&NSResponder::mouseDragged, &NSResponder::rightMouseDragged,
                             &NSResponder::otherMouseDragged};
constexpr Handler ups[] = {&NSResponder::mouseUp, &NSResponder::rightMouseUp, &NSResponder::otherMouseUp};

} // namespace

void NSWindow::sendEvent(NSEvent* e) {
    if (!e) return;
    const Ref<NSWindow> self(this);
    const Ref<NSEvent> kept(e);
    switch (e->type()) {
    case NSLeftMouseDown:
    case NSRightMouseDown:
    case NSOtherMouseDown:
        sendMouseDown(e);
        break;
    case NSLeftMouseDragged:
    case NSRightMouseDragged:
    case NSOtherMouseDragged:
        sendMouseDragged(e);
        break;
    case NSLeftMouseUp:
    case NSRightMouseUp:
    case NSOtherMouseUp:
        sendMouseUp(e);
        break;
    case NSMouseMoved:
        updateMouseTracking_(e);
        if (acceptsMouseMoved_)
            if (const Ref<NSResponder> first = firstResponder()) first->mouseMoved(e);
        break;
    case NSMouseEntered:
    case NSMouseExited:
        updateMouseTracking_(e);
        break;
    case NSScrollWheel:
        hideToolTip();
        if (const Ref<NSView> hit = root_->hitTest(e->locationInWindow())) hit->scrollWheel(e);
        // What scrolled stands under the pointer now.
        updateMouseTracking_(e);
        break;
    case NSKeyDown:
        hideToolTip();
        if (const Ref<NSResponder> first = firstResponder()) first->keyDown(e);
        break;
    case NSKeyUp:
        if (const Ref<NSResponder> first = firstResponder()) first->keyUp(e);
        break;
    case NSFlagsChanged:
        if (const Ref<NSResponder> first = firstResponder()) first->flagsChanged(e);
        break;
    case NSTextInput:
        if (const Ref<NSResponder> first = firstResponder()) first->textInput(e);
        break;
    default:
        break;
    }
}

void NSWindow::update() { postDelegateNotification(NSWindowDidUpdateNotification, op::windowDidUpdate); }

// The mouse.

void NSWindow::sendMouseDown(NSEvent* e) {
    hideToolTip();
    Tracking& t = tracking();
    const std::size_t button = pressOf(*e);
    t.pressed[button] = nullptr;
    t.released = {};
    const Ref<NSView> hit(root_->hitTest(e->locationInWindow()));

    const bool wasKey = isKeyWindow();
    bool becomesKey = false, neededKey = false;
    if (e->type() == NSLeftMouseDown && canBecomeKeyWindow() && !wasKey) {
        // A panel that takes the focus only where that is needed leaves it for a view that types.
        neededKey = !acceptsNativeFocus_();
        becomesKey = !neededKey || (hit && hit->needsPanelToBecomeKey());
        if (becomesKey) {
            if (!(e->modifierFlags() & NSCommandKeyMask)) orderFront(nullptr);
            makeKeyWindow();
        }
    }
    if (!hit || hit->window() != this) return;
    // The click that brings a window forward is for the view only where the view says so; in a panel that takes the
    // keys because that very view needs them, it was meant for it.
    if (becomesKey && !neededKey && !hit->acceptsFirstMouse(e)) return;

    if (e->type() == NSLeftMouseDown && firstResponder() != hit && hit->acceptsFirstResponder() &&
        (isKeyWindow() || !canBecomeKeyWindow())) {
        const Ref<NSResponder> former(firstResponder());
        // An editor that keeps the focus keeps the click away as well.
        if (!makeFirstResponder(hit) && former && former.get() != this && firstResponder() == former) return;
        if (hit->window() != this) return;
    }
    t.pressed[button] = hit;
    if (button == 0) {
        t.dragging = movable_ && movableByBackground_ && !sheetParent_ && hit->mouseDownCanMoveWindow();
        t.dragPoint = e->fields().screenLocation;
        t.dragged = false;
    }
    (hit.get()->*downs[button])(e);
}

void NSWindow::sendMouseDragged(NSEvent* e) {
    const std::size_t button = pressOf(*e);
    if (const Ref<NSView> view = tracking().pressed[button].ref()) (view.get()->*drags[button])(e);
    if (button == 0 && tracking().dragging) followDrag(e);
    updateMouseTracking_(e);
}

void NSWindow::sendMouseUp(NSEvent* e) {
    const std::size_t button = pressOf(*e);
    Tracking& t = tracking();
    if (button == 0) t.dragging = false;
    Ref<NSView> view = std::exchange(t.pressed[button], nullptr).ref();
    // A release that is sent once more goes where the first one went.
    if (view)
        t.released = {view.get(), e->eventNumber(), button};
    else if (t.released.number == e->eventNumber() && t.released.button == button)
        view = t.released.view.ref();
    if (view) (view.get()->*ups[button])(e);
    updateMouseTracking_(e);
}

void NSWindow::followDrag(NSEvent* e) {
    if (!visible_ || !native_) return;
    Tracking& t = tracking();
    auto& server = windowServer();
    if (isTitled() && server.hasDisplay()) {
        // The window manager moves it from here on, and keeps the rest of the press to itself.
        t.dragging = false;
        t.pressed[0] = nullptr;
        auto& n = *NSApp()->native_;
        n.buttons = 0;
        n.grab = nullptr;
        server.startMove(native_);
        return;
    }
    const NSPoint p = e->fields().screenLocation;
    const NSPoint delta{p.x - t.dragPoint.x, p.y - t.dragPoint.y};
    t.dragPoint = p;
    if (delta == NSPoint{0, 0}) return;
    if (!std::exchange(t.dragged, true)) postDelegateNotification(NSWindowWillMoveNotification, op::windowWillMove);
    if (visible_) setFrameOrigin({frame_.origin.x + delta.x, frame_.origin.y + delta.y});
}

// Keys that nobody below wanted.

void NSWindow::keyDown(NSEvent* e) {
    const Ref<NSWindow> self(this);
    const NSString* keys = e->charactersIgnoringModifiers();
    const unichar c = keys && keys->length() > 0 ? keys->characterAtIndex(0) : unichar{0};
    const NSUInteger modifiers =
        e->modifierFlags() & (NSControlKeyMask | NSAlternateKeyMask | NSCommandKeyMask | NSShiftKeyMask);
    switch (c) {
    case NSTabCharacter:
    case NSBackTabCharacter:
        if (modifiers & ~NSUInteger{NSShiftKeyMask | NSControlKeyMask}) break;
        if (c == NSBackTabCharacter || modifiers & NSShiftKeyMask)
            selectPreviousKeyView(this);
        else
            selectNextKeyView(this);
        return;
    case NSCarriageReturnCharacter:
    case NSEnterCharacter:
        if (modifiers) break;
        if (performDefaultButton() || performKeyEquivalent(e)) return;
        break;
    case NSEscapeCharacter:
        if (modifiers) break;
        cancelOperation(this);
        return;
    default:
        if (performKeyEquivalent(e)) return;
        if (const ScrollStep step = scrollStepForEvent(*e); step != ScrollStep::none) {
            const NSPoint pointer = convertScreenToBase(NSEvent::mouseLocation());
            if (const Ref<NSScrollView> scrolled = scrollViewForKeys(root_, pointer, step)) {
                (void)scrolled->perform_(step);
                return;
            }
        }
        break;
    }
    NSResponder::keyDown(e);
}

BOOL NSWindow::performKeyEquivalent(NSEvent* e) {
    const Ref<NSWindow> self(this);
    return root_->performKeyEquivalent(e);
}

BOOL NSWindow::performCancelButton() {
    // The button whose key is Escape: an editor that gave the key up sends the operation alone.
    const Ref<NSEvent> e(currentEvent());
    if (!e || e->type() != NSKeyDown || !e->charactersIgnoringModifiers()) return NO;
    NSString* keys = e->charactersIgnoringModifiers();
    return keys->length() == 1 && keys->characterAtIndex(0) == NSEscapeCharacter && performKeyEquivalent(e);
}

void NSWindow::cancelOperation(NSObject*) { (void)performCancelButton(); }

void NSWindow::setCaretRect_(BOOL on, const NSRect& rectInWindow) {
    if (native_) windowServer().setTextInput(native_, on, rectInWindow);
}

// Its part of the application's queue.

void NSWindow::postEvent_atStart(NSEvent* e, BOOL atStart) { NSApp()->postEvent_atStart(e, atStart); }

Ref<NSEvent> NSWindow::nextEventMatchingMask(NSEventMask mask) {
    return NSApp()->nextEventMatchingMask_untilDate_inMode_dequeue(
        mask, std::numeric_limits<NSTimeInterval>::infinity(), NSEventTrackingRunLoopMode, YES);
}

void NSWindow::discardEventsMatchingMask_beforeEvent(NSEventMask mask, NSEvent* last) {
    // Also from the end of a window that outlives its application.
    if (NSApplication* app = NSApplication::sharedIfAny_())
        app->discardEventsOf_matchingMask_beforeEvent(number_, mask, last);
}

NSEvent* NSWindow::currentEvent() const { return NSApp()->currentEvent(); }

} // namespace libvue
