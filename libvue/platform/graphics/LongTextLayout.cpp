#include <libvue/platform/graphics/LongTextLayout.h>

#include <algorithm>
#include <iterator>

#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/graphics/Appearance.h>
#include <libvue/platform/graphics/TextLayoutBuilder.h>

namespace libvue {

namespace {

/// How far, in points, ink may reach out of its lines: marks, shadows, raised text.
constexpr double overhang = 200;

bool isDark() { return currentAppearance() == Appearance::dark; }

} // namespace

LongTextLayout::LongTextLayout(NSAttributedString* text, double width, std::size_t unitsInPart)
    : width_(width), unitsInPart_(std::max<std::size_t>(unitsInPart, 1)), dark_(isDark()), length_(text->length()) {
    parts_ = layOut(text, 0, length_);
    arrange(0);
}

std::vector<LongTextLayout::Part> LongTextLayout::layOut(NSAttributedString* text, NSUInteger from,
                                                         NSUInteger end) const {
    TextLayoutBuilder builder;
    std::vector<Part> out;
    do {
        const NSUInteger next = end - from > unitsInPart_
                                    ? TextLayoutBuilder::endOfParagraph(text->string(), from + unitsInPart_ - 1)
                                    : end;
        builder.setAttributedString(text, {from, next - from});
        builder.setWidth(width_);
        const auto& paragraphs = builder.paragraphs();
        out.push_back({builder.layoutUncached(), from, next - from,
                       paragraphs.empty() ? 0 : std::max(0.0, paragraphs.front().paragraphSpacingBefore),
                       paragraphs.empty() ? 0 : std::max(0.0, paragraphs.back().paragraphSpacing),
                       builder.hasAttachments()});
        from = next;
    } while (from < end);
    return out;
}

void LongTextLayout::arrange(std::size_t first) {
    lines_.resize(first > 0 ? parts_[first].firstLine : 0);
    for (std::size_t i = first; i < parts_.size(); ++i) {
        Part& part = parts_[i];
        part.firstLine = lines_.size();
        part.y = i > 0 ? NSMaxY(lines_.back().rect) + parts_[i - 1].spaceBehind + part.spaceBefore : 0;
        for (backend::TextLine line : part.layout->lines()) {
            // The empty line behind the last line end is one at the end of the whole text alone.
            if (i + 1 < parts_.size() && line.range.location >= part.length) break;
            line.range.location += part.start;
            line.rect.origin.y += part.y;
            line.used.origin.y += part.y;
            line.baseline += part.y;
            lines_.push_back(line);
        }
    }
    double width = 0;
    for (const Part& part : parts_)
        width = std::max(width, part.layout->size().width);
    size_ = {width, lines_.empty() ? 0 : NSMaxY(lines_.back().used)};
}

void LongTextLayout::textChanged(NSAttributedString* text, NSUInteger head, NSUInteger tail) {
    const NSUInteger before = length_, now = text->length();
    if (dark_ != isDark()) head = tail = 0;
    dark_ = isDark();
    head = std::min({head, before, now});
    tail = std::min(tail, std::min(before, now) - head);
    // From the part of the last unit in front of the change to that of the first one behind it: what ends a part is
    // still a line end then, and the next unit no second half of it.
    const std::size_t first = indexOfPartAt(head > 0 ? head - 1 : 0);
    std::size_t last = tail > 0 ? indexOfPartAt(before - tail) : parts_.size() - 1;
    const NSUInteger from = parts_[first].start;
    const auto endOf = [&](const Part& part) { return part.start + part.length + now - before; };
    // What became short joins the next one.
    if (endOf(parts_[last]) - from < unitsInPart_ / 2 && last + 1 < parts_.size()) ++last;

    std::vector<Part> fresh = layOut(text, from, endOf(parts_[last]));
    fresh.front().firstLine = parts_[first].firstLine;
    length_ = now;
    for (std::size_t i = last + 1; i < parts_.size(); ++i)
        parts_[i].start += now - before;
    const auto at = parts_.begin() + static_cast<std::ptrdiff_t>(first);
    const auto behind = parts_.erase(at, parts_.begin() + static_cast<std::ptrdiff_t>(last) + 1);
    parts_.insert(behind, std::make_move_iterator(fresh.begin()), std::make_move_iterator(fresh.end()));
    arrange(first);
}

std::size_t LongTextLayout::indexOfPartAt(NSUInteger index) const {
    const auto behind = std::upper_bound(parts_.begin(), parts_.end(), index,
                                         [](NSUInteger i, const Part& part) { return i < part.start; });
    return behind == parts_.begin() ? 0 : static_cast<std::size_t>(behind - parts_.begin()) - 1;
}

bool LongTextLayout::hasAttachments() const {
    return std::any_of(parts_.begin(), parts_.end(), [](const Part& part) { return part.hasAttachments; });
}

void LongTextLayout::draw(backend::Canvas& canvas, NSPoint origin, backend::YAxis axis) const {
    const NSRect shown = NSInsetRect(canvas.clipBounds(), -overhang, -overhang);
    const bool down = axis == backend::YAxis::down;
    for (const Part& part : parts_) {
        const double height = NSMaxY(part.layout->lines().back().rect);
        const double y = down ? origin.y + part.y : origin.y - part.y;
        const double low = down ? y : y - height;
        if (low <= NSMaxY(shown) && low + height >= NSMinY(shown)) canvas.drawText(*part.layout, {origin.x, y}, axis);
    }
}

// Places. A part is asked in its own coordinates.

NSUInteger LongTextLayout::characterAtPoint(NSPoint p, double* fraction) const {
    const auto below = std::upper_bound(lines_.begin(), lines_.end(), p.y,
                                        [](double y, const backend::TextLine& line) { return y < line.rect.origin.y; });
    const backend::TextLine& line = below == lines_.begin() ? lines_.front() : *std::prev(below);
    const Part& part = partAt(line.range.location);
    const auto inPart = static_cast<std::size_t>(&line - lines_.data()) - part.firstLine;
    return part.start + part.layout->characterAtPoint({p.x, part.layout->lines()[inPart].rect.origin.y}, fraction);
}

NSRect LongTextLayout::caretRect(NSUInteger index) const {
    const Part& part = partAt(index);
    return NSOffsetRect(part.layout->caretRect(index - part.start), 0, part.y);
}

std::vector<NSRect> LongTextLayout::rects(NSRange range) const {
    std::vector<NSRect> out;
    const NSUInteger from = std::min(range.location, length_);
    const NSUInteger end = from + std::min(range.length, length_ - from);
    for (std::size_t i = indexOfPartAt(from); i < parts_.size() && parts_[i].start < end; ++i) {
        const Part& part = parts_[i];
        const NSUInteger first = std::max(from, part.start) - part.start;
        for (const NSRect& r : part.layout->rects({first, std::min(end - part.start, part.length) - first}))
            out.push_back(NSOffsetRect(r, 0, part.y));
    }
    return out;
}

NSUInteger LongTextLayout::nextCaretPosition(NSUInteger index, bool forward) const {
    const NSUInteger at = std::min(index, length_);
    const Part& part = partAt(!forward && at > 0 ? at - 1 : at);
    return part.start + part.layout->nextCaretPosition(at - part.start, forward);
}

} // namespace libvue
