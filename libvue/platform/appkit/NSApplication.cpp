#include <libvue/platform/appkit/NSApplication.h>

#include <algorithm>
#include <limits>

#include <libvue/platform/appkit/EventMonitor.h>
#include <libvue/platform/appkit/NSApplicationNative.h>
#include <libvue/platform/appkit/NSCursor.h>
#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/platform/appkit/NSScreen.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/SheetEnd.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/foundation/NSUserDefaults.h>
#include <libvue/platform/foundation/ScopeExit.h>
#include <libvue/platform/graphics/Appearance.h>

namespace libvue {

namespace {

NSApplication* shared = nullptr;

/// Turns that drain_ takes at most: work that schedules itself anew for the same moment has no end.
constexpr int mostTurns = 10000;
constexpr NSTimeInterval displayInterval = 1.0 / 60;

} // namespace

void NSApplication::describe(ClassDescription<NSApplication, NSResponder>& c) {
    c.answers<&NSApplication::terminate>("terminate:");
    c.answers<&NSApplication::stop>("stop:");
    c.key<&NSApplication::keyWindow>("keyWindow");
    c.key<&NSApplication::mainWindow>("mainWindow");
}

NSApplication* NSApplication::sharedApplication() {
    if (!shared) {
        (void)classOf<NSApplication>();
        shared = new NSApplication;
    }
    return shared;
}

NSApplication* NSApplication::sharedIfAny_() noexcept { return shared; }

NSApplication* NSApp() { return NSApplication::sharedApplication(); }

NSApplication::NSApplication() {
    auto& server = *backend::Backend::current().windows;
    native_ = std::make_unique<Native>(*this, server);
    NSRunLoop* loop = NSRunLoop::mainRunLoop();
    loop->setSource(native_.get());
    native_->endOfTurn = loop->addEndOfTurnObserver([this] { displayWindows_(); });
    setCurrentAppearance(server.prefersDark() ? Appearance::dark : Appearance::light);
    NSScreen::invalidate_();
}

NSApplication::~NSApplication() = default;

void NSApplication::resetSharedApplication() {
    if (!shared) return;
    NSApplication* app = shared;
    {
        const Ref<NSApplication> kept(app);
        app->queue_.clear();
        // What a handler holds may hold its monitor.
        for (const auto& monitor : std::exchange(app->monitorList_, {}))
            static_cast<EventMonitor*>(monitor.get())->handler = nullptr;
        app->modals_.clear();
        app->delegate_ = nullptr;
        app->keyWindow_ = nullptr;
        app->mainWindow_ = nullptr;
        for (const auto& w : keptWindows(app->windows_)) {
            if (w->isVisible()) w->NSWindow::orderWindow_relativeTo(NSWindowOut, 0);
            w->closeNative();
            w->self_ = nullptr;
        }
        app->currentEvent_ = nullptr;
        app->mainMenu_ = nullptr;
        if (app->native_->displayTimer) app->native_->displayTimer->invalidate();
        NSRunLoop* loop = NSRunLoop::mainRunLoop();
        loop->removeEndOfTurnObserver(app->native_->endOfTurn);
        loop->setSource(nullptr);
        app->toDisplay_.clear();
    }
    shared = nullptr;
    NSScreen::invalidate_();
    app->release();
}

void NSApplication::setDelegate(NSObject* d) { delegate_ = d; }

void NSApplication::post(NSString* name, const Operation<void(NSNotification*)>& operation) {
    const Ref<NSApplication> self(this);
    if (const auto answer = operation.of(delegate_)) answer(NSNotification::notificationWithName_object(name, this));
    NSNotificationCenter::defaultCenter()->postNotificationName_object(name, this);
}

// Running.

void NSApplication::finishLaunching() {
    if (launched_) return;
    launched_ = true;
    post(NSApplicationDidFinishLaunchingNotification, op::applicationDidFinishLaunching);
}

void NSApplication::run() {
    const Ref<NSApplication> self(this);
    stopped_ = false;
    running_ = true;
    finishLaunching();
    while (!stopped_) {
        try {
            if (native_->isExhausted(runOnceUntil_(std::numeric_limits<NSTimeInterval>::infinity()))) break;
        } catch (const NSExceptionRaised& raised) {
            // The fault of one handler is said and does not end the others.
            NSLog(u"Uncaught %@"_ns, raised.exception.get());
        }
    }
    running_ = false;
}

void NSApplication::stop(NSObject*) {
    if (!modals_.empty())
        stopModal();
    else
        stopped_ = true;
    native_->wake();
}

void NSApplication::terminate(NSObject*) {
    const Ref<NSApplication> self(this);
    mayEndLater_ = false;
    if (const auto asks = op::applicationShouldTerminate.of(delegate_)) {
        const NSUInteger answer = asks(this);
        mayEndLater_ = answer == NSTerminateLater;
        if (answer != NSTerminateNow) return;
    }
    end();
}

void NSApplication::replyToApplicationShouldTerminate(BOOL shouldTerminate) {
    if (std::exchange(mayEndLater_, false) && shouldTerminate) end();
}

void NSApplication::end() {
    const Ref<NSApplication> self(this);
    post(NSApplicationWillTerminateNotification, op::applicationWillTerminate);
    for (const auto& w : keptWindows(windows_))
        w->savePendingFrame();
    NSUserDefaults::standardUserDefaults()->synchronize();
    for (Modal& m : modals_)
        if (m.code == NSRunContinuesResponse) m.code = NSRunAbortedResponse;
    stopped_ = true;
    native_->wake();
}

BOOL NSApplication::runOnceUntil_(NSTimeInterval deadline) {
    const Ref<NSApplication> self(this);
    NSString* mode = modals_.empty() ? NSDefaultRunLoopMode.get() : NSModalPanelRunLoopMode.get();
    bool did = false;
    if (queue_.empty()) did = NSRunLoop::mainRunLoop()->runOnce(deadline, mode);
    const std::size_t depth = modals_.size();
    while (const Ref<NSEvent> e = nextQueued(NSAnyEventMask, YES)) {
        did = true;
        sendEvent(e);
        updateWindows();
        // What stops a loop stops it before the next event.
        if (stopped_ || (modals_.size() == depth && depth > 0 && modals_.back().code != NSRunContinuesResponse)) break;
    }
    displayWindows_();
    return did;
}

void NSApplication::drain_() {
    const Ref<NSApplication> self(this);
    for (int turn = 0; turn < mostTurns; ++turn) {
        const bool had = !queue_.empty();
        if (!runOnceUntil_(NSRunLoop::mainRunLoop()->now()) && !had) break;
    }
}

// Modal windows.

NSInteger NSApplication::runModalForWindow(NSWindow* window) {
    if (!window) return NSRunAbortedResponse;
    const Ref<NSApplication> self(this);
    const Ref<NSWindow> kept(window);
    modals_.push_back({window, NSRunContinuesResponse});
    const std::size_t mine = modals_.size() - 1;
    // Also where a handler raises: the other windows hear their events again.
    const ScopeExit ended([this, mine] { modals_.resize(std::min(modals_.size(), mine)); });
    if (!window->isVisible()) window->center();
    window->makeKeyAndOrderFront(nullptr);
    while (modals_.size() > mine && modals_[mine].code == NSRunContinuesResponse) {
        // A modal window that was closed will not be answered any more.
        if (!window->isVisible() && !window->isMiniaturized()) break;
        if (native_->isExhausted(runOnceUntil_(std::numeric_limits<NSTimeInterval>::infinity()))) break;
    }
    if (modals_.size() <= mine) return NSRunAbortedResponse;
    const NSInteger code = modals_[mine].code;
    return code == NSRunContinuesResponse ? NSInteger{NSRunAbortedResponse} : code;
}

void NSApplication::stopModalWithCode(NSInteger code) {
    if (modals_.empty()) return;
    modals_.back().code = code;
    native_->wake();
}

NSWindow* NSApplication::modalWindow() const noexcept {
    return modals_.empty() ? nullptr : modals_.back().window.get();
}

NSWindow* NSApplication::blockerOf(NSWindow* w) const {
    if (!w) return nullptr;
    if (NSWindow* modal = modalWindow()) {
        bool isFree = w->worksWhenModal() || w->nativeKind_() >= NSPopUpNativeWindow;
        for (const NSWindow* a = w; a && !isFree; a = a->parentWindow())
            isFree = a == modal;
        if (!isFree) return modal->sheetInFront_() ? modal->sheetInFront_() : modal;
    }
    if (NSWindow* sheet = w->sheetInFront_()) return sheet;
    // What hangs on a window that has a sheet waits with it, unless it hangs on the sheet.
    if (w->worksWhenModal()) return nullptr;
    for (const NSWindow* a = w; a && !a->isSheet(); a = a->parentWindow()) {
        if (a == modalWindow()) return nullptr;
        if (const NSWindow* p = a->parentWindow())
            if (NSWindow* sheet = p->sheetInFront_()) return sheet;
    }
    return nullptr;
}

// Sheets.

void NSApplication::beginSheet_modalForWindow_modalDelegate_didEndSelector_contextInfo(NSWindow* sheet,
                                                                                       NSWindow* window,
                                                                                       NSObject* delegate, SEL didEnd,
                                                                                       void* info) {
    if (!window || !sheet) raiseNamed("NSInvalidArgumentException", "beginSheet: without a sheet or a window");
    window->beginSheet_completionHandler(sheet, sheetEndTeller(sheet, delegate, didEnd, info));
}

void NSApplication::endSheet_returnCode(NSWindow* sheet, NSInteger code) {
    const Ref<NSApplication> self(this);
    const Ref<NSWindow> alive(sheet);
    for (const auto& w : keptWindows(windows_))
        w->endSheet_returnCode(sheet, code);
}

// The windows.

void NSApplication::addWindow_(NSWindow* w) {
    if (std::find(windows_.begin(), windows_.end(), w) == windows_.end()) windows_.push_back(w);
}

void NSApplication::removeWindow_(NSWindow* w) {
    std::erase(windows_, w);
    std::erase(ordered_, w);
    std::erase(toDisplay_, w);
}

Ref<NSArray> NSApplication::windows() const { return NSArray::arrayWithRefs(keptWindows(windows_)); }
Ref<NSArray> NSApplication::orderedWindows() const { return NSArray::arrayWithRefs(keptWindows(ordered_)); }

NSWindow* NSApplication::windowWithWindowNumber(NSInteger number) const {
    for (NSWindow* w : windows_)
        if (w->windowNumber() == number) return w;
    return nullptr;
}

void NSApplication::updateWindows() {
    const Ref<NSApplication> self(this);
    for (const auto& w : keptWindows(ordered_))
        if (w->isVisible()) w->update();
}

NSMenu* NSApplication::mainMenu() const noexcept { return mainMenu_; }
void NSApplication::setMainMenu(NSMenu* menu) { mainMenu_ = menu; }

void NSApplication::windowOrdered_(NSWindow* w, BOOL in) {
    std::erase(ordered_, w);
    if (!in) return;
    const auto at =
        std::find_if(ordered_.begin(), ordered_.end(), [&](NSWindow* o) { return o->level() <= w->level(); });
    ordered_.insert(at, w);
}

void NSApplication::windowClosed(NSWindow*) {
    if (!running_ || stopped_) return;
    for (NSWindow* w : windows_)
        if ((w->isVisible() || w->isMiniaturized()) && !as<NSPanel>(w)) return;
    if (const auto asks = op::applicationShouldTerminateAfterLastWindowClosed.of(delegate_))
        if (!asks(this)) return;
    terminate(this);
}

// Display.

void NSApplication::windowNeedsDisplay_(NSWindow* w) {
    if (std::find(toDisplay_.begin(), toDisplay_.end(), w) == toDisplay_.end()) toDisplay_.push_back(w);
}

void NSApplication::displayWindows_() {
    if (toDisplay_.empty()) return;
    const Ref<NSApplication> self(this);
    // Each window once a call: one that asks again while it draws waits, so that it cannot hold up the rest.
    std::vector<NSInteger> shown;
    for (;;) {
        const auto next = std::find_if(toDisplay_.begin(), toDisplay_.end(), [&](NSWindow* w) {
            return std::find(shown.begin(), shown.end(), w->windowNumber()) == shown.end();
        });
        if (next == toDisplay_.end()) break;
        const Ref<NSWindow> w(*next);
        toDisplay_.erase(next);
        shown.push_back(w->windowNumber());
        w->displayIfNeeded();
    }
    // What is left asked anew after its turn.
    for (NSWindow* w : std::exchange(toDisplay_, {}))
        displayLater(w);
}

void NSApplication::displayLater(NSWindow* w) {
    auto& later = native_->displayedLater;
    if (std::none_of(later.begin(), later.end(), [&](const auto& o) { return o.get() == w; })) later.emplace_back(w);
    auto& timer = native_->displayTimer;
    if (timer && timer->isValid()) return;
    timer = NSTimer::timerWithTimeInterval_repeats_block(displayInterval, NO, [this](NSTimer*) {
        for (const auto& weak : std::exchange(native_->displayedLater, {}))
            if (NSWindow* window = weak) windowNeedsDisplay_(window);
    });
    NSRunLoop::mainRunLoop()->addTimer_forMode(timer, NSRunLoopCommonModes);
}

void NSApplication::appearanceChanged() {
    setCurrentAppearance(native_->server.prefersDark() ? Appearance::dark : Appearance::light);
    const Ref<NSApplication> self(this);
    for (const auto& w : keptWindows(windows_))
        w->nativeAppearanceChanged_();
    NSNotificationCenter::defaultCenter()->postNotificationName_object(NSApplicationDidChangeAppearanceNotification,
                                                                       this);
}

// Actions.

NSObject* NSApplication::responderFor(SEL action, NSWindow* w) const {
    if (!w) return nullptr;
    for (NSResponder* r = w->firstResponder(); r; r = r->nextResponder())
        if (r->respondsToSelector(action)) return r;
    if (w->respondsToSelector(action)) return w;
    NSObject* d = w->delegate();
    return d && d->respondsToSelector(action) ? d : nullptr;
}

NSObject* NSApplication::targetForAction_to_from(SEL action, NSObject* target, NSObject*) {
    if (!action) return nullptr;
    if (target) return target->respondsToSelector(action) ? target : nullptr;
    if (NSObject* r = responderFor(action, keyWindow_)) return r;
    if (mainWindow_.get() != keyWindow_.get() && modals_.empty() && !blockerOf(mainWindow_))
        if (NSObject* r = responderFor(action, mainWindow_)) return r;
    if (respondsToSelector(action)) return this;
    NSObject* d = delegate_;
    return d && d->respondsToSelector(action) ? d : nullptr;
}

BOOL NSApplication::sendAction_to_from(SEL action, NSObject* target, NSObject* sender) {
    const Ref<NSApplication> self(this);
    const Ref<NSObject> keptSender(sender);
    const Ref<NSObject> to(targetForAction_to_from(action, target, sender));
    if (!to) return NO;
    (void)to->performSelector_withObject(action, sender);
    return YES;
}

} // namespace libvue
