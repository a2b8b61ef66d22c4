#pragma once

#include <libvue/platform/appkit/NSPopover.h>

namespace libvue {

/// Takes the NSSize under "size" in the notification's user information as the popover's content size, without gliding.
/// Nothing where there is none.
LIBVUE_API void contentWouldChangeSize(NSPopover* popover, NSNotification* notification);

} // namespace libvue
