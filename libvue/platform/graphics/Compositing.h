#pragma once

#include <libvue/platform/backend/Drawing.h>
#include <libvue/platform/graphics/NSCompositingOperation.h>

namespace libvue {

/// The backend's name of the operation; of a number that is none, source over's.
[[nodiscard]] constexpr backend::Compositing compositingOf(NSCompositingOperation op) noexcept {
    return op <= NSCompositePlusLighter ? static_cast<backend::Compositing>(op) : backend::Compositing::sourceOver;
}

} // namespace libvue
