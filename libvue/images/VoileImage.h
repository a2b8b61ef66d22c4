#pragma once

#include <libvue/images/Forward.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/Ref.h>

namespace libvue {

// The veil that leaves one region of a picture clear, and the hole that opens in it. Sizes and rectangles are in points
// of the picture; a hole's y runs downward from the top edge.

/// The region of interest, given in fractions of the size.
[[nodiscard]] NSRect regionDInteret(const NSRect& fractions, NSSize taille);
/// The region with a margin round it, but inside of the picture.
[[nodiscard]] NSRect regionElargie(const NSRect& region, NSSize taille);

/// A veil of that size with rounded corners.
[[nodiscard]] Ref<NSImage> voileNoir(NSSize taille, CGFloat rayon);
/// The part of the veil (a rectangle with y upward) with a soft hole of that strength. `voile` may be null.
[[nodiscard]] Ref<NSImage> voilePerce(NSImage* voile, NSSize taille, const NSRect& partie, const NSRect& trou,
                                      CGFloat force);
/// All that a hole changes of its veil: whole points, y upward, inside of the picture.
[[nodiscard]] NSRect porteeDuTrou(const NSRect& trou, NSSize taille);
/// Draws the veil over the picture's ink, its lower left corner at the point.
void poseVoile(NSImage* image, NSImage* voile, NSPoint coin);

} // namespace libvue
