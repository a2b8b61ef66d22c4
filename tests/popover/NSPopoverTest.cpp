#include <popover/PopoverFixture.h>

#include <gmock/gmock.h>

#include <libvue/layout/KCFlippedView.h>
#include <libvue/platform/appkit/BalloonPlacement.h>
#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSPopover.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSException.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class NSPopoverTest : public PopoverFixture {
protected:
    void SetUp() override {
        PopoverFixture::SetUp();
        delegue = make<DelegueSysteme>(log);
        p = make<NSPopover>();
        p->setDelegate(delegue);
        p->setContentViewController(controleur());
    }
    void TearDown() override {
        p->close();
        p = nullptr;
        delegue = nullptr;
        PopoverFixture::TearDown();
    }
    void montreLe(NSUInteger edge = NSMaxYEdge) {
        p->showRelativeToRect_ofView_preferredEdge(NSZeroRect, ancre, edge);
        pass(kFondu);
    }
    [[nodiscard]] NSRect corps() const {
        NSView* contenu = p->contentViewController()->view();
        return p->window_()->convertRectToScreen(contenu->convertRect_toView(contenu->bounds(), nullptr));
    }
    [[nodiscard]] NSRect ancreEcran() const {
        return parent->convertRectToScreen(ancre->convertRect_toView(ancre->bounds(), nullptr));
    }

    Ref<DelegueSysteme> delegue;
    Ref<NSPopover> p;
};

TEST(BalloonPlacementTest, TheEdgeIsTheFirstWithRoomInItsOrder) {
    constexpr NSRect ecran{{0, 0}, {1000, 800}};
    struct Row {
        NSRect ancre;
        NSSize taille;
        NSRectEdge voulu, pris;
        NSPoint coin;
    };
    for (const Row& r : {
             Row{{{500, 400}, {20, 20}}, {100, 50}, NSMaxYEdge, NSMaxYEdge, {460, 430}},
             Row{{{500, 400}, {20, 20}}, {100, 50}, NSMinYEdge, NSMinYEdge, {460, 340}},
             Row{{{500, 400}, {20, 20}}, {100, 50}, NSMinXEdge, NSMinXEdge, {390, 385}},
             Row{{{500, 400}, {20, 20}}, {100, 50}, NSMaxXEdge, NSMaxXEdge, {530, 385}},
             // No room: the opposite one.
             Row{{{500, 760}, {20, 20}}, {100, 50}, NSMaxYEdge, NSMinYEdge, {460, 700}},
             Row{{{30, 400}, {20, 20}}, {100, 50}, NSMinXEdge, NSMaxXEdge, {60, 385}},
             // Neither: one of the others.
             Row{{{500, 0}, {20, 800}}, {100, 50}, NSMaxYEdge, NSMinXEdge, {390, 375}},
             // Slid along the anchor.
             Row{{{980, 400}, {20, 20}}, {100, 50}, NSMaxYEdge, NSMaxYEdge, {900, 430}},
             Row{{{0, 780}, {20, 20}}, {100, 50}, NSMaxXEdge, NSMaxXEdge, {30, 750}},
             // Larger than the screen: its beginning shows.
             Row{{{500, 400}, {20, 20}}, {2000, 50}, NSMaxYEdge, NSMaxYEdge, {0, 430}},
         }) {
        SCOPED_TRACE(testing::Message() << r.ancre.origin.x << " " << r.ancre.origin.y << " " << r.voulu);
        const BalloonPlacement b = placeBalloon(r.ancre, ecran, r.taille, r.voulu);
        EXPECT_EQ(b.edge, r.pris);
        EXPECT_EQ(b.body.origin, r.coin);
        EXPECT_EQ(b.body.size, r.taille);
    }
}

TEST_F(NSPopoverTest, ShowingAndClosingAreToldInOrder) {
    std::vector<std::string> postees;
    const Ref<NSObject> jeton = NSNotificationCenter::defaultCenter()->addObserverForName_object_queue_usingBlock(
        nullptr, p, nullptr, [&](NSNotification* n) { postees.push_back(n->name()->utf8()); });
    p->showRelativeToRect_ofView_preferredEdge(NSZeroRect, ancre, NSMaxYEdge);
    EXPECT_THAT(taken(), ElementsAre(kVaMontrer));
    EXPECT_EQ(p->window_()->alphaValue(), 0);
    pass(kFondu);
    EXPECT_EQ(p->window_()->alphaValue(), 1);
    EXPECT_THAT(taken(), ElementsAre(kMontre));
    EXPECT_EQ(p->window_()->parentWindow(), parent.get());
    EXPECT_EQ(corps().size, kContenu.size);
    EXPECT_EQ(NSMinY(corps()), NSMaxY(ancreEcran()) + balloon::kArrowLength);
    EXPECT_EQ(NSMidX(corps()), NSMidX(ancreEcran()));

    p->close();
    EXPECT_TRUE(p->isShown());
    p->close();
    EXPECT_THAT(taken(), ElementsAre(kVaFermer));
    pass(kFondu);
    EXPECT_THAT(taken(), ElementsAre(kFerme));
    EXPECT_EQ(p->window_(), nullptr);
    EXPECT_EQ(p->contentViewController()->view()->superview(), nullptr);
    NSNotificationCenter::defaultCenter()->removeObserver(jeton);
    EXPECT_THAT(postees, ElementsAre("NSPopoverWillShowNotification", "NSPopoverDidShowNotification",
                                     "NSPopoverWillCloseNotification", "NSPopoverDidCloseNotification"));

    p->setAnimates(NO);
    p->showRelativeToRect_ofView_preferredEdge(NSZeroRect, ancre, NSMaxYEdge);
    p->close();
    EXPECT_THAT(taken(), ElementsAre(kVaMontrer, kMontre, kVaFermer, kFerme));
}

TEST_F(NSPopoverTest, TheContentMayBeSetWhenItIsAboutToShow) {
    const Ref<NSViewController> autre = controleur({{0, 0}, {70, 30}});
    const Ref<NSObject> jeton = NSNotificationCenter::defaultCenter()->addObserverForName_object_queue_usingBlock(
        NSPopoverWillShowNotification, p, nullptr, [&](NSNotification*) {
            p->setContentViewController(autre);
            EXPECT_EQ(p->contentSize(), NSMakeSize(70, 30));
        });
    montreLe();
    EXPECT_EQ(corps().size, NSMakeSize(70, 30));
    NSNotificationCenter::defaultCenter()->removeObserver(jeton);
}

/// Closes the popover as it is asked for its view.
class ControleurQuiFerme : public NSViewController {
public:
    static void describe(ClassDescription<ControleurQuiFerme, NSViewController>&) {}
    NSPopover* popover = nullptr;
    void loadView() override {
        popover->close();
        setView(make<NSView>(NSMakeRect(0, 0, 20, 20)));
    }
};

TEST_F(NSPopoverTest, LoadingTheContentMayCloseIt) {
    p->setAnimates(NO);
    for (const bool montre : {false, true}) {
        const Ref<ControleurQuiFerme> c = make<ControleurQuiFerme>();
        c->popover = p;
        if (montre) montreLe();
        p->setContentViewController(c);
        if (!montre) montreLe();
        EXPECT_FALSE(p->isShown());
        EXPECT_EQ(p->window_(), nullptr);
        p->setContentViewController(controleur());
    }
}

TEST_F(NSPopoverTest, ItsBehaviourSaysWhatCloses) {
    const Ref<NSWindow> autre = windowAt({{50, 50}, {200, 100}});
    autre->orderFront(nullptr);
    struct Geste {
        const char* quoi;
        std::function<void()> fait;
        bool ferme[3]; ///< by behaviour
    };
    const Geste gestes[] = {
        {"a click in it", [&] { click(p->window_(), 40, 40); }, {false, false, false}},
        {"a click in the parent", [&] { click(parent, 5, 5); }, {false, true, true}},
        {"a click elsewhere", [&] { click(autre, 100, 50); }, {false, true, false}},
        {"Escape", [&] { windows().key(NSEscapeCharacter); }, {false, true, true}},
    };
    for (const NSPopoverBehavior b :
         {NSPopoverBehaviorApplicationDefined, NSPopoverBehaviorTransient, NSPopoverBehaviorSemitransient})
        for (const Geste& g : gestes) {
            SCOPED_TRACE(testing::Message() << g.quoi << ", behaviour " << b);
            p->setBehavior(b);
            parent->makeKeyAndOrderFront(nullptr);
            montreLe();
            taken();
            g.fait();
            pass(kFondu);
            EXPECT_EQ(p->isShown(), !g.ferme[b]);
            // The user is asked about in the delegate's words.
            const Log dit = taken();
            EXPECT_EQ(std::count(dit.begin(), dit.end(), "should close"), g.ferme[b] ? 1 : 0);
            p->close();
            pass(kFondu);
        }
    // A delegate that refuses keeps it; a click outside goes to what it hit in any case.
    delegue->permet = NO;
    p->setBehavior(NSPopoverBehaviorTransient);
    parent->makeKeyAndOrderFront(nullptr);
    montreLe();
    taken();
    // The anchor is free right up to the arrow's tip.
    click(parent, NSMidX(ancre->frame()), NSMaxY(ancre->frame()) - 2);
    EXPECT_THAT(taken(), ElementsAre("should close", "anchor down", "anchor up"));
    EXPECT_TRUE(p->isShown());
    autre->close();
}

TEST_F(NSPopoverTest, WhatCanTakeTheKeysTakesThemAndEscapeCloses) {
    const Ref<NSTextField> champ = make<NSTextField>(NSMakeRect(10, 10, 80, 22));
    p->contentViewController()->view()->addSubview(champ);
    p->setBehavior(NSPopoverBehaviorTransient);
    montreLe();
    EXPECT_TRUE(p->window_()->isKeyWindow());
    windows().typeText(u"ab");
    drain();
    EXPECT_EQ(champ->stringValue()->utf8(), "ab");
    // The first one is the field's, which gives up what was typed.
    windows().key(NSEscapeCharacter);
    pass(kFondu);
    EXPECT_EQ(champ->stringValue()->length(), 0U);
    EXPECT_TRUE(p->isShown());
    windows().key(NSEscapeCharacter);
    pass(kFondu);
    EXPECT_FALSE(p->isShown());
    EXPECT_TRUE(parent->isKeyWindow());
    champ->removeFromSuperview();
}

TEST_F(NSPopoverTest, OfTwoOnTopOfEachOtherEscapeClosesTheUpperOne) {
    p->setBehavior(NSPopoverBehaviorTransient);
    montreLe();
    const Ref<NSPopover> haut = make<NSPopover>();
    haut->setContentViewController(controleur());
    haut->setBehavior(NSPopoverBehaviorTransient);
    for (const bool echappe : {true, false}) {
        haut->showRelativeToRect_ofView_preferredEdge(NSZeroRect, p->contentViewController()->view(), NSMaxXEdge);
        pass(kFondu);
        click(haut->window_(), 30, 30);
        echappe ? windows().key(NSEscapeCharacter) : p->close(); // which takes the other one along
        pass(kFondu);
        EXPECT_FALSE(haut->isShown());
        EXPECT_EQ(p->isShown(), echappe);
    }
}

TEST_F(NSPopoverTest, ItFollowsItsAnchorAndGoesWithIt) {
    p->setBehavior(NSPopoverBehaviorSemitransient);
    montreLe();
    const auto cote = [&] { return NSMinY(corps()) - NSMaxY(ancreEcran()); };
    ancre->setFrameOrigin({60, 140});
    EXPECT_EQ(cote(), balloon::kArrowLength);
    EXPECT_EQ(NSMidX(corps()), NSMidX(ancreEcran()));
    p->setPositioningRect(NSMakeRect(0, 0, 10, 10));
    EXPECT_EQ(NSMidX(corps()), NSMinX(ancreEcran()) + 5);
    const NSRect avant = corps();
    parent->setFrameOrigin({parent->frame().origin.x - 50, parent->frame().origin.y + 20});
    EXPECT_EQ(corps(), NSOffsetRect(avant, -50, 20));
    // In sight no more.
    ancre->setFrameOrigin({-500, 140});
    pass(kFondu);
    EXPECT_FALSE(p->isShown());
    ancre->setFrameOrigin({60, 140});

    for (const bool ferme : {false, true}) {
        SCOPED_TRACE(ferme ? "closed" : "miniaturised");
        montreLe();
        taken();
        ferme ? parent->close() : parent->miniaturize(nullptr);
        EXPECT_FALSE(p->isShown());
        EXPECT_THAT(taken(), ElementsAre(kVaFermer, kFerme));
        parent->deminiaturize(nullptr);
        drain();
    }
}

TEST_F(NSPopoverTest, ANewSizeGlidesWhereItAnimates) {
    montreLe();
    p->setContentSize({200, 100});
    EXPECT_EQ(corps().size, kContenu.size);
    pass(0.08);
    EXPECT_GT(corps().size.width, kContenu.size.width);
    EXPECT_LT(corps().size.width, 200);
    pass(kFondu);
    EXPECT_EQ(corps().size, (NSSize{200, 100}));
    EXPECT_EQ(NSMidX(corps()), NSMidX(ancreEcran()));
    p->setAnimates(NO);
    p->setContentSize({90, 40});
    EXPECT_EQ(corps().size, (NSSize{90, 40}));
    EXPECT_EQ(NSMinY(corps()), NSMaxY(ancreEcran()) + balloon::kArrowLength);
    p->close();
}

TEST_F(NSPopoverTest, TheEdgesOfAFlippedViewAreItsOwn) {
    const Ref<KCFlippedView> vue = make<KCFlippedView>(NSMakeRect(150, 140, 40, 20));
    parent->contentView()->addSubview(vue);
    p->setAnimates(NO);
    for (const auto& [edge, dessus] : {std::pair<NSUInteger, bool>{NSMinYEdge, true}, {NSMaxYEdge, false}}) {
        p->showRelativeToRect_ofView_preferredEdge(NSZeroRect, vue, edge);
        const NSRect a = parent->convertRectToScreen(vue->convertRect_toView(vue->bounds(), nullptr));
        EXPECT_EQ(NSMinY(corps()) > NSMinY(a), dessus);
        p->close();
    }
}

TEST_F(NSPopoverTest, DraggedOffItBecomesTheDelegatesWindow) {
    const auto traine = [&](CGFloat dx, CGFloat dy) {
        const NSRect c = corps();
        windows().moveMouse({NSMidX(c), NSMidY(c)});
        windows().press();
        windows().moveMouse({NSMidX(c) + 6, NSMidY(c)});
        windows().moveMouse({NSMidX(c) + 6 + dx, NSMidY(c) + dy});
        windows().release();
        drain();
    };
    p->setBehavior(NSPopoverBehaviorTransient);
    montreLe();
    traine(50, 40); // no window: it stays
    EXPECT_TRUE(p->isShown());
    taken();

    const NSRect avant = corps();
    delegue->fenetre = windowAt({{0, 0}, {10, 10}});
    traine(50, 40);
    EXPECT_THAT(taken(), ElementsAre("NSPopoverWillCloseNotification to window shown",
                                     "NSPopoverDidCloseNotification to window"));
    EXPECT_FALSE(p->isShown());
    NSWindow* w = delegue->fenetre;
    EXPECT_TRUE(w->isVisible());
    // The same content, where the pointer took it.
    EXPECT_EQ(p->contentViewController()->view()->window(), w);
    EXPECT_EQ(p->contentViewController()->view()->frame().size, kContenu.size);
    const NSRect apres = w->contentRectForFrameRect(w->frame());
    EXPECT_EQ(apres.size, avant.size);
    EXPECT_NEAR(apres.origin.x, avant.origin.x + 56, 0.5);
    EXPECT_NEAR(apres.origin.y, avant.origin.y + 40, 0.5);
    // Shown again, the balloon takes its content back.
    montreLe();
    EXPECT_EQ(p->contentViewController()->view()->window(), p->window_());
    p->close();
    w->close();
    pass(kFondu);
    delegue->fenetre = nullptr;
}

TEST_F(NSPopoverTest, OddCallsAreTakenWell) {
    EXPECT_THROW(p->showRelativeToRect_ofView_preferredEdge(NSZeroRect, nullptr, NSMaxYEdge), NSExceptionRaised);
    const Ref<NSView> seule = make<NSView>();
    EXPECT_THROW(p->showRelativeToRect_ofView_preferredEdge(NSZeroRect, seule, NSMaxYEdge), NSExceptionRaised);
    p->close();
    p->performClose(nullptr);
    EXPECT_THAT(taken(), IsEmpty());
    // Shown while it fades out: closed, and open again.
    montreLe();
    p->close();
    taken();
    montreLe(77);
    EXPECT_TRUE(p->isShown());
    EXPECT_THAT(taken(), ElementsAre(kFerme, kVaMontrer, kMontre));
    // Shown elsewhere while it is up.
    const Ref<NSWindow> autre = windowAt({{50, 50}, {200, 100}});
    autre->orderFront(nullptr);
    p->showRelativeToRect_ofView_preferredEdge(NSZeroRect, autre->contentView(), NSMaxYEdge);
    EXPECT_EQ(p->window_()->parentWindow(), autre.get());
    EXPECT_THAT(taken(), IsEmpty());
    autre->close();
    EXPECT_FALSE(p->isShown());
    // Without content it is small.
    p->setContentViewController(nullptr);
    montreLe();
    EXPECT_TRUE(p->isShown());
}

} // namespace
