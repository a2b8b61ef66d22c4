#include <libvue/platform/appkit/NSSliderCell.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSSlider.h>
#include <libvue/platform/appkit/ThemeDrawing.h>
#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>

namespace libvue {

static const ClassRegistration<NSSliderCell> registration;

namespace {
constexpr CGFloat kTickRoom = 8;
constexpr NSInteger kMostTicks = 10000;
constexpr ConstantString kMin{u"NSMinValue"}, kMax{u"NSMaxValue"}, kStep{u"NSAltIncValue"},
    kTicks{u"NSNumberOfTickMarks"}, kTicksOnly{u"NSAllowsTickMarkValuesOnly"};

/// Not so far that the way from one to the other is no number.
bool isLimit(double v) { return std::abs(v) <= 1e300; }
} // namespace

void NSSliderCell::describe(ClassDescription<NSSliderCell, NSActionCell>& c) {
    c.key<&NSSliderCell::minValue, &NSSliderCell::setMinValue>("minValue");
    c.key<&NSSliderCell::maxValue, &NSSliderCell::setMaxValue>("maxValue");
}

NSSliderCell::NSSliderCell() {
    setType(NSImageCellType);
    setContinuous(YES);
    NSActionCell::setDoubleValue(0);
}

NSSliderCell::NSSliderCell(NSCoder& coder) : NSActionCell(coder) {
    const auto read = [&](const ConstantString& key, double& into) {
        const double v = coder.decodeDoubleForKey(key);
        if (coder.containsValueForKey(key) && isLimit(v)) into = v;
    };
    read(kMin, min_);
    read(kMax, max_);
    read(kStep, step_);
    ticks_ = std::clamp<NSInteger>(coder.decodeIntegerForKey(kTicks), 0, kMostTicks);
    ticksOnly_ = coder.decodeBoolForKey(kTicksOnly);
    setDoubleValue(doubleValue());
}

void NSSliderCell::encodeWithCoder(NSCoder& coder) const {
    NSActionCell::encodeWithCoder(coder);
    coder.encodeDouble_forKey(min_, kMin);
    coder.encodeDouble_forKey(max_, kMax);
    coder.encodeDouble_forKey(step_, kStep);
    coder.encodeInteger_forKey(ticks_, kTicks);
    coder.encodeBool_forKey(ticksOnly_, kTicksOnly);
}

Ref<NSObject> NSSliderCell::copyWithZone() const {
    Ref<NSObject> made = NSActionCell::copyWithZone();
    if (auto* c = as<NSSliderCell>(made)) {
        c->min_ = min_;
        c->max_ = max_;
        c->step_ = step_;
        c->ticks_ = ticks_;
        c->ticksOnly_ = ticksOnly_;
    }
    return made;
}

void NSSliderCell::setMinValue(double v) {
    if (!isLimit(v)) return;
    min_ = v;
    setDoubleValue(doubleValue());
    redisplay();
}
void NSSliderCell::setMaxValue(double v) {
    if (!isLimit(v)) return;
    max_ = v;
    setDoubleValue(doubleValue());
    redisplay();
}

void NSSliderCell::setDoubleValue(double v) {
    const double low = std::min(min_, max_), high = std::max(min_, max_);
    double held = v >= low ? std::min(v, high) : low;
    if (ticksOnly_ && ticks_ > 0) held = closestTickMarkValueToValue(held);
    NSActionCell::setDoubleValue(held);
}

void NSSliderCell::setNumberOfTickMarks(NSInteger n) {
    ticks_ = std::clamp<NSInteger>(n, 0, kMostTicks);
    setDoubleValue(doubleValue());
}
void NSSliderCell::setAllowsTickMarkValuesOnly(BOOL f) {
    ticksOnly_ = f;
    setDoubleValue(doubleValue());
}

double NSSliderCell::tickMarkValueAtIndex(NSInteger i) const noexcept {
    if (ticks_ <= 1) return (min_ + max_) / 2;
    return min_ + (max_ - min_) * static_cast<double>(i) / static_cast<double>(ticks_ - 1);
}

double NSSliderCell::closestTickMarkValueToValue(double v) const noexcept {
    if (ticks_ <= 0) return v;
    if (ticks_ == 1 || max_ == min_) return tickMarkValueAtIndex(0);
    const double at = std::round((v - min_) / (max_ - min_) * static_cast<double>(ticks_ - 1));
    return tickMarkValueAtIndex(static_cast<NSInteger>(std::clamp(at, 0.0, static_cast<double>(ticks_ - 1))));
}

double NSSliderCell::arrowStep() const noexcept {
    if (step_ > 0) return step_;
    if (ticks_ > 1) return (max_ - min_) / static_cast<double>(ticks_ - 1);
    return (max_ - min_) / 20;
}

NSRect NSSliderCell::knobRectIn(const NSRect& b, BOOL flipped) const {
    const CGFloat d = theme::kSliderKnob;
    const double part = max_ != min_ ? std::clamp((doubleValue() - min_) / (max_ - min_), 0.0, 1.0) : 0;
    if (isVerticalIn(b)) {
        const CGFloat y = (flipped ? 1 - part : part) * std::max(0.0, b.size.height - d - 2);
        return {{NSMidX(b) - d / 2 - (ticks_ > 0 ? kTickRoom / 2 : 0), b.origin.y + 1 + y}, {d, d}};
    }
    const CGFloat up = ticks_ > 0 ? kTickRoom / 2 : 0;
    return {{b.origin.x + 1 + part * std::max(0.0, b.size.width - d - 2), NSMidY(b) - d / 2 + (flipped ? -up : up)},
            {d, d}};
}

double NSSliderCell::valueAt(NSPoint p, const NSRect& b, BOOL flipped) const {
    const CGFloat d = theme::kSliderKnob + 2;
    double part;
    if (isVerticalIn(b)) {
        part = (p.y - b.origin.y - d / 2) / std::max(1.0, b.size.height - d);
        if (flipped) part = 1 - part;
    } else
        part = (p.x - b.origin.x - d / 2) / std::max(1.0, b.size.width - d);
    return min_ + (max_ - min_) * std::clamp(part, 0.0, 1.0);
}

NSSize NSSliderCell::cellSizeForBounds(const NSRect& b) const {
    const CGFloat thick = theme::kSliderKnob + 4 + (ticks_ > 0 ? kTickRoom : 0);
    if (isVerticalIn(b)) return {thick, std::min(b.size.height, 120.0)};
    return {std::min(b.size.width, 120.0), thick};
}

void NSSliderCell::drawWithFrame_inView(const NSRect& frame, NSView* view) {
    const FaceState s = faceStateOf(this, view);
    const bool flipped = view && view->isFlipped();
    const NSRect knob = knobRectIn(frame, flipped);
    const CGFloat t = theme::kSliderTrack;
    NSRect track, filled;
    if (isVerticalIn(frame)) {
        track = {{NSMidX(knob) - t / 2, frame.origin.y + 2}, {t, frame.size.height - 4}};
        filled = track;
        if (flipped) filled.origin.y = NSMidY(knob);
        filled.size.height = flipped ? NSMaxY(track) - NSMidY(knob) : NSMidY(knob) - track.origin.y;
    } else {
        track = {{frame.origin.x + 2, NSMidY(knob) - t / 2}, {frame.size.width - 4, t}};
        filled = track;
        filled.size.width = NSMidX(knob) - track.origin.x;
    }
    drawSliderTrack(track, filled, s);
    drawTicks(frame, knob, flipped);
    drawSliderKnob(knob, s);
}

void NSSliderCell::drawTicks(const NSRect& frame, const NSRect& knob, bool flipped) const {
    if (ticks_ == 0) return;
    NSColor::tertiaryLabelColor()->setFill();
    const CGFloat line = fineLine(), d = theme::kSliderKnob + 2;
    for (NSInteger i = 0; i < ticks_; ++i) {
        const double part = ticks_ > 1 ? static_cast<double>(i) / static_cast<double>(ticks_ - 1) : 0.5;
        if (isVerticalIn(frame))
            NSBezierPath::fillRect(alignedToPixels(
                {{NSMaxX(knob) + 2, frame.origin.y + d / 2 + part * (frame.size.height - d) - line / 2}, {5, line}}));
        else
            NSBezierPath::fillRect(alignedToPixels({{frame.origin.x + d / 2 + part * (frame.size.width - d) - line / 2,
                                                     flipped ? NSMaxY(knob) + 2 : NSMinY(knob) - 7},
                                                    {line, 5}}));
    }
}

BOOL NSSliderCell::trackMouse_inRect_ofView_untilMouseUp(NSEvent* e, const NSRect& frame, NSView* view, BOOL) {
    const Ref<NSSliderCell> self(this);
    const Ref<NSView> kept(view);
    auto* control = as<NSControl>(view);
    const bool flipped = view->isFlipped();
    NSPoint p = view->convertPoint_fromView(e->locationInWindow(), nullptr);
    // A press on the knob keeps its place under the pointer; elsewhere on the track the knob jumps there.
    const NSRect knob = knobRectIn(frame, flipped);
    const NSPoint grab = NSPointInRect(p, knob) ? NSPoint{p.x - NSMidX(knob), p.y - NSMidY(knob)} : NSPoint{};
    for (;;) {
        const double before = doubleValue();
        setDoubleValue(valueAt({p.x - grab.x, p.y - grab.y}, frame, flipped));
        if (doubleValue() != before) {
            view->setNeedsDisplay(YES);
            if (isContinuous() && control) control->sendAction_to(action(), target());
        }
        const Ref<NSEvent> next = NSApp()->nextDragOrRelease_();
        if (!next || !view->window()) return NO;
        if (next->type() == NSLeftMouseUp) {
            if (!isContinuous() && control) control->sendAction_to(action(), target());
            return YES;
        }
        p = view->convertPoint_fromView(next->locationInWindow(), nullptr);
    }
}

} // namespace libvue
