#pragma once

#include <libvue/platform/foundation/NSGeometry.h>

namespace libvue {

/// Scales and translates, perhaps mirroring y: what lies between the coordinates of two views of one tree.
struct CoordinateMap {
    CGFloat scaleX = 1, scaleY = 1, x = 0, y = 0;

    [[nodiscard]] NSPoint apply(NSPoint p) const noexcept { return {p.x * scaleX + x, p.y * scaleY + y}; }
    [[nodiscard]] NSRect apply(const NSRect& r) const noexcept;
    [[nodiscard]] NSSize apply(NSSize s) const noexcept;
    /// This first, then `next`.
    [[nodiscard]] CoordinateMap then(const CoordinateMap& next) const noexcept {
        return {scaleX * next.scaleX, scaleY * next.scaleY, x * next.scaleX + next.x, y * next.scaleY + next.y};
    }
    /// Where a scale is zero, that axis maps to zero.
    [[nodiscard]] CoordinateMap inverted() const noexcept;

    /// From a view's own coordinates to those that its frame is in.
    [[nodiscard]] static CoordinateMap toSuperview(const NSRect& frame, const NSRect& bounds, BOOL flipped,
                                                   BOOL superFlipped) noexcept;
};

} // namespace libvue
