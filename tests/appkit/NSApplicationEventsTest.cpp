#include <appkit/WindowFixture.h>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSTimer.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

/// Asks the loop, which has no reason to wait.
Ref<NSEvent> nextKey(NSTimeInterval wait = 0, NSEventMask mask = NSKeyDownMask, BOOL dequeue = YES) {
    return NSApp()->nextEventMatchingMask_untilDate_inMode_dequeue(mask, NSRunLoop::mainRunLoop()->now() + wait,
                                                                   NSDefaultRunLoopMode, dequeue);
}

NSObject* monitor(NSEventMask mask, std::function<Ref<NSEvent>(NSEvent*)> handler) {
    return NSEvent::addLocalMonitorForEventsMatchingMask_handler(mask, std::move(handler));
}

void later(NSTimeInterval seconds, const std::function<void()>& act) {
    NSTimer::scheduledTimerWithTimeInterval_repeats_block(seconds, NO, [act](NSTimer*) { act(); });
}

struct EventsTest : WindowFixture {
    Ref<LogView> left = viewIn(window, {{0, 0}, {200, 300}}, "left");
    Ref<LogView> right = viewIn(window, {{200, 0}, {200, 300}}, "right");

    static Ref<NSEvent> press(CGFloat x, CGFloat y, NSWindow* w, NSEventType type = NSLeftMouseDown) {
        return NSEvent::
            mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
                type, {x, y}, 0, 0, w->windowNumber(), nullptr, 0, 1, 1);
    }
    using WindowFixture::press;
};

TEST_F(EventsTest, ClicksAreCountedByTimePlaceAndButton) {
    struct Row {
        const char* what;
        CGFloat dx;
        NSTimeInterval wait;
        int button;
        NSInteger expected;
    };
    const Row rows[] = {
        {"first", 0, 0, 0, 1},          {"second", 0, 0.3, 0, 2},       {"third, a little aside", 4, 0.3, 0, 3},
        {"too far", 9, 0.1, 0, 1},      {"at the limit", 9, 0.5, 0, 2}, {"too late", 9, 0.51, 0, 1},
        {"other button", 9, 0.1, 1, 1}, {"back again", 9, 0.1, 0, 1},
    };
    NSInteger count = 0;
    NSObject* counter = monitor(NSLeftMouseDownMask | NSRightMouseDownMask, [&](NSEvent* e) {
        count = e->clickCount();
        return Ref<NSEvent>(e);
    });
    for (const Row& r : rows) {
        pass(r.wait);
        press(window, 50 + r.dx, 50, r.button);
        EXPECT_EQ(count, r.expected) << r.what;
        release(r.button);
    }
    NSEvent::removeMonitor(counter);
}

TEST_F(EventsTest, APressKeepsItsViewUntilTheRelease) {
    NSPoint last;
    left->onMouse = [&](NSEvent* e) { last = e->locationInWindow(); };
    press(window, 50, 50);
    move(window, 300, 60);   // over the neighbour
    move(window, 900, -500); // out of the window
    release();
    move(window, 300, 60); // no drag after the release
    EXPECT_THAT(taken(), ElementsAre("left down", "left drag", "left drag", "left up"));
    EXPECT_EQ(last, NSMakePoint(900, -500));

    left->onMouse = [&](NSEvent*) {
        left->removeFromSuperview();
        left = nullptr;
    };
    press(window, 50, 50);
    move(window, 60, 60);
    release();
    EXPECT_THAT(taken(), ElementsAre("left down")) << "a view that left hears no more";
}

TEST_F(EventsTest, TheWheelGoesToTheViewUnderThePointer) {
    move(window, 250, 20);
    CGFloat delta = 0;
    right->onMouse = [&](NSEvent* e) { delta = e->scrollingDeltaY(); };
    windows().wheel(0, 2);
    drain();
    EXPECT_THAT(taken(), ElementsAre("right wheel"));
    EXPECT_EQ(delta, 32); // lines as points
    windows().wheel(0, 2.5, true);
    drain();
    EXPECT_EQ(delta, 2.5);
}

TEST_F(EventsTest, MonitorsReplaceDropAndFollowEachOther) {
    Log seen;
    NSObject* first = monitor(NSLeftMouseDownMask, [&](NSEvent* e) {
        seen.emplace_back("first");
        return press(250, 10, e->window());
    });
    NSObject* second = monitor(NSLeftMouseDownMask, [&](NSEvent* e) {
        seen.push_back("second at " + std::to_string(static_cast<int>(e->locationInWindow().x)));
        return Ref<NSEvent>(e);
    });
    click(window, 10, 10);
    EXPECT_THAT(seen, ElementsAre("first", "second at 250"));
    EXPECT_THAT(taken(), ElementsAre("right down", "right up"));

    NSEvent::removeMonitor(first);
    NSObject* third = monitor(NSLeftMouseDownMask, [](NSEvent*) { return Ref<NSEvent>(); });
    seen.clear();
    click(window, 10, 10);
    EXPECT_THAT(seen, ElementsAre("second at 10"));
    EXPECT_THAT(taken(), ElementsAre()) << "the press was dropped, so nobody has the release";
    NSEvent::removeMonitor(second);
    NSEvent::removeMonitor(third);
}

TEST_F(EventsTest, MonitorsMayComeAndGoDuringAnEvent) {
    Log seen;
    NSObject *self = nullptr, *next = nullptr, *added = nullptr;
    const auto saying = [&](const char* what) {
        return [&seen, what](NSEvent* e) {
            seen.emplace_back(what);
            return Ref<NSEvent>(e);
        };
    };
    self = monitor(NSLeftMouseDownMask, [&](NSEvent* e) {
        seen.emplace_back("self");
        NSEvent::removeMonitor(self);
        NSEvent::removeMonitor(next);
        added = monitor(NSLeftMouseDownMask, saying("added"));
        return Ref<NSEvent>(e);
    });
    next = monitor(NSLeftMouseDownMask, saying("next"));
    click(window, 10, 10);
    EXPECT_THAT(seen, ElementsAre("self"));
    click(window, 10, 10);
    EXPECT_THAT(seen, ElementsAre("self", "added"));
    NSEvent::removeMonitor(added);
}

TEST_F(EventsTest, ATrackingLoopTakesWhatItsMaskAdmitsAndLeavesTheRest) {
    Log tracked;
    left->onMouse = [&](NSEvent* e) {
        while (e->type() == NSLeftMouseDown && (tracked.empty() || tracked.back() != "up")) {
            const Ref<NSEvent> next = window->nextEventMatchingMask(NSLeftMouseDraggedMask | NSLeftMouseUpMask);
            tracked.push_back(next->type() == NSLeftMouseUp ? "up" : "drag");
        }
    };
    right->accepts = YES;
    window->makeFirstResponder(right);
    taken();
    mouse().at(50, 50).down().at(60, 50);
    windows().key(u'k');
    mouse().up().end();
    EXPECT_THAT(tracked, ElementsAre("drag", "up"));
    EXPECT_THAT(taken(), ElementsAre("left down", "right key k"));
}

TEST_F(EventsTest, NextEventGivesUpAtItsDeadline) {
    const NSTimeInterval start = NSRunLoop::mainRunLoop()->now();
    int fired = 0;
    later(0.4, [&] { ++fired; });
    windows().key(u'a'); // not admitted, stays
    drain();
    EXPECT_EQ(NSRunLoop::mainRunLoop()->now(), start) << "draining lets no time pass";
    windows().key(u'b');
    EXPECT_FALSE(nextKey(1, NSLeftMouseDownMask));
    EXPECT_NEAR(NSRunLoop::mainRunLoop()->now(), start + 1, 1e-6);
    EXPECT_EQ(fired, 1);
    EXPECT_TRUE(nextKey(0, NSKeyDownMask, NO));
    NSApp()->discardEventsMatchingMask_beforeEvent(NSKeyDownMask, nullptr);
    EXPECT_FALSE(nextKey(0, NSKeyDownMask, NO));
}

TEST_F(EventsTest, DiscardingStopsAtTheEventThatIsNamed) {
    for (const char16_t c : {u'a', u'b', u'c'})
        windows().keyDown(c);
    const Ref<NSEvent> a = nextKey();
    windows().advance(1);
    // The event that is being handled: what came after it stays.
    NSApp()->discardEventsMatchingMask_beforeEvent(NSKeyDownMask, a);
    const Ref<NSEvent> b = nextKey(0, NSKeyDownMask, NO);
    NSApp()->discardEventsMatchingMask_beforeEvent(NSKeyDownMask, b);
    Log left;
    while (const Ref<NSEvent> e = nextKey())
        left.push_back(e->characters()->utf8());
    EXPECT_THAT(left, ElementsAre("b", "c"));
}

TEST_F(EventsTest, AModalWindowKeepsTheOthersOut) {
    const Ref<NSWindow> modal = windowAt({{600, 100}, {200, 200}});
    const Ref<LogView> inside = viewIn(modal, {{0, 0}, {200, 200}}, "inside");
    const Ref<NSPanel> helper = make<NSPanel>(NSMakeRect(600, 400, 100, 100), NSTitledWindowMask);
    const Ref<LogView> helping = viewIn(helper, {{0, 0}, {100, 100}}, "helping");
    helper->setWorksWhenModal(YES);
    helper->orderFront(nullptr);
    NSRunLoop::mainRunLoop()->performBlock([&] {
        EXPECT_EQ(NSApp()->modalWindow(), modal.get());
        click(window, 10, 10);
        EXPECT_THAT(taken(), ElementsAre());
        EXPECT_GT(windows().beeps(), 0u);
        EXPECT_TRUE(modal->isKeyWindow());
        click(modal, 10, 10);
        click(helper, 10, 10);
        EXPECT_THAT(taken(), ElementsAre("inside down", "inside up", "helping down", "helping up"));
        windows().requestClose(window->nativeId_());
        drain();
        EXPECT_TRUE(window->isVisible());
        NSApp()->stopModalWithCode(7);
    });
    EXPECT_EQ(NSApp()->runModalForWindow(modal), 7);
    modal->makeKeyWindow();
    modal->orderOut(nullptr);
    EXPECT_TRUE(window->isKeyWindow()); // and not the panel, which lies in front
    click(window, 10, 10);
    EXPECT_THAT(taken(), ElementsAre("left down", "left up"));
    helper->orderOut(nullptr);
}

TEST_F(EventsTest, AModalRunThatIsBrokenOffLeavesTheOthersFree) {
    const Ref<NSWindow> modal = windowAt({{600, 100}, {200, 200}});
    NSRunLoop::mainRunLoop()->performBlock([&] { windows().requestClose(modal->nativeId_()); });
    EXPECT_EQ(NSApp()->runModalForWindow(modal), NSRunAbortedResponse);

    const Ref<LogView> v = viewIn(modal, {{0, 0}, {200, 200}}, "v");
    v->firstMouse = YES;
    v->onMouse = [](NSEvent*) { raiseNamed("Test", "out of here"); };
    modal->orderFront(nullptr);
    drain();
    Geste{windows(), modal}.at(5, 5).down();
    EXPECT_THROW(NSApp()->runModalForWindow(modal), NSExceptionRaised);
    EXPECT_EQ(NSApp()->modalWindow(), nullptr);
    v->onMouse = nullptr;
    release();
}

TEST_F(EventsTest, TheClickThatBringsAWindowForwardIsForAViewThatWantsIt) {
    const Ref<NSWindow> other = windowAt({{600, 100}, {200, 200}});
    for (const BOOL wants : {NO, YES}) {
        show(other);
        taken();
        left->firstMouse = wants;
        // Posted by hand: the desktop has not given the focus yet.
        NSApp()->postEvent_atStart(press(10, 10, window), NO);
        NSApp()->postEvent_atStart(press(10, 10, window, NSLeftMouseUp), NO);
        drain();
        EXPECT_TRUE(window->isKeyWindow());
        EXPECT_EQ(taken(), wants ? (Log{"left down", "left up"}) : Log{});
    }
}

TEST_F(EventsTest, KeysAndComposedTextReachTheFirstResponder) {
    left->accepts = YES;
    EXPECT_TRUE(window->makeFirstResponder(left));
    taken();
    windows().typeText(u"a");
    windows().preedit(u"^", {1, 0});
    windows().commit(u"ê");
    drain();
    EXPECT_THAT(taken(), ElementsAre("left key a", "left preedit ^", "left insert ê"));
}

TEST_F(EventsTest, AnActionWithoutATargetGoesUpFromTheKeyWindow) {
    const SEL action = sel("agir:");
    const Ref<Cible> ofKey = make<Cible>(), ofMain = make<Cible>(), ofApp = make<Cible>();
    const auto found = [&] { return NSApp()->targetForAction_to_from(action, nullptr, nullptr); };
    EXPECT_FALSE(NSApp()->sendAction_to_from(action, nullptr, nullptr));
    NSApp()->setDelegate(ofApp);
    EXPECT_TRUE(NSApp()->sendAction_to_from(action, nullptr, nullptr));
    EXPECT_EQ(ofApp->count, 1);
    const Ref<NSPanel> panel = make<NSPanel>(NSMakeRect(600, 400, 100, 100), NSTitledWindowMask);
    show(panel);
    window->setDelegate(ofMain);
    EXPECT_EQ(found(), ofMain.get());
    panel->setDelegate(ofKey);
    EXPECT_EQ(found(), ofKey.get());
    EXPECT_FALSE(NSApp()->sendAction_to_from(sel("inconnue:"), ofKey, nullptr));
    panel->orderOut(nullptr);
}

class KeyEquivalentView : public NSView {
public:
    static void describe(ClassDescription<KeyEquivalentView, NSView>&) {}
    using NSView::NSView;
    BOOL performKeyEquivalent(NSEvent* e) override {
        return (e->modifierFlags() & NSControlKeyMask) && e->charactersIgnoringModifiers()->isEqualToString(u"k"_ns);
    }
};

TEST_F(EventsTest, AShortcutOfAViewIsTakenBeforeTheFirstResponderSeesTheKey) {
    add<KeyEquivalentView>({{0, 0}, {10, 10}});
    left->accepts = YES;
    window->makeFirstResponder(left);
    taken();
    key(u'k', backend::modifierControl);
    EXPECT_EQ(taken().size(), 0u);
    key(u'j', backend::modifierControl);
    EXPECT_EQ(taken().size(), 1u);
}

class Closer : public NSObject {
public:
    static void describe(ClassDescription<Closer>& c) {
        c.answers<&Closer::ends>(op::applicationShouldTerminateAfterLastWindowClosed);
        c.answers<&Closer::may>(op::applicationShouldTerminate);
        c.answers<&Closer::will>(op::applicationWillTerminate);
    }
    BOOL ends(NSApplication*) { return end; }
    NSUInteger may(NSApplication*) { return answer; }
    void will(NSNotification*) { ++told; }
    BOOL end = NO;
    NSUInteger answer = NSTerminateNow;
    int told = 0;
};

TEST_F(EventsTest, ADelegateMaySayLaterWhetherTheApplicationEnds) {
    const Ref<Closer> closer = make<Closer>();
    NSApp()->setDelegate(closer);
    NSApp()->replyToApplicationShouldTerminate(YES); // nobody has asked
    for (const NSUInteger answer : {NSTerminateCancel, NSTerminateLater, NSTerminateLater}) {
        closer->answer = answer;
        NSApp()->terminate(nullptr);
        EXPECT_EQ(closer->told, 0);
        if (answer == NSTerminateCancel) NSApp()->replyToApplicationShouldTerminate(YES);
    }
    NSApp()->replyToApplicationShouldTerminate(NO);
    NSApp()->replyToApplicationShouldTerminate(YES);
    EXPECT_EQ(closer->told, 0);
    NSApp()->terminate(nullptr);
    NSApp()->replyToApplicationShouldTerminate(YES);
    EXPECT_EQ(closer->told, 1);
}

TEST_F(EventsTest, TheLastWindowEndsTheRunUnlessTheDelegateHoldsOn) {
    const Ref<Closer> closer = make<Closer>();
    NSApp()->setDelegate(closer);
    const Ref<NSPanel> panel = make<NSPanel>(NSMakeRect(600, 400, 100, 100), NSTitledWindowMask);
    panel->orderFront(nullptr);
    int turnsAfter = 0;
    later(1, [&] { window->close(); });
    // The exception of a handler does not end it either.
    later(1.5, [&] { (void)window->contentView()->subviews()[99]; });
    later(2, [&] {
        ++turnsAfter;
        closer->end = YES;
        window->makeKeyAndOrderFront(nullptr);
        window->close(); // a panel does not keep an application running
    });
    later(3, [] { ADD_FAILURE() << "still running"; });
    NSApp()->run();
    EXPECT_EQ(turnsAfter, 1);
    NSRunLoop::mainRunLoop()->cancelAll();
}

TEST_F(EventsTest, StopEndsTheInnermostRunBeforeTheNextEvent) {
    const Ref<NSWindow> modal = windowAt({{600, 100}, {200, 200}});
    NSInteger code = 0;
    left->onMouse = [](NSEvent*) { NSApp()->stop(nullptr); };
    later(1, [&] {
        NSRunLoop::mainRunLoop()->performBlock([] { NSApp()->stop(nullptr); });
        code = NSApp()->runModalForWindow(modal);
        modal->orderOut(nullptr);
        EXPECT_TRUE(NSApp()->isRunning());
        mouse().at(10, 10).down().up();
    });
    for (const char* heard : {"left down", "left up"}) {
        later(5, [] { ADD_FAILURE() << "still running"; });
        NSApp()->run();
        NSRunLoop::mainRunLoop()->cancelAll();
        EXPECT_FALSE(NSApp()->isRunning());
        EXPECT_EQ(code, NSRunStoppedResponse);
        EXPECT_THAT(taken(), ElementsAre(heard)) << "what is left is for the next run";
    }
}

TEST_F(EventsTest, WindowsOnTheScreenAreUpdatedAfterEachEvent) {
    const Ref<NSWindow> hidden = windowAt({{400, 100}, {200, 200}});
    const Ecoute ear(NSWindowDidUpdateNotification, nullptr, [&](NSNotification* n) {
        log.push_back(n->object() == window.get() ? "updated" : "hidden updated");
    });
    move(window, 10, 10);
    taken();
    mouse().down().up().end();
    EXPECT_THAT(taken(), ElementsAre("left down", "updated", "left up", "updated"));
    drain();
    EXPECT_THAT(taken(), ElementsAre()) << "without an event nothing is told";
}

} // namespace
