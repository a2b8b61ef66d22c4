#include <cmath>
#include <functional>
#include <limits>

#include "Surface.h"

using namespace libvue;
using namespace libvue::test;
using backend::LineBreak;
using backend::TextAlignment;
using backend::TextInput;
using backend::TextLayout;
using backend::TextParagraph;
using backend::TextRun;
using backend::YAxis;

namespace {

backend::TextEngine& texts() {
    static const std::unique_ptr<backend::TextEngine> engine = backend::makeRasterText();
    return *engine;
}

/// A text of one look and one style of paragraph, and what can be changed about it.
struct Text {
    std::u16string text;
    std::vector<TextRun> runs;
    TextParagraph style;
    double width = 1e7, height = 1e7;
    NSUInteger maximumLines = 0;

    explicit Text(std::u16string t, double size = 13, const char* font = "Helvetica") : text(std::move(t)) {
        TextRun run;
        run.range = {0, text.size()};
        run.font = texts().font(font, size, 0);
        runs.push_back(run);
    }
    [[nodiscard]] std::shared_ptr<const TextLayout> layout() const {
        TextInput in;
        in.text = text;
        in.runs = runs;
        in.paragraphs = {&style, 1};
        in.width = width;
        in.height = height;
        in.maximumLines = maximumLines;
        return texts().layout(in);
    }
};

const std::u16string prose =
    u"Portez ce vieux whisky au juge blond qui fume, et que le vif z\u00e9phyr jubile sur les kumquats "
    u"du clown gracieux.";

double lineHeight(double size = 13, const char* font = "Helvetica") {
    const auto f = texts().font(font, size, 0);
    return f->ascender() - f->descender() + f->leading();
}

TEST(TextLayout, linesStandAtExactHeights) {
    Text t(prose);
    t.width = 150;
    const auto layout = t.layout();
    const auto lines = layout->lines();
    ASSERT_GT(lines.size(), 3u);
    const double h = lineHeight();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_DOUBLE_EQ(lines[i].rect.origin.y, static_cast<double>(i) * h);
        EXPECT_DOUBLE_EQ(lines[i].baseline, lines[i].rect.origin.y + t.runs[0].font->ascender());
        EXPECT_LE(lines[i].used.size.width, 150.001);
        EXPECT_EQ(lines[i].range.location, i == 0 ? 0 : NSMaxRange(lines[i - 1].range));
    }
    EXPECT_EQ(NSMaxRange(lines.back().range), prose.size());
    EXPECT_DOUBLE_EQ(layout->size().height, static_cast<double>(lines.size()) * h);
    EXPECT_LE(layout->size().width, 150.001);
}

TEST(TextLayout, theAdvanceOfALineIsTheWidthOfItsLayout) {
    for (const char16_t* sample : {u"Dictionnaire", u"AVATAR Te Wo", u"fi ffl \u0153uvre", u"12 345,67 $", u"fin  "}) {
        const Text t(sample);
        EXPECT_NEAR(texts().advance(sample, *t.runs[0].font), t.layout()->size().width, 0.02);
    }
}

TEST(TextLayout, spacingAndIndentsOfParagraphs) {
    Text t(u"un\ndeux\r\ntrois\u2029quatre");
    t.style.paragraphSpacing = 7;
    t.style.paragraphSpacingBefore = 2;
    t.style.lineSpacing = 3;
    t.style.firstLineHeadIndent = 12;
    const auto layout = t.layout();
    const auto lines = layout->lines();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0].range, NSMakeRange(0, 3));
    EXPECT_EQ(lines[1].range, NSMakeRange(3, 6));
    EXPECT_EQ(lines[2].range, NSMakeRange(9, 6));
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_DOUBLE_EQ(lines[i].used.origin.y, static_cast<double>(i) * (lineHeight() + 3 + 9));
        EXPECT_DOUBLE_EQ(lines[i].used.origin.x, 12);
    }
    EXPECT_NEAR(layout->size().width, 12 + lines[3].used.size.width, 1e-9);

    Text hanging(prose);
    hanging.width = 200;
    hanging.style.headIndent = 20;
    hanging.style.tailIndent = -30;
    const auto hung = hanging.layout();
    EXPECT_EQ(hung->lines()[0].used.origin.x, 0);
    EXPECT_EQ(hung->lines()[1].used.origin.x, 20);
    for (const auto& line : hung->lines())
        EXPECT_LE(NSMaxX(line.used), 170.001);
    hanging.style.tailIndent = 100;
    EXPECT_GT(hanging.layout()->lines().size(), hung->lines().size());
}

TEST(TextLayout, heightsOfLinesCanBeHeld) {
    Text t(u"a\nb");
    t.style.minimumLineHeight = 30;
    auto lines = t.layout();
    EXPECT_DOUBLE_EQ(lines->lines()[1].rect.origin.y, 30);
    EXPECT_DOUBLE_EQ(lines->lines()[0].baseline, 30 + t.runs[0].font->descender() - t.runs[0].font->leading());
    t.style.minimumLineHeight = 0;
    t.style.maximumLineHeight = 10;
    EXPECT_DOUBLE_EQ(t.layout()->size().height, 20);
    t.style.maximumLineHeight = 0;
    t.style.lineHeightMultiple = 2;
    EXPECT_DOUBLE_EQ(t.layout()->size().height, 4 * lineHeight());
}

TEST(TextLayout, theTallestRunMakesTheLine) {
    Text t(u"petit GRAND");
    TextRun large = t.runs[0];
    large.range = {6, 5};
    large.font = texts().font("Helvetica", 26, 0);
    t.runs[0].range.length = 6;
    t.runs.push_back(large);
    const auto layout = t.layout();
    EXPECT_DOUBLE_EQ(layout->size().height, lineHeight(26));
    EXPECT_DOUBLE_EQ(layout->lines()[0].baseline, large.font->ascender());
    t.runs[1].baselineOffset = 5;
    EXPECT_DOUBLE_EQ(t.layout()->lines()[0].baseline, large.font->ascender() + 5);
}

TEST(TextLayout, alignment) {
    Text t(u"mot");
    t.width = 100;
    const double w = t.layout()->size().width;
    const struct {
        TextAlignment alignment;
        double x;
    } rows[] = {{TextAlignment::left, 0},
                {TextAlignment::natural, 0},
                {TextAlignment::center, (100 - w) / 2},
                {TextAlignment::right, 100 - w}};
    for (const auto& row : rows) {
        t.style.alignment = row.alignment;
        const auto layout = t.layout();
        EXPECT_NEAR(layout->lines()[0].used.origin.x, row.x, 1e-6);
        EXPECT_NEAR(layout->caretRect(0).origin.x, row.x, 1e-6);
        EXPECT_NEAR(layout->size().width, w, 1e-6) << "the text takes no more room for being aligned";
    }
    // Without a bound, lines are aligned to the widest.
    Text free(u"long texte\nmot");
    free.style.alignment = TextAlignment::right;
    const auto layout = free.layout();
    EXPECT_NEAR(NSMaxX(layout->lines()[1].used), NSMaxX(layout->lines()[0].used), 1e-6);
    EXPECT_LT(NSMaxX(layout->lines()[1].used), 200);
    // A text from right to left starts at the right by itself.
    Text arabic(u"\u0633\u0644\u0627\u0645");
    arabic.width = 100;
    EXPECT_NEAR(NSMaxX(arabic.layout()->lines()[0].used), 100, 0.01);
}

TEST(TextLayout, justifiedLinesReachTheEdgeButTheLast) {
    Text t(prose);
    t.width = 150;
    t.style.alignment = TextAlignment::justified;
    const auto layout = t.layout();
    const auto lines = layout->lines();
    const NSRange first = lines[0].range;
    const auto box = layout->rects({first.location, first.length - 1});
    ASSERT_EQ(box.size(), 1u);
    EXPECT_NEAR(NSMaxX(box[0]), 150, 0.5);
    EXPECT_LT(layout->caretRect(prose.size()).origin.x, 149);
}

TEST(TextLayout, truncationShowsAnEllipsisWithinTheWidth) {
    for (const LineBreak mode : {LineBreak::truncatingTail, LineBreak::truncatingHead, LineBreak::truncatingMiddle}) {
        Text t(prose);
        t.style.lineBreak = mode;
        for (const double width : {0.0, 3.0, 13.0, 40.0, 120.0, 333.3}) {
            t.width = width;
            const auto layout = t.layout();
            ASSERT_EQ(layout->lines().size(), 1u);
            const auto& line = layout->lines()[0];
            EXPECT_TRUE(line.truncated);
            EXPECT_EQ(line.range, NSMakeRange(0, prose.size()));
            if (width >= 13) {
                EXPECT_LE(line.used.size.width, width + 0.02);
            }
            if (width >= 40) {
                EXPECT_GT(line.used.size.width, width - 15);
            }
        }
        t.width = 2000;
        EXPECT_FALSE(t.layout()->lines()[0].truncated);
        EXPECT_EQ(t.layout()->size().width, Text(prose).layout()->size().width);
    }
    // What is hidden has its caret at the ellipsis.
    Text t(prose);
    t.style.lineBreak = LineBreak::truncatingTail;
    t.width = 120;
    const auto tail = t.layout();
    EXPECT_EQ(tail->caretRect(60).origin.x, tail->caretRect(80).origin.x);
    EXPECT_LT(tail->caretRect(5).origin.x, tail->caretRect(10).origin.x);
    t.style.lineBreak = LineBreak::truncatingHead;
    const auto head = t.layout();
    EXPECT_EQ(head->caretRect(10).origin.x, head->caretRect(20).origin.x);
    EXPECT_GT(head->caretRect(prose.size()).origin.x, 100);
}

TEST(TextLayout, theLastLineAllowedIsTruncated) {
    Text t(prose);
    t.width = 150;
    t.style.lineBreak = LineBreak::truncatingTail;
    t.maximumLines = 2;
    const auto layout = t.layout();
    ASSERT_EQ(layout->lines().size(), 2u);
    EXPECT_FALSE(layout->lines()[0].truncated);
    EXPECT_TRUE(layout->lines()[1].truncated);
    EXPECT_LE(layout->lines()[1].used.size.width, 150.02);
    t.style.lineBreak = LineBreak::wordWrapping;
    EXPECT_EQ(t.layout()->lines().size(), 2u);
    EXPECT_FALSE(t.layout()->lines()[1].truncated);
}

TEST(TextLayout, linesBelowTheHeightAreLeftOut) {
    Text t(prose);
    t.width = 150;
    t.height = lineHeight() * 2 + 1;
    EXPECT_EQ(t.layout()->lines().size(), 3u); // the third starts above it
    t.height = lineHeight() * 2 - 1;
    EXPECT_EQ(t.layout()->lines().size(), 2u);
    t.height = 0.1;
    EXPECT_EQ(t.layout()->lines().size(), 1u);
}

TEST(TextLayout, wordsLongerThanTheWidthBreakAnywhere) {
    Text t(u"anticonstitutionnellement");
    t.width = 60;
    EXPECT_GT(t.layout()->lines().size(), 2u);
    t.style.lineBreak = LineBreak::clipping;
    const auto clipped = t.layout();
    ASSERT_EQ(clipped->lines().size(), 1u);
    EXPECT_GT(clipped->lines()[0].used.size.width, 60);
    // Drawn, it ends at the width.
    const Surface s(200, 30);
    s.canvas->drawText(*clipped, {10, 25}, YAxis::up);
    for (int x = 70; x < 200; ++x)
        for (int y = 0; y < 30; ++y)
            ASSERT_EQ(s.at(x, y).alpha, 0);
    EXPECT_GT(s.coverage(), 50);
}

TEST(TextLayout, emptyTextsAndTrailingLineEndsHaveALine) {
    Text empty(u"", 20);
    const auto layout = empty.layout();
    ASSERT_EQ(layout->lines().size(), 1u);
    EXPECT_DOUBLE_EQ(layout->size().height, lineHeight(20));
    EXPECT_EQ(layout->size().width, 0);
    EXPECT_DOUBLE_EQ(layout->caretRect(0).size.height, lineHeight(20));
    EXPECT_EQ(layout->characterAtPoint({50, 50}, nullptr), 0u);
    EXPECT_EQ(layout->nextCaretPosition(0, true), 0u);

    const auto open = Text(u"a\n\n").layout();
    ASSERT_EQ(open->lines().size(), 3u);
    EXPECT_EQ(open->lines()[1].range, NSMakeRange(2, 1));
    EXPECT_EQ(open->lines()[2].range, NSMakeRange(3, 0));
    EXPECT_DOUBLE_EQ(open->caretRect(3).origin.y, 2 * lineHeight());
    EXPECT_EQ(open->characterAtPoint({5, 2.5 * lineHeight()}, nullptr), 3u);
}

TEST(TextLayout, caretsAndPointsAgree) {
    const std::u16string sample =
        u"Le c\u0153ur e\u0301mu \U0001F600 d\u00e9\u00e7u; \u0633\u0645\u0631 fin.\nDeuxi\u00e8me ligne, assez longue "
        u"pour \u00eatre coup\u00e9e.";
    Text t(sample);
    t.width = 120;
    const auto layout = t.layout();
    for (NSUInteger i = 0; i < sample.size(); i = layout->nextCaretPosition(i, true)) {
        const NSUInteger next = layout->nextCaretPosition(i, true);
        ASSERT_GT(next, i);
        EXPECT_EQ(layout->nextCaretPosition(next, false), i);
        const auto boxes = layout->rects({i, next - i});
        ASSERT_EQ(boxes.size(), 1u);
        if (boxes[0].size.width == 0) continue; // a line end, or a space that hangs over
        double fraction = -1;
        const NSUInteger found = layout->characterAtPoint({NSMidX(boxes[0]), NSMidY(boxes[0])}, &fraction);
        EXPECT_EQ(found, i);
        EXPECT_NEAR(fraction, 0.5, 0.05) << i;
        EXPECT_DOUBLE_EQ(layout->caretRect(i).origin.y, boxes[0].origin.y);
    }
    EXPECT_EQ(layout->nextCaretPosition(8, true), 10u) << "a letter and its accent are one";
    EXPECT_EQ(layout->nextCaretPosition(1000, true), sample.size());
}

TEST(TextLayout, pointsOutsideGiveTheNearestCharacter) {
    Text t(u"abc\ndef");
    const auto layout = t.layout();
    double fraction = -1;
    EXPECT_EQ(layout->characterAtPoint({-50, 2}, &fraction), 0u);
    EXPECT_EQ(fraction, 0);
    EXPECT_EQ(layout->characterAtPoint({500, 2}, &fraction), 2u); // not the line end
    EXPECT_EQ(fraction, 1);
    EXPECT_EQ(layout->characterAtPoint({500, 1e9}, nullptr), 6u);
    EXPECT_EQ(layout->characterAtPoint({0, -1e9}, nullptr), 0u);
    EXPECT_LE(layout->characterAtPoint({std::nan(""), std::nan("")}, nullptr), 7u);
    // A range over two lines, and ranges that are none.
    EXPECT_EQ(layout->rects({2, 3}).size(), 2u);
    EXPECT_TRUE(layout->rects({2, 0}).empty());
    EXPECT_TRUE(layout->rects({100, 5}).empty());
    EXPECT_EQ(layout->rects({0, ~NSUInteger{0}}).size(), 2u);
    EXPECT_EQ(layout->caretRect(~NSUInteger{0}), layout->caretRect(7));
}

TEST(TextLayout, kernTabsAndAttachmentsTakeTheirRoom) {
    Text t(u"abcd");
    const double w = t.layout()->size().width;
    t.runs[0].kern = 3;
    EXPECT_NEAR(t.layout()->size().width, w + 12, 0.1);

    Text tabs(u"a\tb\tc");
    tabs.style.tabStops = {50};
    tabs.style.defaultTabInterval = 80;
    const auto tabbed = tabs.layout();
    EXPECT_NEAR(tabbed->caretRect(2).origin.x, 50, 0.05);
    EXPECT_NEAR(tabbed->caretRect(4).origin.x, 80, 0.05);

    Text object(u"ab\uFFFCcd");
    TextRun run = object.runs[0];
    object.runs[0].range = {0, 2};
    run.range = {2, 1};
    run.attachment = NSSize{40, 30};
    object.runs.push_back(run);
    run.attachment.reset();
    run.range = {3, 2};
    object.runs.push_back(run);
    const auto layout = object.layout();
    EXPECT_NEAR(layout->rects({2, 1})[0].size.width, 40, 0.05);
    EXPECT_DOUBLE_EQ(layout->lines()[0].baseline, 30);
    object.width = 45;
    EXPECT_EQ(object.layout()->lines().size(), 3u) << "it breaks before and after";
    // Its room stays blank.
    const Surface s(100, 60);
    object.width = 1000;
    object.runs[0].range = {0, 0};
    object.text = u"\uFFFC";
    object.runs = {object.runs[1]};
    object.runs[0].range = {0, 1};
    s.canvas->drawText(*object.layout(), {0, 60}, YAxis::up);
    EXPECT_EQ(s.coverage(), 0);
}

TEST(TextLayout, hostileTextsAndWidths) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    const std::u16string samples[] = {std::u16string(u"a\0b", 3),
                                      u"\xD800",
                                      u"\xDC00\xD800x\xD83D",
                                      u"\uFEFF\u200F\u202E abc",
                                      u"\x85\x0B\x0C\u2028",
                                      std::u16string(3000, u'x'),
                                      u"\r\n\r\r\n\n"};
    for (const auto& sample : samples)
        for (const double width : {std::nan(""), -5.0, 0.0, 0.5, infinite, 1e300})
            for (const LineBreak mode :
                 {LineBreak::wordWrapping, LineBreak::charWrapping, LineBreak::truncatingMiddle}) {
                Text t(sample);
                t.width = width;
                t.style.lineBreak = mode;
                t.style.lineHeightMultiple = std::nan("");
                t.style.tabStops = {std::nan(""), -3};
                const auto layout = t.layout();
                ASSERT_FALSE(layout->lines().empty());
                EXPECT_EQ(NSMaxRange(layout->lines().back().range), sample.size());
                EXPECT_TRUE(std::isfinite(layout->size().width) && std::isfinite(layout->size().height));
                EXPECT_EQ(layout->text(), sample);
            }
    const Surface s(50, 50);
    s.canvas->drawText(*Text(samples[2]).layout(), {0, 50}, YAxis::up);
    s.canvas->drawText(*Text(samples[0]).layout(), {std::nan(""), 1e300}, YAxis::up);
    EXPECT_EQ(texts().font("Helvetica", std::nan(""), 0)->pointSize(), 12);
    EXPECT_EQ(texts().font("Helvetica", -3, 0)->pointSize(), 12);
}

TEST(TextLayout, theSamePixelsWhereverAndHoweverItIsDrawn) {
    Text t(u"Essai gj");
    t.runs[0].underline = 1;
    const auto layout = t.layout();
    const auto drawn = [&](NSPoint at, bool flipped, const TextLayout& l) {
        Surface s(100, 40);
        if (flipped) s.canvas->concat({1, 0, 0, -1, 0, 40});
        s.canvas->drawText(l, flipped ? NSPoint{at.x, 40 - at.y} : at, flipped ? YAxis::down : YAxis::up);
        return s.rows();
    };
    const std::string first = drawn({10, 30}, false, *layout);
    EXPECT_EQ(first, drawn({10, 30}, false, *layout)) << "from the cache";
    EXPECT_EQ(first, drawn({10, 30}, true, *layout)) << "y downward";
    EXPECT_EQ(first, drawn({10, 30}, false, *t.layout())) << "laid out anew";
    EXPECT_NE(first, drawn({10.5, 30}, false, *layout));
    EXPECT_EQ(first, drawn({10, 30}, false, *layout)) << "after another position";
    // A whole pixel away it is the same picture, moved.
    const std::string moved = drawn({11, 30}, false, *layout);
    EXPECT_EQ(first.substr(0, first.size() - 4), moved.substr(4));
}

TEST(TextLayout, inkLiesWhereTheLayoutSays) {
    Text t(u"HHH", 20);
    const auto layout = t.layout();
    const Surface s(100, 40);
    s.canvas->drawText(*layout, {10, 35}, YAxis::up);
    int lowest = 40;
    int highest = 0;
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 100; ++x)
            if (s.at(x, y).alpha > 0.5) {
                lowest = std::min(lowest, y);
                highest = std::max(highest, y);
            }
    const double baseline = 35 - layout->lines()[0].baseline;
    EXPECT_NEAR(lowest, baseline, 0.6);
    EXPECT_NEAR(highest + 1, baseline + t.runs[0].font->capHeight(), 1.1);
}

TEST(TextLayout, backgroundsLinesAndShadowsAreDrawn) {
    const auto row = [](const std::function<void(TextRun&)>& change) {
        Text t(u"      ", 20); // blanks show nothing but what is around them
        t.text = u"\u00A0\u00A0\u00A0\u00A0";
        t.runs[0].range = {0, 4};
        change(t.runs[0]);
        const Surface s(60, 40);
        s.canvas->drawText(*t.layout(), {5, 35}, YAxis::up);
        return s.coverage();
    };
    const double width = Text(u"\u00A0\u00A0\u00A0\u00A0", 20).layout()->size().width;
    EXPECT_EQ(row([](TextRun&) {}), 0);
    EXPECT_NEAR(row([](TextRun& r) { r.background = green; }), width * lineHeight(20), 2 * lineHeight(20));
    const double single = row([](TextRun& r) { r.underline = 1; });
    EXPECT_NEAR(single, width, 2);
    EXPECT_GT(row([](TextRun& r) { r.underline = 2; }), single * 1.5);
    EXPECT_NEAR(row([](TextRun& r) { r.underline = 9; }), 2 * single, 1);
    EXPECT_NEAR(row([](TextRun& r) { r.strikethrough = true; }), single, 1);

    const auto shadowed = [](double alpha) {
        Text t(u"ombre", 20);
        t.runs[0].color = {1, 0, 0, 1};
        if (alpha > 0) t.runs[0].shadow = backend::Shadow{{0, -12}, 0, {0, 0, 1, alpha}};
        const Surface s(100, 60);
        s.canvas->drawText(*t.layout(), {5, 55}, YAxis::up);
        return s.coverage();
    };
    EXPECT_GT(shadowed(1), 1.5 * shadowed(0));
}

TEST(Fonts, namesGiveFamiliesAndTraits) {
    const struct {
        const char* name;
        std::uint32_t asked;
        const char* family;
        std::uint32_t traits;
        int weight;
        bool known;
    } rows[] = {
        {"Helvetica", 0, "Liberation Sans", 0, 5, true},
        {"Helvetica-Bold", 0, "Liberation Sans", backend::fontBold, 9, true},
        {"Helvetica-BoldOblique", 0, "Liberation Sans", backend::fontBold | backend::fontItalic, 9, true},
        {"Lucida Grande", backend::fontBold, "Liberation Sans", backend::fontBold, 9, true},
        {"LucidaGrande-Bold", 0, "Liberation Sans", backend::fontBold, 9, true},
        {"HelveticaNeue", backend::fontItalic, "Liberation Sans", backend::fontItalic, 5, true},
        {"Times-Italic", 0, "Liberation Serif", backend::fontItalic, 5, true},
        {"Times-Roman", 0, "Liberation Serif", 0, 5, true},
        {"TimesNewRomanPS-BoldItalicMT", 0, "Liberation Serif", backend::fontBold | backend::fontItalic, 9, true},
        {"ArialMT", 0, "Liberation Sans", 0, 5, true},
        {"Courier", 0, "Liberation Mono", backend::fontFixedPitch, 5, true},
        {"Menlo-Regular", 0, "DejaVu Sans Mono", backend::fontFixedPitch, 5, true},
        {"DejaVu Sans", 0, "DejaVu Sans", 0, 5, true},
        {"No Such Family", 0, "Liberation Sans", 0, 5, false},
        {"No Such-Bold", 0, "Liberation Sans", backend::fontBold, 9, false},
        {"", 0, "Liberation Sans", 0, 5, false},
    };
    for (const auto& row : rows) {
        const auto font = texts().font(row.name, 13, row.asked);
        EXPECT_EQ(font->familyName(), row.family) << row.name;
        EXPECT_EQ(font->traits(), row.traits) << row.name;
        EXPECT_EQ(font->weight(), row.weight) << row.name;
        EXPECT_EQ(font->requestedName(), row.name);
        EXPECT_EQ(texts().hasFamily(row.name), row.known) << row.name;
    }
}

TEST(Fonts, measuresGrowWithTheSizeAndNothingElse) {
    const auto one = texts().font("Times", 10, 0);
    const auto ten = texts().font("Times", 100, 0);
    EXPECT_NEAR(ten->ascender(), 10 * one->ascender(), 1e-9);
    EXPECT_LT(one->descender(), 0);
    EXPECT_LT(one->underlinePosition(), 0);
    EXPECT_NEAR(texts().advance(u"mesure", *ten), 10 * texts().advance(u"mesure", *one), 1);
    EXPECT_TRUE(one->covers(U'\u00e9'));
    EXPECT_FALSE(one->covers(0x4E00));
}

} // namespace
