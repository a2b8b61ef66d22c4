#pragma once

#include <functional>
#include <memory>

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/foundation/RunLoopSource.h>

namespace libvue {

inline constexpr ConstantString NSDefaultRunLoopMode{u"NSDefaultRunLoopMode"};
inline constexpr ConstantString NSEventTrackingRunLoopMode{u"NSEventTrackingRunLoopMode"};
inline constexpr ConstantString NSModalPanelRunLoopMode{u"NSModalPanelRunLoopMode"};
/// Stands for the three modes above.
inline constexpr ConstantString NSRunLoopCommonModes{u"NSRunLoopCommonModes"};

/// Timers, delayed performs and work for the next turn, in one heap over a clock; between them it waits for native
/// events. One loop exists, the main thread's; a nested run is an ordinary re-entry. While there is nothing to do it
/// uses no processor time.
class LIBVUE_API NSRunLoop : public NSObject {
public:
    static void describe(ClassDescription<NSRunLoop>& c);
    [[nodiscard]] static NSRunLoop* mainRunLoop();
    [[nodiscard]] static NSRunLoop* currentRunLoop() { return mainRunLoop(); }

    /// One turn: waits until something is due or a native event arrives, `deadline` at the latest (infinity: without
    /// end), does it, and lets the observers of the end of the turn run. False when the deadline passed with nothing
    /// done. What is scheduled by the work of a turn runs in a later turn, even if it is due at once.
    bool runOnce(NSTimeInterval deadline, NSString* mode = NSDefaultRunLoopMode);
    /// One turn; an absent date is the far future.
    BOOL runMode_beforeDate(NSString* mode, NSDate* limit);
    /// Turns, until the date has come.
    void runUntilDate(NSDate* limit);
    /// Turns, until the clock says `time`.
    void runUntilTime(NSTimeInterval time, NSString* mode = NSDefaultRunLoopMode);
    /// The mode of the innermost run under way, or null.
    [[nodiscard]] NSString* currentMode() const noexcept;

    /// A timer may be in several modes. Adding an invalid one does nothing.
    void addTimer_forMode(NSTimer* timer, NSString* mode);
    /// Runs at the next turn in any of the common modes. From any thread; the block is run and destroyed by the main
    /// thread.
    void performBlock(std::function<void()> block);
    void performSelector_target_argument_afterDelay(SEL selector, NSObject* target, NSObject* argument,
                                                    NSTimeInterval delay, NSString* mode = NSDefaultRunLoopMode);
    /// With a null selector all those of the target, else those with an equal argument.
    void cancelPerformSelector_target_argument(SEL selector, NSObject* target, NSObject* argument);

    /// Runs after each turn, and before each wait: the display pass. Observers run in the order of their addition.
    using EndOfTurn = std::function<void()>;
    [[nodiscard]] NSUInteger addEndOfTurnObserver(EndOfTurn observer);
    /// An unknown token is ignored.
    void removeEndOfTurnObserver(NSUInteger token);

    /// The native events and the clock that this loop waits on; the source is also installed as the process's clock.
    /// Null gives the system's clock back, without native events. The caller keeps the source and sets null before it
    /// goes.
    void setSource(RunLoopSource* source);
    /// Ends the wait that is under way, or the next one. From any thread.
    void wake();
    [[nodiscard]] NSTimeInterval now() const;
    /// When something in that mode is due next; infinity where nothing is scheduled.
    [[nodiscard]] NSTimeInterval nextDeadline(NSString* mode = NSDefaultRunLoopMode) const;
    /// Gives up all timers, delayed performs and blocks; the timers become invalid. For the end of an application.
    void cancelAll();

private:
    friend class NSTimer;
    struct State;
    NSRunLoop();
    ~NSRunLoop() override;
    void timerMoved(NSTimer* timer);
    void timerInvalidated(NSTimer* timer);

    std::unique_ptr<State> state_;
};

} // namespace libvue
