#include <libvue/platform/foundation/NSTimer.h>

#include <algorithm>

#include <libvue/platform/foundation/NSDate.h>
#include <libvue/platform/foundation/NSRunLoop.h>

namespace libvue {

namespace {

constexpr NSTimeInterval shortestInterval = 0.0001;

NSTimeInterval firstFiring(NSTimeInterval interval) {
    return NSRunLoop::currentRunLoop()->now() + std::max(interval, 0.0);
}

Ref<NSTimer> scheduled(Ref<NSTimer> timer) {
    NSRunLoop::currentRunLoop()->addTimer_forMode(timer, NSDefaultRunLoopMode);
    return timer;
}

} // namespace

void NSTimer::describe(ClassDescription<NSTimer>& c) {
    c.answers<&NSTimer::fire>("fire");
    c.answers<&NSTimer::invalidate>("invalidate");
    c.key<&NSTimer::isValid>("valid");
    c.key<&NSTimer::userInfo>("userInfo");
}

NSTimer::NSTimer(NSTimeInterval fireTime, NSTimeInterval interval, NSObject* target, SEL selector, NSObject* userInfo,
                 BOOL repeats)
    : fireTime_(fireTime),
      interval_(std::max(interval, shortestInterval)),
      target_(target),
      selector_(selector),
      userInfo_(userInfo),
      repeats_(repeats) {}

NSTimer::NSTimer(NSTimeInterval fireTime, NSTimeInterval interval, BOOL repeats, Block block)
    : fireTime_(fireTime),
      interval_(std::max(interval, shortestInterval)),
      block_(block ? std::make_shared<Block>(std::move(block)) : nullptr),
      repeats_(repeats) {}

NSTimer::~NSTimer() = default;

Ref<NSTimer> NSTimer::timerWithTimeInterval_target_selector_userInfo_repeats(NSTimeInterval interval, NSObject* target,
                                                                             SEL selector, NSObject* userInfo,
                                                                             BOOL repeats) {
    return make<NSTimer>(firstFiring(interval), interval, target, selector, userInfo, repeats);
}

Ref<NSTimer> NSTimer::timerWithTimeInterval_repeats_block(NSTimeInterval interval, BOOL repeats, Block block) {
    return make<NSTimer>(firstFiring(interval), interval, repeats, std::move(block));
}

Ref<NSTimer> NSTimer::scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(NSTimeInterval interval,
                                                                                      NSObject* target, SEL selector,
                                                                                      NSObject* userInfo,
                                                                                      BOOL repeats) {
    return scheduled(
        timerWithTimeInterval_target_selector_userInfo_repeats(interval, target, selector, userInfo, repeats));
}

Ref<NSTimer> NSTimer::scheduledTimerWithTimeInterval_repeats_block(NSTimeInterval interval, BOOL repeats, Block block) {
    return scheduled(timerWithTimeInterval_repeats_block(interval, repeats, std::move(block)));
}

void NSTimer::fire() {
    if (!valid_) return;
    const Ref<NSTimer> self(this);
    // Once, even if it is fired again from what it calls, or if that raises.
    struct Once {
        NSTimer& timer;
        ~Once() {
            if (!timer.repeats_) timer.invalidate();
        }
    } const once{*this};
    if (const std::shared_ptr<Block> block = block_)
        (*block)(this);
    else if (const Ref<NSObject> target = target_)
        (void)target->performSelector_withObject(selector_, this);
}

void NSTimer::invalidate() {
    if (!valid_) return;
    valid_ = false;
    const Ref<NSTimer> self(this);
    NSRunLoop::mainRunLoop()->timerInvalidated(this);
    // Given up last, all at once: what goes with them may come back to the timer.
    const Ref<NSObject> target = std::move(target_);
    const Ref<NSObject> userInfo = std::move(userInfo_);
    const std::shared_ptr<Block> block = std::move(block_);
}

Ref<NSDate> NSTimer::fireDate() const {
    return NSDate::dateWithTimeIntervalSinceNow(fireTime_ - NSRunLoop::mainRunLoop()->now());
}

void NSTimer::setFireDate(NSDate* date) {
    if (!date || !valid_) return;
    fireTime_ = NSRunLoop::mainRunLoop()->now() + date->timeIntervalSinceNow();
    NSRunLoop::mainRunLoop()->timerMoved(this);
}

} // namespace libvue
