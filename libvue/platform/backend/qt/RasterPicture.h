#pragma once

#include <memory>
#include <optional>

#include <QImage>
#include <QRect>
#include <QRectF>

#include <libvue/platform/backend/Canvas.h>

namespace libvue::backend {

/// A picture over a QImage of format ARGB32_Premultiplied. Canvases draw straight into its memory, so a QImage that was
/// taken from it without a deep copy changes with it.
class LIBVUE_API RasterPicture final : public Picture {
public:
    /// Converts the image where it has another format.
    RasterPicture(QImage image, NSSize size);

    [[nodiscard]] int pixelWidth() const override { return image_.width(); }
    [[nodiscard]] int pixelHeight() const override { return image_.height(); }
    [[nodiscard]] NSSize size() const override { return size_; }
    [[nodiscard]] Color pixel(int x, int y) const override;
    [[nodiscard]] bool hasAlpha() const override;
    [[nodiscard]] const std::uint32_t* pixels() const override;

    /// Pixels a point, along x and y.
    [[nodiscard]] double scaleX() const noexcept { return scaleX_; }
    [[nodiscard]] double scaleY() const noexcept { return scaleY_; }
    [[nodiscard]] const QImage& image() const noexcept { return image_; }
    [[nodiscard]] QImage& image() noexcept { return image_; }
    /// A part, scaled down with all of its pixels counted. The last one is kept as long as nobody draws into the
    /// picture.
    [[nodiscard]] QImage reduced(const QRect& part, QSize size) const;
    /// Brackets the life of a canvas on the picture.
    void beginDrawing();
    void endDrawing() noexcept { --drawings_; }
    /// What the file said, where it was read from one that has no alpha.
    void setOpaque(bool opaque) noexcept { opaque_ = opaque; }

private:
    QImage image_;
    NSSize size_;
    double scaleX_, scaleY_;
    bool opaque_ = false;
    int drawings_ = 0;
    mutable QImage reduced_;
    mutable QRect reducedPart_;
};

/// The pixels of a picture that this engine made. Copy them with QImage::copy where they must outlast the next drawing.
[[nodiscard]] LIBVUE_API QImage& imageOf(Picture& picture);
[[nodiscard]] LIBVUE_API const QImage& imageOf(const Picture& picture);

/// Where a drawing of a picture takes its pixels, and the transform from those (y downward) to user space.
struct PicturePlacement {
    QRectF pixels;
    Transform toUser;
};
/// What of `source` (points, y upward; empty: all) lies outside of the picture is left out, with its share of the
/// destination. Nothing where nothing is left.
[[nodiscard]] std::optional<PicturePlacement> placePicture(const Picture& picture, const NSRect& source,
                                                           const NSRect& destination, YAxis axis);
/// The pixels of any picture, without a copy where it is one of ours.
[[nodiscard]] QImage pixelsOf(const Picture& picture);

/// Over an image that exists already, such as one that wraps a window's memory (format ARGB32_Premultiplied or RGB32).
[[nodiscard]] LIBVUE_API std::shared_ptr<Picture> wrapImage(QImage image, double scale);

} // namespace libvue::backend
