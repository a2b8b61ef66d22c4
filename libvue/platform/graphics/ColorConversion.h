#pragma once

#include <libvue/platform/foundation/Export.h>

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
[[nodiscard]] LIBVUE_API HSB hsbFromRGB(const RGB& c) noexcept;
/// A hue of 1 is red again.
[[nodiscard]] LIBVUE_API RGB rgbFromHSB(const HSB& c) noexcept;
/// The grey of the same luminance.
[[nodiscard]] LIBVUE_API double whiteFromRGB(const RGB& c) noexcept;

} // namespace libvue
