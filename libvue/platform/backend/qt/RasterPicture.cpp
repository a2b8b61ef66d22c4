#include <libvue/platform/backend/qt/RasterPicture.h>

#include <utility>

#include <libvue/platform/backend/qt/QtConvert.h>

namespace libvue::backend {

RasterPicture::RasterPicture(QImage image, NSSize size) : image_(std::move(image)), size_(size) {
    if (image_.format() == QImage::Format_RGB32) {
        opaque_ = true;
    } else if (image_.format() != QImage::Format_ARGB32_Premultiplied) {
        opaque_ = !image_.hasAlphaChannel();
        image_.convertTo(QImage::Format_ARGB32_Premultiplied);
    }
    scaleX_ = size_.width > 0 ? image_.width() / size_.width : 1;
    scaleY_ = size_.height > 0 ? image_.height() / size_.height : 1;
}

Color RasterPicture::pixel(int x, int y) const {
    if (!image_.valid(x, y)) return {0, 0, 0, 0};
    QRgb p = reinterpret_cast<const QRgb*>(image_.constScanLine(y))[x];
    if (image_.format() == QImage::Format_RGB32) p |= 0xff000000u;
    return fromPremultiplied(p);
}

bool RasterPicture::hasAlpha() const { return !opaque_; }

const std::uint32_t* RasterPicture::pixels() const {
    if (image_.bytesPerLine() != static_cast<qsizetype>(image_.width()) * 4) return nullptr;
    return reinterpret_cast<const std::uint32_t*>(image_.constBits());
}

QImage RasterPicture::reduced(const QRect& part, QSize size) const {
    if (!reduced_.isNull() && reduced_.size() == size && reducedPart_ == part) return reduced_;
    const QImage all = part == image_.rect() ? image_ : image_.copy(part);
    QImage result = all.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    if (drawings_ == 0) {
        reduced_ = result;
        reducedPart_ = part;
    }
    return result;
}

void RasterPicture::beginDrawing() {
    ++drawings_;
    reduced_ = {};
}

QImage& imageOf(Picture& picture) { return dynamic_cast<RasterPicture&>(picture).image(); }
const QImage& imageOf(const Picture& picture) { return dynamic_cast<const RasterPicture&>(picture).image(); }

QImage pixelsOf(const Picture& picture) {
    if (const auto* ours = dynamic_cast<const RasterPicture*>(&picture)) return ours->image();
    const std::uint32_t* pixels = picture.pixels();
    if (pixels == nullptr) return {};
    return {reinterpret_cast<const uchar*>(pixels), picture.pixelWidth(), picture.pixelHeight(),
            static_cast<qsizetype>(picture.pixelWidth()) * 4, QImage::Format_ARGB32_Premultiplied};
}

std::optional<PicturePlacement> placePicture(const Picture& picture, const NSRect& source, const NSRect& destination,
                                             YAxis axis) {
    const NSSize size = picture.size();
    if (NSIsEmptyRect(destination) || !isFinite(destination) || !(size.width > 0) || !(size.height > 0))
        return std::nullopt;
    NSRect from{{0, 0}, size};
    NSRect to = destination;
    if (!NSIsEmptyRect(source) && isFinite(source)) {
        const NSRect inside = NSIntersectionRect(source, from);
        if (NSIsEmptyRect(inside)) return std::nullopt;
        const double kx = destination.size.width / source.size.width;
        const double ky = destination.size.height / source.size.height;
        const double fromFirst =
            axis == YAxis::up ? inside.origin.y - source.origin.y : NSMaxY(source) - NSMaxY(inside);
        to = {{destination.origin.x + (inside.origin.x - source.origin.x) * kx, destination.origin.y + fromFirst * ky},
              {inside.size.width * kx, inside.size.height * ky}};
        from = inside;
    }
    const double px = picture.pixelWidth() / size.width;
    const double py = picture.pixelHeight() / size.height;
    const QRectF pixels(from.origin.x * px, picture.pixelHeight() - NSMaxY(from) * py, from.size.width * px,
                        from.size.height * py);
    const double kx = to.size.width / pixels.width();
    const double ky = to.size.height / pixels.height();
    const double x = to.origin.x - pixels.left() * kx;
    if (axis == YAxis::up) return PicturePlacement{pixels, {kx, 0, 0, -ky, x, NSMaxY(to) + pixels.top() * ky}};
    return PicturePlacement{pixels, {kx, 0, 0, ky, x, to.origin.y - pixels.top() * ky}};
}

std::shared_ptr<Picture> wrapImage(QImage image, double scale) {
    if (image.isNull() || !(scale > 0)) return nullptr;
    const NSSize size{image.width() / scale, image.height() / scale};
    return std::make_shared<RasterPicture>(std::move(image), size);
}

} // namespace libvue::backend
