#include <libvue/platform/appkit/BalloonPlacement.h>

#include <algorithm>
#include <array>

namespace libvue {

using namespace balloon;

namespace {

constexpr NSUInteger kEdges = 4;

constexpr bool isVertical(NSRectEdge edge) noexcept { return edge == NSMinYEdge || edge == NSMaxYEdge; }
constexpr NSRectEdge turned(NSRectEdge edge, NSUInteger by) noexcept {
    return static_cast<NSRectEdge>((static_cast<NSUInteger>(edge) + by) % kEdges);
}

/// The body beside the anchor, wherever the screen ends.
NSRect beside(const NSRect& anchor, NSSize size, NSRectEdge edge) noexcept {
    NSRect r{{NSMidX(anchor) - size.width / 2, NSMidY(anchor) - size.height / 2}, size};
    switch (edge) {
    case NSMinXEdge:
        r.origin.x = NSMinX(anchor) - kArrowLength - size.width;
        break;
    case NSMinYEdge:
        r.origin.y = NSMinY(anchor) - kArrowLength - size.height;
        break;
    case NSMaxXEdge:
        r.origin.x = NSMaxX(anchor) + kArrowLength;
        break;
    case NSMaxYEdge:
        r.origin.y = NSMaxY(anchor) + kArrowLength;
        break;
    }
    return r;
}

/// How much room there is beyond that side of the anchor, across it and along it.
NSSize roomBeyond(const NSRect& anchor, const NSRect& visible, NSRectEdge edge) noexcept {
    NSSize room = visible.size;
    switch (edge) {
    case NSMinXEdge:
        room.width = NSMinX(anchor) - NSMinX(visible) - kArrowLength;
        break;
    case NSMinYEdge:
        room.height = NSMinY(anchor) - NSMinY(visible) - kArrowLength;
        break;
    case NSMaxXEdge:
        room.width = NSMaxX(visible) - NSMaxX(anchor) - kArrowLength;
        break;
    case NSMaxYEdge:
        room.height = NSMaxY(visible) - NSMaxY(anchor) - kArrowLength;
        break;
    }
    return room;
}

/// The lower end is held last: of what is larger than the screen, its beginning shows.
CGFloat held(CGFloat at, CGFloat length, CGFloat low, CGFloat high) noexcept {
    return std::max(std::min(at, high - length), low);
}

} // namespace

BalloonPlacement placeBalloon(const NSRect& anchor, const NSRect& visible, NSSize content,
                              NSRectEdge preferred) noexcept {
    const std::array<NSRectEdge, kEdges> order{preferred, turned(preferred, 2), turned(preferred, 1),
                                               turned(preferred, 3)};
    BalloonPlacement p;
    p.edge = preferred;
    CGFloat most = -1;
    for (const NSRectEdge edge : order) {
        const NSSize room = roomBeyond(anchor, visible, edge);
        const CGFloat shown =
            std::max(0.0, std::min(room.width, content.width)) * std::max(0.0, std::min(room.height, content.height));
        if (shown <= most) continue;
        most = shown;
        p.edge = edge;
    }
    p.body = beside(anchor, content, p.edge);
    p.body.origin.x = held(p.body.origin.x, content.width, NSMinX(visible), NSMaxX(visible));
    p.body.origin.y = held(p.body.origin.y, content.height, NSMinY(visible), NSMaxY(visible));
    p.window = NSInsetRect(p.body, -kShadowRoom, -kShadowRoom);
    constexpr CGFloat less = kShadowRoom - kArrowLength;
    switch (p.edge) {
    case NSMinXEdge:
        p.window.size.width -= less;
        break;
    case NSMinYEdge:
        p.window.size.height -= less;
        break;
    case NSMaxXEdge:
        p.window.origin.x += less;
        p.window.size.width -= less;
        break;
    case NSMaxYEdge:
        p.window.origin.y += less;
        p.window.size.height -= less;
        break;
    }
    return p;
}

CGFloat balloonArrowCentre(const NSRect& body, const NSRect& anchor, NSRectEdge edge) noexcept {
    constexpr CGFloat end = kRadius + kArrowHalf;
    const bool across = isVertical(edge);
    const CGFloat low = across ? NSMinX(body) : NSMinY(body);
    const CGFloat high = across ? NSMaxX(body) : NSMaxY(body);
    // On a side shorter than arrow and corners the middle is best.
    if (high - low < 2 * end) return (low + high) / 2;
    return std::clamp(across ? NSMidX(anchor) : NSMidY(anchor), low + end, high - end);
}

} // namespace libvue
