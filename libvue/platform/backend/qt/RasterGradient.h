#pragma once

#include <optional>

#include <QBrush>

#include <libvue/platform/backend/Drawing.h>

namespace libvue::backend {

/// A brush for device coordinates; nothing for a gradient without stops or length.
[[nodiscard]] std::optional<QBrush> makeGradientBrush(const AxialGradient& gradient, const Transform& device,
                                                      double alpha);
/// The part of the user space that the gradient covers inside of `bounds`: between the perpendiculars at those ends
/// that are not extended. Nothing where that is empty.
[[nodiscard]] std::optional<Path> gradientStrip(const AxialGradient& gradient, const NSRect& bounds);

} // namespace libvue::backend
