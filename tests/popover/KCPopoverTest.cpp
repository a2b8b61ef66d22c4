#include <popover/PopoverFixture.h>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/NSTextField.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class KCPopoverTest : public PopoverFixture {
protected:
    Ref<DeleguePopover> delegue = make<DeleguePopover>(log);
    Ref<KCPopover> p = bulle();
    /// Elsewhere on the screen.
    Ref<NSWindow> autre;

    void SetUp() override {
        PopoverFixture::SetUp();
        autre = windowAt({{20, 20}, {100, 100}});
        p->setDelegate(delegue);
    }
    void TearDown() override {
        if (p) p->panel()->close();
        p = nullptr;
        delegue = nullptr;
        autre->close();
        autre = nullptr;
        PopoverFixture::TearDown();
    }
    [[nodiscard]] NSView* contenu() const { return p->contentViewController()->view(); }
    [[nodiscard]] NSPoint contenuEcran() const {
        return p->panel()->convertBaseToScreen(contenu()->convertPoint_toView({0, 0}, nullptr));
    }
};

TEST_F(KCPopoverTest, ShowingSplicesTheBalloonIntoTheChain) {
    EXPECT_FALSE(p->isShown());
    montre(p);
    EXPECT_TRUE(p->isShown());
    const Ref<NSView> focus(p->firstResponder());
    ASSERT_NE(focus, nullptr);
    EXPECT_EQ(parent->firstResponder(), focus.get());
    EXPECT_EQ(focus->superview(), parent->contentView());
    EXPECT_EQ(focus->nextResponder(), p->panel());
    EXPECT_EQ(p->panel()->nextResponder(), parent->contentView());
    EXPECT_EQ(p->panel()->parentWindow(), parent.get());
    EXPECT_TRUE(parent->isKeyWindow());
    EXPECT_EQ(contenu()->superview(), p->panel()->contentView());
    ferme(p);
    EXPECT_EQ(p->firstResponder(), nullptr);
    EXPECT_EQ(focus->superview(), nullptr);
}

TEST_F(KCPopoverTest, ClosingGoesInItsOrder) {
    const Ref<NSObject> jeton = NSNotificationCenter::defaultCenter()->addObserverForName_object_queue_usingBlock(
        NSWindowWillCloseNotification, p->panel(), nullptr, [&](NSNotification*) { log.emplace_back("will close"); });
    for (int fois = 0; fois < 2; ++fois) {
        montre(p);
        EXPECT_EQ(p->panel()->alphaValue(), 1);
        p->close();
        EXPECT_TRUE(p->fermetureEnCours());
        EXPECT_TRUE(p->isShown());
        pass(0.25);
        EXPECT_NEAR(p->panel()->alphaValue(), 0.5, 0.3);
        p->close(); // one is under way
        EXPECT_THAT(taken(), IsEmpty());
        pass(0.3);
        // The delegate first: a window tells its own delegate before its observers.
        EXPECT_THAT(taken(), ElementsAre("did close KCPopoverDidCloseNotification", "will close"));
        EXPECT_EQ(std::exchange(delegue->dernier, nullptr)->object(), p.get());
        EXPECT_FALSE(p->fermetureEnCours());
        EXPECT_FALSE(p->isShown());
        EXPECT_EQ(p->panel()->parentWindow(), nullptr);
    }
    NSNotificationCenter::defaultCenter()->removeObserver(jeton);
}

TEST_F(KCPopoverTest, WhatClosesAnAttachedBalloonBesideGestures) {
    const Ref<LogView> champ = viewIn(parent, {{10, 10}, {50, 20}}, "field");
    champ->accepts = YES;
    struct Cas {
        const char* quoi;
        std::function<void()> fait;
        BOOL ferme;
    };
    const Cas cas[] = {
        {"the focus goes elsewhere", [&] { parent->makeFirstResponder(champ); }, YES},
        {"a click on a view that takes the focus", [&] { click(parent, 20, 20); }, YES},
        {"moved by code", [&] { p->panel()->setFrameOrigin(NSMakePoint(300, 300)); }, NO},
        {"the parent moves", [&] { windows().moveByUser(parent->nativeId_(), NSMakePoint(350, 250)); }, NO},
        {"the parent is no longer key or main", [&] { show(autre); }, NO},
    };
    for (const Cas& c : cas) {
        show(parent);
        parent->makeFirstResponder(nullptr);
        montre(p);
        c.fait();
        drain();
        EXPECT_EQ(p->fermetureEnCours(), c.ferme) << c.quoi;
        EXPECT_TRUE(p->attachay()) << c.quoi;
        pass(kFondu);
        EXPECT_EQ(p->isShown(), !c.ferme) << c.quoi;
        ferme(p);
    }
}

TEST_F(KCPopoverTest, ATextInTheBalloonTakesTheKeysWhenItIsClicked) {
    const Ref<NSTextField> champ = make<NSTextField>(NSMakeRect(20, 20, 90, 22));
    contenu()->addSubview(champ);
    montre(p);
    EXPECT_FALSE(p->panel()->isKeyWindow());
    const NSRect ici = champ->convertRect_toView(champ->bounds(), nullptr);
    click(p->panel(), NSMidX(ici), NSMidY(ici));
    EXPECT_TRUE(p->panel()->isKeyWindow());
    EXPECT_TRUE(parent->isMainWindow());
    windows().typeText(u"oui");
    drain();
    EXPECT_FALSE(p->fermetureEnCours());

    // The same editor and caret go on in the free window.
    const Ref<NSResponder> editeur(p->panel()->firstResponder());
    p->decrochePopover();
    drain();
    EXPECT_EQ(p->panel()->firstResponder(), editeur.get());
    windows().typeText(u"!");
    drain();
    p->panel()->makeFirstResponder(nullptr);
    EXPECT_EQ(champ->stringValue()->utf8(), "oui!");
}

TEST_F(KCPopoverTest, DraggedOffItIsAWindowOfItsOwnWithTheSameContent) {
    contenu()->setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);
    montre(p);
    const NSRect f = p->panel()->frame();
    const NSPoint avant = contenuEcran();
    traine(p, 30, 40);
    EXPECT_FALSE(p->attachay());
    EXPECT_FALSE(p->panel()->dragEnCours());
    EXPECT_EQ(p->panel()->styleMask(), NSUInteger{19});
    EXPECT_EQ(p->panel()->parentWindow(), nullptr);
    EXPECT_TRUE(p->panel()->isFloatingPanel());
    EXPECT_TRUE(p->panel()->hidesOnDeactivate());
    EXPECT_EQ(contenu()->frame(), NSMakeRect(0, 5, 120, 60));
    // Moved by the drag and nothing else.
    EXPECT_EQ(contenuEcran(), NSMakePoint(avant.x + 30, avant.y + 40));
    EXPECT_EQ(p->panel()->contentRectForFrameRect(p->panel()->frame()),
              NSMakeRect(f.origin.x + 30 + 11, f.origin.y + 40 + 10, 120, 70));
    // It grows with its content, from the lower left corner.
    const NSPoint coin = p->panel()->frame().origin;
    p->contentWouldChangeSize(NSNotification::notificationWithName_object_userInfo(u"kViewWouldChangeBounds"_ns,
                                                                                   nullptr, taille({150, 100})));
    EXPECT_EQ(contenu()->frame(), NSMakeRect(0, 5, 150, 100));
    EXPECT_EQ(p->panel()->frame().origin, coin);
    p->panel()->performClose(nullptr); // its box: no fade
    EXPECT_FALSE(p->isShown());
    EXPECT_EQ(p->firstResponder(), nullptr);
    // Shown anew, it is a balloon again.
    montre(p);
    EXPECT_TRUE(p->attachay());
    EXPECT_EQ(p->panel()->styleMask(), NSUInteger{NSBorderlessWindowMask});
    EXPECT_EQ(p->panel()->frame().size, NSMakeSize(172, 130));
    EXPECT_EQ(contenu()->frame(), NSMakeRect(11, 15, 150, 100));
    EXPECT_FALSE(p->panel()->isFloatingPanel());
}

TEST_F(KCPopoverTest, ADragThatMayNotDetachOnlyMoves) {
    delegue->permet = NO;
    montre(p);
    const NSPoint origine = p->panel()->frame().origin;
    traine(p, 30, 40);
    EXPECT_TRUE(p->attachay());
    EXPECT_FALSE(p->panel()->dragEnCours());
    EXPECT_EQ(p->panel()->frame().origin, NSMakePoint(origine.x + 30, origine.y + 40));
    EXPECT_EQ(p->panel()->parentWindow(), parent.get());
}

TEST_F(KCPopoverTest, ADetachedBalloonComesAndGoesWithTheMainWindow) {
    montre(p);
    p->decrochePopover();
    show(autre);
    EXPECT_FALSE(p->isShown());
    show(parent);
    EXPECT_TRUE(p->isShown());
    EXPECT_FALSE(p->fermetureEnCours());
    // Its box closes it for good, in the middle of a fade too, and is told of once.
    p->close();
    pass(0.2);
    p->panel()->performClose(nullptr);
    pass(kFondu);
    EXPECT_THAT(taken(), ElementsAre("did close KCPopoverDidCloseNotification"));
    delegue->dernier = nullptr;
    show(autre);
    show(parent);
    EXPECT_FALSE(p->isShown());
    p->close();
    EXPECT_FALSE(p->fermetureEnCours()) << "not shown, there is nothing to fade";
}

TEST_F(KCPopoverTest, ItLivesWhileItIsShownAndThroughItsFade) {
    for (const bool echappe : {true, false}) {
        SCOPED_TRACE(echappe ? "Escape" : "the anchor's window closes");
        p = bulle();
        const Weak<KCPopover> reste = p.get();
        const Weak<MaFenetre> panel = p->panel();
        montre(p);
        p = nullptr;
        pass(1);
        echappe ? windows().key(NSEscapeCharacter) : parent->close();
        pass(0.4);
        EXPECT_TRUE(reste);
        pass(0.2);
        EXPECT_FALSE(reste);
        EXPECT_FALSE(panel);
    }
}

TEST_F(KCPopoverTest, ABalloonOnABalloonClosesWithIt) {
    contenu()->setFrameSize({300, 200});
    montre(p);
    Ref<KCPopover> dessus = bulle();
    const auto montreDessus = [&] {
        dessus->showRelativeToRect_ofView_preferredEdge({{10, 10}, {20, 20}}, contenu(), NSMaxXEdge);
        drain();
    };
    montreDessus();
    EXPECT_EQ(dessus->panel()->parentWindow(), p->panel());
    // A click in the upper one closes neither; one in the lower one closes the upper.
    click(dessus->panel(), 60, 40);
    EXPECT_FALSE(dessus->fermetureEnCours());
    click(p->panel(), 200, 150);
    EXPECT_TRUE(dessus->fermetureEnCours());
    EXPECT_FALSE(p->fermetureEnCours());
    pass(kFondu);
    montreDessus();
    const Weak<KCPopover> reste = dessus.get();
    p->close();
    pass(0.25);
    EXPECT_LT(dessus->panel()->alphaValue(), 1); // both fade
    dessus = nullptr;
    pass(2 * kFondu);
    EXPECT_FALSE(reste);
}

TEST_F(KCPopoverTest, ControllersAndColoursAreReplaced) {
    montre(p);
    const Ref<NSView> ancienne(contenu());
    // The view of the one before goes, also where that is the same; nothing is shown or laid out.
    p->setContentViewController(p->contentViewController());
    EXPECT_EQ(ancienne->superview(), nullptr);
    p->panel()->contentView()->addSubview(ancienne);
    p->setContentViewController(make<NSViewController>());
    EXPECT_EQ(ancienne->superview(), nullptr);
    EXPECT_EQ(contenu()->superview(), nullptr);
    EXPECT_EQ(p->couleurBordure()->alphaComponent(), 0.15);
    p->setCouleurFond(nullptr);
    p->setCouleurBordure(nullptr);
    EXPECT_EQ(p->couleurFond(), NSColor::whiteColor());
    EXPECT_EQ(p->couleurBordure(), NSColor::blackColor());
}

} // namespace
