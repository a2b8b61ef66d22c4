#pragma once

#include <libvue/platform/appkit/CoordinateMap.h>
#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/graphics/Forward.h>

namespace libvue {

/// From a view's own coordinates to those that its frame is in.
[[nodiscard]] CoordinateMap mapToSuperview(const NSView* view);
/// To the coordinates that the frame of the topmost view is in; of a view in a window, its base coordinates. Null maps
/// nothing.
[[nodiscard]] CoordinateMap mapToBase(const NSView* view);
/// Moves that part of the view, as displayRectIgnoringOpacity_inContext draws it, to the origin of a page or picture
/// whose y runs upward.
void bringToOrigin(backend::Canvas& canvas, const NSView* view, const NSRect& part);

} // namespace libvue
