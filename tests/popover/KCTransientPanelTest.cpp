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
    Ref<DelegueQuiRefuse> refus = make<DelegueQuiRefuse>();

    void SetUp() override {
        PopoverFixture::SetUp();
        // Over the parent's content, and beside it a window that is no relation.
        panel = make<KCTransientPanel>(NSMakeRect(500, 450, 200, 100), NSBorderlessWindowMask);
        autre = windowAt({{20, 20}, {100, 100}});
        (void)viewIn(autre, {{0, 0}, {100, 100}}, "other");
        autre->orderFront(nullptr);
        montreSousParent();
    }
    void TearDown() override {
        panel->orderOut(nullptr);
        autre->close();
        panel = nullptr;
        autre = nullptr;
        PopoverFixture::TearDown();
    }
    void montreSousParent() {
        parent->makeKeyWindow();
        if (panel->parentWindow() != parent) parent->addChildWindow_ordered(panel, NSWindowAbove);
        drain();
        taken();
    }
};

TEST_F(KCTransientPanelTest, WhatClosesItAndWhatIsAskedAbout) {
    auto* centre = NSNotificationCenter::defaultCenter();
    struct Cas {
        const char* quoi;
        std::function<void()> fait;
        BOOL ferme, fermeMalgreRefus;
    };
    const Cas cas[] = {
        {"a click in it", [&] { click(panel, 30, 30); }, NO, NO},
        {"a click in the parent", [&] { click(parent, 30, 30); }, YES, YES},
        {"a click elsewhere", [&] { click(autre, 30, 30); }, YES, NO},
        {"key status", [&] { autre->makeKeyWindow(); }, YES, NO},
        {"active", [&] { centre->postNotificationName_object(NSApplicationWillResignActiveNotification, NSApp()); },
         YES, NO},
        {"closing", [&] { centre->postNotificationName_object(NSWindowWillCloseNotification, parent); }, YES, YES},
    };
    for (const Cas& c : cas)
        for (const BOOL refuse : {NO, YES}) {
            SCOPED_TRACE(testing::Message() << c.quoi << (refuse ? ", refused" : ""));
            montreSousParent();
            // A click elsewhere takes the keys along, and that is asked about by itself.
            panel->setTransientDelegate(refuse ? refus.get() : nullptr);
            c.fait();
            const BOOL ferme = refuse ? c.fermeMalgreRefus : c.ferme;
            EXPECT_EQ(panel->isVisible(), !ferme);
            EXPECT_EQ(panel->eventMonitor() != nullptr, !ferme);
        }
}

TEST_F(KCTransientPanelTest, GrandparentsArmAsWell) {
    const Ref<NSPanel> milieu = make<NSPanel>(NSMakeRect(850, 300, 100, 100), NSTitledWindowMask);
    parent->addChildWindow_ordered(milieu, NSWindowAbove);
    milieu->addChildWindow_ordered(panel, NSWindowAbove);
    panel->setTransientDelegate(refus);
    press(parent, 30, 30);
    EXPECT_TRUE(panel->pretAFermer());
    release();
    EXPECT_FALSE(panel->isVisible());
    milieu->close();
}

TEST_F(KCTransientPanelTest, AKeyPanelIsNotArmed) {
    panel->setTransientDelegate(refus);
    panel->setStyleMask(NSTitledWindowMask);
    panel->makeKeyWindow();
    drain();
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
    panel->setPretAFermer(YES);
    panel->orderFront(nullptr);
    EXPECT_TRUE(panel->pretAFermer()) << "it watches already";
    panel->orderOut(nullptr);
    EXPECT_EQ(panel->parentWindow(), nullptr);
    panel->orderFront(nullptr);
    EXPECT_FALSE(panel->pretAFermer());
    autre->makeKeyWindow();
    parent->makeKeyWindow(); // the other one resigns
    EXPECT_FALSE(panel->isVisible());
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
