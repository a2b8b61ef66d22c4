#include <cmath>

#include "Dessin.h"

#include <libvue/platform/graphics/CGContext.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/NSShadow.h>

using namespace libvue;
using namespace libvue::test;
using Kind = backend::RecordingCanvas::Kind;

TEST(NSGraphicsContextTest, withoutAContextDrawingDoesNothing) {
    ASSERT_EQ(NSGraphicsContext::currentContext(), nullptr);
    NSColor::redColor()->set();
    NSRectFill({{0, 0}, {1, 1}});
    NSFrameRect({{0, 0}, {1, 1}});
    NSBezierPath::bezierPathWithRect({{0, 0}, {1, 1}})->fill();
    NSBezierPath::strokeRect({{0, 0}, {1, 1}});
    make<NSShadow>()->set();
    CGContextSaveGState(nullptr);
    CGContextRestoreGState(nullptr);
    NSGraphicsContext::saveGraphicsState();
    NSGraphicsContext::restoreGraphicsState();
    NSGraphicsContext::restoreGraphicsState();
    EXPECT_FALSE(NSGraphicsContext::currentContextDrawingToScreen());
}

TEST(NSGraphicsContextTest, savedStatesNest) {
    Enregistrement r;
    const NSRect unit{{0, 0}, {1, 1}};
    const Ref<NSShadow> shadow = make<NSShadow>();
    shadow->setShadowOffset({2, -2});
    shadow->setShadowBlurRadius(5);
    NSColor::redColor()->set();
    NSGraphicsContext::saveGraphicsState();
    NSColor::greenColor()->setFill();
    shadow->set();
    CGContextTranslateCTM(r.context, 10, 0);
    r.context->setFlipped(YES);
    {
        GraphicsStateScope inner;
        NSColor::blueColor()->set();
        NSRectClip({{0, 0}, {5, 5}});
        r.context->setCompositingOperation(NSCompositePlusLighter);
        NSBezierPath::fillRect(unit);
    }
    NSBezierPath::fillRect(unit);
    NSBezierPath::strokeLineFromPoint_toPoint({0, 0}, {1, 0});
    NSGraphicsContext::restoreGraphicsState();
    NSBezierPath::fillRect(unit);
    EXPECT_FALSE(r.context->isFlipped());
    EXPECT_EQ(r.context->savedStates(), 0u);
    r.context->restoreState(); // without a save, nothing

    const auto& ops = r.canvas.operations();
    ASSERT_EQ(ops.size(), 4u);
    EXPECT_EQ(ops[0].color, (backend::Color{0, 0, 1, 1}));
    EXPECT_EQ(ops[0].compositing, backend::Compositing::plusLighter);
    EXPECT_EQ(ops[0].clip, (NSRect{{10, 0}, {5, 5}}));
    EXPECT_EQ(ops[1].color, (backend::Color{0, 1, 0, 1}));
    EXPECT_EQ(ops[1].compositing, backend::Compositing::sourceOver);
    EXPECT_EQ(ops[1].clip, (NSRect{{0, 0}, {100, 100}}));
    ASSERT_TRUE(ops[1].shadow.has_value());
    EXPECT_EQ(ops[1].shadow->offset, (NSSize{2, -2}));
    EXPECT_EQ(ops[2].color, (backend::Color{1, 0, 0, 1})) << "setFill leaves the stroke's colour";
    EXPECT_EQ(ops[3].color, (backend::Color{1, 0, 0, 1}));
    EXPECT_FALSE(ops[3].shadow.has_value());
    EXPECT_EQ(ops[3].transform, backend::Transform());
}

TEST(NSGraphicsContextTest, aSaveRemembersWhichContextWasCurrent) {
    Enregistrement outer;
    NSGraphicsContext::saveGraphicsState();
    {
        Enregistrement other;
        NSGraphicsContext::setCurrentContext(other.context);
        NSGraphicsContext::restoreGraphicsState();
        EXPECT_EQ(NSGraphicsContext::currentContext(), outer.context);
    }
    EXPECT_EQ(NSGraphicsContext::currentContext(), outer.context);
    EXPECT_EQ(outer.context->savedStates(), 0u);
}

TEST(NSGraphicsContextTest, aShadowWithNothingToSeeIsNone) {
    Enregistrement r;
    const Ref<NSShadow> s = make<NSShadow>();
    const auto drawn = [&] {
        s->set();
        NSBezierPath::fillRect({{0, 0}, {1, 1}});
        return r.last().shadow.has_value();
    };
    EXPECT_FALSE(drawn()) << "neither offset nor blur";
    s->setShadowBlurRadius(3);
    EXPECT_TRUE(drawn());
    s->setShadowColor(NSColor::clearColor());
    EXPECT_FALSE(drawn()) << "and the one before is gone";
    s->setShadowColor(nullptr);
    EXPECT_FALSE(drawn());
    s->setShadowBlurRadius(-2);
    EXPECT_EQ(s->shadowBlurRadius(), 0);
    s->setShadowColor(NSColor::redColor());
    s->setShadowOffset({1, 2});
    EXPECT_TRUE(isEqual(throughKeyedArchive(*s), s));
    EXPECT_TRUE(isEqual(throughArchive(*s), s));
}

TEST(NSGraphicsContextTest, rectanglesFillByCopyAndPathsOver) {
    Pixels p(4, 4);
    NSColor::whiteColor()->set();
    NSRectFill({{0, 0}, {4, 4}});
    NSColor::colorWithDeviceRed_green_blue_alpha(1, 0, 0, 0.5)->set();
    NSRectFill({{0, 0}, {1, 4}});
    NSBezierPath::fillRect({{1, 0}, {1, 4}});
    NSRectFillUsingOperation({{2, 0}, {1, 4}}, NSCompositeSourceOver);
    EXPECT_EQ(p.at(0, 0), "ff000080");
    EXPECT_EQ(p.at(1, 0), p.at(2, 0));
    EXPECT_EQ(p.at(1, 0).substr(6), "ff");
    EXPECT_EQ(p.at(3, 0), "ffffffff");
    NSEraseRect({{3, 0}, {1, 1}});
    EXPECT_EQ(p.at(3, 0), "00000000");
}

TEST(NSGraphicsContextTest, aFrameLiesInsideAndPaintsNoCornerTwice) {
    Pixels p(6, 6);
    NSColor::colorWithDeviceRed_green_blue_alpha(0, 0, 0, 0.5)->set();
    NSFrameRectWithWidthUsingOperation({{1, 1}, {4, 4}}, 1, NSCompositeSourceOver);
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 6; ++x) {
            const bool inside = x >= 1 && x <= 4 && y >= 1 && y <= 4;
            const bool core = x >= 2 && x <= 3 && y >= 2 && y <= 3;
            EXPECT_EQ(p.at(x, y), inside && !core ? "00000080" : "00000000") << x << ' ' << y;
        }
}

TEST(NSGraphicsContextTest, aPatternIsTiledFromTheOrigin) {
    const Ref<NSImage> tile = make<NSImage>(NSMakeSize(2, 2));
    tile->lockFocus();
    NSColor::redColor()->set();
    NSRectFill({{0, 0}, {1, 1}});
    NSColor::greenColor()->set();
    NSRectFill({{1, 1}, {1, 1}});
    tile->unlockFocus();
    Pixels p(6, 6);
    NSColor::colorWithPatternImage(tile)->set();
    NSRectFill({{1, 1}, {4, 4}});
    EXPECT_EQ(p.at(2, 2), "ff0000ff");
    EXPECT_EQ(p.at(1, 1), "00ff00ff");
    EXPECT_EQ(p.at(4, 4), "ff0000ff");
    EXPECT_EQ(p.at(0, 0), "00000000") << "nothing beyond the rectangle";
    NSColor::blueColor()->set();
    NSRectFill({{0, 0}, {1, 1}});
    EXPECT_EQ(p.at(0, 0), "0000ffff") << "a plain colour again";
}

TEST(NSGraphicsContextTest, aPatternOfSmallTilesFillsALargeAreaInFewDrawings) {
    const Ref<NSImage> tile = make<NSImage>(NSMakeSize(3, 2));
    tile->lockFocus();
    NSColor::redColor()->set();
    NSRectFill({{0, 0}, {1, 1}});
    tile->unlockFocus();
    for (const BOOL flipped : {NO, YES}) {
        Pixels p(700, 500);
        if (flipped) p.context->canvas().concat({1, 0, 0, -1, 0, 500});
        p.context->setFlipped(flipped);
        p.context->setPatternPhase({1, 0});
        NSColor::colorWithPatternImage(tile)->set();
        NSRectFill({{0, 0}, {700, 500}});
        for (const int x : {1, 256, 259, 697})
            for (const int y : {0, 254, 498}) {
                // Upright: the lower pixel of a tile is red.
                EXPECT_EQ(p.at(x, y), x % 3 == 1 ? "ff0000ff" : "00000000") << flipped << ' ' << x << ' ' << y;
                EXPECT_EQ(p.at(x, y + 1), "00000000") << flipped << ' ' << x << ' ' << y;
            }
    }
    const Ref<NSImage> point = make<NSImage>(NSMakeSize(1, 1));
    point->lockFocus();
    NSRectFill({{0, 0}, {1, 1}});
    point->unlockFocus();
    Enregistrement r({3000, 2000});
    NSColor::colorWithPatternImage(point)->set();
    NSRectFill({{0, 0}, {3000, 2000}});
    EXPECT_GT(r.canvas.operations().size(), 0U);
    EXPECT_LT(r.canvas.operations().size(), 200U);
}

namespace {

struct Fonction {
    CGFloat (*of)(CGFloat);
    int calls = 0;
    int releases = 0;
};

std::vector<backend::GradientStop> stopsOf(CGFloat (*of)(CGFloat)) {
    Enregistrement r;
    Fonction f{of};
    CGFunctionCallbacks callbacks;
    callbacks.evaluate = [](void* info, const CGFloat* in, CGFloat* out) {
        auto* f = static_cast<Fonction*>(info);
        ++f->calls;
        out[0] = f->of(*in);
        out[1] = 1;
    };
    callbacks.releaseInfo = [](void* info) { ++static_cast<Fonction*>(info)->releases; };
    const CGFloat range[] = {0, 1, 0, 1};
    {
        const Ref<CGFunction> function = CGFunctionCreate(&f, 1, nullptr, 2, range, &callbacks);
        const auto space = CGColorSpaceCreateDeviceGray();
        const auto shading = CGShadingCreateAxial(space, {0, 0}, {0, 10}, function, NO, NO);
        CGContextDrawShading(r.context, shading);
        EXPECT_EQ(f.releases, 0);
    }
    EXPECT_EQ(f.releases, 1);
    EXPECT_LT(f.calls, 2000);
    EXPECT_FALSE(r.last().gradient.extendStart || r.last().gradient.extendEnd);
    return r.last().gradient.stops;
}

double valueAt(const std::vector<backend::GradientStop>& stops, double t) {
    for (std::size_t i = 1; i < stops.size(); ++i)
        if (t <= stops[i].position) {
            const double f = (t - stops[i - 1].position) / (stops[i].position - stops[i - 1].position);
            return stops[i - 1].color.red + f * (stops[i].color.red - stops[i - 1].color.red);
        }
    return stops.back().color.red;
}

} // namespace

TEST(CGShadingTest, stopsFollowTheFunction) {
    struct Row {
        CGFloat (*of)(CGFloat);
        std::size_t most; // stops
    };
    const Row rows[] = {
        {[](CGFloat t) { return t; }, 2},
        {[](CGFloat) { return 0.5; }, 2},
        {[](CGFloat t) { return t > 0.5 ? 2 - 2 * t : 2 * t; }, 3},
        {[](CGFloat t) { return 0.5 + 0.5 * std::sin(12 * t); }, 200},
        {[](CGFloat t) { return t * t * 3 - 1; }, 100}, // beyond its range, which cuts it
    };
    for (const Row& row : rows) {
        const auto stops = stopsOf(row.of);
        EXPECT_LE(stops.size(), row.most);
        EXPECT_EQ(stops.front().position, 0);
        EXPECT_EQ(stops.back().position, 1);
        for (int i = 0; i <= 1000; ++i) {
            const double t = i / 1000.0, expected = std::min(1.0, std::max(0.0, row.of(t)));
            ASSERT_NEAR(valueAt(stops, t), expected, 1.0 / 255) << t;
        }
    }
    // A step becomes a steep stretch.
    const auto step = stopsOf([](CGFloat t) { return t < 0.3 ? 0.0 : 1.0; });
    EXPECT_EQ(valueAt(step, 0.298), 0);
    EXPECT_EQ(valueAt(step, 0.302), 1);
}

TEST(CGShadingTest, whatCannotBeAShadingIsNull) {
    CGFunctionCallbacks callbacks;
    EXPECT_EQ(CGFunctionCreate(nullptr, 1, nullptr, 2, nullptr, &callbacks), nullptr) << "nothing to evaluate";
    callbacks.evaluate = [](void*, const CGFloat*, CGFloat*) {};
    EXPECT_EQ(CGFunctionCreate(nullptr, 2, nullptr, 2, nullptr, &callbacks), nullptr);
    EXPECT_EQ(CGFunctionCreate(nullptr, 1, nullptr, 9, nullptr, &callbacks), nullptr);
    const Ref<CGFunction> two = CGFunctionCreate(nullptr, 1, nullptr, 2, nullptr, &callbacks);
    EXPECT_EQ(CGShadingCreateAxial(CGColorSpaceCreateDeviceRGB(), {0, 0}, {1, 1}, two, NO, NO), nullptr);
    EXPECT_EQ(CGShadingCreateAxial(CGColorSpaceCreateDeviceGray(), {0, 0}, {1, 1}, nullptr, NO, NO), nullptr);
    CGContextDrawShading(nullptr, nullptr);
}

TEST(CGShadingTest, theClipDoesNotLeakOutOfASavedState) {
    Enregistrement r;
    CGContextSaveGState(r.context);
    NSBezierPath::bezierPathWithOvalInRect({{0, 0}, {10, 10}})->addClip();
    NSBezierPath::fillRect({{0, 0}, {100, 100}});
    EXPECT_EQ(r.last().clipPaths.size(), 1u);
    CGContextRestoreGState(r.context);
    NSBezierPath::fillRect({{0, 0}, {100, 100}});
    EXPECT_TRUE(r.last().clipPaths.empty());
}
