#include <libvue/platform/appkit/NSEvent.h>

#include <libvue/platform/appkit/EventMonitor.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSTrackingArea.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/backend/Backend.h>

namespace libvue {

void NSEvent::describe(ClassDescription<NSEvent>&) {}

NSEvent::NSEvent(Fields fields) : f_(std::move(fields)) {}
NSEvent::~NSEvent() = default;

namespace {

/// Screen coordinates of a place in a window, or in none.
NSPoint onScreen(NSPoint location, NSInteger windowNumber) {
    NSWindow* w = NSWindow::windowWithNumber(windowNumber);
    return w ? w->convertBaseToScreen(location) : location;
}

NSEvent::Fields commonFields(NSEventType type, NSPoint location, NSUInteger flags, NSTimeInterval time,
                             NSInteger windowNumber) {
    NSEvent::Fields f;
    f.type = type;
    f.location = location;
    f.screenLocation = onScreen(location, windowNumber);
    f.modifierFlags = flags;
    f.timestamp = time;
    f.windowNumber = windowNumber;
    return f;
}

} // namespace

Ref<NSEvent>
NSEvent::mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
    NSEventType type, NSPoint location, NSUInteger flags, NSTimeInterval time, NSInteger windowNumber,
    NSGraphicsContext*, NSInteger eventNumber, NSInteger clickCount, float pressure) {
    Fields f = commonFields(type, location, flags, time, windowNumber);
    f.eventNumber = eventNumber;
    f.clickCount = clickCount;
    f.pressure = pressure;
    f.buttonNumber = buttonOfType_(type);
    return make<NSEvent>(std::move(f));
}

Ref<NSEvent> NSEvent::
    keyEventWithType_location_modifierFlags_timestamp_windowNumber_context_characters_charactersIgnoringModifiers_isARepeat_keyCode(
        NSEventType type, NSPoint location, NSUInteger flags, NSTimeInterval time, NSInteger windowNumber,
        NSGraphicsContext*, NSString* characters, NSString* ignoringModifiers, BOOL repeat, unsigned short keyCode) {
    Fields f = commonFields(type, location, flags, time, windowNumber);
    f.characters = characters;
    f.charactersIgnoringModifiers = ignoringModifiers;
    f.isARepeat = repeat;
    f.keyCode = keyCode;
    return make<NSEvent>(std::move(f));
}

Ref<NSEvent> NSEvent::otherEventWithType_location_modifierFlags_timestamp_windowNumber_context_subtype_data1_data2(
    NSEventType type, NSPoint location, NSUInteger flags, NSTimeInterval time, NSInteger windowNumber,
    NSGraphicsContext*, short subtype, NSInteger data1, NSInteger data2) {
    Fields f = commonFields(type, location, flags, time, windowNumber);
    f.subtype = subtype;
    f.data1 = data1;
    f.data2 = data2;
    return make<NSEvent>(std::move(f));
}

NSInteger NSEvent::buttonOfType_(NSEventType type) noexcept {
    switch (type) {
    case NSRightMouseDown:
    case NSRightMouseUp:
    case NSRightMouseDragged:
        return 1;
    case NSOtherMouseDown:
    case NSOtherMouseUp:
    case NSOtherMouseDragged:
        return 2;
    default:
        return 0;
    }
}

NSWindow* NSEvent::window() const { return NSWindow::windowWithNumber(f_.windowNumber); }

BOOL NSEvent::isMouseEvent() const noexcept {
    switch (f_.type) {
    case NSLeftMouseDown:
    case NSLeftMouseUp:
    case NSRightMouseDown:
    case NSRightMouseUp:
    case NSMouseMoved:
    case NSLeftMouseDragged:
    case NSRightMouseDragged:
    case NSMouseEntered:
    case NSMouseExited:
    case NSOtherMouseDown:
    case NSOtherMouseUp:
    case NSOtherMouseDragged:
        return YES;
    default:
        return NO;
    }
}

NSPoint NSEvent::mouseLocation() { return backend::Backend::current().windows->mousePosition(); }
NSUInteger NSEvent::pressedMouseButtons() { return backend::Backend::current().windows->buttonsDown(); }
NSTimeInterval NSEvent::doubleClickInterval() { return backend::Backend::current().windows->doubleClickInterval(); }

NSUInteger NSEvent::currentModifierFlags() {
    const NSApplication* app = NSApplication::sharedIfAny_();
    return app ? app->modifierFlags_() : 0;
}

// Monitors.

NSObject* NSEvent::addLocalMonitorForEventsMatchingMask_handler(NSEventMask mask,
                                                                std::function<Ref<NSEvent>(NSEvent*)> handler) {
    if (!handler) return nullptr;
    const Ref<EventMonitor> monitor = make<EventMonitor>(mask, std::move(handler));
    NSApp()->monitors_().emplace_back(monitor);
    return monitor.get();
}

void NSEvent::removeMonitor(NSObject* token) {
    auto* monitor = as<EventMonitor>(token);
    NSApplication* app = NSApplication::sharedIfAny_();
    if (!monitor || !app) return;
    monitor->removed = true;
    // Kept until its place in the list is gone: its handler may hold the last reference to whoever removes it.
    const Ref<EventMonitor> kept(monitor);
    std::erase_if(app->monitors_(), [&](const Ref<NSObject>& m) { return m.get() == token; });
}

} // namespace libvue
