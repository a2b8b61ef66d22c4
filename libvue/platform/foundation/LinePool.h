#pragma once

#include <cstddef>

#include <libvue/platform/foundation/Export.h>

namespace libvue::detail {

/// Room of whole cache lines for what long passes walk over: blocks of one size stand side by side, and what is given
/// back is used again for that size. Large blocks come from the heap. In a debug build all do, so that what uses one
/// too late is noticed. Main thread.
[[nodiscard]] LIBVUE_API void* takeLines(std::size_t bytes);
/// Gives back what takeLines answered for the same number of bytes.
LIBVUE_API void giveLines(void* p, std::size_t bytes) noexcept;

} // namespace libvue::detail
