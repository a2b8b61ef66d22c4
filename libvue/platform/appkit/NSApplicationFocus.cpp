#include <algorithm>

#include <libvue/platform/appkit/NSApplicationNative.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>

namespace libvue {

namespace {
/// How long the desktop may take to answer an activation, in seconds. Until then its older news about the focus are
/// stale.
constexpr backend::Time answerTime = 0.5;
} // namespace

void NSApplication::activateIgnoringOtherApps(BOOL) {
    const Ref<NSApplication> self(this);
    setActive(YES);
    if (keyWindow_ || ordered_.empty()) return;
    for (const auto& w : keptWindows(ordered_))
        if (w->isVisible() && w->acceptsNativeFocus_()) {
            w->makeKeyWindow();
            return;
        }
}

BOOL NSApplication::desktopMovesFocus_() const noexcept { return native_->movesFocus; }

void NSApplication::focusRequested(NSWindow* w) {
    if (native_->focused == w->nativeId_()) return;
    native_->requested = w;
    native_->requestedUntil = native_->server.now() + answerTime;
}

void NSApplication::focusChanged(NSWindow* w, BOOL gained) {
    const Ref<NSWindow> kept(w);
    if (!gained) {
        if (!native_->requested || native_->server.now() > native_->requestedUntil) setActive(NO);
        return;
    }
    if (!w) return;
    if (const Ref<NSWindow> requested = native_->requested.ref()) {
        const bool answered =
            requested.get() == w || native_->server.now() > native_->requestedUntil || !requested->isVisible();
        if (!answered) return;
        native_->requested = nullptr;
    }
    if (const Ref<NSWindow> blocker = blockerOf(w)) {
        setActive(YES);
        blocker->makeKeyAndOrderFront(nullptr);
        if (w->sheetInFront_() == blocker && w->canBecomeMainWindow()) setMainWindow_(w);
        return;
    }
    if (!w->canBecomeKeyWindow()) {
        setActive(YES);
        return;
    }
    if (!active_) native_->lastKey = w;
    setActive(YES);
    setKeyWindow_(w);
    if (w->canBecomeMainWindow()) setMainWindow_(w);
}

void NSApplication::setActive(BOOL active) {
    if (active_ == active) return;
    const Ref<NSApplication> self(this);
    if (active) {
        active_ = true;
        for (const auto& weak : std::exchange(native_->hiddenWhileInactive, {}))
            if (const Ref<NSWindow> w = weak.ref(); w && !w->isVisible())
                w->NSWindow::orderWindow_relativeTo(NSWindowAbove, 0);
        if (const Ref<NSWindow> main = native_->lastMain.ref(); main && !mainWindow_ && main->isVisible())
            setMainWindow_(main);
        if (const Ref<NSWindow> key = native_->lastKey.ref(); key && !keyWindow_ && key->isVisible())
            setKeyWindow_(key);
        post(NSApplicationDidBecomeActiveNotification, op::applicationDidBecomeActive);
        return;
    }
    post(NSApplicationWillResignActiveNotification, op::applicationWillResignActive);
    active_ = false;
    native_->lastKey = keyWindow_;
    native_->lastMain = mainWindow_;
    setKeyWindow_(nullptr);
    setMainWindow_(nullptr);
    for (const auto& w : keptWindows(ordered_)) {
        w->hideToolTip();
        if (!w->hidesOnDeactivate() || !w->isVisible()) continue;
        w->NSWindow::orderWindow_relativeTo(NSWindowOut, 0);
        native_->hiddenWhileInactive.emplace_back(w);
    }
    post(NSApplicationDidResignActiveNotification, op::applicationDidResignActive);
}

void NSApplication::setKeyWindow_(NSWindow* w) {
    if (keyWindow_.get() == w) return;
    const Ref<NSWindow> next(w), old = keyWindow_.ref();
    keyWindow_ = nullptr;
    if (old) old->resignKeyWindow();
    // An observer of that may have chosen another one.
    if (keyWindow_ || !next) return;
    keyWindow_ = w;
    next->becomeKeyWindow();
}

void NSApplication::setMainWindow_(NSWindow* w) {
    if (mainWindow_.get() == w) return;
    const Ref<NSWindow> next(w), old = mainWindow_.ref();
    mainWindow_ = nullptr;
    if (old) old->resignMainWindow();
    if (mainWindow_ || !next) return;
    mainWindow_ = w;
    next->becomeMainWindow();
}

} // namespace libvue
