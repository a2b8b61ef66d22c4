#include <libvue/platform/appkit/WindowFrameView.h>

#include <cmath>
#include <typeinfo>

#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/ViewPicture.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>

namespace libvue {

namespace {

/// The rectangle without another one that covers it from side to side; as it is where that leaves more than one.
NSRect without(const NSRect& r, const NSRect& cover) {
    const NSRect c = NSIntersectionRect(r, cover);
    if (NSIsEmptyRect(c)) return r;
    NSRect left = r;
    const auto cut = [](CGFloat& origin, CGFloat& size, CGFloat from, CGFloat to) {
        if (from <= origin) {
            size = origin + size - to;
            origin = to;
        } else if (to >= origin + size)
            size = from - origin;
    };
    if (c.size.height == r.size.height)
        cut(left.origin.x, left.size.width, NSMinX(c), NSMaxX(c));
    else if (c.size.width == r.size.width)
        cut(left.origin.y, left.size.height, NSMinY(c), NSMaxY(c));
    return left;
}

bool isOnPixels(const NSRect& r, CGFloat scale) {
    const auto whole = [scale](CGFloat v) { return std::round(v * scale) == v * scale; };
    return whole(NSMinX(r)) && whole(NSMinY(r)) && whole(NSMaxX(r)) && whole(NSMaxY(r));
}

/// Whether its drawing moves no view below it: what another kind moves may lay bare what was covered.
bool drawsQuietly(const NSView* v) { return typeid(*v) == typeid(NSView) || typeid(*v) == typeid(NSScrollView); }

/// Takes out of `bare`, in base coordinates, what opaque views will paint.
void takeCovered(const NSView* v, CGFloat scale, NSRect& bare) {
    if (NSIsEmptyRect(bare) || v->isHidden() || v->alphaValue() < 1) return;
    if (v->isOpaque()) {
        const NSRect painted = v->convertRect_toView(v->visibleRect(), nullptr);
        if (isOnPixels(painted, scale)) bare = without(bare, painted);
    } else if (drawsQuietly(v) && !ViewPicture::any_()) {
        for (const NSView* below : v->subviews())
            takeCovered(below, scale, bare);
    }
}

} // namespace

void WindowFrameView::describe(ClassDescription<WindowFrameView, NSView>&) {}
WindowFrameView::WindowFrameView(const NSRect& frame) : NSView(frame) {}
WindowFrameView::~WindowFrameView() = default;

BOOL WindowFrameView::isOpaque() const { return window() && window()->isOpaque(); }

void WindowFrameView::drawRect(const NSRect& dirtyRect) {
    NSWindow* w = window();
    if (!w) return;
    NSRect bare = dirtyRect;
    if (const NSView* content = w->contentView()) takeCovered(content, w->backingScaleFactor(), bare);
    if (NSIsEmptyRect(bare) || (ViewPicture::any_() && ViewPicture::cover_(w, bare))) return;
    // By copy: what a transparent window showed before must not shine through.
    w->backgroundColor()->set();
    NSRectFill(bare);
}

void WindowFrameView::resizeSubviewsWithOldSize(const NSSize& oldSize) {
    NSView* content = window() ? window()->contentView() : nullptr;
    if (content && content->superview() == this)
        content->setFrame(bounds());
    else
        NSView::resizeSubviewsWithOldSize(oldSize);
}

} // namespace libvue
