#include <libvue/popover/FadingWindowController.h>

#include <algorithm>
#include <utility>

#include <libvue/platform/appkit/NSWindow.h>

namespace libvue {

static const ClassRegistration<FadingWindowController> enregistrement;

// Alphas are narrowed to single precision at each step: how many steps a fade takes depends on it.

void FadingWindowController::describe(ClassDescription<FadingWindowController, NSWindowController>& c) {
    c.answers<&FadingWindowController::startFadeIn>("startFadeIn");
    c.answers<&FadingWindowController::stopFadeIn>("stopFadeIn");
    c.answers<&FadingWindowController::startFadeOut>("startFadeOut");
    c.answers<&FadingWindowController::stopFadeOut>("stopFadeOut");
    c.answers<&FadingWindowController::_fadeIn>("_fadeIn:");
    c.answers<&FadingWindowController::_fadeOut>("_fadeOut:");
}

FadingWindowController::FadingWindowController(NSWindow* window) : NSWindowController(window) {}

FadingWindowController::~FadingWindowController() { _stopTimer(); }

bool FadingWindowController::tell(const Operation<void(FadingWindowController*)>& operation) {
    const bool wasKept = moi_ != nullptr;
    if (const auto heard = operation.of(delegate_)) heard(this);
    return !wasKept || moi_ != nullptr;
}

void FadingWindowController::runTimer(SEL step) {
    animationTimer = NSTimer::scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(timerInterval_, this,
                                                                                              step, nullptr, YES);
}

void FadingWindowController::startFadeIn() {
    const Ref<FadingWindowController> kept(this);
    tell(op::willFadeIn);
    isFadingIn_ = YES;
    moi_ = this;
    _stopTimer();
    if (!doFadeIn) {
        stopFadeIn();
        return;
    }
    runTimer(sel("_fadeIn:"));
    _fadeIn(nullptr);
}

void FadingWindowController::_fadeIn(NSTimer*) {
    const Ref<FadingWindowController> kept(this);
    const Ref<NSWindow> w(window());
    // Without a window there is nothing that would ever arrive.
    const float alpha = w ? static_cast<float>(w->alphaValue()) : 1.0F;
    if (alpha < 1.0F)
        w->setAlphaValue(std::min(alpha + fadeIncrement_, 1.0F));
    else
        stopFadeIn();
}

void FadingWindowController::stopFadeIn() {
    const Ref<FadingWindowController> kept(this);
    isFadingIn_ = NO;
    _stopTimer();
    // A delegate that fades out or closes at this very moment has chosen what comes next.
    if (tell(op::didFadeIn) && autoFadeOut && !animationTimer) _waitBeforeFadeOut();
}

void FadingWindowController::_waitBeforeFadeOut() {
    animationTimer = NSTimer::scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(
        displayTime_, this, sel("startFadeOut"), nullptr, NO);
}

void FadingWindowController::startFadeOut() {
    const Ref<FadingWindowController> kept(this);
    if (!tell(op::willFadeOut)) return;
    isFadingOut_ = YES;
    _stopTimer();
    if (!doFadeOut) {
        stopFadeOut();
        return;
    }
    runTimer(sel("_fadeOut:"));
    _fadeOut(nullptr);
}

void FadingWindowController::_fadeOut(NSTimer*) {
    const Ref<FadingWindowController> kept(this);
    const Ref<NSWindow> w(window());
    const float alpha = w ? static_cast<float>(w->alphaValue()) : 0.0F;
    if (alpha > 0.0F)
        w->setAlphaValue(std::max(alpha - fadeIncrement_, 0.0F));
    else
        stopFadeOut();
}

void FadingWindowController::stopFadeOut() {
    const Ref<FadingWindowController> kept(this);
    isFadingOut_ = NO;
    _stopTimer();
    tell(op::didFadeOut);
    close();
    moi_ = nullptr;
}

void FadingWindowController::_stopTimer() {
    // The timer's hold on the controller may be the last one but the caller's.
    if (const Ref<NSTimer> timer = std::exchange(animationTimer, nullptr)) timer->invalidate();
}

} // namespace libvue
