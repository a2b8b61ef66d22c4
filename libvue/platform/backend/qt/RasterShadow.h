#pragma once

#include <QImage>
#include <QPoint>

#include <libvue/platform/backend/Drawing.h>

namespace libvue::backend {

/// A blurred silhouette in the shadow's colour; `offset` is where its top left corner stands relative to that of the
/// content.
struct BlurredShadow {
    QImage image;
    QPoint offset;
};

/// How far a blur of that radius (pixels) reaches.
[[nodiscard]] int blurReach(double radius) noexcept;
/// The shadow of the content's alpha, blurred by `radius` pixels, without the shadow's displacement. Kept for contents
/// whose alpha comes again.
[[nodiscard]] BlurredShadow shadowOf(const QImage& content, double radius, const Color& color, double alpha);

} // namespace libvue::backend
