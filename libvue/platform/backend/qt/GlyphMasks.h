#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include <QImage>
#include <QPointF>
#include <QRawFont>
#include <QRect>

namespace libvue::backend {

/// The coverage of a font's glyphs, taken from the painter once for each quarter of a pixel that they may stand at, and
/// the same blending as the painter's onto transparent pixels: texts drawn from them are those that it draws, to the
/// last bit. For the sizes that the painter draws from coverage too, and at the two scales that were asked for last.
class GlyphMasks {
public:
    struct Placed {
        std::size_t index; // of the glyph, as the caller numbers it
        quint32 glyph;
        QPointF at; // its origin in pixels, none of them negative
    };
    /// Finished pixels: a part of an image that is good until the next text is drawn.
    struct Ink {
        const QImage* image;
        QRect part;
        QPoint at; // where the upper left one stands
    };

    [[nodiscard]] static bool serves(const QRawFont& font, double scale);
    /// The ink of these glyphs, drawn in their order; an empty part where there is none. Nothing where the painter
    /// would draw it in another way, or cut it at the edges of `size`.
    [[nodiscard]] std::optional<Ink> draw(const QRawFont& font, double scale, std::span<const Placed> glyphs, QRgb ink,
                                          QSize size);

private:
    /// One glyph; `left` and `top` count from the whole pixel of its origin. Behind each row stand blanks, so that
    /// pixels can be taken by fours.
    struct Mask {
        static constexpr int blanks = 3;
        std::int16_t left = 0, top = 0, width = 0, height = 0;
        std::uint32_t at = 0; // among the pixels of its scale
        bool isMade = false, isTinted = false;
        QRgb ink = 0; // what its pixels were tinted with last
    };
    struct Scale {
        double scale = 0;
        std::vector<Mask> masks; // by index and quarter
        std::vector<std::uint8_t> coverage;
        std::vector<QRgb> tinted;
    };
    std::array<Scale, 2> scales_; // the one used last in front

    Scale& atScale(double scale);
    static void make(Scale& s, Mask& mask, const QRawFont& font, quint32 glyph, int quarter);
    static void tint(Scale& s, Mask& mask, QRgb ink);
};

} // namespace libvue::backend
