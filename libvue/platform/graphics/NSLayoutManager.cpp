#include <libvue/platform/graphics/NSLayoutManager.h>

#include <algorithm>
#include <utility>

#include <libvue/platform/backend/Canvas.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/graphics/LongTextLayout.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSTextContainer.h>
#include <libvue/platform/graphics/NSTextStorage.h>
#include <libvue/platform/graphics/TextLayoutBuilder.h>
#include <libvue/platform/graphics/TextLayoutCache.h>

namespace libvue {

static const ClassRegistration<NSLayoutManager> registration;

namespace {

/// Heights come as sums: a hair too much is no reason to leave a line out.
constexpr CGFloat hair = 1e-6;

NSRange clipped(NSRange r, NSUInteger length) {
    const NSUInteger from = std::min(r.location, length);
    return {from, std::min(r.length, length - from)};
}

} // namespace

/// What stands in one container.
struct NSLayoutManager::Laid {
    std::shared_ptr<const backend::TextLayout> layout; ///< of the text from range.location on
    std::shared_ptr<LongTextLayout> parts;             ///< the same, where it is long
    Ref<NSAttributedString> text;                      ///< only where it has attachments
    NSRange range;
    std::size_t lines = 0; ///< that fit
    CGFloat padding = 0;

    [[nodiscard]] std::span<const backend::TextLine> shown() const { return layout->lines().first(lines); }
    [[nodiscard]] NSRect placed(const NSRect& r) const { return NSOffsetRect(r, padding, 0); }
};

struct NSLayoutManager::Place {
    const Laid* laid = nullptr;
    const backend::TextLine* line = nullptr;

    [[nodiscard]] NSRange range() const {
        return line ? NSRange{laid->range.location + line->range.location, line->range.length} : NSRange{0, 0};
    }
};

void NSLayoutManager::describe(ClassDescription<NSLayoutManager>&) {}

NSLayoutManager::NSLayoutManager() = default;
NSLayoutManager::~NSLayoutManager() = default;

void NSLayoutManager::setTextStorage_(NSTextStorage* storage) {
    storage_ = storage;
    forget(0);
    former_ = {};
}

// Containers.

Ref<NSArray> NSLayoutManager::textContainers() const {
    const Ref<NSMutableArray> all = NSMutableArray::array();
    for (const auto& c : containers_)
        all->addObject(c);
    return all;
}

std::size_t NSLayoutManager::indexOf(const NSTextContainer* container) const noexcept {
    return static_cast<std::size_t>(std::find(containers_.begin(), containers_.end(), container) - containers_.begin());
}

void NSLayoutManager::addTextContainer(NSTextContainer* container) {
    insertTextContainer_atIndex(container, containers_.size());
}

void NSLayoutManager::insertTextContainer_atIndex(NSTextContainer* container, NSUInteger index) {
    if (!container) return;
    if (index > containers_.size()) raiseNamed(NSRangeException, "no such place among the text containers");
    const Ref<NSTextContainer> kept(container);
    if (const Ref<NSLayoutManager> former = container->manager_.ref()) {
        const std::size_t at = former->indexOf(container);
        former->removeTextContainerAtIndex(at);
        if (former.get() == this && at < index) --index;
    }
    containers_.insert(containers_.begin() + static_cast<std::ptrdiff_t>(index), kept);
    kept->manager_ = this;
    forget(index);
}

void NSLayoutManager::removeTextContainerAtIndex(NSUInteger index) {
    if (index >= containers_.size()) raiseNamed(NSRangeException, "no such text container");
    const auto at = containers_.begin() + static_cast<std::ptrdiff_t>(index);
    (*at)->manager_ = nullptr;
    containers_.erase(at);
    forget(index);
}

void NSLayoutManager::textContainerChangedGeometry(NSTextContainer* container) { forget(indexOf(container)); }

void NSLayoutManager::textStorage_edited_range_changeInLength(NSTextStorage*, NSUInteger, NSRange range, NSInteger) {
    if (!laid_.empty() && laid_.front().parts) former_ = {laid_.front().parts, NSNotFound, NSNotFound};
    former_.head = std::min(former_.head, range.location);
    former_.tail = std::min(former_.tail, storage_->length() - NSMaxRange(range));
    // What ends in front of the edit may still break otherwise: the word that goes on behind it.
    std::size_t first = 0;
    while (first < laid_.size() && NSMaxRange(laid_[first].range) < range.location)
        ++first;
    forget(first > 0 ? first - 1 : 0);
}

void NSLayoutManager::forget(std::size_t first) {
    if (first < laid_.size()) laid_.resize(first);
}

// Layout.

void NSLayoutManager::layOutThrough(std::size_t last) {
    const Ref<NSLayoutManager> self(this);
    // Asked while one is under way, by what measures an attachment for instance, it needs buffers of its own.
    TextLayoutBuilder builder;
    // The delegate, told of each container, may change text and containers, or take the storage away.
    while (storage_ && laid_.size() <= last && laid_.size() < containers_.size()) {
        const Ref<NSTextStorage> storage(storage_);
        const NSUInteger length = storage->length();
        const Ref<NSTextContainer> container = containers_[laid_.size()];
        const NSUInteger from = laid_.empty() ? 0 : NSMaxRange(laid_.back().range);
        if (!laid_.empty() && from >= length) return;
        const CGFloat padding = container->lineFragmentPadding();
        const NSSize size = container->containerSize();
        // A container that its padding fills has no room; no width at all would be no limit.
        const CGFloat width = size.width > 0 ? std::max(size.width - 2 * padding, hair) : 0;
        const bool isLong = from == 0 && length > TextLayoutCache::longestText && width > 0 &&
                            width < LongTextLayout::widest && !(size.height > 0);
        Laid l;
        // The storage changes, and holds this: what is drawn later is a copy.
        if (isLong) {
            l.layout = l.parts = longLayout(*storage, width);
            if (l.parts->hasAttachments()) l.text = make<NSAttributedString>(storage);
        } else {
            builder.setAttributedString(storage, {from, length - from});
            builder.setWidth(width);
            builder.setHeight(size.height);
            l.layout = builder.layout();
            if (builder.hasAttachments()) l.text = storage->attributedSubstringFromRange({from, length - from});
        }
        l.padding = padding;
        const auto lines = l.layout->lines();
        l.lines = lines.size();
        if (size.height > 0)
            while (l.lines > 0 && NSMaxY(lines[l.lines - 1].rect) > size.height + hair)
                --l.lines;
        const bool all = l.lines == lines.size() && (lines.empty() || NSMaxRange(lines.back().range) >= length - from);
        const NSUInteger end = all ? length - from : l.lines ? NSMaxRange(lines[l.lines - 1].range) : 0;
        l.range = {from, end};
        laid_.push_back(std::move(l));
        const bool over = laid_.size() == containers_.size();
        if (const auto tell = op::layoutManager_didCompleteLayoutForTextContainer_atEnd.of(delegate_))
            tell(this, !all && over ? nullptr : container.get(), all);
    }
}

/// Of the whole text.
std::shared_ptr<LongTextLayout> NSLayoutManager::longLayout(NSTextStorage& text, CGFloat width) {
    const Former former = std::exchange(former_, {});
    if (!former.parts || former.parts->width() != width) return std::make_shared<LongTextLayout>(&text, width);
    // One that is being drawn stays as it is.
    auto parts = former.parts.use_count() == 1 ? former.parts : std::make_shared<LongTextLayout>(*former.parts);
    parts->textChanged(&text, former.head, former.tail);
    return parts;
}

const NSLayoutManager::Laid* NSLayoutManager::laid(const NSTextContainer* container) {
    const std::size_t i = indexOf(container);
    if (i >= containers_.size()) return nullptr;
    if (i >= laid_.size()) layOutThrough(i);
    return i < laid_.size() ? &laid_[i] : nullptr;
}

void NSLayoutManager::ensureLayoutForTextContainer(NSTextContainer* container) { (void)laid(container); }

NSRange NSLayoutManager::glyphRangeForTextContainer(NSTextContainer* container) {
    const Laid* l = laid(container);
    return l ? l->range : NSRange{0, 0};
}

NSRect NSLayoutManager::usedRectForTextContainer(NSTextContainer* container) {
    const Laid* l = laid(container);
    if (!l || l->lines == 0) return NSZeroRect;
    NSRect all = l->shown().front().used;
    for (const backend::TextLine& line : l->shown()) {
        const CGFloat left = std::min(NSMinX(all), NSMinX(line.used));
        const CGFloat right = std::max(NSMaxX(all), NSMaxX(line.used));
        // An empty line is as high as its font, though nothing is in it.
        const CGFloat bottom = std::max(NSMaxY(all), NSMaxY(line.rect));
        all = {{left, NSMinY(all)}, {right - left, bottom - NSMinY(all)}};
    }
    // From the top: the space before a first paragraph counts.
    const NSRect first = l->shown().front().rect;
    const CGFloat top = std::min(NSMinY(all), NSMinY(first));
    return {{NSMinX(all), top}, {all.size.width + 2 * l->padding, NSMaxY(all) - top}};
}

NSUInteger NSLayoutManager::numberOfGlyphs() const { return storage_ ? storage_->length() : 0; }

NSRange NSLayoutManager::glyphRangeForCharacterRange_actualCharacterRange(NSRange characters, NSRange* actual) const {
    const NSRange r = clipped(characters, numberOfGlyphs());
    if (actual) *actual = r;
    return r;
}

NSRange NSLayoutManager::characterRangeForGlyphRange_actualGlyphRange(NSRange glyphs, NSRange* actual) const {
    return glyphRangeForCharacterRange_actualCharacterRange(glyphs, actual);
}

NSLayoutManager::Place NSLayoutManager::placeOf(NSUInteger glyph) {
    if (glyph >= numberOfGlyphs()) return {};
    for (std::size_t i = 0; i < containers_.size(); ++i) {
        if (i >= laid_.size()) layOutThrough(i);
        if (i >= laid_.size()) return {};
        const Laid& l = laid_[i];
        if (!NSLocationInRange(glyph, l.range)) continue;
        const auto lines = l.shown();
        const auto line = std::upper_bound(
            lines.begin(), lines.end(), glyph - l.range.location,
            [](NSUInteger at, const backend::TextLine& candidate) { return at < NSMaxRange(candidate.range); });
        return line == lines.end() ? Place{} : Place{&l, &*line};
    }
    return {};
}

NSTextContainer* NSLayoutManager::textContainerForGlyphAtIndex_effectiveRange(NSUInteger glyph, NSRange* range) {
    const Place p = placeOf(glyph);
    if (range) *range = p.laid ? p.laid->range : NSRange{0, 0};
    return p.laid ? containers_[static_cast<std::size_t>(p.laid - laid_.data())].get() : nullptr;
}

// Places.

NSRect NSLayoutManager::lineFragmentRectForGlyphAtIndex_effectiveRange(NSUInteger glyph, NSRange* range) {
    const Place p = placeOf(glyph);
    if (range) *range = p.range();
    if (!p.line) return NSZeroRect;
    const NSRect r = p.line->rect;
    return {r.origin, {r.size.width + 2 * p.laid->padding, r.size.height}};
}

NSRect NSLayoutManager::lineFragmentUsedRectForGlyphAtIndex_effectiveRange(NSUInteger glyph, NSRange* range) {
    const Place p = placeOf(glyph);
    if (range) *range = p.range();
    if (!p.line) return NSZeroRect;
    const NSRect r = p.line->used;
    return {r.origin, {r.size.width + 2 * p.laid->padding, r.size.height}};
}

NSPoint NSLayoutManager::locationForGlyphAtIndex(NSUInteger glyph) {
    const Place p = placeOf(glyph);
    if (!p.line) return NSZeroPoint;
    const NSRect caret = p.laid->placed(p.laid->layout->caretRect(glyph - p.laid->range.location));
    return {caret.origin.x - p.line->rect.origin.x, p.line->baseline - p.line->rect.origin.y};
}

std::vector<NSRect> NSLayoutManager::rectsForCharacterRange_inTextContainer(NSRange characters,
                                                                            NSTextContainer* container) {
    const Laid* l = laid(container);
    if (!l) return {};
    const NSRange here = NSIntersectionRange(clipped(characters, numberOfGlyphs()), l->range);
    if (here.length == 0) return {};
    std::vector<NSRect> rects = l->layout->rects({here.location - l->range.location, here.length});
    for (NSRect& r : rects)
        r = l->placed(r);
    return rects;
}

NSRect NSLayoutManager::boundingRectForGlyphRange_inTextContainer(NSRange glyphs, NSTextContainer* container) {
    NSRect all = NSZeroRect;
    for (const std::vector<NSRect> rects = rectsForCharacterRange_inTextContainer(glyphs, container);
         const NSRect& r : rects)
        all = NSUnionRect(all, r);
    return all;
}

NSRange NSLayoutManager::glyphRangeForBoundingRect_inTextContainer(const NSRect& rect, NSTextContainer* container) {
    const Laid* l = laid(container);
    if (!l) return {0, 0};
    const auto lines = l->shown();
    const auto first = std::partition_point(
        lines.begin(), lines.end(), [&](const backend::TextLine& line) { return NSMaxY(line.rect) <= NSMinY(rect); });
    const auto last = std::partition_point(
        first, lines.end(), [&](const backend::TextLine& line) { return NSMinY(line.rect) < NSMaxY(rect); });
    if (first == last) return {l->range.location, 0};
    const NSUInteger from = first->range.location;
    return {l->range.location + from, NSMaxRange(std::prev(last)->range) - from};
}

NSUInteger NSLayoutManager::glyphIndexForPoint_inTextContainer_fractionOfDistanceThroughGlyph(
    NSPoint point, NSTextContainer* container, CGFloat* fraction) {
    if (fraction) *fraction = 0;
    const Laid* l = laid(container);
    if (!l || l->range.length == 0) return l ? l->range.location : 0;
    const NSUInteger at = l->layout->characterAtPoint({point.x - l->padding, point.y}, fraction);
    return l->range.location + std::min(at, l->range.length - 1);
}

NSTextContainer* NSLayoutManager::extraLineFragmentTextContainer() {
    if (containers_.empty()) return nullptr;
    layOutThrough(containers_.size() - 1);
    if (laid_.empty()) return nullptr;
    const Laid& l = laid_.back();
    if (NSMaxRange(l.range) < numberOfGlyphs() || l.lines == 0) return nullptr;
    return l.shown().back().range.length == 0 ? containers_[laid_.size() - 1].get() : nullptr;
}

NSRect NSLayoutManager::extraLineFragmentRect() {
    if (!extraLineFragmentTextContainer()) return NSZeroRect;
    const NSRect r = laid_.back().shown().back().rect;
    return {r.origin, {r.size.width + 2 * laid_.back().padding, r.size.height}};
}

// Drawing.

void NSLayoutManager::drawGlyphsForGlyphRange_atPoint(NSRange glyphs, NSPoint point) {
    NSGraphicsContext* context = NSGraphicsContext::currentContext();
    glyphs = clipped(glyphs, numberOfGlyphs());
    if (!context || glyphs.length == 0) return;
    const Ref<NSLayoutManager> self(this);
    // The last one first: it has everything laid out that the other one then points into.
    const Place last = placeOf(NSMaxRange(glyphs) - 1), first = placeOf(glyphs.location);
    if (!first.line) return;
    const Laid drawn = *first.laid; // what draws an attachment may change the text
    const bool flipped = context->isFlipped();
    const NSPoint corner{point.x + drawn.padding, point.y};
    const CGFloat top = NSMinY(first.line->rect);
    const CGFloat bottom = NSMaxY((last.laid == first.laid ? last.line : &drawn.shown().back())->rect);
    const bool some = drawn.lines < drawn.layout->lines().size() || first.line != &drawn.shown().front() ||
                      (last.laid == first.laid && last.line != &drawn.shown().back());
    context->saveState();
    // Glyphs that reach out of their lines are cut only where lines are left out.
    if (some) {
        constexpr CGFloat wide = 1e6;
        const CGFloat y = flipped ? point.y + top : point.y - bottom;
        context->canvas().clip({{point.x - wide, y}, {2 * wide, bottom - top}});
    }
    const backend::YAxis axis = flipped ? backend::YAxis::down : backend::YAxis::up;
    if (drawn.parts)
        drawn.parts->draw(context->canvas(), corner, axis);
    else
        context->canvas().drawText(*drawn.layout, corner, axis);
    if (drawn.text) drawTextAttachments(drawn.text, *drawn.layout, corner);
    context->restoreState();
}

CGFloat NSLayoutManager::defaultLineHeightForFont(const NSFont* font) const {
    return font ? font->defaultLineHeightForFont() : 0;
}

CGFloat NSLayoutManager::defaultBaselineOffsetForFont(const NSFont* font) const { return font ? font->ascender() : 0; }

} // namespace libvue
