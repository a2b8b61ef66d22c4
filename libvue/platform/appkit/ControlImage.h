#pragma once

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/NSGeometry.h>

namespace libvue {

/// Draws the image of a control upright into that rectangle of the current context, at that strength. A template is
/// drawn in `tint` instead, which says by itself whether the control can be used.
void drawControlImage(NSImage& image, const NSRect& rect, CGFloat fraction, NSColor* tint);

} // namespace libvue
