#pragma once

class QImage;
class QSize;

namespace libvue::backend {

/// A transparent image of format ARGB32_Premultiplied; null where it would have no pixels, or more than is reasonable
/// (100 million, 32767 along a side). Its memory goes to the next one of about that size: a window that opens takes the
/// pages that another one gave back, and not new ones from the system.
[[nodiscard]] QImage transparentImage(QSize pixels);
/// A copy that shares nothing with the image, in such memory where it is of that format.
[[nodiscard]] QImage copyOf(const QImage& image);

/// Whether pictures may be that large, in pixels.
[[nodiscard]] bool isReasonablePicture(double width, double height) noexcept;

} // namespace libvue::backend
