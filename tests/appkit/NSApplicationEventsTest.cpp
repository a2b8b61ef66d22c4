#include <appkit/AppFixture.h>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSTimer.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

class EventsTest : public AppFixture {
protected:
    Ref<NSWindow> window;
    Ref<LogView> left, right;

    void SetUp() override {
        window = windowAt({{100, 100}, {400, 300}});
        left = viewIn(window, {{0, 0}, {200, 300}}, "left");
        right = viewIn(window, {{200, 0}, {200, 300}}, "right");
        show(window);
        log.clear();
    }
    void TearDown() override {
        left = right = nullptr;
        window = nullptr;
        AppFixture::TearDown();
    }
    Ref<NSEvent> mouse(NSEventType type, CGFloat x, CGFloat y, NSWindow* w) {
        return NSEvent::
            mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
                type, {x, y}, 0, 0, w->windowNumber(), nullptr, 0, 1, 1);
    }
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
    const auto monitor = NSEvent::addLocalMonitorForEventsMatchingMask_handler(
        NSLeftMouseDownMask | NSRightMouseDownMask, [&](NSEvent* e) {
            count = e->clickCount();
            return Ref<NSEvent>(e);
        });
    for (const Row& r : rows) {
        pass(r.wait);
        press(window, 50 + r.dx, 50, r.button);
        EXPECT_EQ(count, r.expected) << r.what;
        release(r.button);
    }
    NSEvent::removeMonitor(monitor);
}

TEST_F(EventsTest, APressKeepsItsViewUntilTheRelease) {
    std::vector<NSPoint> places;
    left->onMouse = [&](NSEvent* e) {
        places.push_back(e->locationInWindow());
        EXPECT_EQ(e->clickCount(), 1);
    };
    press(window, 50, 50);
    move(window, 300, 60);   // over the neighbour
    move(window, 900, -500); // out of the window
    release();
    EXPECT_THAT(taken(), ElementsAre("left down", "left drag", "left drag", "left up"));
    EXPECT_EQ(places.back(), NSMakePoint(900, -500));

    move(window, 300, 60);
    EXPECT_TRUE(taken().empty()); // no drag after the release
}

TEST_F(EventsTest, AReleasedViewGetsNoDrags) {
    left->onMouse = [&](NSEvent*) {
        left->removeFromSuperview();
        left = nullptr;
    };
    press(window, 50, 50);
    move(window, 60, 60);
    release();
    EXPECT_THAT(taken(), ElementsAre("left down"));
}

TEST_F(EventsTest, TheWheelGoesToTheViewUnderThePointer) {
    windows().moveMouse(window->convertBaseToScreen({250, 20}));
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
    const auto first = NSEvent::addLocalMonitorForEventsMatchingMask_handler(NSLeftMouseDownMask, [&](NSEvent* e) {
        seen.emplace_back("first");
        return mouse(NSLeftMouseDown, 250, 10, e->window());
    });
    const auto second = NSEvent::addLocalMonitorForEventsMatchingMask_handler(NSLeftMouseDownMask, [&](NSEvent* e) {
        seen.push_back(e->locationInWindow().x == 250 ? "second sees the other event" : "second sees the first event");
        return Ref<NSEvent>(e);
    });
    click(window, 10, 10);
    EXPECT_THAT(seen, ElementsAre("first", "second sees the other event"));
    EXPECT_THAT(taken(), ElementsAre("right down", "right up"));

    NSEvent::removeMonitor(first);
    const auto third = NSEvent::addLocalMonitorForEventsMatchingMask_handler(NSLeftMouseDownMask,
                                                                             [&](NSEvent*) { return Ref<NSEvent>(); });
    seen.clear();
    click(window, 10, 10);
    EXPECT_THAT(seen, ElementsAre("second sees the first event"));
    EXPECT_TRUE(taken().empty()); // the press was dropped, so nobody has the release
    NSEvent::removeMonitor(second);
    NSEvent::removeMonitor(third);
}

TEST_F(EventsTest, MonitorsMayComeAndGoDuringAnEvent) {
    Log seen;
    NSObject *self = nullptr, *later = nullptr, *added = nullptr;
    self = NSEvent::addLocalMonitorForEventsMatchingMask_handler(NSLeftMouseDownMask, [&](NSEvent* e) {
        seen.emplace_back("self");
        NSEvent::removeMonitor(self);
        NSEvent::removeMonitor(later);
        added = NSEvent::addLocalMonitorForEventsMatchingMask_handler(NSLeftMouseDownMask, [&](NSEvent* x) {
            seen.emplace_back("added");
            return Ref<NSEvent>(x);
        });
        return Ref<NSEvent>(e);
    });
    later = NSEvent::addLocalMonitorForEventsMatchingMask_handler(NSLeftMouseDownMask, [&](NSEvent* e) {
        seen.emplace_back("later");
        return Ref<NSEvent>(e);
    });
    click(window, 10, 10);
    EXPECT_THAT(seen, ElementsAre("self"));
    click(window, 10, 10);
    EXPECT_THAT(seen, ElementsAre("self", "added"));
    NSEvent::removeMonitor(added);
}

TEST_F(EventsTest, ATrackingLoopTakesWhatItsMaskAdmitsAndLeavesTheRest) {
    Log tracked;
    left->onMouse = [&](NSEvent* e) {
        if (e->type() != NSLeftMouseDown) return;
        for (;;) {
            const Ref<NSEvent> next = window->nextEventMatchingMask(NSLeftMouseDraggedMask | NSLeftMouseUpMask);
            ASSERT_TRUE(next);
            tracked.push_back(next->type() == NSLeftMouseUp ? "up" : "drag");
            if (next->type() == NSLeftMouseUp) return;
        }
    };
    right->accepts = YES;
    window->makeFirstResponder(right);
    taken();
    windows().moveMouse(window->convertBaseToScreen({50, 50}));
    windows().press();
    windows().moveMouse(window->convertBaseToScreen({60, 50}));
    windows().key(u'k');
    windows().release();
    drain();
    EXPECT_THAT(tracked, ElementsAre("drag", "up"));
    EXPECT_THAT(taken(), ElementsAre("left down", "right key k"));
}

TEST_F(EventsTest, NextEventGivesUpAtItsDeadline) {
    NSRunLoop* loop = NSRunLoop::mainRunLoop();
    const NSTimeInterval start = loop->now();
    int fired = 0;
    NSTimer::scheduledTimerWithTimeInterval_repeats_block(0.4, NO, [&](NSTimer*) { ++fired; });
    windows().key(u'a'); // not admitted, stays
    EXPECT_FALSE(NSApp()->nextEventMatchingMask_untilDate_inMode_dequeue(NSLeftMouseDownMask, start + 1,
                                                                         NSDefaultRunLoopMode, YES));
    EXPECT_NEAR(loop->now(), start + 1, 1e-6);
    EXPECT_EQ(fired, 1);
    EXPECT_TRUE(
        NSApp()->nextEventMatchingMask_untilDate_inMode_dequeue(NSKeyDownMask, start, NSDefaultRunLoopMode, NO));
    NSApp()->discardEventsMatchingMask_beforeEvent(NSKeyDownMask, nullptr);
    EXPECT_FALSE(
        NSApp()->nextEventMatchingMask_untilDate_inMode_dequeue(NSKeyDownMask, start, NSDefaultRunLoopMode, NO));
}

TEST_F(EventsTest, DrainingLetsNoTimePass) {
    const NSTimeInterval start = NSRunLoop::mainRunLoop()->now();
    int fired = 0;
    NSTimer::scheduledTimerWithTimeInterval_repeats_block(0.1, YES, [&](NSTimer* t) {
        if (++fired == 3) t->invalidate();
    });
    drain();
    EXPECT_EQ(fired, 0);
    EXPECT_EQ(NSRunLoop::mainRunLoop()->now(), start);
    pass(1);
    EXPECT_EQ(fired, 3);
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
        EXPECT_TRUE(modal->isKeyWindow());
        click(window, 10, 10);
        EXPECT_TRUE(taken().empty());
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
    EXPECT_EQ(NSApp()->modalWindow(), nullptr);
    modal->makeKeyWindow();
    modal->orderOut(nullptr);
    EXPECT_TRUE(window->isKeyWindow()); // and not the panel, which lies in front
    click(window, 10, 10);
    EXPECT_THAT(taken(), ElementsAre("left down", "left up"));
    helper->orderOut(nullptr);
}

TEST_F(EventsTest, ClosingAModalWindowEndsItsLoop) {
    const Ref<NSWindow> modal = windowAt({{600, 100}, {200, 200}});
    NSRunLoop::mainRunLoop()->performBlock([&] { windows().requestClose(modal->nativeId_()); });
    EXPECT_EQ(NSApp()->runModalForWindow(modal), NSRunAbortedResponse);
}

TEST_F(EventsTest, TheClickThatBringsAWindowForwardIsForAViewThatWantsIt) {
    const Ref<NSWindow> other = windowAt({{600, 100}, {200, 200}});
    show(other);
    log.clear();
    // Posted by hand: the desktop has not given the focus yet.
    NSApp()->postEvent_atStart(mouse(NSLeftMouseDown, 10, 10, window), NO);
    NSApp()->postEvent_atStart(mouse(NSLeftMouseUp, 10, 10, window), NO);
    drain();
    EXPECT_TRUE(window->isKeyWindow());
    EXPECT_TRUE(taken().empty());

    other->makeKeyWindow();
    left->firstMouse = YES;
    NSApp()->postEvent_atStart(mouse(NSLeftMouseDown, 10, 10, window), NO);
    drain();
    EXPECT_TRUE(window->isKeyWindow());
    EXPECT_THAT(taken(), ElementsAre("left down"));
    other->close();
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

TEST_F(EventsTest, DiscardingStopsAtTheEventThatIsNamed) {
    const auto left = [] {
        Log keys;
        while (const Ref<NSEvent> e = NSApp()->nextEventMatchingMask_untilDate_inMode_dequeue(
                   NSKeyDownMask, NSRunLoop::mainRunLoop()->now(), NSDefaultRunLoopMode, YES))
            keys.push_back(e->characters()->utf8());
        return keys;
    };
    const auto next = [](BOOL dequeue) {
        return NSApp()->nextEventMatchingMask_untilDate_inMode_dequeue(NSKeyDownMask, NSRunLoop::mainRunLoop()->now(),
                                                                       NSDefaultRunLoopMode, dequeue);
    };
    for (const char16_t c : {u'a', u'b', u'c'})
        windows().keyDown(c);
    const Ref<NSEvent> a = next(YES);
    windows().advance(1);
    // The event that is being handled: what came after it stays.
    NSApp()->discardEventsMatchingMask_beforeEvent(NSKeyDownMask, a);
    const Ref<NSEvent> b = next(NO);
    NSApp()->discardEventsMatchingMask_beforeEvent(NSKeyDownMask, b);
    EXPECT_THAT(left(), ElementsAre("b", "c"));
}

class Actor : public NSObject {
public:
    static void describe(ClassDescription<Actor>& c) { c.answers<&Actor::agit>("agit:"); }
    void agit(NSObject*) { ++calls; }
    int calls = 0;
};

TEST_F(EventsTest, AnActionWithoutATargetGoesUpFromTheKeyWindow) {
    const SEL action = sel("agit:");
    const Ref<Actor> ofKey = make<Actor>(), ofMain = make<Actor>(), ofApp = make<Actor>();
    EXPECT_FALSE(NSApp()->sendAction_to_from(action, nullptr, nullptr));
    NSApp()->setDelegate(ofApp);
    EXPECT_TRUE(NSApp()->sendAction_to_from(action, nullptr, nullptr));
    EXPECT_EQ(ofApp->calls, 1);
    const Ref<NSPanel> panel = make<NSPanel>(NSMakeRect(600, 400, 100, 100), NSTitledWindowMask);
    show(panel);
    ASSERT_TRUE(window->isMainWindow());
    window->setDelegate(ofMain);
    EXPECT_EQ(NSApp()->targetForAction_to_from(action, nullptr, nullptr), ofMain.get());
    panel->setDelegate(ofKey);
    EXPECT_EQ(NSApp()->targetForAction_to_from(action, nullptr, nullptr), ofKey.get());
    EXPECT_FALSE(NSApp()->sendAction_to_from(sel("inconnue:"), ofKey, nullptr));
    panel->orderOut(nullptr);
}

class KeyEquivalentView : public NSView {
public:
    static void describe(ClassDescription<KeyEquivalentView, NSView>&) {}
    using NSView::NSView;
    BOOL performKeyEquivalent(NSEvent* e) override {
        if (!(e->modifierFlags() & NSControlKeyMask) || !e->charactersIgnoringModifiers()->isEqualToString(u"k"_ns))
            return NO;
        ++taken;
        return YES;
    }
    int taken = 0;
};

TEST_F(EventsTest, AShortcutOfAViewIsTakenBeforeTheFirstResponderSeesTheKey) {
    const Ref<KeyEquivalentView> v = make<KeyEquivalentView>(NSMakeRect(0, 0, 10, 10));
    window->contentView()->addSubview(v);
    left->accepts = YES;
    window->makeFirstResponder(left);
    taken();
    windows().key(u'k', backend::modifierControl);
    drain();
    EXPECT_EQ(v->taken, 1);
    EXPECT_TRUE(taken().empty());
    windows().key(u'j', backend::modifierControl);
    drain();
    EXPECT_EQ(taken().size(), 1u);
}

class Closer : public NSObject {
public:
    static void describe(ClassDescription<Closer>& c) {
        c.answers<&Closer::reste>(op::applicationShouldTerminateAfterLastWindowClosed);
    }
    BOOL reste(NSApplication*) { return end; }
    BOOL end = NO;
};

TEST_F(EventsTest, TheLastWindowEndsTheRunUnlessTheDelegateHoldsOn) {
    const Ref<Closer> closer = make<Closer>();
    NSApp()->setDelegate(closer);
    const Ref<NSPanel> panel = make<NSPanel>(NSMakeRect(600, 400, 100, 100), NSTitledWindowMask);
    panel->orderFront(nullptr);
    int turnsAfter = 0;
    NSTimer::scheduledTimerWithTimeInterval_repeats_block(1, NO, [&](NSTimer*) { window->close(); });
    NSTimer::scheduledTimerWithTimeInterval_repeats_block(2, NO, [&](NSTimer*) {
        ++turnsAfter; // it went on
        closer->end = YES;
        window->makeKeyAndOrderFront(nullptr);
        window->close(); // a panel does not keep an application running
    });
    NSTimer::scheduledTimerWithTimeInterval_repeats_block(3, NO, [&](NSTimer*) { ADD_FAILURE() << "still running"; });
    NSApp()->run();
    EXPECT_EQ(turnsAfter, 1);
    NSRunLoop::mainRunLoop()->cancelAll();
}

TEST_F(EventsTest, AnExceptionOfOneHandlerDoesNotEndTheRun) {
    int after = 0;
    NSTimer::scheduledTimerWithTimeInterval_repeats_block(
        0.1, NO, [&](NSTimer*) { (void)window->contentView()->subviews()[99]; });
    NSTimer::scheduledTimerWithTimeInterval_repeats_block(0.2, NO, [&](NSTimer*) {
        ++after;
        NSApp()->stop(nullptr);
    });
    NSApp()->run();
    EXPECT_EQ(after, 1);
}

TEST_F(EventsTest, WindowsOnTheScreenAreUpdatedAfterEachEvent) {
    const Ref<NSWindow> hidden = windowAt({{400, 100}, {200, 200}});
    auto* centre = NSNotificationCenter::defaultCenter();
    const auto note = [&](NSNotification* n) {
        log.push_back(n->object() == window.get() ? "updated" : "hidden updated");
    };
    const Ref<NSObject> observer =
        centre->addObserverForName_object_queue_usingBlock(NSWindowDidUpdateNotification, nullptr, nullptr, note);
    move(window, 10, 10);
    (void)taken();
    windows().press();
    windows().release();
    drain();
    EXPECT_THAT(taken(), ElementsAre("left down", "updated", "left up", "updated"));
    drain();
    EXPECT_THAT(taken(), ElementsAre()) << "without an event nothing is told";
    centre->removeObserver(observer);
}

TEST_F(EventsTest, AModalRunThatAHandlerBreaksOffLeavesTheOthersFree) {
    const Ref<NSWindow> modal = windowAt({{600, 100}, {200, 200}});
    const Ref<LogView> v = viewIn(modal, {{0, 0}, {200, 200}}, "v");
    v->firstMouse = YES;
    v->onMouse = [](NSEvent*) { raiseNamed("Test", "out of here"); };
    modal->orderFront(nullptr);
    drain();
    windows().moveMouse(modal->convertBaseToScreen({5, 5}));
    windows().press();
    EXPECT_THROW(NSApp()->runModalForWindow(modal), NSExceptionRaised);
    EXPECT_EQ(NSApp()->modalWindow(), nullptr);
    v->onMouse = nullptr;
    release();
}

} // namespace
