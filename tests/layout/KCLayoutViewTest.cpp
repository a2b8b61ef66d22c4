#include <string>
#include <vector>

#include <gmock/gmock.h>

#include <support/TestBackend.h>

#include <libvue/layout/KCLayoutLineaire.h>
#include <libvue/layout/KCLayoutView.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSWindow.h>

namespace libvue::test {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Journal = std::vector<std::string>;

namespace {

/// A collaborator that answers everything, as a manager or as a delegate.
class Collaborateur : public NSObject, public KCLayoutManager {
public:
    static void describe(ClassDescription<Collaborateur>& c) {
        c.answers<&Collaborateur::willLayout>(op::willLayout);
        c.answers<&Collaborateur::didLayout>(op::didLayout);
        c.answers<&Collaborateur::resize>(op::layoutView_resizeSubviewsWithOldSize);
    }
    Collaborateur(Journal& j, std::string nom) : journal_(&j), nom_(std::move(nom)) {}
    void setHote(KCLayoutView* h) override { dis(h ? "hote" : "hote absent"); }
    void effectueLayout(KCLayoutView*) override {
        dis("effectue");
        if (pendant) pendant();
    }
    void willLayout(KCLayoutView*) { dis("will"); }
    void didLayout(KCLayoutView*) { dis("did"); }
    void resize(KCLayoutView*, NSSize old) { dis("resize " + std::to_string(static_cast<int>(old.width))); }
    std::function<void()> pendant;

private:
    void dis(const std::string& quoi) { journal_->push_back(nom_ + " " + quoi); }
    Journal* journal_;
    std::string nom_;
};

/// Answers effectueLayout: alone.
class DelegueNu : public NSObject, public KCLayoutViewDelegate {
public:
    void effectueLayout(KCLayoutView*) override { ++passes; }
    int passes = 0;
};

Ref<NSView> feuille(CGFloat x, CGFloat y, CGFloat w, CGFloat h) { return make<NSView>(NSRect{{x, y}, {w, h}}); }

} // namespace

struct KCLayoutViewTest : MemoryFixture {
    Journal journal;
    Journal pris() { return std::exchange(journal, {}); }
    void TearDown() override { NSApplication::resetSharedApplication(); }
};

TEST_F(KCLayoutViewTest, theDelegateBracketsTheManagerOnTheWayInAndHasTheLastWord) {
    auto vue = make<KCLayoutView>(NSRect{{0, 0}, {100, 100}});
    auto m = make<Collaborateur>(journal, "m"), d = make<Collaborateur>(journal, "d");
    vue->setLayoutManager(m);
    EXPECT_FALSE(vue->necessiteLayout()) << "a manager does not raise the flag";
    vue->setLayoutDelegate(d);
    EXPECT_TRUE(vue->necessiteLayout());
    EXPECT_THAT(pris(), ElementsAre("m hote"));
    vue->layoutSiNecessaire();
    EXPECT_THAT(pris(), ElementsAre("d will", "m will", "m effectue", "d effectue", "m did", "d did"));
    EXPECT_FALSE(vue->necessiteLayout());
    vue->layoutSiNecessaire();
    EXPECT_THAT(pris(), IsEmpty()) << "no flag, no pass";
    vue->zerl_layout();
    EXPECT_EQ(journal.size(), 6u) << "by hand it runs whatever the flag says";
}

TEST_F(KCLayoutViewTest, aSizeChangeTellsManagerThenDelegateAtOnceAndReplacesAutoresizing) {
    auto vue = make<KCLayoutView>(NSRect{{0, 0}, {100, 100}});
    auto m = make<Collaborateur>(journal, "m"), d = make<Collaborateur>(journal, "d");
    auto f = feuille(0, 0, 10, 10);
    f->setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);
    vue->addSubview(f);
    vue->setLayoutManager(m);
    vue->setLayoutDelegate(d);
    vue->zerl_layout();
    pris();
    vue->setFrameSize({150, 100});
    EXPECT_THAT(pris(), ElementsAre("m resize 100", "d resize 100"));
    EXPECT_TRUE(vue->necessiteLayout());
    EXPECT_EQ(f->frame(), NSMakeRect(0, 0, 10, 10));
    vue->zerl_layout();
    vue->setFrameOrigin({5, 5});
    EXPECT_FALSE(vue->necessiteLayout()) << "a move is no change of size";
}

TEST_F(KCLayoutViewTest, missingCollaboratorsAndOptionalOperationsAreSkipped) {
    auto vue = make<KCLayoutView>(NSRect{{0, 0}, {100, 100}});
    auto f = feuille(3, 4, 5, 6);
    vue->addSubview(f);
    EXPECT_TRUE(vue->necessiteLayout());
    vue->zerl_layout();
    EXPECT_FALSE(vue->necessiteLayout());
    EXPECT_EQ(f->frame(), NSMakeRect(3, 4, 5, 6));

    auto nu = make<DelegueNu>();
    vue->setLayoutDelegate(nu);
    vue->setFrameSize({50, 50});
    vue->zerl_layout();
    EXPECT_EQ(nu->passes, 1);
    nu = nullptr;
    vue->zerl_layout();
    EXPECT_EQ(vue->layoutDelegate(), nullptr) << "a delegate that is gone reads as absent";
}

TEST_F(KCLayoutViewTest, whatRaisesTheFlag) {
    auto vue = make<KCLayoutView>(NSRect{{0, 0}, {100, 100}});
    auto nue = feuille(0, 0, 50, 50), petite = feuille(0, 0, 5, 5);
    auto interne = make<KCLayoutView>(NSRect{{0, 0}, {20, 20}});
    auto petiteInterne = feuille(0, 0, 5, 5);
    nue->addSubview(petite);
    interne->addSubview(petiteInterne);
    vue->addSubview(nue);
    vue->addSubview(interne);
    struct Cas {
        const char* quoi;
        std::function<void()> fais;
        bool leve;
    };
    const Cas cas[] = {
        {"hiding", [&] { nue->setHidden(YES); }, true},
        {"hiding again", [&] { nue->setHidden(YES); }, false},
        {"showing", [&] { nue->setHidden(NO); }, true},
        {"moving a subview",
         [&] {
             nue->setFrameOrigin({1, 1});
         },
         true},
        {"the same frame again", [&] { nue->setFrame(nue->frame()); }, false},
        {"a subview that posts no frame changes",
         [&] {
             nue->setPostsFrameChangedNotifications(NO);
             nue->setFrameOrigin({2, 2});
             nue->setPostsFrameChangedNotifications(YES);
         },
         false},
        {"moving a grandchild in a plain view",
         [&] {
             petite->setFrameOrigin({9, 9});
         },
         false},
        {"hiding a grandchild in a plain view", [&] { petite->setHidden(YES); }, false},
        {"moving a grandchild in a layout view",
         [&] {
             petiteInterne->setFrameOrigin({9, 9});
         },
         true},
        {"removing", [&] { nue->removeFromSuperview(); }, true},
        {"moving what was removed",
         [&] {
             nue->setFrameOrigin({30, 30});
         },
         false},
        {"hiding what was removed", [&] { nue->setHidden(YES); }, false},
    };
    for (const Cas& c : cas) {
        vue->setNecessiteLayout(NO);
        interne->zerl_layout();
        c.fais();
        EXPECT_EQ(vue->necessiteLayout(), c.leve) << c.quoi;
    }
}

TEST_F(KCLayoutViewTest, theFlagClimbsPlainViewsAndANoClearsTheWholeChain) {
    auto dehors = make<KCLayoutView>(NSRect{{0, 0}, {100, 100}});
    auto nue = feuille(0, 0, 50, 50);
    auto dedans = make<KCLayoutView>(NSRect{{0, 0}, {20, 20}}), voisine = make<KCLayoutView>(NSRect{{0, 0}, {20, 20}});
    dehors->addSubview(nue);
    dehors->addSubview(voisine);
    nue->addSubview(dedans);
    dehors->setNecessiteLayout(NO);
    dedans->setNecessiteLayout(YES);
    EXPECT_TRUE(dehors->necessiteLayout());
    voisine->setNecessiteLayout(YES);
    dedans->setNecessiteLayout(NO);
    EXPECT_FALSE(dehors->necessiteLayout()) << "even while a sibling still needs its pass";
    EXPECT_TRUE(voisine->necessiteLayout());
}

TEST_F(KCLayoutViewTest, thePassDescendsThroughPlainViewsAndStopsAtACleanLayoutView) {
    auto dehors = make<KCLayoutView>(NSRect{{0, 0}, {100, 100}});
    auto nue = feuille(0, 0, 50, 50);
    auto milieu = make<KCLayoutView>(NSRect{{0, 0}, {20, 20}}), fond = make<KCLayoutView>(NSRect{{0, 0}, {10, 10}});
    auto md = make<Collaborateur>(journal, "dehors"), mm = make<Collaborateur>(journal, "milieu"),
         mf = make<Collaborateur>(journal, "fond");
    milieu->addSubview(fond);
    nue->addSubview(milieu);
    dehors->addSubview(nue);
    dehors->setLayoutManager(md);
    milieu->setLayoutManager(mm);
    fond->setLayoutManager(mf);
    const auto effectues = [&] {
        Journal out;
        for (auto& s : pris())
            if (s.ends_with("effectue")) out.push_back(s);
        return out;
    };
    effectues();
    fond->setNecessiteLayout(YES);
    dehors->zerl_layout();
    EXPECT_THAT(effectues(), ElementsAre("fond effectue", "milieu effectue", "dehors effectue"));

    // The outer one alone: its pass does not go beyond the clean one in the middle.
    fond->setNecessiteLayout(YES);
    milieu->setNecessiteLayout(NO);
    dehors->setNecessiteLayout(YES);
    dehors->zerl_layout();
    EXPECT_THAT(effectues(), ElementsAre("dehors effectue"));
    EXPECT_TRUE(fond->necessiteLayout());
}

TEST_F(KCLayoutViewTest, framesMovedByThePassLeaveTheHostCleanAndTheParentFlaggedUntilItsOwnEnd) {
    auto dehors = make<KCLayoutView>(NSRect{{0, 0}, {100, 100}});
    auto dedans = make<KCLayoutView>(NSRect{{0, 0}, {50, 50}});
    auto f = feuille(0, 0, 5, 5);
    dehors->addSubview(dedans);
    dedans->addSubview(f);
    auto m = make<Collaborateur>(journal, "m");
    m->pendant = [&] {
        f->setFrameOrigin({f->frame().origin.x + 1, 0});
        EXPECT_TRUE(dedans->necessiteLayout());
    };
    dedans->setLayoutManager(m);
    dehors->setNecessiteLayout(NO);
    dedans->zerl_layout();
    EXPECT_FALSE(dedans->necessiteLayout());
    EXPECT_TRUE(dehors->necessiteLayout());
    dehors->layoutSiNecessaire();
    EXPECT_FALSE(dehors->necessiteLayout());
}

TEST_F(KCLayoutViewTest, aViewBuiltApartFindsItsParentWhenItIsAttached) {
    auto dehors = make<KCLayoutView>(NSRect{{0, 0}, {100, 100}});
    auto nue = feuille(0, 0, 50, 50);
    auto dedans = make<KCLayoutView>(NSRect{{0, 0}, {20, 20}});
    nue->addSubview(dedans);
    dedans->setNecessiteLayout(YES);
    auto w = make<NSWindow>(NSRect{{0, 0}, {200, 200}}, NSTitledWindowMask);
    w->contentView()->addSubview(dehors);
    dehors->setNecessiteLayout(NO);
    dehors->addSubview(nue);
    dehors->setNecessiteLayout(NO);
    EXPECT_TRUE(dedans->necessiteLayout()) << "the flag stays with the view that moved";
    dedans->setNecessiteLayout(YES);
    EXPECT_TRUE(dehors->necessiteLayout());
    nue->removeFromSuperview();
    dehors->setNecessiteLayout(NO);
    dedans->setNecessiteLayout(YES);
    EXPECT_FALSE(dehors->necessiteLayout()) << "no longer its parent";
}

TEST_F(KCLayoutViewTest, anyNumberOfChangesInACycleCostOnePassAndTheNextDrawRunsIt) {
    auto w = make<NSWindow>(NSRect{{0, 0}, {200, 200}}, NSTitledWindowMask);
    auto vue = make<KCLayoutView>(NSRect{{0, 0}, {150, 150}});
    auto m = make<Collaborateur>(journal, "m");
    auto f = feuille(0, 0, 10, 10);
    vue->addSubview(f);
    vue->setLayoutManager(m);
    w->contentView()->addSubview(vue);
    w->makeKeyAndOrderFront(nullptr);
    NSApp()->drain_();
    pris();
    f->setFrameSize({20, 20});
    f->setFrameSize({30, 20});
    f->setHidden(YES);
    f->setHidden(NO);
    EXPECT_THAT(pris(), IsEmpty()) << "nothing is placed at the moment of the change";
    NSApp()->drain_();
    EXPECT_THAT(pris(), ElementsAre("m will", "m effectue", "m did"));
    vue->setHidden(YES);
    f->setFrameSize({40, 20});
    NSApp()->drain_();
    EXPECT_THAT(pris(), IsEmpty()) << "what is not drawn is not laid out";
    EXPECT_TRUE(vue->necessiteLayout());
    vue->setHidden(NO);
    NSApp()->drain_();
    EXPECT_FALSE(vue->necessiteLayout());
}

TEST_F(KCLayoutViewTest, subviewsAreDrawnInTheirNewPlacesInTheSamePass) {
    struct Temoin : NSView {
        using NSView::NSView;
        std::vector<NSPoint> dessine;
        void drawRect(const NSRect&) override { dessine.push_back(frame().origin); }
    };
    auto w = make<NSWindow>(NSRect{{0, 0}, {200, 200}}, NSTitledWindowMask);
    auto vue = make<KCLayoutView>(NSRect{{0, 0}, {150, 150}});
    auto lineaire = make<KCLayoutLineaire>();
    lineaire->setEspacement(5);
    vue->setLayoutManager(lineaire);
    auto a = make<Temoin>(NSRect{{0, 0}, {10, 10}}), b = make<Temoin>(NSRect{{0, 0}, {10, 10}});
    vue->addSubview(a);
    vue->addSubview(b);
    w->contentView()->addSubview(vue);
    w->makeKeyAndOrderFront(nullptr);
    NSApp()->drain_();
    ASSERT_FALSE(b->dessine.empty());
    for (const NSPoint& p : b->dessine)
        EXPECT_EQ(p, NSMakePoint(15, 0));
}

TEST_F(KCLayoutViewTest, teardownTellsTheManagerAndObservesNoMore) {
    auto m = make<Collaborateur>(journal, "m");
    auto f = feuille(0, 0, 10, 10);
    {
        auto vue = make<KCLayoutView>(NSRect{{0, 0}, {100, 100}});
        vue->setLayoutManager(m);
        vue->addSubview(f);
        pris();
    }
    EXPECT_THAT(pris(), ElementsAre("m hote absent"));
    f->setFrameSize({50, 50});
    f->setHidden(YES);
    EXPECT_EQ(f->superview(), nullptr);

    auto vue = make<KCLayoutView>(NSRect{{0, 0}, {100, 100}});
    auto autre = make<Collaborateur>(journal, "autre");
    vue->setLayoutManager(m);
    vue->setLayoutManager(autre);
    EXPECT_THAT(pris(), ElementsAre("m hote", "autre hote")) << "the old manager hears nothing";
}

TEST_F(KCLayoutViewTest, aManagerThatTakesTheViewAwayDuringItsPassLeavesNothingDangling) {
    auto parent = feuille(0, 0, 100, 100);
    auto vue = make<KCLayoutView>(NSRect{{0, 0}, {100, 100}});
    auto m = make<Collaborateur>(journal, "m");
    auto d = make<DelegueNu>();
    Weak<KCLayoutView> faible = vue.get();
    parent->addSubview(vue);
    vue->setLayoutManager(m);
    vue->setLayoutDelegate(d);
    vue = nullptr;
    m->pendant = [&] {
        faible->setLayoutManager(nullptr);
        faible->removeFromSuperview();
        d = nullptr;
    };
    faible->zerl_layout();
    EXPECT_EQ(faible, nullptr);
    m->pendant = nullptr;
}

} // namespace libvue::test
