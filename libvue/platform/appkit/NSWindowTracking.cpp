#include <algorithm>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSCursor.h>
#include <libvue/platform/appkit/NSScreen.h>
#include <libvue/platform/appkit/NSWindowPrivate.h>

namespace libvue {

namespace {

/// How long the pointer rests before a tool tip shows, and how long that stays, in seconds.
constexpr NSTimeInterval toolTipDelay = 0.8, toolTipStay = 10;

namespace told {
constexpr Operation<void(NSEvent*)> mouseEntered{"mouseEntered:"};
constexpr Operation<void(NSEvent*)> mouseExited{"mouseExited:"};
constexpr Operation<void(NSEvent*)> mouseMoved{"mouseMoved:"};
constexpr Operation<void(NSEvent*)> cursorUpdate{"cursorUpdate:"};
} // namespace told

bool isActive(const NSTrackingArea& area, const NSView& view) {
    const NSUInteger o = area.options();
    constexpr NSUInteger any = NSTrackingActiveAlways | NSTrackingActiveInActiveApp | NSTrackingActiveInKeyWindow |
                               NSTrackingActiveWhenFirstResponder;
    if (o & NSTrackingActiveAlways || !(o & any)) return true;
    const NSWindow* w = view.window();
    return (o & NSTrackingActiveInActiveApp && NSApp()->isActive()) ||
           (o & NSTrackingActiveInKeyWindow && w->isKeyWindow()) ||
           (o & NSTrackingActiveWhenFirstResponder && w->isKeyWindow() && w->firstResponder() == &view);
}

bool contains(const NSTrackingArea& area, const NSView& view, NSPoint inView) {
    if (!view.mouse_inRect(inView, view.visibleRect())) return false;
    return area.options() & NSTrackingInVisibleRect || view.mouse_inRect(inView, area.rect());
}

bool installed(const NSTrackingArea* area, const NSView* view) {
    const NSView::Extras* extras = view ? view->extrasIfAny_() : nullptr;
    return extras && std::any_of(extras->trackingAreas.begin(), extras->trackingAreas.end(),
                                 [&](const Ref<NSObject>& o) { return o.get() == area; });
}

Ref<NSEvent> trackingEvent(NSEventType type, const NSEvent& cause, NSTrackingArea* area) {
    NSEvent::Fields f = cause.fields();
    f.type = type;
    f.trackingArea = area;
    f.clickCount = 0;
    f.pressure = 0;
    return make<NSEvent>(std::move(f));
}

void tell(NSTrackingArea& area, const Operation<void(NSEvent*)>& operation, NSEvent* e) {
    if (const auto hears = operation.of(area.owner())) hears(e);
}

} // namespace

std::vector<NSWindow::Inside> NSWindow::areasAt(NSPoint p) {
    std::vector<Inside> found;
    const auto gather = [&](const auto& down, NSView* view, NSPoint inSuper, const NSRect& seenInBase) -> void {
        if (view->isHidden() || !NSPointInRect(inSuper, view->frame())) return;
        const Ref<NSView> v(view);
        const NSRect inBase = v->convertRect_toView(v->bounds(), nullptr);
        const NSRect seen = NSIntersectionRect(seenInBase, inBase);
        NSView::Extras& extras = v->extras();
        const NSView::Extras::Placed place{number_, v->bounds(), inBase, seen};
        if (std::exchange(extras.trackedAt, place) != place) v->updateTrackingAreas();
        // What was asked may have taken the view away.
        if (v->window() != this) return;
        const NSPoint own = v->convertPoint_fromView(p, nullptr);
        for (const auto& o : extras.trackingAreas) {
            auto* area = static_cast<NSTrackingArea*>(o.get());
            if (contains(*area, *v, own) && isActive(*area, *v)) found.push_back({Ref<NSTrackingArea>(area), v});
        }
        for (std::size_t i = 0; i < v->subviews().size(); ++i)
            down(down, v->subviews()[i], own, seen);
    };
    gather(gather, root_, p, root_->bounds());
    return found;
}

void NSWindow::updateMouseTracking_(NSEvent* e) {
    const Ref<NSWindow> self(this);
    Tracking& t = tracking();
    const NSPoint p = e->locationInWindow();
    const bool outside = e->type() == NSMouseExited || !visible_;

    std::vector<Inside> before = t.inside;
    std::erase_if(before, [](const Inside& i) { return !installed(i.area, i.view); });
    const std::vector<Inside> now = outside ? std::vector<Inside>() : areasAt(p);
    t.inside = now;
    // An area that its view replaced just now lives on in the one that it put there instead.
    for (Inside& i : before)
        i.replaced = !installed(i.area, i.view);
    const auto goesOn = [](const Inside& was, const Inside& is) {
        return was.area == is.area ||
               (was.replaced && was.view.get() == is.view.get() && was.area->owner() == is.area->owner() &&
                was.area->options() == is.area->options());
    };
    for (const Inside& i : before) {
        if (std::any_of(now.begin(), now.end(), [&](const Inside& n) { return goesOn(i, n); })) continue;
        if ((i.replaced || installed(i.area, i.view)) && i.area->options() & NSTrackingMouseEnteredAndExited)
            tell(*i.area, told::mouseExited, trackingEvent(NSMouseExited, *e, i.area));
    }
    bool cursorTold = false;
    for (const auto& i : now) {
        if (!installed(i.area, i.view)) continue;
        const NSUInteger options = i.area->options();
        if (std::none_of(before.begin(), before.end(), [&](const Inside& was) { return goesOn(was, i); })) {
            if (options & NSTrackingMouseEnteredAndExited)
                tell(*i.area, told::mouseEntered, trackingEvent(NSMouseEntered, *e, i.area));
            if (options & NSTrackingCursorUpdate)
                tell(*i.area, told::cursorUpdate, trackingEvent(NSCursorUpdate, *e, i.area));
        }
        if (options & NSTrackingCursorUpdate) cursorTold = true;
        if (options & NSTrackingMouseMoved && e->type() == NSMouseMoved) tell(*i.area, told::mouseMoved, e);
    }

    if (outside) {
        hideToolTip();
        t.cursorView = nullptr;
        return;
    }
    const bool pressed = e->type() != NSMouseMoved && e->type() != NSMouseEntered && e->type() != NSLeftMouseUp &&
                         e->type() != NSRightMouseUp && e->type() != NSOtherMouseUp;
    if (pressed || !visible_) return;
    const Ref<NSView> hit(root_->hitTest(p));
    if (!cursorTold) updateCursor(hit, p);
    if (e->type() == NSMouseMoved) updateToolTip(hit, p);
}

// Cursors.

void NSWindow::updateCursor(NSView* hit, NSPoint p) {
    if (!cursorRectsEnabled_) return;
    Tracking& t = tracking();
    const NSRect visible = hit ? hit->visibleRect() : NSZeroRect;
    if (!t.cursorRectsValid || t.cursorView.get() != hit || t.cursorVisible != visible) {
        for (Ref<NSView> v(hit); v; v = v->superview()) {
            v->discardCursorRects();
            v->resetCursorRects();
        }
        t.cursorView = hit;
        t.cursorVisible = visible;
        t.cursorRectsValid = true;
    }
    Ref<NSCursor> cursor;
    for (NSView* v = hit; v && !cursor; v = v->superview()) {
        const NSView::Extras* extras = v->extrasIfAny_();
        if (!extras || extras->cursorRects.empty()) continue;
        const NSPoint own = v->convertPoint_fromView(p, nullptr);
        for (const auto& c : extras->cursorRects)
            if (v->mouse_inRect(own, c.rect)) cursor = as<NSCursor>(c.cursor);
    }
    if (!cursor) cursor = NSCursor::arrowCursor();
    NSCursor::pointerIsIn_(this);
    cursor->set();
}

void NSWindow::invalidateCursorRectsForView(NSView*) {
    if (tracking_) tracking_->cursorRectsValid = false;
}

void NSWindow::enableCursorRects() {
    cursorRectsEnabled_ = true;
    invalidateCursorRectsForView(root_);
}

void NSWindow::disableCursorRects() { cursorRectsEnabled_ = false; }

void NSWindow::cursorUpdate(NSEvent*) { NSCursor::arrowCursor()->set(); }

// Tool tips.

void NSWindow::updateToolTip(NSView* hit, NSPoint p) {
    Tracking& t = tracking();
    NSView* found = nullptr;
    NSToolTipTag tag = 0;
    for (NSView* v = hit; v && !found; v = v->superview()) {
        const NSView::Extras* extras = v->extrasIfAny_();
        if (!extras || extras->toolTips.empty()) continue;
        const NSPoint own = v->convertPoint_fromView(p, nullptr);
        // The last one added lies on top.
        for (auto i = extras->toolTips.rbegin(); i != extras->toolTips.rend() && !found; ++i)
            if (v->mouse_inRect(own, i->wholeView ? v->bounds() : i->rect)) {
                found = v;
                tag = i->tag;
            }
    }
    t.tipPoint = p;
    if (found && t.tipView.get() == found && t.tipTag == tag) return;
    hideToolTip();
    if (!found) return;
    t.tipView = found;
    t.tipTag = tag;
    const Weak<NSWindow> weak(this);
    t.tipTimer = NSTimer::scheduledTimerWithTimeInterval_repeats_block(toolTipDelay, NO, [weak](NSTimer*) {
        if (const Ref<NSWindow> w = weak.ref()) w->showToolTip();
    });
}

void NSWindow::showToolTip() {
    Tracking& t = tracking();
    const Ref<NSView> view = t.tipView.ref();
    const NSView::Extras* extras = view && view->window() == this ? view->extrasIfAny_() : nullptr;
    if (!visible_ || !extras) return;
    const auto& tips = extras->toolTips;
    const auto at = std::find_if(tips.begin(), tips.end(), [&](const auto& i) { return i.tag == t.tipTag; });
    if (at == tips.end()) return;
    Ref<NSString> text = at->text;
    if (!text) {
        const Ref<NSObject> owner = at->owner.ref();
        const NSToolTipTag tag = at->tag;
        void* data = at->userData;
        if (const auto asks = op::view_stringForToolTip_point_userData.of(owner))
            text = asks(view, tag, view->convertPoint_fromView(t.tipPoint, nullptr), data);
        // Asking may have hidden it, or have ended the window's showing.
        if (!visible_ || t.tipTag != tag) return;
    }
    if (!text || text->length() == 0) return;
    t.tip = make<ToolTipWindow>(text);
    t.tip->showAtPointer(convertBaseToScreen(t.tipPoint), screen());
    const Weak<NSWindow> weak(this);
    t.tipTimer = NSTimer::scheduledTimerWithTimeInterval_repeats_block(toolTipStay, NO, [weak](NSTimer*) {
        // The view stays noted: the same tip shows again only after the pointer has left it.
        if (const Ref<NSWindow> w = weak.ref())
            if (const Ref<ToolTipWindow> tip = std::exchange(w->tracking().tip, nullptr)) tip->orderOut(nullptr);
    });
}

void NSWindow::hideToolTip() {
    if (!tracking_) return;
    Tracking& t = *tracking_;
    if (t.tipTimer) t.tipTimer->invalidate();
    t.tipTimer = nullptr;
    t.tipView = nullptr;
    t.tipTag = 0;
    if (const Ref<ToolTipWindow> tip = std::exchange(t.tip, nullptr)) tip->orderOut(nullptr);
}

} // namespace libvue
