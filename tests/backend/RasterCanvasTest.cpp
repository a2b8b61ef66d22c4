#include <cmath>
#include <limits>

#include "Surface.h"

#include <libvue/platform/backend/qt/RasterPicture.h>

using namespace libvue;
using namespace libvue::test;
using backend::AxialGradient;
using backend::Color;
using backend::Compositing;
using backend::FillRule;
using backend::Path;
using backend::PathVerb;
using backend::Shadow;
using backend::Stroke;
using backend::Transform;
using backend::YAxis;

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

TEST(RasterCanvas, wholePixelsAreFilledAndNoOthers) {
    for (const double scale : {1.0, 2.0, 3.0}) {
        const Surface s(20, 20, scale);
        s.canvas->fillRect({{3, 4}, {5, 6}}, red);
        const int k = static_cast<int>(scale);
        EXPECT_EQ(s.coverage(), 30 * scale * scale);
        EXPECT_EQ(s.hex(3 * k, 4 * k), "ff0000ff");
        EXPECT_EQ(s.hex(8 * k - 1, 10 * k - 1), "ff0000ff");
    }
}

TEST(RasterCanvas, partsOfPixelsAreCoveredInPart) {
    const Surface s;
    s.canvas->fillRect({{3.5, 4}, {2, 1.25}}, black);
    EXPECT_NEAR(s.coverage(), 2.5, 0.02);
    EXPECT_NEAR(s.at(3, 4).alpha, 0.5, 0.01);
    EXPECT_NEAR(s.at(4, 5).alpha, 0.25, 0.01);
    const Surface hard;
    hard.canvas->setAntialiasing(false);
    hard.canvas->fillRect({{3.4, 4}, {2, 1.25}}, black);
    EXPECT_EQ(hard.coverage(), 2);
}

TEST(RasterCanvas, alineOfOnePointOnPixelCentresIsOnePixelWide) {
    const Stroke one;
    const Surface s;
    s.canvas->strokeLine({2, 5.5}, {12, 5.5}, one, red);
    s.canvas->strokeLine({15.5, 2}, {15.5, 12}, one, blue);
    EXPECT_EQ(s.coverage(), 20);
    EXPECT_EQ(s.hex(2, 5), "ff0000ff");
    EXPECT_EQ(s.hex(15, 11), "0000ffff");
    // The same line as a path, and as one between pixels.
    const Surface path;
    path.canvas->stroke({{PathVerb::move, PathVerb::line}, {{2, 5.5}, {12, 5.5}}}, one, red);
    EXPECT_EQ(path.hex(2, 5), "ff0000ff");
    EXPECT_EQ(path.coverage(), 10);
    const Surface between;
    between.canvas->strokeLine({2, 5}, {12, 5}, one, black);
    EXPECT_NEAR(between.at(4, 4).alpha, 0.5, 0.01);
    EXPECT_NEAR(between.at(4, 5).alpha, 0.5, 0.01);
}

TEST(RasterCanvas, capsAndDashesReachAsFarAsTheyShould) {
    Stroke wide;
    wide.width = 4;
    const auto covered = [](const Stroke& stroke) {
        const Surface s(40, 20);
        s.canvas->strokeLine({10, 10}, {30, 10}, stroke, black);
        return s.coverage();
    };
    EXPECT_NEAR(covered(wide), 80, 0.1);
    wide.cap = backend::LineCap::square;
    EXPECT_NEAR(covered(wide), 96, 0.1);
    wide.cap = backend::LineCap::round;
    EXPECT_NEAR(covered(wide), 80 + 3.14159 * 4, 0.6);
    wide.cap = backend::LineCap::butt;
    wide.dash = {3, 2};
    EXPECT_NEAR(covered(wide), 48, 0.3);
    wide.dash = {5}; // on and off alike
    EXPECT_NEAR(covered(wide), 40, 0.3);
    for (const std::vector<double>& useless : {std::vector<double>{0, 0}, {-1, 2}, {nan, 1}}) {
        wide.dash = useless;
        EXPECT_NEAR(covered(wide), 80, 0.3);
    }
}

TEST(RasterCanvas, aTransformThatDeformsDeformsThePenAsWell) {
    const Surface s(40, 40);
    s.canvas->concat(Transform::scaling(1, 4));
    Stroke two;
    two.width = 2;
    s.canvas->strokeLine({10, 5}, {30, 5}, two, black);
    EXPECT_NEAR(s.coverage(), 20 * 8, 0.5);
}

TEST(RasterCanvas, fillRulesDiffer) {
    Path twice; // two squares of the same turn, one inside of the other
    for (const double inset : {0.0, 5.0}) {
        twice.verbs.insert(twice.verbs.end(),
                           {PathVerb::move, PathVerb::line, PathVerb::line, PathVerb::line, PathVerb::close});
        const double a = 2 + inset;
        const double b = 18 - inset;
        twice.points.insert(twice.points.end(), {{a, a}, {b, a}, {b, b}, {a, b}});
    }
    const Surface solid;
    solid.canvas->fill(twice, FillRule::nonZero, black);
    EXPECT_EQ(solid.coverage(), 256);
    const Surface hollow;
    hollow.canvas->fill(twice, FillRule::evenOdd, black);
    EXPECT_EQ(hollow.coverage(), 256 - 36);
}

TEST(RasterCanvas, clipsNarrowAndComeBack) {
    const Surface s;
    s.canvas->save();
    s.canvas->clip({{0, 0}, {10, 20}});
    EXPECT_EQ(s.canvas->clipBounds(), NSMakeRect(0, 0, 10, 20));
    s.canvas->save();
    s.canvas->clip({{5, 0}, {10, 20}});
    EXPECT_EQ(s.canvas->clipBounds(), NSMakeRect(5, 0, 5, 20));
    s.canvas->fillRect({{0, 0}, {20, 20}}, red);
    EXPECT_EQ(s.coverage(), 100);
    s.canvas->restore();
    s.canvas->fillRect({{0, 0}, {20, 20}}, blue);
    EXPECT_EQ(s.coverage(), 200);
    s.canvas->restore();
    s.canvas->restore(); // without a save: nothing
    s.canvas->fillRect({{0, 0}, {20, 20}}, green);
    EXPECT_EQ(s.coverage(), 400);
}

TEST(RasterCanvas, outlinesClipAfterOneAnother) {
    const Surface s;
    const Path lower = triangle({0, 0}, {20, 0}, {0, 20});
    const Path left = triangle({0, 0}, {20, 20}, {0, 20});
    s.canvas->save();
    s.canvas->clip(lower, FillRule::nonZero);
    s.canvas->save();
    s.canvas->clip(left, FillRule::nonZero);
    s.canvas->fillRect({{0, 0}, {20, 20}}, black);
    EXPECT_NEAR(s.coverage(), 100, 1.5);
    s.canvas->restore();
    s.canvas->fillRect({{0, 0}, {20, 20}}, black);
    EXPECT_NEAR(s.coverage(), 200, 3);
    s.canvas->restore();
    s.canvas->clip(Path{}, FillRule::nonZero); // an empty outline leaves nothing
    s.canvas->fillRect({{0, 0}, {20, 20}}, black);
    EXPECT_NEAR(s.coverage(), 200, 3);
    EXPECT_EQ(s.canvas->clipBounds(), NSZeroRect);
}

TEST(RasterCanvas, aClipOfSeveralRectanglesIsTheirUnion) {
    const NSRect rects[] = {{{0, 0}, {5, 5}}, {{3, 3}, {5, 5}}, {{15, 15}, {2, 2}}, {{0, 0}, {-1, 4}}};
    for (const bool turned : {false, true}) {
        const Surface s;
        if (turned) s.canvas->concat(Transform{0, 1, 1, 0, 0, 0});
        s.canvas->clip(rects, 4);
        s.canvas->fillRect({{-50, -50}, {100, 100}}, red);
        EXPECT_NEAR(s.coverage(), 25 + 25 - 4 + 4, 0.01);
        EXPECT_EQ(s.hex(16, 16), "ff0000ff");
        EXPECT_EQ(s.hex(10, 10), "00000000");
    }
}

TEST(RasterCanvas, aTurnedRectangleIsClippedToItsOutline) {
    const Surface s(40, 40);
    s.canvas->concat(Transform::rotation(0.7853981633974483).then(Transform::translation(20, 5)));
    s.canvas->clip({{0, 0}, {10, 10}});
    s.canvas->fillRect({{-100, -100}, {200, 200}}, black);
    EXPECT_NEAR(s.coverage(), 100, 1);
}

TEST(RasterCanvas, aGradientEndsWhereItIsNotExtended) {
    const auto drawn = [](bool start, bool end, NSPoint to = {15, 0}) {
        Surface s;
        AxialGradient g{{5, 0}, to, {{0, red}, {1, blue}}, start, end};
        s.canvas->drawGradient(g);
        return s;
    };
    const Surface bare = drawn(false, false);
    EXPECT_EQ(bare.coverage(), 200);
    EXPECT_EQ(bare.at(4, 3).alpha, 0);
    EXPECT_EQ(bare.at(15, 3).alpha, 0);
    EXPECT_GT(bare.at(5, 3).red, 0.9);
    EXPECT_GT(bare.at(14, 19).blue, 0.9);
    EXPECT_EQ(drawn(true, false).coverage(), 300);
    EXPECT_EQ(drawn(false, true).coverage(), 300);
    EXPECT_EQ(drawn(true, true).hex(0, 10), "ff0000ff");
    EXPECT_EQ(drawn(true, true).hex(19, 10), "0000ffff");
    // Along a diagonal the strip lies between two perpendiculars.
    const Surface slanted = drawn(false, false, {15, 10});
    EXPECT_EQ(slanted.at(1, 1).alpha, 0);
    EXPECT_EQ(slanted.at(19, 19).alpha, 0);
    EXPECT_EQ(slanted.at(10, 5).alpha, 1);
    EXPECT_EQ(drawn(true, true, {5, 0}).coverage(), 0); // no length
}

TEST(RasterCanvas, twoStopsAtOnePlaceAreAHardEdge) {
    const Surface s;
    s.canvas->drawGradient({{0, 0}, {0, 20}, {{0, red}, {0.5, red}, {0.5, blue}, {1, blue}}, false, false});
    EXPECT_EQ(s.hex(3, 9), "ff0000ff");
    EXPECT_EQ(s.hex(3, 10), "0000ffff");
    const Surface ends;
    ends.canvas->drawGradient({{0, 0}, {0, 20}, {{0, red}, {1, red}, {1, blue}, {1, green}}, false, false});
    EXPECT_EQ(ends.hex(3, 15), "ff0000ff");
}

/// Four quarters: red and green above, blue and white below.
std::shared_ptr<backend::Picture> quarters(double side = 8) {
    const Surface s(side, side);
    const double h = side / 2;
    s.canvas->fillRect({{0, h}, {h, h}}, red);
    s.canvas->fillRect({{h, h}, {h, h}}, green);
    s.canvas->fillRect({{0, 0}, {h, h}}, blue);
    s.canvas->fillRect({{h, 0}, {h, h}}, white);
    return s.picture;
}

TEST(RasterCanvas, aPictureIsUprightWhicheverWayYGrows) {
    for (const double side : {8.0, 16.0}) {
        const auto picture = quarters();
        const NSRect up{{2, 1}, {side, side}};
        const auto check = [&](const Surface& s, const char* how) {
            const int near = 3;
            const int far = 1 + static_cast<int>(side) - 2;
            EXPECT_EQ(s.hex(near, far), "ff0000ff") << how;
            EXPECT_EQ(s.hex(far, far), "00ff00ff") << how;
            EXPECT_EQ(s.hex(near, 2), "0000ffff") << how;
            EXPECT_EQ(s.hex(far, 2), "ffffffff") << how;
            EXPECT_NEAR(s.coverage(), side * side, 0.5) << how;
        };
        const Surface plain;
        plain.canvas->drawPicture(*picture, {}, up, Compositing::sourceOver, 1, YAxis::up);
        check(plain, "up");
        const Surface flipped;
        flipped.canvas->concat({1, 0, 0, -1, 0, 20});
        flipped.canvas->drawPicture(*picture, {}, {{2, 20 - 1 - side}, {side, side}}, Compositing::sourceOver, 1,
                                    YAxis::down);
        check(flipped, "down");
    }
}

TEST(RasterCanvas, apartOfAPictureFillsTheDestination) {
    for (const YAxis axis : {YAxis::up, YAxis::down}) {
        const Surface s;
        if (axis == YAxis::down) s.canvas->concat({1, 0, 0, -1, 0, 20});
        const NSRect to{{4, axis == YAxis::up ? 4.0 : 12.0}, {4, 4}};
        // The upper right quarter, with as much again beyond the picture's edge, which takes its share of the room.
        s.canvas->drawPicture(*quarters(), {{4, 4}, {4, 4}}, to, Compositing::sourceOver, 1, axis);
        EXPECT_EQ(s.hex(4, 4), "00ff00ff");
        EXPECT_EQ(s.coverage(), 16);
        s.canvas->drawPicture(*quarters(), {{4, 4}, {8, 8}}, NSOffsetRect(to, 6, 0), Compositing::sourceOver, 1, axis);
        EXPECT_EQ(s.coverage(), 20);
        EXPECT_EQ(s.hex(10, 4), "00ff00ff");
        EXPECT_EQ(s.hex(12, 4), "00000000");
    }
}

TEST(RasterCanvas, picturesOfTwoPixelsAPointKeepTheirSize) {
    const auto sharp = graphics().makePicture({4, 4}, 2);
    graphics().canvasOn(sharp)->fillRect({{0, 0}, {4, 4}}, red);
    EXPECT_EQ(sharp->pixelWidth(), 8);
    EXPECT_EQ(sharp->size(), NSMakeSize(4, 4));
    const Surface s;
    s.canvas->drawPicture(*sharp, {}, {{1, 1}, {4, 4}}, Compositing::sourceOver, 1, YAxis::up);
    EXPECT_NEAR(s.coverage(), 16, 0.1);
    const Surface twice(20, 20, 2);
    twice.canvas->drawPicture(*sharp, {{0, 0}, {2, 4}}, {{1, 1}, {2, 4}}, Compositing::sourceOver, 1, YAxis::up);
    EXPECT_EQ(twice.coverage(), 32);
}

TEST(RasterCanvas, reducedPicturesCountAllTheirPixels) {
    // One white column in eight: a sample here and there would see all of it or none.
    const Surface stripes(64, 64);
    stripes.canvas->fillRect({{0, 0}, {64, 64}}, black);
    for (int x = 0; x < 64; x += 8)
        stripes.canvas->fillRect({{static_cast<double>(x), 0}, {1, 64}}, white);
    const Surface s;
    s.canvas->drawPicture(*stripes.picture, {}, {{0, 0}, {8, 8}}, Compositing::sourceOver, 1, YAxis::up);
    for (int x = 0; x < 8; ++x)
        EXPECT_NEAR(s.at(x, 4).red, 1.0 / 8, 0.02);
    // Drawn into meanwhile, it comes out with what was drawn.
    stripes.canvas->fillRect({{0, 0}, {64, 64}}, red);
    s.canvas->drawPicture(*stripes.picture, {}, {{0, 0}, {8, 8}}, Compositing::sourceOver, 1, YAxis::up);
    EXPECT_EQ(s.hex(4, 4), "ff0000ff");
}

TEST(RasterCanvas, apictureDrawnIntoItselfReadsWhatItWas) {
    const Surface s;
    for (int x = 0; x < 20; x += 2)
        s.canvas->fillRect({{static_cast<double>(x), 0}, {1, 20}}, x % 4 ? red : blue);
    const Color before = s.at(0, 5);
    s.canvas->drawPicture(*s.picture, {}, {{2, 0}, {20, 20}}, Compositing::copy, 1, YAxis::up);
    for (int x = 2; x < 20; x += 4)
        EXPECT_EQ(s.at(x, 5), before) << x;
}

TEST(RasterCanvas, aShadowFallsInBaseSpaceWhateverTheTransform) {
    for (const bool flipped : {false, true}) {
        const Surface s(40, 40);
        if (flipped) s.canvas->concat({2, 0, 0, -2, 0, 40});
        const Shadow shadow{{6, -4}, 0, {0, 0, 1, 0.5}};
        s.canvas->setShadow(&shadow);
        const NSRect square = flipped ? NSMakeRect(5, 5, 5, 5) : NSMakeRect(10, 20, 10, 10);
        s.canvas->fillRect(square, red);
        EXPECT_EQ(s.hex(12, 25), "ff0000ff");
        EXPECT_EQ(s.hex(22, 17), "0000ff80") << flipped;
        EXPECT_EQ(s.hex(9, 25), "00000000");
        s.canvas->setShadow(nullptr);
        s.canvas->fillRect({{0, 0}, {2, 2}}, red);
        EXPECT_EQ(s.hex(flipped ? 8 : 7, flipped ? 33 : 0), "00000000");
    }
}

TEST(RasterCanvas, ablurKeepsTheSumAndSpreadsEvenly) {
    const Surface s(80, 80);
    const Shadow shadow{{0, 0}, 10, {0, 0, 0, 1}};
    s.canvas->setShadow(&shadow);
    // The picture is itself transparent where it counts: the shadow alone is seen around it.
    s.canvas->fillRect({{30, 30}, {20, 20}}, {1, 1, 1, 1});
    EXPECT_NEAR(s.at(25, 40).alpha, s.at(54, 40).alpha, 0.01);
    EXPECT_NEAR(s.at(40, 25).alpha, s.at(40, 54).alpha, 0.01);
    EXPECT_NEAR(s.at(25, 40).alpha, s.at(40, 25).alpha, 0.02);
    EXPECT_GT(s.at(28, 40).alpha, s.at(24, 40).alpha);
    EXPECT_GT(s.at(24, 40).alpha, 0.02);
    EXPECT_LT(s.at(10, 40).alpha, 0.01);
    // Half of it lies beyond a straight edge.
    EXPECT_NEAR((s.at(29, 40).alpha + s.at(30, 40).alpha) / 2, 0.75, 0.1);
    // Drawn again, it comes out of the cache as it went in.
    const Surface again(80, 80);
    again.canvas->setShadow(&shadow);
    again.canvas->fillRect({{30, 30}, {20, 20}}, {1, 1, 1, 1});
    EXPECT_EQ(s.rows(), again.rows());
}

TEST(RasterCanvas, ashadowIsCastIntoTheClipFromOutside) {
    const Surface s(40, 40);
    s.canvas->clip({{20, 0}, {20, 40}});
    const Shadow shadow{{15, 0}, 0, {0, 0, 1, 1}};
    s.canvas->setShadow(&shadow);
    s.canvas->fillRect({{5, 10}, {10, 10}}, red);
    EXPECT_EQ(s.hex(22, 15), "0000ffff");
    EXPECT_EQ(s.hex(12, 15), "00000000");
}

TEST(RasterCanvas, alayerIsComposedAsOne) {
    const Surface s;
    s.canvas->fillRect({{0, 0}, {20, 20}}, white);
    s.canvas->setAlpha(0.5);
    s.canvas->beginLayer();
    s.canvas->fillRect({{0, 0}, {10, 10}}, black);
    s.canvas->save(); // left open: the layer's end closes it
    s.canvas->clip({{0, 0}, {1, 1}});
    s.canvas->restore();
    s.canvas->restore(); // the state before the layer is out of reach
    s.canvas->fillRect({{5, 5}, {10, 10}}, black);
    s.canvas->save();
    s.canvas->concat(Transform::translation(100, 100));
    s.canvas->endLayer();
    EXPECT_EQ(s.hex(2, 2), "808080ff");
    EXPECT_EQ(s.hex(7, 7), "808080ff");
    EXPECT_EQ(s.hex(12, 12), "808080ff");
    EXPECT_EQ(s.hex(17, 17), "ffffffff");
    EXPECT_EQ(s.canvas->transform(), Transform{});
    s.canvas->setAlpha(1);
    s.canvas->fillRect({{0, 0}, {1, 1}}, red);
    EXPECT_EQ(s.hex(0, 0), "ff0000ff");
}

TEST(RasterCanvas, alayersShadowIsThatOfItsUnion) {
    const Surface s(40, 40);
    const Shadow shadow{{0, -10}, 0, {0, 0, 0, 1}};
    s.canvas->setShadow(&shadow);
    s.canvas->beginLayer();
    s.canvas->fillRect({{10, 20}, {10, 10}}, white);
    s.canvas->fillRect({{10, 10}, {10, 10}}, white);
    s.canvas->endLayer();
    EXPECT_EQ(s.hex(15, 15), "ffffffff"); // no shadow of the one on the other
    EXPECT_EQ(s.hex(15, 5), "000000ff");
}

TEST(RasterCanvas, severalCanvasesDrawIntoOnePicture) {
    const Surface s;
    s.canvas->fillRect({{0, 0}, {20, 20}}, {1, 1, 1, 0.5});
    {
        const auto inner = graphics().canvasOn(s.picture);
        inner->fill(triangle({0, 0}, {20, 0}, {0, 20}), FillRule::nonZero, red);
    }
    s.canvas->fill(triangle({20, 20}, {20, 10}, {10, 20}), FillRule::nonZero, blue);
    EXPECT_EQ(s.hex(2, 2), "ff0000ff");
    EXPECT_EQ(s.hex(18, 18), "0000ffff");
}

TEST(RasterCanvas, nothingAbsurdDoesHarm) {
    const Surface s;
    const Stroke thin{0, {}, {}, nan, {}, 0};
    for (const double v : {nan, infinite, -infinite, 1e300, -1e300, 1e12}) {
        s.canvas->save();
        s.canvas->fillRect({{v, 0}, {5, 5}}, red);
        s.canvas->fillRect({{0, 0}, {v, -5}}, red);
        s.canvas->fill(triangle({v, v}, {30, 30}, {40, 30}), FillRule::nonZero, red);
        s.canvas->stroke(triangle({v, v}, {30, 30}, {40, 30}), thin, red);
        s.canvas->strokeLine({100, v}, {200, v}, {v, {}, {}, v, {v, v}, v}, red);
        s.canvas->drawGradient({{v, 0}, {v, v}, {{v, red}}, true, true});
        s.canvas->drawPicture(*quarters(), {{v, 0}, {1, 1}}, {{v, 0}, {v, v}}, Compositing::copy, v, YAxis::up);
        const Shadow shadow{{v, v}, v, red};
        s.canvas->setShadow(&shadow);
        s.canvas->fillRect({{100, 100}, {5, 5}}, red);
        s.canvas->concat({v, 0, 0, 1, 0, 0});
        s.canvas->clip({{v, v}, {v, v}});
        s.canvas->setAlpha(v);
        s.canvas->restore();
    }
    s.canvas->fillRect({{-1e9, -1e9}, {2e9, 2e9}}, green);
    EXPECT_EQ(s.hex(10, 10), "00ff00ff");
    EXPECT_EQ(s.coverage(), 400);
}

TEST(RasterCanvas, aWindowsMemoryIsDrawnIntoInPlace) {
    std::vector<QRgb> memory(16 * 8, 0xff000000u);
    const auto picture =
        backend::wrapImage(QImage(reinterpret_cast<uchar*>(memory.data()), 16, 8, 64, QImage::Format_RGB32), 2);
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->size(), NSMakeSize(8, 4));
    EXPECT_FALSE(picture->hasAlpha());
    const auto canvas = graphics().canvasOn(picture);
    canvas->fillRect({{0, 3}, {1, 1}}, red);
    EXPECT_EQ(memory[0], 0xffff0000u);
    EXPECT_EQ(memory[2], 0xff000000u);
    canvas->fillRect({{0, 0}, {8, 4}}, {0, 0, 0, 0}, Compositing::clear);
    EXPECT_FALSE(canvas->drawsToScreen());
    picture->setOnScreen(true);
    EXPECT_TRUE(canvas->drawsToScreen());
    EXPECT_EQ(memory[0] >> 24, 0xffu) << "an opaque surface stays opaque";
}

} // namespace
