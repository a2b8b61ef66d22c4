#include <libvue/platform/graphics/NSDrawing.h>

#include <algorithm>
#include <array>

#include <libvue/platform/backend/Canvas.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/Palette.h>
#include <libvue/platform/graphics/PathGeometry.h>

namespace libvue {

namespace {

NSGraphicsContext* context() { return NSGraphicsContext::currentContext(); }

void drawPart(NSImage* image, const NSRect& rect, NSCompositingOperation operation, CGFloat alpha) {
    if (image && !NSIsEmptyRect(rect))
        image->drawInRect_fromRect_operation_fraction_respectFlipped_hints(rect, NSZeroRect, operation, alpha, YES,
                                                                           nullptr);
}

NSSize sizeOf(NSImage* image) { return image ? image->size() : NSZeroSize; }

} // namespace

void NSRectFill(const NSRect& rect) {
    if (context()) context()->fillRects_operation(&rect, 1, NSCompositeCopy);
}

void NSRectFillUsingOperation(const NSRect& rect, NSCompositingOperation operation) {
    if (context()) context()->fillRects_operation(&rect, 1, operation);
}

void NSRectFillList(const NSRect* rects, NSInteger count) {
    NSRectFillListUsingOperation(rects, count, NSCompositeCopy);
}

void NSRectFillListUsingOperation(const NSRect* rects, NSInteger count, NSCompositingOperation operation) {
    if (context() && rects && count > 0)
        context()->fillRects_operation(rects, static_cast<NSUInteger>(count), operation);
}

void NSRectFillListWithColors(const NSRect* rects, NSColor* const* colors, NSInteger count) {
    if (!context() || !rects || !colors) return;
    GraphicsStateScope saved;
    for (NSInteger i = 0; i < count; ++i) {
        context()->setFillColor(colors[i]);
        NSRectFill(rects[i]);
    }
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

void NSDottedFrameRect(const NSRect& rect) {
    if (!context() || NSIsEmptyRect(rect)) return;
    backend::Path path;
    outline::appendRect(path, NSInsetRect(rect, 0.5, 0.5));
    backend::Stroke stroke;
    stroke.dash = {1, 1};
    context()->strokePath(path, stroke);
}

void NSRectClip(const NSRect& rect) {
    if (context()) context()->canvas().clip(rect);
}

void NSRectClipList(const NSRect* rects, NSInteger count) {
    if (context() && (rects || count <= 0))
        context()->canvas().clip(rects, static_cast<std::size_t>(std::max<NSInteger>(count, 0)));
}

void NSDrawGrayBezel(const NSRect& rect, const NSRect& clip) {
    if (!context() || !NSIntersectsRect(rect, clip)) return;
    GraphicsStateScope saved;
    NSRectClip(clip);
    NSColor::controlBackgroundColor()->set();
    NSRectFill(rect);
    NSColor::systemColor(SystemColor::controlBorder)->set();
    NSFrameRect(rect);
}

void NSDrawWindowBackground(const NSRect& rect) {
    if (!context()) return;
    GraphicsStateScope saved;
    NSColor::windowBackgroundColor()->set();
    NSRectFill(rect);
}

void NSDrawThreePartImage(const NSRect& frame, NSImage* start, NSImage* center, NSImage* end, BOOL vertical,
                          NSCompositingOperation operation, CGFloat alpha, BOOL flipped) {
    // The start is at the left, or at the top as seen.
    const NSRectEdge first = vertical ? (flipped ? NSMinYEdge : NSMaxYEdge) : NSMinXEdge;
    const NSRectEdge last = vertical ? (flipped ? NSMaxYEdge : NSMinYEdge) : NSMaxXEdge;
    const auto length = [vertical](NSSize s) { return vertical ? s.height : s.width; };
    NSRect startRect, rest, endRect, middle;
    NSDivideRect(frame, &startRect, &rest, length(sizeOf(start)), first);
    NSDivideRect(rest, &endRect, &middle, length(sizeOf(end)), last);
    drawPart(start, startRect, operation, alpha);
    drawPart(center, middle, operation, alpha);
    drawPart(end, endRect, operation, alpha);
}

void NSDrawNinePartImage(const NSRect& frame, NSImage* topLeft, NSImage* top, NSImage* topRight, NSImage* left,
                         NSImage* center, NSImage* right, NSImage* bottomLeft, NSImage* bottom, NSImage* bottomRight,
                         NSCompositingOperation operation, CGFloat alpha, BOOL flipped) {
    const auto highest = [](NSImage* a, NSImage* b, NSImage* c) {
        return std::max({sizeOf(a).height, sizeOf(b).height, sizeOf(c).height});
    };
    NSRect topRow, rest, bottomRow, middleRow;
    NSDivideRect(frame, &topRow, &rest, highest(topLeft, top, topRight), flipped ? NSMinYEdge : NSMaxYEdge);
    NSDivideRect(rest, &bottomRow, &middleRow, highest(bottomLeft, bottom, bottomRight),
                 flipped ? NSMaxYEdge : NSMinYEdge);
    NSDrawThreePartImage(topRow, topLeft, top, topRight, NO, operation, alpha, flipped);
    NSDrawThreePartImage(middleRow, left, center, right, NO, operation, alpha, flipped);
    NSDrawThreePartImage(bottomRow, bottomLeft, bottom, bottomRight, NO, operation, alpha, flipped);
}

} // namespace libvue
