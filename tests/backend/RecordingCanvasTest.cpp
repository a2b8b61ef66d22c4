#include "Surface.h"

#include <libvue/platform/backend/RecordingCanvas.h>

using namespace libvue;
using namespace libvue::test;
using backend::Compositing;
using backend::FillRule;
using backend::RecordingCanvas;
using backend::Shadow;
using backend::Transform;
using backend::YAxis;

namespace {

TEST(RecordingCanvas, operationsAreKeptInOrderWithTheirState) {
    RecordingCanvas canvas({100, 50});
    canvas.fillRect({{0, 0}, {10, 10}}, red);
    canvas.save();
    canvas.concat({1, 0, 0, -1, 0, 50}); // y downward
    canvas.clip({{0, 0}, {40, 20}});
    canvas.setAlpha(0.5);
    const Shadow shadow{{2, -2}, 5, {0, 0, 0, 2.0 / 3}};
    canvas.setShadow(&shadow);
    canvas.strokeLine({1, 2}, {3, 2}, {2, {}, {}, 10, {3, 1}, 0}, blue);
    canvas.drawGradient({{0, 0}, {0, 20}, {{0, red}, {1, {0, 0, 1, 0.5}}}, false, true});
    canvas.restore();
    canvas.setCompositing(Compositing::destinationIn);
    canvas.fill(triangle({0, 0}, {10, 0}, {0, 10.5}), FillRule::evenOdd, {0.5, 0.5, 0.5, 1});
    canvas.fillRect({{1, 1}, {2, 2}}, green, Compositing::copy);
    EXPECT_EQ(canvas.describe(),
              "fillRect {{0, 0}, {10, 10}} #ff0000ff\n"
              "line {1, 48} {3, 48} #0000ffff width 2 dash 3 1 alpha 0.5 shadow (2, -2) 5 #000000aa\n"
              "gradient {0, 50} {0, 30} 0 #ff0000ff 1 #0000ff80 extendEnd in {{0, 30}, {40, 20}} alpha 0.5 "
              "shadow (2, -2) 5 #000000aa\n"
              "fill M {0, 0} L {10, 0} L {0, 10.5} Z #808080ff evenOdd destinationIn\n"
              "fillRect {{1, 1}, {2, 2}} #00ff00ff copy\n");
    EXPECT_EQ(canvas.operations()[1].describe(RecordingCanvas::Space::user).substr(0, 17), "line {1, 2} {3, 2");
    EXPECT_EQ(canvas.operations(RecordingCanvas::Kind::fillRect).size(), 2u);
    EXPECT_EQ(canvas.operations()[1].clip, NSMakeRect(0, 30, 40, 20));
    EXPECT_EQ(canvas.operations()[4].clip, NSMakeRect(0, 0, 100, 50));
}

TEST(RecordingCanvas, clipBoundsAreInUserSpace) {
    RecordingCanvas canvas({100, 50});
    canvas.concat(Transform::translation(10, 10));
    EXPECT_EQ(canvas.clipBounds(), NSMakeRect(-10, -10, 100, 50));
    const NSRect rects[] = {{{0, 0}, {5, 5}}, {{10, 10}, {5, 5}}};
    canvas.save();
    canvas.clip(rects, 2);
    EXPECT_EQ(canvas.clipBounds(), NSMakeRect(0, 0, 15, 15));
    canvas.clip(triangle({0, 0}, {4, 0}, {0, 4}), FillRule::nonZero);
    EXPECT_EQ(canvas.clipBounds(), NSMakeRect(0, 0, 4, 4));
    canvas.fillRect({{0, 0}, {1, 1}}, red);
    EXPECT_EQ(canvas.operations().back().clipPaths.size(), 2u);
    canvas.restore();
    canvas.clip({{200, 200}, {5, 5}});
    EXPECT_EQ(canvas.clipBounds(), NSZeroRect);
}

TEST(RecordingCanvas, textsAndPicturesSayWhatTheyAre) {
    const auto engine = backend::makeRasterText();
    const std::u16string text = u"d\u00e9j\u00e0 \"vu\"\n";
    backend::TextRun run;
    run.range = {0, text.size()};
    run.font = engine->font("Helvetica", 10, 0);
    run.color = blue;
    backend::TextInput input;
    input.text = text;
    input.runs = {&run, 1};
    const auto layout = engine->layout(input);
    RecordingCanvas canvas({100, 50});
    canvas.drawText(*layout, {5, 40}, YAxis::up);
    EXPECT_EQ(canvas.operations()[0].text, text);
    EXPECT_TRUE(canvas.describe().starts_with("text \"d\u00e9j\u00e0 \\\"vu\\\"\\n\" {{5, ")) << canvas.describe();
    EXPECT_TRUE(canvas.describe().ends_with(" #0000ffff\n")) << canvas.describe();
    EXPECT_EQ(NSMaxY(canvas.operations()[0].rect), 40);

    const Surface icon(8, 8);
    canvas.clear();
    canvas.drawPicture(*icon.picture, {{0, 0}, {4, 4}}, {{10, 10}, {8, 8}}, Compositing::plusDarker, 0.4, YAxis::up);
    EXPECT_EQ(canvas.describe(),
              "picture 8 by 8 from {{0, 0}, {4, 4}} to {{10, 10}, {8, 8}} fraction 0.4 plusDarker\n");
    EXPECT_EQ(canvas.operations()[0].picture, icon.picture.get());
}

TEST(RecordingCanvas, handsEverythingOn) {
    const Surface s;
    RecordingCanvas canvas({20, 20}, 1, s.canvas.get());
    canvas.save();
    canvas.clip({{0, 0}, {10, 20}});
    canvas.setAlpha(0.5);
    canvas.beginLayer();
    canvas.fillRect({{0, 0}, {20, 20}}, red);
    canvas.restore(); // not inside of a layer
    canvas.endLayer();
    canvas.restore();
    canvas.fillRect({{15, 0}, {1, 1}}, blue);
    EXPECT_NEAR(s.at(5, 5).alpha, 0.5, 0.003);
    EXPECT_EQ(s.hex(12, 5), "00000000");
    EXPECT_EQ(s.hex(15, 0), "0000ffff");
    EXPECT_EQ(canvas.describe(), "beginLayer alpha 0.5\nfillRect {{0, 0}, {20, 20}} #ff0000ff\nendLayer\n"
                                 "fillRect {{15, 0}, {1, 1}} #0000ffff\n");
}

} // namespace
