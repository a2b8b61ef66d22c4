#include <libvue/platform/appkit/CoordinateMap.h>

#include <cmath>

namespace libvue {

NSRect CoordinateMap::apply(const NSRect& r) const noexcept {
    NSRect out{{r.origin.x * scaleX + x, r.origin.y * scaleY + y}, {r.size.width * scaleX, r.size.height * scaleY}};
    if (out.size.width < 0 && r.size.width >= 0) {
        out.origin.x += out.size.width;
        out.size.width = -out.size.width;
    }
    if (out.size.height < 0 && r.size.height >= 0) {
        out.origin.y += out.size.height;
        out.size.height = -out.size.height;
    }
    return out;
}

NSSize CoordinateMap::apply(NSSize s) const noexcept {
    return {s.width * std::abs(scaleX), s.height * std::abs(scaleY)};
}

CoordinateMap CoordinateMap::inverted() const noexcept {
    const CGFloat ix = scaleX != 0 ? 1 / scaleX : 0, iy = scaleY != 0 ? 1 / scaleY : 0;
    return {ix, iy, -x * ix, -y * iy};
}

CoordinateMap CoordinateMap::toSuperview(const NSRect& frame, const NSRect& bounds, BOOL flipped,
                                         BOOL superFlipped) noexcept {
    CoordinateMap m;
    if (bounds.size.width != frame.size.width && bounds.size.width != 0)
        m.scaleX = frame.size.width / bounds.size.width;
    if (bounds.size.height != frame.size.height && bounds.size.height != 0)
        m.scaleY = frame.size.height / bounds.size.height;
    m.x = frame.origin.x - bounds.origin.x * m.scaleX;
    if (flipped == superFlipped) {
        m.y = frame.origin.y - bounds.origin.y * m.scaleY;
    } else {
        m.y = frame.origin.y + frame.size.height + bounds.origin.y * m.scaleY;
        m.scaleY = -m.scaleY;
    }
    return m;
}

} // namespace libvue
