#include <libvue/platform/backend/qt/PlainGlyphs.h>

#include <algorithm>
#include <cmath>

namespace libvue::backend {

namespace {

constexpr double parts = 64;

std::int32_t inParts(double x) { return static_cast<std::int32_t>(std::lround(x * parts)); }

/// Engines for several scripts may be several objects of one font.
bool areSame(const QRawFont& a, const QRawFont& b) {
    return a == b || (a.familyName() == b.familyName() && a.styleName() == b.styleName() && a.weight() == b.weight() &&
                      a.style() == b.style() && a.pixelSize() == b.pixelSize());
}

} // namespace

std::size_t PlainGlyphs::kindOf(char16_t c) noexcept {
    constexpr std::u16string_view others = u"\u00AB\u00B0\u00BB\u0152\u0153\u0178\u2013\u2014\u2019";
    static_assert(kinds == ascii + accented + others.size());
    if (c >= u' ' && c <= u'~') return static_cast<std::size_t>(c - u' ');
    if (c >= 0xC0 && c <= 0xFF) return ascii + static_cast<std::size_t>(c - 0xC0);
    const std::size_t other = others.find(c);
    return other == others.npos ? kinds : ascii + accented + other;
}

bool PlainGlyphs::isPlain(std::u16string_view text) noexcept {
    // Blanks at the edges of a line have rules of their own.
    if (text.empty() || text.size() > longest || text.front() == u' ' || text.back() == u' ') return false;
    // Punctuation takes the script of the letters around it, and may be set in another way where there are none.
    bool hasLetter = false, hasPunctuation = false;
    for (const char16_t c : text) {
        if (kindOf(c) == kinds) return false;
        const bool isSign = c == u'\u00D7' || c == u'\u00F7';
        const bool isLetter = (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
        const bool isAccented = c >= 0xC0 && c <= 0xFF && !isSign;
        hasLetter = hasLetter || isLetter;
        hasPunctuation = hasPunctuation || !(isLetter || isAccented || (c >= u'0' && c <= u'9') || c == u' ');
    }
    return hasLetter || !hasPunctuation;
}

double PlainGlyphs::advance(std::u16string_view text) const noexcept {
    if (unfit_ || !knowsFont_) return -1;
    std::size_t kind = kindOf(text[0]);
    std::int32_t x = 0;
    for (std::size_t i = 1; i < text.size(); ++i) {
        const std::size_t next = kindOf(text[i]);
        const Steps* steps = steps_[kind].get();
        if (!steps || (*steps)[next] == unknown) return -1;
        x += (*steps)[next];
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
    eachGlyph(text, [&](std::size_t kind, std::int32_t at) {
        *index++ = glyphs_[kind].glyph;
        *position++ = {at / parts + x, y};
    });
    QGlyphRun out;
    out.setRawFont(font_);
    out.setGlyphIndexes(indexes);
    out.setPositions(positions);
    return out;
}

std::optional<GlyphMasks::Ink> PlainGlyphs::draw(std::u16string_view text, double x, double baseline, double scale,
                                                 QPointF shift, QRgb ink, QSize size) const {
    if (!GlyphMasks::serves(font_, scale)) return std::nullopt;
    std::array<GlyphMasks::Placed, longest> placed;
    std::size_t count = 0;
    const double y = (y_ + (baseline - ascent_)) * scale + shift.y();
    eachGlyph(text, [&](std::size_t kind, std::int32_t at) {
        placed[count++] = {kind, glyphs_[kind].glyph, {(at / parts + x) * scale + shift.x(), y}};
    });
    return masks_.draw(font_, scale, {placed.data(), count}, ink, size);
}

bool PlainGlyphs::accepts(std::u16string_view text, const QTextLine& line, const QGlyphRun& run, double y) {
    if (!knowsFont_) {
        knowsFont_ = true;
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
        if (i + 1 < text.size()) {
            if (!steps_[kind]) {
                steps_[kind] = std::make_unique<Steps>();
                steps_[kind]->fill(unknown);
            }
            agree((*steps_[kind])[kindOf(text[i + 1])], inParts(positions[at + 1].x() - positions[at].x()));
        } else {
            agree(glyphs_[kind].advance, inParts(line.horizontalAdvance() - positions[at].x()));
        }
    }
}

} // namespace libvue::backend
