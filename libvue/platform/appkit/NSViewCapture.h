#pragma once

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/Export.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/Ref.h>
#include <libvue/platform/graphics/Forward.h>

namespace libvue {

// Views drawn into pixels of one's own. Rectangles are in the view's bounds; see dataWithPDFInsideRect for pages.

/// Transparent pixels for that part of the view, as many a point as its window has (the main screen's without a
/// window). Null where the rectangle is empty or too large, or the view is null.
[[nodiscard]] LIBVUE_API Ref<NSBitmapImageRep> bitmapImageRepForCachingDisplayInRect(NSView* view, const NSRect& rect);
/// Draws that part of the view and of what is below it over the whole of the pixels. Anything null does nothing.
LIBVUE_API void cacheDisplayInRect_toBitmapImageRep(NSView* view, const NSRect& rect, NSBitmapImageRep* rep);

} // namespace libvue
