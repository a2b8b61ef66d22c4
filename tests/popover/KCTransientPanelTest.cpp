#include <popover/PopoverFixture.h>

#include <gmock/gmock.h>

#include <libvue/popover/KCTransientPanel.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class DelegueQuiRefuse : public NSObject {
public:
    static void describe(ClassDescription<DelegueQuiRefuse>& c) {
        c.answers<&DelegueQuiRefuse::refuse>(op::transientPanelShouldCloseOnParentWindowResignActive);
        c.answers<&DelegueQuiRefuse::refuse>(op::transientPanelShouldCloseOnParentWindowResignKey);
        c.answers<&DelegueQuiRefuse::refuse>(op::transientPanelShouldCloseOnUnrelatedWindowUsage);
    }
    BOOL refuse(KCTransientPanel*) { return NO; }
};

class DelegueQuiFerme : public NSObject {
public:
    static void describe(ClassDescription<DelegueQuiFerme>& c) {
        c.answers<&DelegueQuiFerme::ferme>(op::transientPanelClose);
    }
    explicit DelegueQuiFerme(Log& log) : log_(log) {}
    void ferme(KCTransientPanel* p) {
        log_.push_back(std::string("close, ") + (p->parentWindow() ? "with" : "without") + " parent, " +
                       (p->eventMonitor() ? "watching" : "not watching"));
    }

private:
    Log& log_;
};

struct KCTransientPanelTest : PopoverFixture {
    Ref<KCTransientPanel> panel;
    Ref<NSWindow> autre;
    Ref<LogView> vueDuPanneau, vueDeLAutre;

    void SetUp() override {
        PopoverFixture::SetUp();
        // Over the parent's content, and beside it a window that is no relation.
        panel = make<KCTransientPanel>(NSMakeRect(500, 450, 200, 100), NSBorderlessWindowMask);
        vueDuPanneau = viewIn(panel, {{0, 0}, {200, 100}}, "panel");
        autre = windowAt({{20, 20}, {100, 100}});
        vueDeLAutre = viewIn(autre, {{0, 0}, {100, 100}}, "other");
        autre->orderFront(nullptr);
        parent->addChildWindow_ordered(panel, NSWindowAbove);
        drain();
        taken();
    }
    void TearDown() override {
        panel->orderOut(nullptr);
        autre->close();
        vueDuPanneau = vueDeLAutre = nullptr;
        panel = nullptr;
        autre = nullptr;
        PopoverFixture::TearDown();
    }
    [[nodiscard]] NSWindow* nommee(const std::string& nom) const {
        return nom == "panel" ? panel.get() : nom == "other" ? autre.get() : parent.get();
    }
};

// Scripts: what is done where, and what becomes of the panel. p press, d drag, r release, by button.
TEST_F(KCTransientPanelTest, PressesArmDragsDisarmReleasesClose) {
    struct Cas {
        const char* quoi;
        const char* fenetre;
        int bouton;
        const char* gestes;
        BOOL refuse;
        BOOL ferme;
    };
    for (const Cas& c : {
             Cas{"left click in the parent", "parent", 0, "pr", NO, YES},
             Cas{"right click in the parent", "parent", 1, "pr", NO, YES},
             Cas{"other click in the parent", "parent", 2, "pr", NO, YES},
             Cas{"a press alone", "parent", 0, "p", NO, NO},
             Cas{"left drag in the parent", "parent", 0, "pdr", NO, NO},
             Cas{"right drag in the parent: it does not disarm", "parent", 1, "pdr", NO, YES},
             Cas{"other drag in the parent", "parent", 2, "pdr", NO, YES},
             Cas{"the panel itself", "panel", 0, "pr", NO, NO},
             Cas{"the panel itself, right", "panel", 1, "pr", NO, NO},
             Cas{"an unrelated window", "other", 0, "pr", NO, YES},
             Cas{"an unrelated window that does not count", "other", 0, "pr", YES, NO},
             Cas{"a parent counts in any case", "parent", 0, "pr", YES, YES},
         }) {
        const Ref<DelegueQuiRefuse> delegue = make<DelegueQuiRefuse>();
        panel->setTransientDelegate(c.refuse ? delegue.get() : nullptr);
        if (panel->parentWindow() != parent) parent->addChildWindow_ordered(panel, NSWindowAbove);
        panel->setPretAFermer(NO);
        NSWindow* w = nommee(c.fenetre);
        const CGFloat x = 30;
        for (const char* g = c.gestes; *g; ++g) {
            if (*g == 'p') press(w, x, 30, c.bouton);
            if (*g == 'd') move(w, x + 20, 35);
            if (*g == 'r') release(c.bouton);
        }
        EXPECT_EQ(panel->isVisible(), !c.ferme) << c.quoi;
        EXPECT_EQ(panel->eventMonitor() != nullptr, !c.ferme) << c.quoi;
        if (NSEvent::pressedMouseButtons()) {
            EXPECT_TRUE(panel->pretAFermer()) << c.quoi;
            move(w, x + 20, 35); // so that the release means nothing
            release(c.bouton);
        }
    }
}

TEST_F(KCTransientPanelTest, TheClickIsTakenAwayFromNobody) {
    click(parent, 160, 110);
    EXPECT_THAT(taken(), ElementsAre("anchor down", "anchor up"));
    EXPECT_FALSE(panel->isVisible());
    parent->addChildWindow_ordered(panel, NSWindowAbove);
    press(parent, 160, 110, 1);
    release(1);
    EXPECT_THAT(taken(), ElementsAre("anchor right"));
}

TEST_F(KCTransientPanelTest, GrandparentsArmAsWell) {
    const Ref<NSPanel> milieu = make<NSPanel>(NSMakeRect(850, 300, 100, 100), NSTitledWindowMask);
    parent->addChildWindow_ordered(milieu, NSWindowAbove);
    milieu->addChildWindow_ordered(panel, NSWindowAbove);
    const Ref<DelegueQuiRefuse> delegue = make<DelegueQuiRefuse>();
    panel->setTransientDelegate(delegue);
    press(parent, 30, 30);
    EXPECT_TRUE(panel->pretAFermer());
    release();
    EXPECT_FALSE(panel->isVisible());
    milieu->close();
}

TEST_F(KCTransientPanelTest, AKeyPanelIsNotArmed) {
    const Ref<DelegueQuiRefuse> delegue = make<DelegueQuiRefuse>();
    panel->setTransientDelegate(delegue);
    panel->setStyleMask(NSTitledWindowMask);
    panel->makeKeyWindow();
    drain();
    ASSERT_TRUE(panel->isKeyWindow());
    // The desktop moves the focus before the press arrives: the press found the panel key all the same.
    press(parent, 30, 30);
    EXPECT_TRUE(parent->isKeyWindow());
    EXPECT_FALSE(panel->pretAFermer());
    release();
    EXPECT_TRUE(panel->isVisible());
    // The next one does not.
    click(parent, 30, 30);
    EXPECT_FALSE(panel->isVisible());
}

TEST_F(KCTransientPanelTest, AWheelOverThePanelScrollsNothingBeneath) {
    // Over the panel, as if its window had let the wheel through.
    windows().moveMouse({520, 470});
    drain();
    taken();
    const auto molette = [&](NSWindow* w) {
        NSEvent::Fields f;
        f.type = NSScrollWheel;
        f.windowNumber = w->windowNumber();
        f.location = w->convertScreenToBase({560, 405});
        NSApp()->postEvent_atStart(make<NSEvent>(std::move(f)), NO);
        drain();
    };
    molette(parent);
    EXPECT_THAT(taken(), IsEmpty());
    windows().wheel(0, 1); // to the panel itself
    drain();
    EXPECT_THAT(taken(), ElementsAre("panel wheel"));
    windows().moveMouse({560, 405});
    drain();
    taken();
    molette(parent);
    EXPECT_THAT(taken(), ElementsAre("anchor wheel"));
}

TEST_F(KCTransientPanelTest, NewsOfTheParentCloseIt) {
    struct Cas {
        const char* quoi;
        std::function<void()> fait;
        BOOL refuse;
        BOOL ferme;
    };
    const auto perdCle = [&] { autre->makeKeyWindow(); };
    const auto inactive = [&] {
        NSNotificationCenter::defaultCenter()->postNotificationName_object(NSApplicationWillResignActiveNotification,
                                                                           NSApp());
    };
    const auto fermeture = [&] {
        NSNotificationCenter::defaultCenter()->postNotificationName_object(NSWindowWillCloseNotification, parent);
    };
    const std::vector<Cas> cas{{"key status", perdCle, NO, YES}, {"key status, refused", perdCle, YES, NO},
                               {"active", inactive, NO, YES},    {"active, refused", inactive, YES, NO},
                               {"closing", fermeture, NO, YES},  {"closing is not asked about", fermeture, YES, YES}};
    for (const Cas& c : cas) {
        parent->makeKeyWindow();
        if (panel->parentWindow() != parent) parent->addChildWindow_ordered(panel, NSWindowAbove);
        const Ref<DelegueQuiRefuse> delegue = make<DelegueQuiRefuse>();
        panel->setTransientDelegate(c.refuse ? delegue.get() : nullptr);
        c.fait();
        EXPECT_EQ(panel->isVisible(), !c.ferme) << c.quoi;
    }
}

TEST_F(KCTransientPanelTest, ADelegateThatClosesFindsItCleanedUp) {
    const Ref<DelegueQuiFerme> delegue = make<DelegueQuiFerme>(log);
    panel->setTransientDelegate(delegue);
    panel->ferme();
    EXPECT_THAT(taken(), ElementsAre("close, without parent, not watching"));
    EXPECT_TRUE(panel->isVisible());
    panel->orderOut(nullptr);
    panel->ferme(); // not visible: nothing
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(KCTransientPanelTest, OnTheScreenWithoutAParentItWatchesAnyWindow) {
    panel->orderOut(nullptr);
    EXPECT_EQ(panel->parentWindow(), nullptr);
    panel->orderFront(nullptr);
    ASSERT_NE(panel->eventMonitor(), nullptr);
    autre->makeKeyWindow();
    parent->makeKeyWindow(); // the other one resigns
    EXPECT_FALSE(panel->isVisible());
}

TEST_F(KCTransientPanelTest, ComingAgainRearmsNothing) {
    panel->setPretAFermer(YES);
    NSObject* jeton = panel->eventMonitor();
    panel->orderFront(nullptr);
    EXPECT_EQ(panel->eventMonitor(), jeton);
    EXPECT_TRUE(panel->pretAFermer());
    panel->orderOut(nullptr);
    panel->orderFront(nullptr);
    EXPECT_FALSE(panel->pretAFermer());
}

TEST_F(KCTransientPanelTest, ItsEndTakesOnlyItsOwnEventsAlong) {
    const auto poste = [&](NSWindow* w) {
        NSEvent::Fields f;
        f.type = NSRightMouseDown;
        f.windowNumber = w->windowNumber();
        f.location = {30, 30};
        NSApp()->postEvent_atStart(make<NSEvent>(std::move(f)), NO);
    };
    Ref<KCTransientPanel> bref = make<KCTransientPanel>(NSMakeRect(0, 0, 50, 50), NSBorderlessWindowMask);
    poste(autre);
    poste(bref);
    bref = nullptr;
    drain();
    EXPECT_THAT(taken(), ElementsAre("other right"));
}

} // namespace
