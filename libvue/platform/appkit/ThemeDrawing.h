#pragma once

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/graphics/NSFont.h>

namespace libvue {

// The one drawn theme: what the controls look like, in both appearances, crisp at every scale. Frames are in the user
// space of the current context; nothing is drawn without one.

/// What a control's face says.
struct FaceState {
    bool enabled = true;
    bool pressed = false;
    bool on = false;        ///< chosen, checked or switched on
    bool mixed = false;     ///< between on and off
    bool isDefault = false; ///< what Return presses
    bool active = true;     ///< its window is key
    bool hovered = false;
};

/// The face state of a cell in a view.
[[nodiscard]] LIBVUE_API FaceState faceStateOf(const NSCell* cell, NSView* view);

/// The rectangle moved to the nearest device pixels of the current context.
[[nodiscard]] LIBVUE_API NSRect alignedToPixels(const NSRect& r);
/// The width of a fine line: whole device pixels, about a point.
[[nodiscard]] LIBVUE_API CGFloat fineLine();

/// Fills the current clip's part of a rounded rectangle with a gradient that runs down as seen.
LIBVUE_API void fillRoundedVertical(const NSRect& r, CGFloat radius, NSColor* top, NSColor* bottom);
/// A fine line just inside the rounded rectangle.
LIBVUE_API void strokeRoundedInside(const NSRect& r, CGFloat radius, NSColor* color);

LIBVUE_API void drawPushButtonBezel(const NSRect& frame, const FaceState& state, CGFloat radius);
/// The flat one of toolbars: shows itself when pressed, on or hovered.
LIBVUE_API void drawRecessedBezel(const NSRect& frame, const FaceState& state);
LIBVUE_API void drawTextFieldBezel(const NSRect& frame, BOOL enabled);
LIBVUE_API void drawCheckBox(const NSRect& box, const FaceState& state);
LIBVUE_API void drawRadioButton(const NSRect& box, const FaceState& state);
/// `filled` is the part before the knob.
LIBVUE_API void drawSliderTrack(const NSRect& track, const NSRect& filled, const FaceState& state);
LIBVUE_API void drawSliderKnob(const NSRect& knob, const FaceState& state);
LIBVUE_API void drawScrollerKnob(const NSRect& knob, BOOL hovered);
/// What the knob moves in; fainter, and without an edge, over a document.
LIBVUE_API void drawScrollerSlot(const NSRect& slot, BOOL vertical, BOOL overDocument);
LIBVUE_API void drawGroupBox(const NSRect& frame);
LIBVUE_API void drawSeparator(const NSRect& frame);
LIBVUE_API void drawMenuBackground(const NSRect& frame);

enum class Chevron { up, down, right, upDown };
LIBVUE_API void drawChevron(const NSRect& room, Chevron which, NSColor* color);
LIBVUE_API void drawCheckmark(const NSRect& room, NSColor* color);

namespace theme {
/// Of a button, a pop-up or a text field of one line.
[[nodiscard]] constexpr CGFloat controlHeight(NSControlSize size) noexcept {
    return size == NSMiniControlSize ? 16 : size == NSSmallControlSize ? 20 : 24;
}
inline constexpr CGFloat kRadius = 6;
inline constexpr CGFloat kCheckBoxSide = 15;
inline constexpr CGFloat kSliderKnob = 16, kSliderTrack = 4;
inline constexpr CGFloat kScrollerWidth = 12;
inline constexpr CGFloat kMenuItemHeight = 22, kMenuMargin = 5, kMenuRadius = 8;
} // namespace theme

} // namespace libvue
