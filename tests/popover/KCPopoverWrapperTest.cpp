#include <popover/PopoverFixture.h>

#include <gmock/gmock.h>

#include <libvue/layout/KCFlippedView.h>
#include <libvue/layout/KCLayoutViewDelegate.h>
#include <libvue/layout/NotificationsVue.h>
#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSScrollView.h>
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

/// Stands for an implementation, and notes what it is told.
template <class Base> class Temoin : public Base {
public:
    static void describe(ClassDescription<Temoin, Base>& c) {
        c.template answers<&Temoin::montre>("showRelativeToRect:ofView:preferredEdge:");
        c.template answers<&Temoin::ferme>("close");
    }
    NSUInteger edge = 99;
    int fermetures = 0;
    void montre(const NSRect&, NSView*, NSUInteger e) { edge = e; }
    void ferme() { ++fermetures; }
};

class KCPopoverWrapperTest : public PopoverFixture {
protected:
    Ref<KCPopoverWrapper> notre = KCPopoverWrapper::nouveauPopoverMaison(),
                          leur = KCPopoverWrapper::nouveauPopoverSysteme();

    void SetUp() override {
        PopoverFixture::SetUp();
        garnis(notre);
        garnis(leur);
    }
    void TearDown() override {
        for (Ref<KCPopoverWrapper>& w : {std::ref(notre), std::ref(leur)}) {
            if (w) w->close();
            w = nullptr;
        }
        PopoverFixture::TearDown();
    }
    static void garnis(KCPopoverWrapper* w) { w->setContentViewController(controleur()); }
    void montreLe(KCPopoverWrapper* w) const {
        w->showRelativeToRect_ofView_preferredEdge(ancre->bounds(), ancre, NSMaxYEdge);
        pass(kFondu);
    }
    static void fermeLe(KCPopoverWrapper* w) {
        w->close();
        pass(kFondu);
    }
    [[nodiscard]] KCPopover* maison() const { return as<KCPopover>(notre->popover()); }
    static NSView* contenu(KCPopoverWrapper* w) { return w->contentViewController()->view(); }
    static void annonce(NSViewController* c, NSSize s) {
        NSNotificationCenter::defaultCenter()->postNotificationName_object_userInfo(kContentWouldChangeSizeNotification,
                                                                                    c, taille(s));
    }
};

TEST_F(KCPopoverWrapperTest, WhatAnImplementationLacksReadsAsTold) {
    const Ref<KCPopoverWrapper> vide = make<KCPopoverWrapper>();
    EXPECT_TRUE(as<NSPopover>(KCPopoverWrapper::nouveauPopover()->popover()));
    const Ref<NSColor> rouge(NSColor::redColor());
    struct Cas {
        KCPopoverWrapper* w;
        NSUInteger masque;
        NSInteger comportement;
        Ref<NSColor> fond;
    };
    for (const Cas& c : {Cas{notre, 5, 2, rouge}, Cas{leur, 0, 1, nullptr}, Cas{vide, 0, 2, nullptr}}) {
        c.w->setMasqueEdgeAutorisay(5);
        c.w->setBehavior(NSPopoverBehaviorTransient);
        c.w->setCouleurFond(rouge);
        EXPECT_EQ(c.w->masqueEdgeAutorisay(), c.masque);
        EXPECT_EQ(c.w->behavior(), c.comportement);
        EXPECT_EQ(c.w->couleurFond(), c.fond);
    }
    garnis(vide);
    EXPECT_EQ(vide->contentViewController(), nullptr);
    EXPECT_FALSE(vide->isShown());
    vide->close();
    montreLe(vide);
    EXPECT_EQ(vide->retainCount(), 1U);
}

TEST_F(KCPopoverWrapperTest, OnlyTheSystemsPopoverGetsTheEdgesOfAFlippedView) {
    const Ref<NSView> retournee = make<KCFlippedView>(NSMakeRect(0, 0, 50, 50));
    parent->contentView()->addSubview(retournee);
    const auto lui = make<Temoin<NSPopover>>();
    const auto nous = make<Temoin<KCPopover>>();
    const NSUInteger echange[] = {0, 3, 2, 1};
    for (NSUInteger e = 0; e < 4; ++e)
        for (NSView* vue : {retournee.get(), static_cast<NSView*>(ancre)}) {
            for (NSObject* p : {static_cast<NSObject*>(lui), static_cast<NSObject*>(nous)}) {
                notre->setPopover(p);
                notre->showRelativeToRect_ofView_preferredEdge(vue->bounds(), vue, e);
                notre->popoverDidClose(nullptr);
            }
            EXPECT_EQ(lui->edge, vue == retournee ? echange[e] : e);
            EXPECT_EQ(nous->edge, e);
        }
}

TEST_F(KCPopoverWrapperTest, TheContentTakesItsIdealSizeWhereItKnowsOne) {
    montreLe(notre);
    EXPECT_EQ(contenu(notre)->frame().size, kContenu.size);
    fermeLe(notre);
    const Ref<ControleurIdeal> ideal = make<ControleurIdeal>();
    ideal->setView(make<NSView>(NSMakeRect(0, 0, 10, 10)));
    notre->setContentViewController(ideal);
    montreLe(notre);
    EXPECT_EQ(ideal->view()->frame().size, (NSSize{210, 90}));
}

TEST_F(KCPopoverWrapperTest, TheImplementationHearsOfItsPresentContentAlone) {
    for (KCPopoverWrapper* w : {notre.get(), leur.get()}) {
        SCOPED_TRACE(w == leur ? "the system's" : "ours");
        const auto fenetre = [&] { return w == leur ? as<NSPopover>(w->popover())->window_() : maison()->panel(); };
        const Ref<NSViewController> ancien(w->contentViewController());
        garnis(w);
        montreLe(w);
        const NSSize avant = fenetre()->frame().size;
        annonce(ancien, {300, 200});
        EXPECT_EQ(fenetre()->frame().size, avant);
        // A balloon of ours goes round the view, which follows it here.
        contenu(w)->setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);
        annonce(w->contentViewController(), {kContenu.size.width + 40, kContenu.size.height + 25});
        EXPECT_EQ(fenetre()->frame().size, (NSSize{avant.width + 40, avant.height + 25}));
        fermeLe(w);
    }
}

TEST_F(KCPopoverWrapperTest, TheDelegateHearsOfTheWrapper) {
    EXPECT_TRUE(leur->popoverShouldClose(nullptr)) << "without a delegate it closes";
    const Ref<DelegueSysteme> d = make<DelegueSysteme>(log);
    leur->setDelegate(d);
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

    // Whether it may come off is the wrapper's to say; the window the delegate's.
    d->fenetre = windowAt({{0, 0}, {50, 50}});
    EXPECT_EQ(leur->detachableWindowForPopover(p), nullptr);
    leur->setDetachable(YES);
    EXPECT_EQ(leur->detachableWindowForPopover(p), d->fenetre.get());
    EXPECT_EQ(d->de.get(), leur.get());
    leur->setDelegate(nullptr);
    EXPECT_EQ(leur->detachableWindowForPopover(p), nullptr);
    d->fenetre = nullptr;

    notre->setDelegate(d);
    montreLe(notre);
    fermeLe(notre);
    EXPECT_THAT(taken(), ElementsAre("KCPopoverDidCloseNotification"));
    EXPECT_EQ(d->de.get(), notre.get());
}

TEST_F(KCPopoverWrapperTest, WhatMayNotComeOffCannotBeDragged) {
    const Ref<KCPopover> autre = bulle();
    for (const BOOL detachable : {NO, YES}) {
        notre->setDetachable(detachable);
        EXPECT_EQ(maison()->panel()->isMovable(), detachable);
        EXPECT_EQ(maison()->estDetachable(), detachable);
        notre->setPopover(autre);
        EXPECT_EQ(autre->panel()->isMovable(), detachable);
    }
    notre->setDetachable(NO);
    montreLe(notre);
    const NSRect avant = autre->panel()->frame();
    traine(autre, 60, 60);
    EXPECT_TRUE(autre->attachay());
    EXPECT_EQ(autre->panel()->frame(), avant);
}

TEST_F(KCPopoverWrapperTest, AnAnchorThatMovesClosesAnAttachedBalloon) {
    struct Cas {
        const char* quoi;
        KCPopoverWrapper* w;
        bool detachay, ferme;
    };
    notre->setDetachable(YES);
    for (const Cas& c : {Cas{"ours", notre, false, true}, Cas{"ours, off its anchor", notre, true, false},
                         Cas{"the system's", leur, false, false}})
        for (const bool fenetre : {false, true}) {
            SCOPED_TRACE(testing::Message() << c.quoi << (fenetre ? ", the window" : ", the view"));
            montreLe(c.w);
            if (c.detachay) maison()->decrochePopover();
            const NSSize s = fenetre ? parent->contentView()->frame().size : ancre->frame().size;
            fenetre ? parent->setContentSize({s.width, s.height + 10}) : ancre->setFrameSize({s.width + 1, s.height});
            pass(kFondu);
            EXPECT_EQ(c.w->isShown(), !c.ferme);
            fermeLe(c.w);
        }
}

TEST_F(KCPopoverWrapperTest, AScrollClosesUnlessAMoveOfTheWindowCausedIt) {
    const Ref<NSScrollView> defilement = make<NSScrollView>(NSMakeRect(0, 0, 200, 200));
    const Ref<NSView> document = make<NSView>(NSMakeRect(0, 0, 180, 2000));
    const Ref<NSView> dedans = make<NSView>(NSMakeRect(10, 1000, 50, 20));
    document->addSubview(dedans);
    defilement->setDocumentView(document);
    parent->contentView()->addSubview(defilement);
    NSClipView* clip = defilement->contentView();
    const auto montreLa = [&] {
        clip->scrollToPoint({0, 950});
        notre->showRelativeToRect_ofView_preferredEdge(dedans->bounds(), dedans, NSMaxXEdge);
        drain();
        ASSERT_TRUE(notre->isShown());
    };
    const auto tourne = [&] { // the wheel, beside the balloon
        const CGFloat avant = clip->bounds().origin.y;
        windows().moveMouse(parent->convertBaseToScreen({20, 150}));
        windows().wheel(0, -3);
        pass(kFondu);
        EXPECT_NE(clip->bounds().origin.y, avant);
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
    EXPECT_EQ(clip->bounds().origin.y, 960);
    EXPECT_TRUE(notre->isShown());
    tourne();
    EXPECT_FALSE(notre->isShown());
    // Off its anchor it stays.
    notre->setDetachable(YES);
    montreLa();
    maison()->decrochePopover();
    tourne();
    EXPECT_TRUE(notre->isShown());
}

TEST_F(KCPopoverWrapperTest, EachShowingRegistersOnceMore) {
    const auto p = make<Temoin<KCPopover>>();
    p->setAttachay(YES);
    const Ref<KCPopoverWrapper> w = make<KCPopoverWrapper>();
    w->setPopover(p);
    montreLe(w);
    montreLe(w);
    ancre->setFrameOrigin({5, 5});
    EXPECT_EQ(p->fermetures, 2);
    w->popoverDidClose(nullptr);
    // Closing ended none of them.
    ancre->setFrameOrigin({6, 6});
    EXPECT_EQ(p->fermetures, 4);
}

TEST_F(KCPopoverWrapperTest, ItLivesFromItsShowingToItsClosing) {
    for (Ref<KCPopoverWrapper>& w : {std::ref(notre), std::ref(leur)}) {
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
    const auto fais = [&](int combien) {
        for (int i = 0; i < combien; ++i) {
            const Ref<KCPopoverWrapper> w =
                i % 3 == 2 ? KCPopoverWrapper::nouveauPopoverSysteme() : KCPopoverWrapper::nouveauPopoverMaison();
            garnis(w);
            w->setDetachable(YES);
            w->showRelativeToRect_ofView_preferredEdge(ancre->bounds(), ancre, static_cast<NSUInteger>(i % 4));
            drain();
            if (auto* p = as<KCPopover>(w->popover()); p && i % 5 == 4) p->decrochePopover();
            fermeLe(w);
        }
    };
    fais(60);
    const NSUInteger avant = liveObjectCount();
    const std::size_t vues = parent->contentView()->subviews().size();
    fais(1020);
    EXPECT_EQ(liveObjectCount(), avant);
    EXPECT_EQ(parent->contentView()->subviews().size(), vues);
    EXPECT_EQ(NSApp()->monitors_().size(), 0U);
}

TEST_F(KCPopoverWrapperTest, TheManagerKeepsWhatHasAKey) {
    EXPECT_EQ(KCPopoverManager::popoverAvecCle(u"notes"_ns), nullptr);
    EXPECT_EQ(KCPopoverManager::popoverAvecCle(nullptr), nullptr);
    const Weak<KCPopoverWrapper> temoin(notre);
    KCPopoverManager::associePopover_avecCle(notre, u"notes"_ns);
    notre = nullptr;
    EXPECT_EQ(KCPopoverManager::popoverAvecCle(u"notes"_ns), temoin.get());
    KCPopoverManager::associePopover_avecCle(leur, u"notes"_ns);
    EXPECT_FALSE(temoin);
    const Ref<NSArray> tous = KCPopoverManager::popovers();
    ASSERT_EQ(tous->count(), 1U);
    EXPECT_EQ(tous->objectAtIndex(0), leur.get());
    KCPopoverManager::enlevePopoverAvecCle(u"autre"_ns);
    KCPopoverManager::enlevePopoverAvecCle(u"notes"_ns);
    EXPECT_EQ(KCPopoverManager::popovers()->count(), 0U);
}

} // namespace
