#include <libvue/platform/backend/qt/RasterTextLayout.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include <QTextBoundaryFinder>
#include <QTextOption>

#include <libvue/platform/backend/qt/TextBuilder.h>

namespace libvue::backend {

RasterTextLayout::RasterTextLayout(const TextInput& input)
    : text_(input.text, &near_),
      runs_(input.runs.begin(), input.runs.end(), &near_),
      blocks_(&near_),
      lines_(&near_),
      places_(&near_) {
    for (const TextRun& run : runs_) {
        largestFont_ = std::max(largestFont_, rasterFace(run.font.get()).pointSize());
        hasRunShadow_ = hasRunShadow_ || run.shadow.has_value();
    }
    if (runs_.empty()) largestFont_ = rasterFace(nullptr).pointSize();
    oneLook_ = runs_.size() <= 1;
    TextBuilder(*this, input).build();
}

int RasterTextLayout::Block::toShaped(std::size_t index) const {
    const std::size_t at = std::min(index > start ? index - start : 0, length);
    if (!truncated || at <= head) return static_cast<int>(at);
    if (at >= length - tail) return static_cast<int>(head + 1 + at - (length - tail));
    return static_cast<int>(head);
}

std::size_t RasterTextLayout::Block::toText(int position) const {
    const auto at = static_cast<std::size_t>(std::max(position, 0));
    if (!truncated || at <= head) return start + std::min(at, length);
    return start + std::min(length - tail + (at - head - 1), length);
}

QTextLayout* RasterTextLayout::shapedOf(const Block& block) const {
    if (!block.shaped && block.isPlain) {
        const RasterFontFace& face = rasterFace(runs_.empty() ? nullptr : runs_[0].font.get());
        const std::u16string_view text = textOf(block);
        const auto string =
            QString::fromRawData(reinterpret_cast<const QChar*>(text.data()), static_cast<qsizetype>(text.size()));
        block.shaped = std::make_unique<QTextLayout>(string, face.font());
        block.shaped->setCacheEnabled(true);
        QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
        option.setWrapMode(QTextOption::ManualWrap);
        block.shaped->setTextOption(option);
        block.shaped->beginLayout();
        QTextLine line = block.shaped->createLine();
        line.setLineWidth(TextBuilder::unbounded);
        block.shaped->endLayout();
    }
    return block.shaped.get();
}

std::size_t RasterTextLayout::runAt(std::size_t index) const {
    const auto after = std::upper_bound(runs_.begin(), runs_.end(), index,
                                        [](std::size_t i, const TextRun& run) { return i < run.range.location; });
    return after == runs_.begin() ? 0 : static_cast<std::size_t>(after - runs_.begin()) - 1;
}

std::size_t RasterTextLayout::lineOf(std::size_t index) const {
    const auto after = std::upper_bound(lines_.begin(), lines_.end(), index,
                                        [](std::size_t i, const TextLine& line) { return i < line.range.location; });
    return after == lines_.begin() ? 0 : static_cast<std::size_t>(after - lines_.begin()) - 1;
}

std::size_t RasterTextLayout::visibleEnd(std::size_t line) const {
    const Block& block = blocks_[places_[line].block];
    return std::min<std::size_t>(NSMaxRange(lines_[line].range), block.start + block.length);
}

namespace {

/// From where to where glyphs reach in a line, and whether they run from right to left.
struct Extent {
    double left = 0, right = 0;
    bool turned = false;
};
Extent glyphExtent(const QTextLine& line, int from, int to) {
    QRectF all;
    bool turned = false;
    const auto runs = line.glyphRuns(from, to - from);
    for (const QGlyphRun& run : runs) {
        all = all.isNull() ? run.boundingRect() : all.united(run.boundingRect());
        turned = run.isRightToLeft();
    }
    if (!all.isNull()) return {all.left(), all.right(), turned};
    const double x = line.cursorToX(from);
    return {x, x, false};
}

} // namespace

double RasterTextLayout::xOf(std::size_t line, std::size_t index) const {
    const Place& place = places_[line];
    const Block& block = blocks_[place.block];
    const QTextLayout* layout = shapedOf(block);
    if (layout == nullptr || place.line < 0) return lines_[line].used.origin.x;
    const QTextLine shaped = layout->lineAt(place.line);
    const int position =
        std::clamp(block.toShaped(index), shaped.textStart(), shaped.textStart() + shaped.textLength());
    return shaped.cursorToX(position) + place.x;
}

NSUInteger RasterTextLayout::characterAtPoint(NSPoint p, double* fraction) const {
    if (fraction != nullptr) *fraction = 0;
    if (lines_.empty()) return 0;
    const auto below = std::upper_bound(lines_.begin(), lines_.end(), p.y,
                                        [](double y, const TextLine& line) { return y < line.rect.origin.y; });
    const std::size_t line = below == lines_.begin() ? 0 : static_cast<std::size_t>(below - lines_.begin()) - 1;
    const Place& place = places_[line];
    const Block& block = blocks_[place.block];
    const std::size_t end = visibleEnd(line);
    const QTextLayout* layout = shapedOf(block);
    if (layout == nullptr || place.line < 0 || end <= lines_[line].range.location) return lines_[line].range.location;

    const QTextLine shaped = layout->lineAt(place.line);
    const double x = std::isnan(p.x) ? 0 : std::clamp(p.x - place.x, -1e6, 1e6);
    const int last = shaped.textStart() + shaped.textLength();
    int position = 0;
    Extent at;
    if (block.isMixed) {
        // Where directions meet, the shaper's carets are not the edges of the characters beside them.
        double nearest = HUGE_VAL;
        for (int i = shaped.textStart(); i < last;) {
            const int next = std::max(i + 1, layout->nextCursorPosition(i));
            const Extent extent = glyphExtent(shaped, i, std::min(next, last));
            const double distance = std::max({0.0, extent.left - x, x - extent.right});
            if (distance < nearest) {
                nearest = distance;
                position = i;
                at = extent;
            }
            i = next;
        }
    } else {
        position = std::clamp(shaped.xToCursor(x, QTextLine::CursorOnCharacter), shaped.textStart(), last);
        if (position == last) position = layout->previousCursorPosition(last);
        at = {shaped.cursorToX(position, QTextLine::Leading), shaped.cursorToX(position, QTextLine::Trailing), false};
    }
    if (fraction != nullptr && at.right > at.left)
        *fraction = std::clamp((at.turned ? at.right - x : x - at.left) / (at.right - at.left), 0.0, 1.0);
    return block.toText(position);
}

NSRect RasterTextLayout::caretRect(NSUInteger index) const {
    if (lines_.empty()) return {};
    const std::size_t at = std::min<std::size_t>(index, text_.size());
    const std::size_t line = lineOf(at);
    const TextLine& l = lines_[line];
    return {{xOf(line, std::min(at, visibleEnd(line))), l.used.origin.y}, {0, l.used.size.height}};
}

std::vector<NSRect> RasterTextLayout::rects(NSRange range) const {
    std::vector<NSRect> out;
    const std::size_t end = range.length > text_.size() - std::min<std::size_t>(range.location, text_.size())
                                ? text_.size()
                                : NSMaxRange(range);
    if (range.location >= end) return out;
    for (std::size_t i = lineOf(range.location); i < lines_.size() && lines_[i].range.location < end; ++i) {
        const TextLine& line = lines_[i];
        const std::size_t shown = visibleEnd(i);
        const std::size_t from = std::clamp<std::size_t>(range.location, line.range.location, shown);
        const std::size_t to = std::clamp<std::size_t>(end, line.range.location, shown);
        const Place& place = places_[i];
        const Block& block = blocks_[place.block];
        double left = xOf(i, from);
        double right = from == to ? left : xOf(i, to);
        if (block.isMixed && place.line >= 0 && from < to) {
            const Extent extent =
                glyphExtent(block.shaped->lineAt(place.line), block.toShaped(from), block.toShaped(to));
            left = extent.left + place.x;
            right = extent.right + place.x;
        }
        out.push_back({{left, line.used.origin.y}, {right - left, line.used.size.height}});
    }
    return out;
}

NSUInteger RasterTextLayout::nextCaretPosition(NSUInteger index, bool forward) const {
    const std::size_t at = std::min<std::size_t>(index, text_.size());
    if (forward ? at == text_.size() : at == 0) return at;
    // The paragraph that the step starts in; backward from behind a line end, the one before.
    const std::size_t inside = forward ? at : at - 1;
    auto block = std::upper_bound(blocks_.begin(), blocks_.end(), inside,
                                  [](std::size_t i, const Block& b) { return i < b.start; });
    if (block != blocks_.begin()) --block;
    if (block == blocks_.end() || inside < block->start || inside >= block->end) {
        // What was left out of the layout: by whole characters all the same.
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, reinterpret_cast<const QChar*>(text_.data()),
                                   static_cast<qsizetype>(text_.size()));
        finder.setPosition(static_cast<qsizetype>(at));
        const qsizetype next = forward ? finder.toNextBoundary() : finder.toPreviousBoundary();
        return next < 0 ? (forward ? text_.size() : 0) : static_cast<NSUInteger>(next);
    }
    const std::size_t textEnd = block->start + block->length;
    if (inside >= textEnd) return forward ? block->end : textEnd;
    const std::size_t offset = at - block->start;
    if (const QTextLayout* layout = shapedOf(*block); layout != nullptr && !block->truncated) {
        const int position = static_cast<int>(offset);
        const int next = forward ? layout->nextCursorPosition(position) : layout->previousCursorPosition(position);
        return block->start + static_cast<NSUInteger>(next);
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme,
                               reinterpret_cast<const QChar*>(text_.data() + block->start),
                               static_cast<qsizetype>(block->length));
    finder.setPosition(static_cast<qsizetype>(offset));
    const qsizetype next = forward ? finder.toNextBoundary() : finder.toPreviousBoundary();
    return next < 0 ? (forward ? textEnd : block->start) : block->start + static_cast<NSUInteger>(next);
}

} // namespace libvue::backend
