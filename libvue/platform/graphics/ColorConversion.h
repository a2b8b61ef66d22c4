#pragma once

namespace libvue {

struct RGB {
    double red, green, blue;
};
struct HSB {
    double hue, saturation, brightness;
};

/// Held between 0 and 1; not a number gives 0.
[[nodiscard]] constexpr double unitInterval(double v) noexcept { return v >= 1 ? 1 : v > 0 ? v : 0; }

/// The hue is 0 for a grey, and below 1.
[[nodiscard]] HSB hsbFromRGB(const RGB& c) noexcept;
/// A hue of 1 is red again.
[[nodiscard]] RGB rgbFromHSB(const HSB& c) noexcept;
/// The grey of the same luminance.
[[nodiscard]] double whiteFromRGB(const RGB& c) noexcept;

} // namespace libvue
