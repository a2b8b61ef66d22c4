#include <libvue/platform/appkit/NSScroller.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSActionCell.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSTrackingArea.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/ThemeDessin.h>
#include <libvue/platform/foundation/NSNumber.h>

namespace libvue {

namespace {
constexpr CGFloat kEndGap = 2, kSideGap = 3, kShortestKnob = 24;

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
}

NSRect NSScroller::rectForPart(NSScrollerPart part) const {
    const NSRect b = bounds();
    const bool vertical = isVertical();
    const NSRect slot = vertical ? NSInsetRect(b, kSideGap, kEndGap) : NSInsetRect(b, kEndGap, kSideGap);
    if (part == NSScrollerKnobSlot) return b;
    const CGFloat extent = std::max(0.0, vertical ? slot.size.height : slot.size.width);
    const CGFloat knob = std::min(extent, std::max(kShortestKnob, extent * proportion_));
    const CGFloat start = (extent - knob) * position_;
    const auto strip = [&](CGFloat from, CGFloat length) {
        return vertical ? NSRect{{slot.origin.x, slot.origin.y + from}, {slot.size.width, length}}
                        : NSRect{{slot.origin.x + from, slot.origin.y}, {length, slot.size.height}};
    };
    switch (part) {
    case NSScrollerKnob:
        return strip(start, knob);
    case NSScrollerDecrementPage:
        return strip(0, start);
    case NSScrollerIncrementPage:
        return strip(start + knob, extent - start - knob);
    default:
        return NSZeroRect;
    }
}

NSScrollerPart NSScroller::testPart(NSPoint p) const {
    if (!NSPointInRect(p, bounds()) || proportion_ >= 1) return NSScrollerNoPart;
    const NSRect knob = rectForPart(NSScrollerKnob);
    const CGFloat at = isVertical() ? p.y : p.x;
    const CGFloat low = isVertical() ? NSMinY(knob) : NSMinX(knob), high = isVertical() ? NSMaxY(knob) : NSMaxX(knob);
    return at < low ? NSScrollerDecrementPage : at < high ? NSScrollerKnob : NSScrollerIncrementPage;
}

void NSScroller::drawRect(const NSRect&) {
    if (proportion_ >= 1) return;
    drawScrollerKnob(rectForPart(NSScrollerKnob), hovered_ || hitPart_ == NSScrollerKnob);
}

void NSScroller::send(NSScrollerPart part) {
    hitPart_ = part;
    const Ref<NSScroller> self(this);
    sendAction_to(action(), target());
}

void NSScroller::mouseDown(NSEvent* e) {
    const Ref<NSScroller> self(this);
    const NSPoint first = convertPoint_fromView(e->locationInWindow(), nullptr);
    const NSScrollerPart part = testPart(first);
    if (part == NSScrollerNoPart) return;
    if (part != NSScrollerKnob) {
        send(part);
        hitPart_ = NSScrollerNoPart;
        return;
    }
    const CGFloat from = isVertical() ? first.y : first.x;
    const CGFloat before = position_;
    hitPart_ = NSScrollerKnob;
    while (window()) {
        const Ref<NSEvent> next = NSApp()->nextDragOrRelease_();
        if (!next || next->type() == NSLeftMouseUp) break;
        const NSPoint p = convertPoint_fromView(next->locationInWindow(), nullptr);
        const NSRect knob = rectForPart(NSScrollerKnob);
        const CGFloat extent = isVertical() ? bounds().size.height - 2 * kEndGap - knob.size.height
                                            : bounds().size.width - 2 * kEndGap - knob.size.width;
        if (extent <= 0) continue;
        setPosition(before + ((isVertical() ? p.y : p.x) - from) / extent);
        send(NSScrollerKnob);
    }
    hitPart_ = NSScrollerNoPart;
    setNeedsDisplay(YES);
}

void NSScroller::mouseEntered(NSEvent*) {
    hovered_ = true;
    setNeedsDisplay(YES);
}
void NSScroller::mouseExited(NSEvent*) {
    hovered_ = false;
    setNeedsDisplay(YES);
}

AccessibilityDescription NSScroller::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"scroll bar"_ns;
    d.value = NSNumber::numberWithDouble(position_)->stringValue();
    d.action = u"increment"_ns;
    return d;
}

} // namespace libvue
