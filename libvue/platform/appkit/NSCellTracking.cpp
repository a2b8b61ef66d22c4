#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSCell.h>
#include <libvue/platform/appkit/NSCellHitTest.h>
#include <libvue/platform/appkit/NSControl.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSText.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/ScopeExit.h>

namespace libvue {

namespace {

void sendActionOf(NSCell* cell, NSView* view) {
    const Ref<NSCell> kept(cell);
    const Ref<NSView> sender(view);
    // A control hears of it even without an action: a radio button has its group to settle.
    if (auto* control = as<NSControl>(view))
        control->sendAction_to(cell->action(), cell->target());
    else if (cell->action())
        NSApp()->sendAction_to_from(cell->action(), cell->target(), cell);
}

} // namespace

BOOL NSCell::startTrackingAt_inView(NSPoint, NSView*) { return YES; }
BOOL NSCell::continueTracking_at_inView(NSPoint, NSPoint, NSView*) { return continuous_; }
void NSCell::stopTracking_at_inView_mouseIsUp(NSPoint, NSPoint, NSView*, BOOL) {}

NSUInteger NSCell::hitTestForEvent_inRect_ofView(NSEvent*, const NSRect&, NSView*) { return NSCellHitContentArea; }

BOOL NSCell::trackMouse_inRect_ofView_untilMouseUp(NSEvent* e, const NSRect& frame, NSView* view, BOOL untilMouseUp) {
    const Ref<NSCell> self(this);
    const Ref<NSView> kept(view);
    NSPoint last = view->convertPoint_fromView(e->locationInWindow(), nullptr);
    if (!startTrackingAt_inView(last, view)) return NO;
    if (continuous_) sendActionOf(this, view);
    for (;;) {
        const Ref<NSEvent> next = NSApp()->nextDragOrRelease_();
        // The application is ending, or the view left its window while it was tracked.
        if (!next || !view->window()) {
            stopTracking_at_inView_mouseIsUp(last, last, view, NO);
            return NO;
        }
        const NSPoint p = view->convertPoint_fromView(next->locationInWindow(), nullptr);
        const bool inside = NSMouseInRect(p, frame, view->isFlipped());
        if (next->type() == NSLeftMouseUp) {
            stopTracking_at_inView_mouseIsUp(last, p, view, YES);
            if (inside || untilMouseUp) {
                if (inside) setNextState();
                if (inside || continuous_) sendActionOf(this, view);
            }
            return inside;
        }
        if (!inside && !untilMouseUp) {
            stopTracking_at_inView_mouseIsUp(last, p, view, NO);
            return NO;
        }
        if (continueTracking_at_inView(last, p, view) && continuous_) sendActionOf(this, view);
        last = p;
    }
}

void NSCell::performClick(NSObject*) {
    if (!enabled_) return;
    const Ref<NSCell> self(this);
    const Ref<NSView> view = controlView_.ref();
    setHighlighted(YES);
    const ScopeExit released([this] { setHighlighted(NO); });
    if (view) view->display();
    setNextState();
    sendActionOf(this, view);
}

void NSCell::resetCursorRect_inView(const NSRect&, NSView*) {}

// Editing.

void NSCell::editWithFrame_inView_editor_delegate_event(const NSRect& frame, NSView* view, NSText* editor,
                                                        NSObject* delegate, NSEvent* e) {
    selectWithFrame_inView_editor_delegate_start_length(frame, view, editor, delegate, 0, 0);
    if (e && editor && editor->window()) editor->mouseDown(e);
}

void NSCell::selectWithFrame_inView_editor_delegate_start_length(const NSRect& frame, NSView* view, NSText* editor,
                                                                 NSObject* delegate, NSUInteger start,
                                                                 NSUInteger length) {
    if (!view || !editor || !selectable_) return;
    NSText* e = setUpFieldEditorAttributes(editor);
    e->setFrame(titleRectForBounds(frame));
    e->setString(stringValue());
    e->setDelegate(delegate);
    view->addSubview(e);
    if (view->window()) view->window()->makeFirstResponder(e);
    e->setSelectedRange({start, length});
}

NSText* NSCell::setUpFieldEditorAttributes(NSText* editor) {
    editor->setFont(font_ ? font_.get() : NSFont::systemFontOfSize(NSFont::systemFontSizeForControlSize(size_)).get());
    editor->setTextColor(effectiveTextColor());
    editor->setEditable(editable_ && enabled_);
    editor->setSelectable(selectable_);
    return editor;
}

void NSCell::endEditing(NSText* editor) {
    if (!editor) return;
    const Ref<NSText> kept(editor);
    editor->setDelegate(nullptr);
    editor->removeFromSuperview();
    redisplay();
}

} // namespace libvue
