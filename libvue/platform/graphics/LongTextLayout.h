#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include <libvue/platform/backend/Canvas.h>
#include <libvue/platform/backend/TextEngine.h>
#include <libvue/platform/graphics/Forward.h>

namespace libvue {

/// A long text that changes, laid out in parts of some paragraphs each: a change costs the parts that it touches, and
/// drawing those that show. It says the same as a layout of the whole. Between two margins, without a limit below.
///
/// For the platform's own sources: it shows backend types.
class LIBVUE_API LongTextLayout final : public backend::TextLayout {
public:
    /// A part ends with the paragraph in which it gets as long, in UTF-16 units.
    static constexpr std::size_t usualPart = 1024;
    /// Wider than this (points) is no margin: nothing can be aligned at it.
    static constexpr double widest = 1e6;

    /// The text is not kept. The width must be positive and below the widest.
    LongTextLayout(NSAttributedString* text, double width, std::size_t unitsInPart = usualPart);

    /// Another text, which begins with the same `head` units and ends with the same `tail` units, attributes included.
    void textChanged(NSAttributedString* text, NSUInteger head, NSUInteger tail);
    /// Draws the parts near what the canvas shows.
    void draw(backend::Canvas& canvas, NSPoint origin, backend::YAxis axis) const;

    [[nodiscard]] double width() const noexcept { return width_; }
    [[nodiscard]] bool hasAttachments() const;
    [[nodiscard]] std::size_t partCount() const noexcept { return parts_.size(); }

    [[nodiscard]] NSSize size() const override { return size_; }
    [[nodiscard]] std::span<const backend::TextLine> lines() const override { return lines_; }
    [[nodiscard]] NSUInteger characterAtPoint(NSPoint p, double* fraction) const override;
    [[nodiscard]] NSRect caretRect(NSUInteger index) const override;
    [[nodiscard]] std::vector<NSRect> rects(NSRange range) const override;
    [[nodiscard]] NSUInteger nextCaretPosition(NSUInteger index, bool forward) const override;
    [[nodiscard]] NSUInteger length() const override { return length_; }

private:
    struct Part {
        std::shared_ptr<const backend::TextLayout> layout;
        NSUInteger start, length;
        double spaceBefore, spaceBehind; ///< that its first and last paragraphs ask for
        bool hasAttachments;
        std::size_t firstLine = 0; ///< in lines_
        double y = 0;
    };

    [[nodiscard]] std::vector<Part> layOut(NSAttributedString* text, NSUInteger from, NSUInteger end) const;
    /// Places the parts from that one on below those before it.
    void arrange(std::size_t first);
    [[nodiscard]] const Part& partAt(NSUInteger index) const { return parts_[indexOfPartAt(index)]; }
    [[nodiscard]] std::size_t indexOfPartAt(NSUInteger index) const;

    double width_;
    std::size_t unitsInPart_;
    bool dark_; ///< what colours were resolved for
    NSUInteger length_ = 0;
    std::vector<Part> parts_; ///< at least one
    std::vector<backend::TextLine> lines_;
    NSSize size_;
};

} // namespace libvue
