#pragma once

#include <optional>

#include <QBrush>
#include <QRgb>

#include <libvue/platform/backend/Drawing.h>

namespace libvue::backend {

/// A brush for device coordinates; nothing for a gradient without stops or length.
[[nodiscard]] std::optional<QBrush> makeGradientBrush(const AxialGradient& gradient, const Transform& device,
                                                      double alpha);
/// The part of the user space that the gradient covers inside of `bounds`: between the perpendiculars at those ends
/// that are not extended. Nothing where that is empty.
[[nodiscard]] std::optional<Path> gradientStrip(const AxialGradient& gradient, const NSRect& bounds);

/// The same as a rectangle, where the gradient runs along an axis and has a length.
[[nodiscard]] std::optional<NSRect> gradientStripAlongAxis(const AxialGradient& gradient, const NSRect& bounds);

/// Whether it covers what is below it all the way between its ends.
[[nodiscard]] bool isOpaque(const AxialGradient& gradient, double alpha) noexcept;
/// The colours at the middles of `count` pixels along an axis that runs from `start` to `end`, the first pixel at
/// `first`, all of them in device coordinates.
void gradientRamp(const AxialGradient& gradient, double start, double end, int first, int count, QRgb* out);

} // namespace libvue::backend
