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
    DelegueNu(Journal& j, const char* nom) : journal_(&j), nom_(nom) {}
    void effectueLayout(KCLayoutView*) override { journal_->emplace_back(nom_); }

private:
    Journal* journal_;
    const char* nom_;
};

template <class T = NSView> Ref<T> vue(CGFloat w = 10, CGFloat h = 10) { return make<T>(NSRect{{0, 0}, {w, h}}); }

} // namespace

struct KCLayoutViewTest : MemoryFixture {
    Journal journal;
    /// A layout view in a plain view in a layout view.
    Ref<KCLayoutView> dehors = vue<KCLayoutView>(100, 100), dedans = vue<KCLayoutView>(20, 20);
    Ref<NSView> nue = vue(50, 50), feuille = vue();
    Ref<Collaborateur> m = make<Collaborateur>(journal, "m"), d = make<Collaborateur>(journal, "d");
    Ref<NSWindow> fenetre;

    void SetUp() override {
        dehors->addSubview(nue);
        nue->addSubview(dedans);
        dedans->addSubview(feuille);
    }
    void TearDown() override {
        fenetre = nullptr;
        NSApplication::resetSharedApplication();
    }
    Journal pris() { return std::exchange(journal, {}); }
    void montre() {
        fenetre = make<NSWindow>(NSRect{{0, 0}, {200, 200}}, NSTitledWindowMask);
        fenetre->contentView()->addSubview(dehors);
        fenetre->makeKeyAndOrderFront(nullptr);
        NSApp()->drain_();
    }
};

TEST_F(KCLayoutViewTest, theDelegateBracketsTheManagerOnTheWayInAndHasTheLastWord) {
    dehors->setLayoutManager(m);
    dehors->setLayoutDelegate(d);
    dedans->setNecessiteLayout(NO);
    EXPECT_THAT(pris(), ElementsAre("m hote"));
    for (int fois = 0; fois < 2; ++fois) { // by hand it runs whatever the flag says
        dehors->zerl_layout();
        EXPECT_THAT(pris(), ElementsAre("d will", "m will", "m effectue", "d effectue", "m did", "d did"));
    }
    dehors->layoutSiNecessaire();
    EXPECT_THAT(pris(), IsEmpty()) << "no flag, no pass";
}

TEST_F(KCLayoutViewTest, aSizeChangeTellsManagerThenDelegateAtOnceAndReplacesAutoresizing) {
    nue->setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);
    dehors->setLayoutManager(m);
    dehors->setLayoutDelegate(d);
    dehors->setNecessiteLayout(NO);
    pris();
    dehors->setFrameSize({150, 100});
    EXPECT_THAT(pris(), ElementsAre("m resize 100", "d resize 100"));
    EXPECT_TRUE(dehors->necessiteLayout());
    EXPECT_EQ(nue->frame(), NSMakeRect(0, 0, 50, 50));
    dehors->setNecessiteLayout(NO);
    dehors->setFrameOrigin({5, 5});
    EXPECT_FALSE(dehors->necessiteLayout()) << "a move is no change of size";
}

TEST_F(KCLayoutViewTest, missingCollaboratorsAndOptionalOperationsAreSkipped) {
    dehors->zerl_layout();
    EXPECT_FALSE(dehors->necessiteLayout());
    EXPECT_EQ(nue->frame(), NSMakeRect(0, 0, 50, 50));
    auto nu = make<DelegueNu>(journal, "nu");
    dehors->setLayoutDelegate(nu);
    dehors->setFrameSize({50, 50});
    dehors->zerl_layout();
    nu = nullptr;
    dehors->zerl_layout();
    EXPECT_THAT(pris(), ElementsAre("nu"));
}

TEST_F(KCLayoutViewTest, whatRaisesTheFlag) {
    const auto va = [](NSView* v, CGFloat x) { v->setFrameOrigin({x, 1}); };
    const auto bougeEnSilence = [&] {
        nue->setPostsFrameChangedNotifications(NO);
        va(nue, 2);
        nue->setPostsFrameChangedNotifications(YES);
    };
    struct Cas {
        const char* quoi;
        std::function<void()> fais;
        bool leve;
    };
    auto petite = vue();
    nue->addSubview(petite);
    montre();
    const Cas cas[] = {
        {"hiding", [&] { nue->setHidden(YES); }, true},
        {"hiding again", [&] { nue->setHidden(YES); }, false},
        {"showing", [&] { nue->setHidden(NO); }, true},
        {"moving a subview", [&] { va(nue, 1); }, true},
        {"the same frame again", [&] { nue->setFrame(nue->frame()); }, false},
        {"a subview that posts no frame changes", bougeEnSilence, false},
        {"moving a grandchild in a plain view", [&] { va(petite, 9); }, false},
        {"hiding a grandchild in a plain view", [&] { petite->setHidden(YES); }, false},
        {"moving a grandchild in a layout view", [&] { va(feuille, 9); }, true},
        {"setting a manager", [&] { dehors->setLayoutManager(m); }, false},
        {"setting a delegate", [&] { dehors->setLayoutDelegate(d); }, true},
        {"the layout view itself moves", [&] { va(dehors, 7); }, false},
        {"removing", [&] { nue->removeFromSuperview(); }, true},
        {"moving what was removed", [&] { va(nue, 30); }, false},
        {"hiding what was removed", [&] { nue->setHidden(YES); }, false},
        {"a change in what was removed", [&] { va(feuille, 3); }, false},
    };
    for (const Cas& c : cas) {
        dehors->setNecessiteLayout(NO);
        c.fais();
        EXPECT_EQ(dehors->necessiteLayout(), c.leve) << c.quoi;
    }
    // A branch that was changed apart keeps its flag, finds its parent when it is attached, and tells it again.
    EXPECT_TRUE(dedans->necessiteLayout());
    auto plus = vue();
    plus->addSubview(nue);
    dehors->addSubview(plus);
    dehors->setNecessiteLayout(NO);
    EXPECT_TRUE(dedans->necessiteLayout());
    dedans->setNecessiteLayout(YES);
    EXPECT_TRUE(dehors->necessiteLayout());
}

TEST_F(KCLayoutViewTest, aNoClearsTheWholeChainThoughASiblingNeedsItsPass) {
    auto voisine = vue<KCLayoutView>();
    dehors->addSubview(voisine);
    voisine->setNecessiteLayout(YES);
    dedans->setNecessiteLayout(NO);
    EXPECT_FALSE(dehors->necessiteLayout());
    EXPECT_TRUE(voisine->necessiteLayout());
}

TEST_F(KCLayoutViewTest, thePassDescendsThroughPlainViewsAndStopsAtACleanLayoutView) {
    auto fond = vue<KCLayoutView>();
    dedans->addSubview(fond);
    auto dd = make<DelegueNu>(journal, "out"), dm = make<DelegueNu>(journal, "in"),
         df = make<DelegueNu>(journal, "low");
    dehors->setLayoutDelegate(dd);
    dedans->setLayoutDelegate(dm);
    fond->setLayoutDelegate(df);
    dehors->zerl_layout();
    EXPECT_THAT(pris(), ElementsAre("low", "in", "out"));
    fond->setNecessiteLayout(YES);
    dedans->setNecessiteLayout(NO);
    dehors->zerl_layout();
    EXPECT_THAT(pris(), ElementsAre("out"));
    EXPECT_TRUE(fond->necessiteLayout());
}

TEST_F(KCLayoutViewTest, framesMovedByThePassLeaveTheHostCleanAndTheParentFlagged) {
    m->pendant = [&] {
        feuille->setFrameOrigin({1, 0});
        EXPECT_TRUE(dedans->necessiteLayout());
    };
    dedans->setLayoutManager(m);
    dehors->setNecessiteLayout(NO);
    dedans->zerl_layout();
    EXPECT_FALSE(dedans->necessiteLayout());
    EXPECT_TRUE(dehors->necessiteLayout());
}

TEST_F(KCLayoutViewTest, anyNumberOfChangesInACycleCostOnePassAndTheNextDrawRunsIt) {
    dehors->setLayoutManager(m);
    montre();
    pris();
    nue->setFrameSize({20, 20});
    nue->setFrameSize({30, 20});
    nue->setHidden(YES);
    nue->setHidden(NO);
    EXPECT_THAT(pris(), IsEmpty()) << "nothing is placed at the moment of the change";
    NSApp()->drain_();
    EXPECT_THAT(pris(), ElementsAre("m will", "m effectue", "m did"));
    dehors->setHidden(YES);
    nue->setFrameSize({40, 20});
    NSApp()->drain_();
    EXPECT_THAT(pris(), IsEmpty()) << "what is not drawn is not laid out";
    EXPECT_TRUE(dehors->necessiteLayout());
    dehors->setHidden(NO);
    NSApp()->drain_();
    EXPECT_FALSE(dehors->necessiteLayout());
}

TEST_F(KCLayoutViewTest, subviewsAreDrawnInTheirNewPlacesInTheSamePass) {
    struct Temoin : NSView {
        using NSView::NSView;
        std::vector<NSPoint> dessine;
        void drawRect(const NSRect&) override { dessine.push_back(frame().origin); }
    };
    auto apres = vue<Temoin>();
    dehors->addSubview(apres);
    dehors->setLayoutManager(make<KCLayoutLineaire>());
    montre();
    EXPECT_FALSE(apres->dessine.empty());
    EXPECT_THAT(apres->dessine, testing::Each(NSMakePoint(50, 0)));
}

TEST_F(KCLayoutViewTest, teardownTellsTheManagerAndObservesNoMore) {
    auto autre = make<Collaborateur>(journal, "autre");
    dehors->setLayoutManager(autre);
    dehors->setLayoutManager(m);
    EXPECT_THAT(pris(), ElementsAre("autre hote", "m hote")) << "the old manager hears nothing";
    dehors = nullptr;
    EXPECT_THAT(pris(), ElementsAre("m hote absent"));
    nue->setFrameSize({60, 60});
    nue->setHidden(YES);
    EXPECT_EQ(nue->superview(), nullptr);
}

TEST_F(KCLayoutViewTest, aManagerThatTakesTheViewAwayDuringItsPassLeavesNothingDangling) {
    const Weak<KCLayoutView> faible = dedans.get();
    auto nu = make<DelegueNu>(journal, "nu");
    dedans->setLayoutManager(m);
    dedans->setLayoutDelegate(nu);
    dedans = nullptr;
    m->pendant = [&] {
        faible->setLayoutManager(nullptr);
        faible->removeFromSuperview();
        nu = nullptr;
    };
    faible->zerl_layout();
    EXPECT_EQ(faible, nullptr);
    m->pendant = nullptr;
}

} // namespace libvue::test
