#pragma once

#include <cstdint>
#include <vector>

#include <libvue/platform/foundation/NSGeometry.h>

namespace libvue::backend {

/// Straight sRGB components between 0 and 1.
struct Color {
    double red = 0, green = 0, blue = 0, alpha = 1;
    friend bool operator==(const Color&, const Color&) = default;
};

/// x' = a·x + c·y + tx, y' = b·x + d·y + ty.
struct LIBVUE_API Transform {
    double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;
    friend bool operator==(const Transform&, const Transform&) = default;

    [[nodiscard]] static Transform translation(double x, double y) noexcept { return {1, 0, 0, 1, x, y}; }
    [[nodiscard]] static Transform scaling(double x, double y) noexcept { return {x, 0, 0, y, 0, 0}; }
    [[nodiscard]] static Transform rotation(double radians) noexcept;
    /// This first, then `next`.
    [[nodiscard]] Transform then(const Transform& next) const noexcept;
    /// The identity where there is no inverse.
    [[nodiscard]] Transform inverted() const noexcept;
    [[nodiscard]] NSPoint apply(NSPoint p) const noexcept { return {a * p.x + c * p.y + tx, b * p.x + d * p.y + ty}; }
    /// The bounding box of the transformed rectangle.
    [[nodiscard]] NSRect apply(const NSRect& r) const noexcept;
};

enum class PathVerb : std::uint8_t { move, line, curve, close };

/// An outline: verbs, and 1, 1, 3 and 0 points for each of them in turn.
struct Path {
    std::vector<PathVerb> verbs;
    std::vector<NSPoint> points;
    friend bool operator==(const Path&, const Path&) = default;
    [[nodiscard]] bool empty() const noexcept { return verbs.empty(); }
};

enum class FillRule : std::uint8_t { nonZero, evenOdd };
enum class LineCap : std::uint8_t { butt, round, square };
enum class LineJoin : std::uint8_t { miter, round, bevel };

struct Stroke {
    double width = 1;
    LineCap cap = LineCap::butt;
    LineJoin join = LineJoin::miter;
    double miterLimit = 10;
    std::vector<double> dash; ///< points on, off, on…
    double dashPhase = 0;
    friend bool operator==(const Stroke&, const Stroke&) = default;
};

struct Shadow {
    NSSize offset; ///< in base space (y upward), whatever the transform
    double blur = 0;
    Color color{0, 0, 0, 1.0 / 3};
    friend bool operator==(const Shadow&, const Shadow&) = default;
};

struct GradientStop {
    double position; ///< 0 to 1
    Color color;
    friend bool operator==(const GradientStop&, const GradientStop&) = default;
};

/// Between the two points; beyond an end that is not extended nothing is drawn.
struct AxialGradient {
    NSPoint start, end;
    std::vector<GradientStop> stops;
    bool extendStart = false, extendEnd = false;
    friend bool operator==(const AxialGradient&, const AxialGradient&) = default;
};

/// The platform's compositing operations under their numbers.
enum class Compositing : std::uint8_t {
    clear = 0,
    copy = 1,
    sourceOver = 2,
    sourceIn = 3,
    sourceOut = 4,
    sourceAtop = 5,
    destinationOver = 6,
    destinationIn = 7,
    destinationOut = 8,
    destinationAtop = 9,
    exclusiveOr = 10,
    plusDarker = 11,
    highlight = 12,
    plusLighter = 13
};

enum class Interpolation : std::uint8_t { none, low, high };

/// Which way y grows in the space that a picture or a text is drawn in; both come out upright either way.
enum class YAxis : std::uint8_t { up, down };

} // namespace libvue::backend
