#include <libvue/platform/appkit/NSView.h>

#include <algorithm>

#include <libvue/platform/appkit/DrawingPass.h>
#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSViewExtras.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/ViewCoordinates.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>

namespace libvue {

namespace {

CoordinateMap mapBetween(const NSView* from, const NSView* to) {
    if (from == to) return {};
    if (to && from->superview() == to) return mapToSuperview(from);
    const CoordinateMap up = mapToBase(from);
    return to ? up.then(mapToBase(to).inverted()) : up;
}

} // namespace

// Changing.

void NSView::setFrame(const NSRect& frame) {
    // Layouts set every frame anew, and most of them stay as they were.
    if (frame == frame_) return;
    applyFrame_(frame);
}
void NSView::setFrameSize(const NSSize& size) { applyFrame_({frame_.origin, size}); }
void NSView::setFrameOrigin(const NSPoint& origin) { applyFrame_({origin, frame_.size}); }

void NSView::applyFrame_(const NSRect& frame) {
    const bool resized = frame.size != frame_.size;
    if (!resized && frame.origin == frame_.origin) return;
    const Ref<NSView> self(this);
    if (!hidden_ && superview_) {
        NSView* const s = superview_;
        // Most moves are parts of a layout pass that has marked the whole superview already.
        const bool marked = s->wholeDirty_ && (s->superview_ ? s->superview_->subtreeDirty_ : !s->window_);
        if (!marked && !DrawingScope::draws(s, frame_)) s->setNeedsDisplayInRect(frame_);
        if (!marked && !DrawingScope::draws(s, frame)) s->setNeedsDisplayInRect(frame);
    }
    const NSSize oldFrameSize = frame_.size;
    frame_ = frame;
    if (resized) {
        const NSSize oldSize = bounds_.size;
        if (!customBounds_) {
            bounds_.size = frame.size;
        } else {
            if (oldFrameSize.width != 0) bounds_.size.width *= frame.size.width / oldFrameSize.width;
            if (oldFrameSize.height != 0) bounds_.size.height *= frame.size.height / oldFrameSize.height;
        }
        setNeedsDisplay(YES);
        if (extras_ && window_) window_->invalidateCursorRectsForView(this);
        if (autoresizes_) resizeSubviewsWithOldSize(oldSize);
    }
    if (postsFrame_)
        NSNotificationCenter::defaultCenter()->postNotificationName_object(NSViewFrameDidChangeNotification, this);
}

void NSView::setBounds(const NSRect& bounds) {
    if (bounds == bounds_) return;
    const Ref<NSView> self(this);
    bounds_ = bounds;
    customBounds_ = bounds.size != frame_.size;
    setNeedsDisplay(YES);
    if (postsBounds_)
        NSNotificationCenter::defaultCenter()->postNotificationName_object(NSViewBoundsDidChangeNotification, this);
}

void NSView::setBoundsOrigin(const NSPoint& origin) { setBounds({origin, bounds_.size}); }
void NSView::setBoundsSize(const NSSize& size) { setBounds({bounds_.origin, size}); }

void NSView::resizeSubviewsWithOldSize(const NSSize& oldSize) {
    if (subviews_.empty()) return;
    // An observer of a subview's frame may change the list.
    for (const auto& v : subviews_.copy())
        if (v->superview_ == this) v->resizeWithOldSuperviewSize(oldSize);
}

namespace {

/// Shares the superview's change out evenly among the flexible ones of a near margin, a length and a far margin.
void autoresize(CGFloat& origin, CGFloat& length, CGFloat change, bool nearMargin, bool flexible, bool farMargin) {
    const int parts = int{nearMargin} + int{flexible} + int{farMargin};
    if (parts == 0) return;
    const CGFloat share = change / parts;
    if (nearMargin) origin += share;
    if (flexible) length = std::max(0.0, length + share);
}

} // namespace

void NSView::resizeWithOldSuperviewSize(const NSSize& oldSize) {
    if (mask_ == 0 || !superview_) return;
    const NSSize now = superview_->bounds_.size;
    NSRect f = frame_;
    autoresize(f.origin.x, f.size.width, now.width - oldSize.width, mask_ & NSViewMinXMargin,
               mask_ & NSViewWidthSizable, mask_ & NSViewMaxXMargin);
    autoresize(f.origin.y, f.size.height, now.height - oldSize.height, mask_ & NSViewMinYMargin,
               mask_ & NSViewHeightSizable, mask_ & NSViewMaxYMargin);
    setFrame(f);
}

// Converting.

NSPoint NSView::convertPoint_toView(NSPoint p, const NSView* view) const { return mapBetween(this, view).apply(p); }
NSSize NSView::convertSize_toView(NSSize s, const NSView* view) const { return mapBetween(this, view).apply(s); }
NSRect NSView::convertRect_toView(const NSRect& r, const NSView* view) const { return mapBetween(this, view).apply(r); }

NSPoint NSView::convertPoint_fromView(NSPoint p, const NSView* view) const {
    return mapBetween(this, view).inverted().apply(p);
}
NSSize NSView::convertSize_fromView(NSSize s, const NSView* view) const {
    return mapBetween(this, view).inverted().apply(s);
}
NSRect NSView::convertRect_fromView(const NSRect& r, const NSView* view) const {
    return mapBetween(this, view).inverted().apply(r);
}

// What can be seen.

NSRect NSView::visibleRect() const {
    if (isHiddenOrHasHiddenAncestor()) return NSZeroRect;
    NSRect r = bounds_;
    CoordinateMap toHere;
    for (const NSView* v = this; v->superview_ && !NSIsEmptyRect(r); v = v->superview_) {
        // r stays in this view's coordinates; each ancestor's bounds come down to it.
        toHere = mapToSuperview(v).inverted().then(toHere);
        r = NSIntersectionRect(r, toHere.apply(v->superview_->bounds_));
    }
    return r;
}

BOOL NSView::scrollRectToVisible(const NSRect& r) {
    for (NSView* v = superview_; v; v = v->superview_)
        if (auto* clip = as<NSClipView>(v)) return clip->scrollRectToVisible_ofView(r, this);
    return NO;
}

} // namespace libvue
