#pragma once

#include <memory>
#include <string>
#include <vector>

#include <libvue/platform/backend/TextEngine.h>
#include <libvue/platform/graphics/Forward.h>

namespace libvue {

/// Attributed text as the text engine takes it: units, runs and paragraphs by value, colours resolved by the current
/// appearance. Reuse one to keep its buffers.
///
/// For the platform's own sources: it shows backend types.
class LIBVUE_API TextLayoutBuilder {
public:
    /// Replaces what was there. Null is the empty text.
    void setString_attributes(const NSString* text, NSDictionary* attributes);
    void setAttributedString(NSAttributedString* text);
    /// Some whole paragraphs of it, counted from the first of them; the range must be inside of the text.
    void setAttributedString(NSAttributedString* text, NSRange paragraphs);
    /// Replaces the line break of every paragraph.
    void setLineBreak(backend::LineBreak mode);

    /// Limits, in points; what is not positive is unlimited.
    void setWidth(double width) noexcept { width_ = width; }
    void setHeight(double height) noexcept { height_ = height; }
    void setMaximumLines(NSUInteger lines) noexcept { maximumLines_ = lines; }

    /// The input over this builder's buffers: good until the next change.
    [[nodiscard]] backend::TextInput input() const;
    /// Laid out, from the cache where the very same input was laid out before.
    [[nodiscard]] std::shared_ptr<const backend::TextLayout> layout() const;
    /// Laid out anew and not kept: for long texts that change.
    [[nodiscard]] std::shared_ptr<const backend::TextLayout> layoutUncached() const;

    [[nodiscard]] bool hasAttachments() const noexcept { return hasAttachments_; }
    [[nodiscard]] const std::vector<backend::TextRun>& runs() const noexcept { return runs_; }
    [[nodiscard]] const std::vector<backend::TextParagraph>& paragraphs() const noexcept { return paragraphs_; }
    [[nodiscard]] const std::u16string& text() const noexcept { return text_; }

    /// One run's look from its attributes (null: none).
    [[nodiscard]] static backend::TextRun runWithAttributes(NSDictionary* attributes, NSRange range);
    [[nodiscard]] static backend::TextParagraph paragraphWithStyle(const NSParagraphStyle* style, NSRange range);
    /// Behind the end of the paragraph that holds a unit, its line end included.
    [[nodiscard]] static NSUInteger endOfParagraph(const NSString* text, NSUInteger unit);

private:
    void clear();
    void takeText(const NSString* text, NSRange range);
    void appendParagraphs(NSRange range, const NSParagraphStyle* style);

    std::u16string text_;
    std::vector<backend::TextRun> runs_;
    std::vector<backend::TextParagraph> paragraphs_;
    double width_ = 0, height_ = 0;
    NSUInteger maximumLines_ = 0;
    bool hasAttachments_ = false;
};

/// Draws what stands at the attachments of a text that was laid out: `origin` is the layout's top left corner in the
/// user space of the current context.
LIBVUE_API void drawTextAttachments(NSAttributedString* text, const backend::TextLayout& layout, NSPoint origin);

} // namespace libvue
