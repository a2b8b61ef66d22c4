#include <libvue/popover/KCTransientPanel.h>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/popover/NSWindowKerlan.h>

namespace libvue {

static const ClassRegistration<KCTransientPanel> enregistrement;

namespace {

/// Left, right and other presses and releases, left drags, the wheel. Right and other drags are not among them.
constexpr NSEventMask kSurveilles = NSEventMaskFromType(NSLeftMouseDown) | NSEventMaskFromType(NSLeftMouseUp) |
                                    NSEventMaskFromType(NSRightMouseDown) | NSEventMaskFromType(NSRightMouseUp) |
                                    NSEventMaskFromType(NSLeftMouseDragged) | NSEventMaskFromType(NSScrollWheel) |
                                    NSEventMaskFromType(NSOtherMouseDown) | NSEventMaskFromType(NSOtherMouseUp);
static_assert(kSurveilles == 0x640005E);

constexpr BOOL estAppui(NSEventType t) noexcept {
    return t == NSLeftMouseDown || t == NSRightMouseDown || t == NSOtherMouseDown;
}
constexpr BOOL estRelachement(NSEventType t) noexcept {
    return t == NSLeftMouseUp || t == NSRightMouseUp || t == NSOtherMouseUp;
}

/// Told once, however often the panel has come and gone.
template <auto M> void observe(KCTransientPanel* panel, const ConstantString& nom, NSObject* objet) {
    NSNotificationCenter* centre = NSNotificationCenter::defaultCenter();
    centre->removeObserver_name_object(panel, nom, objet);
    centre->addObserver<M>(panel, nom, objet);
}

} // namespace

void KCTransientPanel::describe(ClassDescription<KCTransientPanel, NSPanel>& c) {
    c.answers<&KCTransientPanel::parentWindowWillClose>("parentWindowWillClose:");
    c.answers<&KCTransientPanel::windowDidResignKey>("windowDidResignKey:");
    c.answers<&KCTransientPanel::applicationWillResignActive>("applicationWillResignActive:");
    c.answers<&KCTransientPanel::ferme>("ferme");
}

KCTransientPanel::~KCTransientPanel() {
    discardEventsMatchingMask_beforeEvent(NSAnyEventMask, nullptr);
    NSNotificationCenter::defaultCenter()->removeObserver(this);
    if (!eventMonitor_) return;
    NSEvent::removeMonitor(eventMonitor_);
    setEventMonitor(nullptr);
}

// On and off the screen.

void KCTransientPanel::orderWindow_relativeTo(NSWindowOrderingMode place, NSInteger otherNumber) {
    const Ref<KCTransientPanel> moi(this);
    if (place == NSWindowOut) {
        if (const Ref<NSWindow> parent = parentWindow()) parent->removeChildWindow(this);
        // The parent is gone from here, so what is observed of it stays observed.
        if (eventMonitor_) nettoieRessources();
    } else if (!eventMonitor_)
        surveille();
    NSPanel::orderWindow_relativeTo(place, otherNumber);
}

void KCTransientPanel::surveille() {
    observe<&KCTransientPanel::applicationWillResignActive>(this, NSApplicationWillResignActiveNotification, NSApp());
    // Without a parent these are registered for any window.
    NSWindow* parent = parentWindow();
    observe<&KCTransientPanel::windowDidResignKey>(this, NSWindowDidResignKeyNotification, parent);
    observe<&KCTransientPanel::parentWindowWillClose>(this, NSWindowWillCloseNotification, parent);
    pretAFermer_ = NO;
    // The handler keeps the panel and the panel the token: removeMonitor: breaks that.
    setEventMonitor(NSEvent::addLocalMonitorForEventsMatchingMask_handler(
        kSurveilles, [moi = Ref<KCTransientPanel>(this)](NSEvent* e) { return moi->voit(e); }));
}

void KCTransientPanel::nettoieRessources() {
    const Ref<KCTransientPanel> moi(this);
    NSNotificationCenter* centre = NSNotificationCenter::defaultCenter();
    centre->removeObserver_name_object(this, NSApplicationWillResignActiveNotification, NSApp());
    if (NSWindow* parent = parentWindow()) {
        centre->removeObserver_name_object(this, NSWindowDidResignKeyNotification, parent);
        centre->removeObserver_name_object(this, NSWindowWillCloseNotification, parent);
    }
    if (!eventMonitor_) return;
    NSEvent::removeMonitor(eventMonitor_);
    setEventMonitor(nullptr);
}

void KCTransientPanel::ferme() {
    if (!isVisible()) return;
    const Ref<KCTransientPanel> moi(this);
    if (const auto fermer = op::transientPanelClose.of(transientDelegate_)) {
        nettoieRessources();
        if (const Ref<NSWindow> parent = parentWindow()) parent->removeChildWindow(this);
        fermer(this);
    } else
        orderOut(nullptr);
}

// What the delegate thinks.

BOOL KCTransientPanel::shouldCloseOnParentWindowResignActive() {
    const auto demande = op::transientPanelShouldCloseOnParentWindowResignActive.of(transientDelegate_);
    return demande ? demande(this) : YES;
}

BOOL KCTransientPanel::shouldCloseOnParentWindowResignKey() {
    const auto demande = op::transientPanelShouldCloseOnParentWindowResignKey.of(transientDelegate_);
    return demande ? demande(this) : YES;
}

BOOL KCTransientPanel::shouldCloseOnUnrelatedWindowUsage() {
    const auto demande = op::transientPanelShouldCloseOnUnrelatedWindowUsage.of(transientDelegate_);
    return demande ? demande(this) : YES;
}

void KCTransientPanel::parentWindowWillClose(NSNotification*) { ferme(); }

void KCTransientPanel::windowDidResignKey(NSNotification*) {
    if (shouldCloseOnParentWindowResignKey()) ferme();
}

void KCTransientPanel::applicationWillResignActive(NSNotification*) {
    if (shouldCloseOnParentWindowResignActive()) ferme();
}

// Events.

BOOL KCTransientPanel::descendDe(const NSWindow* w) const noexcept {
    for (const NSWindow* p = parentWindow(); p; p = p->parentWindow())
        if (p == w) return YES;
    return NO;
}

void KCTransientPanel::resignKeyWindow() {
    touchesPrises_ = NSApp()->desktopMovesFocus_() ? NSRunLoop::mainRunLoop()->now() : 0;
    NSPanel::resignKeyWindow();
}

BOOL KCTransientPanel::avaitLesTouches() {
    // A desktop moves the focus before it delivers the press that does so: that press found the panel key still.
    constexpr NSTimeInterval memeGeste = 0.1;
    const NSTimeInterval prises = std::exchange(touchesPrises_, 0);
    return isKeyWindow() || (prises > 0 && NSRunLoop::mainRunLoop()->now() - prises < memeGeste);
}

Ref<NSEvent> KCTransientPanel::voit(NSEvent* e) {
    Ref<NSEvent> kept(e);
    const NSEventType type = e->type();
    const NSWindow* fenetre = e->window();
    if (estAppui(type)) {
        if (avaitLesTouches()) return kept;
        if (fenetre && descendDe(fenetre)) pretAFermer_ = YES;
        if (!pretAFermer_ && fenetre != this && shouldCloseOnUnrelatedWindowUsage()) pretAFermer_ = YES;
    } else if (type == NSLeftMouseDragged)
        pretAFermer_ = NO;
    else if (estRelachement(type)) {
        if (!pretAFermer_) return kept;
        ferme();
        pretAFermer_ = NO;
    } else if (type == NSScrollWheel && fenetre != this && NSPointInRect(NSEvent::mouseLocation(), frame()))
        return nullptr;
    return kept;
}

void KCTransientPanel::sendEvent(NSEvent* e) {
    if (!e) return;
    const Ref<KCTransientPanel> moi(this);
    const Ref<NSEvent> kept(e);
    if (devraitBloquerEvenement(this, e)) return;
    NSPanel::sendEvent(e);
    if (!devraitDoublerEvenement(this, e)) return;
    const Ref<NSEvent> double_ = NSEvent::
        mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
            e->type(), e->locationInWindow(), e->modifierFlags(), e->timestamp(), e->windowNumber(), e->context(),
            e->eventNumber(), 2, e->pressure());
    NSPanel::sendEvent(double_);
}

} // namespace libvue
