#include <libvue/platform/backend/qt/PlainGlyphs.h>

#include <algorithm>
#include <cmath>

namespace libvue::backend {

namespace {

constexpr double parts = 64;
constexpr std::size_t longest = 64;

std::int32_t inParts(double x) { return static_cast<std::int32_t>(std::lround(x * parts)); }

/// Engines for several scripts may be several objects of one font.
bool areSame(const QRawFont& a, const QRawFont& b) {
    return a == b || (a.familyName() == b.familyName() && a.styleName() == b.styleName() && a.weight() == b.weight() &&
                      a.style() == b.style() && a.pixelSize() == b.pixelSize());
}

} // namespace

std::size_t PlainGlyphs::kindOf(char16_t c) noexcept {
    if (c >= u'a' && c <= u'z') return static_cast<std::size_t>(c - u'a');
    if (c >= u'A' && c <= u'Z') return static_cast<std::size_t>(26 + c - u'A');
    if (c >= u'0' && c <= u'9') return static_cast<std::size_t>(52 + c - u'0');
    return c == u' ' ? kinds - 1 : kinds;
}

bool PlainGlyphs::isPlain(std::u16string_view text) noexcept {
    // Blanks at the edges of a line have rules of their own.
    return !text.empty() && text.size() <= longest && text.front() != u' ' && text.back() != u' ' &&
           std::all_of(text.begin(), text.end(), [](char16_t c) { return kindOf(c) < kinds; });
}

double PlainGlyphs::advance(std::u16string_view text) const noexcept {
    if (unfit_ || steps_.empty()) return -1;
    std::size_t kind = kindOf(text[0]);
    std::int32_t x = 0;
    for (std::size_t i = 1; i < text.size(); ++i) {
        const std::size_t next = kindOf(text[i]);
        const std::int32_t step = steps_[kind * kinds + next];
        if (step == unknown) return -1;
        x += step;
        kind = next;
    }
    const std::int32_t last = glyphs_[kind].advance;
    return last == unknown ? -1 : (x + last) / parts;
}

QGlyphRun PlainGlyphs::run(std::u16string_view text, double x, double baseline) const {
    const auto count = static_cast<qsizetype>(text.size());
    QList<quint32> indexes(count);
    QList<QPointF> positions(count);
    // The shaper's own sum, for the last bit of it.
    const double y = y_ + (baseline - ascent_);
    quint32* index = indexes.data();
    QPointF* position = positions.data();
    std::int32_t at = 0;
    for (std::size_t i = 0, before = 0; i < text.size(); ++i) {
        const std::size_t kind = kindOf(text[i]);
        if (i > 0) at += steps_[before * kinds + kind];
        *index++ = glyphs_[kind].glyph;
        *position++ = {at / parts + x, y};
        before = kind;
    }
    QGlyphRun out;
    out.setRawFont(font_);
    out.setGlyphIndexes(indexes);
    out.setPositions(positions);
    return out;
}

bool PlainGlyphs::accepts(std::u16string_view text, const QTextLine& line, const QGlyphRun& run, double y) {
    if (steps_.empty()) {
        steps_.assign(kinds * kinds, unknown);
        font_ = run.rawFont();
        ascent_ = line.ascent();
        y_ = y;
        return true;
    }
    if (y != y_ || line.ascent() != ascent_ || !areSame(font_, run.rawFont())) return false;
    const QList<quint32> indexes = run.glyphIndexes();
    for (std::size_t i = 0; i < text.size(); ++i) {
        const Kind& kind = glyphs_[kindOf(text[i])];
        if (kind.known && kind.glyph != indexes[static_cast<qsizetype>(i)]) return false;
    }
    return true;
}

void PlainGlyphs::learn(std::u16string_view text, const QTextLine& line) {
    if (unfit_) return;
    const QList<QGlyphRun> runs = line.glyphRuns();
    if (runs.size() != 1) return;
    const QList<quint32> indexes = runs[0].glyphIndexes();
    const QList<QPointF> positions = runs[0].positions();
    const auto count = static_cast<qsizetype>(text.size());
    // Fewer glyphs than characters: a ligature, whose neighbours stay unknown.
    if (indexes.size() != count || positions.size() != count || line.textLength() != count) return;
    const double y = positions[0].y();
    const bool level = std::all_of(positions.begin(), positions.end(), [&](const QPointF& p) { return p.y() == y; });
    if (!level || line.x() != 0 || line.y() != 0 || positions[0].x() != 0 || !accepts(text, line, runs[0], y)) {
        unfit_ = true;
        return;
    }
    const auto agree = [this](std::int32_t& known, std::int32_t found) {
        if (known != unknown && known != found) unfit_ = true;
        known = found;
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto at = static_cast<qsizetype>(i);
        const std::size_t kind = kindOf(text[i]);
        glyphs_[kind].glyph = indexes[at];
        glyphs_[kind].known = true;
        if (i + 1 < text.size())
            agree(steps_[kind * kinds + kindOf(text[i + 1])], inParts(positions[at + 1].x() - positions[at].x()));
        else
            agree(glyphs_[kind].advance, inParts(line.horizontalAdvance() - positions[at].x()));
    }
}

} // namespace libvue::backend
