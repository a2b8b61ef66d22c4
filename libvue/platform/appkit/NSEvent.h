#pragma once

#include <functional>

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

enum NSEventType : NSUInteger {
    NSLeftMouseDown = 1,
    NSLeftMouseUp = 2,
    NSRightMouseDown = 3,
    NSRightMouseUp = 4,
    NSMouseMoved = 5,
    NSLeftMouseDragged = 6,
    NSRightMouseDragged = 7,
    NSMouseEntered = 8,
    NSMouseExited = 9,
    NSKeyDown = 10,
    NSKeyUp = 11,
    NSFlagsChanged = 12,
    NSAppKitDefined = 13,
    NSSystemDefined = 14,
    NSApplicationDefined = 15,
    NSPeriodic = 16,
    NSCursorUpdate = 17,
    NSScrollWheel = 22,
    NSOtherMouseDown = 25,
    NSOtherMouseUp = 26,
    NSOtherMouseDragged = 27,
    NSTextInput = 40 ///< text of an input method or a dead key on its way to the first responder
};

using NSEventMask = NSUInteger;
[[nodiscard]] constexpr NSEventMask NSEventMaskFromType(NSEventType t) noexcept { return NSEventMask{1} << t; }
inline constexpr NSEventMask NSAnyEventMask = ~NSEventMask{0};
inline constexpr NSEventMask NSLeftMouseDownMask = NSEventMaskFromType(NSLeftMouseDown);
inline constexpr NSEventMask NSLeftMouseUpMask = NSEventMaskFromType(NSLeftMouseUp);
inline constexpr NSEventMask NSRightMouseDownMask = NSEventMaskFromType(NSRightMouseDown);
inline constexpr NSEventMask NSLeftMouseDraggedMask = NSEventMaskFromType(NSLeftMouseDragged);
inline constexpr NSEventMask NSMouseMovedMask = NSEventMaskFromType(NSMouseMoved);
inline constexpr NSEventMask NSKeyDownMask = NSEventMaskFromType(NSKeyDown);
inline constexpr NSEventMask NSScrollWheelMask = NSEventMaskFromType(NSScrollWheel);
inline constexpr NSEventMask NSOtherMouseDownMask = NSEventMaskFromType(NSOtherMouseDown);

/// Subtypes of NSAppKitDefined.
enum NSEventSubtype : short {
    NSWindowExposedEventType = 0,
    NSApplicationActivatedEventType = 1,
    NSApplicationDeactivatedEventType = 2,
    NSWindowMovedEventType = 4
};

enum NSEventModifierFlags : NSUInteger {
    NSAlphaShiftKeyMask = 1 << 16,
    NSShiftKeyMask = 1 << 17,
    NSControlKeyMask = 1 << 18,
    NSAlternateKeyMask = 1 << 19,
    NSCommandKeyMask = 1 << 20,
    NSNumericPadKeyMask = 1 << 21,
    NSHelpKeyMask = 1 << 22,
    NSFunctionKeyMask = 1 << 23,
    NSDeviceIndependentModifierFlagsMask = 0xffff0000
};

/// Keys without a character, as UTF-16 units of the private use area.
enum : unichar {
    NSUpArrowFunctionKey = 0xF700,
    NSDownArrowFunctionKey = 0xF701,
    NSLeftArrowFunctionKey = 0xF702,
    NSRightArrowFunctionKey = 0xF703,
    NSF1FunctionKey = 0xF704,
    NSInsertFunctionKey = 0xF727,
    NSDeleteFunctionKey = 0xF728,
    NSHomeFunctionKey = 0xF729,
    NSBeginFunctionKey = 0xF72A,
    NSEndFunctionKey = 0xF72B,
    NSPageUpFunctionKey = 0xF72C,
    NSPageDownFunctionKey = 0xF72D,
    NSMenuFunctionKey = 0xF735,
    NSHelpFunctionKey = 0xF746,
    NSEnterCharacter = 0x03,
    NSBackspaceCharacter = 0x08,
    NSTabCharacter = 0x09,
    NSCarriageReturnCharacter = 0x0D,
    NSBackTabCharacter = 0x19,
    NSEscapeCharacter = 0x1B,
    NSDeleteCharacter = 0x7F
};

/// One event, immutable. Positions are in the window's base coordinates, or the screen's where it has no window.
class LIBVUE_API NSEvent : public NSObject {
public:
    static void describe(ClassDescription<NSEvent>& c);

    /// What an event is made of; the class-level makers below and the application fill it.
    struct Fields {
        NSEventType type = NSApplicationDefined;
        NSPoint location;
        NSUInteger modifierFlags = 0;
        NSTimeInterval timestamp = 0;
        NSInteger windowNumber = 0;
        short subtype = 0;
        NSInteger data1 = 0, data2 = 0;
        NSInteger eventNumber = 0, clickCount = 0, buttonNumber = 0;
        float pressure = 0;
        Ref<NSString> characters, charactersIgnoringModifiers;
        BOOL isARepeat = NO;
        unsigned short keyCode = 0;
        CGFloat deltaX = 0, deltaY = 0;
        BOOL hasPreciseScrollingDeltas = NO;
        NSUInteger phase = 0, momentumPhase = 0;
        BOOL isPreedit = NO; ///< NSTextInput: still being composed
        NSRange selection;   ///< inside the composed text
        Weak<NSTrackingArea> trackingArea;
        NSPoint screenLocation;
    };
    explicit NSEvent(Fields fields);
    ~NSEvent() override;

    // Events made by hand. `location` in the base coordinates of the window of that number, or the screen's for 0; the
    // time in seconds as the application's clock counts them. The context is not looked at.

    [[nodiscard]] static Ref<NSEvent>
    mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
        NSEventType type, NSPoint location, NSUInteger flags, NSTimeInterval time, NSInteger windowNumber,
        NSGraphicsContext* context, NSInteger eventNumber, NSInteger clickCount, float pressure);
    [[nodiscard]] static Ref<NSEvent>
    keyEventWithType_location_modifierFlags_timestamp_windowNumber_context_characters_charactersIgnoringModifiers_isARepeat_keyCode(
        NSEventType type, NSPoint location, NSUInteger flags, NSTimeInterval time, NSInteger windowNumber,
        NSGraphicsContext* context, NSString* characters, NSString* ignoringModifiers, BOOL repeat,
        unsigned short keyCode);
    [[nodiscard]] static Ref<NSEvent>
    otherEventWithType_location_modifierFlags_timestamp_windowNumber_context_subtype_data1_data2(
        NSEventType type, NSPoint location, NSUInteger flags, NSTimeInterval time, NSInteger windowNumber,
        NSGraphicsContext* context, short subtype, NSInteger data1, NSInteger data2);

    [[nodiscard]] NSEventType type() const noexcept { return f_.type; }
    /// Of NSAppKitDefined and of events made by hand; what the two numbers mean is between those that post it.
    [[nodiscard]] short subtype() const noexcept { return f_.subtype; }
    [[nodiscard]] NSInteger data1() const noexcept { return f_.data1; }
    [[nodiscard]] NSInteger data2() const noexcept { return f_.data2; }
    /// Null once the window is gone.
    [[nodiscard]] NSWindow* window() const;
    /// 0 where it has no window.
    [[nodiscard]] NSInteger windowNumber() const noexcept { return f_.windowNumber; }
    [[nodiscard]] NSPoint locationInWindow() const noexcept { return f_.location; }
    /// NSEventModifierFlags.
    [[nodiscard]] NSUInteger modifierFlags() const noexcept { return f_.modifierFlags; }
    /// Seconds, monotonic.
    [[nodiscard]] NSTimeInterval timestamp() const noexcept { return f_.timestamp; }
    [[nodiscard]] NSGraphicsContext* context() const noexcept { return nullptr; }
    /// The same for a press, its drags and its release.
    [[nodiscard]] NSInteger eventNumber() const noexcept { return f_.eventNumber; }
    [[nodiscard]] NSInteger clickCount() const noexcept { return f_.clickCount; }
    /// 0 left, 1 right, 2 and on for the others.
    [[nodiscard]] NSInteger buttonNumber() const noexcept { return f_.buttonNumber; }
    [[nodiscard]] float pressure() const noexcept { return f_.pressure; }
    /// What the key types; null for events that are no keys.
    [[nodiscard]] NSString* characters() const noexcept { return f_.characters; }
    [[nodiscard]] NSString* charactersIgnoringModifiers() const noexcept { return f_.charactersIgnoringModifiers; }
    [[nodiscard]] BOOL isARepeat() const noexcept { return f_.isARepeat; }
    [[nodiscard]] unsigned short keyCode() const noexcept { return f_.keyCode; }
    /// Points, of moves and of the wheel; positive to the right and, for the wheel, towards what is above.
    [[nodiscard]] CGFloat deltaX() const noexcept { return f_.deltaX; }
    [[nodiscard]] CGFloat deltaY() const noexcept { return f_.deltaY; }
    /// Points where the device is precise, else lines turned into points.
    [[nodiscard]] CGFloat scrollingDeltaX() const noexcept { return f_.deltaX; }
    [[nodiscard]] CGFloat scrollingDeltaY() const noexcept { return f_.deltaY; }
    [[nodiscard]] BOOL hasPreciseScrollingDeltas() const noexcept { return f_.hasPreciseScrollingDeltas; }
    /// Of a gesture on a wheel: 0 none, 1 began, 2 changed, 3 ended; momentumPhase is 1 while it runs on by itself.
    [[nodiscard]] NSUInteger phase() const noexcept { return f_.phase; }
    [[nodiscard]] NSUInteger momentumPhase() const noexcept { return f_.momentumPhase; }
    /// The area that was entered or left; null for other events, or once it is gone.
    [[nodiscard]] NSTrackingArea* trackingArea() const noexcept { return f_.trackingArea; }
    [[nodiscard]] const Fields& fields() const noexcept { return f_; }
    [[nodiscard]] BOOL isMouseEvent() const noexcept;
    [[nodiscard]] BOOL isKeyEvent() const noexcept { return f_.type == NSKeyDown || f_.type == NSKeyUp; }

    /// The button that an event of that type is about: 0 left, 1 right, 2 any other; 0 for types without one.
    [[nodiscard]] static NSInteger buttonOfType_(NSEventType type) noexcept;
    /// Points that an event tells for a line of a wheel without fine steps.
    static constexpr CGFloat pointsPerWheelLine_ = 16;

    /// Screen coordinates.
    [[nodiscard]] static NSPoint mouseLocation();
    /// The buttons that are down now, a bit each: 1 left, 2 right, 4 and on the others.
    [[nodiscard]] static NSUInteger pressedMouseButtons();
    /// Seconds.
    [[nodiscard]] static NSTimeInterval doubleClickInterval();
    /// The modifiers now.
    [[nodiscard]] static NSUInteger currentModifierFlags();

    /// `handler` sees each event of the application before its window does. What it returns is delivered instead; an
    /// absent result drops the event. Monitors run in the order in which they were added. The token is kept by the
    /// application until removeMonitor:; a monitor removed during an event does not see it any more.
    static NSObject* addLocalMonitorForEventsMatchingMask_handler(NSEventMask mask,
                                                                  std::function<Ref<NSEvent>(NSEvent*)> handler);
    static void removeMonitor(NSObject* monitor);

private:
    Fields f_;
};

} // namespace libvue
