#include <libvue/platform/appkit/NSViewAnimation.h>

#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSValue.h>

namespace libvue {

namespace {

const ClassRegistration<NSViewAnimation> registration;

NSRect between(const NSRect& a, const NSRect& b, double v) noexcept {
    const auto mix = [v](CGFloat x, CGFloat y) { return x + (y - x) * v; };
    return {{mix(a.origin.x, b.origin.x), mix(a.origin.y, b.origin.y)},
            {mix(a.size.width, b.size.width), mix(a.size.height, b.size.height)}};
}

bool is(NSObject* effect, NSString* name) {
    const auto* s = as<NSString>(effect);
    return s && s->isEqualToString(name);
}

} // namespace

void NSViewAnimation::describe(ClassDescription<NSViewAnimation, NSAnimation>&) {}

NSViewAnimation::NSViewAnimation(NSArray* viewAnimations) { setViewAnimations(viewAnimations); }

NSViewAnimation::~NSViewAnimation() = default;

NSArray* NSViewAnimation::viewAnimations() const noexcept { return entries_; }

void NSViewAnimation::setViewAnimations(NSArray* viewAnimations) {
    entries_ = viewAnimations ? NSArray::arrayWithArray(viewAnimations) : Ref<NSArray>();
}

void NSViewAnimation::read() {
    targets_.clear();
    for (NSUInteger i = 0; entries_ && i < entries_->count(); ++i) {
        const auto* entry = entries_->at<NSDictionary>(i);
        if (!entry) continue;
        Target t;
        t.view = entry->get<NSView>(NSViewAnimationTargetKey);
        t.window = entry->get<NSWindow>(NSViewAnimationTargetKey);
        if (!t.view && !t.window) continue;
        const auto* from = entry->get<NSValue>(NSViewAnimationStartFrameKey);
        const auto* to = entry->get<NSValue>(NSViewAnimationEndFrameKey);
        const NSRect now = t.window ? t.window->frame() : t.view->frame();
        t.from = from ? from->rectValue() : now;
        t.to = to ? to->rectValue() : now;
        t.moves = from || to;
        t.alpha = t.window ? t.window->alphaValue() : t.view->alphaValue();
        NSObject* effect = entry->objectForKey(NSViewAnimationEffectKey);
        if (is(effect, NSViewAnimationFadeOutEffect))
            t.effect = Effect::fadeOut;
        else if (is(effect, NSViewAnimationFadeInEffect))
            t.effect = Effect::fadeIn;
        // What is there in full already fades in from nothing to what it was; what is transparent, to all of it.
        if (t.effect == Effect::fadeIn && t.alpha <= 0) t.alpha = 1;
        targets_.push_back(std::move(t));
    }
}

void NSViewAnimation::show(const Target& t, double value, bool atEnd) {
    if (t.moves) {
        const NSRect frame = atEnd ? t.to : between(t.from, t.to, value);
        if (t.window)
            t.window->setFrame_display(frame, YES);
        else
            t.view->setFrame(frame);
    }
    if (t.effect == Effect::none) return;
    const double part = t.effect == Effect::fadeIn ? value : 1 - value;
    const CGFloat alpha = atEnd ? (t.effect == Effect::fadeIn ? t.alpha : 0) : t.alpha * part;
    if (t.window)
        t.window->setAlphaValue(alpha);
    else
        t.view->setAlphaValue(alpha);
}

void NSViewAnimation::animationBegins() {
    read();
    ended_ = false;
    const std::vector<Target> targets = targets_;
    for (const Target& t : targets) {
        if (t.effect == Effect::fadeOut && t.window) t.window->beginFadeOut_();
        show(t, static_cast<double>(currentValue()), false);
        if (t.effect != Effect::fadeIn) continue;
        if (t.window) {
            if (!t.window->isVisible()) t.window->orderFront(nullptr);
        } else
            t.view->setHidden(NO);
    }
}

void NSViewAnimation::setCurrentProgress(NSAnimationProgress progress) {
    const Ref<NSViewAnimation> self(this);
    NSAnimation::setCurrentProgress(progress);
    if (!isAnimating()) return;
    const double value = static_cast<double>(currentValue());
    const bool atEnd = currentProgress() >= 1 && value == 1;
    // By value: whoever hears of a move may start or stop animations.
    const std::vector<Target> targets = targets_;
    for (const Target& t : targets)
        show(t, value, atEnd);
}

void NSViewAnimation::animationEnds() { ended_ = true; }

void NSViewAnimation::animationIsOver() {
    if (isAnimating()) return; // the delegate has started it anew
    const std::vector<Target> targets = std::exchange(targets_, {});
    for (const Target& t : targets) {
        if (t.effect != Effect::fadeOut) continue;
        if (t.window)
            t.window->endFadeOut_(ended_);
        else if (ended_) {
            t.view->setHidden(YES);
            t.view->setAlphaValue(t.alpha);
        }
    }
}

} // namespace libvue
