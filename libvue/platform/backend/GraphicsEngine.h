#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <libvue/platform/backend/Canvas.h>

namespace libvue::backend {

/// Makes surfaces and canvases, and reads and writes image files.
class LIBVUE_API GraphicsEngine {
public:
    virtual ~GraphicsEngine() = default;
    /// A transparent surface of that many points at `scale` pixels each. Null where the size is empty, not finite or
    /// over the largest that is reasonable (100 million pixels).
    [[nodiscard]] virtual std::shared_ptr<Picture> makePicture(NSSize size, double scale) = 0;
    /// A canvas that draws into the picture.
    [[nodiscard]] virtual std::unique_ptr<Canvas> canvasOn(const std::shared_ptr<Picture>& picture) = 0;
    /// A canvas that draws pages into a PDF file in memory; `finish` gives its bytes.
    struct PDF {
        std::unique_ptr<Canvas> canvas;
    };
    [[nodiscard]] virtual PDF makePDF(NSSize page, std::string_view title) = 0;
    virtual void beginPage(PDF& pdf) = 0; ///< from the second page on
    [[nodiscard]] virtual std::vector<std::uint8_t> finish(PDF& pdf) = 0;

    /// Null where the bytes are no picture that can be read, or one too large.
    [[nodiscard]] virtual std::shared_ptr<Picture> decode(std::span<const std::uint8_t> bytes, std::string* error) = 0;
    /// As decode, but no more pixels than that on either side, its shape kept, and its size one point a pixel. Where
    /// the format allows it no more than that is ever read. From any thread.
    [[nodiscard]] virtual std::shared_ptr<Picture> decodeReduced(std::span<const std::uint8_t> bytes, int pixelWidth,
                                                                 int pixelHeight, std::string* error) = 0;
    /// `format` is "png", "jpeg", "tiff", "bmp"; empty where it cannot be written.
    [[nodiscard]] virtual std::vector<std::uint8_t> encode(const Picture& picture, std::string_view format) = 0;
    /// A copy that shares nothing with the picture.
    [[nodiscard]] virtual std::shared_ptr<Picture> copy(const Picture& picture) = 0;
    /// Clears to transparent: the rectangle in points, y upward; all of the picture where the rectangle is empty.
    virtual void clear(Picture& picture, const NSRect& rect) = 0;
    /// A picture of premultiplied 0xAARRGGBB pixels, row after row from the top. Null where there are not enough of
    /// them or the size is refused.
    [[nodiscard]] virtual std::shared_ptr<Picture> makePicture(std::span<const std::uint32_t> pixels, int pixelWidth,
                                                               int pixelHeight, NSSize size) = 0;
};

} // namespace libvue::backend
