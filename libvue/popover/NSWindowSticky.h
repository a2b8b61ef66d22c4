#pragma once

#include <libvue/platform/foundation/Export.h>
#include <libvue/platform/foundation/Types.h>
#include <libvue/popover/Forward.h>

namespace libvue {

/// Has the window stay where it is on the screen whichever desktop is shown, or belong to one desktop again. Nothing
/// where the window server does not know the window (null among them).
LIBVUE_API void setSticky(NSWindow* window, BOOL flag);

} // namespace libvue
