#include <appkit/WindowFixture.h>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/NSViewAnimation.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSTimer.h>
#include <libvue/platform/foundation/NSValue.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Suiveur : public NSObject {
public:
    static void describe(ClassDescription<Suiveur>& c) {
        c.answers<&Suiveur::should>(op::animationShouldStart);
        c.answers<&Suiveur::stop>(op::animationDidStop);
        c.answers<&Suiveur::end>(op::animationDidEnd);
        c.answers<&Suiveur::mark>(op::animation_didReachProgressMark);
    }
    explicit Suiveur(Log& log) : log_(log) {}
    BOOL starts = YES;
    std::function<void()> onEnd;
    BOOL should(NSAnimation*) { return starts; }
    void stop(NSAnimation*) { log_.push_back("stop"); }
    void end(NSAnimation*) {
        log_.push_back("end");
        if (onEnd) onEnd();
    }
    void mark(NSAnimation*, NSAnimationProgress p) { log_.push_back("mark " + std::to_string(p).substr(0, 4)); }

private:
    Log& log_;
};

class Inverse : public NSObject {
public:
    static void describe(ClassDescription<Inverse>& c) { c.answers<&Inverse::value>(op::animation_valueForProgress); }
    float value(NSAnimation*, NSAnimationProgress p) { return 1 - p; }
};

class Images : public NSAnimation {
public:
    static void describe(ClassDescription<Images, NSAnimation>&) {}
    explicit Images(NSAnimationBlockingMode mode) { setAnimationBlockingMode(mode); }
    std::vector<float> progres;
    void setCurrentProgress(NSAnimationProgress p) override {
        NSAnimation::setCurrentProgress(p);
        progres.push_back(currentProgress());
    }
};

struct NSAnimationTest : WindowFixture {
    Ref<LogView> v = viewIn(window, {{0, 0}, {200, 200}}, "v");
    Ref<Suiveur> suiveur = make<Suiveur>(log);

    /// Starts one of half a second; it keeps itself.
    void anime(NSObject* cible, std::vector<NSDictionary::KeyAndValue> paires) const {
        paires.push_back({NSViewAnimationTargetKey.get(), cible});
        const auto entree = NSMutableDictionary::dictionary();
        for (const auto& p : paires)
            entree->setObject_forKey(p.second, p.first);
        const auto a = make<NSViewAnimation>(NSArray::arrayWithObject(entree));
        a->setAnimationBlockingMode(NSAnimationNonblocking);
        a->setDelegate(suiveur);
        a->startAnimation();
    }
    static NSTimeInterval now() { return NSRunLoop::mainRunLoop()->now(); }
};

TEST_F(NSAnimationTest, CurvesStartAndEndAtTheirPlaces) {
    struct Cas {
        NSAnimationCurve curve;
        double quart, moitie, fin;
    };
    // From the curves' equations, to three places.
    for (const Cas& c : {Cas{NSAnimationEaseInOut, 0.129, 0.5, 0.871}, Cas{NSAnimationEaseIn, 0.093, 0.315, 0.622},
                         Cas{NSAnimationEaseOut, 0.378, 0.685, 0.907}, Cas{NSAnimationLinear, 0.25, 0.5, 0.75}}) {
        const Ref<NSAnimation> a = make<NSAnimation>(1, c.curve);
        for (const auto& [at, value] : {std::pair<float, double>{0, 0},
                                        {0.25F, c.quart},
                                        {0.5F, c.moitie},
                                        {0.75F, c.fin},
                                        {1, 1},
                                        {7, 1},
                                        {NAN, 0}}) {
            a->setCurrentProgress(at);
            EXPECT_NEAR(static_cast<double>(a->currentValue()), value, 0.001) << c.curve << " at " << at;
        }
    }
    const Ref<NSAnimation> a = make<NSAnimation>(1, NSAnimationLinear);
    const Ref<Inverse> own = make<Inverse>();
    a->setDelegate(own);
    a->setCurrentProgress(0.25F);
    EXPECT_EQ(a->currentValue(), 0.75F);
}

TEST_F(NSAnimationTest, RunsForItsDurationOnTheLoopsClock) {
    const Ref<Images> a = make<Images>(NSAnimationNonblocking);
    a->setDelegate(suiveur);
    a->setFrameRate(20);
    a->setDuration(0.25);
    a->startAnimation();
    pass(0.22);
    EXPECT_EQ(a->progres.size(), 4U);
    EXPECT_NEAR(static_cast<double>(a->progres.back()), 0.8, 1e-5);
    EXPECT_THAT(log, IsEmpty());
    pass(0.1);
    EXPECT_EQ(a->progres.size(), 5U);
    EXPECT_EQ(a->progres.back(), 1);
    EXPECT_FALSE(a->isAnimating());
    EXPECT_THAT(taken(), ElementsAre("end"));

    a->startAnimation(); // from the start again
    pass(0.1);
    a->stopAnimation();
    EXPECT_THAT(taken(), ElementsAre("stop"));
    const float la = a->currentProgress();
    pass(1);
    EXPECT_EQ(a->currentProgress(), la);
    a->startAnimation(); // and on from where it stopped
    pass(0.16);
    EXPECT_THAT(taken(), ElementsAre("end"));

    suiveur->starts = NO;
    a->startAnimation();
    EXPECT_FALSE(a->isAnimating());
}

TEST_F(NSAnimationTest, ItGoesOnWhileSomethingIsTracked) {
    const Ref<Images> a = make<Images>(NSAnimationNonblockingThreaded);
    a->startAnimation();
    NSRunLoop::mainRunLoop()->runUntilTime(now() + 1, NSEventTrackingRunLoopMode);
    EXPECT_FALSE(a->isAnimating());
}

TEST_F(NSAnimationTest, ABlockingOneComesBackAtTheEndAndLetsNothingElseRun) {
    const Ref<Images> a = make<Images>(NSAnimationBlocking);
    const Ref<NSTimer> horloge =
        NSTimer::scheduledTimerWithTimeInterval_repeats_block(0.1, YES, [&](NSTimer*) { log.push_back("tick"); });
    mouse().click(50, 50);
    const NSTimeInterval debut = now();
    a->startAnimation();
    EXPECT_NEAR(now() - debut, 0.5, 0.02);
    EXPECT_EQ(a->progres.back(), 1);
    EXPECT_THAT(taken(), IsEmpty());
    horloge->invalidate();
    drain();
    EXPECT_THAT(taken(), ElementsAre("v down", "v up"));
}

TEST_F(NSAnimationTest, MarksAndFollowersAreReachedInOrder) {
    const Ref<Images> a = make<Images>(NSAnimationNonblocking), suivant = make<Images>(NSAnimationNonblocking),
                      arrete = make<Images>(NSAnimationNonblocking);
    a->setDelegate(suiveur);
    a->setFrameRate(3); // several in one frame
    for (const float mark : {0.75F, 0.25F, 0.5F, 0.0F})
        a->addProgressMark(mark);
    a->removeProgressMark(0.5F);
    suivant->startWhenAnimation_reachesProgress(a, 0.5F);
    arrete->setDuration(100);
    arrete->startAnimation();
    arrete->stopWhenAnimation_reachesProgress(a, 1);
    a->startAnimation();
    EXPECT_THAT(taken(), ElementsAre("mark 0.00"));
    pass(0.4);
    EXPECT_THAT(taken(), ElementsAre("mark 0.25"));
    EXPECT_TRUE(suivant->isAnimating());
    EXPECT_TRUE(arrete->isAnimating());
    pass(0.5);
    EXPECT_THAT(taken(), ElementsAre("mark 0.75", "end"));
    EXPECT_FALSE(arrete->isAnimating());
    pass(1);
    suivant->clearStartAnimation();
    arrete->clearStopAnimation();
}

TEST_F(NSAnimationTest, ViewsMoveFromFrameToFrame) {
    anime(v, {{NSViewAnimationStartFrameKey.get(), NSValue::valueWithRect({{10, 10}, {20, 20}}).get()},
              {NSViewAnimationEndFrameKey.get(), NSValue::valueWithRect({{110, 60}, {40, 20}}).get()}});
    EXPECT_EQ(v->frame(), NSMakeRect(10, 10, 20, 20));
    pass(0.25);
    EXPECT_NEAR(v->frame().origin.x, 60, 4);
    EXPECT_NEAR(v->frame().size.width, 30, 1);
    pass(0.3);
    EXPECT_EQ(v->frame(), NSMakeRect(110, 60, 40, 20));
}

TEST_F(NSAnimationTest, WhatFadesOutIsHiddenAndComesBackWhole) {
    window->setAlphaValue(0.8);
    const std::size_t before = native(window).opacityHistory.size();
    CGFloat alaFin = 1;
    suiveur->onEnd = [&] { alaFin = window->alphaValue(); };
    anime(window, {{NSViewAnimationEffectKey.get(), NSViewAnimationFadeOutEffect.get()}});
    pass(0.6);
    EXPECT_EQ(alaFin, 0);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(window->alphaValue(), 0.8);
    const auto& passe = native(window).opacityHistory;
    ASSERT_GT(passe.size(), before + 20U);
    EXPECT_TRUE(std::is_sorted(passe.rbegin() + 1, passe.rend() - static_cast<std::ptrdiff_t>(before)));

    anime(window, {{NSViewAnimationEffectKey.get(), NSViewAnimationFadeInEffect.get()}});
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->alphaValue(), 0);
    pass(0.6);
    EXPECT_EQ(window->alphaValue(), 0.8);

    anime(v, {{NSViewAnimationEffectKey.get(), NSViewAnimationFadeOutEffect.get()}});
    pass(0.3);
    EXPECT_LT(v->alphaValue(), 0.5);
    EXPECT_FALSE(v->isHidden());
    pass(0.3);
    EXPECT_TRUE(v->isHidden());
    EXPECT_EQ(v->alphaValue(), 1);
}

TEST_F(NSAnimationTest, AnAnimatedWindowArrivesWithinItsTime) {
    const Ref<NSWindow> w = windowAt({{100, 100}, {200, 200}}, NSBorderlessWindowMask);
    const NSRect but{{100, 100}, {500, 350}};
    w->setFrame_display_animate({{120, 100}, {200, 200}}, YES, YES); // not on the screen: at once
    EXPECT_EQ(w->frame().origin.x, 120);
    w->setFrameOrigin({100, 100});
    show(w);
    EXPECT_NEAR(w->animationResizeTime(but), 0.4, 1e-9);
    std::vector<CGFloat> largeurs;
    const Ecoute ecoute(NSWindowDidResizeNotification, w,
                        [&](NSNotification*) { largeurs.push_back(w->frame().size.width); });
    const NSTimeInterval debut = now();
    w->setFrame_display_animate(but, YES, YES);
    EXPECT_EQ(w->frame(), but);
    EXPECT_NEAR(now() - debut, 0.4, 0.02);
    EXPECT_GT(largeurs.size(), 15U);
    EXPECT_TRUE(std::is_sorted(largeurs.begin(), largeurs.end()));
}

} // namespace
