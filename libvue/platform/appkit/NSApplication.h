#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSResponder.h>
#include <libvue/platform/foundation/ConstantString.h>

namespace libvue {

inline constexpr ConstantString NSApplicationDidFinishLaunchingNotification{
    u"NSApplicationDidFinishLaunchingNotification"};
inline constexpr ConstantString NSApplicationDidBecomeActiveNotification{u"NSApplicationDidBecomeActiveNotification"};
inline constexpr ConstantString NSApplicationWillResignActiveNotification{u"NSApplicationWillResignActiveNotification"};
inline constexpr ConstantString NSApplicationDidResignActiveNotification{u"NSApplicationDidResignActiveNotification"};
inline constexpr ConstantString NSApplicationWillTerminateNotification{u"NSApplicationWillTerminateNotification"};
inline constexpr ConstantString NSApplicationDidChangeScreenParametersNotification{
    u"NSApplicationDidChangeScreenParametersNotification"};
inline constexpr ConstantString NSApplicationDidChangeAppearanceNotification{
    u"NSApplicationDidChangeAppearanceNotification"};

enum : NSInteger { NSRunStoppedResponse = -1000, NSRunAbortedResponse = -1001, NSRunContinuesResponse = -1002 };

enum NSApplicationTerminateReply : NSUInteger { NSTerminateCancel = 0, NSTerminateNow = 1, NSTerminateLater = 2 };

namespace op {
/// Where the delegate does not answer, the end of the last window is the end of the application.
inline constexpr Operation<BOOL(NSApplication*)> applicationShouldTerminateAfterLastWindowClosed{
    "applicationShouldTerminateAfterLastWindowClosed:"};
/// An NSApplicationTerminateReply.
inline constexpr Operation<NSUInteger(NSApplication*)> applicationShouldTerminate{"applicationShouldTerminate:"};
inline constexpr Operation<void(NSNotification*)> applicationDidFinishLaunching{"applicationDidFinishLaunching:"};
inline constexpr Operation<void(NSNotification*)> applicationDidBecomeActive{"applicationDidBecomeActive:"};
inline constexpr Operation<void(NSNotification*)> applicationWillResignActive{"applicationWillResignActive:"};
inline constexpr Operation<void(NSNotification*)> applicationDidResignActive{"applicationDidResignActive:"};
inline constexpr Operation<void(NSNotification*)> applicationWillTerminate{"applicationWillTerminate:"};
inline constexpr Operation<void(NSNotification*)> applicationDidChangeScreenParameters{
    "applicationDidChangeScreenParameters:"};
} // namespace op

/// The one application object: the event loop, the windows, what is active. Main thread.
class LIBVUE_API NSApplication : public NSResponder {
public:
    static void describe(ClassDescription<NSApplication, NSResponder>& c);
    /// Made on first use, over the backend that is installed.
    [[nodiscard]] static NSApplication* sharedApplication();
    /// Ends it, for tests and for a backend that is replaced: closes every window, drops what waits.
    static void resetSharedApplication();
    /// Null while there is none.
    [[nodiscard]] static NSApplication* sharedIfAny_() noexcept;
    ~NSApplication() override;

    [[nodiscard]] NSObject* delegate() const noexcept { return delegate_; }
    /// Held weakly.
    void setDelegate(NSObject* d);

    /// Sends NSApplicationDidFinishLaunchingNotification, once; run does it.
    void finishLaunching();
    /// Runs until stop: or terminate:.
    void run();
    /// Ends the innermost modal run, else run().
    void stop(NSObject* sender);
    /// Asks the delegate, posts NSApplicationWillTerminateNotification, ends run(). A delegate that answers
    /// NSTerminateLater says by replyToApplicationShouldTerminate: whether it may end.
    void terminate(NSObject* sender);
    /// Ends the application that waits for it, or (NO) lets it go on. Where none waits, nothing.
    void replyToApplicationShouldTerminate(BOOL shouldTerminate);
    [[nodiscard]] BOOL isRunning() const noexcept { return running_; }
    /// One turn: due timers, then the events that wait (or come before the deadline, a run-loop time), then display.
    /// NO where nothing happened.
    BOOL runOnceUntil_(NSTimeInterval deadline);
    /// Everything that is due now, without waiting or letting time pass: events, timers, display; until nothing is
    /// left.
    void drain_();

    /// Shows the window, makes it key and runs until stopModal… or its closing; other windows hear no mouse and no keys
    /// until then. The code of stopModalWithCode:, or NSRunAbortedResponse where it was closed or there is none.
    NSInteger runModalForWindow(NSWindow* window);
    /// With NSRunStoppedResponse. Without a modal window these do nothing.
    void stopModal() { stopModalWithCode(NSRunStoppedResponse); }
    void stopModalWithCode(NSInteger code);
    void abortModal() { stopModalWithCode(NSRunAbortedResponse); }
    /// The innermost one; null for none.
    [[nodiscard]] NSWindow* modalWindow() const noexcept;

    /// NSWindow's beginSheet:completionHandler: with a delegate (not kept, may be null), which is sent `didEnd` at the
    /// end: sheetDidEnd:(NSWindow*) returnCode:(NSInteger) contextInfo:(void*). A null sheet or window raises
    /// NSInvalidArgumentException.
    void beginSheet_modalForWindow_modalDelegate_didEndSelector_contextInfo(NSWindow* sheet, NSWindow* window,
                                                                            NSObject* delegate, SEL didEnd, void* info);
    /// With NSRunStoppedResponse.
    void endSheet(NSWindow* sheet) { endSheet_returnCode(sheet, NSRunStoppedResponse); }
    /// Ends the sheet wherever it is up or waits to be; a window that is no sheet is left alone.
    void endSheet_returnCode(NSWindow* sheet, NSInteger code);

    /// The next event that the mask admits, through the monitors; null where none came until the deadline. Used by
    /// tracking loops.
    [[nodiscard]] Ref<NSEvent> nextEventMatchingMask_untilDate_inMode_dequeue(NSEventMask mask, NSTimeInterval deadline,
                                                                              NSString* mode, BOOL dequeue);
    /// The next drag or release of the left button, for loops that follow a press; null where none will come.
    [[nodiscard]] Ref<NSEvent> nextDragOrRelease_();
    /// Appends it to the queue, or puts it in front. Null is ignored.
    void postEvent_atStart(NSEvent* e, BOOL atStart);
    /// Drops what the mask admits and came before `last` (null: all that waits).
    void discardEventsMatchingMask_beforeEvent(NSEventMask mask, NSEvent* last);
    /// Only those of one window.
    void discardEventsOf_matchingMask_beforeEvent(NSInteger windowNumber, NSEventMask mask, NSEvent* last);
    /// The one that was taken from the queue last; null before the first.
    [[nodiscard]] NSEvent* currentEvent() const noexcept { return currentEvent_; }
    /// To the window of the event, after key equivalents.
    virtual void sendEvent(NSEvent* e);
    /// To `target`; with a null target to the first responder and up: the key window, its delegate, the main window,
    /// the application and its delegate. NO where none answers.
    virtual BOOL sendAction_to_from(SEL action, NSObject* target, NSObject* sender);
    /// Who would get that action; null for nobody.
    [[nodiscard]] virtual NSObject* targetForAction_to_from(SEL action, NSObject* target, NSObject* sender);

    [[nodiscard]] BOOL isActive() const noexcept { return active_; }
    void activateIgnoringOtherApps(BOOL flag);
    /// The window that hears the keys; null while the application is not active.
    [[nodiscard]] NSWindow* keyWindow() const noexcept { return keyWindow_; }
    /// The window that is worked in; the key window, or the one that a panel in front of it is about.
    [[nodiscard]] NSWindow* mainWindow() const noexcept { return mainWindow_; }
    /// In order of making, those that exist.
    [[nodiscard]] Ref<NSArray> windows() const;
    /// Front to back, those on the screen.
    [[nodiscard]] Ref<NSArray> orderedWindows() const;
    /// Sends update to the windows on the screen; so does the event loop after each event.
    virtual void updateWindows();
    /// Null where none has that number.
    [[nodiscard]] NSWindow* windowWithWindowNumber(NSInteger number) const;
    [[nodiscard]] NSMenu* mainMenu() const noexcept;
    /// Its items' key equivalents work in every window.
    void setMainMenu(NSMenu* menu);
    /// Whether the key status changes because the desktop moved the focus, by a click that is still to come as a rule.
    [[nodiscard]] BOOL desktopMovesFocus_() const noexcept;

    // Between the application, its windows and its events.

    void addWindow_(NSWindow* w);
    void removeWindow_(NSWindow* w);
    void windowNeedsDisplay_(NSWindow* w);
    void displayWindows_();
    /// Null for none. The old window resigns first; whoever hears of that may choose another one.
    void setKeyWindow_(NSWindow* w);
    void setMainWindow_(NSWindow* w);
    void windowOrdered_(NSWindow* w, BOOL in);
    /// The local monitors, in the order in which they were added.
    [[nodiscard]] std::vector<Ref<NSObject>>& monitors_() noexcept { return monitorList_; }
    [[nodiscard]] NSUInteger modifierFlags_() const noexcept { return modifiers_; }

private:
    NSApplication();
    friend class NSWindow;
    struct Native;
    BOOL fetchNative(NSTimeInterval deadline);
    void handleNative(NSEvent* notice);
    [[nodiscard]] Ref<NSEvent> nextQueued(NSEventMask mask, BOOL dequeue);
    [[nodiscard]] bool focusFollows() const;
    void focusChanged(NSWindow* w, BOOL gained);
    void focusRequested(NSWindow* w);
    void setActive(BOOL active);
    void appearanceChanged();
    void displayLater(NSWindow* w);
    template <class Chosen> void discardEvents(NSEventMask mask, NSEvent* last, const Chosen& chosen);
    [[nodiscard]] Ref<NSEvent> throughMonitors(Ref<NSEvent> e);
    /// The modal window or the sheet that keeps mouse and keys from the window; null where it gets them.
    [[nodiscard]] NSWindow* blockerOf(NSWindow* w) const;
    /// Whether the event is one that a blocked window does not get; then beeps and raises what blocks it.
    [[nodiscard]] bool refuse(NSEvent* e, NSWindow* w, NSWindow* blocker);
    [[nodiscard]] NSObject* responderFor(SEL action, NSWindow* w) const;
    void post(NSString* name, const Operation<void(NSNotification*)>& operation);
    void windowClosed(NSWindow* w);
    void end();

    Weak<NSObject> delegate_;
    Weak<NSWindow> keyWindow_;
    Weak<NSWindow> mainWindow_;
    Ref<NSEvent> currentEvent_;
    Ref<NSMenu> mainMenu_;
    std::vector<NSWindow*> windows_; ///< in order of making; a window takes itself out
    std::vector<NSWindow*> ordered_; ///< front to back
    std::vector<NSWindow*> toDisplay_;
    std::deque<Ref<NSEvent>> queue_;
    std::vector<Ref<NSObject>> monitorList_;
    struct Modal {
        Weak<NSWindow> window;
        NSInteger code = NSRunContinuesResponse;
    };
    std::vector<Modal> modals_;
    std::unique_ptr<Native> native_;
    NSUInteger modifiers_ = 0;
    bool running_ = false;
    bool stopped_ = false;
    bool active_ = false;
    bool launched_ = false;
    bool mayEndLater_ = false; ///< the delegate has not said yet whether it may end
};

/// The shared application.
[[nodiscard]] LIBVUE_API NSApplication* NSApp();

} // namespace libvue
