#include <libvue/platform/foundation/NSRunLoop.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <deque>
#include <mutex>

#include <libvue/platform/foundation/NSDate.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/NSThread.h>
#include <libvue/platform/foundation/NSTimer.h>
#include <libvue/platform/foundation/RunLoopHeap.h>

namespace libvue {

namespace {

constexpr NSTimeInterval infinity = std::numeric_limits<NSTimeInterval>::infinity();
/// What is due within this many seconds is due now, so that sums of the same steps meet.
constexpr NSTimeInterval tolerance = 1e-6;
/// The three common modes are the first ones.
constexpr RunLoopModes commonModes = 7;
constexpr std::size_t mostModes = 32;

/// No native events: the process's clock, and a sleep that can be ended.
class SleepingSource : public RunLoopSource {
public:
    NSTimeInterval now() override { return Clock::current().now(); }

    bool waitAndDispatch(NSTimeInterval deadline) override {
        std::unique_lock lock(mutex_);
        while (!woken_) {
            const NSTimeInterval left = deadline - now();
            if (!(left > 0)) break;
            // Held to a day: the clocks of the standard library overflow on "without end".
            ended_.wait_for(lock, std::chrono::duration<NSTimeInterval>(std::min(left, 86400.0)));
        }
        woken_ = false;
        return false;
    }

    void wake() override {
        {
            const std::lock_guard lock(mutex_);
            woken_ = true;
        }
        ended_.notify_one();
    }

private:
    std::mutex mutex_;
    std::condition_variable ended_;
    bool woken_ = false;
};

} // namespace

struct NSRunLoop::State {
    RunLoopHeap heap;
    std::vector<Ref<NSString>> modes{NSDefaultRunLoopMode.get(), NSEventTrackingRunLoopMode.get(),
                                     NSModalPanelRunLoopMode.get()};
    std::vector<NSString*> running;

    SleepingSource sleeping;
    RunLoopSource* source = &sleeping;
    std::mutex mutex; // of the source for other threads, and of the inbox
    std::vector<std::function<void()>> inbox;
    std::atomic<bool> hasInbox = false;

    struct Observer {
        NSUInteger token;
        EndOfTurn run;
        bool removed = false;
    };
    std::deque<Observer> observers; // their places do not move
    NSUInteger nextToken = 1;
    int observing = 0;

    RunLoopModes maskOf(NSString* mode);
    void emptyInbox();
    void endTurn();
    bool fireDue(RunLoopModes mask);
    void fire(std::unique_ptr<RunLoopWork> work);
    void drop(const std::vector<RunLoopWork*>& works);
};

RunLoopModes NSRunLoop::State::maskOf(NSString* mode) {
    if (!mode || mode == modes[0]) return 1;
    if (mode->isEqualToString(NSRunLoopCommonModes)) return commonModes;
    for (std::size_t i = 0; i < modes.size(); ++i)
        if (modes[i]->isEqualToString(mode)) return 1u << i;
    if (modes.size() == mostModes) raiseNamed(NSInvalidArgumentException, "too many run loop modes");
    modes.emplace_back(as<NSString>(mode->copyWithZone()));
    return 1u << (modes.size() - 1);
}

void NSRunLoop::State::emptyInbox() {
    if (!hasInbox.exchange(false)) return;
    std::vector<std::function<void()>> blocks;
    {
        const std::lock_guard lock(mutex);
        blocks.swap(inbox);
    }
    for (auto& block : blocks) {
        auto work = std::make_unique<RunLoopWork>();
        work->deadline = source->now();
        work->modes = commonModes;
        work->block = std::move(block);
        heap.add(std::move(work));
    }
}

void NSRunLoop::State::endTurn() {
    if (observers.empty()) return;
    struct Leave {
        State& state;
        ~Leave() {
            if (--state.observing == 0) std::erase_if(state.observers, [](const Observer& o) { return o.removed; });
        }
    };
    ++observing;
    const Leave leave{*this};
    const std::size_t count = observers.size();
    for (std::size_t i = 0; i < count; ++i)
        if (!observers[i].removed) observers[i].run();
}

bool NSRunLoop::State::fireDue(RunLoopModes mask) {
    const std::uint64_t before = heap.nextOrder();
    const NSTimeInterval time = source->now() + tolerance;
    bool fired = false;
    while (RunLoopWork* work = heap.earliest(mask, before)) {
        if (work->deadline > time) break;
        fire(heap.take(work));
        fired = true;
    }
    return fired;
}

void NSRunLoop::State::fire(std::unique_ptr<RunLoopWork> work) {
    if (work->block) {
        work->block();
        return;
    }
    if (!work->timer) {
        (void)work->target->performSelector_withObject(work->selector, work->argument);
        return;
    }
    // Out of the heap while it runs, so that a nested run does not fire it again. An exception must not stop a
    // repeating timer.
    struct Again {
        State& state;
        std::unique_ptr<RunLoopWork>& work;
        NSTimeInterval fireTime;
        ~Again() {
            NSTimer& timer = *work->timer;
            if (timer.work_ != work.get()) return;
            if (!timer.valid_) {
                timer.work_ = nullptr;
                return;
            }
            if (timer.fireTime_ == fireTime) {
                const NSTimeInterval late = state.source->now() - fireTime;
                timer.fireTime_ += std::max(1.0, std::floor(late / timer.interval_) + 1) * timer.interval_;
            }
            work->deadline = timer.fireTime_;
            state.heap.add(std::move(work));
        }
    };
    const Again again{*this, work, work->timer->fireTime_};
    work->timer->fire();
}

void NSRunLoop::State::drop(const std::vector<RunLoopWork*>& works) {
    // First out of the heap, all of them; what they hold may come back to the run loop when it goes.
    std::vector<std::unique_ptr<RunLoopWork>> dropped;
    dropped.reserve(works.size());
    for (RunLoopWork* w : works)
        dropped.push_back(heap.take(w));
    for (const auto& w : dropped) {
        if (!w->timer) continue;
        w->timer->work_ = nullptr;
        w->timer->invalidate();
    }
}

void NSRunLoop::describe(ClassDescription<NSRunLoop>&) {}

NSRunLoop::NSRunLoop() : state_(std::make_unique<State>()) {}

NSRunLoop::~NSRunLoop() = default;

NSRunLoop* NSRunLoop::mainRunLoop() {
    static NSRunLoop* const loop = keptForever(adopt(new NSRunLoop));
    return loop;
}

bool NSRunLoop::runOnce(NSTimeInterval deadline, NSString* mode) {
    const Ref<NSString> kept(mode ? mode : NSDefaultRunLoopMode.get());
    const RunLoopModes mask = state_->maskOf(kept);
    struct Leave {
        State& state;
        ~Leave() { state.running.pop_back(); }
    };
    state_->running.push_back(kept);
    const Leave leave{*state_};

    const auto nextDeadline = [&] {
        state_->emptyInbox();
        const RunLoopWork* next = state_->heap.earliest(mask, state_->heap.nextOrder());
        return next ? next->deadline : infinity;
    };
    NSTimeInterval next = nextDeadline();
    if (next > now() + tolerance) {
        // What was changed outside of any turn has to show before the wait; showing it may schedule more.
        state_->endTurn();
        next = nextDeadline();
    }
    const bool dispatched = state_->source->waitAndDispatch(std::min(deadline, next));
    state_->emptyInbox();
    const bool fired = state_->fireDue(mask);
    state_->endTurn();
    return dispatched || fired;
}

BOOL NSRunLoop::runMode_beforeDate(NSString* mode, NSDate* limit) {
    return runOnce(limit ? now() + limit->timeIntervalSinceNow() : infinity, mode);
}

void NSRunLoop::runUntilDate(NSDate* limit) {
    if (limit) runUntilTime(now() + limit->timeIntervalSinceNow());
}

void NSRunLoop::runUntilTime(NSTimeInterval time, NSString* mode) {
    do
        runOnce(time, mode);
    while (now() + tolerance < time);
}

NSString* NSRunLoop::currentMode() const noexcept { return state_->running.empty() ? nullptr : state_->running.back(); }

void NSRunLoop::addTimer_forMode(NSTimer* timer, NSString* mode) {
    if (!timer || !timer->isValid()) return;
    const RunLoopModes mask = state_->maskOf(mode);
    if (timer->work_) {
        timer->work_->modes |= mask;
        return;
    }
    auto work = std::make_unique<RunLoopWork>();
    work->deadline = timer->fireTime_;
    work->modes = mask;
    work->timer = timer;
    timer->work_ = state_->heap.add(std::move(work));
}

void NSRunLoop::timerMoved(NSTimer* timer) {
    RunLoopWork* work = timer->work_;
    if (!work || work->place == RunLoopWork::nowhere) return;
    std::unique_ptr<RunLoopWork> taken = state_->heap.take(work);
    taken->deadline = timer->fireTime_;
    state_->heap.add(std::move(taken));
}

void NSRunLoop::timerInvalidated(NSTimer* timer) {
    RunLoopWork* work = std::exchange(timer->work_, nullptr);
    // One that is firing belongs to the turn that fires it.
    if (work && work->place != RunLoopWork::nowhere) state_->heap.take(work).reset();
}

void NSRunLoop::performBlock(std::function<void()> block) {
    if (!block) return;
    {
        const std::lock_guard lock(state_->mutex);
        state_->inbox.push_back(std::move(block));
        state_->hasInbox = true;
        if (NSThread::isMainThread()) return;
        state_->source->wake();
    }
}

void NSRunLoop::performSelector_target_argument_afterDelay(SEL selector, NSObject* target, NSObject* argument,
                                                           NSTimeInterval delay, NSString* mode) {
    if (!target || !selector) return;
    state_->emptyInbox();
    auto work = std::make_unique<RunLoopWork>();
    work->deadline = now() + std::max(delay, 0.0);
    work->modes = state_->maskOf(mode);
    work->target = target;
    work->selector = selector;
    work->argument = argument;
    state_->heap.add(std::move(work));
}

void NSRunLoop::cancelPerformSelector_target_argument(SEL selector, NSObject* target, NSObject* argument) {
    if (!target) return;
    std::vector<RunLoopWork*> found;
    for (RunLoopWork* w : state_->heap.all()) {
        if (w->target != target) continue;
        if (!selector || (w->selector == selector && libvue::isEqual(w->argument, argument))) found.push_back(w);
    }
    state_->drop(found);
}

NSUInteger NSRunLoop::addEndOfTurnObserver(EndOfTurn observer) {
    if (!observer) return 0;
    state_->observers.push_back({state_->nextToken, std::move(observer)});
    return state_->nextToken++;
}

void NSRunLoop::removeEndOfTurnObserver(NSUInteger token) {
    for (State::Observer& o : state_->observers)
        if (o.token == token) o.removed = true;
    if (state_->observing == 0) std::erase_if(state_->observers, [](const State::Observer& o) { return o.removed; });
}

void NSRunLoop::setSource(RunLoopSource* source) {
    const std::lock_guard lock(state_->mutex);
    state_->source = source ? source : &state_->sleeping;
    Clock::install(source);
}

void NSRunLoop::wake() {
    const std::lock_guard lock(state_->mutex);
    state_->source->wake();
}

NSTimeInterval NSRunLoop::now() const { return state_->source->now(); }

NSTimeInterval NSRunLoop::nextDeadline(NSString* mode) const {
    state_->emptyInbox();
    const RunLoopWork* next = state_->heap.earliest(state_->maskOf(mode), state_->heap.nextOrder());
    return next ? next->deadline : infinity;
}

void NSRunLoop::cancelAll() {
    state_->emptyInbox();
    state_->drop(std::vector<RunLoopWork*>(state_->heap.all()));
}

} // namespace libvue
