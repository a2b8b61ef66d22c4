#pragma once

#include <vector>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/backend/WindowServer.h>
#include <libvue/platform/foundation/NSTimer.h>
#include <libvue/platform/foundation/RunLoopSource.h>

namespace libvue {

/// The windows, to go through while they are called.
[[nodiscard]] inline std::vector<Ref<NSWindow>> keptWindows(const std::vector<NSWindow*>& windows) {
    return std::vector<Ref<NSWindow>>(windows.begin(), windows.end());
}

/// What the application keeps of the window server: its events and its clock as the run loop's source, and what it
/// takes to make events out of presses and moves.
struct NSApplication::Native final : RunLoopSource {
    Native(NSApplication& app, backend::WindowServer& server);

    NSTimeInterval now() override { return server.now() + offset; }
    bool waitAndDispatch(NSTimeInterval deadline) override { return app.fetchNative(deadline); }
    void wake() override { server.wake(); }
    [[nodiscard]] backend::Time serverTime(NSTimeInterval t) const { return t - offset; }

    void enqueue(const backend::Event& e);
    void enqueueMouse(const backend::Event& e);
    /// What only events of that kind say: type, numbers, distances.
    void fillMouse(NSEvent::Fields& f, const backend::Event& e, bool pressed);
    void enqueueKey(const backend::Event& e);
    [[nodiscard]] NSWindow* windowOf(backend::WindowId id) const;
    /// True once turn after turn has done nothing while no time passed: such a server has nothing to come.
    [[nodiscard]] bool isExhausted(bool didSomething);
    [[nodiscard]] NSInteger countClick(const backend::Event& e, NSWindow* w);

    NSApplication& app;
    backend::WindowServer& server;
    const NSTimeInterval offset; ///< from the server's time to the run loop's

    struct Click {
        backend::Time time = -1e9;
        NSPoint place;
        int button = -1;
        NSInteger window = 0;
        NSInteger count = 0;
    } click;
    NSInteger eventNumber = 0;
    std::uint32_t buttons = 0;     ///< those that are down, a bit each
    int dragButton = 0;            ///< the one whose drags are told
    Weak<NSWindow> grab;           ///< gets the drags and the ups of its press
    backend::WindowId focused = 0; ///< as the desktop said last
    bool movesFocus = false;       ///< the windows are being told of what the desktop did with the focus
    Weak<NSWindow> requested;      ///< was activated by us; the desktop's answer is still to come
    backend::Time requestedUntil = 0;
    Weak<NSWindow> lastKey, lastMain;
    std::vector<Weak<NSWindow>> hiddenWhileInactive;
    std::vector<Weak<NSWindow>> displayedLater;
    Ref<NSTimer> displayTimer;
    NSUInteger endOfTurn = 0;
    int idleTurns = 0;
    backend::Time idleTime = 0; ///< of the last one
};

} // namespace libvue
