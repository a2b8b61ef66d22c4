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
};

TEST_F(KCTransientPanelTest, OnlyAnUnrelatedWindowIsAskedAbout) {
    const Ref<DelegueQuiRefuse> delegue = make<DelegueQuiRefuse>();
    struct Cas {
        NSWindow* clique;
        BOOL refuse, ferme;
    };
    for (const Cas& c : {Cas{panel, NO, NO}, Cas{autre, NO, YES}, Cas{autre, YES, NO}, Cas{parent, YES, YES}}) {
        panel->setTransientDelegate(c.refuse ? delegue.get() : nullptr);
        if (panel->parentWindow() != parent) parent->addChildWindow_ordered(panel, NSWindowAbove);
        click(c.clique, 30, 30);
        EXPECT_EQ(panel->isVisible(), !c.ferme) << c.clique->frame().origin.x << " " << c.refuse;
        EXPECT_EQ(panel->eventMonitor() != nullptr, !c.ferme);
    }
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
