#pragma once

#include <libvue/platform/appkit/NSWindowController.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/NSTimer.h>
#include <libvue/platform/foundation/Operation.h>
#include <libvue/popover/Forward.h>

namespace libvue {

/// Optional operations of a fading window's delegate; the argument is its controller. It may fade out or close in any
/// of them.
namespace op {
inline constexpr Operation<void(FadingWindowController*)> willFadeIn{"willFadeIn:"};
inline constexpr Operation<void(FadingWindowController*)> didFadeIn{"didFadeIn:"};
inline constexpr Operation<void(FadingWindowController*)> willFadeOut{"willFadeOut:"};
inline constexpr Operation<void(FadingWindowController*)> didFadeOut{"didFadeOut:"};
} // namespace op

/// Raises its window's alpha step by step, may keep it for a time, then lowers the alpha and closes the window.
///
/// From startFadeIn to the end of stopFadeOut it keeps itself, so that nobody else need. It does not order the window
/// in: whoever shows it does, with the alpha from which to start.
class LIBVUE_API FadingWindowController : public NSWindowController {
public:
    static void describe(ClassDescription<FadingWindowController, NSWindowController>& c);
    explicit FadingWindowController(NSWindow* window);
    ~FadingWindowController() override;

    /// From the alpha that the window has; a window that shows in full already has arrived at the first step.
    void startFadeIn();
    /// At the alpha that was reached. Then waits for the fade-out, where that comes by itself.
    void stopFadeIn();
    /// From the alpha that the window has, to its closing.
    void startFadeOut();
    /// Closes at once, in whatever state. The controller may be gone when it returns.
    void stopFadeOut();

    /// One step, and the end of the fade on the step after the one that arrived. The timer is not read.
    void _fadeIn(NSTimer* timer);
    void _fadeOut(NSTimer* timer);
    /// Starts the fade-out once, after displayTime.
    void _waitBeforeFadeOut();
    /// Ends the timer that runs, whatever it is for.
    void _stopTimer();

    /// After fading in it waits displayTime, then fades out. NO at the start.
    [[nodiscard]] BOOL automaticallyFadeOut() const noexcept { return autoFadeOut; }
    void setAutomaticallyFadesOut(BOOL flag) noexcept { autoFadeOut = flag; }
    /// What the alpha changes by at each step; 0.05 at the start.
    [[nodiscard]] float fadeIncrement() const noexcept { return fadeIncrement_; }
    void setFadeIncrement(float increment) noexcept { fadeIncrement_ = increment; }
    /// Seconds between steps; a thirtieth at the start. Read when a fade starts.
    [[nodiscard]] float timerInterval() const noexcept { return timerInterval_; }
    void setTimerInterval(float seconds) noexcept { timerInterval_ = seconds; }
    /// Seconds between the two fades.
    [[nodiscard]] NSTimeInterval displayTime() const noexcept { return displayTime_; }
    void setDisplayTime(NSTimeInterval seconds) noexcept { displayTime_ = seconds; }
    /// Answers willFadeIn: and its kin, of which none is required. Held weakly.
    [[nodiscard]] NSObject* delegate() const noexcept { return delegate_; }
    void setDelegate(NSObject* delegate) { delegate_ = delegate; }
    [[nodiscard]] BOOL isFadingIn() const noexcept { return isFadingIn_; }
    [[nodiscard]] BOOL isFadingOut() const noexcept { return isFadingOut_; }

protected:
    /// What a subclass may change: without its steps, a fade ends at once and leaves the alpha alone.
    BOOL doFadeIn = YES;
    BOOL doFadeOut = YES;
    /// For a subclass that tells on whose behalf the window shows; not read here.
    Ref<NSString> appName;
    Ref<NSNumber> appPid;

private:
    /// Whether the window is still to be shown: false where the delegate closed it meanwhile.
    bool tell(const Operation<void(FadingWindowController*)>& operation);
    void runTimer(SEL step);

    Weak<NSObject> delegate_;
    Ref<NSTimer> animationTimer; ///< the one that runs: of a fade, or of the wait between
    BOOL autoFadeOut = NO;
    BOOL isFadingIn_ = NO;
    BOOL isFadingOut_ = NO;
    float fadeIncrement_ = 0.05F;
    float timerInterval_ = 1.0F / 30.0F;
    NSTimeInterval displayTime_ = 0;
    Ref<FadingWindowController> moi_; ///< itself, from startFadeIn to stopFadeOut
};

} // namespace libvue
