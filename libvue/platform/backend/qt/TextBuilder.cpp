#include <libvue/platform/backend/qt/TextBuilder.h>

#include <algorithm>
#include <cmath>

#include <QFontMetricsF>
#include <QTextCharFormat>

namespace libvue::backend {

namespace {

/// A room this wide is one that nothing is aligned in.
constexpr double noRoom = 1e6;
constexpr char16_t objectStandIn = 0x4E00; // breaks on both sides, as an object does
constexpr double tolerance = 1.0 / 64;

bool endsParagraph(char16_t c) { return c == '\n' || c == '\r' || c == 0x2029 || c == 0x85; }
bool isSpace(char16_t c) { return c == ' ' || c == '\t' || c == 0x3000 || (c >= 0x2000 && c <= 0x200A); }

/// True where the shaper must not see the unit as it is.
bool isHostile(std::u16string_view text, std::size_t i) {
    const char16_t c = text[i];
    if (c == 0 || c == 0x0B || c == 0x0C) return true;
    if (QChar::isHighSurrogate(c)) return i + 1 >= text.size() || !QChar::isLowSurrogate(text[i + 1]);
    if (QChar::isLowSurrogate(c)) return i == 0 || !QChar::isHighSurrogate(text[i - 1]);
    return false;
}

/// Whether the unit may run from right to left, or make others do so. Some that do not are taken for it.
bool mayTurn(QChar c) {
    const char16_t u = c.unicode();
    return u >= 0x590 && (u < 0x900 || (u >= 0x200E && u < 0x2070) || (u >= 0xD800 && u < 0xE000) || u >= 0xFB1D);
}

/// As long as the text. Without a copy where there is nothing to replace.
QString shapeable(std::u16string_view text) {
    const auto* units = reinterpret_cast<const QChar*>(text.data());
    const auto count = static_cast<qsizetype>(text.size());
    QString out = QString::fromRawData(units, count);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!isHostile(text, i)) continue;
        const auto at = static_cast<qsizetype>(i);
        const char16_t c = text[i];
        out[at] = c == 0 ? QChar(0x200B) : c < 0x20 ? QChar(QChar::LineSeparator) : QChar(QChar::ReplacementCharacter);
    }
    return out;
}

} // namespace

TextBuilder::TextBuilder(RasterTextLayout& layout, const TextInput& input) : to_(layout), in_(input) {
    width_ = std::isnan(input.width) ? unbounded : std::clamp(input.width, 0.0, unbounded);
    height_ = input.height > 0 ? input.height : 1e300;
    bounded_ = width_ < noRoom;
}

void TextBuilder::build() {
    const std::size_t length = to_.text_.size();
    std::size_t start = 0;
    bool first = true;
    while (start < length) {
        Paragraph p{};
        start = paragraphAt(start, p);
        style_ = &styleAt(p.start);
        if (!first) y_ += std::max(0.0, style_->paragraphSpacingBefore);
        first = false;
        if (isFull()) break;
        addParagraph(p);
        if (start < length) y_ += std::max(0.0, style_->paragraphSpacing);
    }
    // Behind a last line end, and in an empty text, stands one more line for the caret.
    const bool open = length == 0 || endsParagraph(to_.text_[length - 1]);
    if (open && !isFull() && (length == 0 || start >= length)) {
        style_ = &styleAt(length);
        addEmptyLine({length, 0, length});
    }
    align();
}

std::size_t TextBuilder::paragraphAt(std::size_t start, Paragraph& out) const {
    const std::u16string_view text = to_.text_;
    std::size_t i = start;
    while (i < text.size() && !endsParagraph(text[i]))
        ++i;
    std::size_t end = i;
    if (end < text.size()) end += text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n' ? 2 : 1;
    out = {start, i - start, end};
    return end;
}

const TextParagraph& TextBuilder::styleAt(std::size_t index) {
    static const TextParagraph standard;
    if (in_.paragraphs.empty()) return standard;
    while (nextStyle_ + 1 < in_.paragraphs.size() && in_.paragraphs[nextStyle_ + 1].range.location <= index)
        ++nextStyle_;
    return in_.paragraphs[nextStyle_];
}

bool TextBuilder::isFull() const {
    if (to_.lines_.empty()) return false;
    return y_ >= height_ || (in_.maximumLines > 0 && to_.lines_.size() >= in_.maximumLines);
}

TextBuilder::Measures TextBuilder::measure(std::size_t from, std::size_t to) const {
    Measures m;
    if (to_.runs_.empty()) {
        const RasterFontFace& face = rasterFace(nullptr);
        return {face.ascender(), -face.descender(), face.leading()};
    }
    for (std::size_t i = to_.runAt(from); i < to_.runs_.size(); ++i) {
        const TextRun& run = to_.runs_[i];
        if (run.range.location >= to && run.range.location > from) break;
        const RasterFontFace& face = rasterFace(run.font.get());
        double up = face.ascender();
        if (run.attachment) up = std::max(up, run.attachment->height);
        m.ascent = std::max(m.ascent, up + run.baselineOffset);
        m.descent = std::max(m.descent, -face.descender() - run.baselineOffset);
        m.leading = std::max(m.leading, face.leading());
    }
    return m;
}

/// The advances of a line. Blanks at the end of the text count, blanks that a line was broken at do not.
double TextBuilder::usedWidth(const QTextLine& line, const Block& block, double available) {
    const double advance = std::max(0.0, line.horizontalAdvance());
    const int end = line.textStart() + line.textLength();
    if (end == 0 || end != block.string.size() || block.isMixed || !isSpace(block.string.at(end - 1).unicode()))
        return advance;
    return std::max(advance, std::min(line.cursorToX(end), std::max(available, advance)));
}

void TextBuilder::place(const Measures& measured, NSRange range, double x, double available, const QTextLine* line,
                        std::size_t block, bool truncated) {
    const double used = line != nullptr ? usedWidth(*line, to_.blocks_[block], available) : 0;
    placeLine(measured, range, x, available,
              {static_cast<std::uint32_t>(block), line != nullptr ? line->lineNumber() : -1,
               line != nullptr ? -line->naturalTextRect().x() : 0},
              used, truncated);
}

void TextBuilder::placeLine(const Measures& measured, NSRange range, double x, double available,
                            const RasterTextLayout::Place& origin, double used, bool truncated) {
    const TextParagraph& style = *style_;
    const double natural = measured.ascent + measured.descent + measured.leading;
    double height = natural;
    if (style.lineHeightMultiple > 0) height *= style.lineHeightMultiple;
    if (style.minimumLineHeight > 0) height = std::max(height, style.minimumLineHeight);
    if (style.maximumLineHeight > 0) height = std::min(height, style.maximumLineHeight);
    const double spacing = std::max(0.0, style.lineSpacing);
    TextLine out;
    out.range = range;
    out.rect = {{0, y_}, {width_, height + spacing}};
    out.used = {{x, y_}, {used, height}};
    // What a line is higher than its font stands above the text.
    out.baseline = y_ + height - measured.descent - measured.leading;
    out.truncated = truncated;
    to_.lines_.push_back(out);
    to_.places_.push_back(origin);
    const Block& from = to_.blocks_[origin.block];
    const bool toTheLeft = from.shaped && from.isMixed && from.string.isRightToLeft();
    pending_.push_back({x, available, style.alignment, style.rightToLeft || toTheLeft});
    y_ += height + spacing;
}

void TextBuilder::align() {
    double widest = 0;
    for (const TextLine& line : to_.lines_)
        widest = std::max(widest, NSMaxX(line.used));
    const double room = bounded_ ? width_ : widest;
    to_.width_ = room;
    double right = 0;
    for (std::size_t i = 0; i < to_.lines_.size(); ++i) {
        TextLine& line = to_.lines_[i];
        const Pending& p = pending_[i];
        line.rect.size.width = room;
        const double available = bounded_ ? p.available : room - p.x;
        const double free = std::max(0.0, available - line.used.size.width);
        TextAlignment alignment = p.alignment;
        if (alignment == TextAlignment::natural || alignment == TextAlignment::justified)
            alignment = p.rightToLeft ? TextAlignment::right : TextAlignment::left;
        if (alignment == TextAlignment::center)
            line.used.origin.x += free / 2;
        else if (alignment == TextAlignment::right)
            line.used.origin.x += free;
        to_.places_[i].x += line.used.origin.x;
        right = std::max(right, NSMaxX(line.used) - (alignment == TextAlignment::left ? 0 : free));
    }
    double used = 0;
    for (const TextLine& line : to_.lines_)
        used = std::max(used, line.used.size.width);
    // Aligned lines need no more than the widest one; indents of the left side count.
    double needed = 0;
    for (std::size_t i = 0; i < to_.lines_.size(); ++i)
        needed = std::max(needed, pending_[i].x + to_.lines_[i].used.size.width);
    to_.size_ = {std::max(used, needed), to_.lines_.empty() ? 0 : NSMaxY(to_.lines_.back().used)};
}

void TextBuilder::addEmptyLine(const Paragraph& p) {
    const double indent = std::max(0.0, style_->firstLineHeadIndent);
    // The empty text behind a line end has the look of what stands before it.
    const std::size_t look = p.start == to_.text_.size() && p.start > 0 ? p.start - 1 : p.start;
    Block block;
    block.start = p.start;
    block.end = p.end;
    to_.blocks_.push_back(std::move(block));
    place(measure(look, look + 1), {p.start, p.end - p.start}, indent, std::max(0.0, width_ - indent), nullptr,
          to_.blocks_.size() - 1, false);
}

QTextOption TextBuilder::option() const {
    QTextOption option;
    switch (style_->lineBreak) {
    case LineBreak::wordWrapping:
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        break;
    case LineBreak::charWrapping:
        option.setWrapMode(QTextOption::WrapAnywhere);
        break;
    default:
        option.setWrapMode(QTextOption::ManualWrap);
        break;
    }
    const bool truncates = style_->lineBreak >= LineBreak::truncatingHead;
    if (truncates && in_.maximumLines > 1) option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    const bool justifies = style_->alignment == TextAlignment::justified && bounded_;
    option.setAlignment(justifies ? Qt::AlignJustify : Qt::AlignLeft | Qt::AlignAbsolute);
    option.setTextDirection(style_->rightToLeft ? Qt::RightToLeft : Qt::LayoutDirectionAuto);
    if (!style_->tabStops.empty()) {
        QList<QTextOption::Tab> tabs;
        for (const double stop : style_->tabStops)
            if (std::isfinite(stop) && stop > 0) tabs.append(QTextOption::Tab(stop, QTextOption::LeftTab));
        option.setTabs(tabs);
    }
    const double interval = style_->defaultTabInterval;
    option.setTabStopDistance(std::isfinite(interval) && interval > 0 ? interval : 28);
    return option;
}

QList<QTextLayout::FormatRange> TextBuilder::formats(const Block& block) const {
    QList<QTextLayout::FormatRange> out;
    const std::size_t end = block.start + block.length;
    const QFont* base = nullptr;
    for (std::size_t i = to_.runAt(block.start); i < to_.runs_.size(); ++i) {
        const TextRun& run = to_.runs_[i];
        if (run.range.location >= end) break;
        const RasterFontFace& face = rasterFace(run.font.get());
        if (base == nullptr) base = &face.font();
        if (run.kern == 0 && !run.attachment && &face.font() == base) continue;
        const int from = block.toShaped(std::max<std::size_t>(run.range.location, block.start));
        const int to = block.toShaped(std::min<std::size_t>(NSMaxRange(run.range), end));
        if (to <= from) continue;
        QFont font = face.font();
        if (run.attachment) {
            font = fonts::placeholder(face.pointSize());
            const double room = std::clamp(run.attachment->width, 0.0, 1e5);
            font.setLetterSpacing(QFont::AbsoluteSpacing,
                                  room - QFontMetricsF(font).horizontalAdvance(QChar(objectStandIn)));
        } else if (run.kern != 0 && std::isfinite(run.kern)) {
            font.setLetterSpacing(QFont::AbsoluteSpacing, std::clamp(run.kern, -1e4, 1e4));
        }
        QTextLayout::FormatRange range;
        range.start = from;
        range.length = to - from;
        range.format.setFont(font);
        out.append(range);
    }
    return out;
}

QString TextBuilder::stringOf(std::size_t from, std::size_t to) const {
    QString string = shapeable(std::u16string_view(to_.text_).substr(from, to - from));
    for (std::size_t i = to_.runAt(from); i < to_.runs_.size(); ++i) {
        const TextRun& run = to_.runs_[i];
        if (run.range.location >= to) break;
        if (!run.attachment) continue;
        const std::size_t first = std::max<std::size_t>(run.range.location, from);
        const std::size_t last = std::min<std::size_t>(NSMaxRange(run.range), to);
        for (std::size_t k = first; k < last; ++k)
            string[static_cast<qsizetype>(k - from)] = QChar(objectStandIn);
    }
    return string;
}

void TextBuilder::shape(Block& block) const {
    const std::size_t run = to_.runAt(block.start);
    const RasterFontFace& face = rasterFace(to_.runs_.empty() ? nullptr : to_.runs_[run].font.get());
    block.shaped = std::make_unique<QTextLayout>(block.string, face.font());
    block.isMixed = style_->rightToLeft || std::any_of(block.string.cbegin(), block.string.cend(), mayTurn);
    block.shaped->setCacheEnabled(true);
    block.shaped->setTextOption(option());
    if (to_.runs_.size() > 1 || (to_.runs_.size() == 1 && (to_.runs_[0].kern != 0 || to_.runs_[0].attachment)))
        if (auto ranges = formats(block); !ranges.isEmpty()) block.shaped->setFormats(ranges);
}

void TextBuilder::addParagraph(const Paragraph& p) {
    if (p.length == 0) return addEmptyLine(p);
    PlainGlyphs* plain = plainGlyphs(p);
    if (plain != nullptr && addPlain(p, *plain)) return;
    addShaped(p);
    if (plain == nullptr) return;
    const Block& block = to_.blocks_.back();
    if (!block.shaped || block.truncated || block.start != p.start || block.shaped->lineCount() != 1) return;
    plain->learn(std::u16string_view(to_.text_).substr(p.start, p.length), block.shaped->lineAt(0));
}

PlainGlyphs* TextBuilder::plainGlyphs(const Paragraph& p) const {
    if (style_->rightToLeft || style_->alignment == TextAlignment::justified || to_.runs_.size() > 1) return nullptr;
    if (!to_.runs_.empty() && (to_.runs_[0].kern != 0 || to_.runs_[0].attachment)) return nullptr;
    if (!PlainGlyphs::isPlain(std::u16string_view(to_.text_).substr(p.start, p.length))) return nullptr;
    return rasterFace(to_.runs_.empty() ? nullptr : to_.runs_[0].font.get()).plainGlyphs();
}

bool TextBuilder::addPlain(const Paragraph& p, const PlainGlyphs& glyphs) {
    const double advance = glyphs.advance(std::u16string_view(to_.text_).substr(p.start, p.length));
    const double indent = std::max(0.0, style_->firstLineHeadIndent);
    const double tail = style_->tailIndent;
    const double right = tail > 0 ? std::min(tail, width_) : std::max(0.0, width_ + tail);
    const double available = std::max(0.0, right - indent);
    // The shaper breaks lines by what glyphs reach beyond their advances too: near to the edge it decides.
    if (advance < 0 || advance + to_.largestFont_ > available) return false;
    if (style_->lineBreak == LineBreak::clipping) to_.clips_ = true;
    Block block;
    block.start = p.start;
    block.length = p.length;
    block.end = p.end;
    block.isPlain = true;
    const auto index = static_cast<std::uint32_t>(to_.blocks_.size());
    to_.blocks_.push_back(std::move(block));
    placeLine(measure(p.start, p.start + p.length), {p.start, p.end - p.start}, indent, available, {index, 0, 0},
              advance, false);
    return true;
}

void TextBuilder::addShaped(const Paragraph& p) {
    const bool truncates = style_->lineBreak >= LineBreak::truncatingHead;
    if (truncates && in_.maximumLines <= 1) {
        const double indent = std::max(0.0, style_->firstLineHeadIndent);
        const double tail = style_->tailIndent;
        const double right = tail > 0 ? std::min(tail, width_) : width_ + tail;
        if (addTruncated(p, p.start, indent, std::max(0.0, right - indent))) return;
    }
    Block block;
    block.start = p.start;
    block.length = p.length;
    block.end = p.end;
    block.string = stringOf(p.start, p.start + p.length);
    shape(block);
    addWrapped(p, block);
}

void TextBuilder::addWrapped(const Paragraph& p, Block& pending) {
    const std::size_t index = to_.blocks_.size();
    to_.blocks_.push_back(std::move(pending));
    QTextLayout& shaped = *to_.blocks_[index].shaped;
    const bool truncates = style_->lineBreak >= LineBreak::truncatingHead;
    if (style_->lineBreak == LineBreak::clipping) to_.clips_ = true;
    const double tail = style_->tailIndent;
    const double right = tail > 0 ? std::min(tail, width_) : std::max(0.0, width_ + tail);
    const bool oneLook = to_.runs_.size() <= 1;
    const Measures common = measure(p.start, p.start + p.length);
    bool first = true;
    shaped.beginLayout();
    for (;;) {
        if (!first && isFull()) break;
        QTextLine line = shaped.createLine();
        if (!line.isValid()) break;
        const double indent = std::max(0.0, first ? style_->firstLineHeadIndent : style_->headIndent);
        const double available = std::max(0.0, right - indent);
        line.setLineWidth(available);
        const std::size_t from = p.start + static_cast<std::size_t>(line.textStart());
        const std::size_t to = from + static_cast<std::size_t>(line.textLength());
        // Behind a line separator at its end stands one more line, which has the paragraph's end.
        if (!first) to_.lines_.back().range.length = from - to_.lines_.back().range.location;
        const bool lastOne = to >= p.start + p.length;
        if (truncates && !lastOne && in_.maximumLines > 1 && to_.lines_.size() + 1 == in_.maximumLines) {
            shaped.endLayout();
            addTruncated(p, from, indent, available);
            return;
        }
        place(oneLook ? common : measure(from, to), {from, (lastOne ? p.end : to) - from}, indent, available, &line,
              index, false);
        first = false;
    }
    shaped.endLayout();
}

bool TextBuilder::addTruncated(const Paragraph& p, std::size_t from, double indent, double width) {
    const std::size_t end = p.start + p.length;
    Block whole;
    whole.start = from;
    whole.length = end - from;
    whole.end = p.end;
    whole.string = stringOf(from, end);
    shape(whole);
    QTextLayout& layout = *whole.shaped;
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(unbounded);
    layout.endLayout();
    if (line.horizontalAdvance() <= width + tolerance) {
        // A text that breaks by itself has more than one line.
        if (from == p.start && layout.lineCount() >= 1 && line.textLength() < whole.string.size()) return false;
        const Measures m = measure(from, end);
        to_.blocks_.push_back(std::move(whole));
        place(m, {from, p.end - from}, indent, width, &line, to_.blocks_.size() - 1, false);
        return true;
    }

    Cut cut = cutFor(line, layout, std::max(0.0, width - ellipsisAdvance(from, end)));
    Block block;
    block.start = from;
    block.length = end - from;
    block.end = p.end;
    block.truncated = true;
    bool fits = join(block, whole, cut, width);
    while (!fits && (cut.head > 0 || cut.tail < line.textLength())) {
        // Joined anew, the parts came out wider than apart.
        if (cut.tail < line.textLength() && (cut.head == 0 || cut.tailWidth >= cut.headWidth))
            cut.tail = layout.nextCursorPosition(cut.tail);
        else
            cut.head = layout.previousCursorPosition(cut.head);
        fits = join(block, whole, cut, width);
    }
    if (!fits) to_.clips_ = true;
    const Measures m = measure(from, end);
    const QTextLine shown = block.shaped->lineAt(0);
    to_.blocks_.push_back(std::move(block));
    place(m, {from, p.end - from}, indent, width, &shown, to_.blocks_.size() - 1, true);
    return true;
}

double TextBuilder::ellipsisAdvance(std::size_t from, std::size_t end) const {
    const std::size_t lookAt = style_->lineBreak != LineBreak::truncatingHead ? from : end - 1;
    return rasterFace(to_.runs_.empty() ? nullptr : to_.runs_[to_.runAt(lookAt)].font.get()).ellipsisAdvance();
}

TextBuilder::Cut TextBuilder::cutFor(const QTextLine& line, const QTextLayout& layout, double room) const {
    const bool keepsHead = style_->lineBreak != LineBreak::truncatingHead;
    const bool keepsTail = style_->lineBreak != LineBreak::truncatingTail;
    const auto advance = [&](int a, int b) { return std::abs(line.cursorToX(b) - line.cursorToX(a)); };
    const int count = line.textLength();
    Cut cut{0, count};
    const double headRoom = keepsTail ? room / 2 : room;
    if (keepsHead)
        for (int next = layout.nextCursorPosition(0); cut.head < count; next = layout.nextCursorPosition(next)) {
            const double more = advance(cut.head, next);
            if (cut.headWidth + more > headRoom) break;
            cut.headWidth += more;
            cut.head = next;
        }
    if (keepsTail)
        for (int previous = layout.previousCursorPosition(count); cut.tail > cut.head;
             previous = layout.previousCursorPosition(previous)) {
            const double more = advance(previous, cut.tail);
            if (cut.headWidth + cut.tailWidth + more > room) break;
            cut.tailWidth += more;
            cut.tail = previous;
        }
    return cut;
}

bool TextBuilder::join(Block& block, const Block& whole, const Cut& cut, double width) const {
    const int count = static_cast<int>(whole.shaped->lineAt(0).textLength());
    // A blank before or behind the ellipsis says nothing.
    int head = cut.head;
    int tail = cut.tail;
    while (head > 0 && isSpace(whole.string.at(head - 1).unicode()))
        --head;
    while (tail < count && isSpace(whole.string.at(tail).unicode()))
        ++tail;
    block.head = static_cast<std::size_t>(head);
    block.tail = static_cast<std::size_t>(count - tail);
    block.string = whole.string.left(head) + QChar(0x2026) + whole.string.mid(tail, count - tail);
    shape(block);
    block.shaped->beginLayout();
    QTextLine line = block.shaped->createLine();
    line.setLineWidth(unbounded);
    block.shaped->endLayout();
    return line.horizontalAdvance() <= width + tolerance;
}

} // namespace libvue::backend
