#pragma once

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/Export.h>
#include <libvue/platform/foundation/Types.h>

namespace libvue {

/// Whether a view that gives a transparent window its shape should draw the window's shadow, too: the window has one,
/// and something blends it with what lies below. NO for null.
[[nodiscard]] LIBVUE_API BOOL drawsShadowOf(const NSWindow* window);

} // namespace libvue
