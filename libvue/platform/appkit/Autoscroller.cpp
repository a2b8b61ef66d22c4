#include <libvue/platform/appkit/Autoscroller.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/foundation/NSTimer.h>

namespace libvue {

namespace {

constexpr NSTimeInterval kTick = 1.0 / 30, kLongestStep = 0.1;
/// Points a second for each point that the pointer is away, and the least and the most of it.
constexpr CGFloat kGain = 12, kSlowest = 60, kFastest = 6000;
/// Drags that nobody answered by scrolling on: the drag is over for whoever followed it.
constexpr int kMostUnanswered = 3;

/// How far outside, with its sign; 0 inside.
CGFloat beyond(CGFloat at, CGFloat low, CGFloat extent) {
    return at < low ? at - low : at > low + extent ? at - low - extent : 0;
}

CGFloat speed(CGFloat distance) {
    return distance == 0 ? 0 : std::copysign(std::clamp(std::abs(distance) * kGain, kSlowest, kFastest), distance);
}

} // namespace

Autoscroller::~Autoscroller() { stop(); }

void Autoscroller::stop() {
    if (timer_) timer_->invalidate();
    timer_ = nullptr;
    last_ = nullptr;
}

BOOL Autoscroller::step(NSEvent* drag) {
    const Ref<NSEvent> kept(drag);
    const Ref<NSClipView> clip(&clip_);
    const NSPoint p = clip->convertPoint_fromView(drag->locationInWindow(), nullptr);
    const NSRect b = clip->bounds();
    const CGFloat dx = beyond(p.x, b.origin.x, b.size.width), dy = beyond(p.y, b.origin.y, b.size.height);
    const NSTimeInterval now = NSRunLoop::mainRunLoop()->now();
    const NSTimeInterval passed = timer_ ? std::clamp(now - at_, 0.0, kLongestStep) : kTick;
    if (!std::isfinite(dx) || !std::isfinite(dy) || (dx == 0 && dy == 0)) {
        stop();
        return NO;
    }
    at_ = now;
    unanswered_ = 0;
    last_ = drag;
    if (!timer_) {
        timer_ = make<NSTimer>(now + kTick, kTick, YES, [this](NSTimer*) { repeat(); });
        NSRunLoop::mainRunLoop()->addTimer_forMode(timer_, NSRunLoopCommonModes.get());
    }
    // A second step within one instant has nothing to go, and is no end.
    if (passed == 0) return YES;
    const BOOL moved = clip->scrollBy_({speed(dx) * passed, speed(dy) * passed});
    if (!moved) stop();
    return moved;
}

void Autoscroller::repeat() {
    const Ref<NSClipView> clip(&clip_);
    if (!last_ || last_->window() != clip->window() || !(NSEvent::pressedMouseButtons() & 1) ||
        ++unanswered_ > kMostUnanswered) {
        stop();
        return;
    }
    NSEvent::Fields again = last_->fields();
    again.timestamp = NSRunLoop::mainRunLoop()->now();
    again.deltaX = again.deltaY = 0;
    NSApp()->postEvent_atStart(make<NSEvent>(std::move(again)), NO);
}

} // namespace libvue
