#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <libvue/platform/backend/Drawing.h>

namespace libvue::backend {

enum FontTrait : std::uint32_t { fontItalic = 1, fontBold = 2, fontCondensed = 0x40, fontFixedPitch = 0x400 };

/// A font at a size, all measures in points. Descender is negative.
class LIBVUE_API FontFace {
public:
    virtual ~FontFace() = default;
    [[nodiscard]] virtual std::string familyName() const = 0;
    /// What was asked for, even where another family stands in.
    [[nodiscard]] virtual std::string requestedName() const = 0;
    [[nodiscard]] virtual double pointSize() const = 0;
    [[nodiscard]] virtual std::uint32_t traits() const = 0;
    [[nodiscard]] virtual int weight() const = 0; ///< 0 to 15, 5 regular, 9 bold
    [[nodiscard]] virtual double ascender() const = 0;
    [[nodiscard]] virtual double descender() const = 0;
    [[nodiscard]] virtual double leading() const = 0;
    [[nodiscard]] virtual double xHeight() const = 0;
    [[nodiscard]] virtual double capHeight() const = 0;
    [[nodiscard]] virtual double underlinePosition() const = 0;
    [[nodiscard]] virtual double underlineThickness() const = 0;
    [[nodiscard]] virtual double maximumAdvance() const = 0;
    [[nodiscard]] virtual bool covers(char32_t character) const = 0;
};

enum class TextAlignment : std::uint8_t { left = 0, right = 1, center = 2, justified = 3, natural = 4 };
enum class LineBreak : std::uint8_t {
    wordWrapping,
    charWrapping,
    clipping,
    truncatingHead,
    truncatingTail,
    truncatingMiddle
};

/// A run of one look, in UTF-16 units.
struct TextRun {
    NSRange range;
    std::shared_ptr<const FontFace> font;
    Color color;
    std::optional<Color> background;
    std::uint8_t underline = 0; ///< 0 none, 1 single, 2 thick, 9 double
    bool strikethrough = false;
    std::optional<Color> underlineColor;
    double baselineOffset = 0; ///< points upward
    double kern = 0;
    std::optional<NSSize> attachment; ///< the room of an object character, above the baseline
    std::optional<Shadow> shadow;
};

struct TextParagraph {
    NSRange range;
    TextAlignment alignment = TextAlignment::natural;
    LineBreak lineBreak = LineBreak::wordWrapping;
    double firstLineHeadIndent = 0, headIndent = 0;
    double tailIndent = 0; ///< from the trailing margin when not positive, else the width from the leading one
    double lineSpacing = 0, paragraphSpacing = 0, paragraphSpacingBefore = 0;
    double minimumLineHeight = 0, maximumLineHeight = 0, lineHeightMultiple = 0;
    double defaultTabInterval = 28;
    std::vector<double> tabStops;
    bool rightToLeft = false;
};

struct TextInput {
    std::u16string_view text;
    std::span<const TextRun> runs;             ///< in order, without holes
    std::span<const TextParagraph> paragraphs; ///< in order; the defaults where empty
    double width = 1e7;                        ///< points
    double height = 1e7;                       ///< lines that start below are left out
    NSUInteger maximumLines = 0;               ///< 0: any
};

/// A line, y downward from the top of the layout.
struct TextLine {
    NSRange range; ///< with its line end
    NSRect rect;   ///< over the whole width
    NSRect used;   ///< where there is ink or advance
    double baseline;
    bool truncated = false;
};

/// Shaped and broken lines, kept for drawing and for finding characters. All coordinates from its top left corner, y
/// downward.
class LIBVUE_API TextLayout {
public:
    virtual ~TextLayout() = default;
    /// The used size: the widest line, the sum of heights. Not rounded.
    [[nodiscard]] virtual NSSize size() const = 0;
    [[nodiscard]] virtual std::span<const TextLine> lines() const = 0;
    /// The unit under the point, nearest line and character where there is none; `fraction` (may be null) says how far
    /// across it.
    [[nodiscard]] virtual NSUInteger characterAtPoint(NSPoint p, double* fraction) const = 0;
    /// The caret before the unit (length for the end): zero width, the height of its line.
    [[nodiscard]] virtual NSRect caretRect(NSUInteger index) const = 0;
    /// One rectangle a line for the part of the range on it.
    [[nodiscard]] virtual std::vector<NSRect> rects(NSRange range) const = 0;
    /// The next position of a caret from `index`, by whole user-perceived characters.
    [[nodiscard]] virtual NSUInteger nextCaretPosition(NSUInteger index, bool forward) const = 0;
    [[nodiscard]] virtual NSUInteger length() const = 0;
    /// What was laid out.
    [[nodiscard]] virtual std::u16string_view text() const { return {}; }
    [[nodiscard]] virtual std::span<const TextRun> runs() const { return {}; }
};

/// Fonts, shaping and line breaking. Nothing here needs a window.
class LIBVUE_API TextEngine {
public:
    virtual ~TextEngine() = default;
    /// Never null: a missing family falls back. The name is a family or a PostScript-like one ("Helvetica-Bold").
    [[nodiscard]] virtual std::shared_ptr<const FontFace> font(std::string_view name, double pointSize,
                                                               std::uint32_t traits) = 0;
    [[nodiscard]] virtual bool hasFamily(std::string_view name) = 0;
    [[nodiscard]] virtual std::vector<std::string> families() = 0;
    [[nodiscard]] virtual std::string systemFontFamily() = 0;
    [[nodiscard]] virtual std::shared_ptr<const TextLayout> layout(const TextInput& input) = 0;
    /// The advance of one line of one look, without building a layout where that is possible.
    [[nodiscard]] virtual double advance(std::u16string_view text, const FontFace& font) = 0;
};

} // namespace libvue::backend
