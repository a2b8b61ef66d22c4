#include <libvue/platform/backend/qt/PdfPage.h>

#include <utility>

#include <QMarginsF>
#include <QPageSize>
#include <QString>

#include <libvue/platform/backend/qt/QtConvert.h>

namespace libvue::backend {

namespace {

bool areSame(const QPainterPath& a, const QPainterPath& b) {
    const int count = a.elementCount();
    if (count != b.elementCount()) return false;
    for (int i = 0; i < count; ++i) {
        const QPainterPath::Element x = a.elementAt(i);
        const QPainterPath::Element y = b.elementAt(i);
        if (x.type != y.type || x.x != y.x || x.y != y.y) return false;
    }
    return true;
}

} // namespace

PdfPage::PdfPage(NSSize size, std::string_view title, QIODevice* device)
    : size_(size),
      writer_(device                               ? device
              : buffer_.open(QIODevice::WriteOnly) ? &buffer_
                                                   : nullptr) {
    writer_.setResolution(resolution);
    writer_.setPageSize(QPageSize(QSizeF(size.width, size.height), QPageSize::Point, QString(), QPageSize::ExactMatch));
    writer_.setPageMargins(QMarginsF());
    writer_.setTitle(QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size())));
    painter_.begin(&writer_);
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setRenderHint(QPainter::LosslessImageRendering); // so that patches do not stand out
}

void PdfPage::startNext() {
    clipNothing();
    writer_.newPage();
}

std::vector<std::uint8_t> PdfPage::finish() {
    writeWaiting();
    if (painter_.isActive()) painter_.end();
    buffer_.close();
    return {bytes_.begin(), bytes_.end()};
}

void PdfPage::clipNothing() {
    writeWaiting();
    if (!clip_) return;
    painter_.setClipping(false);
    clip_.reset();
}

bool PdfPage::clipFor(const NSRect& box, const PdfClip& needed) {
    if (NSIsEmptyRect(needed.box)) return false;
    if (!needed.shape && isFinite(box) && NSContainsRect(needed.box, box)) {
        if (clip_ && (clip_->shape || !NSContainsRect(clip_->box, box))) clipNothing();
        return true;
    }
    if (clip_ && clip_->shape == needed.shape && NSEqualRects(clip_->box, needed.box)) return true;
    QPainter& p = painter();
    p.setClipRect(toQt(fromUpward().apply(needed.box)), Qt::ReplaceClip);
    for (const PdfClipShape* s = needed.shape.get(); s != nullptr; s = s->outer.get())
        p.setClipPath(s->path, Qt::IntersectClip);
    clip_ = needed;
    return true;
}

QPainter& PdfPage::painter() {
    writeWaiting();
    if (!isShared_) painter_.setWorldTransform(QTransform::fromScale(unitsAPoint, unitsAPoint));
    isShared_ = true;
    return painter_;
}

QPainter& PdfPage::painter(const Transform& t) {
    writeWaiting();
    painter_.setWorldTransform(toQt(t.then({unitsAPoint, 0, 0, -unitsAPoint, 0, size_.height * unitsAPoint})));
    isShared_ = false;
    return painter_;
}

void PdfPage::setBrush(const QColor& color) {
    // The very same brush is no change.
    if (brush_.color() != color) brush_.setColor(color);
    painter_.setBrush(brush_);
}

void PdfPage::writeWaiting() {
    if (!waiting_) return;
    const Filling filling = *std::exchange(waiting_, std::nullopt);
    QPainter& p = painter();
    p.setPen(Qt::NoPen);
    setBrush(filling.color);
    p.drawPath(filling.path);
}

void PdfPage::fill(const QPainterPath& path, const QColor& color) {
    writeWaiting();
    waiting_ = Filling{path, color};
    // A stroke over translucent ink is composed with it.
    if (color.alpha() < 255) writeWaiting();
}

void PdfPage::fill(const QRectF& rect, const QColor& color) {
    QPainter& p = painter();
    p.setPen(Qt::NoPen);
    setBrush(color);
    p.drawRect(rect);
}

void PdfPage::stroke(const QPainterPath& path, const QPen& pen) {
    const bool isOne = waiting_ && pen.color().alpha() == 255 && !pen.isCosmetic() && areSame(path, waiting_->path);
    if (!isOne) {
        QPainter& p = painter();
        p.setPen(pen);
        p.setBrush(Qt::NoBrush);
        p.drawPath(path);
        return;
    }
    const Filling filling = *std::exchange(waiting_, std::nullopt);
    QPainter& p = painter();
    p.setPen(pen);
    setBrush(filling.color);
    p.drawPath(filling.path);
}

} // namespace libvue::backend
