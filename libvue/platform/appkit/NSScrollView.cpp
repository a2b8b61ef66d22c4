#include <libvue/platform/appkit/NSScrollView.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSScroller.h>
#include <libvue/platform/appkit/ScopeExit.h>
#include <libvue/platform/appkit/ThemeDessin.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/Palette.h>

namespace libvue {

namespace {
constexpr CGFloat kBorder = 1;
} // namespace

void NSScrollView::describe(ClassDescription<NSScrollView, NSView>& c) {
    c.answers<&NSScrollView::scrollerMoved>("scrollerMoved:");
    c.answers<&NSScrollView::pageDown>("scrollPageDown:");
    c.answers<&NSScrollView::pageUp>("scrollPageUp:");
    c.answers<&NSScrollView::pageDown>("pageDown:");
    c.answers<&NSScrollView::pageUp>("pageUp:");
    c.answers<&NSScrollView::scrollLineDown>("scrollLineDown:");
    c.answers<&NSScrollView::scrollLineUp>("scrollLineUp:");
    c.answers<&NSScrollView::scrollToBeginningOfDocument>("scrollToBeginningOfDocument:");
    c.answers<&NSScrollView::scrollToEndOfDocument>("scrollToEndOfDocument:");
}

NSScrollView::NSScrollView() : NSScrollView(NSZeroRect) {}
NSScrollView::NSScrollView(const NSRect& frame) : NSView(frame) { setContentView(make<NSClipView>()); }
NSScrollView::~NSScrollView() { NSNotificationCenter::defaultCenter()->removeObserver(this); }

NSView* NSScrollView::documentView() const { return clip_ ? clip_->documentView() : nullptr; }

void NSScrollView::setDocumentView(NSView* view) {
    const Ref<NSView> kept(view);
    clip_->setDocumentView(view);
    tile();
}

NSClipView* NSScrollView::contentView() const noexcept { return clip_; }

void NSScrollView::setContentView(NSClipView* clip) {
    if (!clip || clip_.get() == clip) return;
    const Ref<NSClipView> kept(clip);
    if (clip_) {
        NSNotificationCenter::defaultCenter()->removeObserver_name_object(this, NSViewBoundsDidChangeNotification,
                                                                          clip_);
        clip_->removeFromSuperview();
    }
    clip_ = clip;
    addSubview_positioned_relativeTo(clip, NSWindowBelow, nullptr);
    NSNotificationCenter::defaultCenter()->addObserver<&NSScrollView::documentChanged>(
        this, NSViewBoundsDidChangeNotification, clip);
    tile();
}

NSRect NSScrollView::documentVisibleRect() const { return clip_->documentVisibleRect(); }
NSSize NSScrollView::contentSize() const { return clip_->frame().size; }

void NSScrollView::setBorderType(NSBorderType t) {
    border_ = t;
    tile();
    setNeedsDisplay(YES);
}
NSColor* NSScrollView::backgroundColor() const { return clip_->backgroundColor(); }
void NSScrollView::setBackgroundColor(NSColor* color) { clip_->setBackgroundColor(color); }
BOOL NSScrollView::drawsBackground() const { return clip_->drawsBackground(); }
void NSScrollView::setDrawsBackground(BOOL f) { clip_->setDrawsBackground(f); }

NSScroller* NSScrollView::verticalScroller() const noexcept { return vertical_; }
NSScroller* NSScrollView::horizontalScroller() const noexcept { return horizontal_; }

void NSScrollView::addScroller(Ref<NSScroller>& scroller, NSSize size) {
    if (scroller) return;
    scroller = make<NSScroller>(NSRect{{0, 0}, size});
    scroller->setTarget(this);
    scroller->setAction(sel("scrollerMoved:"));
    addSubview(scroller);
}
void NSScrollView::setHasVerticalScroller(BOOL f) {
    hasVertical_ = f;
    if (f) addScroller(vertical_, {NSScroller::scrollerWidth(), 100});
    tile();
}
void NSScrollView::setHasHorizontalScroller(BOOL f) {
    hasHorizontal_ = f;
    if (f) addScroller(horizontal_, {100, NSScroller::scrollerWidth()});
    tile();
}
void NSScrollView::setAutohidesScrollers(BOOL f) {
    autohides_ = f;
    tile();
}

void NSScrollView::tile() {
    if (tiling_ || !clip_) return;
    const Ref<NSScrollView> self(this);
    {
        tiling_ = true;
        const ScopeExit ended([this] { tiling_ = false; });
        placeParts();
    }
    reflectScrolledClipView(clip_);
}

void NSScrollView::placeParts() {
    const CGFloat edge = border_ == NSNoBorder ? 0 : kBorder;
    const NSRect room = NSInsetRect(bounds(), edge, edge);
    // The scrollers lie over the content, at its far edges.
    clip_->setFrame({room.origin, {std::max(0.0, room.size.width), std::max(0.0, room.size.height)}});
    const NSRect document = clip_->documentRect();
    // The clip view may show its document at another scale: its bounds tell how much fits.
    const NSSize shown = clip_->bounds().size;
    const bool tall = document.size.height > shown.height, wide = document.size.width > shown.width;
    const bool showVertical = hasVertical_ && (tall || !autohides_),
               showHorizontal = hasHorizontal_ && (wide || !autohides_);
    const CGFloat w = NSScroller::scrollerWidth();
    if (vertical_) {
        vertical_->setHidden(!showVertical);
        vertical_->setFrame(
            {{NSMaxX(room) - w, room.origin.y}, {w, std::max(w, room.size.height - (showHorizontal ? w : 0))}});
    }
    if (horizontal_) {
        horizontal_->setHidden(!showHorizontal);
        horizontal_->setFrame(
            {{room.origin.x, NSMaxY(room) - w}, {std::max(w, room.size.width - (showVertical ? w : 0)), w}});
    }
}

void NSScrollView::reflectScrolledClipView(NSClipView* clip) {
    if (clip != clip_.get() || tiling_) return;
    const NSRect d = clip->documentRect(), b = clip->bounds();
    const auto set = [](NSScroller* s, CGFloat offset, CGFloat extent, CGFloat shown) {
        if (!s) return;
        s->setKnobProportion(extent > 0 ? shown / extent : 1);
        s->setPosition(extent > shown ? offset / (extent - shown) : 0);
    };
    const NSPoint offset = scrolledBy();
    set(vertical_, offset.y, d.size.height, b.size.height);
    set(horizontal_, offset.x, d.size.width, b.size.width);
    if (autohides_ && ((vertical_ && hasVertical_ && vertical_->isHidden() != (d.size.height <= b.size.height)) ||
                       (horizontal_ && hasHorizontal_ && horizontal_->isHidden() != (d.size.width <= b.size.width))))
        tile();
}

NSPoint NSScrollView::scrolledBy() const {
    const NSRect d = clip_->documentRect(), b = clip_->bounds();
    return {b.origin.x - d.origin.x, clip_->isFlipped() ? b.origin.y - d.origin.y : NSMaxY(d) - NSMaxY(b)};
}

void NSScrollView::documentChanged(NSNotification*) { reflectScrolledClipView(clip_); }

void NSScrollView::scrollBy(CGFloat dx, CGFloat dy) {
    NSPoint o = clip_->bounds().origin;
    o.x += dx;
    o.y += clip_->isFlipped() ? dy : -dy;
    const NSPoint p = clip_->constrainScrollPoint(o);
    if (p == clip_->bounds().origin) return;
    const Ref<NSScrollView> self(this);
    clip_->scrollToPoint(p);
    reflectScrolledClipView(clip_);
}

void NSScrollView::scrollerMoved(NSObject* sender) {
    auto* s = as<NSScroller>(sender);
    if (!s) return;
    const bool vertical = s == vertical_.get();
    const NSRect b = clip_->bounds(), d = clip_->documentRect();
    const CGFloat page = std::max(1.0, (vertical ? b.size.height : b.size.width) - pageScroll_);
    CGFloat by = 0;
    switch (s->hitPart()) {
    case NSScrollerDecrementPage:
        by = -page;
        break;
    case NSScrollerIncrementPage:
        by = page;
        break;
    default: {
        const CGFloat offset = vertical ? scrolledBy().y : scrolledBy().x;
        const CGFloat extent = vertical ? d.size.height - b.size.height : d.size.width - b.size.width;
        by = std::round(s->position() * extent) - offset;
    }
    }
    vertical ? scrollBy(0, by) : scrollBy(by, 0);
}

void NSScrollView::pageDown(NSObject*) { scrollBy(0, std::max(1.0, contentSize().height - pageScroll_)); }
void NSScrollView::pageUp(NSObject*) { scrollBy(0, -std::max(1.0, contentSize().height - pageScroll_)); }
void NSScrollView::scrollLineDown(NSObject*) { scrollBy(0, lineScroll_); }
void NSScrollView::scrollLineUp(NSObject*) { scrollBy(0, -lineScroll_); }
void NSScrollView::scrollToBeginningOfDocument(NSObject*) { scrollBy(0, -clip_->documentRect().size.height); }
void NSScrollView::scrollToEndOfDocument(NSObject*) { scrollBy(0, clip_->documentRect().size.height); }

void NSScrollView::scrollWheel(NSEvent* e) {
    const CGFloat factor = e->hasPreciseScrollingDeltas() ? 1 : lineScroll_ / NSEvent::pointsPerWheelLine_;
    CGFloat dx = -e->scrollingDeltaX() * factor, dy = -e->scrollingDeltaY() * factor;
    if ((e->modifierFlags() & NSShiftKeyMask) && dx == 0) std::swap(dx, dy);
    const NSPoint before = clip_->bounds().origin;
    const Ref<NSScrollView> self(this);
    scrollBy(dx, dy);
    // What cannot scroll any further passes the wheel on.
    if (clip_->bounds().origin == before) NSView::scrollWheel(e);
}

void NSScrollView::drawRect(const NSRect&) {
    if (border_ != NSNoBorder)
        strokeRoundedInside(alignedToPixels(bounds()), 0, NSColor::systemColor(SystemColor::controlBorder));
}

void NSScrollView::resizeSubviewsWithOldSize(const NSSize&) { tile(); }

AccessibilityDescription NSScrollView::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"scroll area"_ns;
    return d;
}

} // namespace libvue
