#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include <QGlyphRun>
#include <QRawFont>
#include <QTextLayout>

#include <libvue/platform/backend/qt/GlyphMasks.h>

namespace libvue::backend {

/// What one font makes of plain words (letters of western Europe, digits, the punctuation between them): the glyph of
/// each character and the way from each to its neighbour, learnt from texts that the shaper has laid out. Texts of
/// known neighbours then need no shaper. Good only for fonts whose glyphs depend on nothing farther than the next
/// character.
class PlainGlyphs {
public:
    /// Whether a text is one that can be learnt from and placed.
    [[nodiscard]] static bool isPlain(std::u16string_view text) noexcept;

    /// The advance of a plain text in points; negative while some neighbours are unknown.
    [[nodiscard]] double advance(std::u16string_view text) const noexcept;
    /// The glyphs of a text whose advance is known, its first line moved by `x` and to the baseline.
    [[nodiscard]] QGlyphRun run(std::u16string_view text, double x, double baseline) const;
    /// Whether what it knew is still held true.
    [[nodiscard]] bool isFit() const noexcept { return !unfit_; }
    /// The pixels of the same as a painter that scales and then shifts draws them into an image of that size; nothing
    /// where they cannot be had from the masks alone.
    [[nodiscard]] std::optional<GlyphMasks::Ink> draw(std::u16string_view text, double x, double baseline, double scale,
                                                      QPointF shift, QRgb ink, QSize size) const;
    /// Takes over what the shaper made of a plain text. A contradiction to what is known ends all use of this font.
    void learn(std::u16string_view text, const QTextLine& line);

private:
    static constexpr std::size_t longest = 64;
    /// Printable ASCII, the accented letters of Latin-1, and what else French texts are made of.
    static constexpr std::size_t ascii = 95, accented = 64, kinds = ascii + accented + 9;
    static constexpr std::int32_t unknown = INT32_MIN;
    struct Kind {
        quint32 glyph = 0;
        bool known = false;
        std::int32_t advance = unknown; // at the end of a text
    };
    using Steps = std::array<std::int32_t, kinds>;
    std::array<Kind, kinds> glyphs_;
    std::array<std::unique_ptr<Steps>, kinds> steps_; // from one to the next, in the shaper's 64ths of a point
    QRawFont font_;
    mutable GlyphMasks masks_;
    double ascent_ = 0, y_ = 0;
    bool knowsFont_ = false, unfit_ = false;

    static std::size_t kindOf(char16_t c) noexcept;
    /// Calls `found` with the number of each character's kind and its place from the start of the line.
    template <class F> void eachGlyph(std::u16string_view text, F&& found) const {
        std::int32_t at = 0;
        for (std::size_t i = 0, before = 0; i < text.size(); ++i) {
            const std::size_t kind = kindOf(text[i]);
            if (i > 0) at += (*steps_[before])[kind];
            found(kind, at);
            before = kind;
        }
    }
    [[nodiscard]] bool accepts(std::u16string_view text, const QTextLine& line, const QGlyphRun& run, double y);
};

} // namespace libvue::backend
