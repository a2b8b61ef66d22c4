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
        log_.push_back(quoi + (c->isFadingIn() ? " i" : "") + (c->isFadingOut() ? " o" : ""));
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
    /// One step of the timer; the alpha afterwards.
    CGFloat pas() const {
        pass(kPas);
        return fenetre->alphaValue();
    }

    Ref<DelegueFondu> delegue;
    Ref<NSWindow> fenetre;
    Ref<FadingWindowController> c;
};

TEST_F(FadingWindowControllerTest, AlphaGoesByStepsInSinglePrecision) {
    struct Row {
        float pas;
        std::vector<double> entree, sortie;
    };
    // The steps are as floats add up; the last one is held.
    for (const Row& row : {Row{0.3F,
                               {0.30000001192092896, 0.6000000238418579, 0.9000000357627869, 1.0},
                               {0.699999988079071, 0.3999999761581421, 0.09999996423721313, 0.0}},
                           Row{0.25F, {0.25, 0.5, 0.75, 1.0}, {0.75, 0.5, 0.25, 0.0}}, Row{2, {1.0}, {0.0}}}) {
        SCOPED_TRACE(row.pas);
        montreA(0);
        c->setFadeIncrement(row.pas);
        c->startFadeIn();
        std::vector<double> vus{fenetre->alphaValue()}; // the first step is made at once
        while (vus.size() < row.entree.size())
            vus.push_back(pas());
        EXPECT_EQ(vus, row.entree);
        // Arriving is one thing, stopping is the step after it.
        EXPECT_TRUE(c->isFadingIn());
        EXPECT_EQ(pas(), 1.0);
        EXPECT_FALSE(c->isFadingIn());
        pass(5);
        EXPECT_EQ(fenetre->alphaValue(), 1.0);
        EXPECT_THAT(taken(), ElementsAre("will in", "did in"));

        c->startFadeOut();
        vus = {fenetre->alphaValue()};
        while (vus.size() < row.sortie.size())
            vus.push_back(pas());
        EXPECT_EQ(vus, row.sortie);
        EXPECT_TRUE(c->isFadingOut());
        EXPECT_TRUE(fenetre->isVisible());
        (void)pas();
        EXPECT_FALSE(c->isFadingOut());
        EXPECT_FALSE(fenetre->isVisible());
        EXPECT_THAT(taken(), ElementsAre("will out", "did out"));
    }
}

TEST_F(FadingWindowControllerTest, AFadeTakesTwentyStepsAtMostAndOneToStop) {
    struct Row {
        CGFloat alpha;
        bool entre;
        int pas;
    };
    for (const Row& row : {Row{0, true, 21}, Row{1, true, 1}, Row{1, false, 21}, Row{0, false, 1}}) {
        SCOPED_TRACE(testing::Message() << row.alpha << row.entre);
        montreA(row.alpha);
        row.entre ? c->startFadeIn() : c->startFadeOut();
        int faits = 1;
        for (; (c->isFadingIn() || c->isFadingOut()) && faits < 100; ++faits)
            (void)pas();
        EXPECT_EQ(faits, row.pas);
        EXPECT_EQ(fenetre->isVisible(), row.entre);
        if (row.entre)
            EXPECT_THAT(taken(), ElementsAre("will in", "did in"));
        else
            EXPECT_THAT(taken(), ElementsAre("will out", "did out"));
    }
    c->stopFadeOut(); // closes what came in
}

TEST_F(FadingWindowControllerTest, WithoutStepsTheAlphaIsLeftAlone) {
    const Ref<SansPas> s = make<SansPas>(fenetre, NO, NO);
    s->setDelegate(delegue);
    montreA(0.4);
    s->startFadeIn();
    EXPECT_THAT(taken(), ElementsAre("will in", "did in"));
    EXPECT_EQ(fenetre->alphaValue(), 0.4);
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
        if (attente > 0) {
            pass(attente - 0.01);
            EXPECT_THAT(taken(), IsEmpty());
            EXPECT_EQ(fenetre->alphaValue(), 1);
        }
        pass(0.011);
        EXPECT_THAT(taken(), ElementsAre("will out"));
        EXPECT_TRUE(c->isFadingOut());
        pass(1);
        EXPECT_THAT(taken(), ElementsAre("did out"));
        EXPECT_FALSE(fenetre->isVisible());
    }
}

TEST_F(FadingWindowControllerTest, ANoticeKeepsItselfUntilItHasClosed) {
    montreA(0);
    c->setAutomaticallyFadesOut(YES);
    c->setDisplayTime(2);
    const Weak<FadingWindowController> temoin(c);
    c->startFadeIn();
    c = nullptr;
    pass(2.5);
    ASSERT_TRUE(temoin);
    pass(1);
    EXPECT_FALSE(temoin);
    EXPECT_FALSE(fenetre->isVisible());
}

TEST_F(FadingWindowControllerTest, StoppingEndsItFromEveryState) {
    struct Row {
        const char* etat;
        NSTimeInterval attente;
    };
    // Fading in, showing, waiting to fade out (a second), fading out.
    for (const Row& row : {Row{"in", 0.2}, Row{"waits", 1.2}, Row{"out", 2.0}}) {
        SCOPED_TRACE(row.etat);
        montreA(0);
        Ref<FadingWindowController> autre = make<FadingWindowController>(fenetre);
        autre->setAutomaticallyFadesOut(YES);
        autre->setDisplayTime(1);
        const Weak<FadingWindowController> temoin(autre);
        autre->startFadeIn();
        pass(row.attente);
        autre->stopFadeOut();
        autre = nullptr;
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
    const auto marques = [&] {
        CGSWindowTags t{0xFFFFFFFF00000000, 7};
        EXPECT_EQ(CGSGetWindowTags(_CGSDefaultConnection(), fenetre->windowNumber(), t.data(), 32), 0);
        EXPECT_EQ(t[1], 7U); // beyond the width
        return t[0];
    };
    setSticky(fenetre, NO);
    EXPECT_EQ(marques(), 0xFFFFFFFF00000000);
    setSticky(fenetre, YES);
    EXPECT_EQ(marques(), 0xFFFFFFFF00000800);
    EXPECT_TRUE(native(fenetre).allDesktops);
    setSticky(fenetre, YES);
    EXPECT_TRUE(native(fenetre).allDesktops);
    setSticky(fenetre, NO);
    EXPECT_FALSE(native(fenetre).allDesktops);
}

TEST_F(FadingWindowControllerTest, TheWindowServerRefusesWhatItDoesNotKnow) {
    CGSWindowTags t{1, 2};
    const NSInteger n = fenetre->windowNumber();
    const CGSConnectionID oui = _CGSDefaultConnection();
    EXPECT_NE(oui, 0);
    EXPECT_NE(CGSGetWindowTags(oui + 1, n, t.data(), 32), 0);
    EXPECT_NE(CGSGetWindowTags(oui, 999999, t.data(), 32), 0);
    EXPECT_NE(CGSGetWindowTags(oui, n, nullptr, 32), 0);
    EXPECT_NE(CGSGetWindowTags(oui, n, t.data(), 0), 0);
    EXPECT_NE(CGSGetWindowTags(oui, n, t.data(), 129), 0);
    EXPECT_EQ(t, (CGSWindowTags{1, 2}));
    t = {kCGSTagSticky, 0};
    EXPECT_NE(CGSSetWindowTags(oui + 1, n, t.data(), 32), 0);
    EXPECT_FALSE(fenetre->isOnAllDesktops());
    EXPECT_EQ(CGSSetWindowTags(oui, n, t.data(), 8), 0); // too narrow for the bit
    EXPECT_FALSE(fenetre->isOnAllDesktops());
    setSticky(nullptr, YES);
}

} // namespace
