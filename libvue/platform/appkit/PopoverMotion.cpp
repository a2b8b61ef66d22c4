#include <libvue/platform/appkit/PopoverMotion.h>

namespace libvue {

namespace {

constexpr NSTimeInterval kSeconds = 0.16;

} // namespace

PopoverMotion::PopoverMotion(PopoverWindow* window, What what, const NSRect& to)
    : NSAnimation(kSeconds, NSAnimationEaseInOut),
      window_(window),
      from_(window->frame()),
      to_(to),
      alpha_(window->alphaValue()),
      what_(what) {
    setAnimationBlockingMode(NSAnimationNonblocking);
}

PopoverMotion::~PopoverMotion() = default;

void PopoverMotion::setCurrentProgress(NSAnimationProgress progress) {
    const Ref<PopoverMotion> kept(this);
    NSAnimation::setCurrentProgress(progress);
    const Ref<PopoverWindow> w = window_.ref();
    if (!w) return;
    const CGFloat v = currentValue();
    const auto between = [v](CGFloat a, CGFloat b) { return a + (b - a) * v; };
    switch (what_) {
    case What::fadesIn:
        w->setAlphaValue(between(alpha_, 1));
        break;
    case What::fadesOut:
        w->setAlphaValue(between(alpha_, 0));
        break;
    case What::glides:
        w->setFrame_display(NSMakeRect(between(from_.origin.x, to_.origin.x), between(from_.origin.y, to_.origin.y),
                                       between(from_.size.width, to_.size.width),
                                       between(from_.size.height, to_.size.height)),
                            YES);
        break;
    }
}

void PopoverMotion::animationEnds() {
    const Ref<PopoverWindow> w = window_.ref();
    if (const Ref<NSPopover> p{w ? w->popover() : nullptr}) p->motionEnded_(this);
}

} // namespace libvue
