#pragma once

#include <span>

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/Export.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/graphics/Forward.h>

namespace libvue {

/// A balloon as its view draws it, from below: a shadow, a filled outline, lines. Held by nobody beyond the call.
struct BalloonDrawing {
    struct Line {
        const NSBezierPath* path;
        NSColor* color;
    };
    /// Lengths in points.
    struct Shadow {
        CGFloat blur, drop, alpha;
        friend bool operator==(const Shadow&, const Shadow&) = default;
    };
    NSSize size;    ///< of the view; what lies beyond it may be left out
    NSRect covered; ///< a part that the fill covers whole, and no line touches
    const NSBezierPath* body;
    NSColor* fill;
    std::span<const Line> lines;
    Shadow shadow;
};

/// Draws it in the coordinates of the current context, in which the view begins at (0, 0). The shadow is for a
/// transparent window that has one where something blends windows. What was drawn last on the screen is kept: a balloon
/// that opens in the same form is not drawn anew.
LIBVUE_API void drawBalloon(const NSWindow* window, const BalloonDrawing& balloon);

} // namespace libvue
