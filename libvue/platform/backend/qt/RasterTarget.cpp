#include <libvue/platform/backend/qt/RasterTarget.h>

#include <libvue/platform/backend/qt/RasterMemory.h>

namespace libvue::backend {

RasterTarget::RasterTarget(uchar* bits, int width, int height, qsizetype stride, QImage::Format format)
    : image_(bits, width, height, stride, format),
      bits_(bits),
      stride_(stride),
      opaque_(format == QImage::Format_RGB32) {}

RasterTarget::RasterTarget(const QRect& device) : image_(transparentImage(device.size())), origin_(device.topLeft()) {
    bits_ = image_.bits();
    stride_ = image_.bytesPerLine();
}

void RasterTarget::begin() {
    painter_.begin(&image_);
    base_ = QTransform::fromTranslate(-origin_.x(), -origin_.y());
    if (!origin_.isNull()) painter_.setWorldTransform(base_);
    clip_ = {rect(), nullptr};
}

QPainter& RasterTarget::painter(const Clip& clip, Compositing op, bool antialias, double opacity) {
    if (!painter_.isActive()) begin();
    // The painter makes the clip's spans when it draws: an outline has smooth edges only if the drawing has.
    if (clip.node && clip.node->isSmooth) antialias = true;
    if (clip_.rect != clip.rect || clip_.node != clip.node) applyClip(clip);
    if (const auto mode = toQt(op); mode != mode_) {
        painter_.setCompositionMode(mode);
        mode_ = mode;
    }
    if (antialias != antialias_) {
        painter_.setRenderHint(QPainter::Antialiasing, antialias);
        antialias_ = antialias;
    }
    if (opacity != opacity_) {
        painter_.setOpacity(opacity);
        opacity_ = opacity;
    }
    return painter_;
}

void RasterTarget::applyClip(const Clip& clip) {
    const bool narrowsTheLast = clip.node && clip.node->parent == clip_.node && clip_.node;
    if (!narrowsTheLast) {
        painter_.setClipRect(clip.rect, Qt::ReplaceClip);
        applyNodes(clip.node.get(), nullptr);
    } else {
        applyNodes(clip.node.get(), clip_.node.get());
        if (clip.rect != clip_.rect) painter_.setClipRect(clip.rect, Qt::IntersectClip);
    }
    clip_ = clip;
}

void RasterTarget::applyNodes(const ClipNode* node, const ClipNode* until) {
    if (node == until) return;
    applyNodes(node->parent.get(), until);
    if (node->isRegion)
        painter_.setClipRegion(node->region, Qt::IntersectClip);
    else
        painter_.setClipPath(node->path, Qt::IntersectClip);
}

void RasterTarget::pushTransform(const QTransform& t) { painter_.setWorldTransform(t * base_); }
void RasterTarget::popTransform() { painter_.setWorldTransform(base_); }

QImage faded(const QImage& image, const QRect& part, double opacity) {
    QImage out(part.size(), QImage::Format_ARGB32_Premultiplied);
    out.fill(0);
    QPainter painter(&out);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.setOpacity(opacity);
    painter.drawImage(QPoint(), image, part);
    return out;
}

} // namespace libvue::backend
