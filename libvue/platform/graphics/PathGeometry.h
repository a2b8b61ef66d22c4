#pragma once

#include <optional>

#include <libvue/platform/backend/Drawing.h>

// The arithmetic of outlines: pure functions of their arguments. For the platform's own sources.

namespace libvue::outline {

enum class Turn : unsigned char { counterClockwise, clockwise };

[[nodiscard]] constexpr int pointsOf(backend::PathVerb verb) noexcept {
    return verb == backend::PathVerb::curve ? 3 : verb == backend::PathVerb::close ? 0 : 1;
}

/// The cosine and sine of degrees, exact at the quarters.
[[nodiscard]] LIBVUE_API NSPoint directionAtDegrees(double degrees) noexcept;
/// Appends the curves of an arc of a circle; the outline stands at its start already. At most one whole turn: an end
/// that the turn does not reach from the start is met a turn later.
LIBVUE_API void appendArc(backend::Path& path, NSPoint center, double radius, double start, double end, Turn turn);
/// A closed oval that starts at the right and turns counter-clockwise.
LIBVUE_API void appendOval(backend::Path& path, const NSRect& rect);
LIBVUE_API void appendRect(backend::Path& path, const NSRect& rect);
/// The radii are held between 0 and half the extents.
LIBVUE_API void appendRoundedRect(backend::Path& path, const NSRect& rect, double xRadius, double yRadius);

/// The arc that rounds a corner: where it touches both sides, and between which angles it runs.
struct CornerArc {
    NSPoint center, from, to;
    double start, end; ///< degrees
    Turn turn;
};
/// Nothing where the sides lie on one line, one of them has no length or the radius is not positive.
[[nodiscard]] LIBVUE_API std::optional<CornerArc> roundCorner(NSPoint before, NSPoint corner, NSPoint after,
                                                              double radius) noexcept;

/// What the curves cover, not their control points. A path of one point has an empty rectangle there.
[[nodiscard]] LIBVUE_API NSRect bounds(const backend::Path& path) noexcept;
[[nodiscard]] LIBVUE_API NSRect controlBounds(const backend::Path& path) noexcept;
/// Lines that are nowhere further than `tolerance` from the curves.
[[nodiscard]] LIBVUE_API backend::Path flattened(const backend::Path& path, double tolerance);
[[nodiscard]] LIBVUE_API backend::Path reversed(const backend::Path& path);
/// Open subpaths count as closed; left and lower edges belong to the inside, right and upper ones do not.
[[nodiscard]] LIBVUE_API bool contains(const backend::Path& path, NSPoint p, backend::FillRule rule) noexcept;

} // namespace libvue::outline
