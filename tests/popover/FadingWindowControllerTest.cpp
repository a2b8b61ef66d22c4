#include <appkit/AppFixture.h>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/CGSWindowTags.h>
#include <libvue/popover/FadingWindowController.h>
#include <libvue/popover/NSWindowSticky.h>
#include <libvue/popover/PanelBorderLess.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr NSTimeInterval kPas = 1.0F / 30.0F;

class DelegueFondu : public NSObject {
public:
    static void describe(ClassDescription<DelegueFondu>& c) {
        c.answers<&DelegueFondu::vaEntrer>(op::willFadeIn);
        c.answers<&DelegueFondu::estEntre>(op::didFadeIn);
        c.answers<&DelegueFondu::vaSortir>(op::willFadeOut);
        c.answers<&DelegueFondu::estSorti>(op::didFadeOut);
    }
    explicit DelegueFondu(Log& log) : log_(log) {}
    std::function<void(const std::string&, FadingWindowController*)> reaction;

    void vaEntrer(FadingWindowController* c) { dit("will in", c); }
    void estEntre(FadingWindowController* c) { dit("did in", c); }
    void vaSortir(FadingWindowController* c) { dit("will out", c); }
    void estSorti(FadingWindowController* c) { dit("did out", c); }

private:
    void dit(const std::string& quoi, FadingWindowController* c) {
        EXPECT_FALSE(c->isFadingIn() || c->isFadingOut()) << quoi << " comes before the flag, or after it";
        log_.push_back(quoi);
        if (reaction) reaction(quoi, c);
    }
    Log& log_;
};

/// What a subclass may change.
class SansPas : public FadingWindowController {
public:
    static void describe(ClassDescription<SansPas, FadingWindowController>&) {}
    SansPas(NSWindow* w, BOOL entre, BOOL sort) : FadingWindowController(w) {
        doFadeIn = entre;
        doFadeOut = sort;
    }
};

class FadingWindowControllerTest : public AppFixture {
protected:
    void SetUp() override {
        delegue = make<DelegueFondu>(log);
        fenetre = windowAt({{100, 100}, {200, 80}}, NSBorderlessWindowMask);
        c = make<FadingWindowController>(fenetre);
        c->setDelegate(delegue);
    }
    void TearDown() override {
        c = nullptr;
        delegue = nullptr;
        fenetre = nullptr;
        AppFixture::TearDown();
    }
    void montreA(CGFloat alpha) const {
        fenetre->setAlphaValue(alpha);
        fenetre->orderFront(nullptr);
    }
    /// The alphas of a fade, step by step, to the step that stops it.
    std::vector<double> fondu(bool entre) const {
        entre ? c->startFadeIn() : c->startFadeOut(); // the first step is made at once
        std::vector<double> vus{fenetre->alphaValue()};
        for (; (entre ? c->isFadingIn() : c->isFadingOut()) && vus.size() < 100; vus.push_back(fenetre->alphaValue()))
            pass(kPas);
        return vus;
    }

    Ref<DelegueFondu> delegue;
    Ref<NSWindow> fenetre;
    Ref<FadingWindowController> c;
};

TEST_F(FadingWindowControllerTest, AlphaGoesByStepsInSinglePrecision) {
    montreA(0);
    EXPECT_EQ(fondu(true).size(), 21U) << "twenty at most, and one to stop";
    EXPECT_EQ(fondu(true).size(), 1U) << "it shows already: the immediate step stops";
    EXPECT_EQ(fondu(false).size(), 21U);
    montreA(0);
    EXPECT_EQ(fondu(false).size(), 1U);
    taken();

    using Alphas = std::vector<double>;
    struct Row {
        float pas;
        Alphas entree, sortie;
    };
    // The steps are as floats add up; the last one is held, and the fade stops on the step after it.
    for (const Row& row : {Row{0.3F,
                               {0.30000001192092896, 0.6000000238418579, 0.9000000357627869, 1, 1},
                               {0.699999988079071, 0.3999999761581421, 0.09999996423721313, 0, 0}},
                           Row{0.25F, {0.25, 0.5, 0.75, 1, 1}, {0.75, 0.5, 0.25, 0, 0}}, Row{2, {1, 1}, {0, 0}}}) {
        SCOPED_TRACE(row.pas);
        montreA(0);
        c->setFadeIncrement(row.pas);
        EXPECT_EQ(fondu(true), row.entree);
        pass(5);
        EXPECT_EQ(fenetre->alphaValue(), 1.0);
        EXPECT_THAT(taken(), ElementsAre("will in", "did in"));
        EXPECT_EQ(fondu(false), row.sortie);
        EXPECT_FALSE(fenetre->isVisible());
        EXPECT_THAT(taken(), ElementsAre("will out", "did out"));
    }
}

TEST_F(FadingWindowControllerTest, WithoutStepsTheAlphaIsLeftAlone) {
    const Ref<SansPas> s = make<SansPas>(fenetre, NO, NO);
    s->setDelegate(delegue);
    montreA(0.4);
    s->startFadeIn();
    EXPECT_THAT(taken(), ElementsAre("will in", "did in"));
    s->startFadeOut();
    EXPECT_THAT(taken(), ElementsAre("will out", "did out"));
    EXPECT_EQ(fenetre->alphaValue(), 0.4);
    EXPECT_FALSE(fenetre->isVisible());
}

TEST_F(FadingWindowControllerTest, FadingOutByItselfWaitsItsTime) {
    for (const NSTimeInterval attente : {0.0, 1.5}) {
        SCOPED_TRACE(attente);
        montreA(1);
        c->setAutomaticallyFadesOut(YES);
        c->setDisplayTime(attente);
        c->startFadeIn();
        EXPECT_THAT(taken(), ElementsAre("will in", "did in"));
        if (attente > 0) pass(attente - 0.01);
        EXPECT_THAT(taken(), IsEmpty());
        pass(0.011);
        EXPECT_THAT(taken(), ElementsAre("will out"));
        pass(1);
        EXPECT_THAT(taken(), ElementsAre("did out"));
        EXPECT_FALSE(fenetre->isVisible());
    }
}

TEST_F(FadingWindowControllerTest, ANoticeKeepsItselfUntilItHasClosedWhoeverClosesIt) {
    struct Row {
        const char* etat;
        NSTimeInterval attente;
        bool arrete;
    };
    for (const Row& row : {Row{"fading in", 0.2, true}, Row{"waiting", 1.2, true}, Row{"fading out", 2, true},
                           Row{"by itself", 2.5, false}}) {
        SCOPED_TRACE(row.etat);
        montreA(0);
        Ref<FadingWindowController> autre = make<FadingWindowController>(fenetre);
        autre->setAutomaticallyFadesOut(YES);
        autre->setDisplayTime(1);
        const Weak<FadingWindowController> temoin(autre);
        autre->startFadeIn();
        autre = nullptr;
        pass(row.attente);
        if (row.arrete) {
            ASSERT_TRUE(temoin);
            temoin->stopFadeOut();
        }
        EXPECT_FALSE(temoin);
        EXPECT_FALSE(fenetre->isVisible());
        const CGFloat alpha = fenetre->alphaValue();
        pass(3);
        EXPECT_EQ(fenetre->alphaValue(), alpha);
    }
}

TEST_F(FadingWindowControllerTest, ADelegateMayEndWhatItIsToldOf) {
    struct Row {
        const char* quand;
        Log dit;
    };
    for (const Row& row : {Row{"did in", {"will in", "did in", "did out"}},
                           Row{"will out", {"will in", "did in", "will out", "did out"}}}) {
        SCOPED_TRACE(row.quand);
        montreA(1);
        c->setAutomaticallyFadesOut(YES);
        c->setDisplayTime(0.1);
        delegue->reaction = [&](const std::string& quoi, FadingWindowController* f) {
            if (quoi == row.quand) f->stopFadeOut();
        };
        c->startFadeIn();
        pass(3);
        EXPECT_EQ(taken(), row.dit);
        EXPECT_EQ(c->retainCount(), 1U);
    }
}

TEST_F(FadingWindowControllerTest, ThePanelTakesTheKeysAndItsOwnStyle) {
    const Ref<PanelBorderLess> p =
        make<PanelBorderLess>(NSMakeRect(10, 20, 300, 40), NSTitledWindowMask, NSBackingStoreBuffered, YES);
    EXPECT_EQ(p->styleMask(), NSUInteger{NSBorderlessWindowMask});
    EXPECT_EQ(p->frame(), NSMakeRect(10, 20, 300, 40));
    EXPECT_EQ(p->alphaValue(), 0.92);
    EXPECT_FALSE(p->isOpaque());
    p->makeKeyAndOrderFront(nullptr);
    EXPECT_TRUE(p->isKeyWindow());
    p->close();
}

TEST_F(FadingWindowControllerTest, AStickyWindowIsOnAllDesktops) {
    fenetre->orderFront(nullptr);
    const NSInteger n = fenetre->windowNumber();
    const CGSConnectionID oui = _CGSDefaultConnection();
    for (const BOOL collante : {NO, YES, YES, NO}) {
        setSticky(fenetre, collante);
        EXPECT_EQ(native(fenetre).allDesktops, collante);
        CGSWindowTags t{0xFFFFFFFF00000000, 7}; // beyond the width nothing is read or written
        EXPECT_EQ(CGSGetWindowTags(oui, n, t.data(), 32), 0);
        EXPECT_EQ(t, (CGSWindowTags{collante ? 0xFFFFFFFF00000800 : 0xFFFFFFFF00000000, 7}));
    }
    setSticky(nullptr, YES);

    // What it does not know the window server refuses.
    CGSWindowTags t{kCGSTagSticky, 2};
    EXPECT_NE(CGSGetWindowTags(oui + 1, n, t.data(), 32), 0);
    EXPECT_NE(CGSGetWindowTags(oui, 999999, t.data(), 32), 0);
    EXPECT_NE(CGSGetWindowTags(oui, n, nullptr, 32), 0);
    EXPECT_NE(CGSGetWindowTags(oui, n, t.data(), 129), 0);
    EXPECT_EQ(t, (CGSWindowTags{kCGSTagSticky, 2}));
    EXPECT_NE(CGSSetWindowTags(oui + 1, n, t.data(), 32), 0);
    EXPECT_EQ(CGSSetWindowTags(oui, n, t.data(), 8), 0); // too narrow for the bit
    EXPECT_FALSE(fenetre->isOnAllDesktops());
}

} // namespace
