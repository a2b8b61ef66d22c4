#include <popover/PopoverFixture.h>

#include <gmock/gmock.h>

#include <libvue/layout/KCFlippedView.h>
#include <libvue/layout/KCLayoutViewDelegate.h>
#include <libvue/layout/NotificationsVue.h>
#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSPopover.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSValue.h>
#include <libvue/popover/KCPopoverManager.h>
#include <libvue/popover/KCPopoverWrapper.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

class ControleurIdeal : public NSViewController, public TaillePreferee {
public:
    static void describe(ClassDescription<ControleurIdeal, NSViewController>&) {}
    [[nodiscard]] NSSize donneTailleIdeale() override { return {210, 90}; }
};

/// Stands for an implementation, and notes the edge.
class Temoin : public NSPopover {
public:
    static void describe(ClassDescription<Temoin, NSPopover>& c) {
        c.answers<&Temoin::montre>("showRelativeToRect:ofView:preferredEdge:");
    }
    NSUInteger edge = 99;
    void montre(const NSRect&, NSView*, NSUInteger e) { edge = e; }
};
class TemoinMaison : public KCPopover {
public:
    static void describe(ClassDescription<TemoinMaison, KCPopover>& c) {
        c.answers<&TemoinMaison::montre>("showRelativeToRect:ofView:preferredEdge:");
        c.answers<&TemoinMaison::ferme>("close");
    }
    NSUInteger edge = 99;
    int fermetures = 0;
    void montre(const NSRect&, NSView*, NSUInteger e) { edge = e; }
    void ferme() { ++fermetures; }
};

class KCPopoverWrapperTest : public PopoverFixture {
protected:
    static void garnis(KCPopoverWrapper* w, NSSize taille = kContenu.size) {
        const Ref<NSViewController> c = make<NSViewController>();
        c->setView(make<NSView>(NSRect{{0, 0}, taille}));
        w->setContentViewController(c);
    }
    void montreLe(KCPopoverWrapper* w, NSUInteger edge = NSMaxYEdge) const {
        w->showRelativeToRect_ofView_preferredEdge(ancre->bounds(), ancre, edge);
        pass(kFondu);
    }
    static KCPopover* maison(KCPopoverWrapper* w) { return as<KCPopover>(w->popover()); }
};

TEST_F(KCPopoverWrapperTest, WhatAnImplementationLacksReadsAsTold) {
    const Ref<KCPopoverWrapper> notre = KCPopoverWrapper::nouveauPopoverMaison();
    const Ref<KCPopoverWrapper> leur = KCPopoverWrapper::nouveauPopoverSysteme();
    const Ref<KCPopoverWrapper> vide = make<KCPopoverWrapper>();
    ASSERT_TRUE(as<NSPopover>(KCPopoverWrapper::nouveauPopover()->popover()));
    const Ref<NSColor> rouge(NSColor::redColor());
    for (KCPopoverWrapper* w : {notre.get(), leur.get(), vide.get()}) {
        w->setMasqueEdgeAutorisay(5);
        w->setBehavior(NSPopoverBehaviorTransient);
        w->setCouleurFond(rouge);
    }
    EXPECT_EQ(notre->masqueEdgeAutorisay(), 5U);
    EXPECT_EQ(leur->masqueEdgeAutorisay(), 0U);
    EXPECT_EQ(vide->masqueEdgeAutorisay(), 0U);
    EXPECT_EQ(notre->behavior(), 2);
    EXPECT_EQ(leur->behavior(), 1);
    EXPECT_EQ(vide->behavior(), 2);
    EXPECT_EQ(notre->couleurFond(), rouge);
    EXPECT_EQ(leur->couleurFond(), nullptr);
    EXPECT_EQ(vide->couleurFond(), nullptr);
    garnis(vide);
    EXPECT_EQ(vide->contentViewController(), nullptr);
    EXPECT_FALSE(vide->isShown());
    vide->close();
    montreLe(vide);
    EXPECT_EQ(vide->retainCount(), 1U);
}

TEST_F(KCPopoverWrapperTest, OnlyTheSystemsPopoverGetsTheEdgesOfAFlippedView) {
    const Ref<KCFlippedView> retournee = make<KCFlippedView>(NSMakeRect(0, 0, 50, 50));
    parent->contentView()->addSubview(retournee);
    const Ref<Temoin> leur = make<Temoin>();
    const Ref<TemoinMaison> notre = make<TemoinMaison>();
    const NSUInteger echange[] = {0, 3, 2, 1};
    for (NSUInteger e = 0; e < 4; ++e) {
        SCOPED_TRACE(e);
        for (NSView* vue : {static_cast<NSView*>(retournee), static_cast<NSView*>(ancre)}) {
            const Ref<KCPopoverWrapper> w = make<KCPopoverWrapper>();
            w->setPopover(leur);
            w->showRelativeToRect_ofView_preferredEdge(vue->bounds(), vue, e);
            EXPECT_EQ(leur->edge, vue == retournee.get() ? echange[e] : e);
            w->popoverDidClose(nullptr);
            w->setPopover(notre);
            w->showRelativeToRect_ofView_preferredEdge(vue->bounds(), vue, e);
            EXPECT_EQ(notre->edge, e);
            w->popoverDidClose(nullptr);
        }
    }
}

TEST_F(KCPopoverWrapperTest, TheContentTakesItsIdealSizeWhereItKnowsOne) {
    const Ref<KCPopoverWrapper> w = KCPopoverWrapper::nouveauPopoverMaison();
    const Ref<ControleurIdeal> ideal = make<ControleurIdeal>();
    ideal->setView(make<NSView>(NSMakeRect(0, 0, 10, 10)));
    w->setContentViewController(ideal);
    montreLe(w);
    EXPECT_EQ(ideal->view()->frame().size, (NSSize{210, 90}));
    w->close();
    pass(kFondu);
    garnis(w, {33, 44});
    montreLe(w);
    EXPECT_EQ(w->contentViewController()->view()->frame().size, (NSSize{33, 44}));
    w->close();
}

TEST_F(KCPopoverWrapperTest, TheImplementationHearsOfItsPresentContentAlone) {
    for (const bool systeme : {false, true}) {
        SCOPED_TRACE(systeme);
        const Ref<KCPopoverWrapper> w =
            systeme ? KCPopoverWrapper::nouveauPopoverSysteme() : KCPopoverWrapper::nouveauPopoverMaison();
        const auto taille = [&] {
            NSWindow* f = systeme ? as<NSPopover>(w->popover())->window_() : maison(w)->panel();
            return f->frame().size;
        };
        garnis(w);
        const Ref<NSViewController> ancien(w->contentViewController());
        garnis(w);
        montreLe(w);
        const NSSize avant = taille();
        const auto annonce = [&](NSViewController* c, NSSize s) {
            const Ref<NSValue> v = NSValue::valueWithSize(s);
            const Ref<NSDictionary> info = NSDictionary::dictionaryWithObject_forKey(v, u"size"_ns);
            NSNotificationCenter::defaultCenter()->postNotificationName_object_userInfo(
                kContentWouldChangeSizeNotification, c, info);
            // A KCPopover is laid out round the view as it stands.
            if (!systeme && c == w->contentViewController()) {
                c->view()->setFrameSize(s);
                maison(w)->layoutEtPositionne(c);
            }
        };
        annonce(ancien, {300, 200});
        EXPECT_EQ(taille(), avant);
        annonce(w->contentViewController(), {kContenu.size.width + 40, kContenu.size.height + 25});
        EXPECT_EQ(taille(), (NSSize{avant.width + 40, avant.height + 25}));
        w->close();
        pass(kFondu);
    }
}

TEST_F(KCPopoverWrapperTest, TheDelegateHearsOfTheWrapper) {
    const Ref<DelegueSysteme> d = make<DelegueSysteme>(log);
    const Ref<KCPopoverWrapper> leur = KCPopoverWrapper::nouveauPopoverSysteme();
    leur->setDelegate(d);
    garnis(leur);
    auto* p = as<NSPopover>(leur->popover());
    montreLe(leur);
    EXPECT_THAT(taken(), ElementsAre("NSPopoverWillShowNotification", "NSPopoverDidShowNotification"));
    EXPECT_EQ(d->de.get(), leur.get());
    d->permet = NO;
    p->performClose(nullptr);
    EXPECT_TRUE(leur->isShown());
    d->permet = YES;
    p->performClose(nullptr);
    pass(kFondu);
    EXPECT_THAT(taken(), ElementsAre("should close", "should close", "NSPopoverWillCloseNotification",
                                     "NSPopoverDidCloseNotification"));
    EXPECT_TRUE(d->raison);
    EXPECT_EQ(d->de.get(), leur.get());

    // Whether it may come off is the wrapper's to say; the window the delegate's.
    d->fenetre = windowAt({{0, 0}, {50, 50}});
    EXPECT_EQ(leur->detachableWindowForPopover(p), nullptr);
    leur->setDetachable(YES);
    EXPECT_EQ(leur->detachableWindowForPopover(p), d->fenetre.get());
    EXPECT_EQ(d->de.get(), leur.get());
    d->fenetre = nullptr;

    const Ref<KCPopoverWrapper> notre = KCPopoverWrapper::nouveauPopoverMaison();
    notre->setDelegate(d);
    garnis(notre);
    montreLe(notre);
    notre->close();
    pass(kFondu);
    EXPECT_THAT(taken(), ElementsAre("KCPopoverDidCloseNotification"));
    EXPECT_EQ(d->de.get(), notre.get());

    // Without a delegate it closes, and has no window to become.
    const Ref<KCPopoverWrapper> seul = KCPopoverWrapper::nouveauPopoverSysteme();
    seul->setDetachable(YES);
    EXPECT_TRUE(seul->popoverShouldClose(nullptr));
    EXPECT_EQ(seul->detachableWindowForPopover(nullptr), nullptr);
}

TEST_F(KCPopoverWrapperTest, WhatMayNotComeOffCannotBeDragged) {
    const Ref<KCPopoverWrapper> w = KCPopoverWrapper::nouveauPopoverMaison();
    EXPECT_FALSE(maison(w)->panel()->isMovable());
    EXPECT_FALSE(maison(w)->estDetachable());
    w->setDetachable(YES);
    EXPECT_TRUE(maison(w)->panel()->isMovable());
    EXPECT_TRUE(maison(w)->estDetachable());
    const Ref<KCPopover> autre = make<KCPopover>();
    w->setPopover(autre);
    EXPECT_TRUE(autre->panel()->isMovable());
    w->setDetachable(NO);
    EXPECT_FALSE(autre->panel()->isMovable());

    garnis(w);
    montreLe(w);
    const NSRect avant = autre->panel()->frame();
    traine(autre, 60, 60);
    EXPECT_TRUE(autre->attachay());
    EXPECT_EQ(autre->panel()->frame(), avant);
    w->close();
}

TEST_F(KCPopoverWrapperTest, ContentThatFollowsItsBalloonKeepsItsSizeWhenThatComesOff) {
    const Ref<KCPopoverWrapper> w = KCPopoverWrapper::nouveauPopoverMaison();
    w->setDetachable(YES);
    garnis(w);
    NSView* contenu = w->contentViewController()->view();
    contenu->setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);
    for (int fois = 0; fois < 2; ++fois) {
        montreLe(w);
        EXPECT_EQ(contenu->frame().size, kContenu.size);
        traine(maison(w), 60, 60);
        ASSERT_FALSE(maison(w)->attachay());
        EXPECT_EQ(contenu->frame(), NSMakeRect(0, 5, kContenu.size.width, kContenu.size.height));
        // And it grows with the window, whose lower left corner stays.
        const NSPoint coin = maison(w)->panel()->frame().origin;
        const Ref<NSValue> v = NSValue::valueWithSize({kContenu.size.width + 30, kContenu.size.height + 20});
        const Ref<NSDictionary> info = NSDictionary::dictionaryWithObject_forKey(v, u"size"_ns);
        NSNotificationCenter::defaultCenter()->postNotificationName_object_userInfo(kContentWouldChangeSizeNotification,
                                                                                    w->contentViewController(), info);
        EXPECT_EQ(contenu->frame().size, v->sizeValue());
        EXPECT_EQ(maison(w)->panel()->frame().origin, coin);
        contenu->setFrameSize(kContenu.size);
        w->close();
        pass(kFondu);
    }
}

TEST_F(KCPopoverWrapperTest, AnAnchorThatMovesClosesAnAttachedBalloon) {
    struct Row {
        const char* quoi;
        bool systeme, detachay, ferme;
    };
    for (const Row& row : {Row{"ours", false, false, true}, Row{"ours, off its anchor", false, true, false},
                           Row{"the system's", true, false, false}}) {
        for (const bool fenetre : {false, true}) {
            SCOPED_TRACE(row.quoi);
            SCOPED_TRACE(fenetre ? "the window" : "the view");
            const Ref<KCPopoverWrapper> w =
                row.systeme ? KCPopoverWrapper::nouveauPopoverSysteme() : KCPopoverWrapper::nouveauPopoverMaison();
            w->setDetachable(YES);
            garnis(w);
            montreLe(w);
            if (row.detachay) maison(w)->decrochePopover();
            const NSSize s = fenetre ? parent->contentView()->frame().size : ancre->frame().size;
            if (fenetre)
                parent->setContentSize({s.width, s.height + 10});
            else
                ancre->setFrameSize({s.width + 1, s.height});
            pass(kFondu);
            EXPECT_EQ(w->isShown(), !row.ferme);
            w->close();
            pass(kFondu);
        }
    }
}

TEST_F(KCPopoverWrapperTest, AScrollClosesUnlessAMoveOfTheWindowCausedIt) {
    const Ref<NSScrollView> defilement = make<NSScrollView>(NSMakeRect(0, 0, 200, 200));
    defilement->setHasVerticalScroller(YES);
    const Ref<NSView> document = make<NSView>(NSMakeRect(0, 0, 180, 2000));
    const Ref<NSView> dedans = make<NSView>(NSMakeRect(10, 1000, 50, 20));
    document->addSubview(dedans);
    defilement->setDocumentView(document);
    parent->contentView()->addSubview(defilement);
    NSClipView* clip = defilement->contentView();
    const Ref<KCPopoverWrapper> w = KCPopoverWrapper::nouveauPopoverMaison();
    garnis(w);
    const auto montreLa = [&] {
        clip->scrollToPoint({0, 950});
        w->showRelativeToRect_ofView_preferredEdge(dedans->bounds(), dedans, NSMaxXEdge);
        drain();
        ASSERT_TRUE(w->isShown());
    };

    montreLa();
    // The desktop moves the window, and something scrolls for it.
    const Ref<NSObject> jeton = NSNotificationCenter::defaultCenter()->addObserverForName_object_queue_usingBlock(
        NSWindowDidMoveNotification, parent, nullptr, [&](NSNotification*) {
            clip->scrollToPoint({0, 960});
        });
    windows().moveByUser(parent->nativeId_(), {300, 250});
    pass(kFondu);
    NSNotificationCenter::defaultCenter()->removeObserver(jeton);
    ASSERT_EQ(clip->bounds().origin.y, 960);
    EXPECT_TRUE(w->isShown());
    // The wheel, beside the balloon.
    windows().moveMouse(parent->convertBaseToScreen({20, 150}));
    windows().wheel(0, -3);
    pass(kFondu);
    EXPECT_NE(clip->bounds().origin.y, 960);
    EXPECT_FALSE(w->isShown());
    // Off its anchor it stays.
    w->setDetachable(YES);
    montreLa();
    maison(w)->decrochePopover();
    windows().moveMouse(parent->convertBaseToScreen({20, 150}));
    windows().wheel(0, -3);
    pass(kFondu);
    EXPECT_TRUE(w->isShown());
    w->close();
}

TEST_F(KCPopoverWrapperTest, EachShowingRegistersOnceMore) {
    const Ref<TemoinMaison> p = make<TemoinMaison>();
    p->setAttachay(YES);
    const Ref<KCPopoverWrapper> w = make<KCPopoverWrapper>();
    w->setPopover(p);
    for (int i = 0; i < 2; ++i)
        montreLe(w);
    ancre->setFrameOrigin({5, 5});
    EXPECT_EQ(p->fermetures, 2);
    w->popoverDidClose(nullptr);
    // Closing ended none of them.
    ancre->setFrameOrigin({6, 6});
    EXPECT_EQ(p->fermetures, 4);
}

TEST_F(KCPopoverWrapperTest, ItLivesFromItsShowingToItsClosing) {
    for (const bool systeme : {false, true}) {
        SCOPED_TRACE(systeme);
        Ref<KCPopoverWrapper> w =
            systeme ? KCPopoverWrapper::nouveauPopoverSysteme() : KCPopoverWrapper::nouveauPopoverMaison();
        garnis(w);
        const Weak<KCPopoverWrapper> temoin(w);
        const Weak<NSObject> popover(w->popover());
        montreLe(w);
        w = nullptr;
        ASSERT_TRUE(temoin);
        temoin->close();
        EXPECT_TRUE(temoin) << "the fade-out is still to come";
        pass(kFondu);
        EXPECT_FALSE(temoin);
        EXPECT_FALSE(popover);
    }
}

TEST_F(KCPopoverWrapperTest, AThousandShowingsLeaveNothing) {
    const auto une = [&](bool systeme) {
        const Ref<KCPopoverWrapper> w =
            systeme ? KCPopoverWrapper::nouveauPopoverSysteme() : KCPopoverWrapper::nouveauPopoverMaison();
        garnis(w);
        w->showRelativeToRect_ofView_preferredEdge(ancre->bounds(), ancre, NSMinXEdge);
        drain();
        w->close();
        pass(kFondu);
    };
    une(false);
    une(true);
    const NSUInteger avant = liveObjectCount();
    for (int i = 0; i < 1000; ++i)
        une(i % 2 == 0);
    EXPECT_EQ(liveObjectCount(), avant);
}

TEST_F(KCPopoverWrapperTest, TheManagerKeepsWhatHasAKey) {
    Ref<KCPopoverWrapper> a = KCPopoverWrapper::nouveauPopoverSysteme();
    const Ref<KCPopoverWrapper> b = KCPopoverWrapper::nouveauPopoverSysteme();
    const Weak<KCPopoverWrapper> temoin(a);
    EXPECT_EQ(KCPopoverManager::popoverAvecCle(u"notes"_ns), nullptr);
    EXPECT_EQ(KCPopoverManager::popoverAvecCle(nullptr), nullptr);
    KCPopoverManager::associePopover_avecCle(a, u"notes"_ns);
    EXPECT_EQ(KCPopoverManager::popoverAvecCle(u"notes"_ns), a.get());
    a = nullptr;
    EXPECT_TRUE(temoin);
    KCPopoverManager::associePopover_avecCle(b, u"notes"_ns);
    EXPECT_FALSE(temoin);
    const Ref<NSArray> tous = KCPopoverManager::popovers();
    ASSERT_EQ(tous->count(), 1U);
    EXPECT_EQ(tous->objectAtIndex(0), b.get());
    KCPopoverManager::enlevePopoverAvecCle(u"autre"_ns);
    KCPopoverManager::enlevePopoverAvecCle(u"notes"_ns);
    EXPECT_EQ(KCPopoverManager::popovers()->count(), 0U);
}

} // namespace
