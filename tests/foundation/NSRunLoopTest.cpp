#include <algorithm>
#include <deque>
#include <limits>
#include <thread>

#include "Textes.h"

#include <libvue/platform/foundation/NSDate.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/foundation/NSThread.h>
#include <libvue/platform/foundation/NSTimer.h>

using namespace libvue;

namespace {

constexpr NSTimeInterval sansFin = std::numeric_limits<NSTimeInterval>::infinity();

/// Time that moves only by waiting, and native events at given times.
class SourceVirtuelle : public RunLoopSource {
public:
    NSTimeInterval now() override { return temps; }
    bool waitAndDispatch(NSTimeInterval deadline) override {
        attentes.push_back(deadline);
        if (!evenements.empty() && evenements.front().time <= std::max(deadline, temps)) {
            auto e = std::move(evenements.front());
            evenements.pop_front();
            temps = std::max(temps, e.time);
            e.run();
            return true;
        }
        if (deadline > temps && deadline != sansFin) temps = deadline;
        return false;
    }
    void wake() override { ++reveils; }

    struct Evenement {
        NSTimeInterval time;
        std::function<void()> run;
    };
    NSTimeInterval temps = 0;
    std::deque<Evenement> evenements;
    std::vector<NSTimeInterval> attentes;
    int reveils = 0;
};

class Cible : public NSObject {
public:
    static void describe(ClassDescription<Cible>& c) {
        c.answers<&Cible::note>("note:");
        c.answers<&Cible::sonne>("sonne:");
        c.answers<&Cible::rien>("rien");
        c.answers<&Cible::recommence>("recommence");
    }
    void note(NSObject* o) { journal += (o ? o->description()->utf8() : "-") + " "; }
    void sonne(NSTimer* t) {
        journal += "t";
        if (action) action(t);
    }
    void recommence() {
        journal += "r";
        if (journal.size() < 9) performSelector_withObject_afterDelay(sel("recommence"), nullptr, 0);
    }
    void rien() { journal += "rien "; }

    std::string journal;
    std::function<void(NSTimer*)> action;
};

class NSRunLoopTest : public testing::Test {
protected:
    void SetUp() override { boucle->setSource(&source); }
    void TearDown() override {
        boucle->cancelAll();
        boucle->setSource(nullptr);
    }
    std::string pris() { return std::exchange(cible->journal, {}); }
    Ref<NSTimer> timer(NSTimeInterval delai, BOOL repete = YES, const char* selecteur = "sonne:") {
        return NSTimer::scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(delai, cible, sel(selecteur),
                                                                                        u"info"_ns, repete);
    }

    SourceVirtuelle source;
    NSRunLoop* boucle = NSRunLoop::mainRunLoop();
    Ref<Cible> cible = make<Cible>();
};

} // namespace

TEST_F(NSRunLoopTest, delayedPerformsRunByTimeAndThenByOrderOfScheduling) {
    for (const auto& [texte, delai] :
         {std::pair(u"c", 2.0), {u"a", 1.0}, {u"d", 2.0}, {u"b", 1.0}, {u"z", 0.0}, {u"y", -5.0}})
        cible->performSelector_withObject_afterDelay(sel("note:"), NSString::from(texte), delai);
    EXPECT_TRUE(boucle->runOnce(sansFin));
    EXPECT_EQ(pris(), "z y ");
    EXPECT_TRUE(boucle->runOnce(sansFin));
    EXPECT_EQ(pris(), "a b ");
    EXPECT_EQ(source.temps, 1.0);
    EXPECT_FALSE(boucle->runOnce(1.5));
    EXPECT_EQ(source.temps, 1.5);
    boucle->runUntilTime(10);
    EXPECT_EQ(pris(), "c d ");
    EXPECT_EQ(source.temps, 10.0);
}

TEST_F(NSRunLoopTest, whatIsScheduledDuringATurnRunsInALaterOne) {
    cible->performSelector_withObject_afterDelay(sel("recommence"), nullptr, 0);
    int tours = 0;
    std::function<void()> encore = [&] {
        if (++tours < 5) boucle->performBlock(encore);
    };
    boucle->performBlock(encore);
    for (int i = 1; i <= 2; ++i) {
        boucle->runOnce(0);
        EXPECT_EQ(cible->journal, std::string(static_cast<std::size_t>(i), 'r'));
        EXPECT_EQ(tours, i);
    }
    // An event does not wait behind work that never ends.
    bool vu = false;
    source.evenements.push_back({0, [&] { vu = true; }});
    boucle->runOnce(0);
    EXPECT_TRUE(vu);
}

TEST_F(NSRunLoopTest, delayedPerformsAreTakenBack) {
    const auto autre = make<Cible>();
    const auto un = NSNumber::numberWithInteger(1);
    const struct {
        const char* what;
        std::function<void()> cancel;
        const char* left;
    } rows[] = {
        // The argument is compared by what it says, not by who it is.
        {"one", [&] { NSObject::cancelPreviousPerformRequestsWithTarget_selector_object(cible, sel("note:"), un); },
         "0 - rien "},
        {"that without an argument",
         [&] { NSObject::cancelPreviousPerformRequestsWithTarget_selector_object(cible, sel("note:"), nullptr); },
         "0 1 rien "},
        {"all", [&] { NSObject::cancelPreviousPerformRequestsWithTarget(cible); }, ""},
    };
    for (const auto& row : rows) {
        for (int i = 0; i < 2; ++i)
            cible->performSelector_withObject_afterDelay(sel("note:"), NSNumber::numberWithInteger(i), 1);
        cible->performSelector_withObject_afterDelay(sel("note:"), nullptr, 1);
        cible->performSelector_withObject_afterDelay(sel("rien"), nullptr, 1);
        autre->performSelector_withObject_afterDelay(sel("rien"), nullptr, 1);
        row.cancel();
        boucle->runUntilTime(source.temps + 2);
        EXPECT_EQ(pris(), row.left) << row.what;
        EXPECT_EQ(std::exchange(autre->journal, {}), "rien ") << row.what;
    }
}

TEST_F(NSRunLoopTest, aRepeatingTimerKeepsItsPhaseAndSkipsWhatItMissed) {
    std::vector<NSTimeInterval> heures;
    const auto t = NSTimer::scheduledTimerWithTimeInterval_repeats_block(1.0, YES, [&](NSTimer*) {
        heures.push_back(source.temps);
        if (heures.size() == 2) source.temps += 2.6; // a long piece of work
    });
    boucle->runUntilTime(6.5);
    EXPECT_EQ(heures, (std::vector<NSTimeInterval>{1, 2, 5, 6}));
    t->invalidate();
    boucle->runUntilTime(9);
    EXPECT_EQ(heures.size(), 4u);
}

TEST_F(NSRunLoopTest, asManyTicksAsStepsOfTheClock) {
    for (const double frequence : {30.0, 10.0, 7.0}) {
        const NSTimeInterval debut = source.temps = 0;
        int tics = 0;
        const auto t =
            NSTimer::scheduledTimerWithTimeInterval_repeats_block(1 / frequence, YES, [&](NSTimer*) { ++tics; });
        for (int i = 1; i <= 60; ++i) {
            boucle->runUntilTime(debut + i / frequence);
            ASSERT_EQ(tics, i) << frequence;
        }
        t->invalidate();
    }
}

TEST_F(NSRunLoopTest, theOrderHoldsWhateverIsTakenBack) {
    std::vector<std::pair<NSTimeInterval, int>> attendus;
    std::vector<Ref<NSTimer>> timers;
    std::vector<int> obtenus;
    unsigned hasard = 12345;
    for (int i = 0; i < 2000; ++i) {
        hasard = hasard * 1103515245 + 12345;
        const NSTimeInterval delai = hasard >> 16 & 1023;
        timers.push_back(NSTimer::scheduledTimerWithTimeInterval_repeats_block(
            delai, NO, [&obtenus, i](NSTimer*) { obtenus.push_back(i); }));
        if (i % 2) attendus.emplace_back(delai, i);
    }
    for (int i = 0; i < 2000; i += 2)
        timers[static_cast<std::size_t>(i * 7 % 2000)]->invalidate();
    boucle->runUntilTime(2000);
    std::sort(attendus.begin(), attendus.end());
    ASSERT_EQ(obtenus.size(), attendus.size());
    for (std::size_t i = 0; i < obtenus.size(); ++i)
        ASSERT_EQ(obtenus[i], attendus[i].second) << i;
}

TEST_F(NSRunLoopTest, whatIsScheduledKeepsItsObjectsUntilItIsOver) {
    const Weak<Cible> faible(cible);
    std::string vu;
    cible->action = [&](NSTimer* t) { vu += t->userInfo()->description()->utf8() + (t->isValid() ? "+" : "-"); };
    const Weak<NSTimer> sonne(timer(0.3, NO));
    cible->performSelector_withObject_afterDelay(sel("note:"), make<Cible>(), 2);
    cible = nullptr;
    boucle->runUntilTime(1);
    EXPECT_EQ(vu, "info+");
    EXPECT_EQ(sonne, nullptr);
    EXPECT_NE(faible, nullptr);
    boucle->runUntilTime(2);
    EXPECT_EQ(faible, nullptr);
    cible = make<Cible>();
}

TEST_F(NSRunLoopTest, aTimerMayEndOrMoveItselfWhileItFires) {
    const auto t = timer(1);
    cible->action = [&](NSTimer* timer) { timer->invalidate(); };
    boucle->runUntilTime(5);
    EXPECT_EQ(pris(), "t");
    EXPECT_FALSE(t->isValid());

    const auto u = timer(1);
    cible->action = [&](NSTimer* timer) { timer->setFireDate(NSDate::dateWithTimeIntervalSinceNow(3)); };
    boucle->runUntilTime(11.5);
    EXPECT_EQ(pris(), "tt");             // at 6 and 9
    EXPECT_NEAR(u->fireTime(), 12, 0.1); // two clocks of the system are read for it
    u->invalidate();
}

TEST_F(NSRunLoopTest, firingByHandLeavesTheScheduleAlone) {
    const auto encore = timer(1);
    const auto seule = timer(1, NO, "rien");
    encore->fire();
    seule->fire();
    seule->fire();
    EXPECT_EQ(pris(), "trien ");
    boucle->runUntilTime(1);
    EXPECT_EQ(pris(), "t");
    encore->invalidate();
}

TEST_F(NSRunLoopTest, anExceptionDoesNotStopARepeatingTimer) {
    const auto t = NSTimer::scheduledTimerWithTimeInterval_repeats_block(
        1, YES, [](NSTimer*) { raiseNamed(NSGenericException, "voulu"); });
    EXPECT_THROW(boucle->runUntilTime(1), NSExceptionRaised);
    EXPECT_EQ(boucle->currentMode(), nullptr);
    EXPECT_EQ(boucle->nextDeadline(), 2.0);
    t->invalidate();
}

TEST_F(NSRunLoopTest, modesHoldBackWhatIsNotTheirs) {
    const auto ajoute = [&](const char16_t* nom, NSString* mode) {
        auto t = NSTimer::timerWithTimeInterval_repeats_block(
            1, NO, [this, nom](NSTimer*) { cible->journal += NSString::from(nom)->utf8() + " "; });
        boucle->addTimer_forMode(t, mode);
        return t;
    };
    ajoute(u"defaut", NSDefaultRunLoopMode);
    ajoute(u"suivi", NSEventTrackingRunLoopMode);
    ajoute(u"commun", NSRunLoopCommonModes);
    const auto deux = ajoute(u"deux", u"mien"_ns);
    boucle->addTimer_forMode(deux, NSEventTrackingRunLoopMode);
    EXPECT_EQ(boucle->nextDeadline(u"autre"_ns), sansFin);
    boucle->runUntilTime(2, NSEventTrackingRunLoopMode);
    EXPECT_EQ(pris(), "suivi commun deux ");
    boucle->runUntilTime(3, u"mien"_ns);
    EXPECT_EQ(pris(), "");
    boucle->runOnce(3);
    EXPECT_EQ(pris(), "defaut ");
}

TEST_F(NSRunLoopTest, aNestedRunIsAnOrdinaryReEntry) {
    const auto t = timer(1);
    boucle->addTimer_forMode(t, NSModalPanelRunLoopMode);
    std::string modes;
    cible->action = [&](NSTimer*) {
        if (source.temps > 1) return;
        boucle->performBlock([&] { modes += boucle->currentMode()->utf8() + " "; });
        // The timer that is firing does not fire again inside.
        boucle->runUntilTime(3.5, NSModalPanelRunLoopMode);
        modes += boucle->currentMode()->utf8();
    };
    boucle->runUntilTime(4);
    EXPECT_EQ(pris(), "tt");
    EXPECT_EQ(modes, "NSModalPanelRunLoopMode NSDefaultRunLoopMode");
    t->invalidate();
}

TEST_F(NSRunLoopTest, theEndOfTheTurnRunsBeforeTheWaitAndAfterTheWork) {
    std::string ordre;
    NSUInteger second = 0;
    const NSUInteger premier = boucle->addEndOfTurnObserver([&] { ordre += "F"; });
    second = boucle->addEndOfTurnObserver([&] {
        ordre += "G";
        boucle->removeEndOfTurnObserver(second);
    });
    source.evenements.push_back({1, [&] {
                                     ordre += "e";
                                     boucle->performBlock([&] { ordre += "b"; });
                                 }});
    boucle->runOnce(sansFin);
    EXPECT_EQ(ordre, "FGebF");
    // Something due: no wait, so nothing to show before it.
    ordre.clear();
    boucle->performBlock([&] { ordre += "b"; });
    boucle->runOnce(sansFin);
    EXPECT_EQ(ordre, "bF");
    boucle->removeEndOfTurnObserver(premier);
    boucle->removeEndOfTurnObserver(premier);
}

TEST_F(NSRunLoopTest, nothingToDoIsOneWaitWithoutEnd) {
    boucle->runOnce(sansFin);
    EXPECT_EQ(source.attentes, std::vector<NSTimeInterval>{sansFin});
}

TEST_F(NSRunLoopTest, aBlockComesFromAnotherThread) {
    int fois = 0;
    std::thread fil([&] {
        EXPECT_FALSE(NSThread::isMainThread());
        boucle->performBlock([&] { fois += NSThread::isMainThread() ? 1 : 100; });
    });
    fil.join();
    EXPECT_EQ(source.reveils, 1);
    EXPECT_EQ(fois, 0);
    EXPECT_TRUE(boucle->runOnce(sansFin));
    EXPECT_EQ(fois, 1);
    EXPECT_TRUE(NSThread::isMainThread());
}

TEST_F(NSRunLoopTest, theSystemsOwnWaitEndsOnAWake) {
    boucle->setSource(nullptr);
    std::thread fil([&] { boucle->wake(); });
    EXPECT_FALSE(boucle->runOnce(sansFin));
    fil.join();
    bool fait = false;
    std::thread autre([&] { boucle->performBlock([&] { fait = true; }); });
    EXPECT_TRUE(boucle->runOnce(sansFin));
    EXPECT_TRUE(fait);
    autre.join();
}

TEST_F(NSRunLoopTest, cancellingEverythingInvalidatesTheTimers) {
    const Weak<Cible> faible(cible);
    const auto t = timer(1);
    cible->performSelector_withObject_afterDelay(sel("rien"), nullptr, 1);
    boucle->performBlock([garde = cible] {});
    cible = nullptr;
    boucle->cancelAll();
    EXPECT_FALSE(t->isValid());
    EXPECT_EQ(faible, nullptr);
    cible = make<Cible>();
}
