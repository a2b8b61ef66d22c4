#include <libvue/platform/backend/TextEngine.h>

#include <algorithm>

#include "Surface.h"

using namespace libvue;
using namespace libvue::test;
using backend::TextInput;
using backend::TextLayout;
using backend::TextRun;

namespace {

constexpr std::u16string_view words[] = {u"Carte 1",
                                         u"Carte 999427",
                                         u"AVATAR Te Wo",
                                         u"VAV To We P A",
                                         u"fin",
                                         u"office fluffy",
                                         u"Portez ce vieux whisky",
                                         u"au juge",
                                         u"blond qui fume",
                                         u"11 171 1711",
                                         u"LT Ty Yo r v",
                                         u"A",
                                         u"7",
                                         u"kumquats",
                                         u"off in",
                                         u"W  o",
                                         u"jjffjj yfy",
                                         u"KCAVWYTL fijl",
                                         u"Tea tAT",
                                         u"1A1 V7 7T",
                                         u"Zut 0 O 0",
                                         u"Été à Noël",
                                         u"L\u2019œuvre d\u2019Émile",
                                         u"«\u2009Où ça\u2009?\u2009»",
                                         u"ÀÂÄÇÉÈÊËÎÏÔÖÙÛÜŸ ŒÆ",
                                         u"aujourd'hui, peut-être : 12,50 (n° 3)",
                                         u"Te. V, Yé r\u2014A \"f\" f\u2019",
                                         u"2×3 = 6 ÷ 1",
                                         u"fï fî Tî Vï f\u201D jf Ðj"};

/// Laid out by the short way where that is known; in two runs of one look, always by the shaper.
std::shared_ptr<const TextLayout> layoutOf(std::u16string_view text, double size, const char* font,
                                           std::uint32_t traits, bool split, const backend::Color& color = {}) {
    static const std::unique_ptr<backend::TextEngine> engine = backend::makeRasterText();
    TextRun run;
    run.font = engine->font(font, size, traits);
    run.color = color;
    run.range = {0, text.size()};
    std::vector<TextRun> runs{run};
    if (split) {
        runs[0].range.length = 0;
        runs.push_back(run);
    }
    TextInput in;
    in.text = text;
    in.runs = runs;
    return engine->layout(in);
}

std::string pixelsOf(const TextLayout& layout, double x, double scale, const backend::Color& ground) {
    Surface s(320, 80, scale);
    s.canvas->fillRect({{0, 0}, {320, 80}}, ground);
    s.canvas->drawText(layout, {x, 76}, backend::YAxis::up);
    return s.rows();
}

struct Font {
    const char* name;
    double size;
    std::uint32_t traits;
};
constexpr Font fonts[] = {{"Helvetica", 13, 0},
                          {"Helvetica", 11, backend::fontBold},
                          {"Helvetica", 9.5, 0},
                          {"Times", 24, 0},
                          {"Times", 14, backend::fontItalic},
                          {"Courier", 12, 0},
                          {"DejaVu Sans", 12, 0},
                          {"Verdana", 17, backend::fontBold},
                          {"Menlo", 10, 0},
                          {"Helvetica", 47, 0},
                          {"Helvetica", 50, 0}};

std::string nameOf(const Font& font, std::u16string_view word) {
    std::string name = std::string(font.name) + ' ' + std::to_string(font.size) + ' ';
    for (const char16_t c : word)
        name += c < 0x80 ? static_cast<char>(c) : '?';
    return name;
}

/// What the first round shapes, the second one knows.
void learn(const Font& font) {
    for (const auto word : words)
        (void)layoutOf(word, font.size, font.name, font.traits, false);
}

TEST(PlainGlyphs, wordsAreThoseOfTheShaper) {
    for (const Font& font : fonts) {
        learn(font);
        for (const auto word : words) {
            SCOPED_TRACE(nameOf(font, word));
            const auto known = layoutOf(word, font.size, font.name, font.traits, false);
            const auto shaped = layoutOf(word, font.size, font.name, font.traits, true);
            EXPECT_EQ(known->size(), shaped->size());
            EXPECT_EQ(known->lines()[0].baseline, shaped->lines()[0].baseline);
            for (std::size_t i = 0; i <= word.size(); ++i) {
                EXPECT_EQ(known->caretRect(i), shaped->caretRect(i));
                EXPECT_EQ(known->nextCaretPosition(i, true), shaped->nextCaretPosition(i, true));
                const NSPoint p{known->caretRect(i).origin.x + 1, 3};
                EXPECT_EQ(known->characterAtPoint(p, nullptr), shaped->characterAtPoint(p, nullptr));
            }
        }
    }
}

TEST(PlainGlyphs, pixelsAreThoseOfTheRasteriser) {
    struct Row {
        double x, scale;
        backend::Color color, ground;
    };
    const Row rows[] = {
        {4.3, 1, black, white},
        {4, 1, black, {0, 0, 0, 0}},
        {-3.5, 1, {0.8, 0.1, 0.35, 1}, {0.93, 0.95, 1, 1}},
        {4.75, 1, {0.2, 0.7, 0.4, 0.6}, {0.5, 0.5, 0.5, 0.5}},
        {0.75, 1.5, black, white},
        {2, 2, {0.1, 0.2, 0.9, 1}, white},
        {1.1, 4.0 / 3, {1, 1, 1, 0.85}, {0.1, 0.1, 0.12, 1}},
    };
    for (const Font& font : fonts) {
        learn(font);
        for (const auto word : words) {
            SCOPED_TRACE(nameOf(font, word));
            for (const Row& row : rows) {
                SCOPED_TRACE(testing::Message() << "at " << row.x << ", scale " << row.scale);
                const auto known = layoutOf(word, font.size, font.name, font.traits, false, row.color);
                const auto shaped = layoutOf(word, font.size, font.name, font.traits, true, row.color);
                const std::string expected = pixelsOf(*shaped, row.x, row.scale, row.ground);
                EXPECT_NE(expected, pixelsOf(*shaped, 1000, row.scale, row.ground)) << "nothing shows";
                // Once from the masks, then from pixels that are kept.
                for (int drawing = 0; drawing < 3; ++drawing)
                    EXPECT_TRUE(pixelsOf(*known, row.x, row.scale, row.ground) == expected) << drawing;
            }
        }
    }
}

} // namespace
