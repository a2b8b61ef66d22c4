#include <libvue/platform/appkit/DrawingPass.h>

#include <limits>

namespace libvue {

namespace {

CGFloat area(const NSRect& r) { return r.size.width * r.size.height; }

} // namespace

void NSView::DirtySink::add(const NSRect& rect) {
    if (NSIsEmptyRect(rect)) return;
    NSRect r = rect;
    // Two rectangles become one when that draws little more than both.
    for (std::size_t i = 0; i < rects.size();) {
        const NSRect u = NSUnionRect(rects[i], r);
        if (area(u) <= 1.3 * (area(rects[i]) + area(r))) {
            r = u;
            rects.erase(rects.begin() + static_cast<std::ptrdiff_t>(i));
            i = 0;
        } else
            ++i;
    }
    if (rects.size() < most) {
        rects.push_back(r);
        return;
    }
    std::size_t best = 0;
    CGFloat least = std::numeric_limits<CGFloat>::infinity();
    for (std::size_t i = 0; i < rects.size(); ++i) {
        const CGFloat growth = area(NSUnionRect(rects[i], r)) - area(rects[i]);
        if (growth < least) {
            least = growth;
            best = i;
        }
    }
    const NSRect u = NSUnionRect(rects[best], r);
    rects.erase(rects.begin() + static_cast<std::ptrdiff_t>(best));
    add(u);
}

NSRect NSView::DirtySink::bounds() const noexcept {
    NSRect all = NSZeroRect;
    for (const NSRect& r : rects)
        all = NSUnionRect(all, r);
    return all;
}

bool DrawingScope::drawsBelow(const NSView* superview, const NSRect& r) {
    NSRect part = r;
    for (const NSView* v = superview; v != view_; v = v->superview()) {
        if (!v) return false;
        part = v->frame();
    }
    if (!asked_) {
        visible_ = view_->visibleRect();
        asked_ = true;
    }
    part = NSIntersectionRect(part, visible_);
    return NSIsEmptyRect(part) || NSEqualRects(NSIntersectionRect(part, clip_), part);
}

} // namespace libvue
