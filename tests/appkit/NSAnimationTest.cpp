#include <appkit/AppFixture.h>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/platform/appkit/NSViewAnimation.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNumber.h>
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
    using NSAnimation::NSAnimation;
    std::vector<float> progres;
    void setCurrentProgress(NSAnimationProgress p) override {
        NSAnimation::setCurrentProgress(p);
        progres.push_back(currentProgress());
    }
};

struct NSAnimationTest : AppFixture {
    [[nodiscard]] Ref<Images> animation(NSAnimationBlockingMode mode = NSAnimationNonblocking) const {
        Ref<Images> a = make<Images>();
        a->setAnimationBlockingMode(mode);
        return a;
    }
    static Ref<NSViewAnimation> surUn(std::initializer_list<NSDictionary::KeyAndValue> paires) {
        const Ref<NSDictionary> entree = NSDictionary::dictionaryWithObjectsAndKeys(paires);
        Ref<NSViewAnimation> a = make<NSViewAnimation>(NSArray::arrayWithObject(entree));
        a->setAnimationBlockingMode(NSAnimationNonblocking);
        return a;
    }
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
        const auto at = [&](float p) {
            a->setCurrentProgress(p);
            return static_cast<double>(a->currentValue());
        };
        EXPECT_EQ(at(0), 0);
        EXPECT_NEAR(at(0.25F), c.quart, 0.001);
        EXPECT_NEAR(at(0.5F), c.moitie, 0.001);
        EXPECT_NEAR(at(0.75F), c.fin, 0.001);
        EXPECT_EQ(at(1), 1);
        EXPECT_EQ(at(7), 1);
        EXPECT_EQ(at(NAN), 0);
    }
}

TEST_F(NSAnimationTest, RunsForItsDurationOnTheLoopsClock) {
    const Ref<Images> a = animation();
    const Ref<Suiveur> d = make<Suiveur>(log);
    a->setDelegate(d);
    a->setFrameRate(20);
    a->setDuration(0.25);
    a->startAnimation();
    EXPECT_TRUE(a->isAnimating());
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

    d->starts = NO;
    a->startAnimation();
    EXPECT_FALSE(a->isAnimating());
}

TEST_F(NSAnimationTest, ItGoesOnWhileSomethingIsTracked) {
    const Ref<Images> a = animation(NSAnimationNonblockingThreaded);
    a->startAnimation();
    NSRunLoop::mainRunLoop()->runUntilTime(NSRunLoop::mainRunLoop()->now() + 1, NSEventTrackingRunLoopMode);
    EXPECT_FALSE(a->isAnimating());
}

TEST_F(NSAnimationTest, ABlockingOneComesBackAtTheEndAndLetsNothingElseRun) {
    const Ref<NSWindow> w = windowAt({{100, 100}, {200, 200}});
    const Ref<LogView> v = viewIn(w, {{0, 0}, {200, 200}}, "v");
    show(w);
    taken();
    const Ref<Images> a = animation(NSAnimationBlocking);
    const Ref<NSTimer> horloge =
        NSTimer::scheduledTimerWithTimeInterval_repeats_block(0.1, YES, [&](NSTimer*) { log.push_back("tick"); });
    windows().moveMouse({150, 150});
    windows().press();
    windows().release();
    const NSTimeInterval debut = NSRunLoop::mainRunLoop()->now();
    a->startAnimation();
    EXPECT_NEAR(NSRunLoop::mainRunLoop()->now() - debut, 0.5, 0.02);
    EXPECT_EQ(a->progres.back(), 1);
    EXPECT_THAT(taken(), IsEmpty());
    horloge->invalidate();
    drain();
    EXPECT_THAT(taken(), ElementsAre("v down", "v up"));
}

TEST_F(NSAnimationTest, MarksAndFollowersAreReachedInOrder) {
    const Ref<Images> a = animation(), suivant = animation(), arrete = animation();
    const Ref<Suiveur> d = make<Suiveur>(log);
    a->setDelegate(d);
    a->setFrameRate(3); // several in one frame
    a->addProgressMark(0.75F);
    a->addProgressMark(0.25F);
    a->addProgressMark(0.5F);
    a->removeProgressMark(0.5F);
    a->addProgressMark(0);
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
    const Ref<NSWindow> w = windowAt({{100, 100}, {200, 200}});
    const Ref<LogView> v = viewIn(w, {{0, 0}, {20, 20}}, "v");
    show(w);
    const Ref<NSViewAnimation> a =
        surUn({{NSViewAnimationTargetKey.get(), v.get()},
               {NSViewAnimationStartFrameKey.get(), NSValue::valueWithRect({{10, 10}, {20, 20}}).get()},
               {NSViewAnimationEndFrameKey.get(), NSValue::valueWithRect({{110, 60}, {40, 20}}).get()}});
    a->startAnimation();
    EXPECT_EQ(v->frame(), NSMakeRect(10, 10, 20, 20));
    pass(0.25);
    EXPECT_NEAR(v->frame().origin.x, 60, 4);
    EXPECT_NEAR(v->frame().size.width, 30, 1);
    pass(0.3);
    EXPECT_EQ(v->frame(), NSMakeRect(110, 60, 40, 20));
}

TEST_F(NSAnimationTest, WindowsFadeOutAndComeBackWhole) {
    const Ref<NSWindow> w = windowAt({{100, 100}, {200, 200}});
    w->setAlphaValue(0.8);
    show(w);
    const Ref<NSViewAnimation> a = surUn({{NSViewAnimationTargetKey.get(), w.get()},
                                          {NSViewAnimationEffectKey.get(), NSViewAnimationFadeOutEffect.get()}});
    const Ref<Suiveur> d = make<Suiveur>(log);
    CGFloat alaFin = 1;
    d->onEnd = [&] { alaFin = w->alphaValue(); };
    a->setDelegate(d);
    a->startAnimation();
    pass(0.6);
    EXPECT_EQ(alaFin, 0);
    EXPECT_FALSE(w->isVisible());
    EXPECT_EQ(w->alphaValue(), 0.8);
    const auto& passe = native(w).opacityHistory;
    ASSERT_GT(passe.size(), 20U);
    for (std::size_t i = 2; i + 1 < passe.size(); ++i)
        EXPECT_LE(passe[i], passe[i - 1]);

    const Ref<NSViewAnimation> b = surUn({{NSViewAnimationTargetKey.get(), w.get()},
                                          {NSViewAnimationEffectKey.get(), NSViewAnimationFadeInEffect.get()}});
    b->startAnimation();
    EXPECT_TRUE(w->isVisible());
    EXPECT_EQ(w->alphaValue(), 0);
    pass(0.6);
    EXPECT_EQ(w->alphaValue(), 0.8);
}

TEST_F(NSAnimationTest, ViewsFadeByHidingInTheEnd) {
    const Ref<NSWindow> w = windowAt({{100, 100}, {200, 200}});
    const Ref<LogView> v = viewIn(w, {{0, 0}, {20, 20}}, "v");
    show(w);
    surUn({{NSViewAnimationTargetKey.get(), v.get()},
           {NSViewAnimationEffectKey.get(), NSViewAnimationFadeOutEffect.get()}})
        ->startAnimation(); // it keeps itself
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
    const Ref<NSObject> jeton = NSNotificationCenter::defaultCenter()->addObserverForName_object_queue_usingBlock(
        NSWindowDidResizeNotification, w, nullptr, [&](NSNotification*) { largeurs.push_back(w->frame().size.width); });
    const NSTimeInterval debut = NSRunLoop::mainRunLoop()->now();
    w->setFrame_display_animate(but, YES, YES);
    EXPECT_EQ(w->frame(), but);
    EXPECT_NEAR(NSRunLoop::mainRunLoop()->now() - debut, 0.4, 0.02);
    EXPECT_GT(largeurs.size(), 15U);
    EXPECT_TRUE(std::is_sorted(largeurs.begin(), largeurs.end()));
    NSNotificationCenter::defaultCenter()->removeObserver(jeton);
}

TEST_F(NSAnimationTest, TheDelegateMayHaveItsOwnCurve) {
    const Ref<NSAnimation> a = make<NSAnimation>(1, NSAnimationLinear);
    const Ref<Inverse> d = make<Inverse>();
    a->setDelegate(d);
    a->setCurrentProgress(0.25F);
    EXPECT_EQ(a->currentValue(), 0.75F);
}

} // namespace
