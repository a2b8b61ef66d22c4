#pragma once

#include <libvue/platform/foundation/Export.h>
#include <libvue/platform/foundation/Types.h>
#include <libvue/popover/Forward.h>

namespace libvue {

// What the toolkit adds to every window.

/// Appends the child windows, depth first: each child, then its own descendants, before the next child. Without the
/// window itself.
LIBVUE_API void getAllWindowDescendants(NSWindow* window, NSMutableArray* descendants);

/// Whether a key event is kept from the window, having been sent elsewhere: command arrows to a window delegate that
/// answers cmdNaviguer:, arrows in web content to its policy delegate.
[[nodiscard]] LIBVUE_API BOOL devraitBloquerEvenement(NSWindow* window, NSEvent* e);

/// Whether a single click on web content is to be followed by a copy with a click count of 2: not on links, images,
/// bare divisions and the like, nor while something is selected. The press and the release of a click are each judged
/// by the state at their own moment.
[[nodiscard]] LIBVUE_API BOOL devraitDoublerEvenement(NSWindow* window, NSEvent* e);

} // namespace libvue
