#pragma once

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// What a key that nobody else wanted does to a scroll view.
enum class ScrollStep : std::uint8_t { none, lineUp, lineDown, lineLeft, lineRight, pageUp, pageDown, beginning, end };

[[nodiscard]] ScrollStep scrollStepForCommand(SEL command);
/// Space pages down, with Shift up.
[[nodiscard]] ScrollStep scrollStepForEvent(const NSEvent& e);

/// The scroll view that such a key scrolls where no view of the window has the focus: the one at the point (base
/// coordinates) that can, else the largest one that can; null for none.
[[nodiscard]] NSScrollView* scrollViewForKeys(NSView* root, NSPoint at, ScrollStep step);

} // namespace libvue
