#pragma once

#include <libvue/images/Forward.h>
#include <libvue/platform/graphics/CGContext.h>
#include <libvue/platform/graphics/NSBezierPath.h>

namespace libvue {

// Fills of a path with two colours along an axis through the middle of its bounds. An angle is in radians,
// counter-clockwise from the positive x axis where y is upward; the axis is held to the half size of the bounds, x and
// y apart, so that it ends at the edges at 0 and at pi × 0.5. Beyond its ends nothing is painted.
//
// They draw into the current context and leave its state as it was; without a context, nothing. A colour that has no
// RGB components raises NSInternalInconsistencyException, a null one NSInvalidArgumentException.

/// Upward: the axis is at pi × 0.5.
LIBVUE_API void linearGradientFillWithStartColor_endColor(NSBezierPath* path, NSColor* start, NSColor* end);
LIBVUE_API void linearGradientFillWithStartColor_endColor_angle(NSBezierPath* path, NSColor* start, NSColor* end,
                                                                CGFloat angle);
/// `outer` lies in the middle of the axis and `inner` at its two ends.
LIBVUE_API void bilinearGradientFillWithOuterColor_innerColor(NSBezierPath* path, NSColor* outer, NSColor* inner);
LIBVUE_API void bilinearGradientFillWithOuterColor_innerColor_angle(NSBezierPath* path, NSColor* outer, NSColor* inner,
                                                                    CGFloat angle);

/// What a fill's function is given as `info`: device RGB with alpha.
struct CouleursDegrade {
    CGFloat premiere[4];
    CGFloat seconde[4];
    CGFloat difference[4]; ///< the second minus the first
};
/// `callbacks.evaluate` gets a CouleursDegrade, t between 0 and 1, and room for red, green, blue and alpha.
LIBVUE_API void customVerticalFillWithCallbacks_firstColor_secondColor_angle(NSBezierPath* path,
                                                                             CGFunctionCallbacks callbacks,
                                                                             NSColor* first, NSColor* second,
                                                                             CGFloat angle);

} // namespace libvue
