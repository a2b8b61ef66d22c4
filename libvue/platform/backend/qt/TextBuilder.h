#pragma once

#include <cstddef>

#include <QList>
#include <QTextLayout>
#include <QTextOption>

#include <libvue/platform/backend/qt/RasterTextLayout.h>
#include <libvue/platform/backend/qt/TextFonts.h>
#include <libvue/platform/foundation/InlineVector.h>

namespace libvue::backend {

/// Breaks the text into paragraphs and these into lines, and places them. Lives for one layout.
class TextBuilder {
public:
    /// The shaper's lengths are fixed-point numbers; this much is wider than any text and within them.
    static constexpr double unbounded = 4e6;

    TextBuilder(RasterTextLayout& layout, const TextInput& input);
    void build();

private:
    struct Paragraph {
        std::size_t start, length, end;
    };
    struct Measures {
        double ascent = 0, descent = 0, leading = 0;
    };
    using Block = RasterTextLayout::Block;

    RasterTextLayout& to_;
    const TextInput& in_;
    double width_, height_;
    bool bounded_; // whether the width is one that lines can be aligned in
    double y_ = 0;
    std::size_t nextStyle_ = 0;
    const TextParagraph* style_ = nullptr;

    [[nodiscard]] std::size_t paragraphAt(std::size_t start, Paragraph& out) const;
    [[nodiscard]] const TextParagraph& styleAt(std::size_t index);
    [[nodiscard]] bool isFull() const;
    void addParagraph(const Paragraph& p);
    void addShaped(const Paragraph& p);
    /// What is known of plain words, where the paragraph is one line of them; null otherwise.
    [[nodiscard]] PlainGlyphs* plainGlyphs(const Paragraph& p) const;
    [[nodiscard]] bool addPlain(const Paragraph& p, const PlainGlyphs& glyphs);
    void addWrapped(const Paragraph& p, Block& block);
    bool addTruncated(const Paragraph& p, std::size_t from, double indent, double width);
    /// What truncation keeps of a line: units before `head` and from `tail` on, with their advances.
    struct Cut {
        int head, tail;
        double headWidth = 0, tailWidth = 0;
    };
    [[nodiscard]] Cut cutFor(const QTextLine& line, const QTextLayout& layout, double room) const;
    /// Shapes both parts with "…" between them; whether that fits.
    [[nodiscard]] bool join(Block& block, const Block& whole, const Cut& cut, double width) const;
    [[nodiscard]] double ellipsisAdvance(std::size_t from, std::size_t end) const;
    void addEmptyLine(const Paragraph& p);
    /// As the shaper gets it: as long as the text, with a stand-in for each attachment.
    [[nodiscard]] QString stringOf(std::size_t from, std::size_t to) const;
    void shape(Block& block) const;
    [[nodiscard]] QTextOption option() const;
    [[nodiscard]] QList<QTextLayout::FormatRange> formats(const Block& block) const;
    [[nodiscard]] Measures measure(std::size_t from, std::size_t to) const;
    [[nodiscard]] static double usedWidth(const QTextLine& line, const Block& block, double available);
    void place(const Measures& measures, NSRange range, double x, double available, const QTextLine* line,
               std::size_t block, bool truncated);
    /// The same for a line whose number among the shaper's, advance and x are known.
    void placeLine(const Measures& measures, NSRange range, double x, double available,
                   const RasterTextLayout::Place& from, double used, bool truncated);
    void align();

    struct Pending { // lines are aligned at the end, when the widest one is known
        double x, available;
        TextAlignment alignment;
        bool rightToLeft;
    };
    InlineVector<Pending, 4> pending_;
};

} // namespace libvue::backend
