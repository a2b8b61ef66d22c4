#include <algorithm>
#include <cmath>
#include <cstring>

#include <QBuffer>
#include <QByteArray>
#include <QImageReader>
#include <QImageWriter>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/backend/qt/PdfCanvas.h>
#include <libvue/platform/backend/qt/QtApplication.h>
#include <libvue/platform/backend/qt/RasterCanvas.h>
#include <libvue/platform/backend/qt/RasterMemory.h>
#include <libvue/platform/backend/qt/RasterPicture.h>

namespace libvue::backend {

namespace {

std::shared_ptr<RasterPicture> refuse(std::string* error, std::string reason) {
    if (error != nullptr) *error = std::move(reason);
    return nullptr;
}

class RasterGraphics final : public GraphicsEngine {
public:
    RasterGraphics() {
        ensureQtApplication();
        // Once and for all: readers on other threads only look at it.
        QImageReader::setAllocationLimit(512); // megabytes
    }

    std::shared_ptr<Picture> makePicture(NSSize size, double scale) override {
        if (!(scale > 0) || !std::isfinite(scale)) return nullptr;
        // A little more than a whole number of pixels is a whole number that was rounded.
        const double width = std::ceil(size.width * scale - 1e-6);
        const double height = std::ceil(size.height * scale - 1e-6);
        if (!isReasonablePicture(width, height)) return nullptr;
        QImage image = transparentImage(QSize(static_cast<int>(width), static_cast<int>(height)));
        if (image.isNull()) return nullptr;
        return std::make_shared<RasterPicture>(std::move(image), NSSize{width / scale, height / scale});
    }

    std::shared_ptr<Picture> makePicture(std::span<const std::uint32_t> pixels, int pixelWidth, int pixelHeight,
                                         NSSize size) override {
        if (!isReasonablePicture(pixelWidth, pixelHeight) || !(size.width > 0) || !(size.height > 0)) return nullptr;
        const auto width = static_cast<std::size_t>(pixelWidth);
        if (pixels.size() < width * static_cast<std::size_t>(pixelHeight)) return nullptr;
        QImage image(pixelWidth, pixelHeight, QImage::Format_ARGB32_Premultiplied);
        if (image.isNull()) return nullptr;
        for (int y = 0; y < pixelHeight; ++y)
            std::memcpy(image.scanLine(y), pixels.data() + static_cast<std::size_t>(y) * width, width * 4);
        return std::make_shared<RasterPicture>(std::move(image), size);
    }

    std::unique_ptr<Canvas> canvasOn(const std::shared_ptr<Picture>& picture) override {
        auto raster = std::dynamic_pointer_cast<RasterPicture>(picture);
        if (!raster) return nullptr;
        return std::make_unique<RasterCanvas>(std::move(raster));
    }

    PDF makePDF(NSSize page, std::string_view title) override { return pdf::make(page, title); }
    void beginPage(PDF& document) override { pdf::beginPage(document); }
    std::vector<std::uint8_t> finish(PDF& document) override { return pdf::finish(document); }

    std::shared_ptr<Picture> decode(std::span<const std::uint8_t> bytes, std::string* error) override {
        QByteArray data =
            QByteArray::fromRawData(reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size()));
        QBuffer buffer(&data);
        buffer.open(QIODevice::ReadOnly);
        QImageReader reader(&buffer);
        reader.setAutoTransform(true);
        const QSize announced = reader.size();
        if (announced.isValid() && !isReasonablePicture(announced.width(), announced.height()))
            return tooLarge(error, announced);
        QImage image = reader.read();
        if (image.isNull()) return refuse(error, reader.errorString().toStdString());
        if (!isReasonablePicture(image.width(), image.height())) return refuse(error, "the picture is too large");
        NSSize size{static_cast<double>(image.width()), static_cast<double>(image.height())};
        // Files that name a resolution are that many dots an inch, and a point is a 72nd of one.
        const double dotsAPoint = image.dotsPerMeterX() * 0.0254 / 72;
        if (dotsAPoint > 1.01 && dotsAPoint < 20 && image.dotsPerMeterX() == image.dotsPerMeterY() &&
            saysResolution(bytes))
            size = {image.width() / dotsAPoint, image.height() / dotsAPoint};
        return std::make_shared<RasterPicture>(std::move(image), size);
    }

    std::shared_ptr<Picture> decodeReduced(std::span<const std::uint8_t> bytes, int pixelWidth, int pixelHeight,
                                           std::string* error) override {
        if (pixelWidth < 1 || pixelHeight < 1) return refuse(error, "no room for the picture");
        QByteArray data =
            QByteArray::fromRawData(reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size()));
        QBuffer buffer(&data);
        buffer.open(QIODevice::ReadOnly);
        QImageReader reader(&buffer);
        reader.setAutoTransform(true);
        const QSize announced = reader.size();
        if (announced.isValid()) {
            if (!isReasonablePicture(announced.width(), announced.height())) return tooLarge(error, announced);
            // The reader turns the picture after it has reduced it.
            const bool turned = reader.transformation() & QImageIOHandler::TransformationRotate90;
            const QSize room = turned ? QSize(pixelHeight, pixelWidth) : QSize(pixelWidth, pixelHeight);
            if (announced.width() > room.width() || announced.height() > room.height())
                reader.setScaledSize(announced.scaled(room, Qt::KeepAspectRatio).expandedTo({1, 1}));
        }
        QImage image = reader.read();
        if (image.isNull()) return refuse(error, reader.errorString().toStdString());
        if (image.width() > pixelWidth || image.height() > pixelHeight)
            image = image.scaled(image.size().scaled(pixelWidth, pixelHeight, Qt::KeepAspectRatio).expandedTo({1, 1}),
                                 Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        const NSSize size{static_cast<double>(image.width()), static_cast<double>(image.height())};
        return std::make_shared<RasterPicture>(std::move(image), size);
    }

    std::vector<std::uint8_t> encode(const Picture& picture, std::string_view format) override {
        static constexpr std::string_view known[] = {"png", "jpeg", "tiff", "bmp"};
        if (std::find(std::begin(known), std::end(known), format) == std::end(known)) return {};
        QImage image = imageOf(picture);
        if (image.isNull()) return {};
        if (format == "jpeg" || format == "bmp") image = opaque(image);
        const double dots = 72 / 0.0254 * (picture.size().width > 0 ? picture.pixelWidth() / picture.size().width : 1);
        image.setDotsPerMeterX(static_cast<int>(std::lround(dots)));
        image.setDotsPerMeterY(static_cast<int>(std::lround(dots)));
        QByteArray data;
        QBuffer buffer(&data);
        buffer.open(QIODevice::WriteOnly);
        QImageWriter writer(&buffer, QByteArray(format.data(), static_cast<qsizetype>(format.size())));
        if (!writer.write(image)) return {};
        return {data.begin(), data.end()};
    }

    std::shared_ptr<Picture> copy(const Picture& picture) override {
        const auto& raster = dynamic_cast<const RasterPicture&>(picture);
        return std::make_shared<RasterPicture>(copyOf(raster.image()), raster.size());
    }

    void clear(Picture& picture, const NSRect& rect) override {
        auto& raster = dynamic_cast<RasterPicture&>(picture);
        RasterTarget target(raster.image().bits(), raster.pixelWidth(), raster.pixelHeight(),
                            raster.image().bytesPerLine(), raster.image().format());
        QRect area = target.rect();
        if (!NSIsEmptyRect(rect))
            area &=
                nearest(QRectF(rect.origin.x * raster.scaleX(), raster.pixelHeight() - NSMaxY(rect) * raster.scaleY(),
                               rect.size.width * raster.scaleX(), rect.size.height * raster.scaleY()));
        const QRgb blank = target.isOpaque() ? 0xff000000u : 0;
        for (int y = area.top(); y <= area.bottom(); ++y)
            std::fill_n(target.row(y) + area.left(), area.width(), blank);
    }

private:
    static std::shared_ptr<RasterPicture> tooLarge(std::string* error, QSize size) {
        return refuse(error, "the picture is too large: " + std::to_string(size.width()) + " by " +
                                 std::to_string(size.height()) + " pixels");
    }
    /// Readers give a screen's resolution to files that name none; a PNG that names one has a pHYs chunk.
    static bool saysResolution(std::span<const std::uint8_t> bytes) {
        static constexpr std::uint8_t chunk[] = {'p', 'H', 'Y', 's'};
        const auto head = bytes.first(std::min<std::size_t>(bytes.size(), 4096));
        return std::search(head.begin(), head.end(), std::begin(chunk), std::end(chunk)) != head.end();
    }
    static QImage opaque(const QImage& image) {
        QImage out(image.size(), QImage::Format_RGB32);
        out.fill(Qt::white);
        QPainter painter(&out);
        painter.drawImage(0, 0, image);
        return out;
    }
};

} // namespace

std::unique_ptr<GraphicsEngine> makeRasterGraphics() { return std::make_unique<RasterGraphics>(); }

} // namespace libvue::backend
