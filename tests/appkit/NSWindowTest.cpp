#include <appkit/WindowFixture.h>
#include <foundation/Valeurs.h>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/platform/appkit/NSScreen.h>
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

/// `window` has a content of 400 by 300 points at (100, 100) and is not shown yet.
struct WindowTest : HiddenWindowFixture {
    Ref<NSWindow> other = windowAt({{600, 100}, {100, 100}});
    Ref<Watcher> watcher = make<Watcher>(log, "w");

    WindowTest() { window->setDelegate(watcher); }
    static Ref<NSWindow> bare(const NSRect& frame) { return windowAt(frame, NSBorderlessWindowMask); }
    /// From the front to the back.
    static std::vector<NSWindow*> order() {
        std::vector<NSWindow*> all;
        const Ref<NSArray> ordered = NSApp()->orderedWindows();
        for (NSWindow* w : ordered->as<NSWindow>())
            all.push_back(w);
        return all;
    }
};

TEST_F(WindowTest, FramesGoRoundTheContent) {
    EXPECT_EQ(window->frame(), NSMakeRect(100, 100, 400, 322));
    EXPECT_EQ(window->contentView()->frame(), NSMakeRect(0, 0, 400, 300));
    const Ref<NSWindow> borderless = bare({{100, 100}, {300, 200}});
    EXPECT_EQ(borderless->frame(), NSMakeRect(100, 100, 300, 200));
    EXPECT_EQ(borderless->convertBaseToScreen({5, 6}), NSMakePoint(105, 106));
    EXPECT_EQ(borderless->convertRectFromScreen({{105, 106}, {1, 2}}), NSMakeRect(5, 6, 1, 2));
    window->setContentSize({100, 50});
    EXPECT_EQ(NSMaxY(window->frame()), 422); // hangs from its top
    EXPECT_EQ(window->contentView()->frame().size, NSMakeSize(100, 50));
    window->setFrame_display({{0, 0}, {NAN, 10}}, NO);
    window->setMinSize({NAN, -5});
    window->setMaxSize({NAN, INFINITY});
    window->setContentSize({NAN, 10});
    EXPECT_EQ(window->contentView()->frame().size, NSMakeSize(100, 50));
    EXPECT_EQ(window->minSize(), NSZeroSize);
    EXPECT_EQ(window->maxSize(), NSMakeSize(NSWindow::unlimited, NSWindow::unlimited));
    EXPECT_EQ(bare({{NAN, 10}, {INFINITY, 50}})->frame(), NSMakeRect(0, 10, 0, 50));
}

TEST_F(WindowTest, TheDesktopsDecorationIsTakenOverOnceItIsKnown) {
    windows().setFrameInsets({30, 2, 3, 2});
    show(window);
    EXPECT_EQ(native(window).content, NSMakeRect(100, 100, 400, 300));
    EXPECT_EQ(window->frame(), NSMakeRect(98, 97, 404, 333));
    window->setFrameOrigin({50, 50});
    EXPECT_EQ(native(window).content, NSMakeRect(52, 53, 400, 300));
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
}

TEST_F(WindowTest, MovesAndSizesOfTheUserArriveWithTheirNotifications) {
    show(window);
    taken();
    windows().moveByUser(window->nativeId_(), {120, 130});
    drain();
    EXPECT_EQ(window->frame().origin, NSMakePoint(120, 130));
    EXPECT_THAT(taken(), ElementsAre("w moved"));
    windows().resizeByUser(window->nativeId_(), {{120, 130}, {350, 260}});
    drain();
    EXPECT_EQ(window->contentView()->frame().size, NSMakeSize(350, 260));
    EXPECT_THAT(taken(), ElementsAre("w resized"));
    window->setFrame_display(window->frame(), NO);
    EXPECT_THAT(taken(), ElementsAre()) << "nothing changed";
    window->setMinSize({300, 200});
    windows().resizeByUser(window->nativeId_(), {{120, 130}, {10, 10}});
    drain();
    EXPECT_EQ(window->contentView()->frame().size, NSMakeSize(300, 200));
}

TEST_F(WindowTest, DelegateAndWindowMayDieInANotification) {
    show(window);
    taken();
    watcher->onSay = [&] { watcher = nullptr; };
    window->setFrame_display({{150, 150}, {400, 200}}, NO);
    EXPECT_THAT(taken(), ElementsAre("w resized")); // gone before the move is told
    EXPECT_EQ(window->delegate(), nullptr);
    other = nullptr;
    const Ecoute ear(NSWindowDidMoveNotification, window, [&](NSNotification*) {
        if (const Ref<NSWindow> w = std::exchange(window, nullptr)) w->close();
    });
    windows().moveByUser(window->nativeId_(), {1, 1});
    drain();
    EXPECT_FALSE(window);
    EXPECT_EQ(NSApp()->windows()->count(), 0u);
}

TEST_F(WindowTest, ChildrenFollowTheirParent) {
    const Ref<NSWindow> child = bare({{150, 150}, {50, 50}}), grandchild = bare({{160, 160}, {10, 10}});
    show(window);
    window->addChildWindow_ordered(child, NSWindowAbove);
    child->addChildWindow_ordered(grandchild, NSWindowAbove);
    EXPECT_TRUE(child->isVisible() && grandchild->isVisible()); // they come on the screen with the call
    EXPECT_EQ(native(child).parent, window->nativeId_());

    windows().moveByUser(window->nativeId_(), {130, 90});
    drain();
    EXPECT_EQ(child->frame().origin, NSMakePoint(180, 140));
    EXPECT_EQ(native(grandchild).content.origin, NSMakePoint(190, 150));

    window->orderOut(nullptr);
    EXPECT_FALSE(child->isVisible() || grandchild->isVisible());
    window->orderFront(nullptr);
    EXPECT_TRUE(grandchild->isVisible());

    window->removeChildWindow(child);
    EXPECT_EQ(child->parentWindow(), nullptr);
    EXPECT_TRUE(child->isVisible());
    window->setFrameOrigin({0, 0});
    EXPECT_EQ(child->frame().origin, NSMakePoint(180, 140));
    grandchild->addChildWindow_ordered(child, NSWindowAbove); // a window is never below itself
    EXPECT_EQ(child->parentWindow(), nullptr);

    window->addChildWindow_ordered(child, NSWindowAbove);
    window = nullptr; // a parent that goes leaves its children alive
    EXPECT_EQ(child->parentWindow(), nullptr);
    child->setFrameOrigin({1, 2});
    EXPECT_EQ(native(child).content.origin, NSMakePoint(1, 2));
}

TEST_F(WindowTest, TheKeyStatusPassesOnWhenAWindowGoes) {
    const Ref<NSWindow> borderless = bare({{400, 0}, {100, 100}});
    const Ref<Watcher> ofOther = make<Watcher>(log, "o");
    other->setDelegate(ofOther);
    show(window);
    show(other);
    borderless->orderFront(nullptr);
    borderless->makeKeyWindow();
    drain();
    EXPECT_TRUE(other->isKeyWindow() && other->isMainWindow()) << "without a title bar it cannot be key";
    taken();
    other->orderOut(nullptr);
    drain();
    EXPECT_TRUE(window->isKeyWindow() && window->isMainWindow());
    EXPECT_THAT(taken(), ElementsAre("o no key", "w key"));
    window->orderOut(nullptr);
    drain();
    EXPECT_EQ(NSApp()->keyWindow(), nullptr);
    EXPECT_EQ(NSApp()->mainWindow(), nullptr);
    EXPECT_THAT(taken(), ElementsAre("w no key"));

    // One that is chosen while the old one resigns stays chosen.
    show(other);
    show(window);
    const Ref<NSWindow> third = windowAt({{400, 0}, {100, 100}});
    third->orderFront(nullptr);
    watcher->onSay = [&] { third->makeKeyWindow(); };
    other->makeKeyWindow();
    drain();
    EXPECT_TRUE(third->isKeyWindow());
}

TEST_F(WindowTest, LosingTheFocusToAnotherApplicationIsToldAndUndone) {
    const Ref<NSPanel> palette = make<NSPanel>(NSMakeRect(300, 0, 50, 50), NSTitledWindowMask);
    palette->setHidesOnDeactivate(YES);
    show(window);
    palette->orderFront(nullptr);
    drain();
    for (const bool active : {false, true}) {
        backend::Event e;
        e.kind = active ? backend::Event::Kind::focusIn : backend::Event::Kind::focusOut;
        e.window = window->nativeId_();
        windows().post(e);
        drain();
        EXPECT_EQ(NSApp()->isActive(), active);
        EXPECT_EQ(window->isKeyWindow(), active);
        EXPECT_EQ(window->isMainWindow(), active);
        EXPECT_EQ(palette->isVisible(), active);
    }
}

TEST_F(WindowTest, APanelTakesTheKeysOnlyForAViewThatNeedsThem) {
    const Ref<NSPanel> panel = make<NSPanel>(NSMakeRect(600, 0, 200, 100), NSTitledWindowMask);
    panel->setBecomesKeyOnlyIfNeeded(YES);
    const Ref<LogView> plain = viewIn(panel, {{0, 0}, {100, 100}}, "plain"),
                       typing = viewIn(panel, {{100, 0}, {100, 100}}, "typing");
    typing->accepts = typing->firstMouse = YES;
    show(window);
    panel->orderFront(nullptr);
    drain();
    taken();
    EXPECT_FALSE(native(panel).acceptsFocus);
    click(panel, 10, 10);
    EXPECT_TRUE(window->isKeyWindow());
    EXPECT_THAT(taken(), ElementsAre("plain down", "plain up"));
    window->setDelegate(nullptr);
    click(panel, 150, 10);
    EXPECT_TRUE(panel->isKeyWindow() && window->isMainWindow());
    EXPECT_EQ(windows().focusedWindow(), panel->nativeId_());
    EXPECT_THAT(taken(), ElementsAre("typing become", "typing down", "typing up"));
    click(window, 10, 10);
    EXPECT_TRUE(window->isKeyWindow());
    EXPECT_FALSE(native(panel).acceptsFocus);
}

TEST_F(WindowTest, ClosingAsksTellsAndLetsGo) {
    show(window);
    taken();
    watcher->closes = NO;
    windows().requestClose(window->nativeId_());
    drain();
    EXPECT_THAT(taken(), ElementsAre("w should close"));
    EXPECT_TRUE(window->isVisible());
    watcher->closes = YES;
    watcher->onSay = [&] { window->close(); }; // closing within is no second closing
    window->performClose(nullptr);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(std::count(log.begin(), log.end(), "w will close"), 1);

    const Weak<NSWindow> weak(window);
    window = nullptr;
    EXPECT_FALSE(weak);

    other->setReleasedWhenClosed(YES);
    show(other);
    const Weak<NSWindow> keepsItself(std::exchange(other, nullptr));
    ASSERT_TRUE(keepsItself);
    keepsItself->close();
    EXPECT_FALSE(keepsItself);
}

TEST_F(WindowTest, DraggingTheBackgroundMovesTheWindowAfterTheDragIsTold) {
    const Ref<NSWindow> w = bare({{100, 100}, {200, 200}});
    w->setMovableByWindowBackground(YES);
    const Ref<LogView> v = viewIn(w, {{0, 0}, {100, 100}}, "v");
    w->setDelegate(watcher);
    w->orderFront(nullptr);
    drain();
    taken();
    const auto drag = [&](std::initializer_list<NSPoint> way) {
        windows().moveMouse({110, 110});
        windows().press();
        for (const NSPoint& p : way) {
            drain();
            windows().moveMouse(p);
        }
        drain();
        release();
    };
    drag({{125, 117}, {130, 120}});
    EXPECT_THAT(taken(), ElementsAre("v down", "v drag", "w moved", "v drag", "w moved", "v up"));
    EXPECT_EQ(w->frame().origin, NSMakePoint(120, 110));
    w->setMovable(NO);
    drag({{0, 0}});
    EXPECT_EQ(w->frame().origin, NSMakePoint(120, 110));
}

TEST_F(WindowTest, WindowsAreListedFrontToBackByLevel) {
    const Ref<NSWindow> high = windowAt({{0, 0}, {10, 10}});
    NSWindow *a = window, *b = other, *c = high;
    c->setLevel(NSFloatingWindowLevel);
    for (NSWindow* w : {c, a, b})
        w->orderFront(nullptr);
    EXPECT_THAT(order(), ElementsAre(c, b, a));
    b->orderBack(nullptr);
    EXPECT_THAT(order(), ElementsAre(c, a, b));
    a->orderWindow_relativeTo(NSWindowBelow, b->windowNumber());
    EXPECT_THAT(order(), ElementsAre(c, b, a));
    c->orderOut(nullptr);
    EXPECT_THAT(order(), ElementsAre(b, a));
    EXPECT_EQ(NSApp()->windows()->count(), 3u);
}

TEST_F(WindowTest, MiniaturizingPassesTheKeyStatusAndComesBack) {
    show(window);
    show(other);
    const auto hears = [&](NSString* name) {
        return std::make_unique<Ecoute>(name, other.get(),
                                        [&](NSNotification* n) { log.push_back(n->name()->utf8()); });
    };
    const auto will = hears(NSWindowWillMiniaturizeNotification.get()),
               did = hears(NSWindowDidMiniaturizeNotification.get()),
               back = hears(NSWindowDidDeminiaturizeNotification.get());
    window->setDelegate(nullptr);
    taken();
    other->miniaturize(nullptr);
    drain();
    EXPECT_TRUE(other->isMiniaturized());
    EXPECT_FALSE(other->isVisible());
    EXPECT_TRUE(window->isKeyWindow());
    other->deminiaturize(nullptr);
    drain();
    EXPECT_TRUE(other->isVisible() && other->isKeyWindow());
    EXPECT_THAT(taken(), ElementsAre("NSWindowWillMiniaturizeNotification", "NSWindowDidMiniaturizeNotification",
                                     "NSWindowDidDeminiaturizeNotification"));
}

TEST_F(WindowTest, FramesAreKeptInTheSettings) {
    NSUserDefaults* settings = NSUserDefaults::standardUserDefaults();
    const Ref<NSString> essai = u"NSWindow Frame essai"_ns, loin = u"NSWindow Frame loin"_ns;
    settings->removeObjectForKey(essai);
    EXPECT_TRUE(window->setFrameAutosaveName(u"essai"_ns));
    window->setFrame_display({{120, 140}, {320, 240}}, NO);
    EXPECT_FALSE(settings->objectForKey(essai)); // not at each step of a move
    pass(1);
    EXPECT_TRUE(settings->objectForKey(essai));
    window->setFrame_display({{120, 150}, {320, 240}}, NO);
    EXPECT_FALSE(other->setFrameAutosaveName(u"essai"_ns)); // one window a name
    window = nullptr;
    EXPECT_TRUE(other->setFrameAutosaveName(u"essai"_ns));
    EXPECT_EQ(other->frame(), NSMakeRect(120, 150, 320, 240)); // saved at the latest as the window went

    // A frame on a screen that is gone comes back onto one that is there.
    settings->setObject_forKey(NSStringFromRect({{5000, 5000}, {320, 240}}), loin);
    EXPECT_TRUE(other->setFrameUsingName(u"loin"_ns));
    EXPECT_TRUE(other->screen());
    settings->setObject_forKey(u"rien de bon"_ns, loin);
    EXPECT_FALSE(other->setFrameUsingName(u"loin"_ns));
    other = nullptr;
    settings->removeObjectForKey(essai);
    settings->removeObjectForKey(loin);
}

TEST_F(WindowTest, ScreensAreThoseOfTheDesktop) {
    windows().setScreens({{{{0, 0}, {1000, 800}}, {{0, 0}, {1000, 775}}, 1, "un"},
                          {{{1000, 0}, {500, 500}}, {{1000, 0}, {500, 500}}, 2, "deux"}});
    drain();
    EXPECT_EQ(NSScreen::screens()->count(), 2u);
    window->setFrameOrigin({850, 100});
    EXPECT_EQ(window->screen()->backingScaleFactor(), 2); // where most of it is
    int told = 0;
    const Ecoute ear(NSWindowDidChangeScreenNotification, window, [&](NSNotification*) { ++told; });
    show(window);
    window->setFrameOrigin({10, 10});
    EXPECT_EQ(told, 1);
    EXPECT_EQ(window->screen(), NSScreen::mainScreen());
    window->setFrameOrigin({-5000, 10});
    EXPECT_EQ(window->screen(), nullptr);
}

} // namespace
