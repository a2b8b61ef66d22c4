#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <memory_resource>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <QGlyphRun>
#include <QImage>
#include <QPoint>
#include <QPointF>
#include <QString>
#include <QTextLayout>

#include <libvue/platform/backend/TextEngine.h>
#include <libvue/platform/backend/qt/GlyphMasks.h>
#include <libvue/platform/backend/qt/NearMemory.h>

class QPainter;

namespace libvue::backend {

class PlainGlyphs;

/// Lines of shaped text. Glyphs are taken from the shaper at the first drawing. The pixels of a short text are kept for
/// the next one: at once, or where they can be had from the masks of plain glyphs, when they are drawn again.
class RasterTextLayout final : public TextLayout, public std::enable_shared_from_this<RasterTextLayout> {
public:
    /// Whether a painting casts the shadows of its runs, leaves them to whoever has them already, or is of them alone.
    enum class Shadows : unsigned char { cast, leave, alone };

    explicit RasterTextLayout(const TextInput& input);
    RasterTextLayout(const RasterTextLayout&) = delete;
    RasterTextLayout& operator=(const RasterTextLayout&) = delete;
    ~RasterTextLayout() override;

    [[nodiscard]] NSSize size() const override { return size_; }
    [[nodiscard]] std::span<const TextLine> lines() const override { return lines_; }
    [[nodiscard]] NSUInteger characterAtPoint(NSPoint p, double* fraction) const override;
    [[nodiscard]] NSRect caretRect(NSUInteger index) const override;
    [[nodiscard]] std::vector<NSRect> rects(NSRange range) const override;
    [[nodiscard]] NSUInteger nextCaretPosition(NSUInteger index, bool forward) const override;
    [[nodiscard]] NSUInteger length() const override { return text_.size(); }
    [[nodiscard]] std::u16string_view text() const override { return text_; }
    [[nodiscard]] std::span<const TextRun> runs() const override { return runs_; }

    /// What may be inked, with a margin for overhanging glyphs and shadows.
    [[nodiscard]] NSRect inkBounds() const;
    /// The box that a clipped line is cut to, where one is.
    [[nodiscard]] std::optional<NSRect> clippedTo() const;

    [[nodiscard]] bool hasShadows() const noexcept { return hasRunShadow_; }

    /// Draws what lies near `visible` (this layout's coordinates), which the painter maps to its device. Colours are
    /// multiplied with `alpha`.
    void paint(QPainter& painter, const NSRect& visible, double alpha, Shadows shadows = Shadows::cast) const;
    /// Draws the glyphs that lie near `visible` with its upper left corner at that point of the painter's. Casts no
    /// shadows. False, and nothing drawn, where there is more to draw than glyphs.
    [[nodiscard]] bool paintBareGlyphs(QPainter& painter, QPointF corner, const NSRect& visible, double alpha) const;
    /// Finished pixels and where they stand on the device, for a layout that is short enough to be kept. Good until the
    /// next one is asked for.
    using Rendered = GlyphMasks::Ink;
    [[nodiscard]] std::optional<Rendered> rendered(double scale, NSPoint origin) const;

private:
    friend class TextBuilder;
    friend class RenderedTexts;

    /// A paragraph, or what truncation made of it: `head` units, "…", then `tail` units of its end.
    struct Block {
        mutable std::unique_ptr<QTextLayout> shaped; // null where there is nothing to shape
        QString string;                              // what is shaped; most often without a copy of the text
        std::size_t start = 0, length = 0;           // in the text, without the line end
        std::size_t end = 0;                         // with the line end
        bool truncated = false;
        bool isPlain = false; // one line of plain glyphs, shaped only when its carets are asked for
        bool isMixed = false; // may hold text from right to left
        std::size_t head = 0, tail = 0;

        [[nodiscard]] int toShaped(std::size_t index) const;
        [[nodiscard]] std::size_t toText(int position) const;
    };
    /// Where a line of `lines_` comes from, and what to add to the shaper's x.
    struct Place {
        std::uint32_t block;
        int line;
        double x;
    };
    struct Glyphs {
        QGlyphRun run;
        std::uint32_t look; // index into runs_
    };
    struct Bar { // a rectangle of one colour: background, underline, strike
        NSRect rect;
        Color color;
        bool behind;
        bool isLine; // as high at every place
    };
    struct DrawnLine {
        std::vector<Glyphs> glyphs;
        std::vector<Bar> bars;
    };
    struct Kept {
        QImage image;
        QPoint at; // from the whole pixel of the origin
        double scale = 0;
        int phase = -1;
    };

    NearMemory<512> near_; // what one line in one look needs
    std::pmr::u16string text_;
    std::pmr::vector<TextRun> runs_;
    std::pmr::vector<Block> blocks_;
    std::pmr::vector<TextLine> lines_;
    std::pmr::vector<Place> places_;
    NSSize size_;
    double width_ = 0;       // between the margins of the container
    double largestFont_ = 0; // points
    bool clips_ = false, hasRunShadow_ = false, oneLook_ = false;
    mutable std::vector<DrawnLine> drawn_; // empty until the first drawing
    mutable bool wasDrawn_ = false;        // from masks of its glyphs
    mutable Kept kept_;
    mutable std::list<const RasterTextLayout*>::iterator keptAt_; // among those whose pixels are kept

    /// The shaper's side of a block; null where there is nothing to shape.
    [[nodiscard]] QTextLayout* shapedOf(const Block& block) const;
    /// What its font knows of a block of plain glyphs; null where it must be drawn in the long way.
    [[nodiscard]] const PlainGlyphs* plainGlyphsOf(const Block& block) const;
    [[nodiscard]] std::u16string_view textOf(const Block& block) const {
        return std::u16string_view(text_).substr(block.start, block.length);
    }
    [[nodiscard]] bool addPlain(DrawnLine& out, std::size_t line) const;
    /// The ink of one line of plain glyphs, for a painter that scales and shifts over an image of that size.
    [[nodiscard]] std::optional<GlyphMasks::Ink> plainInk(double scale, QPointF shift, QSize size) const;
    void keep(QImage&& image, QPoint at, double scale, int phase) const;
    [[nodiscard]] std::size_t lineOf(std::size_t index) const;
    [[nodiscard]] std::size_t runAt(std::size_t index) const;
    [[nodiscard]] std::size_t visibleEnd(std::size_t line) const;
    [[nodiscard]] double xOf(std::size_t line, std::size_t index) const;
    void prepareDrawing() const;
    /// The lines that may show in `visible`, from the first to one beyond the last, ready to be drawn.
    [[nodiscard]] std::pair<std::size_t, std::size_t> linesNear(const NSRect& visible) const;
    void addDrawn(DrawnLine& out, std::size_t line, int from, int length, std::size_t run) const;
    void paintLine(QPainter& painter, std::size_t line, double alpha) const;
    void paintGlyphs(QPainter& painter, const std::vector<Glyphs>& glyphs, double alpha, QPointF at = {}) const;
    void paintShadows(QPainter& painter, std::size_t line, double alpha) const;
};

} // namespace libvue::backend
