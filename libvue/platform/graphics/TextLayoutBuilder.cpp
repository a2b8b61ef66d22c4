#include <libvue/platform/graphics/TextLayoutBuilder.h>

#include <algorithm>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSParagraphStyle.h>
#include <libvue/platform/graphics/NSShadow.h>
#include <libvue/platform/graphics/NSTextAttributes.h>
#include <libvue/platform/graphics/TextLayoutCache.h>

namespace libvue {

namespace {

constexpr double unlimited = 1e7;
/// How far a level of superscript raises the text, in sizes of its font.
constexpr double superscriptRaise = 0.4;

const std::shared_ptr<const backend::FontFace>& defaultFace() { return NSFont::userFontOfSize(0)->face(); }

/// Behind the end of the paragraph that holds the unit `from`, its line end included.
template <class Unit> std::size_t behindParagraph(const Unit* text, std::size_t length, std::size_t from) {
    for (std::size_t i = from; i < length; ++i) {
        const char16_t u = text[i];
        if (u == u'\r' && i + 1 < length && text[i + 1] == u'\n') return i + 2;
        if (u == u'\n' || u == u'\r' || u == 0x2029 || u == 0x0085) return i + 1;
    }
    return length;
}

double number(const NSDictionary* d, const ConstantString& name) {
    const auto* n = d->get<NSNumber>(name.get());
    return n ? n->doubleValue() : 0;
}

/// The style of the line; the bits above it, which would break it into a pattern, are not drawn.
std::uint8_t underlineStyle(const NSDictionary* d) {
    const auto* n = d->get<NSNumber>(NSUnderlineStyleAttributeName.get());
    return n ? static_cast<std::uint8_t>(n->integerValue() & 0x0F) : 0;
}

std::optional<backend::Color> color(const NSDictionary* d, const ConstantString& name) {
    const auto* c = d->get<NSColor>(name.get());
    if (!c) return std::nullopt;
    return c->resolved();
}

} // namespace

backend::TextRun TextLayoutBuilder::runWithAttributes(NSDictionary* attributes, NSRange range) {
    backend::TextRun run;
    run.range = range;
    if (!attributes || attributes->count() == 0) {
        run.font = defaultFace();
        return run;
    }
    const auto* font = attributes->get<NSFont>(NSFontAttributeName);
    run.font = font ? font->face() : defaultFace();
    // Most texts carry a font, a colour and a paragraph style: count them off and look no further.
    auto left = attributes->count() - (font ? 1 : 0);
    if (const auto c = color(attributes, NSForegroundColorAttributeName)) {
        run.color = *c;
        --left;
    }
    if (left == 0) return run;
    if (attributes->objectForKey(NSParagraphStyleAttributeName) && --left == 0) return run;

    run.background = color(attributes, NSBackgroundColorAttributeName);
    run.underline = underlineStyle(attributes);
    run.strikethrough = number(attributes, NSStrikethroughStyleAttributeName) != 0;
    run.underlineColor = color(attributes, NSUnderlineColorAttributeName);
    run.baselineOffset = number(attributes, NSBaselineOffsetAttributeName) +
                         number(attributes, NSSuperscriptAttributeName) * superscriptRaise * run.font->pointSize();
    run.kern = number(attributes, NSKernAttributeName);
    if (const auto* shadow = attributes->get<NSShadow>(NSShadowAttributeName)) {
        backend::Shadow s;
        if (shadow->resolve(s)) run.shadow = s;
    }
    if (const auto* attachment =
            dynamic_cast<TextAttachmentDrawing*>(attributes->objectForKey(NSAttachmentAttributeName))) {
        run.attachment = attachment->attachmentSize();
        run.baselineOffset += attachment->attachmentBaselineOffset();
    }
    return run;
}

backend::TextParagraph TextLayoutBuilder::paragraphWithStyle(const NSParagraphStyle* style, NSRange range) {
    backend::TextParagraph p;
    p.range = range;
    if (!style) return p;
    p.alignment = static_cast<backend::TextAlignment>(style->alignment());
    p.lineBreak = static_cast<backend::LineBreak>(style->lineBreakMode());
    p.firstLineHeadIndent = style->firstLineHeadIndent();
    p.headIndent = style->headIndent();
    p.tailIndent = style->tailIndent();
    p.lineSpacing = style->lineSpacing();
    p.paragraphSpacing = style->paragraphSpacing();
    p.paragraphSpacingBefore = style->paragraphSpacingBefore();
    p.minimumLineHeight = style->minimumLineHeight();
    p.maximumLineHeight = style->maximumLineHeight();
    p.lineHeightMultiple = style->lineHeightMultiple();
    if (style->defaultTabInterval() > 0) p.defaultTabInterval = style->defaultTabInterval();
    if (const NSArray* stops = style->tabStops())
        for (const NSTextTab* stop : stops->as<NSTextTab>())
            p.tabStops.push_back(stop->location());
    p.rightToLeft = style->baseWritingDirection() == NSWritingDirectionRightToLeft;
    return p;
}

void TextLayoutBuilder::clear() {
    text_.clear();
    runs_.clear();
    paragraphs_.clear();
    width_ = height_ = 0;
    maximumLines_ = 0;
    hasAttachments_ = false;
}

void TextLayoutBuilder::takeText(const NSString* text, NSRange range) {
    if (const unichar* units = text->_fastCharacterContents())
        text_.assign(units + range.location, range.length);
    else if (const std::uint8_t* bytes = text->latin1Contents())
        text_.assign(bytes + range.location, bytes + NSMaxRange(range));
}

NSUInteger TextLayoutBuilder::endOfParagraph(const NSString* text, NSUInteger unit) {
    if (const unichar* units = text->_fastCharacterContents()) return behindParagraph(units, text->length(), unit);
    if (const std::uint8_t* bytes = text->latin1Contents()) return behindParagraph(bytes, text->length(), unit);
    return text->length();
}

void TextLayoutBuilder::appendParagraphs(NSRange range, const NSParagraphStyle* style) {
    std::size_t from = range.location;
    while (from < NSMaxRange(range)) {
        const std::size_t end = behindParagraph(text_.data(), text_.size(), from);
        paragraphs_.push_back(paragraphWithStyle(style, {from, end - from}));
        from = end;
    }
}

void TextLayoutBuilder::setString_attributes(const NSString* text, NSDictionary* attributes) {
    clear();
    if (text) takeText(text, {0, text->length()});
    runs_.push_back(runWithAttributes(attributes, {0, text_.size()}));
    hasAttachments_ = runs_.back().attachment.has_value();
    appendParagraphs({0, text_.size()},
                     attributes ? attributes->get<NSParagraphStyle>(NSParagraphStyleAttributeName) : nullptr);
}

void TextLayoutBuilder::setAttributedString(NSAttributedString* text) {
    if (text) return setAttributedString(text, {0, text->length()});
    clear();
    runs_.push_back(runWithAttributes(nullptr, {0, 0}));
}

void TextLayoutBuilder::setAttributedString(NSAttributedString* text, NSRange paragraphs) {
    clear();
    if (paragraphs.length == 0) {
        runs_.push_back(runWithAttributes(nullptr, {0, 0}));
        return;
    }
    takeText(text->string(), paragraphs);
    std::size_t paragraph = 0; // where the next one starts
    for (NSUInteger i = 0; i < paragraphs.length;) {
        NSRange range;
        NSDictionary* attributes = text->attributesAtIndex_effectiveRange(paragraphs.location + i, &range);
        const NSUInteger end = std::min(NSMaxRange(range) - paragraphs.location, paragraphs.length);
        runs_.push_back(runWithAttributes(attributes, {i, end - i}));
        hasAttachments_ = hasAttachments_ || runs_.back().attachment.has_value();
        if (paragraph < end) {
            // The first character of a paragraph says how all of it is set.
            appendParagraphs({paragraph, end - paragraph},
                             attributes->get<NSParagraphStyle>(NSParagraphStyleAttributeName));
            paragraph = NSMaxRange(paragraphs_.back().range);
        }
        i = end;
    }
}

void TextLayoutBuilder::setLineBreak(backend::LineBreak mode) {
    for (backend::TextParagraph& p : paragraphs_)
        p.lineBreak = mode;
}

backend::TextInput TextLayoutBuilder::input() const {
    backend::TextInput in;
    in.text = text_;
    in.runs = runs_;
    in.paragraphs = paragraphs_;
    in.width = width_ > 0 && width_ < unlimited ? width_ : unlimited;
    in.height = height_ > 0 && height_ < unlimited ? height_ : unlimited;
    in.maximumLines = maximumLines_;
    return in;
}

std::shared_ptr<const backend::TextLayout> TextLayoutBuilder::layout() const {
    return TextLayoutCache::shared().layout(input());
}

std::shared_ptr<const backend::TextLayout> TextLayoutBuilder::layoutUncached() const {
    return backend::Backend::current().text->layout(input());
}

void drawTextAttachments(NSAttributedString* text, const backend::TextLayout& layout, NSPoint origin) {
    const NSGraphicsContext* context = NSGraphicsContext::currentContext();
    if (!text || !context) return;
    const bool flipped = context->isFlipped();
    const Ref<NSAttributedString> kept = text;
    const NSUInteger length = std::min(text->length(), layout.length());
    for (NSUInteger i = 0; i < length;) {
        NSRange range;
        const Ref<NSObject> value = text->attribute_atIndex_effectiveRange(NSAttachmentAttributeName, i, &range);
        const NSUInteger end = std::min(NSMaxRange(range), length);
        auto* attachment = dynamic_cast<TextAttachmentDrawing*>(value.get());
        for (; attachment && i < end; ++i) {
            const std::vector<NSRect> rects = layout.rects({i, 1});
            if (rects.empty()) continue;
            const auto lines = layout.lines();
            const auto line = std::find_if(lines.begin(), lines.end(),
                                           [i](const backend::TextLine& l) { return NSLocationInRange(i, l.range); });
            if (line == lines.end()) continue;
            const NSSize size = attachment->attachmentSize();
            const double bottom = line->baseline - attachment->attachmentBaselineOffset();
            const double x = origin.x + NSMinX(rects.front());
            const double y = flipped ? origin.y + bottom - size.height : origin.y - bottom;
            attachment->drawAttachmentInRect({{x, y}, size});
        }
        i = end;
    }
}

} // namespace libvue
