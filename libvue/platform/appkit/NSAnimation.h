#pragma once

#include <vector>

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/foundation/Operation.h>
#include <libvue/platform/foundation/Types.h>

namespace libvue {

class NSTimer;

enum NSAnimationCurve : NSUInteger {
    NSAnimationEaseInOut = 0,
    NSAnimationEaseIn = 1,
    NSAnimationEaseOut = 2,
    NSAnimationLinear = 3
};

enum NSAnimationBlockingMode : NSUInteger {
    NSAnimationBlocking = 0, ///< startAnimation comes back when all is done; no event is delivered meanwhile
    NSAnimationNonblocking = 1,
    NSAnimationNonblockingThreaded = 2 ///< runs like NSAnimationNonblocking: everything is on the main thread
};

/// A part of the way, 0 to 1.
using NSAnimationProgress = float;

/// The object is the animation; the user information holds the mark, an NSNumber, under NSAnimationProgressMark.
inline constexpr ConstantString NSAnimationProgressMarkNotification{u"NSAnimationProgressMarkNotification"};
inline constexpr ConstantString NSAnimationProgressMark{u"NSAnimationProgressMark"};

/// Optional operations of an animation's delegate.
namespace op {
inline constexpr Operation<BOOL(NSAnimation*)> animationShouldStart{"animationShouldStart:"};
inline constexpr Operation<void(NSAnimation*)> animationDidStop{"animationDidStop:"};
inline constexpr Operation<void(NSAnimation*)> animationDidEnd{"animationDidEnd:"};
inline constexpr Operation<float(NSAnimation*, NSAnimationProgress)> animation_valueForProgress{
    "animation:valueForProgress:"};
inline constexpr Operation<void(NSAnimation*, NSAnimationProgress)> animation_didReachProgressMark{
    "animation:didReachProgressMark:"};
} // namespace op

/// A way from 0 to 1 in time, on the run loop's clock. A subclass overrides setCurrentProgress to show where it stands.
/// It keeps itself while it runs.
class LIBVUE_API NSAnimation : public NSObject {
public:
    static void describe(ClassDescription<NSAnimation>& c);
    /// Half a second, easing in and out.
    NSAnimation();
    NSAnimation(NSTimeInterval duration, NSAnimationCurve curve);
    ~NSAnimation() override;

    /// From where it stands, or from the start again once it has arrived. Nothing while it runs already, or where the
    /// delegate refuses. Its timer runs in the common modes; a blocking one runs the loop in a mode of its own.
    virtual void startAnimation();
    /// Stays where it is; the delegate hears animationDidStop:.
    virtual void stopAnimation();
    [[nodiscard]] BOOL isAnimating() const noexcept { return timer_ != nullptr; }

    [[nodiscard]] NSAnimationProgress currentProgress() const noexcept { return progress_; }
    /// Held between 0 and 1. Sent at each frame; marks that are passed on the way of a running animation are announced.
    virtual void setCurrentProgress(NSAnimationProgress progress);
    /// The progress through the curve, or what the delegate makes of it.
    [[nodiscard]] virtual float currentValue();

    [[nodiscard]] NSTimeInterval duration() const noexcept { return duration_; }
    /// Seconds. Nothing or less: it arrives with its first frame, a blocking one at once.
    void setDuration(NSTimeInterval duration);
    [[nodiscard]] NSAnimationCurve animationCurve() const noexcept { return curve_; }
    void setAnimationCurve(NSAnimationCurve curve) noexcept { curve_ = curve; }
    [[nodiscard]] NSAnimationBlockingMode animationBlockingMode() const noexcept { return mode_; }
    void setAnimationBlockingMode(NSAnimationBlockingMode mode) noexcept { mode_ = mode; }
    /// Frames a second; 0 (or less) for as many as the screen shows.
    [[nodiscard]] float frameRate() const noexcept { return frameRate_; }
    void setFrameRate(float framesPerSecond) noexcept { frameRate_ = framesPerSecond; }
    [[nodiscard]] NSObject* delegate() const noexcept { return delegate_; }
    /// Held weakly.
    void setDelegate(NSObject* delegate) { delegate_ = delegate; }

    /// NSNumbers in ascending order.
    [[nodiscard]] Ref<NSArray> progressMarks() const;
    void setProgressMarks(NSArray* marks);
    void addProgressMark(NSAnimationProgress mark);
    void removeProgressMark(NSAnimationProgress mark);

    /// Starts (stops) when the other one, which is kept, passes that progress. One of each; null ends it.
    void startWhenAnimation_reachesProgress(NSAnimation* animation, NSAnimationProgress progress);
    void stopWhenAnimation_reachesProgress(NSAnimation* animation, NSAnimationProgress progress);
    void clearStartAnimation() { startWhenAnimation_reachesProgress(nullptr, 0); }
    void clearStopAnimation() { stopWhenAnimation_reachesProgress(nullptr, 0); }

protected:
    /// Before the first frame; the base does nothing.
    virtual void animationBegins() {}
    /// After the last frame, and before the delegate hears of it. Not where it was stopped.
    virtual void animationEnds() {}
    /// After the delegate has heard of the end or the stop; the base does nothing.
    virtual void animationIsOver() {}

private:
    struct Follower {
        Weak<NSAnimation> animation;
        NSAnimationProgress at;
        bool starts;
    };
    void tick();
    void runBlocking();
    void endTimer();
    void announceMarks(NSAnimationProgress from, NSAnimationProgress to);
    void follow(Ref<NSAnimation>& leader, NSAnimation* animation, NSAnimationProgress progress, bool starts);

    Weak<NSObject> delegate_;
    Ref<NSTimer> timer_; ///< while it runs
    Ref<NSAnimation> startLeader_, stopLeader_;
    std::vector<Follower> followers_;
    std::vector<NSAnimationProgress> marks_;
    NSTimeInterval duration_;
    NSTimeInterval startTime_ = 0; ///< on the run loop's clock, where the progress was 0
    NSAnimationCurve curve_;
    NSAnimationBlockingMode mode_ = NSAnimationBlocking;
    NSAnimationProgress progress_ = 0;
    float frameRate_ = 60;
};

} // namespace libvue
