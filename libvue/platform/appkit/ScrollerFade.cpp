#include <libvue/platform/appkit/ScrollerFade.h>

#include <libvue/platform/appkit/NSScroller.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/foundation/NSTimer.h>

namespace libvue {

namespace {
constexpr NSTimeInterval kShown = 1, kTick = 1.0 / 30, kFading = 0.25;
} // namespace

ScrollerFade::~ScrollerFade() {
    if (timer_) timer_->invalidate();
}

void ScrollerFade::stop() {
    if (timer_) timer_->invalidate();
    timer_ = nullptr;
    scroller_.setAlphaValue(1);
}

void ScrollerFade::show() {
    scroller_.setAlphaValue(1);
    if (!scroller_.window()) return;
    until_ = NSRunLoop::mainRunLoop()->now() + kShown;
    // The timer that waits already finds out that there is more time.
    if (!timer_) wakeAt(until_);
}

void ScrollerFade::hold(bool held) {
    if (held == held_) return;
    held_ = held;
    show();
}

void ScrollerFade::wakeAt(NSTimeInterval time) {
    timer_ = make<NSTimer>(time, 0, NO, [this](NSTimer*) { tick(); });
    NSRunLoop::mainRunLoop()->addTimer_forMode(timer_, NSRunLoopCommonModes.get());
}

void ScrollerFade::tick() {
    timer_ = nullptr;
    if (held_ || !scroller_.window()) return;
    const NSTimeInterval now = NSRunLoop::mainRunLoop()->now();
    if (now < until_) {
        wakeAt(until_);
        return;
    }
    const bool still = backend::Backend::current().windows->prefersReducedMotion();
    const CGFloat left = still ? 0 : 1 - (now - until_) / kFading;
    if (left > 0) wakeAt(now + kTick);
    scroller_.setAlphaValue(left > 0 ? left : 0);
}

} // namespace libvue
