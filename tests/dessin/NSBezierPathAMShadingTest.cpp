#include <cmath>

#include "graphics/Dessin.h"
#include "support/TestBackend.h"

#include <libvue/images/NSBezierPathAMShading.h>
#include <libvue/images/NSBezierPathArrondi.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSImage.h>

using namespace libvue;
using namespace libvue::test;
using Kind = backend::RecordingCanvas::Kind;

namespace {

struct DegradeTest : MemoryFixture {
    const NSRect rect{{10, 20}, {40, 30}};
    const Ref<NSBezierPath> path = NSBezierPath::bezierPathWithRect(rect);
    NSColor* const rouge = NSColor::redColor();
    NSColor* const bleu = NSColor::blueColor();
};

constexpr backend::Color r{1, 0, 0, 1}, b{0, 0, 1, 1};

TEST_F(DegradeTest, theAxisRunsThroughTheMiddleHeldToTheHalfSize) {
    const double c = std::sqrt(0.5);
    struct {
        double angle;
        NSPoint depuis, vers;
    } const lignes[] = {
        {0, {10, 35}, {50, 35}},
        {pi * 0.5, {30, 20}, {30, 50}},
        {pi, {50, 35}, {10, 35}},
        {pi * 1.5, {30, 50}, {30, 20}},
        {pi * 0.25, {30 - 20 * c, 35 - 15 * c}, {30 + 20 * c, 35 + 15 * c}},
    };
    for (const auto& l : lignes) {
        Enregistrement e;
        linearGradientFillWithStartColor_endColor_angle(path, rouge, bleu, l.angle);
        ASSERT_EQ(e.canvas.operations().size(), 1u);
        const auto& op = e.last();
        EXPECT_EQ(op.kind, Kind::gradient);
        EXPECT_NEAR(op.gradient.start.x, l.depuis.x, 1e-12) << l.angle;
        EXPECT_NEAR(op.gradient.start.y, l.depuis.y, 1e-12) << l.angle;
        EXPECT_NEAR(op.gradient.end.x, l.vers.x, 1e-12) << l.angle;
        EXPECT_NEAR(op.gradient.end.y, l.vers.y, 1e-12) << l.angle;
        EXPECT_FALSE(op.gradient.extendStart || op.gradient.extendEnd);
        EXPECT_EQ(op.clip, rect);
        // Two stops are enough for a line.
        EXPECT_EQ(op.gradient.stops, (std::vector<backend::GradientStop>{{0, r}, {1, b}}));
    }
}

TEST_F(DegradeTest, theMirroredFillHasTheOuterColourInItsMiddle) {
    Enregistrement e;
    bilinearGradientFillWithOuterColor_innerColor_angle(path, rouge, bleu, 0);
    EXPECT_EQ(e.last().gradient.stops, (std::vector<backend::GradientStop>{{0, b}, {0.5, r}, {1, b}}));
}

TEST_F(DegradeTest, theStateIsAsBefore) {
    Enregistrement e;
    NSBezierPath::bezierPathWithOvalInRect({{0, 0}, {60, 60}})->addClip();
    const NSRect avant = e.canvas.clipBounds();
    linearGradientFillWithStartColor_endColor(path, rouge, bleu);
    EXPECT_EQ(e.last().clipPaths.size(), 1u);
    EXPECT_EQ(e.canvas.clipBounds(), avant);
    EXPECT_EQ(e.context->savedStates(), 0u);
    // A colour without components raises before anything was changed.
    const Ref<NSColor> motif = NSColor::colorWithPatternImage(make<NSImage>(NSSize{4, 4}));
    e.canvas.clear();
    EXPECT_EQ(raised([&] { linearGradientFillWithStartColor_endColor(path, rouge, motif); }),
              "NSInternalInconsistencyException");
    EXPECT_EQ(raised([&] { linearGradientFillWithStartColor_endColor(path, nullptr, bleu); }),
              "NSInvalidArgumentException");
    EXPECT_EQ(e.context->savedStates(), 0u);
    EXPECT_TRUE(e.canvas.operations().empty());
}

TEST_F(DegradeTest, aPathWithoutExtentDrawsNothingVisible) {
    const double infini = std::numeric_limits<double>::infinity();
    const Ref<NSBezierPath> vide = NSBezierPath::bezierPath();
    const Ref<NSBezierPath> plat = NSBezierPath::bezierPathWithRect({{2, 2}, {0, 5}});
    const Ref<NSBezierPath> sansFin = NSBezierPath::bezierPathWithRect({{-infini, 0}, {infini, infini}});
    Pixels p;
    for (NSBezierPath* path : {vide.get(), plat.get(), sansFin.get()})
        for (double angle : {0.0, 0.7, std::nan(""), infini})
            linearGradientFillWithStartColor_endColor_angle(path, rouge, bleu, angle);
    linearGradientFillWithStartColor_endColor(nullptr, rouge, bleu);
    for (int x = 0; x < 10; ++x)
        for (int y = 0; y < 10; ++y)
            ASSERT_EQ(p.at(x, y), "00000000");
}

TEST_F(DegradeTest, withoutAContextNothingHappens) {
    ASSERT_EQ(NSGraphicsContext::currentContext(), nullptr);
    linearGradientFillWithStartColor_endColor(path, rouge, bleu);
}

TEST_F(DegradeTest, anyFunctionIsSampledFinely) {
    const CGFunctionCallbacks sinus{0,
                                    [](void* info, const CGFloat* in, CGFloat* out) {
                                        const auto& c = *static_cast<const CouleursDegrade*>(info);
                                        const double s = std::sin(*in * 6 * pi) / 2 + 0.5;
                                        for (int i = 0; i < 4; ++i)
                                            out[i] = c.premiere[i] + c.difference[i] * s;
                                    },
                                    nullptr};
    Enregistrement e;
    customVerticalFillWithCallbacks_firstColor_secondColor_angle(path, sinus, NSColor::blackColor(),
                                                                 NSColor::whiteColor(), 0);
    const auto& stops = e.last().gradient.stops;
    ASSERT_GT(stops.size(), 30u);
    std::size_t suivant = 1;
    constexpr int pas = 1024;
    for (int i = 0; i <= pas; ++i) {
        const double t = static_cast<double>(i) / pas;
        while (stops[suivant].position < t)
            ++suivant;
        const auto &a = stops[suivant - 1], &z = stops[suivant];
        const double f = (t - a.position) / (z.position - a.position);
        const double lu = a.color.red + (z.color.red - a.color.red) * f;
        ASSERT_NEAR(lu, std::sin(t * 6 * pi) / 2 + 0.5, 1.0 / 255) << t;
    }
}

TEST_F(DegradeTest, pixelsOfStraightAndObliqueFills) {
    Pixels p(20, 20);
    const Ref<NSBezierPath> carre = NSBezierPath::bezierPathWithRect({{2, 2}, {16, 16}});
    linearGradientFillWithStartColor_endColor(carre, rouge, rouge);
    EXPECT_EQ(p.at(2, 2), "ff0000ff");
    EXPECT_EQ(p.at(17, 17), "ff0000ff");
    EXPECT_EQ(p.at(1, 10), "00000000");
    EXPECT_EQ(p.at(18, 10), "00000000");

    Pixels oblique(20, 20);
    linearGradientFillWithStartColor_endColor_angle(carre, rouge, bleu, pi * 0.25);
    // The axis ends before the corners of the box, which stay empty.
    EXPECT_EQ(oblique.at(2, 2), "00000000");
    EXPECT_EQ(oblique.at(17, 17), "00000000");
    EXPECT_EQ(oblique.at(2, 17).substr(6), "ff");
    EXPECT_EQ(oblique.at(17, 2).substr(6), "ff");
    EXPECT_GT(oblique.picture->pixel(6, 13).red, oblique.picture->pixel(13, 6).red);
}

TEST_F(DegradeTest, bandsThatMeetBetweenPixelsLeaveNoSeam) {
    Pixels p(4, 40);
    NSColor::whiteColor()->set();
    NSBezierPath::fillRect({{0, 0}, {4, 40}});
    for (const NSRect& bande : {NSRect{{0, 0}, {4, 10.4}}, NSRect{{0, 10.4}, {4, 9.7}}, NSRect{{0, 20.1}, {4, 10}}})
        linearGradientFillWithStartColor_endColor(NSBezierPath::bezierPathWithRect(bande), rouge, rouge);
    for (int y = 0; y < 30; ++y)
        EXPECT_EQ(p.at(1, y), "ff0000ff") << y;
    EXPECT_EQ(p.at(1, 30), "ffffffff");
}

TEST_F(DegradeTest, aShapeIsFilledAsItIsClipped) {
    // The same fill through a clip of two outlines, which is drawn in another way.
    const Ref<NSBezierPath> rond = NSBezierPath::bezierPathWithOvalInRect({{1.3, 2.6}, {15.2, 14}});
    Pixels seul(20, 20);
    linearGradientFillWithStartColor_endColor(rond, rouge, bleu);
    Pixels double_(20, 20);
    NSBezierPath::bezierPathWithOvalInRect({{-200, -200}, {420, 420}})->addClip();
    linearGradientFillWithStartColor_endColor(rond, rouge, bleu);
    for (int x = 0; x < 20; ++x)
        for (int y = 0; y < 20; ++y) {
            const backend::Color a = seul.picture->pixel(x, y), b = double_.picture->pixel(x, y);
            ASSERT_NEAR(a.alpha, b.alpha, 0.3) << x << ", " << y; // an edge of the strip falls on an edge of the shape
            if (a.alpha == 1) {
                ASSERT_NEAR(a.red, b.red, 3.0 / 255) << x << ", " << y;
            }
        }
}

TEST(RectangleArrondiTest, bothOutlinesCoverTheSame) {
    const NSRect rect{{0.1, 3}, {40, 20}};
    const Ref<NSBezierPath> deLaPlateforme = bezierPathWithRoundedRect_radius(rect, 5);
    const Ref<NSBezierPath> parArcs = rectangleArrondiParArcs(rect, 5);
    for (const NSBezierPath* path : {deLaPlateforme.get(), parArcs.get()}) {
        EXPECT_NEAR(path->bounds().origin.x, 0.1, 1e-5);
        EXPECT_NEAR(NSMaxX(path->bounds()), 40.1, 1e-5);
        EXPECT_NEAR(NSMaxY(path->bounds()), 23, 1e-5);
        EXPECT_FALSE(path->containsPoint({1, 4}));
        EXPECT_TRUE(path->containsPoint({2, 5}));
        EXPECT_FALSE(path->containsPoint({39.5, 22.5}));
        EXPECT_TRUE(path->containsPoint({20, 3.5}));
        EXPECT_EQ(path->elementAtIndex(path->elementCount() - 1), NSClosePathBezierPathElement);
    }
    EXPECT_TRUE(deLaPlateforme->isEqual(NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(rect, 5, 5)));
    // The first arc starts on the left side; its centre is held in single precision.
    NSPoint debut;
    EXPECT_EQ(parArcs->elementAtIndex_associatedPoints(0, &debut), NSMoveToBezierPathElement);
    EXPECT_EQ(debut.x, static_cast<double>(static_cast<float>(0.1 + 5)) - 5);
    EXPECT_EQ(debut.y, 8);
}

} // namespace
