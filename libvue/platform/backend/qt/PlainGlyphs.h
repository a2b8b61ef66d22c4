#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include <QGlyphRun>
#include <QRawFont>
#include <QTextLayout>

namespace libvue::backend {

/// What one font makes of plain words (unaccented letters, digits, blanks between them): the glyph of each character
/// and the way from each to its neighbour, learnt from texts that the shaper has laid out. Texts of known neighbours
/// then need no shaper. Good only for fonts whose glyphs depend on nothing farther than the next character.
class PlainGlyphs {
public:
    /// Whether a text is one that can be learnt from and placed.
    [[nodiscard]] static bool isPlain(std::u16string_view text) noexcept;

    /// The advance of a plain text in points; negative while some neighbours are unknown.
    [[nodiscard]] double advance(std::u16string_view text) const noexcept;
    /// The glyphs of a text whose advance is known, its first line moved by `x` and to the baseline.
    [[nodiscard]] QGlyphRun run(std::u16string_view text, double x, double baseline) const;
    /// Takes over what the shaper made of a plain text. A contradiction to what is known ends all use of this font.
    void learn(std::u16string_view text, const QTextLine& line);

private:
    static constexpr std::size_t kinds = 63;
    static constexpr std::int32_t unknown = INT32_MIN;
    struct Kind {
        quint32 glyph = 0;
        bool known = false;
        std::int32_t advance = unknown; // at the end of a text
    };
    std::array<Kind, kinds> glyphs_;
    std::vector<std::int32_t> steps_; // from one character to the next, in the shaper's 64ths of a point
    QRawFont font_;
    double ascent_ = 0, y_ = 0;
    bool unfit_ = false;

    static std::size_t kindOf(char16_t c) noexcept;
    [[nodiscard]] bool accepts(std::u16string_view text, const QTextLine& line, const QGlyphRun& run, double y);
};

} // namespace libvue::backend
