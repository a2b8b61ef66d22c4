#include <libvue/platform/backend/memory/MemoryWindowServer.h>

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/TestBackend.h"

using namespace libvue;
using namespace libvue::backend;

namespace {

using Kind = Event::Kind;

struct MemoryWindowServerTest : test::MemoryFixture {
    MemoryWindowServer& server = windows();

    WindowId open(NSRect content, bool activate = true, WindowKind kind = WindowKind::normal) {
        WindowSpec spec;
        spec.content = content;
        spec.kind = kind;
        spec.acceptsFocus = kind < WindowKind::popup;
        const WindowId w = server.create(spec);
        server.show(w, activate);
        return w;
    }
    std::vector<Event> drain() {
        std::vector<Event> all;
        Event e;
        while (server.next(e, 0))
            all.push_back(e);
        return all;
    }
    std::vector<Kind> kinds() {
        std::vector<Kind> all;
        for (const Event& e : drain())
            all.push_back(e.kind);
        return all;
    }
    /// What was heard, and where.
    using Heard = std::vector<std::pair<Kind, WindowId>>;
    Heard heard() {
        Heard all;
        for (const Event& e : drain())
            all.emplace_back(e.kind, e.window);
        return all;
    }
    void fill(WindowId w, const NSRect& rect, const Color& color) {
        Backend::current().graphics->canvasOn(server.surface(w))->fillRect(rect, color);
    }
};

constexpr Color red{1, 0, 0, 1}, blue{0, 0, 1, 1}, nothing{0, 0, 0, 0};

TEST_F(MemoryWindowServerTest, theClockJumpsToADeadlineOnlyWhenNothingIsQueued) {
    const Time start = server.now();
    Event e;
    EXPECT_FALSE(server.next(e, start + 2.5));
    EXPECT_EQ(server.now(), start + 2.5);

    (void)open({{0, 0}, {10, 10}}, false);
    EXPECT_TRUE(server.next(e, start + 10));
    EXPECT_EQ(server.now(), start + 2.5);

    EXPECT_FALSE(server.next(e, start)) << "a deadline that has passed";
    EXPECT_FALSE(server.next(e, never));
    EXPECT_EQ(server.now(), start + 2.5) << "time never goes back, and never without a deadline";
}

TEST_F(MemoryWindowServerTest, aWakeEndsOneWaitBeforeItsDeadline) {
    const Time start = server.now();
    server.wake();
    Event e;
    EXPECT_FALSE(server.next(e, start + 1));
    EXPECT_EQ(server.now(), start);
    EXPECT_FALSE(server.next(e, start + 1));
    EXPECT_EQ(server.now(), start + 1);
}

TEST_F(MemoryWindowServerTest, theFocusGoesFromWindowToWindowAndFallsBackToTheParent) {
    const WindowId first = open({{0, 0}, {100, 100}});
    const WindowId second = open({{200, 0}, {100, 100}});
    const WindowId third = open({{400, 0}, {100, 100}});
    server.setParent(third, first);
    drain();
    server.hide(third);
    EXPECT_EQ(heard(), (Heard{{Kind::focusOut, third}, {Kind::focusIn, first}}));

    server.destroy(first);
    EXPECT_EQ(server.focusedWindow(), second);
    server.setAcceptsFocus(second, false);
    server.hide(second);
    EXPECT_EQ(server.focusedWindow(), 0u);
    server.show(second, true);
    EXPECT_EQ(server.focusedWindow(), 0u) << "it takes no focus";
}

TEST_F(MemoryWindowServerTest, nothingIsLeftOfADestroyedWindowInTheQueue) {
    const WindowId w = open({{0, 0}, {100, 100}});
    server.moveMouse({50, 50});
    server.press();
    server.grabMouse(w, true);
    server.destroy(w);
    EXPECT_TRUE(drain().empty());
    EXPECT_EQ(server.mouseGrabber(), 0u);
    server.release();
    server.moveMouse({60, 60});
    EXPECT_TRUE(drain().empty());
}

TEST_F(MemoryWindowServerTest, thePointerHitsTheFrontWindowThatListens) {
    const WindowId back = open({{0, 0}, {100, 100}});
    const WindowId front = open({{50, 50}, {100, 100}});
    EXPECT_EQ(server.windowAt({75, 75}), front);
    EXPECT_EQ(server.windowAt({49.5, 75}), back);
    EXPECT_EQ(server.windowAt({150, 75}), 0u) << "the upper edge is outside";

    server.setIgnoresMouse(front, true);
    EXPECT_EQ(server.windowAt({75, 75}), back);
    server.setIgnoresMouse(front, false);
    server.miniaturize(front, true);
    EXPECT_EQ(server.windowAt({75, 75}), back);

    // The title bar of the one in front hides what lies below it.
    server.miniaturize(front, false);
    server.setContent(front, {{0, 0}, {100, 50}});
    EXPECT_EQ(server.windowAt({20, 60}), 0u);
    EXPECT_EQ(server.windowAt({20, 90}), back);
}

TEST_F(MemoryWindowServerTest, aClickBringsAWindowForwardBeforeItIsPressed) {
    const WindowId back = open({{0, 0}, {100, 100}});
    (void)open({{50, 50}, {100, 100}});
    drain();
    server.click({10, 20});
    EXPECT_EQ(kinds(), (std::vector{Kind::mouseEntered, Kind::mouseMoved, Kind::focusOut, Kind::focusIn,
                                    Kind::mouseDown, Kind::mouseUp}));
    EXPECT_EQ(server.stacking().back(), back);

    const WindowId menu = open({{200, 200}, {50, 50}}, false, WindowKind::menu);
    drain();
    server.click({210, 220});
    EXPECT_EQ(server.focusedWindow(), back) << "a menu takes no focus";
    const auto events = drain();
    const auto down = std::ranges::find(events, Kind::mouseDown, &Event::kind);
    ASSERT_NE(down, events.end());
    EXPECT_EQ(down->window, menu);
    EXPECT_EQ(down->position, NSMakePoint(10, 20));
    EXPECT_EQ(down->screenPosition, NSMakePoint(210, 220));
}

TEST_F(MemoryWindowServerTest, theWindowThatWasPressedKeepsThePointerUntilTheLastButtonIsUp) {
    const WindowId left = open({{0, 0}, {100, 100}});
    const WindowId right = open({{200, 0}, {100, 100}}, false);
    server.activate(left);
    server.moveMouse({50, 50});
    drain();

    server.press(0);
    server.press(1);
    server.moveMouse({250, 50});
    server.release(0);
    server.moveMouse({251, 50});
    const auto during = drain();
    EXPECT_EQ(during.back().position, NSMakePoint(251, 50));
    EXPECT_EQ(during.back().buttonsDown, 2u);
    for (const Event& e : during) {
        EXPECT_EQ(e.window, left);
        EXPECT_NE(e.kind, Kind::mouseExited);
    }
    server.release(1);
    EXPECT_EQ(heard(), (Heard{{Kind::mouseUp, left}, {Kind::mouseExited, left}, {Kind::mouseEntered, right}}));
}

TEST_F(MemoryWindowServerTest, aGrabGetsClicksOutsideOfItsWindow) {
    const WindowId owner = open({{0, 0}, {100, 100}});
    const WindowId menu = open({{200, 0}, {50, 50}}, false, WindowKind::menu);
    server.grabMouse(menu, true);
    drain();
    server.click({10, 10});
    const Event last = drain().back();
    EXPECT_EQ(last.kind, Kind::mouseUp);
    EXPECT_EQ(last.window, menu);
    EXPECT_EQ(last.position, NSMakePoint(-190, 10));
    EXPECT_EQ(server.focusedWindow(), owner);
    server.grabMouse(menu, false);
    server.click({10, 10});
    EXPECT_EQ(drain().back().window, owner);
}

TEST_F(MemoryWindowServerTest, captureHoldsWhatWasPresentedAndNoMore) {
    const WindowId w = open({{0, 0}, {10, 10}});
    EXPECT_EQ(server.capture(w), nullptr);
    fill(w, {{0, 0}, {10, 10}}, red);
    const NSRect parts[] = {{{0, 0}, {2, 2}}, {{8, 8}, {2, 2}}};
    server.present(w, parts);
    const auto before = server.capture(w);
    EXPECT_EQ(before->pixel(0, 9), red);
    EXPECT_EQ(before->pixel(9, 0), red);
    EXPECT_EQ(before->pixel(5, 5), nothing);
    EXPECT_EQ(before->pixel(0, 0), nothing);

    fill(w, {{0, 0}, {10, 10}}, blue);
    EXPECT_EQ(server.capture(w)->pixel(0, 9), red) << "drawn, but not presented";
    server.present(w, {parts, 1});
    EXPECT_EQ(server.capture(w)->pixel(0, 9), blue);
    EXPECT_EQ(server.capture(w)->pixel(9, 0), red);
    EXPECT_EQ(before->pixel(0, 9), red) << "a capture is a copy";
    EXPECT_EQ(server.window(w)->presents, 2u);

    // A rectangle is taken outward to whole pixels.
    server.setScale(2);
    fill(w, {{0, 0}, {10, 10}}, red);
    const NSRect part{{1.2, 1.2}, {0.1, 0.1}};
    server.present(w, {&part, 1});
    const auto shown = server.capture(w);
    ASSERT_EQ(shown->pixelWidth(), 20);
    EXPECT_EQ(shown->pixel(2, 17), red);
    EXPECT_EQ(shown->pixel(3, 17), nothing);
    EXPECT_EQ(shown->pixel(2, 16), nothing);
}

TEST_F(MemoryWindowServerTest, theSurfaceIsAnotherOneAfterAChangeOfSizeOrScale) {
    const WindowId w = open({{0, 0}, {10, 10}});
    const auto first = server.surface(w);
    server.setContent(w, {{50, 50}, {10, 10}});
    EXPECT_EQ(server.surface(w), first) << "a move alone";
    server.setContent(w, {{50, 50}, {12, 10}});
    const auto second = server.surface(w);
    EXPECT_NE(second, first);
    drain();
    server.setScale(1.5);
    EXPECT_EQ(server.surface(w)->pixelWidth(), 18);
    EXPECT_EQ(kinds(), (std::vector{Kind::screensChanged, Kind::scaleChanged}));
}

TEST_F(MemoryWindowServerTest, theScaleIsThatOfTheScreenThatHoldsMostOfTheWindow) {
    server.setScreens({{{{0, 0}, {1000, 800}}, {{0, 0}, {1000, 800}}, 1, "a"},
                       {{{1000, 0}, {1000, 800}}, {{1000, 0}, {1000, 800}}, 2, "b"}});
    const WindowId w = open({{800, 100}, {300, 100}});
    EXPECT_EQ(server.scale(w), 1);
    drain();
    server.moveByUser(w, {900, 100});
    EXPECT_EQ(server.scale(w), 2);
    EXPECT_EQ(kinds(), (std::vector{Kind::scaleChanged, Kind::moved}));
}

TEST_F(MemoryWindowServerTest, aProgramsOwnChangesComeBackAsNoEvents) {
    const WindowId w = open({{0, 0}, {100, 100}});
    drain();
    server.setContent(w, {{10, 10}, {50, 50}});
    server.setTitle(w, "x");
    server.setOpacity(w, 0.5);
    server.setLevel(w, 3);
    EXPECT_TRUE(drain().empty());
}

TEST_F(MemoryWindowServerTest, aPersonResizesWithinTheLimits) {
    const WindowId w = open({{100, 100}, {100, 100}});
    server.setLimits(w, {80, 80}, {200, 200});
    drain();
    server.resizeByUser(w, {{100, 50}, {20, 150}});
    EXPECT_EQ(server.content(w), NSMakeRect(100, 50, 80, 150));
    server.resizeByUser(w, {{100, 0}, {80, 10}});
    EXPECT_EQ(server.content(w), NSMakeRect(100, -70, 80, 80)) << "the top edge stays";
    EXPECT_EQ(kinds(), (std::vector{Kind::moved, Kind::resized, Kind::moved, Kind::resized}));

    WindowSpec fixed = server.window(w)->spec;
    fixed.resizable = false;
    fixed.content = server.content(w);
    server.setSpec(w, fixed);
    server.resizeByUser(w, {{0, 0}, {150, 150}});
    EXPECT_EQ(server.content(w), fixed.content);
}

TEST_F(MemoryWindowServerTest, zoomingFillsTheVisibleFrameAndGoesBack) {
    const NSRect before{{100, 100}, {300, 200}};
    const WindowId w = open(before);
    server.zoom(w);
    EXPECT_EQ(server.content(w), NSMakeRect(0, 0, 1440, 875 - 22));
    server.zoom(w);
    EXPECT_EQ(server.content(w), before);
    server.zoom(w);
    server.moveByUser(w, {5, 5});
    const NSRect moved = server.content(w);
    server.zoom(w);
    server.zoom(w);
    EXPECT_EQ(server.content(w), moved);
}

TEST_F(MemoryWindowServerTest, theWindowManagerMovesAWindowWithThePointer) {
    const WindowId w = open({{100, 100}, {100, 100}});
    server.moveMouse({150, 150});
    server.startMove(w);
    server.moveMouse({160, 150});
    EXPECT_EQ(server.content(w).origin, NSMakePoint(100, 100)) << "no button is down";
    server.press();
    server.startMove(w);
    drain();
    server.moveMouse({170, 140});
    server.release();
    EXPECT_EQ(server.content(w).origin, NSMakePoint(110, 90));
    EXPECT_EQ(kinds(), (std::vector{Kind::moved})) << "the release belongs to the move";
}

TEST_F(MemoryWindowServerTest, keysGoToTheFocusAndSayWhatIsHeld) {
    server.key(u'a');
    EXPECT_TRUE(drain().empty()) << "nobody has the focus";
    const WindowId w = open({{0, 0}, {100, 100}});
    drain();
    server.setModifiers(modifierShift);
    server.key(0xF702, modifierOption);
    server.setModifiers(0);
    server.typeText(u"A\n");
    const auto events = drain();
    ASSERT_EQ(events.size(), 8u);
    EXPECT_EQ(events[0].kind, Kind::modifiers);
    EXPECT_EQ(events[1].kind, Kind::keyDown);
    EXPECT_EQ(events[1].window, w);
    EXPECT_EQ(events[1].modifiers, modifierShift | modifierOption | modifierFunction | modifierNumericPad);
    EXPECT_EQ(events[4].characters, u"A");
    EXPECT_EQ(events[4].modifiers, std::uint32_t{modifierShift});
    EXPECT_EQ(events[6].characters, u"\r");
}

TEST_F(MemoryWindowServerTest, whatIsShownLaterNeedsNoSecondPresent) {
    const WindowId w = open({{0, 0}, {10, 10}}, false);
    auto events = drain();
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].kind, Kind::exposed);
    EXPECT_EQ(events[0].rect, NSMakeRect(0, 0, 10, 10));
    fill(w, {{0, 0}, {10, 10}}, red);
    const NSRect all{{0, 0}, {10, 10}};
    server.present(w, {&all, 1});
    server.hide(w);
    server.show(w, false);
    events = drain();
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].rect, NSZeroRect);
}

TEST_F(MemoryWindowServerTest, anUnknownWindowDoesNothing) {
    const WindowId gone = open({{0, 0}, {10, 10}});
    server.destroy(gone);
    for (const WindowId w : {WindowId{0}, gone, WindowId{999}}) {
        server.show(w, true);
        server.setContent(w, {{1, 1}, {1, 1}});
        server.order(w, gone);
        server.setParent(w, w);
        server.setLevel(w, 5);
        server.zoom(w);
        server.miniaturize(w, true);
        server.grabMouse(w, true);
        server.present(w, {});
        server.requestClose(w);
        server.destroy(w);
        EXPECT_EQ(server.content(w), NSZeroRect);
        EXPECT_EQ(server.surface(w), nullptr);
        EXPECT_EQ(server.capture(w), nullptr);
        EXPECT_EQ(server.window(w), nullptr);
    }
    EXPECT_TRUE(drain().empty());
    EXPECT_TRUE(server.stacking().empty());
}

} // namespace
