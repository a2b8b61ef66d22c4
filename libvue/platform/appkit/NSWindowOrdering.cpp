#include <algorithm>

#include <libvue/platform/appkit/NSApplicationNative.h>
#include <libvue/platform/appkit/NSWindowPrivate.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/ScopeExit.h>

namespace libvue {

// On and off the screen.

void NSWindow::orderWindow_relativeTo(NSWindowOrderingMode place, NSInteger otherNumber) {
    const Ref<NSWindow> self(this);
    NSApplication* app = NSApp();
    if (place == NSWindowOut) {
        if (!visible_ && !miniaturized_) return;
        hideToolTip();
        orderChildren(NO);
        visible_ = false;
        miniaturized_ = false;
        app->windowOrdered_(this, NO);
        if (native_) windowServer().hide(native_);
        passKeyStatusOn();
        return;
    }
    NSWindow* other = otherNumber ? windowWithNumber(otherNumber) : nullptr;
    if (other == this) other = nullptr;
    const bool appears = !visible_;
    ensureNative();
    if (!native_) return;
    visible_ = true;
    if (releasedWhenClosed_) self_ = this;
    app->windowOrdered_(this, YES);
    // Among the windows of the application: front to back.
    auto& order = app->ordered_;
    if (other && other->visible_) {
        std::erase(order, this);
        auto at = std::find(order.begin(), order.end(), other);
        if (place == NSWindowBelow && at != order.end()) ++at;
        order.insert(at, this);
    } else if (place == NSWindowBelow) {
        std::erase(order, this);
        const auto at = std::find_if(order.begin(), order.end(), [&](NSWindow* w) { return w->level_ < level_; });
        order.insert(at, this);
    }
    orderNative(place, other);
    if (!native_) return;
    if (appears) {
        noteInsets();
        noteScreen();
        viewsNeedDisplay_ = true;
        app->windowNeedsDisplay_(this);
    }
    orderChildren(YES);
}

void NSWindow::orderNative(NSWindowOrderingMode place, NSWindow* other) {
    auto& s = windowServer();
    s.show(native_, showsActivating_);
    if (other && other->native_ && other->visible_) {
        if (place == NSWindowAbove)
            s.order(native_, other->native_);
        else
            s.order(other->native_, native_);
    } else if (place == NSWindowBelow)
        s.order(native_, 0);
    else
        s.raise(native_);
}

void NSWindow::orderChildren(BOOL in) {
    const std::vector<Ref<NSWindow>> children = children_;
    for (const auto& child : children) {
        if (child->parent_.get() != this) continue;
        if (in) {
            if (!child->visible_ && !child->hiddenWithParent_) continue;
            child->hiddenWithParent_ = false;
            child->orderWindow_relativeTo(NSWindowAbove, number_);
        } else if (child->visible_) {
            child->hiddenWithParent_ = true;
            child->orderWindow_relativeTo(NSWindowOut, 0);
        }
    }
}

void NSWindow::orderFront(NSObject*) { orderWindow_relativeTo(NSWindowAbove, 0); }
void NSWindow::orderBack(NSObject*) { orderWindow_relativeTo(NSWindowBelow, 0); }
void NSWindow::orderOut(NSObject*) { orderWindow_relativeTo(NSWindowOut, 0); }
void NSWindow::orderFrontRegardless() { orderWindow_relativeTo(NSWindowAbove, 0); }

void NSWindow::makeKeyAndOrderFront(NSObject*) {
    const Ref<NSWindow> self(this);
    showsActivating_ = canBecomeKeyWindow();
    orderWindow_relativeTo(NSWindowAbove, 0);
    showsActivating_ = false;
    makeKeyWindow();
}

// Key and main.

BOOL NSWindow::isKeyWindow() const noexcept {
    const NSApplication* app = NSApplication::sharedIfAny_();
    return app && app->keyWindow() == this;
}

BOOL NSWindow::isMainWindow() const noexcept {
    const NSApplication* app = NSApplication::sharedIfAny_();
    return app && app->mainWindow() == this;
}

BOOL NSWindow::canBecomeKeyWindow() const {
    return sheetParent_ || (style_ & (NSTitledWindowMask | NSResizableWindowMask)) != 0;
}
BOOL NSWindow::canBecomeMainWindow() const { return visible_ && isTitled(); }

void NSWindow::makeKeyWindow() {
    if (!visible_ || !canBecomeKeyWindow()) return;
    const Ref<NSWindow> self(this);
    NSApplication* app = NSApp();
    if (const Ref<NSWindow> blocker = app->blockerOf(this)) {
        if (blocker.get() != sheetInFront_()) return;
        blocker->makeKeyWindow();
    } else if (!isKeyWindow()) {
        if (native_ && !acceptsNativeFocus_()) windowServer().setAcceptsFocus(native_, true);
        app->focusRequested(this);
        if (!app->active_) {
            app->native_->lastKey = this;
            app->setActive(YES);
        }
        app->setKeyWindow_(this);
        if (native_) windowServer().activate(native_);
    }
    if (canBecomeMainWindow()) makeMainWindow();
}

void NSWindow::makeMainWindow() {
    if (canBecomeMainWindow()) NSApp()->setMainWindow_(this);
}

void NSWindow::becomeKeyWindow() {
    const Ref<NSWindow> self(this);
    if (!firstResponder_ && initialFirstResponder_) makeFirstResponder(initialFirstResponder_);
    setViewsNeedDisplay(YES); // the focus ring
    postDelegateNotification(NSWindowDidBecomeKeyNotification, op::windowDidBecomeKey);
}

void NSWindow::resignKeyWindow() {
    const Ref<NSWindow> self(this);
    hideToolTip();
    setViewsNeedDisplay(YES);
    postDelegateNotification(NSWindowDidResignKeyNotification, op::windowDidResignKey);
    // A panel that takes the focus only for a while gives it back.
    if (native_ && !acceptsNativeFocus_()) windowServer().setAcceptsFocus(native_, false);
}

void NSWindow::becomeMainWindow() {
    postDelegateNotification(NSWindowDidBecomeMainNotification, op::windowDidBecomeMain);
}

void NSWindow::resignMainWindow() {
    postDelegateNotification(NSWindowDidResignMainNotification, op::windowDidResignMain);
}

void NSWindow::passKeyStatusOn() {
    NSApplication* app = NSApp();
    const bool key = isKeyWindow(), main = isMainWindow();
    if (!key && !main) return;
    std::vector<Ref<NSWindow>> candidates;
    for (NSWindow* p = parent_; p; p = p->parent_)
        candidates.emplace_back(p);
    candidates.insert(candidates.end(), app->ordered_.begin(), app->ordered_.end());
    const auto firstOf = [&](const auto& fits) -> NSWindow* {
        for (const auto& w : candidates)
            if (w->visible_ && !app->blockerOf(w) && fits(*w)) return w;
        return nullptr;
    };
    if (main) app->setMainWindow_(firstOf([](const NSWindow& w) { return w.canBecomeMainWindow(); }));
    // Whoever heard of it may have given the key status away already.
    if (!key || !isKeyWindow()) return;
    // A palette in front does not take the keys from the window that is worked in.
    if (!parent_ && app->mainWindow_) candidates.insert(candidates.begin(), app->mainWindow_.ref());
    NSWindow* next = firstOf([](const NSWindow& w) { return w.acceptsNativeFocus_(); });
    if (next)
        next->makeKeyWindow();
    else
        app->setKeyWindow_(nullptr);
}

// Closing.

void NSWindow::performClose(NSObject*) {
    const Ref<NSWindow> self(this);
    if (sheetInFront_()) {
        windowServer().beep();
        return;
    }
    const bool wasThere = visible_ || miniaturized_;
    if (const auto asks = op::windowShouldClose.of(delegate_)) {
        if (!asks(this)) return;
    } else if (const auto own = op::windowShouldClose.of(this)) {
        if (!own(this)) return;
    }
    // Whoever was asked may have closed it already.
    if (!wasThere || visible_ || miniaturized_) close();
}

void NSWindow::nativeCloseRequest_() { performClose(nullptr); }

void NSWindow::close() {
    if (closing_) return;
    const Ref<NSWindow> self(this);
    closing_ = true;
    const ScopeExit ended([this] { closing_ = false; });
    postDelegateNotification(NSWindowWillCloseNotification, op::windowWillClose);
    endSheets();
    if (const Ref<NSWindow> owner = sheetParent_.ref()) owner->endSheet_returnCode(this, NSRunAbortedResponse);
    if (visible_ || miniaturized_) orderWindow_relativeTo(NSWindowOut, 0);
    detachFromParent();
    savePendingFrame();
    self_ = nullptr;
    NSApp()->windowClosed(this);
}

void NSWindow::miniaturize(NSObject*) {
    if (miniaturized_ || !visible_ || !native_) return;
    windowServer().miniaturize(native_, true);
    nativeMiniaturized_(YES);
}

void NSWindow::deminiaturize(NSObject*) {
    if (!miniaturized_ || !native_) return;
    windowServer().miniaturize(native_, false);
    nativeMiniaturized_(NO);
}

void NSWindow::performMiniaturize(NSObject* sender) {
    if (style_ & NSMiniaturizableWindowMask) miniaturize(sender);
}

void NSWindow::nativeMiniaturized_(BOOL mini) {
    if (miniaturized_ == mini || (mini && !visible_)) return;
    const Ref<NSWindow> self(this);
    NSApplication* app = NSApp();
    if (mini) {
        postDelegateNotification(NSWindowWillMiniaturizeNotification, op::windowWillMiniaturize);
        if (!visible_) return;
        hideToolTip();
        miniaturized_ = true;
        visible_ = false;
        app->windowOrdered_(this, NO);
        passKeyStatusOn();
        postDelegateNotification(NSWindowDidMiniaturizeNotification, op::windowDidMiniaturize);
        return;
    }
    miniaturized_ = false;
    visible_ = true;
    app->windowOrdered_(this, YES);
    if (viewsNeedDisplay_) app->windowNeedsDisplay_(this);
    makeKeyWindow();
    postDelegateNotification(NSWindowDidDeminiaturizeNotification, op::windowDidDeminiaturize);
}

void NSWindow::zoom(NSObject*) {
    if (native_ && visible_) windowServer().zoom(native_);
}

// Children.

void NSWindow::addChildWindow_ordered(NSWindow* child, NSWindowOrderingMode place) {
    if (!child || child == this) return;
    for (NSWindow* p = parent_; p; p = p->parent_)
        if (p == child) return;
    const Ref<NSWindow> self(this), kept(child);
    if (child->parent_.get() != this) {
        child->detachFromParent();
        children_.emplace_back(child);
        child->parent_ = this;
        if (child->native_) windowServer().setParent(child->native_, native_);
    }
    // Not in vain: it may be on the screen already, and then it changes its place.
    if (visible_)
        child->orderWindow_relativeTo(place, number_);
    else if (!child->visible_)
        child->hiddenWithParent_ = true;
}

void NSWindow::removeChildWindow(NSWindow* child) {
    if (child && child->parent_.get() == this) child->detachFromParent();
}

void NSWindow::detachFromParent() {
    const Ref<NSWindow> self(this), parent = parent_.ref();
    parent_ = nullptr;
    hiddenWithParent_ = false;
    if (!parent) return;
    std::erase_if(parent->children_, [&](const Ref<NSWindow>& w) { return w.get() == this; });
    if (native_) windowServer().setParent(native_, 0);
}

void NSWindow::setParentWindow(NSWindow* parent) {
    if (parent_.get() == parent) return;
    if (parent)
        parent->addChildWindow_ordered(this, NSWindowAbove);
    else
        detachFromParent();
}

Ref<NSArray> NSWindow::childWindows() const { return NSArray::arrayWithRefs(children_); }

} // namespace libvue
