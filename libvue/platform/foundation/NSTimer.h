#pragma once

#include <functional>
#include <memory>

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

struct RunLoopWork;

/// Fires once or again and again, from a run loop, which keeps it until it is invalid. It keeps its target and its user
/// information until then. A repeating timer keeps its phase and skips the firings that it missed.
class LIBVUE_API NSTimer : public NSObject {
public:
    using Block = std::function<void(NSTimer*)>;

    static void describe(ClassDescription<NSTimer>& c);
    /// Not yet in a run loop. `fireTime` is on the run loop's clock. The operation takes the timer or nothing. An
    /// interval of 0 or less counts as 0.0001 s.
    NSTimer(NSTimeInterval fireTime, NSTimeInterval interval, NSObject* target, SEL selector, NSObject* userInfo,
            BOOL repeats);
    NSTimer(NSTimeInterval fireTime, NSTimeInterval interval, BOOL repeats, Block block);
    ~NSTimer() override;

    /// Scheduled on the current run loop in its default mode, the first firing one interval from now.
    static Ref<NSTimer> scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(NSTimeInterval interval,
                                                                                        NSObject* target, SEL selector,
                                                                                        NSObject* userInfo,
                                                                                        BOOL repeats);
    static Ref<NSTimer> scheduledTimerWithTimeInterval_repeats_block(NSTimeInterval interval, BOOL repeats,
                                                                     Block block);
    /// To be given to NSRunLoop's addTimer_forMode.
    [[nodiscard]] static Ref<NSTimer>
    timerWithTimeInterval_target_selector_userInfo_repeats(NSTimeInterval interval, NSObject* target, SEL selector,
                                                           NSObject* userInfo, BOOL repeats);
    [[nodiscard]] static Ref<NSTimer> timerWithTimeInterval_repeats_block(NSTimeInterval interval, BOOL repeats,
                                                                          Block block);

    /// Fires at once; a timer that does not repeat is invalid afterwards. Does not move the next firing of a repeating
    /// one.
    void fire();
    /// Never fires again, leaves its run loop, gives up its target and its user information.
    void invalidate();
    [[nodiscard]] BOOL isValid() const noexcept { return valid_; }
    [[nodiscard]] NSTimeInterval timeInterval() const noexcept { return repeats_ ? interval_ : 0; }
    /// Null once invalid.
    [[nodiscard]] NSObject* userInfo() const noexcept { return userInfo_; }
    [[nodiscard]] Ref<NSDate> fireDate() const;
    void setFireDate(NSDate* date);
    /// The next firing on the run loop's clock.
    [[nodiscard]] NSTimeInterval fireTime() const noexcept { return fireTime_; }

private:
    friend class NSRunLoop;

    NSTimeInterval fireTime_;
    NSTimeInterval interval_;
    Ref<NSObject> target_;
    SEL selector_ = nullptr;
    Ref<NSObject> userInfo_;
    std::shared_ptr<Block> block_; // shared with the firing under way
    RunLoopWork* work_ = nullptr;  // its place in the run loop
    bool repeats_;
    bool valid_ = true;
};

} // namespace libvue
