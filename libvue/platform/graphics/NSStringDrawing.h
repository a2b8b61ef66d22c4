#pragma once

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/Ref.h>
#include <libvue/platform/graphics/NSTextAttributes.h>

namespace libvue {

enum NSStringDrawingOptions : NSUInteger {
    NSStringDrawingUsesLineFragmentOrigin =
        1, ///< wraps, from the top of the rectangle; without it one line on its baseline
    NSStringDrawingUsesFontLeading = 2,
    NSStringDrawingDisableScreenFontSubstitution = 4,
    NSStringDrawingUsesDeviceMetrics = 8,
    NSStringDrawingOneShot = 16,
    NSStringDrawingTruncatesLastVisibleLine = 32
};

// Text in the current context, upright whether it is flipped or not; without a context nothing is drawn. Measuring
// needs none. Layouts are kept, so measuring and then drawing the same label shapes it once. A null text or null
// attributes are empty ones.

/// The natural size: lines break at line ends only. Not rounded.
[[nodiscard]] LIBVUE_API NSSize sizeWithAttributes(const NSString* text, NSDictionary* attributes);
/// `point` is the lower left corner of the text, in a flipped context the upper left one.
LIBVUE_API void drawAtPoint_withAttributes(const NSString* text, NSPoint point, NSDictionary* attributes);
/// Wraps to the width, starts at the top as seen, and cuts what does not fit into the height.
LIBVUE_API void drawInRect_withAttributes(const NSString* text, const NSRect& rect, NSDictionary* attributes);
/// With the line fragment origin the rectangle stands at (0, 0); without it, the baseline of the one line does. A width
/// or height of 0 is unlimited.
[[nodiscard]] LIBVUE_API NSRect boundingRectWithSize_options_attributes(const NSString* text, NSSize size,
                                                                        NSUInteger options, NSDictionary* attributes);
LIBVUE_API void drawWithRect_options_attributes(const NSString* text, const NSRect& rect, NSUInteger options,
                                                NSDictionary* attributes);

[[nodiscard]] LIBVUE_API NSSize size(NSAttributedString* text);
LIBVUE_API void drawAtPoint(NSAttributedString* text, NSPoint point);
LIBVUE_API void drawInRect(NSAttributedString* text, const NSRect& rect);
[[nodiscard]] LIBVUE_API NSRect boundingRectWithSize_options(NSAttributedString* text, NSSize size, NSUInteger options);
LIBVUE_API void drawWithRect_options(NSAttributedString* text, const NSRect& rect, NSUInteger options);

} // namespace libvue
