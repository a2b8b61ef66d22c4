#include <algorithm>
#include <functional>

#include "Surface.h"
#include <support/TextePDF.h>

using namespace libvue;
using namespace libvue::test;
using backend::Canvas;
using backend::Color;
using backend::FillRule;
using backend::Path;
using backend::Stroke;
using backend::Transform;

namespace {

constexpr NSSize sheet{120, 90};

std::string pdfOf(const std::function<void(Canvas&)>& draw) {
    auto pdf = graphics().makePDF(sheet, "Essai");
    draw(*pdf.canvas);
    const auto bytes = graphics().finish(pdf);
    return {bytes.begin(), bytes.end()};
}

std::shared_ptr<const backend::TextLayout> words(std::u16string_view text, double size, double width = 1e6) {
    const auto engine = backend::makeRasterText();
    backend::TextRun run;
    run.range = {0, text.size()};
    run.font = engine->font("Helvetica", size, 0);
    backend::TextInput input;
    input.text = text;
    input.runs = {&run, 1};
    input.width = width;
    return engine->layout(input);
}

/// How far the lightness of two pictures is apart where it is farthest, over squares of that many pixels: their edges
/// are smoothed by different engines.
double farthest(const backend::Picture& a, const backend::Picture& b, int square) {
    const auto light = [square](const backend::Picture& p, int x, int y, double Color::*part) {
        double sum = 0;
        for (int i = 0; i < square * square; ++i)
            sum += p.pixel(x + i % square, y + i / square).*part;
        return sum / (square * square);
    };
    double found = 0;
    for (int y = 0; y + square <= a.pixelHeight(); y += square)
        for (int x = 0; x + square <= a.pixelWidth(); x += square)
            for (const auto part : {&Color::red, &Color::green, &Color::blue})
                found = std::max(found, std::abs(light(a, x, y, part) - light(b, x, y, part)));
    return found;
}

TEST(PdfCanvas, aPageShowsWhatTheScreenShows) {
    const Path shape = triangle({10, 10}, {70, 20}, {30, 70});
    const Path other = triangle({10, 10}, {70, 20}, {30, 71});
    const Color faint{0, 0, 1, 0.5};
    Stroke pen;
    pen.width = 6;
    const auto text = words(u"Hm", 40);
    constexpr double hinted = 0.45; // glyphs stand up to half a point apart
    const struct {
        const char* what;
        std::function<void(Canvas&)> draw;
        double allowed = 0.16;
    } rows[] = {
        {"an outline filled and stroked",
         [&](Canvas& c) {
             c.fill(shape, FillRule::nonZero, red);
             c.stroke(shape, pen, blue);
         }},
        {"filled twice, then stroked",
         [&](Canvas& c) {
             c.fill(shape, FillRule::nonZero, red);
             c.fill(shape, FillRule::nonZero, faint);
             c.stroke(shape, pen, green);
         }},
        {"a stroke of nearly the same outline",
         [&](Canvas& c) {
             c.fill(shape, FillRule::nonZero, red);
             c.stroke(other, pen, blue);
         }},
        {"translucent ink over translucent ink",
         [&](Canvas& c) {
             c.fill(shape, FillRule::nonZero, {1, 0, 0, 0.5});
             c.stroke(shape, pen, faint);
         }},
        {"a translucent stroke over ink",
         [&](Canvas& c) {
             c.fill(shape, FillRule::nonZero, red);
             c.stroke(shape, pen, faint);
         }},
        {"a clip between fill and stroke",
         [&](Canvas& c) {
             c.fill(shape, FillRule::nonZero, red);
             c.clip(NSRect{{0, 0}, {40, 90}});
             c.stroke(shape, pen, blue);
         }},
        {"a clip that goes before the stroke",
         [&](Canvas& c) {
             c.save();
             c.clip(triangle({0, 0}, {50, 0}, {0, 90}), FillRule::nonZero);
             c.fill(shape, FillRule::nonZero, red);
             c.restore();
             c.stroke(shape, pen, blue);
         }},
        {"something between fill and stroke",
         [&](Canvas& c) {
             c.fill(shape, FillRule::nonZero, red);
             c.fillRect({{20, 0}, {10, 90}}, green);
             c.drawText(*text, {10, 80}, backend::YAxis::up);
             c.stroke(shape, pen, blue);
         },
         hinted},
        {"a deformed pen, and the usual one after it",
         [&](Canvas& c) {
             c.save();
             c.concat({1.4, 0.2, 0, 0.5, 5, 5});
             c.fill(shape, FillRule::nonZero, red);
             c.stroke(shape, pen, blue);
             c.restore();
             c.stroke(other, pen, green);
         }},
        {"turned rectangles and words",
         [&](Canvas& c) {
             c.drawText(*text, {5, 85}, backend::YAxis::up);
             c.concat(Transform{0.8, 0.6, -0.6, 0.8, 40, 0});
             c.fillRect({{10, 10}, {40, 20}}, red);
             c.drawText(*text, {5, 80}, backend::YAxis::up);
         },
         hinted},
        {"words in a space that points down, cut",
         [&](Canvas& c) {
             c.concat({1, 0, 0, -1, 0, sheet.height});
             c.drawText(*text, {10.3, 5}, backend::YAxis::down);
             c.clip(NSRect{{0, 0}, {60, 70}});
             c.drawText(*text, {20, 40}, backend::YAxis::down);
         },
         hinted},
        {"the last thing is a fill",
         [&](Canvas& c) {
             c.strokeLine({0, 0}, {120, 90}, pen, blue);
             c.fill(shape, FillRule::evenOdd, red);
         }},
    };
    constexpr int scale = 4;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const Surface screen(sheet.width, sheet.height, scale);
        screen.canvas->fillRect({{0, 0}, sheet}, white);
        row.draw(*screen.canvas);
        const auto page = graphics().decode(imageDuPDF(pdfOf(row.draw), scale), nullptr);
        ASSERT_NE(page, nullptr);
        ASSERT_EQ(page->pixelWidth(), screen.picture->pixelWidth());
        EXPECT_LT(farthest(*page, *screen.picture, scale), row.allowed);
    }
}

TEST(PdfCanvas, aFillAndItsStrokeAreOneOutline) {
    const auto bytesOf = [](const Path& stroked) {
        return pdfOf([&](Canvas& c) {
                   for (int i = 0; i < 200; ++i) {
                       c.fill(triangle({10, 10}, {70, 20}, {30.0 + i, 70}), FillRule::nonZero, red);
                       Path same = stroked;
                       same.points[2].x += i;
                       c.stroke(same, {}, blue);
                   }
               })
            .size();
    };
    EXPECT_LT(1.3 * static_cast<double>(bytesOf(triangle({10, 10}, {70, 20}, {30, 70}))),
              static_cast<double>(bytesOf(triangle({10, 10}, {70, 20}, {30, 71}))));
}

TEST(PdfCanvas, ofALongTextAPageHoldsTheLinesThatItShows) {
    std::u16string text;
    for (int i = 0; i < 2000; ++i) {
        for (const char c : "ligne" + std::to_string(i))
            text += static_cast<char16_t>(c);
        text += u'\n';
    }
    const auto layout = words(text, 10);
    const double middle = layout->lines()[1000].rect.origin.y;
    const auto found = motsDuPDF(pdfOf([&](Canvas& c) {
        c.drawText(*layout, {10, sheet.height + middle}, backend::YAxis::up);
    }));
    const auto has = [&](const char* word) {
        return std::any_of(found.begin(), found.end(), [&](const MotPDF& m) { return m.mot == word; });
    };
    EXPECT_TRUE(has("ligne1000"));
    EXPECT_TRUE(has("ligne1006"));
    EXPECT_LT(found.size(), 14u);
}

} // namespace
