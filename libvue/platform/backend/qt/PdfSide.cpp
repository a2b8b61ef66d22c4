#include <libvue/platform/backend/qt/PdfSide.h>

#include <cmath>

namespace libvue::backend {

RasterCanvas& PdfSide::canvas() {
    if (canvas_) return *canvas_;
    QImage image(static_cast<int>(std::ceil(size_.width * pixelsAPoint_)),
                 static_cast<int>(std::ceil(size_.height * pixelsAPoint_)), QImage::Format_ARGB32_Premultiplied);
    image.fill(0);
    pixels_ = std::make_shared<RasterPicture>(std::move(image), size_);
    canvas_ = std::make_unique<RasterCanvas>(pixels_);
    for (const auto& command : std::exchange(waiting_, {}))
        command(*canvas_);
    return *canvas_;
}

const RasterPicture& PdfSide::pixels() {
    (void)canvas();
    return *pixels_;
}

} // namespace libvue::backend
