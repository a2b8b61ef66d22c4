#pragma once

#include <libvue/images/Forward.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/Ref.h>

namespace libvue {

/// A rectangle with corners of that radius on both axes.
[[nodiscard]] LIBVUE_API Ref<NSBezierPath> bezierPathWithRoundedRect_radius(const NSRect& rect, CGFloat radius);

/// The same outline from four arcs, whose centres are held in single precision: for a platform that has no rounded
/// rectangle of its own. The radius is not held to the rectangle.
[[nodiscard]] LIBVUE_API Ref<NSBezierPath> rectangleArrondiParArcs(const NSRect& rect, CGFloat radius);

} // namespace libvue
