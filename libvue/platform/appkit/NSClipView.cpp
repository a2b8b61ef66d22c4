#include <libvue/platform/appkit/NSClipView.h>

#include <algorithm>

#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>

namespace libvue {

void NSClipView::describe(ClassDescription<NSClipView, NSView>&) {}

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
    if (!document_) return bounds().origin;
    const NSRect d = document_->frame();
    const NSSize room = bounds().size;
    const auto held = [](CGFloat v, CGFloat low, CGFloat extent, CGFloat shown, bool high) {
        // A document smaller than its room stands at its beginning.
        if (extent <= shown) return high ? low + extent - shown : low;
        return std::max(low, std::min(v, low + extent - shown));
    };
    return {held(p.x, d.origin.x, d.size.width, room.width, false),
            held(p.y, d.origin.y, d.size.height, room.height, !isFlipped())};
}

void NSClipView::scrollToPoint(NSPoint p) { setBoundsOrigin(p); }

BOOL NSClipView::scrollRectToVisible_ofView(const NSRect& r, NSView* view) {
    const NSRect target = convertRect_fromView(r, view);
    const NSRect b = bounds();
    const auto shifted = [](CGFloat origin, CGFloat shown, CGFloat low, CGFloat extent) {
        if (low < origin || extent > shown) return low;
        if (low + extent > origin + shown) return low + extent - shown;
        return origin;
    };
    const NSPoint wanted{shifted(b.origin.x, b.size.width, target.origin.x, target.size.width),
                         shifted(b.origin.y, b.size.height, target.origin.y, target.size.height)};
    const NSPoint p = constrainScrollPoint(wanted);
    const bool moved = p != b.origin;
    const Ref<NSClipView> self(this);
    if (moved) {
        scrollToPoint(p);
        if (auto* s = as<NSScrollView>(superview())) s->reflectScrolledClipView(this);
    }
    // An outer scroll view may have to bring this one into view.
    if (superview())
        superview()->scrollRectToVisible(convertRect_toView(NSIntersectionRect(target, bounds()), superview()));
    return moved;
}

void NSClipView::documentFrameDidChange(NSNotification*) {
    const Ref<NSClipView> self(this);
    const NSPoint p = constrainScrollPoint(bounds().origin);
    if (p != bounds().origin) scrollToPoint(p);
    if (auto* s = as<NSScrollView>(superview())) s->reflectScrolledClipView(this);
}

void NSClipView::resizeSubviewsWithOldSize(const NSSize& oldSize) {
    const Ref<NSClipView> self(this);
    // A document that does not run from the top stays with its top edge where it was.
    if (document_ && !isFlipped()) {
        NSPoint o = bounds().origin;
        o.y += oldSize.height - bounds().size.height;
        setBoundsOrigin(o);
    }
    NSView::resizeSubviewsWithOldSize(oldSize);
    const NSPoint p = constrainScrollPoint(bounds().origin);
    if (p != bounds().origin) scrollToPoint(p);
}

void NSClipView::drawRect(const NSRect& r) {
    if (!drawsBackground_) return;
    backgroundColor()->setFill();
    NSRectFill(r);
}

} // namespace libvue
