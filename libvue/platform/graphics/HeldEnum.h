#pragma once

#include <libvue/platform/foundation/Types.h>

namespace libvue {

/// The enumerator of that number, for numbers that come from archives; `otherwise` where it lies outside of the two.
template <class E> [[nodiscard]] constexpr E heldEnum(NSInteger v, E lowest, E highest, E otherwise) noexcept {
    return v < static_cast<NSInteger>(lowest) || v > static_cast<NSInteger>(highest) ? otherwise : static_cast<E>(v);
}

} // namespace libvue
