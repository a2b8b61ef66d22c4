#include <libvue/platform/graphics/NSStringDrawing.h>

#include <algorithm>
#include <cstddef>
#include <deque>

#include <libvue/platform/backend/Canvas.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/TextLayoutBuilder.h>

namespace libvue {

namespace {

using LayoutRef = std::shared_ptr<const backend::TextLayout>;

/// A text in a builder, whichever form it came in. Builders are kept for their buffers, one for each text that is being
/// drawn within another: what an attachment answers may measure texts of its own.
class Source {
public:
    Source(const NSString* text, NSDictionary* attributes) : Source() {
        builder.setString_attributes(text, attributes);
    }
    explicit Source(NSAttributedString* text) : Source() {
        builder.setAttributedString(text);
        if (builder.hasAttachments()) attributed = text;
    }
    ~Source() { --depth(); }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    TextLayoutBuilder& builder;
    NSAttributedString* attributed = nullptr; ///< only where it has attachments

private:
    Source() : builder(next()) {}
    static std::size_t& depth() {
        static std::size_t d = 0;
        return d;
    }
    static TextLayoutBuilder& next() {
        static auto& builders = *new std::deque<TextLayoutBuilder>;
        if (depth() == builders.size()) builders.emplace_back();
        return builders[depth()++];
    }
};

/// An empty text is as high as a line of its font would be.
NSSize sizeOf(const Source& s, const backend::TextLayout& layout) {
    if (!s.builder.text().empty()) return layout.size();
    const backend::FontFace& face = *s.builder.runs().front().font;
    return {0, face.ascender() - face.descender() + face.leading()};
}

/// Where the leftmost line starts: in a room without limits, lines that are not set to the left stand far out.
double leftOf(const backend::TextLayout& layout) {
    double left = 1e8;
    for (const backend::TextLine& line : layout.lines())
        left = std::min(left, NSMinX(line.used));
    return left < 1e8 ? left : 0;
}

/// `origin` is the upper left corner of the layout in user space.
void draw(const Source& s, const LayoutRef& layout, NSPoint origin) {
    NSGraphicsContext& c = *NSGraphicsContext::currentContext();
    c.canvas().drawText(*layout, origin, c.isFlipped() ? backend::YAxis::down : backend::YAxis::up);
    if (s.attributed) drawTextAttachments(s.attributed, *layout, origin);
}

NSSize naturalSize(const Source& s) { return sizeOf(s, *s.builder.layout()); }

void drawAt(const Source& s, NSPoint point) {
    const NSGraphicsContext* c = NSGraphicsContext::currentContext();
    if (!c || s.builder.text().empty()) return;
    const LayoutRef layout = s.builder.layout();
    const double top = c->isFlipped() ? point.y : point.y + layout->size().height;
    draw(s, layout, {point.x - leftOf(*layout), top});
}

NSPoint upperLeft(const NSRect& rect) {
    return {NSMinX(rect), NSGraphicsContext::currentContext()->isFlipped() ? NSMinY(rect) : NSMaxY(rect)};
}

constexpr double unlimited = 0;

/// Whether a line ends elsewhere than at a line end or at the end of the text.
bool isBroken(const Source& s, const backend::TextLayout& layout) {
    const std::u16string_view text = s.builder.text();
    return std::any_of(layout.lines().begin(), layout.lines().end(), [&](const backend::TextLine& line) {
        const std::size_t end = NSMaxRange(line.range);
        if (end == 0 || end >= text.size()) return false;
        const char16_t last = text[end - 1];
        return last != u'\n' && last != u'\r' && last != u'\u2028' && last != u'\u2029';
    });
}

void drawIn(const Source& s, const NSRect& rect) {
    NSGraphicsContext* c = NSGraphicsContext::currentContext();
    if (!c || s.builder.text().empty() || NSIsEmptyRect(rect)) return;
    s.builder.setWidth(rect.size.width);
    s.builder.setHeight(rect.size.height);
    LayoutRef layout = s.builder.layout();
    // Rectangles that were measured for the text come rounded: a hair too much is no reason to cut, nor to break.
    constexpr double hair = 0.01;
    if (isBroken(s, *layout)) {
        // A last glyph that leans out of its advance breaks a line that was measured to fit.
        s.builder.setWidth(unlimited);
        s.builder.setHeight(unlimited);
        const bool fits = s.builder.layout()->size().width <= rect.size.width + hair;
        s.builder.setWidth(rect.size.width);
        s.builder.setHeight(rect.size.height);
        if (fits) {
            s.builder.setLineBreak(backend::LineBreak::clipping);
            layout = s.builder.layout();
        }
    }
    const NSSize size = layout->size();
    if (size.width <= rect.size.width + hair && size.height <= rect.size.height + hair) {
        draw(s, layout, upperLeft(rect));
        return;
    }
    c->saveState();
    c->canvas().clip(rect);
    draw(s, layout, upperLeft(rect));
    c->restoreState();
}

/// The layout that the options ask for within a size of which 0 is unlimited.
LayoutRef layoutWithin(const Source& s, NSSize size, NSUInteger options) {
    TextLayoutBuilder& b = s.builder;
    b.setWidth(size.width);
    if (!(options & NSStringDrawingUsesLineFragmentOrigin)) {
        b.setMaximumLines(1);
        return b.layout();
    }
    LayoutRef layout = b.layout();
    if (!(options & NSStringDrawingTruncatesLastVisibleLine) || !(size.height > 0) ||
        layout->size().height <= size.height)
        return layout;
    const auto lines = layout->lines();
    const auto fits = std::count_if(lines.begin(), lines.end(),
                                    [&](const backend::TextLine& l) { return NSMaxY(l.rect) <= size.height; });
    const auto truncates = [](const backend::TextParagraph& p) {
        return p.lineBreak >= backend::LineBreak::truncatingHead;
    };
    if (std::none_of(b.paragraphs().begin(), b.paragraphs().end(), truncates))
        b.setLineBreak(backend::LineBreak::truncatingTail);
    b.setMaximumLines(static_cast<NSUInteger>(std::max<std::ptrdiff_t>(fits, 1)));
    return b.layout();
}

double baselineOf(const backend::TextLayout& layout) {
    return layout.lines().empty() ? 0 : layout.lines().front().baseline;
}

NSRect boundingRect(const Source& s, NSSize size, NSUInteger options) {
    const LayoutRef layout = layoutWithin(s, size, options);
    const NSSize used = sizeOf(s, *layout);
    if (options & NSStringDrawingUsesLineFragmentOrigin) return {NSZeroPoint, used};
    const double baseline = layout->lines().empty() ? s.builder.runs().front().font->ascender() : baselineOf(*layout);
    return {{0, baseline - used.height}, used};
}

void drawWith(const Source& s, const NSRect& rect, NSUInteger options) {
    const NSGraphicsContext* c = NSGraphicsContext::currentContext();
    if (!c || s.builder.text().empty()) return;
    const LayoutRef layout = layoutWithin(s, rect.size, options);
    if (options & NSStringDrawingUsesLineFragmentOrigin) {
        draw(s, layout, upperLeft(rect));
        return;
    }
    const double baseline = baselineOf(*layout);
    const double left = rect.size.width > 0 ? 0 : leftOf(*layout);
    draw(s, layout, {NSMinX(rect) - left, c->isFlipped() ? NSMinY(rect) - baseline : NSMinY(rect) + baseline});
}

} // namespace

NSSize sizeWithAttributes(const NSString* text, NSDictionary* attributes) {
    return naturalSize(Source(text, attributes));
}

void drawAtPoint_withAttributes(const NSString* text, NSPoint point, NSDictionary* attributes) {
    drawAt(Source(text, attributes), point);
}

void drawInRect_withAttributes(const NSString* text, const NSRect& rect, NSDictionary* attributes) {
    drawIn(Source(text, attributes), rect);
}

NSRect boundingRectWithSize_options_attributes(const NSString* text, NSSize size, NSUInteger options,
                                               NSDictionary* attributes) {
    return boundingRect(Source(text, attributes), size, options);
}

void drawWithRect_options_attributes(const NSString* text, const NSRect& rect, NSUInteger options,
                                     NSDictionary* attributes) {
    drawWith(Source(text, attributes), rect, options);
}

NSSize size(NSAttributedString* text) { return naturalSize(Source(text)); }

void drawAtPoint(NSAttributedString* text, NSPoint point) { drawAt(Source(text), point); }

void drawInRect(NSAttributedString* text, const NSRect& rect) { drawIn(Source(text), rect); }

NSRect boundingRectWithSize_options(NSAttributedString* text, NSSize size, NSUInteger options) {
    return boundingRect(Source(text), size, options);
}

void drawWithRect_options(NSAttributedString* text, const NSRect& rect, NSUInteger options) {
    drawWith(Source(text), rect, options);
}

} // namespace libvue
