#include <cmath>
#include <limits>

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

constexpr backend::Color r{1, 0, 0, 1}, b{0, 0, 1, 1};

struct DegradeTest : MemoryFixture {
    const NSRect rect{{10, 20}, {40, 30}};
    const Ref<NSBezierPath> path = NSBezierPath::bezierPathWithRect(rect);
    NSColor* const rouge = NSColor::redColor();
    NSColor* const bleu = NSColor::blueColor();
};

TEST_F(DegradeTest, theAxisRunsThroughTheMiddleHeldToTheHalfSize) {
    const double c = std::sqrt(0.5);
    struct {
        double angle;
        NSPoint demie; ///< from the middle to the end
    } const lignes[] = {
        {0, {20, 0}}, {pi * 0.5, {0, 15}}, {pi, {-20, 0}}, {pi * 1.5, {0, -15}}, {pi * 0.25, {20 * c, 15 * c}}};
    for (const auto& l : lignes) {
        SCOPED_TRACE(l.angle);
        Enregistrement e;
        linearGradientFillWithStartColor_endColor_angle(path, rouge, bleu, l.angle);
        bilinearGradientFillWithOuterColor_innerColor_angle(path, rouge, bleu, l.angle);
        ASSERT_EQ(e.canvas.operations().size(), 2u);
        for (const auto& op : e.canvas.operations()) {
            const auto& g = op.gradient;
            EXPECT_NEAR(g.start.x, 30 - l.demie.x, 1e-12);
            EXPECT_NEAR(g.start.y, 35 - l.demie.y, 1e-12);
            EXPECT_NEAR(g.end.x, 30 + l.demie.x, 1e-12);
            EXPECT_NEAR(g.end.y, 35 + l.demie.y, 1e-12);
            EXPECT_FALSE(g.extendStart || g.extendEnd);
            EXPECT_EQ(op.clip, rect);
        }
        using Arrets = std::vector<backend::GradientStop>;
        EXPECT_EQ(e.canvas.operations()[0].gradient.stops, (Arrets{{0, r}, {1, b}}));
        // The outer colour lies in the middle.
        EXPECT_EQ(e.canvas.operations()[1].gradient.stops, (Arrets{{0, b}, {0.5, r}, {1, b}}));
    }
}

TEST_F(DegradeTest, theStateIsAsBefore) {
    ASSERT_EQ(NSGraphicsContext::currentContext(), nullptr);
    linearGradientFillWithStartColor_endColor(path, rouge, bleu); // nothing to draw into
    Enregistrement e;
    NSBezierPath::bezierPathWithOvalInRect({{0, 0}, {60, 60}})->addClip();
    const NSRect avant = e.canvas.clipBounds();
    linearGradientFillWithStartColor_endColor(path, rouge, bleu);
    EXPECT_NEAR(e.last().gradient.start.x, e.last().gradient.end.x, 1e-12) << "upright without an angle";
    EXPECT_EQ(e.canvas.clipBounds(), avant);
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
    for (NSBezierPath* path : {vide.get(), plat.get(), sansFin.get(), static_cast<NSBezierPath*>(nullptr)})
        for (const double angle : {0.0, 0.7, std::nan(""), infini})
            linearGradientFillWithStartColor_endColor_angle(path, rouge, bleu, angle);
    for (int x = 0; x < 10; ++x)
        for (int y = 0; y < 10; ++y)
            ASSERT_EQ(p.at(x, y), "00000000");
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
    std::size_t suivant = 1;
    constexpr int pas = 1024;
    for (int i = 0; i <= pas; ++i) {
        const double t = static_cast<double>(i) / pas;
        while (stops.at(suivant).position < t)
            ++suivant;
        const auto &a = stops[suivant - 1], &z = stops[suivant];
        const double f = (t - a.position) / (z.position - a.position);
        ASSERT_NEAR(std::lerp(a.color.red, z.color.red, f), std::sin(t * 6 * pi) / 2 + 0.5, 1.0 / 255) << t;
    }
}

TEST_F(DegradeTest, bandsThatMeetBetweenPixelsLeaveNoSeam) {
    Pixels p(4, 40);
    NSColor::whiteColor()->set();
    NSBezierPath::fillRect({{0, 0}, {4, 40}});
    for (const NSRect& bande : {NSRect{{0, 0}, {4, 10.4}}, NSRect{{0, 10.4}, {4, 9.7}}, NSRect{{0, 20.1}, {4, 10}}})
        linearGradientFillWithStartColor_endColor(NSBezierPath::bezierPathWithRect(bande), rouge, rouge);
    for (int y = 0; y <= 30; ++y)
        EXPECT_EQ(p.at(1, y), y < 30 ? "ff0000ff" : "ffffffff") << y;
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
            const backend::Color a = seul.picture->pixel(x, y), z = double_.picture->pixel(x, y);
            ASSERT_NEAR(a.alpha, z.alpha, 0.3) << x << ", " << y; // an edge of the strip falls on an edge of the shape
            ASSERT_NEAR(a.alpha == 1 ? a.red : 0, a.alpha == 1 ? z.red : 0, 3.0 / 255) << x << ", " << y;
        }
}

TEST(RectangleArrondiTest, bothOutlinesCoverTheSame) {
    const NSRect rect{{0.1, 3}, {40, 20}};
    const Ref<NSBezierPath> deLaPlateforme = bezierPathWithRoundedRect_radius(rect, 5);
    EXPECT_TRUE(deLaPlateforme->isEqual(NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(rect, 5, 5)));
    const Ref<NSBezierPath> parArcs = rectangleArrondiParArcs(rect, 5);
    for (const NSPoint p : {NSPoint{1, 4}, {2, 5}, {39.5, 22.5}, {38.5, 21.5}, {20, 3.5}, {0.5, 13}, {0.5, 22.5}})
        EXPECT_EQ(parArcs->containsPoint(p), deLaPlateforme->containsPoint(p)) << p.x;
    EXPECT_EQ(parArcs->elementAtIndex(parArcs->elementCount() - 1), NSClosePathBezierPathElement);
    // The first arc starts on the left side; its centre is held in single precision.
    NSPoint debut;
    EXPECT_EQ(parArcs->elementAtIndex_associatedPoints(0, &debut), NSMoveToBezierPathElement);
    EXPECT_EQ(debut.x, static_cast<double>(static_cast<float>(0.1 + 5)) - 5);
    EXPECT_EQ(debut.y, 8);
}

} // namespace
