// What scrolls: the wheel, the scrollers, the keys.
#include <algorithm>
#include <cmath>
#include <utility>

#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSText.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/ScrollKeys.h>

namespace libvue {

namespace {
bool isLength(CGFloat v) { return std::isfinite(v) && v >= 0; }
} // namespace

void NSScrollView::setLineScroll(CGFloat points) noexcept {
    if (isLength(points)) lineScroll_ = points;
}
void NSScrollView::setPageScroll(CGFloat points) noexcept {
    if (isLength(points)) pageScroll_ = points;
}

NSPoint NSScrollView::scrolledBy() const {
    const NSRect d = clip_->documentRect(), b = clip_->bounds();
    return {b.origin.x - d.origin.x, clip_->isFlipped() ? b.origin.y - d.origin.y : NSMaxY(d) - NSMaxY(b)};
}

BOOL NSScrollView::scrollBy(CGFloat dx, CGFloat dy) {
    const Ref<NSScrollView> self(this);
    return clip_->scrollBy_({dx, clip_->isFlipped() ? dy : -dy});
}

/// A page is what shows, less what is to show still; at least half of it.
CGFloat NSScrollView::page(CGFloat shown) const noexcept { return std::max({1.0, shown / 2, shown - pageScroll_}); }

// The scrollers.

void NSScrollView::scrollerMoved(NSObject* sender) {
    auto* s = as<NSScroller>(sender);
    if (!s) return;
    const bool vertical = s == vertical_.get();
    const NSRect b = clip_->bounds(), d = clip_->documentRect();
    const CGFloat shown = vertical ? b.size.height : b.size.width;
    const NSScrollerPart part = s->hitPart();
    if (part == NSScrollerDecrementPage || part == NSScrollerIncrementPage) {
        const CGFloat by = part == NSScrollerIncrementPage ? page(shown) : -page(shown);
        (void)(vertical ? scrollBy(0, by) : scrollBy(by, 0));
        return;
    }
    const CGFloat offset = s->position() * std::max(0.0, (vertical ? d.size.height : d.size.width) - shown);
    NSPoint to = b.origin;
    if (!vertical)
        to.x = d.origin.x + offset;
    else
        to.y = clip_->isFlipped() ? d.origin.y + offset : NSMaxY(d) - shown - offset;
    const Ref<NSScrollView> self(this);
    (void)clip_->scrollTo_(to);
    // The knob stands where the document stands, also where that moved less than the hand.
    reflectScrolledClipView(clip_);
}

// The wheel.

void NSScrollView::scrollWheel(NSEvent* e) {
    const Ref<NSScrollView> self(this);
    const Ref<NSEvent> kept(e);
    const CGFloat factor = e->hasPreciseScrollingDeltas() ? 1 : lineScroll_ / NSEvent::pointsPerWheelLine_;
    CGFloat dx = -e->scrollingDeltaX() * factor, dy = -e->scrollingDeltaY() * factor;
    if (!std::isfinite(dx) || !std::isfinite(dy)) return;
    if ((e->modifierFlags() & NSShiftKeyMask) && dx == 0) std::swap(dx, dy);
    // A document that is shown smaller runs as fast as any under the finger.
    const NSSize shown = clip_->bounds().size, here = clip_->frame().size;
    if (here.width > 0 && here.height > 0) {
        dx *= shown.width / here.width;
        dy *= shown.height / here.height;
    }
    const bool momentum = e->momentumPhase() != 0;
    // A gesture begins with its first phase; the notches of a wheel are none.
    if (!momentum && e->phase() <= 1) tookGesture_ = false;
    if (scrollBy(dx, dy)) {
        tookGesture_ = true;
        return;
    }
    // What cannot scroll any further passes the wheel on; but a throw that began here ends here.
    if (momentum && tookGesture_) return;
    NSView::scrollWheel(e);
}

// The keys.

void NSScrollView::pageDown(NSObject*) { (void)perform_(ScrollStep::pageDown); }
void NSScrollView::pageUp(NSObject*) { (void)perform_(ScrollStep::pageUp); }
void NSScrollView::scrollLineDown(NSObject*) { (void)perform_(ScrollStep::lineDown); }
void NSScrollView::scrollLineUp(NSObject*) { (void)perform_(ScrollStep::lineUp); }
void NSScrollView::scrollToBeginningOfDocument(NSObject*) { (void)perform_(ScrollStep::beginning); }
void NSScrollView::scrollToEndOfDocument(NSObject*) { (void)perform_(ScrollStep::end); }

BOOL NSScrollView::perform_(ScrollStep step) {
    const NSSize shown = clip_->bounds().size;
    const CGFloat all = clip_->documentRect().size.height;
    switch (step) {
    case ScrollStep::lineUp:
        return scrollBy(0, -lineScroll_);
    case ScrollStep::lineDown:
        return scrollBy(0, lineScroll_);
    case ScrollStep::lineLeft:
        return scrollBy(-lineScroll_, 0);
    case ScrollStep::lineRight:
        return scrollBy(lineScroll_, 0);
    case ScrollStep::pageUp:
        return scrollBy(0, -page(shown.height));
    case ScrollStep::pageDown:
        return scrollBy(0, page(shown.height));
    case ScrollStep::beginning:
        return scrollBy(0, -all);
    case ScrollStep::end:
        return scrollBy(0, all);
    case ScrollStep::none:
        break;
    }
    return NO;
}

BOOL NSScrollView::canScroll_(ScrollStep step) const {
    if (step == ScrollStep::none) return NO;
    const NSSize shown = clip_->bounds().size, all = clip_->documentRect().size;
    return step == ScrollStep::lineLeft || step == ScrollStep::lineRight ? all.width > shown.width
                                                                         : all.height > shown.height;
}

bool NSScrollView::takes(ScrollStep step) {
    if (perform_(step)) return true;
    // At its end it hands the key on to one that it stands in; where there is none, the key has done its work.
    return canScroll_(step) && !(superview() && superview()->enclosingScrollView());
}

void NSScrollView::keyDown(NSEvent* e) {
    const Ref<NSScrollView> self(this);
    const Ref<NSEvent> kept(e);
    if (!takes(scrollStepForEvent(*e))) NSView::keyDown(e);
}

void NSScrollView::doCommandBySelector(SEL command) {
    const Ref<NSScrollView> self(this);
    const ScrollStep step = scrollStepForCommand(command);
    if (step == ScrollStep::none) {
        NSView::doCommandBySelector(command);
        return;
    }
    // In a text the caret stops at the ends, and the page stays where it is.
    const bool caret = step <= ScrollStep::lineRight || step >= ScrollStep::beginning;
    const bool inText = caret && window() && as<NSText>(window()->firstResponder());
    if (!inText && takes(step)) return;
    if (const Ref<NSResponder> next = nextResponder()) next->doCommandBySelector(command);
}

void NSScrollView::insertText(NSObject* text) {
    const Ref<NSScrollView> self(this);
    const Ref<NSObject> kept(text);
    // A space that a view below made of its key and did not want.
    const auto* s = as<NSString>(text);
    const bool space = s && s->isEqualTo(u" ");
    const bool back = NSEvent::currentModifierFlags() & NSShiftKeyMask;
    if (!space || !takes(back ? ScrollStep::pageUp : ScrollStep::pageDown)) NSView::insertText(text);
}

} // namespace libvue
