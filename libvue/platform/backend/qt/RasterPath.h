#pragma once

#include <optional>

#include <QPainterPath>
#include <QPen>
#include <QRectF>

#include <libvue/platform/backend/Drawing.h>

namespace libvue::backend {

/// The path under the transform, into `out`, whose memory is used again. False where a coordinate is not finite.
bool convertPath(const Path& path, const Transform& t, FillRule rule, QPainterPath& out);
/// The path under the transform as one rectangle along the axes, where it is one.
[[nodiscard]] std::optional<QRectF> asRectangle(const Path& path, const Transform& t);
/// The transformed box, its corners ordered.
[[nodiscard]] QRectF mapRect(const NSRect& r, const Transform& t);
/// The factor of a transform that keeps the shape of what it maps; 0 where it does not.
[[nodiscard]] double similarity(const Transform& t) noexcept;
/// The pen for a width that is `scale` times that of the stroke. Dashes that cannot be seen are left out.
[[nodiscard]] QPen makePen(const Stroke& stroke, double scale);
/// How far the stroke reaches from its path.
[[nodiscard]] double reach(const Stroke& stroke) noexcept;

} // namespace libvue::backend
