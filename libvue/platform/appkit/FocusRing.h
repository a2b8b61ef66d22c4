#pragma once

#include <libvue/platform/foundation/NSGeometry.h>

namespace libvue {

/// What drawFocusRing paints at most, round a rectangle.
[[nodiscard]] LIBVUE_API NSRect focusRingBounds(const NSRect& rect) noexcept;
/// A soft ring, three points wide, round a rectangle whose corners have that radius. In the current context, outside of
/// the rectangle alone.
LIBVUE_API void drawFocusRing(const NSRect& rect, CGFloat radius);

} // namespace libvue
