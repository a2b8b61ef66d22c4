#pragma once

#include <libvue/platform/foundation/Export.h>
#include <libvue/platform/foundation/NSGeometry.h>

namespace libvue {

// Where the system's balloon goes, and its outline. Pure functions: y upward, points.

namespace balloon {
inline constexpr CGFloat kArrowLength = 10; ///< from the body to the tip
inline constexpr CGFloat kArrowHalf = 11;   ///< half of what it takes of the side
inline constexpr CGFloat kRadius = 9;       ///< of the corners
inline constexpr CGFloat kShadowRoom = 14;  ///< round the body, but on the arrow's side
} // namespace balloon

/// A balloon's body and window, in the coordinates of the anchor.
struct BalloonPlacement {
    NSRect body;   ///< as large as the content
    NSRect window; ///< with arrow and shadow; it does not lie over the anchor where there is room for the balloon
    NSRectEdge edge = NSMinYEdge; ///< the side of the anchor that it stands on
};

/// The preferred edge where the balloon fits in there; else the opposite one, then the two others, and where it fits
/// nowhere the one with the most room. It is centred on the anchor's side, then slid until it is on the screen, which
/// it never leaves, unless it is larger.
[[nodiscard]] LIBVUE_API BalloonPlacement placeBalloon(const NSRect& anchor, const NSRect& visible, NSSize content,
                                                       NSRectEdge preferred) noexcept;

/// Where the arrow's middle stands along its side: over the middle of the anchor, as near as the corners let it.
[[nodiscard]] LIBVUE_API CGFloat balloonArrowCentre(const NSRect& body, const NSRect& anchor, NSRectEdge edge) noexcept;

} // namespace libvue
