#include <libvue/platform/appkit/NSScroller.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/KnobGeometry.h>
#include <libvue/platform/appkit/NSActionCell.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSTrackingArea.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/ScrollerFade.h>
#include <libvue/platform/appkit/ThemeDrawing.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/foundation/NSTimer.h>
#include <libvue/platform/foundation/ScopeExit.h>

namespace libvue {

namespace {
constexpr CGFloat kEndGap = 2, kSideGap = 3;
constexpr NSTimeInterval kBeforeRepeat = 0.35, kRepeat = 0.05;

CGFloat unit(CGFloat v) { return v >= 0 ? std::min(v, 1.0) : 0.0; } // a NaN is 0
} // namespace

void NSScroller::describe(ClassDescription<NSScroller, NSControl>& c) {
    c.key<&NSScroller::position, &NSScroller::setPosition>("doubleValue");
}

NSScroller::NSScroller() : NSScroller(NSRect{{0, 0}, {theme::kScrollerWidth, 100}}) {}
NSScroller::NSScroller(const NSRect& frame) : NSControl(frame) {
    // It draws and tracks itself; the cell keeps target and action.
    setCell(make<NSActionCell>());
    addTrackingArea(make<NSTrackingArea>(
        bounds(), NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways | NSTrackingInVisibleRect, this, nullptr));
}
NSScroller::~NSScroller() = default;

CGFloat NSScroller::scrollerWidth() noexcept { return theme::kScrollerWidth; }

NSScrollerStyle NSScroller::preferredScrollerStyle() {
    return backend::Backend::current().windows->prefersOverlayScrollers() ? NSScrollerStyleOverlay
                                                                          : NSScrollerStyleLegacy;
}

void NSScroller::setScrollerStyle(NSScrollerStyle style) {
    if (style == style_) return;
    style_ = style;
    setNeedsDisplay(YES);
    if (style == NSScrollerStyleOverlay) {
        fade_ = std::make_unique<ScrollerFade>(*this);
        holdWhileUsed();
        fade_->show();
    } else if (fade_) {
        fade_->stop();
        fade_ = nullptr;
    }
}

void NSScroller::flash() {
    if (fade_) fade_->show();
}

void NSScroller::holdWhileUsed() {
    if (fade_) fade_->hold(hovered_ || hitPart_ != NSScrollerNoPart);
}

void NSScroller::setHidden(BOOL hidden) {
    if (hidden == isHidden()) return;
    NSControl::setHidden(hidden);
    if (!hidden) flash();
}

void NSScroller::viewDidMoveToWindow() {
    NSControl::viewDidMoveToWindow();
    if (!fade_) return;
    if (window())
        fade_->show();
    else
        fade_->stop();
}

void NSScroller::setKnobProportion(CGFloat p) {
    p = unit(p);
    if (p == proportion_) return;
    proportion_ = p;
    setNeedsDisplay(YES);
}

void NSScroller::setPosition(CGFloat p) {
    p = unit(p);
    if (p == position_) return;
    position_ = p;
    setNeedsDisplay(YES);
    flash();
}

// Where the parts stand.

KnobGeometry NSScroller::geometry() const {
    return {std::max(0.0, (isVertical() ? bounds().size.height : bounds().size.width) - 2 * kEndGap), proportion_};
}

CGFloat NSScroller::along(NSPoint p) const { return (isVertical() ? p.y : p.x) - kEndGap; }

CGFloat NSScroller::along(NSEvent* e) const { return along(convertPoint_fromView(e->locationInWindow(), nullptr)); }

NSRect NSScroller::rectForPart(NSScrollerPart part) const {
    const NSRect b = bounds();
    if (part == NSScrollerKnobSlot) return b;
    const bool vertical = isVertical();
    const KnobGeometry g = geometry();
    const CGFloat knob = g.length(), start = g.startAt(position_);
    const auto strip = [&](CGFloat from, CGFloat length) {
        return vertical ? NSRect{{kSideGap, kEndGap + from}, {std::max(0.0, b.size.width - 2 * kSideGap), length}}
                        : NSRect{{kEndGap + from, kSideGap}, {length, std::max(0.0, b.size.height - 2 * kSideGap)}};
    };
    switch (part) {
    case NSScrollerKnob:
        return strip(start, knob);
    case NSScrollerDecrementPage:
        return strip(0, start);
    case NSScrollerIncrementPage:
        return strip(start + knob, g.slot - start - knob);
    default:
        return NSZeroRect;
    }
}

NSScrollerPart NSScroller::testPart(NSPoint p) const {
    if (!NSPointInRect(p, bounds()) || proportion_ >= 1) return NSScrollerNoPart;
    const KnobGeometry g = geometry();
    const CGFloat at = along(p), start = g.startAt(position_);
    return at < start ? NSScrollerDecrementPage : at < start + g.length() ? NSScrollerKnob : NSScrollerIncrementPage;
}

void NSScroller::drawRect(const NSRect&) {
    const bool active = hovered_ || hitPart_ != NSScrollerNoPart;
    const bool overlay = style_ == NSScrollerStyleOverlay;
    if (!overlay || (active && proportion_ < 1)) drawScrollerSlot(bounds(), isVertical(), overlay);
    if (proportion_ < 1) drawScrollerKnob(alignedToPixels(rectForPart(NSScrollerKnob)), active);
}

// The press.

void NSScroller::send(NSScrollerPart part) {
    hitPart_ = part;
    const Ref<NSScroller> self(this);
    sendAction_to(action(), target());
}

void NSScroller::jumpTo(CGFloat at) {
    const KnobGeometry g = geometry();
    setPosition(g.positionAt(at - g.length() / 2));
    send(NSScrollerKnob);
}

void NSScroller::mouseDown(NSEvent* e) {
    const Ref<NSScroller> self(this);
    const NSPoint at = convertPoint_fromView(e->locationInWindow(), nullptr);
    const NSScrollerPart part = testPart(at);
    if (part == NSScrollerNoPart) return;
    const ScopeExit ended([this] {
        hitPart_ = NSScrollerNoPart;
        holdWhileUsed();
        setNeedsDisplay(YES);
    });
    hitPart_ = part;
    holdWhileUsed();
    setNeedsDisplay(YES);
    if (part != NSScrollerKnob && !(e->modifierFlags() & NSAlternateKeyMask)) {
        trackPages(part, at);
        return;
    }
    if (part != NSScrollerKnob) jumpTo(along(at));
    trackKnob(along(at));
}

void NSScroller::otherMouseDown(NSEvent* e) {
    const Ref<NSScroller> self(this);
    const NSPoint at = convertPoint_fromView(e->locationInWindow(), nullptr);
    if (testPart(at) == NSScrollerNoPart) return;
    jumpTo(along(at));
    hitPart_ = NSScrollerNoPart;
}

void NSScroller::trackKnob(CGFloat at) {
    // Measured from where the knob was caught, so that steps add up to nothing but the pointer's way.
    const CGFloat caught = at - geometry().startAt(position_);
    hitPart_ = NSScrollerKnob;
    for (CGFloat last = at; window();) {
        const Ref<NSEvent> next = NSApp()->nextDragOrRelease_();
        if (!next || next->type() == NSLeftMouseUp) break;
        at = along(next);
        if (at == last) continue;
        last = at;
        const KnobGeometry g = geometry();
        if (!(g.way() > 0)) continue;
        setPosition(g.positionAt(at - std::min(caught, g.length())));
        send(NSScrollerKnob);
    }
}

void NSScroller::trackPages(NSScrollerPart part, NSPoint at) {
    // Until the knob is under the pointer, or cannot come any nearer.
    const auto page = [&] {
        if (!window() || testPart(at) != part) return false;
        const CGFloat before = position_;
        send(part);
        return position_ != before;
    };
    NSRunLoop* loop = NSRunLoop::mainRunLoop();
    Ref<NSTimer> timer;
    const ScopeExit ended([&] {
        if (timer) timer->invalidate();
    });
    const auto repeatAfter = [&](NSTimeInterval delay) {
        timer = make<NSTimer>(loop->now() + delay, kRepeat, YES, [&page](NSTimer* t) {
            if (!page()) t->invalidate();
        });
        loop->addTimer_forMode(timer, NSRunLoopCommonModes.get());
    };
    if (page()) repeatAfter(kBeforeRepeat);
    while (window()) {
        const Ref<NSEvent> next = NSApp()->nextDragOrRelease_();
        if (!next || next->type() == NSLeftMouseUp) break;
        at = convertPoint_fromView(next->locationInWindow(), nullptr);
        if (testPart(at) == part && !(timer && timer->isValid())) repeatAfter(kRepeat);
    }
}

void NSScroller::mouseEntered(NSEvent*) {
    hovered_ = true;
    holdWhileUsed();
    setNeedsDisplay(YES);
}
void NSScroller::mouseExited(NSEvent*) {
    hovered_ = false;
    holdWhileUsed();
    setNeedsDisplay(YES);
}

AccessibilityDescription NSScroller::accessibilityDescription() const {
    AccessibilityDescription d = NSControl::accessibilityDescription();
    d.role = u"scroll bar"_ns;
    d.value = NSNumber::numberWithDouble(position_)->stringValue();
    d.action = u"increment"_ns;
    return d;
}

} // namespace libvue
