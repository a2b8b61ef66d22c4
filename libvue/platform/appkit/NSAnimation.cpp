#include <libvue/platform/appkit/NSAnimation.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/NSTimer.h>

namespace libvue {

namespace {

const ClassRegistration<NSAnimation> registration;

/// Only the animation's own timer runs in it: the user's events wait until the end.
constexpr ConstantString blockingMode{u"NSAnimationBlockingRunLoopMode"};
constexpr float screenRate = 60;
constexpr NSTimeInterval usualDuration = 0.5;

NSAnimationProgress held(NSAnimationProgress p) noexcept { return std::isnan(p) ? 0 : std::clamp(p, 0.0F, 1.0F); }

/// The two inner points of a cubic from (0, 0) to (1, 1), both on its lower or upper edge.
struct Timing {
    double x1, y1, x2, y2;
};

constexpr Timing timingOf(NSAnimationCurve curve) noexcept {
    switch (curve) {
    case NSAnimationEaseIn:
        return {0.42, 0, 1, 1};
    case NSAnimationEaseOut:
        return {0, 0, 0.58, 1};
    default:
        return {0.42, 0, 0.58, 1};
    }
}

double cubic(double a, double b, double t) noexcept {
    const double u = 1 - t;
    return 3 * u * u * t * a + 3 * u * t * t * b + t * t * t;
}

/// The value of the curve where its x is `progress`. Its x grows all the way, so halving finds the place.
double eased(const Timing& c, double progress) noexcept {
    double low = 0, high = 1;
    for (int i = 0; i < 40; ++i) {
        const double middle = (low + high) / 2;
        (cubic(c.x1, c.x2, middle) < progress ? low : high) = middle;
    }
    return cubic(c.y1, c.y2, (low + high) / 2);
}

} // namespace

void NSAnimation::describe(ClassDescription<NSAnimation>& c) {
    c.answers<&NSAnimation::startAnimation>("startAnimation");
    c.answers<&NSAnimation::stopAnimation>("stopAnimation");
}

NSAnimation::NSAnimation() : NSAnimation(usualDuration, NSAnimationEaseInOut) {}

NSAnimation::NSAnimation(NSTimeInterval duration, NSAnimationCurve curve) : duration_(0), curve_(curve) {
    setDuration(duration);
}

NSAnimation::~NSAnimation() = default;

void NSAnimation::setDuration(NSTimeInterval duration) {
    duration_ = std::isnan(duration) ? 0 : std::max(duration, 0.0);
}

// Running.

void NSAnimation::startAnimation() {
    if (isAnimating()) return;
    const Ref<NSAnimation> self(this);
    if (const auto asks = op::animationShouldStart.of(delegate_); asks && !asks(this)) return;
    if (isAnimating()) return;
    if (progress_ >= 1) progress_ = 0;
    NSRunLoop* loop = NSRunLoop::mainRunLoop();
    startTime_ = loop->now() - static_cast<NSTimeInterval>(progress_) * duration_;
    const NSTimeInterval interval = 1.0 / static_cast<NSTimeInterval>(frameRate_ > 0 ? frameRate_ : screenRate);
    // The timer keeps the animation until it ends.
    timer_ = NSTimer::timerWithTimeInterval_repeats_block(interval, YES, [self](NSTimer*) { self->tick(); });
    loop->addTimer_forMode(timer_, mode_ == NSAnimationBlocking ? blockingMode : NSRunLoopCommonModes);
    animationBegins();
    announceMarks(-1, progress_);
    if (mode_ != NSAnimationBlocking || !isAnimating()) return;
    if (duration_ > 0)
        runBlocking();
    else
        tick(); // with nothing to show on the way, there is no frame to wait for
}

void NSAnimation::runBlocking() {
    NSRunLoop* loop = NSRunLoop::mainRunLoop();
    const Ref<NSTimer> mine = timer_;
    while (timer_ == mine && mine->isValid())
        loop->runOnce(std::numeric_limits<NSTimeInterval>::infinity(), blockingMode);
}

void NSAnimation::tick() {
    const Ref<NSAnimation> self(this);
    const Ref<NSTimer> mine = timer_;
    const NSTimeInterval passed = NSRunLoop::mainRunLoop()->now() - startTime_;
    // The last frame may come a hair early by rounding; the end is the end.
    constexpr NSTimeInterval hair = 1e-6;
    const bool arrived = passed >= duration_ - hair;
    setCurrentProgress(arrived ? 1 : static_cast<NSAnimationProgress>(std::max(passed / duration_, 0.0)));
    if (!arrived || timer_ != mine) return;
    endTimer();
    animationEnds();
    if (const auto tell = op::animationDidEnd.of(delegate_)) tell(this);
    animationIsOver();
}

void NSAnimation::stopAnimation() {
    if (!isAnimating()) return;
    const Ref<NSAnimation> self(this);
    endTimer();
    if (const auto tell = op::animationDidStop.of(delegate_)) tell(this);
    animationIsOver();
}

void NSAnimation::endTimer() {
    if (const Ref<NSTimer> t = std::exchange(timer_, nullptr)) t->invalidate();
}

void NSAnimation::setCurrentProgress(NSAnimationProgress progress) {
    const NSAnimationProgress before = progress_;
    progress_ = held(progress);
    if (isAnimating()) announceMarks(before, progress_);
}

float NSAnimation::currentValue() {
    if (const auto asks = op::animation_valueForProgress.of(delegate_)) return asks(this, progress_);
    if (curve_ == NSAnimationLinear || progress_ <= 0 || progress_ >= 1) return progress_;
    return static_cast<float>(eased(timingOf(curve_), static_cast<double>(progress_)));
}

// Marks on the way.

void NSAnimation::announceMarks(NSAnimationProgress from, NSAnimationProgress to) {
    if (marks_.empty() && followers_.empty()) return;
    const Ref<NSAnimation> self(this);
    const auto passed = [&](NSAnimationProgress mark) { return mark > from && mark <= to; };
    for (const NSAnimationProgress mark : std::vector<NSAnimationProgress>(marks_)) {
        if (!passed(mark)) continue;
        if (const auto tell = op::animation_didReachProgressMark.of(delegate_)) tell(this, mark);
        NSNotificationCenter::defaultCenter()->postNotificationName_object_userInfo(
            NSAnimationProgressMarkNotification, this,
            NSDictionary::dictionaryWithObject_forKey(NSNumber::numberWithFloat(mark), NSAnimationProgressMark.get()));
    }
    for (const Follower& f : std::vector<Follower>(followers_)) {
        const Ref<NSAnimation> other = f.animation.ref();
        if (!other || !passed(f.at)) continue;
        if (f.starts)
            other->startAnimation();
        else
            other->stopAnimation();
    }
}

Ref<NSArray> NSAnimation::progressMarks() const {
    const Ref<NSMutableArray> marks = NSMutableArray::array();
    for (const NSAnimationProgress mark : marks_)
        marks->addObject(NSNumber::numberWithFloat(mark));
    return marks;
}

void NSAnimation::setProgressMarks(NSArray* marks) {
    marks_.clear();
    for (NSUInteger i = 0; marks && i < marks->count(); ++i)
        if (const auto* mark = marks->at<NSNumber>(i)) addProgressMark(mark->floatValue());
}

void NSAnimation::addProgressMark(NSAnimationProgress mark) {
    mark = held(mark);
    const auto at = std::lower_bound(marks_.begin(), marks_.end(), mark);
    if (at == marks_.end() || *at != mark) marks_.insert(at, mark);
}

void NSAnimation::removeProgressMark(NSAnimationProgress mark) { std::erase(marks_, mark); }

void NSAnimation::follow(Ref<NSAnimation>& leader, NSAnimation* animation, NSAnimationProgress progress, bool starts) {
    if (const Ref<NSAnimation> old = std::exchange(leader, Ref<NSAnimation>(animation)))
        std::erase_if(old->followers_,
                      [&](const Follower& f) { return f.starts == starts && f.animation.get() == this; });
    if (animation) animation->followers_.push_back({this, held(progress), starts});
}

void NSAnimation::startWhenAnimation_reachesProgress(NSAnimation* animation, NSAnimationProgress progress) {
    if (animation != this) follow(startLeader_, animation, progress, true);
}

void NSAnimation::stopWhenAnimation_reachesProgress(NSAnimation* animation, NSAnimationProgress progress) {
    if (animation != this) follow(stopLeader_, animation, progress, false);
}

} // namespace libvue
