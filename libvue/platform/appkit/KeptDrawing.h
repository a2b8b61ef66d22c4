#pragma once

#include <cstdint>
#include <functional>

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/NSGeometry.h>

namespace libvue {

/// All that a small drawing of the theme depends on, beside the appearance and the scale.
struct KeptLook {
    enum class Kind : std::uint8_t { face, field, focusRing, alertSign };
    Kind kind;
    std::uint32_t state = 0; ///< what else tells apart drawings of the kind
    CGFloat radius = 0;
    friend bool operator==(const KeptLook&, const KeptLook&) = default;
};

/// Draws into a rectangle of the current context's user space what looks the same the next time. Into pixels, the
/// right way up and on whole ones, those of the last drawings are put; `paint` draws into any rectangle of that height,
/// y upward or downward as the current context has it, and nowhere else. Farther than `end` (points) from both sides it
/// draws the same at every place across, so that one picture does for all widths.
LIBVUE_API void drawKept(const KeptLook& look, const NSRect& room, CGFloat end,
                         const std::function<void(const NSRect&)>& paint);

} // namespace libvue
