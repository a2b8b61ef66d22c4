#include <libvue/platform/appkit/NSClipView.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include <libvue/platform/appkit/Autoscroller.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSTimer.h>
#include <libvue/platform/foundation/ScopeExit.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>

namespace libvue {

namespace {

bool isFinite(NSPoint p) { return std::isfinite(p.x) && std::isfinite(p.y); }

/// A scroll position on one axis: not past the document, and at its beginning where all of it shows.
CGFloat held(CGFloat v, CGFloat now, CGFloat low, CGFloat extent, CGFloat shown, bool fromHigh) {
    if (!std::isfinite(low) || !std::isfinite(extent)) return now;
    if (!(extent > shown)) return fromHigh ? low + extent - shown : low;
    if (std::isnan(v)) v = now;
    return std::max(low, std::min(v, low + extent - shown));
}

} // namespace

void NSClipView::describe(ClassDescription<NSClipView, NSView>& c) {
    c.answers<&NSClipView::autoscroll>("autoscroll:");
}

NSClipView::NSClipView() = default;
NSClipView::NSClipView(const NSRect& frame) : NSView(frame) {}
NSClipView::~NSClipView() { NSNotificationCenter::defaultCenter()->removeObserver(this); }

void NSClipView::setDocumentView(NSView* view) {
    const Ref<NSView> kept(view);
    if (document_ == view && (!view || view->superview() == this)) return;
    if (NSView* old = document_) old->removeFromSuperview();
    // Only then: a view that comes from another place of this clip view is forgotten as it leaves.
    if (view && view->superview() == this) view->removeFromSuperview();
    document_ = view;
    setNeedsDisplay(YES);
    if (!view) return;
    addSubview(view);
    NSNotificationCenter::defaultCenter()->addObserver<&NSClipView::documentFrameDidChange>(
        this, NSViewFrameDidChangeNotification, view);
    // A document starts at its top left corner.
    const NSRect f = view->frame();
    scrollToPoint(constrainScrollPoint({f.origin.x, view->isFlipped() ? f.origin.y : NSMaxY(f)}));
}

void NSClipView::willRemoveSubview(NSView* view) {
    NSView::willRemoveSubview(view);
    if (document_ == view) {
        NSNotificationCenter::defaultCenter()->removeObserver_name_object(this, NSViewFrameDidChangeNotification, view);
        document_ = nullptr;
    }
}

BOOL NSClipView::isFlipped() const { return document_ && document_->isFlipped(); }

NSRect NSClipView::documentRect() const { return document_ ? document_->frame() : bounds(); }

NSRect NSClipView::documentVisibleRect() const {
    return document_ ? convertRect_toView(bounds(), document_.get()) : NSZeroRect;
}

NSColor* NSClipView::backgroundColor() const noexcept {
    return background_ ? background_.get() : NSColor::controlBackgroundColor();
}
void NSClipView::setBackgroundColor(NSColor* color) {
    background_ = color;
    setNeedsDisplay(YES);
}
void NSClipView::setDrawsBackground(BOOL f) {
    drawsBackground_ = f;
    setNeedsDisplay(YES);
}

NSPoint NSClipView::constrainScrollPoint(NSPoint p) const {
    const NSRect b = bounds();
    if (!document_) return b.origin;
    const NSRect d = document_->frame();
    return {held(p.x, b.origin.x, d.origin.x, d.size.width, b.size.width, false),
            held(p.y, b.origin.y, d.origin.y, d.size.height, b.size.height, !isFlipped())};
}

void NSClipView::scrollToPoint(NSPoint p) {
    if (isFinite(p)) setBoundsOrigin(p);
}

// Steps.

NSPoint NSClipView::onPixels(NSPoint p) const {
    if (!window()) return p;
    const CGFloat scale = window()->backingScaleFactor();
    const NSSize shown = bounds().size, room = frame().size;
    const auto nearest = [scale](CGFloat v, CGFloat inside, CGFloat outside) {
        const CGFloat pixels = inside > 0 && outside > 0 ? scale * outside / inside : scale;
        return std::round(v * pixels) / pixels;
    };
    return {nearest(p.x, shown.width, room.width), nearest(p.y, shown.height, room.height)};
}

NSPoint NSClipView::exactOrigin() const noexcept {
    const NSPoint now = bounds().origin;
    return {now.x == placed_.x ? exact_.x : now.x, now.y == placed_.y ? exact_.y : now.y};
}

void NSClipView::reflect() {
    if (auto* s = as<NSScrollView>(superview())) s->reflectScrolledClipView(this);
}

BOOL NSClipView::scrollBy_(NSSize distance) {
    const NSPoint from = exactOrigin();
    return scrollTo_({from.x + distance.width, from.y + distance.height});
}

BOOL NSClipView::scrollTo_(NSPoint origin) {
    if (!isFinite(origin)) return NO;
    const NSPoint from = exactOrigin(), now = bounds().origin;
    // Not the virtual one: positions that a subclass allows may lie further apart than a step.
    const NSPoint to = NSClipView::constrainScrollPoint(origin);
    if (to == from) return NO;
    const NSPoint rounded = onPixels(to);
    // An axis that does not move stays where it is, on pixels or not.
    const NSPoint p = constrainScrollPoint({to.x == from.x ? now.x : rounded.x, to.y == from.y ? now.y : rounded.y});
    exact_ = to;
    placed_ = p;
    if (p == now) return YES;
    const Ref<NSClipView> self(this);
    scrollToPoint(p);
    reflect();
    return YES;
}

BOOL NSClipView::autoscroll(NSEvent* e) {
    if (!e || e->window() != window() || !window()) return NO;
    const Ref<NSClipView> self(this);
    const Ref<NSEvent> kept(e);
    if (!autoscroller_) autoscroller_ = std::make_unique<Autoscroller>(*this);
    return autoscroller_->step(e) || libvue::autoscroll(superview(), e);
}

BOOL autoscroll(NSView* view, NSEvent* drag) {
    for (NSView* v = view; v; v = v->superview())
        if (auto* clip = as<NSClipView>(v)) return clip->autoscroll(drag);
    return NO;
}

BOOL NSClipView::scrollRectToVisible_ofView(const NSRect& r, NSView* view) {
    const NSRect target = convertRect_fromView(r, view);
    const NSRect b = bounds();
    if (!isFinite(target.origin) || !isFinite({target.size.width, target.size.height})) return NO;
    const auto shifted = [](CGFloat origin, CGFloat shown, CGFloat low, CGFloat extent) {
        if (low < origin || extent > shown) return low;
        if (low + extent > origin + shown) return low + extent - shown;
        return origin;
    };
    const NSPoint wanted{shifted(b.origin.x, b.size.width, target.origin.x, target.size.width),
                         shifted(b.origin.y, b.size.height, target.origin.y, target.size.height)};
    const NSPoint rounded = onPixels(wanted);
    const NSPoint p = constrainScrollPoint(
        {wanted.x == b.origin.x ? wanted.x : rounded.x, wanted.y == b.origin.y ? wanted.y : rounded.y});
    const bool moved = p != b.origin;
    const Ref<NSClipView> self(this);
    if (moved) {
        scrollToPoint(p);
        reflect();
    }
    // An outer scroll view may have to bring this one into view.
    if (superview())
        superview()->scrollRectToVisible(convertRect_toView(NSIntersectionRect(target, bounds()), superview()));
    return moved;
}

void NSClipView::documentFrameDidChange(NSNotification*) {
    // While the room changes the document follows it: the end of that says where it stands.
    if (resizing_) return;
    const Ref<NSClipView> self(this);
    const NSPoint p = constrainScrollPoint(bounds().origin);
    if (p != bounds().origin) scrollToPoint(p);
    reflect();
}

void NSClipView::resizeSubviewsWithOldSize(const NSSize& oldSize) {
    const Ref<NSClipView> self(this);
    // A document that does not run from the top stays with its top edge where it was.
    const bool fromBottom = document_ && !isFlipped();
    const CGFloat before = fromBottom ? NSMaxY(document_->frame()) : 0;
    {
        const ScopeExit ended([this, outer = std::exchange(resizing_, true)] { resizing_ = outer; });
        NSView::resizeSubviewsWithOldSize(oldSize);
    }
    NSPoint o = bounds().origin;
    if (fromBottom && document_) o.y += oldSize.height - bounds().size.height + NSMaxY(document_->frame()) - before;
    const NSPoint p = constrainScrollPoint(o);
    if (p != bounds().origin) scrollToPoint(p);
    reflect();
}

void NSClipView::drawRect(const NSRect& r) {
    if (!drawsBackground_) return;
    backgroundColor()->setFill();
    NSRectFill(r);
}

} // namespace libvue
