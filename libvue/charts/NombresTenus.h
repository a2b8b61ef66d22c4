#pragma once

#include <cmath>
#include <limits>

#include <libvue/platform/foundation/Types.h>

namespace libvue {

// Conversions between kinds of numbers that are defined for every argument. They follow NSNumber: cut towards zero,
// held to the limits of the type, and 0 for what is no number.

/// In single precision; beyond its range an infinity.
[[nodiscard]] inline float enSimple(double v) noexcept {
    constexpr double borne = static_cast<double>(std::numeric_limits<float>::max());
    if (std::abs(v) > borne) return std::copysign(std::numeric_limits<float>::infinity(), v < 0 ? -1.0F : 1.0F);
    return static_cast<float>(v);
}

[[nodiscard]] inline NSInteger entierTenu(double v) noexcept {
    constexpr double borne = 0x1p63; // the first double past the largest integer
    if (std::isnan(v)) return 0;
    if (v >= borne) return std::numeric_limits<NSInteger>::max();
    if (v < -borne) return std::numeric_limits<NSInteger>::min();
    return static_cast<NSInteger>(v);
}

/// To the nearest, halves away from zero.
[[nodiscard]] inline NSInteger arrondiTenu(float v) noexcept { return entierTenu(static_cast<double>(std::round(v))); }

/// Sums and differences of integers wrap round where they leave the range, so that taking off again gives back what
/// was.
[[nodiscard]] inline NSInteger sommeEnRond(NSInteger a, NSInteger b) noexcept {
    return static_cast<NSInteger>(static_cast<NSUInteger>(a) + static_cast<NSUInteger>(b));
}
[[nodiscard]] inline NSInteger differenceEnRond(NSInteger a, NSInteger b) noexcept {
    return static_cast<NSInteger>(static_cast<NSUInteger>(a) - static_cast<NSUInteger>(b));
}

} // namespace libvue
