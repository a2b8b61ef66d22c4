#pragma once

#include <algorithm>

#include <libvue/platform/foundation/NSGeometry.h>

namespace libvue {

/// Where the knob of a scroller stands in its slot, in points along it.
struct KnobGeometry {
    CGFloat slot = 0;       ///< the slot's length
    CGFloat proportion = 1; ///< of the document that shows

    /// A knob stays large enough to be caught, however long the document.
    static constexpr CGFloat shortest = 24;

    [[nodiscard]] constexpr CGFloat length() const noexcept {
        return std::min(slot, std::max(shortest, slot * proportion));
    }
    /// What the knob can move.
    [[nodiscard]] constexpr CGFloat way() const noexcept { return slot - length(); }
    [[nodiscard]] constexpr CGFloat startAt(CGFloat position) const noexcept { return way() * position; }
    /// 0 to 1; 0 where the knob cannot move.
    [[nodiscard]] constexpr CGFloat positionAt(CGFloat start) const noexcept {
        return way() > 0 && start > 0 ? std::min(start / way(), 1.0) : 0.0;
    }
};

} // namespace libvue
