#pragma once

#include <memory>

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRegion>

#include <libvue/platform/backend/qt/QtConvert.h>

namespace libvue::backend {

/// A clip that is more than a rectangle: an outline or a region in device pixels, inside its parent. Immutable and
/// shared by the states that were saved on top of it.
struct ClipNode {
    std::shared_ptr<const ClipNode> parent;
    QPainterPath path;
    QRegion region;
    bool isRegion = false;
    bool isSmooth = false; // it or one of its parents is an outline
};

/// A clip in device pixels: a rectangle, and what narrows it further.
struct Clip {
    QRect rect;
    std::shared_ptr<const ClipNode> node;
};

/// Pixels that are being drawn into, with a painter that is set up only when something needs it. Device coordinates are
/// those of the whole canvas; `origin` is the pixel at the top left corner of this target.
class RasterTarget {
public:
    /// Over memory that somebody else keeps.
    RasterTarget(uchar* bits, int width, int height, qsizetype stride, QImage::Format format);
    /// Over transparent pixels of its own.
    explicit RasterTarget(const QRect& device);
    RasterTarget(const RasterTarget&) = delete;
    RasterTarget& operator=(const RasterTarget&) = delete;
    ~RasterTarget() = default;

    [[nodiscard]] QRect rect() const { return {origin_, image_.size()}; }
    [[nodiscard]] QPoint origin() const noexcept { return origin_; }
    [[nodiscard]] const QImage& image() const noexcept { return image_; }
    [[nodiscard]] bool isOpaque() const noexcept { return opaque_; }
    /// The row of a device y, such that it is indexed by device x.
    [[nodiscard]] QRgb* row(int y) const {
        return reinterpret_cast<QRgb*>(bits_ + static_cast<qsizetype>(y - origin_.y()) * stride_) - origin_.x();
    }

    /// The painter with this state, in device coordinates. It stays as it is between calls.
    QPainter& painter(const Clip& clip, Compositing op, bool antialias, double opacity = 1);
    /// Between the two, the painter maps by `t` before device coordinates.
    void pushTransform(const QTransform& t);
    void popTransform();

private:
    QImage image_;
    uchar* bits_;
    qsizetype stride_;
    QPoint origin_;
    bool opaque_ = false;
    QPainter painter_;
    Clip clip_;
    QTransform base_;
    QPainter::CompositionMode mode_ = QPainter::CompositionMode_SourceOver;
    double opacity_ = 1;
    bool antialias_ = false;

    void begin();
    void applyClip(const Clip& clip);
    void applyNodes(const ClipNode* node, const ClipNode* until);
};

/// A part of the image with its alpha multiplied.
[[nodiscard]] QImage faded(const QImage& image, const QRect& part, double opacity);

} // namespace libvue::backend
