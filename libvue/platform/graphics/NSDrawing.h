#pragma once

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/graphics/NSCompositingOperation.h>

namespace libvue {

// Rectangles in the current context, with its current fill colour; without a context, nothing. The fills take over what
// is there (copy) unless they name an operation: an alpha below 1 shows through to what lies behind the surface.

/// Composes by copy.
LIBVUE_API void NSRectFill(const NSRect& rect);
LIBVUE_API void NSRectFillUsingOperation(const NSRect& rect, NSCompositingOperation operation);
/// Clears to transparent.
LIBVUE_API void NSEraseRect(const NSRect& rect);
/// A frame one point wide inside the rectangle.
LIBVUE_API void NSFrameRect(const NSRect& rect);
LIBVUE_API void NSFrameRectWithWidth(const NSRect& rect, CGFloat width);
LIBVUE_API void NSFrameRectWithWidthUsingOperation(const NSRect& rect, CGFloat width, NSCompositingOperation operation);
LIBVUE_API void NSRectClip(const NSRect& rect);

} // namespace libvue
