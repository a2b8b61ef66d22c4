#include <appkit/AppFixture.h>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/platform/appkit/NSScreen.h>
#include <libvue/platform/appkit/NSWindowController.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSUserDefaults.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

/// A delegate that logs, and lets a test step in.
class Watcher : public NSObject {
public:
    static void describe(ClassDescription<Watcher>& c) {
        c.answers<&Watcher::moved>(op::windowDidMove);
        c.answers<&Watcher::resized>(op::windowDidResize);
        c.answers<&Watcher::key>(op::windowDidBecomeKey);
        c.answers<&Watcher::noKey>(op::windowDidResignKey);
        c.answers<&Watcher::should>(op::windowShouldClose);
        c.answers<&Watcher::will>(op::windowWillClose);
    }
    Watcher(Log& log, std::string name) : log_(log), name_(std::move(name)) {}

    void moved(NSNotification*) { say("moved"); }
    void resized(NSNotification*) { say("resized"); }
    void key(NSNotification*) { say("key"); }
    void noKey(NSNotification*) { say("no key"); }
    BOOL should(NSObject*) {
        say("should close");
        return closes;
    }
    void will(NSNotification*) { say("will close"); }
    BOOL closes = YES;
    std::function<void()> onSay;

private:
    void say(const char* what) {
        log_.push_back(name_ + " " + what);
        if (const auto step = onSay) step();
    }
    Log& log_;
    std::string name_;
};

class WindowTest : public AppFixture {};

TEST_F(WindowTest, FramesGoRoundTheContent) {
    const Ref<NSWindow> titled = windowAt({{100, 100}, {300, 200}});
    EXPECT_EQ(titled->frame(), NSMakeRect(100, 100, 300, 222));
    EXPECT_EQ(titled->contentView()->frame(), NSMakeRect(0, 0, 300, 200));
    const Ref<NSWindow> bare = windowAt({{100, 100}, {300, 200}}, NSBorderlessWindowMask);
    EXPECT_EQ(bare->frame(), NSMakeRect(100, 100, 300, 200));
    EXPECT_EQ(bare->convertBaseToScreen({5, 6}), NSMakePoint(105, 106));
    EXPECT_EQ(bare->convertRectFromScreen({{105, 106}, {1, 2}}), NSMakeRect(5, 6, 1, 2));
    titled->setContentSize({100, 50});
    EXPECT_EQ(NSMaxY(titled->frame()), 322); // hangs from its top
    EXPECT_EQ(titled->contentView()->frame().size, NSMakeSize(100, 50));
    titled->setFrame_display({{0, 0}, {NAN, 10}}, NO);
    EXPECT_EQ(titled->contentView()->frame().size, NSMakeSize(100, 50));
}

TEST_F(WindowTest, TheDesktopsDecorationIsTakenOverOnceItIsKnown) {
    windows().setFrameInsets({30, 2, 3, 2});
    const Ref<NSWindow> w = windowAt({{100, 100}, {300, 200}});
    show(w);
    EXPECT_EQ(native(w).content, NSMakeRect(100, 100, 300, 200));
    EXPECT_EQ(w->frame(), NSMakeRect(98, 97, 304, 233));
    w->setFrameOrigin({50, 50});
    EXPECT_EQ(native(w).content, NSMakeRect(52, 53, 300, 200));
}

TEST_F(WindowTest, AStyleChangeLeavesTheContentWhereItIs) {
    const Ref<NSPanel> panel = make<NSPanel>(NSMakeRect(200, 200, 150, 80), NSBorderlessWindowMask);
    panel->orderFront(nullptr);
    drain();
    const NSRect content = panel->contentRectForFrameRect(panel->frame());
    panel->setStyleMask(NSTitledWindowMask | NSClosableWindowMask | NSUtilityWindowMask);
    EXPECT_EQ(panel->contentRectForFrameRect(panel->frame()), content);
    EXPECT_EQ(panel->frame().size.height, 102);
    EXPECT_EQ(native(panel).content, content);
    EXPECT_TRUE(native(panel).spec.titled);
    EXPECT_TRUE(panel->canBecomeKeyWindow());
    panel->close();
}

TEST_F(WindowTest, MovesAndSizesOfTheUserArriveWithTheirNotifications) {
    const Ref<NSWindow> w = windowAt({{100, 100}, {300, 200}});
    const Ref<Watcher> watcher = make<Watcher>(log, "w");
    show(w);
    w->setDelegate(watcher);
    windows().moveByUser(w->nativeId_(), {120, 130});
    drain();
    EXPECT_EQ(w->frame().origin, NSMakePoint(120, 130));
    EXPECT_THAT(taken(), ElementsAre("w moved"));
    windows().resizeByUser(w->nativeId_(), {{120, 130}, {350, 260}});
    drain();
    EXPECT_EQ(w->contentView()->frame().size, NSMakeSize(350, 260));
    EXPECT_THAT(taken(), ElementsAre("w resized"));
    w->setFrame_display(w->frame(), NO);
    EXPECT_TRUE(taken().empty()); // nothing changed
    w->setMinSize({300, 200});
    windows().resizeByUser(w->nativeId_(), {{120, 130}, {10, 10}});
    drain();
    EXPECT_EQ(w->contentView()->frame().size, NSMakeSize(300, 200));
}

TEST_F(WindowTest, ADelegateMayDieInItsOwnNotification) {
    const Ref<NSWindow> w = windowAt({{100, 100}, {300, 200}});
    show(w);
    Ref<Watcher> watcher = make<Watcher>(log, "w");
    w->setDelegate(watcher);
    watcher->onSay = [&] { watcher = nullptr; };
    w->setFrame_display({{150, 150}, {400, 300}}, NO);
    EXPECT_THAT(taken(), ElementsAre("w resized")); // gone before the move is told
    EXPECT_EQ(w->delegate(), nullptr);
}

TEST_F(WindowTest, AWindowMayDieInAnObserversCall) {
    Ref<NSWindow> w = windowAt({{100, 100}, {300, 200}});
    show(w);
    Ref<NSObject> token = NSNotificationCenter::defaultCenter()->addObserverForName_object_queue_usingBlock(
        NSWindowDidMoveNotification, w, nullptr, [&](NSNotification*) {
            if (!w) return;
            w->close();
            w = nullptr;
        });
    windows().moveByUser(w->nativeId_(), {1, 1});
    drain();
    EXPECT_FALSE(w);
    EXPECT_EQ(NSApp()->windows()->count(), 0u);
    NSNotificationCenter::defaultCenter()->removeObserver(token);
}

TEST_F(WindowTest, ChildrenFollowTheirParent) {
    const Ref<NSWindow> parent = windowAt({{100, 100}, {300, 200}});
    const Ref<NSWindow> child = windowAt({{150, 150}, {50, 50}}, NSBorderlessWindowMask);
    const Ref<NSWindow> grandchild = windowAt({{160, 160}, {10, 10}}, NSBorderlessWindowMask);
    show(parent);
    parent->addChildWindow_ordered(child, NSWindowAbove);
    child->addChildWindow_ordered(grandchild, NSWindowAbove);
    EXPECT_TRUE(child->isVisible()); // comes on the screen with the call
    EXPECT_TRUE(grandchild->isVisible());
    EXPECT_EQ(native(child).parent, parent->nativeId_());

    windows().moveByUser(parent->nativeId_(), {130, 90});
    drain();
    EXPECT_EQ(child->frame().origin, NSMakePoint(180, 140));
    EXPECT_EQ(grandchild->frame().origin, NSMakePoint(190, 150));
    EXPECT_EQ(native(grandchild).content.origin, NSMakePoint(190, 150));

    parent->orderOut(nullptr);
    EXPECT_FALSE(child->isVisible());
    EXPECT_FALSE(grandchild->isVisible());
    parent->orderFront(nullptr);
    EXPECT_TRUE(grandchild->isVisible());

    parent->removeChildWindow(child);
    EXPECT_EQ(child->parentWindow(), nullptr);
    EXPECT_TRUE(child->isVisible());
    parent->setFrameOrigin({0, 0});
    EXPECT_EQ(child->frame().origin, NSMakePoint(180, 140));

    // A window is never below itself.
    grandchild->addChildWindow_ordered(child, NSWindowAbove);
    EXPECT_EQ(child->parentWindow(), nullptr);
}

TEST_F(WindowTest, AParentThatGoesLeavesItsChildrenAlive) {
    const Ref<NSWindow> child = windowAt({{150, 150}, {50, 50}}, NSBorderlessWindowMask);
    {
        const Ref<NSWindow> parent = windowAt({{100, 100}, {300, 200}});
        show(parent);
        parent->addChildWindow_ordered(child, NSWindowAbove);
    }
    EXPECT_EQ(child->parentWindow(), nullptr);
    child->setFrameOrigin({1, 2});
    EXPECT_EQ(native(child).content.origin, NSMakePoint(1, 2));
}

TEST_F(WindowTest, TheKeyStatusPassesOnWhenAWindowGoes) {
    const Ref<NSWindow> a = windowAt({{0, 0}, {100, 100}}), b = windowAt({{200, 0}, {100, 100}});
    const Ref<NSWindow> bare = windowAt({{400, 0}, {100, 100}}, NSBorderlessWindowMask);
    const Ref<Watcher> ofA = make<Watcher>(log, "a"), ofB = make<Watcher>(log, "b");
    show(a);
    show(b);
    bare->orderFront(nullptr);
    drain();
    EXPECT_TRUE(b->isKeyWindow() && b->isMainWindow());
    bare->makeKeyWindow();
    EXPECT_TRUE(b->isKeyWindow()); // without a title bar it cannot be key
    a->setDelegate(ofA);
    b->setDelegate(ofB);
    b->orderOut(nullptr);
    drain();
    EXPECT_TRUE(a->isKeyWindow() && a->isMainWindow());
    EXPECT_THAT(taken(), ElementsAre("b no key", "a key"));
    a->orderOut(nullptr);
    drain();
    EXPECT_EQ(NSApp()->keyWindow(), nullptr);
    EXPECT_EQ(NSApp()->mainWindow(), nullptr);
    EXPECT_THAT(taken(), ElementsAre("a no key"));
}

TEST_F(WindowTest, AWindowThatIsChosenWhileTheOldOneResignsStaysChosen) {
    const Ref<NSWindow> a = windowAt({{0, 0}, {100, 100}}), b = windowAt({{200, 0}, {100, 100}}),
                        c = windowAt({{400, 0}, {100, 100}});
    show(c);
    show(b);
    show(a);
    const Ref<Watcher> watcher = make<Watcher>(log, "a");
    watcher->onSay = [&] { c->makeKeyWindow(); };
    a->setDelegate(watcher);
    b->makeKeyWindow();
    drain();
    EXPECT_TRUE(c->isKeyWindow());
}

TEST_F(WindowTest, LosingTheFocusToAnotherApplicationIsToldAndUndone) {
    const Ref<NSWindow> w = windowAt({{0, 0}, {100, 100}});
    const Ref<NSPanel> palette = make<NSPanel>(NSMakeRect(300, 0, 50, 50), NSTitledWindowMask);
    palette->setHidesOnDeactivate(YES);
    show(w);
    palette->orderFront(nullptr);
    drain();
    ASSERT_TRUE(NSApp()->isActive());
    backend::Event out;
    out.kind = backend::Event::Kind::focusOut;
    out.window = w->nativeId_();
    windows().post(out);
    drain();
    EXPECT_FALSE(NSApp()->isActive());
    EXPECT_FALSE(w->isKeyWindow());
    EXPECT_FALSE(w->isMainWindow());
    EXPECT_FALSE(palette->isVisible());
    out.kind = backend::Event::Kind::focusIn;
    windows().post(out);
    drain();
    EXPECT_TRUE(NSApp()->isActive());
    EXPECT_TRUE(w->isKeyWindow());
    EXPECT_TRUE(palette->isVisible());
    palette->orderOut(nullptr);
}

TEST_F(WindowTest, APanelTakesTheKeysOnlyForAViewThatNeedsThem) {
    const Ref<NSWindow> w = windowAt({{0, 0}, {100, 100}});
    const Ref<NSPanel> panel = make<NSPanel>(NSMakeRect(300, 0, 200, 100), NSTitledWindowMask);
    panel->setBecomesKeyOnlyIfNeeded(YES);
    const Ref<LogView> plain = viewIn(panel, {{0, 0}, {100, 100}}, "plain");
    const Ref<LogView> typing = viewIn(panel, {{100, 0}, {100, 100}}, "typing");
    typing->accepts = YES;
    show(w);
    panel->orderFront(nullptr);
    drain();
    EXPECT_FALSE(native(panel).acceptsFocus);
    click(panel, 10, 10);
    EXPECT_TRUE(w->isKeyWindow());
    EXPECT_THAT(taken(), ElementsAre("plain down", "plain up"));
    typing->firstMouse = YES;
    click(panel, 150, 10);
    EXPECT_TRUE(panel->isKeyWindow());
    EXPECT_TRUE(w->isMainWindow());
    EXPECT_EQ(windows().focusedWindow(), panel->nativeId_());
    EXPECT_THAT(taken(), ElementsAre("typing become", "typing down", "typing up"));
    click(w, 10, 10);
    EXPECT_TRUE(w->isKeyWindow());
    EXPECT_FALSE(native(panel).acceptsFocus);
    panel->orderOut(nullptr);
}

TEST_F(WindowTest, ClosingAsksTellsAndLetsGo) {
    Ref<NSWindow> w = windowAt({{0, 0}, {100, 100}});
    const Ref<Watcher> watcher = make<Watcher>(log, "w");
    show(w);
    w->setDelegate(watcher);
    watcher->closes = NO;
    windows().requestClose(w->nativeId_());
    drain();
    EXPECT_THAT(taken(), ElementsAre("w should close"));
    EXPECT_TRUE(w->isVisible());
    watcher->closes = YES;
    watcher->onSay = [&] { w->close(); }; // closing within is no second closing
    w->performClose(nullptr);
    EXPECT_FALSE(w->isVisible());
    EXPECT_EQ(std::count(log.begin(), log.end(), "w will close"), 1);
    EXPECT_EQ(w->parentWindow(), nullptr);

    const Weak<NSWindow> weak(w);
    w = nullptr;
    EXPECT_FALSE(weak);
}

TEST_F(WindowTest, AWindowMayKeepItselfUntilItIsClosed) {
    Weak<NSWindow> weak;
    {
        const Ref<NSWindow> w = windowAt({{0, 0}, {100, 100}});
        w->setReleasedWhenClosed(YES);
        weak = w;
        show(w);
    }
    ASSERT_TRUE(weak);
    weak->close();
    EXPECT_FALSE(weak);
}

TEST_F(WindowTest, DraggingTheBackgroundMovesTheWindowAfterTheDragIsTold) {
    const Ref<NSWindow> w = windowAt({{100, 100}, {200, 200}}, NSBorderlessWindowMask);
    w->setMovableByWindowBackground(YES);
    const Ref<LogView> v = viewIn(w, {{0, 0}, {100, 100}}, "v");
    const Ref<Watcher> watcher = make<Watcher>(log, "w");
    w->setDelegate(watcher);
    w->orderFront(nullptr);
    drain();
    log.clear();
    windows().moveMouse({110, 110});
    windows().press();
    drain();
    windows().moveMouse({125, 117});
    drain();
    windows().moveMouse({130, 120});
    drain();
    windows().release();
    drain();
    EXPECT_THAT(taken(), ElementsAre("v down", "v drag", "w moved", "v drag", "w moved", "v up"));
    EXPECT_EQ(w->frame().origin, NSMakePoint(120, 110));
    w->setMovable(NO);
    windows().press();
    windows().moveMouse({0, 0});
    windows().release();
    drain();
    EXPECT_EQ(w->frame().origin, NSMakePoint(120, 110));
}

TEST_F(WindowTest, WindowsAreListedFrontToBackByLevel) {
    const Ref<NSWindow> a = windowAt({{0, 0}, {10, 10}}), b = windowAt({{0, 0}, {10, 10}}),
                        c = windowAt({{0, 0}, {10, 10}});
    c->setLevel(NSFloatingWindowLevel);
    c->orderFront(nullptr);
    a->orderFront(nullptr);
    b->orderFront(nullptr);
    const auto order = [] {
        std::vector<NSInteger> numbers;
        const Ref<NSArray> windows = NSApp()->orderedWindows();
        for (NSWindow* w : windows->as<NSWindow>())
            numbers.push_back(w->windowNumber());
        return numbers;
    };
    EXPECT_THAT(order(), ElementsAre(c->windowNumber(), b->windowNumber(), a->windowNumber()));
    b->orderBack(nullptr);
    EXPECT_THAT(order(), ElementsAre(c->windowNumber(), a->windowNumber(), b->windowNumber()));
    a->orderWindow_relativeTo(NSWindowBelow, b->windowNumber());
    EXPECT_THAT(order(), ElementsAre(c->windowNumber(), b->windowNumber(), a->windowNumber()));
    c->orderOut(nullptr);
    EXPECT_THAT(order(), ElementsAre(b->windowNumber(), a->windowNumber()));
    EXPECT_EQ(NSApp()->windows()->count(), 3u);
}

TEST_F(WindowTest, MiniaturizingPassesTheKeyStatusAndComesBack) {
    const Ref<NSWindow> a = windowAt({{0, 0}, {100, 100}}), b = windowAt({{200, 0}, {100, 100}});
    show(a);
    show(b);
    Log told;
    std::vector<Ref<NSObject>> tokens;
    for (NSString* name : {NSWindowWillMiniaturizeNotification.get(), NSWindowDidMiniaturizeNotification.get(),
                           NSWindowDidDeminiaturizeNotification.get()})
        tokens.push_back(NSNotificationCenter::defaultCenter()->addObserverForName_object_queue_usingBlock(
            name, b, nullptr, [&](NSNotification* n) { told.push_back(n->name()->utf8()); }));
    b->miniaturize(nullptr);
    drain();
    EXPECT_TRUE(b->isMiniaturized());
    EXPECT_FALSE(b->isVisible());
    EXPECT_TRUE(a->isKeyWindow());
    b->deminiaturize(nullptr);
    drain();
    EXPECT_TRUE(b->isVisible() && b->isKeyWindow());
    EXPECT_THAT(told, ElementsAre("NSWindowWillMiniaturizeNotification", "NSWindowDidMiniaturizeNotification",
                                  "NSWindowDidDeminiaturizeNotification"));
    for (const auto& t : tokens)
        NSNotificationCenter::defaultCenter()->removeObserver(t);
}

TEST_F(WindowTest, FramesAreKeptInTheSettings) {
    NSUserDefaults* settings = NSUserDefaults::standardUserDefaults();
    settings->removeObjectForKey(u"NSWindow Frame essai"_ns);
    {
        const Ref<NSWindow> w = windowAt({{100, 100}, {300, 200}});
        EXPECT_TRUE(w->setFrameAutosaveName(u"essai"_ns));
        w->setFrame_display({{120, 140}, {320, 240}}, NO);
        EXPECT_FALSE(settings->objectForKey(u"NSWindow Frame essai"_ns)); // not at each step of a move
        pass(1);
        EXPECT_TRUE(settings->objectForKey(u"NSWindow Frame essai"_ns));
        w->setFrame_display({{120, 150}, {320, 240}}, NO);
        const Ref<NSWindow> other = windowAt({{0, 0}, {10, 10}});
        EXPECT_FALSE(other->setFrameAutosaveName(u"essai"_ns)); // one window a name
    }
    Ref<NSWindow> again = windowAt({{0, 0}, {10, 10}});
    EXPECT_TRUE(again->setFrameAutosaveName(u"essai"_ns));
    EXPECT_EQ(again->frame(), NSMakeRect(120, 150, 320, 240)); // saved at the latest as the window went

    // A frame on a screen that is gone comes back onto one that is there.
    settings->setObject_forKey(NSStringFromRect({{5000, 5000}, {320, 240}}), u"NSWindow Frame loin"_ns);
    EXPECT_TRUE(again->setFrameUsingName(u"loin"_ns));
    EXPECT_TRUE(again->screen());
    settings->setObject_forKey(u"rien de bon"_ns, u"NSWindow Frame loin"_ns);
    EXPECT_FALSE(again->setFrameUsingName(u"loin"_ns));
    again = nullptr;
    settings->removeObjectForKey(u"NSWindow Frame essai"_ns);
    settings->removeObjectForKey(u"NSWindow Frame loin"_ns);
}

TEST_F(WindowTest, ScreensAreThoseOfTheDesktop) {
    windows().setScreens({{{{0, 0}, {1000, 800}}, {{0, 0}, {1000, 775}}, 1, "un"},
                          {{{1000, 0}, {500, 500}}, {{1000, 0}, {500, 500}}, 2, "deux"}});
    drain();
    EXPECT_EQ(NSScreen::screens()->count(), 2u);
    const Ref<NSWindow> w = windowAt({{950, 100}, {300, 200}});
    EXPECT_EQ(w->screen()->backingScaleFactor(), 2); // where most of it is
    int told = 0;
    const Ref<NSObject> token = NSNotificationCenter::defaultCenter()->addObserverForName_object_queue_usingBlock(
        NSWindowDidChangeScreenNotification, w, nullptr, [&](NSNotification*) { ++told; });
    show(w);
    w->setFrameOrigin({10, 10});
    EXPECT_EQ(told, 1);
    EXPECT_EQ(w->screen(), NSScreen::mainScreen());
    w->setFrameOrigin({-5000, 10});
    EXPECT_EQ(w->screen(), nullptr);
    NSNotificationCenter::defaultCenter()->removeObserver(token);
}

class LoadingController : public NSWindowController {
public:
    static void describe(ClassDescription<LoadingController, NSWindowController>&) {}
    void loadWindow() override {
        ++loads;
        setWindow(make<NSWindow>(NSMakeRect(0, 0, 50, 50), NSTitledWindowMask));
    }
    int loads = 0;
};

TEST_F(WindowTest, AControllerLoadsItsWindowOnceAndStandsBehindIt) {
    Ref<LoadingController> controller = make<LoadingController>();
    EXPECT_FALSE(controller->isWindowLoaded());
    controller->showWindow(nullptr);
    const Ref<NSWindow> w = controller->window();
    EXPECT_EQ(controller->loads, 1);
    EXPECT_TRUE(w->isKeyWindow());
    EXPECT_EQ(w->nextResponder(), controller.get());
    controller->close();
    EXPECT_FALSE(w->isVisible());
    controller = nullptr;
    EXPECT_EQ(w->windowController(), nullptr);
    EXPECT_EQ(w->nextResponder(), nullptr);
}

} // namespace
