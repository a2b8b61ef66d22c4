#pragma once

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/graphics/NSCompositingOperation.h>

namespace libvue {

// Rectangles in the current context, with its current fill colour; without a context, nothing. The fills take over what
// is there (copy) unless they name an operation: an alpha below 1 shows through to what lies behind the surface.

/// Composes by copy.
LIBVUE_API void NSRectFill(const NSRect& rect);
LIBVUE_API void NSRectFillUsingOperation(const NSRect& rect, NSCompositingOperation operation);
LIBVUE_API void NSRectFillList(const NSRect* rects, NSInteger count);
LIBVUE_API void NSRectFillListUsingOperation(const NSRect* rects, NSInteger count, NSCompositingOperation operation);
LIBVUE_API void NSRectFillListWithColors(const NSRect* rects, NSColor* const* colors, NSInteger count);
/// Clears to transparent.
LIBVUE_API void NSEraseRect(const NSRect& rect);
/// A frame one point wide inside the rectangle.
LIBVUE_API void NSFrameRect(const NSRect& rect);
LIBVUE_API void NSFrameRectWithWidth(const NSRect& rect, CGFloat width);
LIBVUE_API void NSFrameRectWithWidthUsingOperation(const NSRect& rect, CGFloat width, NSCompositingOperation operation);
LIBVUE_API void NSDottedFrameRect(const NSRect& rect);
LIBVUE_API void NSRectClip(const NSRect& rect);
/// Clips to the union.
LIBVUE_API void NSRectClipList(const NSRect* rects, NSInteger count);
/// A bezel of two shades around a plain background.
LIBVUE_API void NSDrawGrayBezel(const NSRect& rect, const NSRect& clip);
LIBVUE_API void NSDrawWindowBackground(const NSRect& rect);

/// Ends at their own size, the middle stretched between them; vertical runs from top to bottom as seen.
LIBVUE_API void NSDrawThreePartImage(const NSRect& frame, NSImage* start, NSImage* center, NSImage* end, BOOL vertical,
                                     NSCompositingOperation operation, CGFloat alpha, BOOL flipped);
/// Corners at their own size, edges stretched one way, the middle both ways. Any image may be null.
LIBVUE_API void NSDrawNinePartImage(const NSRect& frame, NSImage* topLeft, NSImage* top, NSImage* topRight,
                                    NSImage* left, NSImage* center, NSImage* right, NSImage* bottomLeft,
                                    NSImage* bottom, NSImage* bottomRight, NSCompositingOperation operation,
                                    CGFloat alpha, BOOL flipped);

} // namespace libvue
