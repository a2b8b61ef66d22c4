#include <libvue/platform/graphics/NSDrawing.h>

#include <array>

#include <libvue/platform/backend/Canvas.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>

namespace libvue {

namespace {

NSGraphicsContext* context() { return NSGraphicsContext::currentContext(); }

} // namespace

void NSRectFill(const NSRect& rect) {
    if (context()) context()->fillRects_operation(&rect, 1, NSCompositeCopy);
}

void NSRectFillUsingOperation(const NSRect& rect, NSCompositingOperation operation) {
    if (context()) context()->fillRects_operation(&rect, 1, operation);
}

void NSEraseRect(const NSRect& rect) {
    if (context()) context()->canvas().fillRect(rect, {0, 0, 0, 0}, backend::Compositing::clear);
}

void NSFrameRect(const NSRect& rect) { NSFrameRectWithWidth(rect, 1); }

void NSFrameRectWithWidth(const NSRect& rect, CGFloat width) {
    NSFrameRectWithWidthUsingOperation(rect, width, NSCompositeCopy);
}

void NSFrameRectWithWidthUsingOperation(const NSRect& rect, CGFloat width, NSCompositingOperation operation) {
    if (!context() || NSIsEmptyRect(rect) || !(width > 0)) return;
    std::array<NSRect, 4> sides;
    NSRect rest = rect;
    static constexpr std::array<NSRectEdge, 4> edges{NSMinYEdge, NSMaxYEdge, NSMinXEdge, NSMaxXEdge};
    // One after the other, so that no corner is painted twice.
    for (std::size_t i = 0; i < edges.size(); ++i) {
        const NSRect from = rest;
        NSDivideRect(from, &sides[i], &rest, width, edges[i]);
    }
    context()->fillRects_operation(sides.data(), sides.size(), operation);
}

void NSRectClip(const NSRect& rect) {
    if (context()) context()->canvas().clip(rect);
}

} // namespace libvue
