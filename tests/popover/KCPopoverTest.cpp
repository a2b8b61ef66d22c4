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
    /// Logs the notifications of that name from that window.
    void ecoute(NSString* nom, NSWindow* w, const std::string& dit) {
        jetons_.push_back(NSNotificationCenter::defaultCenter()->addObserverForName_object_queue_usingBlock(
            nom, w, nullptr, [this, dit](NSNotification*) { log.push_back(dit); }));
    }
    void TearDown() override {
        for (const Ref<NSObject>& j : jetons_)
            NSNotificationCenter::defaultCenter()->removeObserver(j);
        jetons_.clear();
        PopoverFixture::TearDown();
    }

private:
    std::vector<Ref<NSObject>> jetons_;
};

TEST_F(KCPopoverTest, ShowingSplicesTheBalloonIntoTheChain) {
    const Ref<KCPopover> p = bulle();
    EXPECT_FALSE(p->isShown());
    montre(p);
    EXPECT_TRUE(p->isShown());
    EXPECT_TRUE(p->attachay());
    const Ref<NSView> focus(p->firstResponder());
    ASSERT_NE(focus, nullptr);
    EXPECT_EQ(parent->firstResponder(), focus.get());
    EXPECT_EQ(focus->superview(), parent->contentView());
    EXPECT_EQ(focus->nextResponder(), p->panel());
    EXPECT_EQ(p->panel()->nextResponder(), parent->contentView());
    EXPECT_EQ(p->panel()->parentWindow(), parent.get());
    EXPECT_TRUE(parent->isKeyWindow());
    EXPECT_EQ(p->contentViewController()->view()->superview(), p->panel()->contentView());
    ferme(p);
    EXPECT_FALSE(p->isShown());
    EXPECT_EQ(p->firstResponder(), nullptr);
    EXPECT_EQ(focus->superview(), nullptr);
}

TEST_F(KCPopoverTest, ClosingGoesInItsOrder) {
    const Ref<KCPopover> p = bulle();
    const Ref<DeleguePopover> delegue = make<DeleguePopover>(log);
    p->setDelegate(delegue);
    montre(p);
    ecoute(NSWindowWillCloseNotification, p->panel(), "will close");
    p->close();
    EXPECT_TRUE(p->fermetureEnCours());
    EXPECT_TRUE(p->isShown());
    pass(0.25);
    const CGFloat milieu = p->panel()->alphaValue();
    EXPECT_GT(milieu, 0.2);
    EXPECT_LT(milieu, 0.8);
    p->close(); // one is under way
    EXPECT_THAT(taken(), IsEmpty());
    pass(0.3);
    // The delegate first: a window tells its own delegate before its observers.
    EXPECT_THAT(taken(), ElementsAre("did close KCPopoverDidCloseNotification", "will close"));
    EXPECT_EQ(delegue->dernier->object(), p.get());
    EXPECT_FALSE(p->fermetureEnCours());
    EXPECT_FALSE(p->isShown());
    EXPECT_EQ(p->panel()->parentWindow(), nullptr);
    EXPECT_EQ(p->panel()->alphaValue(), 1);
    delegue->dernier = nullptr;
    pass(2);
    EXPECT_THAT(taken(), IsEmpty());

    montre(p); // and once more
    EXPECT_TRUE(p->isShown());
    EXPECT_EQ(p->panel()->alphaValue(), 1);
    ferme(p);
    EXPECT_EQ(taken().size(), 2U);
    delegue->dernier = nullptr;
}

TEST_F(KCPopoverTest, WhatClosesAnAttachedBalloonBesideGestures) {
    struct Cas {
        const char* quoi;
        std::function<void(KCPopover*)> fait;
        BOOL ferme;
    };
    const Ref<NSWindow> autre = windowAt({{20, 20}, {100, 100}});
    const Ref<LogView> champ = viewIn(parent, {{10, 10}, {50, 20}}, "field");
    champ->accepts = YES;
    const std::vector<Cas> cas{
        {"the focus goes elsewhere", [&](KCPopover*) { parent->makeFirstResponder(champ); }, YES},
        {"a click on a view that takes the focus", [&](KCPopover*) { click(parent, 20, 20); }, YES},
        {"moved by code",
         [](KCPopover* p) {
             p->panel()->setFrameOrigin({300, 300});
         },
         NO},
        {"the parent moves",
         [&](KCPopover*) {
             windows().moveByUser(parent->nativeId_(), {350, 250});
         },
         NO},
        {"the parent is no longer key or main", [&](KCPopover*) { show(autre); }, NO},
    };
    for (const Cas& c : cas) {
        show(parent);
        parent->makeFirstResponder(nullptr);
        const Ref<KCPopover> p = bulle();
        montre(p);
        c.fait(p);
        drain();
        EXPECT_EQ(p->fermetureEnCours(), c.ferme) << c.quoi;
        EXPECT_TRUE(p->attachay()) << c.quoi;
        pass(kFondu);
        EXPECT_EQ(p->isShown(), !c.ferme) << c.quoi;
        ferme(p);
    }
    autre->close();
}

TEST_F(KCPopoverTest, ATextInTheBalloonTakesTheKeysWhenItIsClicked) {
    const Ref<NSView> contenu = make<NSView>(NSMakeRect(0, 0, 200, 60));
    const Ref<NSTextField> champ = make<NSTextField>(NSMakeRect(20, 20, 160, 22));
    contenu->addSubview(champ);
    const Ref<KCPopover> p = bulleAvec(contenu);
    montre(p);
    EXPECT_FALSE(p->panel()->isKeyWindow());
    const NSRect ici = champ->convertRect_toView(champ->bounds(), nullptr);
    click(p->panel(), NSMidX(ici), NSMidY(ici));
    EXPECT_TRUE(p->panel()->isKeyWindow());
    EXPECT_TRUE(parent->isMainWindow());
    windows().typeText(u"oui");
    drain();
    EXPECT_TRUE(p->isShown());
    EXPECT_FALSE(p->fermetureEnCours());

    // The same editor and caret go on in the free window.
    const Ref<NSResponder> editeur(p->panel()->firstResponder());
    EXPECT_NE(editeur.get(), p->panel());
    p->decrochePopover();
    drain();
    EXPECT_EQ(p->panel()->firstResponder(), editeur.get());
    windows().typeText(u"!");
    drain();
    p->panel()->makeFirstResponder(nullptr);
    EXPECT_EQ(champ->stringValue()->utf8(), "oui!");
    ferme(p);
}

TEST_F(KCPopoverTest, DraggedOffItIsAWindowOfItsOwn) {
    const Ref<KCPopover> p = bulle();
    montre(p);
    NSView* vue = p->contentViewController()->view();
    const NSRect f = p->panel()->frame();
    const NSPoint avant = p->panel()->convertBaseToScreen(vue->convertPoint_toView({0, 0}, nullptr));
    traine(p, 30, 40);
    EXPECT_FALSE(p->attachay());
    EXPECT_FALSE(p->panel()->dragEnCours());
    EXPECT_EQ(p->panel()->styleMask(), NSUInteger{19});
    EXPECT_EQ(p->panel()->parentWindow(), nullptr);
    EXPECT_TRUE(p->panel()->isFloatingPanel());
    EXPECT_TRUE(p->panel()->hidesOnDeactivate());
    EXPECT_EQ(vue->frame(), NSMakeRect(0, 5, 120, 60));
    // Moved by the drag and nothing else.
    const NSPoint apres = p->panel()->convertBaseToScreen(vue->convertPoint_toView({0, 0}, nullptr));
    EXPECT_EQ(apres, NSMakePoint(avant.x + 30, avant.y + 40));
    EXPECT_EQ(p->panel()->contentRectForFrameRect(p->panel()->frame()),
              NSMakeRect(f.origin.x + 30 + 11, f.origin.y + 40 + 10, 120, 70));
    // Further than that it follows like any window.
    windows().moveByUser(p->panel()->nativeId_(), {100, 100});
    drain();
    EXPECT_TRUE(p->isShown());
    // The content grows from the lower left corner.
    const NSRect cadre = p->panel()->frame();
    vue->setFrameSize({150, 100});
    p->layoutEtPositionne(nullptr);
    EXPECT_EQ(p->panel()->frame().origin, cadre.origin);
    p->panel()->performClose(nullptr); // its box: no fade
    EXPECT_FALSE(p->isShown());
    EXPECT_EQ(p->firstResponder(), nullptr);
    pass(kFondu);
    // Shown anew, it is a balloon again.
    montre(p);
    EXPECT_TRUE(p->attachay());
    EXPECT_EQ(p->panel()->styleMask(), NSUInteger{NSBorderlessWindowMask});
    EXPECT_EQ(p->panel()->frame().size, NSMakeSize(172, 130));
    EXPECT_EQ(vue->frame(), NSMakeRect(11, 15, 150, 100));
    EXPECT_FALSE(p->panel()->isFloatingPanel());
    ferme(p);
}

TEST_F(KCPopoverTest, ADragThatMayNotDetachOnlyMoves) {
    const Ref<KCPopover> p = bulle();
    const Ref<DeleguePopover> delegue = make<DeleguePopover>(log);
    delegue->permet = NO;
    p->setDelegate(delegue);
    montre(p);
    const NSPoint origine = p->panel()->frame().origin;
    traine(p, 30, 40);
    EXPECT_TRUE(p->attachay());
    EXPECT_FALSE(p->panel()->dragEnCours());
    EXPECT_EQ(p->panel()->frame().origin, NSMakePoint(origine.x + 30, origine.y + 40));
    EXPECT_EQ(p->panel()->parentWindow(), parent.get());
    ferme(p);
}

TEST_F(KCPopoverTest, ADetachedBalloonComesAndGoesWithTheMainWindow) {
    const Ref<KCPopover> p = bulle();
    montre(p);
    p->decrochePopover();
    const Ref<NSWindow> autre = windowAt({{20, 20}, {100, 100}});
    show(autre);
    EXPECT_FALSE(p->isShown());
    show(parent);
    EXPECT_TRUE(p->isShown());
    EXPECT_FALSE(p->fermetureEnCours());
    parent->miniaturize(nullptr);
    EXPECT_FALSE(p->fermetureEnCours());
    parent->deminiaturize(nullptr);
    // Its box closes it for good, whoever keeps it.
    p->panel()->performClose(nullptr);
    show(autre);
    show(parent);
    EXPECT_FALSE(p->isShown());
    autre->close();
}

TEST_F(KCPopoverTest, ItLivesWhileItIsShownAndThroughItsFade) {
    Ref<KCPopover> p = bulle();
    const Weak<KCPopover> reste = p.get();
    const Weak<MaFenetre> panel = p->panel();
    montre(p);
    p = nullptr;
    pass(1);
    ASSERT_TRUE(reste);
    windows().key(27);
    drain();
    ASSERT_TRUE(reste);
    pass(0.4);
    ASSERT_TRUE(reste);
    pass(0.2);
    EXPECT_FALSE(reste);
    EXPECT_FALSE(panel);
}

TEST_F(KCPopoverTest, AClosedAnchorWindowTakesItsBalloonAlong) {
    Ref<KCPopover> p = bulle();
    const Weak<KCPopover> reste = p.get();
    montre(p);
    p = nullptr;
    parent->close();
    pass(kFondu);
    EXPECT_FALSE(reste);
}

TEST_F(KCPopoverTest, ABalloonOnABalloonClosesWithIt) {
    Ref<KCPopover> dessous = bulle({300, 200});
    montre(dessous);
    Ref<KCPopover> dessus = bulle();
    NSView* vue = dessous->contentViewController()->view();
    dessus->showRelativeToRect_ofView_preferredEdge({{10, 10}, {20, 20}}, vue, NSMaxXEdge);
    drain();
    EXPECT_EQ(dessus->panel()->parentWindow(), dessous->panel());
    // A click in the upper one closes neither; one in the lower one closes the upper.
    click(dessus->panel(), 60, 40);
    EXPECT_FALSE(dessus->fermetureEnCours());
    EXPECT_FALSE(dessous->fermetureEnCours());
    click(dessous->panel(), 200, 150);
    EXPECT_TRUE(dessus->fermetureEnCours());
    EXPECT_FALSE(dessous->fermetureEnCours());
    pass(kFondu);
    dessus->showRelativeToRect_ofView_preferredEdge({{10, 10}, {20, 20}}, vue, NSMaxXEdge);
    drain();
    const Weak<KCPopover> reste[2] = {dessous.get(), dessus.get()};
    dessous->close();
    pass(0.25);
    EXPECT_LT(dessus->panel()->alphaValue(), 1); // both fade
    dessous = dessus = nullptr;
    pass(2 * kFondu);
    EXPECT_FALSE(reste[0]);
    EXPECT_FALSE(reste[1]);
}

TEST_F(KCPopoverTest, ClosingByTheBoxInTheMiddleOfAFadeTellsOnce) {
    const Ref<KCPopover> p = bulle();
    const Ref<DeleguePopover> delegue = make<DeleguePopover>(log);
    p->setDelegate(delegue);
    montre(p);
    p->decrochePopover();
    p->close();
    pass(0.2);
    p->panel()->performClose(nullptr);
    pass(kFondu);
    EXPECT_THAT(taken(), ElementsAre("did close KCPopoverDidCloseNotification"));
    p->close(); // not shown
    EXPECT_FALSE(p->fermetureEnCours());
    delegue->dernier = nullptr;
}

TEST_F(KCPopoverTest, AThousandOpeningsLeaveNothing) {
    const Ref<KCPopover> gardee = bulle();
    const auto tour = [&](int i) {
        const Ref<KCPopover> p = i % 3 == 0 ? gardee : bulle();
        montre(p, static_cast<NSUInteger>(i % 4));
        if (i % 5 == 4) p->decrochePopover();
        p->close();
        pass(kFondu);
    };
    for (int i = 0; i < 60; ++i)
        tour(i);
    const NSUInteger avant = liveObjectCount();
    const std::size_t vues = parent->contentView()->subviews().size();
    for (int i = 0; i < 1020; ++i)
        tour(i);
    EXPECT_EQ(liveObjectCount(), avant);
    EXPECT_EQ(parent->contentView()->subviews().size(), vues);
    EXPECT_EQ(NSApp()->monitors_().size(), 0U);
}

TEST_F(KCPopoverTest, ControllersAndColoursAreReplaced) {
    const Ref<KCPopover> p = bulle();
    montre(p);
    const Ref<NSView> ancienne(p->contentViewController()->view());
    const Ref<NSViewController> c = make<NSViewController>();
    p->setContentViewController(c);
    EXPECT_EQ(ancienne->superview(), nullptr);
    EXPECT_EQ(c->view()->superview(), nullptr); // nothing is shown or laid out
    p->setCouleurFond(nullptr);
    p->setCouleurBordure(nullptr);
    EXPECT_EQ(p->couleurFond(), NSColor::whiteColor());
    EXPECT_EQ(p->couleurBordure(), NSColor::blackColor());
    EXPECT_EQ(make<KCPopover>()->couleurBordure()->alphaComponent(), 0.15);
    ferme(p);
}

} // namespace
