#include <libvue/platform/backend/TextEngine.h>

#include <algorithm>

#include "Surface.h"

using namespace libvue;
using namespace libvue::test;
using backend::TextInput;
using backend::TextLayout;
using backend::TextRun;

namespace {

constexpr std::u16string_view words[] = {
    u"Carte 1",
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
};

/// Laid out by the short way where that is known; in two runs of one look, always by the shaper.
std::shared_ptr<const TextLayout> layoutOf(std::u16string_view text, double size, const char* font,
                                           std::uint32_t traits, bool split) {
    static const std::unique_ptr<backend::TextEngine> engine = backend::makeRasterText();
    TextRun run;
    run.font = engine->font(font, size, traits);
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

std::string pixelsOf(const TextLayout& layout, double x, double scale) {
    Surface s(320, 48, scale);
    s.canvas->drawText(layout, {x, 44}, backend::YAxis::up);
    return s.rows();
}

TEST(PlainGlyphs, wordsAreThoseOfTheShaper) {
    struct Row {
        const char* font;
        double size;
        std::uint32_t traits;
    };
    constexpr Row rows[] = {
        {"Helvetica", 13, 0},   {"Helvetica", 11, backend::fontBold}, {"Helvetica", 9.5, 0},
        {"Times", 24, 0},       {"Times", 14, backend::fontItalic},   {"Courier", 12, 0},
        {"DejaVu Sans", 12, 0}, {"Verdana", 17, backend::fontBold},   {"Menlo", 10, 0},
    };
    for (const Row& row : rows) {
        // What the first round shapes, the second one knows.
        for (const auto word : words)
            (void)layoutOf(word, row.size, row.font, row.traits, false);
        for (const auto word : words) {
            SCOPED_TRACE(std::string(row.font) + ' ' + std::to_string(row.size) + ' ' +
                         std::string(word.begin(), word.end()));
            const auto known = layoutOf(word, row.size, row.font, row.traits, false);
            const auto shaped = layoutOf(word, row.size, row.font, row.traits, true);
            EXPECT_EQ(known->size(), shaped->size());
            EXPECT_EQ(known->lines()[0].baseline, shaped->lines()[0].baseline);
            const std::string pixels = pixelsOf(*known, 4.3, 1);
            EXPECT_TRUE(std::any_of(pixels.begin(), pixels.end(), [](char c) { return c != 0; }));
            EXPECT_TRUE(pixels == pixelsOf(*shaped, 4.3, 1));
            EXPECT_TRUE(pixelsOf(*known, 0.75, 1.5) == pixelsOf(*shaped, 0.75, 1.5));
            for (std::size_t i = 0; i <= word.size(); ++i) {
                EXPECT_EQ(known->caretRect(i), shaped->caretRect(i));
                EXPECT_EQ(known->nextCaretPosition(i, true), shaped->nextCaretPosition(i, true));
                const NSPoint p{known->caretRect(i).origin.x + 1, 3};
                EXPECT_EQ(known->characterAtPoint(p, nullptr), shaped->characterAtPoint(p, nullptr));
            }
        }
    }
}

} // namespace
