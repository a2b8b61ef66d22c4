#include <appkit/WindowFixture.h>
#include <foundation/Valeurs.h>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

constexpr backend::Color white{1, 1, 1, 1}, red{1, 0, 0, 1}, blue{0, 0, 1, 1}, nothing{0, 0, 0, 0};

struct DisplayTest : HiddenWindowFixture {
    DisplayTest() { window->setBackgroundColor(NSColor::whiteColor()); }
    /// A pixel of what the window shows, by base coordinates.
    backend::Color shown(CGFloat x, CGFloat y) const {
        const auto picture = windows().capture(window->nativeId_());
        const double scale = picture->pixelWidth() / window->frameView_()->bounds().size.width;
        return picture->pixel(static_cast<int>(x * scale), static_cast<int>(picture->pixelHeight() - 1 - y * scale));
    }
    Ref<LogView> box(const NSRect& frame, NSColor* color = NSColor::redColor()) {
        const Ref<LogView> v = viewIn(window, frame, "v");
        v->onDraw = [color](const NSRect&) {
            color->set();
            NSRectFill({{0, 0}, {500, 500}});
        };
        return v;
    }
};

TEST_F(DisplayTest, OnlyWhatIsDirtyIsPresented) {
    const Ref<LogView> a = box({{10, 10}, {20, 20}}), b = box({{300, 200}, {20, 20}}, NSColor::blueColor());
    show(window);
    EXPECT_THAT(native(window).lastPresented, ElementsAre(NSMakeRect(0, 0, 400, 300)));
    EXPECT_EQ(shown(15, 15), red);
    EXPECT_EQ(shown(310, 210), blue);
    EXPECT_EQ(shown(100, 100), white);

    const std::size_t presents = native(window).presents;
    a->setNeedsDisplay(YES);
    b->setNeedsDisplayInRect({{5, 5}, {5, 5}});
    EXPECT_EQ(native(window).presents, presents); // nothing before the end of the cycle
    drain();
    EXPECT_EQ(native(window).presents, presents + 1);
    EXPECT_THAT(native(window).lastPresented, ElementsAre(NSMakeRect(10, 10, 20, 20), NSMakeRect(305, 205, 5, 5)));

    a->setFrameOrigin({50, 50});
    drain();
    EXPECT_EQ(shown(15, 15), white); // the background where it was
    EXPECT_EQ(shown(55, 55), red);

    const NSUInteger passes = window->displayPassCount();
    pass(60);
    window->displayIfNeeded();
    EXPECT_EQ(window->displayPassCount(), passes) << "an idle window costs nothing";
    EXPECT_EQ(native(window).presents, presents + 2);

    window->orderOut(nullptr);
    a->setNeedsDisplay(YES);
    drain();
    EXPECT_EQ(window->displayPassCount(), passes) << "nor does a hidden one";
    window->orderFront(nullptr);
    drain();
    EXPECT_GT(window->displayPassCount(), passes);
}

TEST_F(DisplayTest, AParentMayPlaceItsSubviewsWhileItDraws) {
    const Ref<LogView> parent = viewIn(window, {{0, 0}, {200, 200}}, "parent"), child = box({{0, 0}, {10, 10}});
    parent->addSubview(child);
    int draws = 0;
    parent->onDraw = [&](const NSRect&) {
        ++draws;
        child->setFrame({{100, 100}, {50, 50}});
    };
    show(window);
    EXPECT_EQ(shown(120, 120), red);
    EXPECT_EQ(shown(5, 5), white);
    EXPECT_LE(draws, 2);
}

TEST_F(DisplayTest, OnlyWhatWasPresentedIsShown) {
    const Ref<LogView> a = box({{10, 10}, {20, 20}}), b = box({{300, 200}, {20, 20}});
    const auto paint = [](const Ref<LogView>& v, NSColor* color) {
        v->onDraw = [color](const NSRect& r) {
            color->set();
            NSRectFill(r);
        };
        v->setNeedsDisplay(YES);
    };
    show(window);
    // Pass after pass, in other places, before anybody looks.
    paint(a, NSColor::blueColor());
    drain();
    paint(b, NSColor::blueColor());
    drain();
    EXPECT_EQ(shown(15, 15), blue);
    EXPECT_EQ(shown(310, 210), blue);
    EXPECT_EQ(shown(100, 100), white);

    paint(b, NSColor::redColor());
    drain();
    window->disableFlushWindow();
    paint(a, NSColor::redColor());
    paint(b, NSColor::blueColor());
    window->displayIfNeeded();
    EXPECT_EQ(shown(15, 15), blue) << "drawn, and held back";
    EXPECT_EQ(shown(310, 210), red);
    window->enableFlushWindow();
    EXPECT_EQ(shown(15, 15), red);
    EXPECT_EQ(shown(310, 210), blue);

    // What is drawn by hand is shown when that ends, and not before.
    window->displayIfNeeded();
    a->lockFocus();
    NSColor::blueColor()->set();
    NSRectFill(a->bounds());
    EXPECT_EQ(shown(15, 15), red);
    a->unlockFocus();
    EXPECT_EQ(shown(15, 15), blue);
}

TEST_F(DisplayTest, TheBackgroundShowsWhereverNothingOpaqueLiesOverIt) {
    const Ref<NSClipView> over = make<NSClipView>();
    const Ref<NSTextField> field = make<NSTextField>();
    const Ref<NSColor> half = NSColor::redColor()->colorWithAlphaComponent(0.5);
    constexpr NSRect left{{0, 0}, {300, 300}};
    field->setStringValue(u""_ns);
    field->setBezeled(NO);
    field->setDrawsBackground(YES);
    field->setBackgroundColor(half);
    struct Row {
        const char* what;
        NSView* view;
        std::function<void()> arrange;
        double red; // of blue below, at the middle of the view
        NSRect frame = left;
    };
    const Row rows[] = {
        {"opaque", over, [] {}, 1},
        {"in the middle", over, [] {}, 1, {{100, 100}, {100, 100}}},
        {"between pixels", over, [] {}, 1, {{0, 0}, {300.5, 300}}},
        {"faded", over, [&] { over->setAlphaValue(0.5); }, 0.5},
        {"without a background", over, [&] { over->setDrawsBackground(NO); }, 0},
        {"hidden", over, [&] { over->setHidden(YES); }, 0},
        {"a translucent field", field, [] {}, 0.5},
    };
    show(window);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        over->setHidden(NO);
        over->setAlphaValue(1);
        over->setDrawsBackground(YES);
        over->setBackgroundColor(NSColor::redColor());
        row.arrange();
        row.view->setFrame(row.frame);
        window->contentView()->addSubview(row.view);
        // What shows through must not be what was shown before.
        for (NSColor* color : {NSColor::whiteColor(), NSColor::blueColor()}) {
            window->setBackgroundColor(color);
            window->display();
        }
        const backend::Color middle = shown(150, 150);
        EXPECT_NEAR(middle.red, row.red, 0.01);
        EXPECT_NEAR(middle.green, 0, 0.01);
        EXPECT_NEAR(middle.blue, 1 - row.red, 0.01);
        EXPECT_EQ(shown(350, 150), blue);
        EXPECT_GE(shown(300, 150).blue, 0.49);
        row.view->removeFromSuperview();
    }
}

TEST_F(DisplayTest, AViewThatAlwaysMarksItselfDoesNotHoldUpTheRest) {
    const Ref<LogView> restless = viewIn(window, {{0, 0}, {10, 10}}, "restless");
    int draws = 0;
    restless->onDraw = [&, view = restless.get()](const NSRect&) {
        ++draws;
        view->setNeedsDisplay(YES);
    };
    show(window);
    const int once = draws;
    EXPECT_LE(once, 8);
    drain();
    pass(0.1);
    EXPECT_GT(draws, once); // it goes on with the next cycles
    EXPECT_LE(draws, once + 4 * 8);
}

TEST_F(DisplayTest, ViewsAndWindowsMayGoWhileTheyAreDrawn) {
    const Ref<LogView> first = box({{0, 0}, {10, 10}});
    Ref<LogView> second = box({{20, 0}, {10, 10}});
    first->onDraw = [&](const NSRect&) {
        if (!second) return;
        second->removeFromSuperview();
        second = nullptr;
        first->removeFromSuperview();
    };
    show(window);
    EXPECT_EQ(shown(25, 5), white);

    const Ref<LogView> last = box({{0, 0}, {10, 10}});
    last->onDraw = [&](const NSRect&) {
        if (const Ref<NSWindow> w = std::exchange(window, nullptr)) w->close();
    };
    drain();
    EXPECT_FALSE(window);
    EXPECT_EQ(NSApp()->windows()->count(), 0u);
}

TEST_F(DisplayTest, AnExceptionInDrawingLeavesTheWindowUsable) {
    const Ref<LogView> v = box({{0, 0}, {10, 10}});
    const auto paint = std::exchange(v->onDraw, [](const NSRect&) { raiseNamed("NSGenericException", "no"); });
    window->orderFront(nullptr);
    EXPECT_THROW(drain(), NSExceptionRaised);
    v->onDraw = paint;
    v->setNeedsDisplay(YES);
    drain();
    EXPECT_EQ(shown(5, 5), red);
}

TEST_F(DisplayTest, AnotherScaleSizeOrAppearanceDrawsAllAnewInWholePixels) {
    windows().setScale(1.5);
    drain();
    const Ref<LogView> v = box({{10, 10}, {21, 21}});
    show(window);
    EXPECT_EQ(window->backingScaleFactor(), 1.5);
    EXPECT_EQ(windows().capture(window->nativeId_())->pixelWidth(), 600);
    EXPECT_EQ(shown(20, 20), red);
    v->setNeedsDisplay(YES);
    drain();
    ASSERT_EQ(native(window).lastPresented.size(), 1u);
    EXPECT_NEAR(NSMinX(native(window).lastPresented[0]), 10, 1e-9); // 15 pixels
    EXPECT_NEAR(NSMaxX(native(window).lastPresented[0]), 47 / 1.5, 1e-9);

    int told = 0;
    const Ecoute ear(NSWindowDidChangeBackingPropertiesNotification, window, [&](NSNotification*) { ++told; });
    windows().setScale(2);
    drain();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(windows().capture(window->nativeId_())->pixelWidth(), 800);
    EXPECT_EQ(shown(20, 20), red);

    v->setFrame({{0, 0}, {400, 300}});
    v->setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);
    windows().resizeByUser(window->nativeId_(), {{100, 100}, {500, 350}});
    drain();
    EXPECT_EQ(shown(490, 340), red);
    EXPECT_EQ(shown(1, 1), red);

    v->removeFromSuperview();
    window->setBackgroundColor(nullptr);
    drain();
    const backend::Color light = shown(100, 100);
    windows().setPrefersDark(true);
    drain();
    EXPECT_LT(shown(100, 100).red, light.red);
    windows().setPrefersDark(false);
    drain();
    EXPECT_EQ(shown(100, 100), light);
}

TEST_F(DisplayTest, ATransparentWindowShowsNothingOfWhatItShowedBefore) {
    window = windowAt({{100, 100}, {100, 100}}, NSBorderlessWindowMask);
    window->setOpaque(NO);
    window->setBackgroundColor(NSColor::clearColor());
    const Ref<LogView> v = box({{0, 0}, {50, 50}});
    show(window);
    EXPECT_TRUE(native(window).spec.transparent);
    EXPECT_EQ(shown(10, 10), red);
    EXPECT_EQ(shown(70, 70), nothing);
    v->removeFromSuperview();
    drain();
    EXPECT_EQ(shown(10, 10), nothing);
}

TEST_F(DisplayTest, TheFocusRingGoesRoundTheFirstResponderOfTheKeyWindow) {
    const Ref<LogView> v = box({{50, 50}, {40, 20}});
    v->accepts = YES;
    v->setFocusRingType(NSFocusRingTypeExterior);
    show(window);
    EXPECT_EQ(shown(48, 60), white);
    window->makeFirstResponder(v);
    drain();
    const backend::Color ring = shown(48, 60);
    EXPECT_NE(ring, white);
    EXPECT_EQ(shown(60, 60), red); // outside of the view alone
    EXPECT_THAT(native(window).lastPresented, ElementsAre(NSMakeRect(46, 46, 48, 28)));

    // Drawing beneath it leaves it as it is.
    window->contentView()->setNeedsDisplayInRect({{40, 40}, {9, 60}});
    drain();
    EXPECT_EQ(shown(48, 60), ring);
    v->setFrameOrigin({150, 50});
    drain();
    EXPECT_EQ(shown(48, 60), white);
    EXPECT_EQ(shown(148, 60), ring);

    const Ref<NSWindow> other = windowAt({{600, 100}, {100, 100}});
    show(other);
    EXPECT_EQ(shown(148, 60), white);
    other->orderOut(nullptr);
    drain();
    EXPECT_EQ(shown(148, 60), ring);
    v->setHidden(YES);
    drain();
    EXPECT_EQ(shown(148, 60), white);
}

TEST_F(DisplayTest, FadingReachesTheDesktopAtOnce) {
    show(window);
    const std::size_t flushes = windows().flushes();
    window->setAlphaValue(0.5);
    window->setAlphaValue(-3);
    EXPECT_THAT(native(window).opacityHistory, ElementsAre(0.5, 0.0));
    EXPECT_EQ(windows().flushes(), flushes + 2);
    EXPECT_EQ(window->alphaValue(), 0);
}

} // namespace
