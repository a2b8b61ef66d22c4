#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>

#include <libvue/platform/appkit/EventMonitor.h>
#include <libvue/platform/appkit/NSApplicationNative.h>
#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSScreen.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/NativeNotice.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/foundation/ScopeExit.h>

namespace libvue {

using backend::Event;

namespace {

/// Presses that lie farther apart than this, in points, are no double click.
constexpr CGFloat clickDistance = 4;
/// The run loop's own, in seconds.
constexpr NSTimeInterval timeTolerance = 1e-6;

/// Seconds from the server's zero to the platform's: what the run loop and the dates count in.
NSTimeInterval offsetOf(backend::WindowServer& server) {
    constexpr NSTimeInterval from1970 = 978307200;
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration<NSTimeInterval>(now).count() - from1970 - server.now();
}

NSEventType mouseType(Event::Kind kind, int button) {
    if (kind == Event::Kind::mouseDown)
        return button == 0 ? NSLeftMouseDown : button == 1 ? NSRightMouseDown : NSOtherMouseDown;
    if (kind == Event::Kind::mouseUp)
        return button == 0 ? NSLeftMouseUp : button == 1 ? NSRightMouseUp : NSOtherMouseUp;
    return button == 0 ? NSLeftMouseDragged : button == 1 ? NSRightMouseDragged : NSOtherMouseDragged;
}

} // namespace

NSApplication::Native::Native(NSApplication& a, backend::WindowServer& s) : app(a), server(s), offset(offsetOf(s)) {}

bool NSApplication::Native::isExhausted(bool didSomething) {
    // A wake from outside counts as nothing done, so one such turn proves nothing; but where time passes, more can
    // come.
    constexpr int most = 1000;
    const backend::Time time = server.now();
    const bool stands = !didSomething && time == idleTime;
    idleTime = time;
    idleTurns = stands ? idleTurns + 1 : 0;
    return idleTurns >= most;
}

// From the server into the queue.

BOOL NSApplication::fetchNative(NSTimeInterval deadline) {
    backend::Time until = std::isinf(deadline) ? backend::never : native_->serverTime(deadline);
    bool any = false;
    Event e;
    while (native_->server.next(e, until)) {
        native_->enqueue(e);
        any = true;
        until = 0; // the rest of what is there already
    }
    return any;
}

NSWindow* NSApplication::Native::windowOf(backend::WindowId id) const {
    if (id == 0) return nullptr;
    for (NSWindow* w : app.windows_)
        if (w->nativeId_() == id) return w;
    return nullptr;
}

void NSApplication::Native::enqueue(const Event& e) {
    using Kind = Event::Kind;
    switch (e.kind) {
    case Kind::none:
        return;
    case Kind::mouseDown:
    case Kind::mouseUp:
    case Kind::mouseMoved:
    case Kind::mouseEntered:
    case Kind::mouseExited:
    case Kind::wheel:
        enqueueMouse(e);
        return;
    case Kind::keyDown:
    case Kind::keyUp:
    case Kind::modifiers:
    case Kind::textCommit:
    case Kind::textPreedit:
        enqueueKey(e);
        return;
    // The others wait for their turn in the queue.
    case Kind::focusIn:
        focused = e.window;
        break;
    case Kind::focusOut:
        if (focused == e.window) focused = 0;
        break;
    default:
        break;
    }
    app.queue_.push_back(make<NativeNotice>(e));
}

NSInteger NSApplication::Native::countClick(const Event& e, NSWindow* w) {
    const NSPoint place = w->convertBaseToScreen(e.position);
    const bool again = click.button == e.button && click.window == w->windowNumber() &&
                       e.time - click.time <= server.doubleClickInterval() &&
                       std::abs(place.x - click.place.x) <= clickDistance &&
                       std::abs(place.y - click.place.y) <= clickDistance;
    click = {e.time, place, e.button, w->windowNumber(), again ? click.count + 1 : 1};
    return click.count;
}

void NSApplication::Native::enqueueMouse(const Event& e) {
    using Kind = Event::Kind;
    app.modifiers_ = e.modifiers;
    NSWindow* w = windowOf(e.window);
    NSPoint location = e.position;
    const std::uint32_t bit = 1u << std::clamp(e.button, 0, 31);

    if (e.kind == Kind::mouseDown) {
        if (buttons == 0) {
            grab = w;
            dragButton = e.button;
        }
        buttons |= bit;
    }
    // The window that was pressed hears of the press until its end, wherever the pointer is.
    const bool pressed = buttons != 0;
    if (e.kind == Kind::mouseUp) {
        buttons &= ~bit;
        if (!pressed) return;
    }
    if (pressed && e.kind != Kind::wheel && grab && grab.get() != w) {
        location = grab->convertScreenToBase(e.window && w ? w->convertBaseToScreen(e.position) : e.screenPosition);
        w = grab;
    }
    if (!w) return;

    NSEvent::Fields f;
    f.location = location;
    // What the server says holds while the window moves; events that were made by hand may not say it.
    f.screenLocation = e.screenPosition == NSPoint{0, 0} ? w->convertBaseToScreen(location) : e.screenPosition;
    f.modifierFlags = e.modifiers;
    f.timestamp = e.time;
    f.windowNumber = w->windowNumber();
    f.buttonNumber = e.button;
    if (e.kind == Kind::mouseDown) f.clickCount = countClick(e, w);
    fillMouse(f, e, pressed);
    app.queue_.push_back(make<NSEvent>(std::move(f)));
    if (buttons == 0 && e.kind == Kind::mouseUp) grab = nullptr;
}

void NSApplication::Native::fillMouse(NSEvent::Fields& f, const Event& e, bool pressed) {
    using Kind = Event::Kind;
    switch (e.kind) {
    case Kind::mouseDown:
        f.eventNumber = ++eventNumber;
        f.type = mouseType(e.kind, e.button);
        f.pressure = 1;
        break;
    case Kind::mouseUp:
        f.clickCount = click.button == e.button ? click.count : 1;
        f.eventNumber = eventNumber;
        f.type = mouseType(e.kind, e.button);
        break;
    case Kind::mouseMoved:
        if (pressed) {
            f.type = mouseType(e.kind, dragButton);
            f.buttonNumber = dragButton;
            f.clickCount = click.count;
            f.eventNumber = eventNumber;
            f.pressure = 1;
        } else
            f.type = NSMouseMoved;
        f.deltaX = e.deltaX;
        f.deltaY = e.deltaY;
        break;
    case Kind::wheel: {
        const CGFloat unit = e.precise ? 1 : NSEvent::pointsPerWheelLine_;
        f.type = NSScrollWheel;
        f.deltaX = e.deltaX * unit;
        f.deltaY = e.deltaY * unit;
        f.hasPreciseScrollingDeltas = e.precise;
        f.phase = e.phase == 4 ? 0 : e.phase;
        f.momentumPhase = e.phase == 4;
        break;
    }
    default:
        f.type = e.kind == Kind::mouseEntered ? NSMouseEntered : NSMouseExited;
        break;
    }
}

void NSApplication::Native::enqueueKey(const Event& e) {
    using Kind = Event::Kind;
    app.modifiers_ = e.modifiers;
    // The key window hears the keys, whichever window the desktop gave them to.
    NSWindow* w = app.keyWindow_ ? app.keyWindow_.get() : windowOf(e.window);
    NSEvent::Fields f;
    f.location = w ? w->convertScreenToBase(server.mousePosition()) : e.position;
    f.screenLocation = server.mousePosition();
    f.modifierFlags = e.modifiers;
    f.timestamp = e.time;
    f.windowNumber = w ? w->windowNumber() : 0;
    f.keyCode = e.keyCode;
    f.characters = NSString::from(e.characters);
    f.charactersIgnoringModifiers = NSString::from(e.charactersIgnoringModifiers);
    f.isARepeat = e.repeat;
    switch (e.kind) {
    case Kind::keyDown:
        f.type = NSKeyDown;
        break;
    case Kind::keyUp:
        f.type = NSKeyUp;
        break;
    case Kind::modifiers:
        f.type = NSFlagsChanged;
        break;
    default:
        f.type = NSTextInput;
        f.isPreedit = e.kind == Kind::textPreedit;
        f.selection = e.selection;
        break;
    }
    app.queue_.push_back(make<NSEvent>(std::move(f)));
}

// Out of the queue.

Ref<NSEvent> NSApplication::throughMonitors(Ref<NSEvent> e) {
    if (monitorList_.empty()) return e;
    // One that is added meanwhile does not see this event, one that is removed does not see it any more.
    const std::vector<Ref<NSObject>> monitors = monitorList_;
    for (const auto& o : monitors) {
        auto* m = static_cast<EventMonitor*>(o.get());
        if (m->removed || !(m->mask & NSEventMaskFromType(e->type()))) continue;
        e = m->handler(e.get());
        if (!e) return nullptr;
    }
    return e;
}

Ref<NSEvent> NSApplication::nextQueued(NSEventMask mask, BOOL dequeue) {
    for (std::size_t i = 0; i < queue_.size();) {
        Ref<NSEvent> e = queue_[i];
        if (e->type() == NSAppKitDefined && as<NativeNotice>(e)) {
            queue_.erase(queue_.begin() + static_cast<std::ptrdiff_t>(i));
            handleNative(e);
            i = 0; // whatever heard of it may have changed the queue
            continue;
        }
        if (!(mask & NSEventMaskFromType(e->type()))) {
            ++i;
            continue;
        }
        if (!dequeue) return e;
        queue_.erase(queue_.begin() + static_cast<std::ptrdiff_t>(i));
        if (Ref<NSEvent> seen = throughMonitors(e)) return seen;
        i = 0;
    }
    return nullptr;
}

Ref<NSEvent> NSApplication::nextEventMatchingMask_untilDate_inMode_dequeue(NSEventMask mask, NSTimeInterval deadline,
                                                                           NSString* mode, BOOL dequeue) {
    const Ref<NSApplication> self(this);
    NSRunLoop* loop = NSRunLoop::mainRunLoop();
    for (bool waited = false;; waited = true) {
        if (Ref<NSEvent> e = nextQueued(mask, dequeue)) {
            // Tracking loops take their events themselves; what they take is what is going on.
            if (dequeue) currentEvent_ = e;
            return e;
        }
        if (waited && loop->now() >= deadline - timeTolerance) return nullptr;
        const bool did = loop->runOnce(deadline, mode);
        if (std::isinf(deadline) && native_->isExhausted(did || !queue_.empty())) return nullptr;
    }
}

Ref<NSEvent> NSApplication::nextDragOrRelease_() {
    return nextEventMatchingMask_untilDate_inMode_dequeue(NSLeftMouseDraggedMask | NSLeftMouseUpMask,
                                                          std::numeric_limits<NSTimeInterval>::infinity(),
                                                          NSEventTrackingRunLoopMode, YES);
}

void NSApplication::postEvent_atStart(NSEvent* e, BOOL atStart) {
    if (!e) return;
    if (atStart)
        queue_.emplace_front(e);
    else
        queue_.emplace_back(e);
    native_->wake();
}

template <class Chosen> void NSApplication::discardEvents(NSEventMask mask, NSEvent* last, const Chosen& chosen) {
    const auto at = std::find_if(queue_.begin(), queue_.end(), [&](const auto& e) { return e.get() == last; });
    const std::size_t place = static_cast<std::size_t>(at - queue_.begin());
    // One that has left the queue already is older than what came after it.
    const auto isBefore = [&](std::size_t i) {
        return !last || (at != queue_.end() ? i < place : queue_[i]->timestamp() < last->timestamp());
    };
    std::deque<Ref<NSEvent>> left;
    for (std::size_t i = 0; i < queue_.size(); ++i) {
        const auto& e = queue_[i];
        if (isBefore(i) && mask & NSEventMaskFromType(e->type()) && !as<NativeNotice>(e) && chosen(*e)) continue;
        left.push_back(e);
    }
    queue_ = std::move(left);
}

void NSApplication::discardEventsMatchingMask_beforeEvent(NSEventMask mask, NSEvent* last) {
    discardEvents(mask, last, [](const NSEvent&) { return true; });
}

void NSApplication::discardEventsOf_matchingMask_beforeEvent(NSInteger windowNumber, NSEventMask mask, NSEvent* last) {
    if (queue_.empty()) return;
    discardEvents(mask, last, [=](const NSEvent& e) { return e.windowNumber() == windowNumber; });
}

bool NSApplication::refuse(NSEvent* e, NSWindow* w, NSWindow* blocker) {
    const NSEventType t = e->type();
    if (!e->isMouseEvent() && !e->isKeyEvent() && t != NSScrollWheel && t != NSTextInput && t != NSFlagsChanged)
        return false;
    if (t == NSLeftMouseDown || t == NSRightMouseDown || t == NSOtherMouseDown || t == NSKeyDown)
        native_->server.beep();
    if (t != NSLeftMouseDown) return true;
    if (w->sheetInFront_() == blocker) {
        // The window comes forward, its sheet on top of it with the keys.
        w->orderFront(nullptr);
        blocker->makeKeyWindow();
        w->makeMainWindow();
    } else
        blocker->orderFront(nullptr);
    return true;
}

void NSApplication::sendEvent(NSEvent* e) {
    if (!e) return;
    const Ref<NSApplication> self(this);
    const Ref<NSEvent> kept(e);
    currentEvent_ = e;
    Ref<NSWindow> w(e->window());
    switch (e->type()) {
    case NSKeyDown:
    case NSKeyUp:
    case NSFlagsChanged:
    case NSTextInput:
        if (!w) w = keyWindow_;
        break;
    default:
        break;
    }
    if (const Ref<NSWindow> blocker = blockerOf(w))
        if (refuse(e, w, blocker)) return;
    if (e->type() == NSKeyDown && e->charactersIgnoringModifiers() && e->charactersIgnoringModifiers()->length() > 0) {
        const unichar c = e->charactersIgnoringModifiers()->characterAtIndex(0);
        const bool functionKey = c >= NSF1FunctionKey && c < NSInsertFunctionKey;
        if (functionKey || e->modifierFlags() & (NSCommandKeyMask | NSControlKeyMask | NSAlternateKeyMask)) {
            if (w && w->performKeyEquivalent(e)) return;
            if (const Ref<NSMenu> menu = mainMenu_; menu && menu->performKeyEquivalent(e)) return;
        }
    }
    if (w) w->sendEvent(e);
}

// What the desktop says of the windows.

bool NSApplication::focusFollows() const {
    return std::any_of(queue_.begin(), queue_.end(), [](const Ref<NSEvent>& e) {
        const auto* n = as<NativeNotice>(e);
        return n && n->isFocus();
    });
}

void NSApplication::handleNative(NSEvent* event) {
    using Kind = Event::Kind;
    const Event& e = static_cast<NativeNotice*>(event)->native;
    const Ref<NSWindow> w(native_->windowOf(e.window));
    // Its decoration is known by the time that the desktop speaks of a window.
    if (w) w->noteInsets();
    switch (e.kind) {
    case Kind::focusIn:
    case Kind::focusOut:
        // Of a change from window to window only the end counts.
        if (!focusFollows()) {
            native_->movesFocus = true;
            const ScopeExit ended([this] { native_->movesFocus = false; });
            focusChanged(w, e.kind == Kind::focusIn);
        }
        return;
    case Kind::screensChanged:
        NSScreen::invalidate_();
        for (const Ref<NSWindow>& each : keptWindows(windows_))
            each->noteScreen();
        post(NSApplicationDidChangeScreenParametersNotification, op::applicationDidChangeScreenParameters);
        return;
    case Kind::appearanceChanged:
        appearanceChanged();
        return;
    default:
        break;
    }
    if (!w) return;
    switch (e.kind) {
    case Kind::closeRequest:
        if (blockerOf(w))
            native_->server.beep();
        else
            w->nativeCloseRequest_();
        return;
    case Kind::moved:
        // Whoever is told of the move, and of what follows from it, finds it as the event that is going on.
        currentEvent_ =
            NSEvent::otherEventWithType_location_modifierFlags_timestamp_windowNumber_context_subtype_data1_data2(
                NSAppKitDefined, NSZeroPoint, modifiers_, NSRunLoop::mainRunLoop()->now(), w->windowNumber(), nullptr,
                NSWindowMovedEventType, static_cast<NSInteger>(e.rect.origin.x),
                static_cast<NSInteger>(e.rect.origin.y));
        w->nativeMoved_(e.rect);
        return;
    case Kind::resized:
        w->nativeMoved_(e.rect);
        return;
    case Kind::exposed:
        w->nativeExposed_(e.rect);
        return;
    case Kind::miniaturized:
        w->nativeMiniaturized_(YES);
        return;
    case Kind::deminiaturized:
        w->nativeMiniaturized_(NO);
        return;
    case Kind::scaleChanged:
        w->nativeScaleChanged_();
        return;
    default:
        return;
    }
}

} // namespace libvue
