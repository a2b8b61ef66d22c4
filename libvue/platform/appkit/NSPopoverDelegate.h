#pragma once

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/foundation/Operation.h>
#include <libvue/platform/foundation/Types.h>

namespace libvue::op {

// Optional operations of a popover's delegate.

/// Asked of the user's attempts to close it; the argument is the popover. YES where it is not answered.
inline constexpr Operation<BOOL(NSObject*)> popoverShouldClose{"popoverShouldClose:"};
/// The window that the popover becomes when it is dragged off its anchor; null keeps it where it is. The argument is
/// the popover.
inline constexpr Operation<NSWindow*(NSObject*)> detachableWindowForPopover{"detachableWindowForPopover:"};
inline constexpr Operation<void(NSNotification*)> popoverWillShow{"popoverWillShow:"};
inline constexpr Operation<void(NSNotification*)> popoverDidShow{"popoverDidShow:"};
inline constexpr Operation<void(NSNotification*)> popoverWillClose{"popoverWillClose:"};
inline constexpr Operation<void(NSNotification*)> popoverDidClose{"popoverDidClose:"};

} // namespace libvue::op
