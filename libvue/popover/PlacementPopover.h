#pragma once

#include <libvue/platform/foundation/Export.h>
#include <libvue/platform/foundation/NSGeometry.h>

namespace libvue {

// Where a balloon goes. Pure functions: screen coordinates, y upward, no window, no allocation.

/// Points round the content: the balloon is the content and twice these; the first is also the content's origin in it.
inline constexpr NSSize kMargesBulle{11, 15};
/// The same once it is a window of its own.
inline constexpr NSSize kMargesDetachay{0, 5};

/// What a balloon hangs on, and the room that there is for it.
struct AncragePopover {
    NSRect ancre;        ///< the anchor
    NSRect cadreVisible; ///< the part of its screen that windows may use
};

struct PlacementPopover {
    NSRect rect;
    NSUInteger edge = 0;
};

/// The frame of a balloon of that size on that edge (an NSRectEdge; another value leaves it at the anchor's origin):
/// centred on the anchor's side, shrunk to the room that there is beyond that side, slid along the anchor until it is
/// on the screen. An anchor past the edge of the screen leaves less than no room, and a size below zero.
[[nodiscard]] LIBVUE_API NSRect rectPopover(const AncragePopover& a, NSUInteger edge, NSSize taille) noexcept;

/// The preferred edge where it gives `taille` in full; otherwise the best of all, by area, the preferred one with its
/// shrunk frame among them. `masque` (bits 1 << edge) says which of the other three count. These are weighed with
/// `tailleActuelle`, the size that the content has now.
[[nodiscard]] LIBVUE_API PlacementPopover placementOptimal(const AncragePopover& a, NSUInteger edgePrefere,
                                                           NSUInteger masque, NSSize taille,
                                                           NSSize tailleActuelle) noexcept;

} // namespace libvue
