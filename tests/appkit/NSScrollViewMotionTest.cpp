#include <cmath>
#include <limits>
#include <random>

#include <appkit/WindowFixture.h>
#include <foundation/Valeurs.h>

#include <libvue/platform/appkit/KnobGeometry.h>
#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSScroller.h>

using namespace libvue;
using namespace libvue::test;

namespace {

constexpr CGFloat nan = std::numeric_limits<CGFloat>::quiet_NaN(), inf = std::numeric_limits<CGFloat>::infinity();

/// A document that may keep its area when its width changes, may take the focus, and follows a drag.
class Feuille : public NSView {
public:
    static void describe(ClassDescription<Feuille, NSView>&) {}
    explicit Feuille(const NSRect& f) : NSView(f) {}
    CGFloat area = 0;
    BOOL accepts = NO, interprets = NO;
    int drags = 0;
    BOOL isFlipped() const override { return YES; }
    BOOL acceptsFirstResponder() override { return accepts; }
    void mouseDown(NSEvent*) override {}
    void keyDown(NSEvent* e) override {
        interprets ? interpretKeyEvents(NSArray::arrayWithObjects({e})) : NSView::keyDown(e);
    }
    void mouseDragged(NSEvent* e) override {
        ++drags;
        autoscroll(this, e);
    }
    void resizeWithOldSuperviewSize(const NSSize&) override {
        const CGFloat w = superview()->bounds().size.width;
        if (area > 0) setFrameSize({w, area / w});
    }
};

/// A document of 1000 by 5000 points in a room of 200 by 100.
struct ScrollMotionTest : WindowFixture {
    Ref<NSScrollView> scroll = add<NSScrollView>({{0, 0}, {200, 100}});
    Ref<Feuille> page = make<Feuille>(NSRect{{0, 0}, {1000, 5000}});
    std::vector<CGFloat> tops; ///< where each move of the document brought it
    NSTimeInterval lastMove = 0;
    Ecoute moves{NSViewBoundsDidChangeNotification, scroll->contentView(), [this](NSNotification*) {
                     tops.push_back(at().y);
                     lastMove = NSRunLoop::mainRunLoop()->now();
                 }};

    ScrollMotionTest() {
        scroll->setHasVerticalScroller(YES);
        scroll->setHasHorizontalScroller(YES);
        scroll->setDocumentView(page);
        drain();
        move(window, 50, 50);
    }
    [[nodiscard]] NSPoint at() const { return scroll->documentVisibleRect().origin; }
    void to(NSPoint p) const {
        scroll->contentView()->scrollToPoint(p);
        scroll->reflectScrolledClipView(scroll->contentView());
    }
    void wheel(CGFloat dx, CGFloat dy, bool precise = true, std::uint8_t phase = 0) const {
        windows().wheel(dx, dy, precise, phase);
        drain();
    }
    [[nodiscard]] NSScroller* bar() const { return scroll->verticalScroller(); }
    [[nodiscard]] NSRect knob() const { return bar()->convertRect_toView(bar()->rectForPart(NSScrollerKnob), nullptr); }
};

TEST_F(ScrollMotionTest, TheWheelScrollsBothAxes) {
    struct Row {
        CGFloat dx, dy;
        bool precise;
        std::uint32_t modifiers;
        NSPoint expected;
    };
    using backend::modifierShift;
    for (const Row& row : {Row{0, -1, false, 0, {100, 220}}, Row{-2, 0, false, 0, {140, 200}},
                           Row{0, -1, false, modifierShift, {120, 200}}, Row{-7, 3, true, 0, {107, 197}},
                           Row{-5, 0, true, modifierShift, {105, 200}}, Row{0, 1e12, true, 0, {100, 0}},
                           Row{-1e12, -1e12, true, 0, {800, 4900}}, Row{nan, -1, true, 0, {100, 200}},
                           Row{0, inf, false, 0, {100, 200}}, Row{-inf, nan, true, 0, {100, 200}}}) {
        to({100, 200});
        windows().setModifiers(row.modifiers);
        wheel(row.dx, row.dy, row.precise);
        windows().setModifiers(0);
        EXPECT_EQ(at(), row.expected) << row.dx << " " << row.dy << " " << row.modifiers;
    }
}

TEST_F(ScrollMotionTest, WhatIsNoNumberIsIgnored) {
    to({100, 200});
    NSClipView* clip = scroll->contentView();
    clip->scrollToPoint({nan, 5});
    clip->scrollToPoint({5, inf});
    EXPECT_FALSE(clip->scrollBy_({nan, 0}));
    EXPECT_FALSE(page->scrollRectToVisible({{0, nan}, {10, 10}}));
    EXPECT_FALSE(page->scrollRectToVisible({{0, 0}, {inf, 10}}));
    scroll->setLineScroll(nan);
    scroll->setLineScroll(-5);
    scroll->setPageScroll(inf);
    EXPECT_EQ(scroll->verticalLineScroll(), 20);
    EXPECT_EQ(scroll->verticalPageScroll(), 20);
    scroll->setFrameSize({nan, inf});
    scroll->setFrameSize({200, 100});
    EXPECT_EQ(at(), (NSPoint{100, 200}));
    EXPECT_EQ(clip->constrainScrollPoint({nan, inf}), (NSPoint{100, 4900}));
    page->setFrameSize({1000, inf});
    scroll->pageDown(nullptr);
    EXPECT_EQ(at(), (NSPoint{100, 200}));
}

TEST_F(ScrollMotionTest, StepsFinerThanAPixelAddUpAndComeBack) {
    for (const CGFloat scale : {1.0, 1.5, 2.0}) {
        windows().setScale(scale);
        drain();
        to({100, 200});
        tops.clear();
        std::size_t changes = 0;
        NSPoint last = at();
        const auto step = [&](CGFloat dy) {
            wheel(0, dy);
            if (at().y != last.y) ++changes;
            last = at();
            const CGFloat pixels = last.y * scale;
            EXPECT_NEAR(pixels, std::round(pixels), 1e-6) << scale;
        };
        for (int i = 0; i < 700; ++i)
            step(-0.3);
        EXPECT_NEAR(at().y, 200 + 210, 0.5 / scale + 1e-6);
        for (int i = 0; i < 700; ++i)
            step(0.3);
        EXPECT_NEAR(at().y, 200, 0.5 / scale + 1e-6);
        EXPECT_EQ(at().x, 100) << "an axis that does not move stays";
        EXPECT_EQ(tops.size(), changes) << "told once for each change";
    }
}

TEST_F(ScrollMotionTest, AThrowEndsInTheViewWhereItBegan) {
    const auto inner = make<NSScrollView>(NSRect{{0, 0}, {200, 80}});
    inner->setDocumentView(make<Feuille>(NSRect{{0, 0}, {200, 110}}));
    page->addSubview(inner);
    struct Row {
        std::uint8_t phase;
        CGFloat dy, inner, outer;
    };
    for (const Row& row : {Row{1, -20, 20, 0}, Row{2, -20, 30, 0}, Row{4, -20, 30, 0}, Row{4, -9, 30, 0},
                           Row{1, -20, 30, 20}, Row{4, -20, 30, 40}, Row{0, -10, 30, 50}}) {
        wheel(0, row.dy, true, row.phase);
        EXPECT_EQ(inner->documentVisibleRect().origin.y, row.inner) << int{row.phase};
        EXPECT_EQ(at().y, row.outer) << int{row.phase};
    }
}

TEST_F(ScrollMotionTest, TheKnobFindsItsPlaceAgainInAnyDocument) {
    std::mt19937_64 random(20261121);
    const auto between = [&](CGFloat low, CGFloat high) {
        return low * std::pow(high / low, std::uniform_real_distribution<>(0, 1)(random));
    };
    window->setContentSize({1000, 900});
    for (int i = 0; i < 400; ++i) {
        const NSSize room{between(30, 900), between(30, 800)};
        scroll->setFrameSize(room);
        page->setFrame({{between(1, 1e6) - 5e5, between(1, 1e6) - 5e5}, {between(10, 1e9), between(10, 1e9)}});
        const NSRect d = page->frame();
        const CGFloat way = std::max(0.0, d.size.height - room.height);
        to({d.origin.x, d.origin.y + way * std::uniform_real_distribution<>(0, 1)(random)});
        const CGFloat before = at().y;
        if (way == 0) continue;
        const KnobGeometry g{room.height - 4 - (scroll->horizontalScroller()->isHidden() ? 0 : 12),
                             bar()->knobProportion()};
        const NSRect part = bar()->rectForPart(NSScrollerKnob);
        EXPECT_GE(part.size.height, std::min(g.slot, CGFloat{24}));
        EXPECT_LE(NSMaxY(part), bar()->bounds().size.height - 2 + 1e-9);
        if (g.way() <= 0) continue;
        bar()->setPosition(g.positionAt(part.origin.y - 2));
        bar()->sendAction_to(bar()->action(), bar()->target());
        EXPECT_NEAR(at().y, before, 1) << d.size.height << " in " << room.height;
    }
}

TEST_F(ScrollMotionTest, TheKnobFollowsTheHandOverABillionPoints) {
    page->setFrameSize({1000, 1e9});
    to({0, 123456789.25});
    const NSPoint start{NSMidX(knob()), NSMidY(knob()) + 5};
    const CGFloat way = bar()->bounds().size.height - 4 - 24;
    tops.clear();
    mouse().at(start.x, start.y).down().at(start.x - 3, start.y).at(start.x, start.y - 1);
    for (int i = 0; i < 50; ++i)
        mouse().at(start.x, start.y - 2 - i % 7);
    mouse().at(start.x, start.y - 500).at(start.x, start.y).up().end();
    ASSERT_EQ(tops.size(), 53u) << "caught is not moved";
    EXPECT_NEAR(tops.front(), 123456789.25 + (1e9 - 100) / way, 1);
    EXPECT_NEAR(tops.back(), 123456789.25, 1) << "back where it was caught";
    EXPECT_EQ(tops[51], 1e9 - 100);
    scroll->scrollToEndOfDocument(nullptr);
    EXPECT_EQ(at().y, 1e9 - 100);
    wheel(0, 1);
    EXPECT_EQ(at().y, 1e9 - 101) << "the far end has every point";
}

TEST_F(ScrollMotionTest, APressInTheSlotPagesUntilTheKnobIsThere) {
    page->setFrameSize({200, 1000});
    const auto* loop = NSRunLoop::mainRunLoop();
    const NSTimeInterval before = loop->now();
    const CGFloat x = NSMidX(knob());
    mouse().at(x, 30).down().end(); // the run ends by itself: nothing is due any more
    EXPECT_TRUE(NSPointInRect({x, 30}, knob()));
    const CGFloat there = at().y;
    EXPECT_EQ(std::fmod(there, 80), 0) << "whole pages";
    EXPECT_NEAR(lastMove - before, 0.35 + (there / 80 - 2) * 0.05, 1e-6);
    mouse().up().end();
    pass(1);
    EXPECT_EQ(at().y, there);
    windows().moveMouse(window->convertBaseToScreen({x, 60}));
    windows().press(2);
    windows().release(2);
    drain();
    EXPECT_NEAR(NSMidY(knob()), 60, 0.5) << "the middle button brings the knob at once";
}

TEST_F(ScrollMotionTest, ScrollersOverTheDocumentFadeOut) {
    EXPECT_EQ(bar()->alphaValue(), 1);
    pass(1.1);
    EXPECT_LT(bar()->alphaValue(), 1);
    EXPECT_GT(bar()->alphaValue(), 0);
    pass(1);
    EXPECT_EQ(bar()->alphaValue(), 0);
    EXPECT_TRUE(std::isinf(NSRunLoop::mainRunLoop()->nextDeadline())) << "nothing runs once they are gone";
    wheel(0, -5);
    EXPECT_EQ(bar()->alphaValue(), 1);
    EXPECT_EQ(scroll->horizontalScroller()->alphaValue(), 0);
    move(window, 194, 50); // over it
    pass(5);
    EXPECT_EQ(bar()->alphaValue(), 1);
    move(window, 50, 50);
    pass(2);
    EXPECT_EQ(bar()->alphaValue(), 0);
    move(window, 194, 50);
    EXPECT_EQ(bar()->alphaValue(), 1);
    scroll->setScrollerStyle(NSScrollerStyleLegacy);
    move(window, 50, 50);
    pass(5);
    EXPECT_EQ(bar()->alphaValue(), 1);
}

TEST_F(ScrollMotionTest, FixedScrollersTakeRoomWhenTheDesktopWantsThem) {
    to({100, 200});
    windows().setPrefersOverlayScrollers(false);
    drain();
    EXPECT_EQ(scroll->contentSize(), (NSSize{188, 88}));
    EXPECT_EQ(at(), (NSPoint{100, 200}));
    struct Row {
        NSSize page;
        bool vertical, horizontal;
    };
    for (const Row& row : {Row{{200, 100}, false, false}, Row{{200, 101}, true, true}, Row{{201, 100}, true, true},
                           Row{{188, 101}, true, false}, Row{{200, 100}, false, false}, Row{{201, 88}, false, true}}) {
        page->setFrameSize(row.page);
        EXPECT_EQ(!bar()->isHidden(), row.vertical) << row.page.width << " " << row.page.height;
        EXPECT_EQ(!scroll->horizontalScroller()->isHidden(), row.horizontal) << row.page.width;
        EXPECT_EQ(scroll->contentSize(), (NSSize{row.vertical ? 188.0 : 200.0, row.horizontal ? 88.0 : 100.0}));
    }
    windows().setPrefersOverlayScrollers(true);
    drain();
    EXPECT_EQ(scroll->contentSize(), (NSSize{200, 100}));
    // One that becomes longer in less room, and fits only without a scroller.
    scroll->setScrollerStyle(NSScrollerStyleLegacy);
    page->area = 19900;
    page->setFrameSize({200, 99.5});
    for (const CGFloat width : {200.0, 180.0, 230.0, 200.0}) {
        scroll->setFrameSize({width, 100});
        const NSSize room = scroll->contentSize();
        EXPECT_NEAR(page->frame().size.width, room.width, 1e-9);
        EXPECT_EQ(room.width, page->frame().size.height > 100 ? width - 12 : width) << width;
    }
}

TEST_F(ScrollMotionTest, KeysThatNobodyTakesScroll) {
    using backend::modifierCommand;
    using backend::modifierShift;
    struct Row {
        char16_t key;
        std::uint32_t modifiers;
        NSPoint expected;
    };
    for (const int way : {0, 1, 2}) { // no focus, a document that passes keys on, one that makes commands of them
        const BOOL focused = way > 0;
        page->accepts = focused;
        page->interprets = way == 2;
        window->makeFirstResponder(focused ? page.get() : nullptr);
        for (const Row& row : {Row{NSDownArrowFunctionKey, 0, {100, 1020}}, Row{NSUpArrowFunctionKey, 0, {100, 980}},
                               Row{NSRightArrowFunctionKey, 0, {120, 1000}}, Row{NSLeftArrowFunctionKey, 0, {80, 1000}},
                               Row{NSPageDownFunctionKey, 0, {100, 1080}}, Row{u' ', 0, {100, 1080}},
                               Row{u' ', modifierShift, {100, 920}}, Row{NSPageUpFunctionKey, 0, {100, 920}},
                               Row{NSHomeFunctionKey, 0, {100, 0}}, Row{NSEndFunctionKey, modifierCommand, {100, 4900}},
                               Row{NSDownArrowFunctionKey, modifierShift, {100, 1000}}}) {
            to({100, 1000});
            windows().key(row.key, row.modifiers);
            drain();
            EXPECT_EQ(at(), row.expected) << std::hex << static_cast<unsigned>(row.key) << " " << way;
        }
    }
    const std::size_t beeps = windows().beeps();
    to({0, 4900});
    windows().key(NSEndFunctionKey);
    drain();
    EXPECT_EQ(windows().beeps(), beeps) << "at the end there is nothing to complain about";
}

TEST_F(ScrollMotionTest, ADragOutsideScrollsOnUntilItEnds) {
    mouse().at(50, 50).down().at(60, 20).end();
    EXPECT_EQ(at(), (NSPoint{0, 0})) << "inside";
    mouse().at(60, -20).end();
    const CGFloat first = at().y;
    EXPECT_GT(first, 0);
    pass(0.5);
    const CGFloat second = at().y;
    EXPECT_NEAR(second - first, 20 * 12 * 0.5, 20 * 12 / 15.0) << "as fast with a still pointer";
    EXPECT_EQ(at().x, 0);
    mouse().at(60, 50).end();
    const int drags = page->drags;
    pass(0.5);
    EXPECT_EQ(at().y, second) << "inside again";
    EXPECT_EQ(page->drags, drags);
    mouse().at(300, 400).end();
    pass(10);
    EXPECT_GT(at().x, 0);
    EXPECT_EQ(at().y, 0) << "up to the end";
    mouse().at(60, -20).up().end();
    const CGFloat released = at().y;
    pass(1);
    EXPECT_EQ(at().y, released);
}

} // namespace
