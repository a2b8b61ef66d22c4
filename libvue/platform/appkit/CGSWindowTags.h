#pragma once

#include <array>
#include <cstdint>

#include <libvue/platform/foundation/Export.h>
#include <libvue/platform/foundation/Types.h>

namespace libvue {

// What the window server keeps about a window, as bits.

using CGSConnectionID = int;
/// The tags of a window: two words, of which the lowest bits count.
using CGSWindowTags = std::array<std::uint64_t, 2>;
/// 0, or why it was not done.
using CGError = int;
inline constexpr CGError kCGErrorSuccess = 0, kCGErrorIllegalArgument = 1001, kCGErrorInvalidConnection = 1002;

/// Shown on every desktop. The one tag that this window server keeps.
inline constexpr std::uint64_t kCGSTagSticky = 0x800;

/// The application's connection with the window server; never 0.
// NOLINTNEXTLINE(bugprone-reserved-identifier): its name since ever.
[[nodiscard]] LIBVUE_API CGSConnectionID _CGSDefaultConnection() noexcept;

/// Reads the lowest `bits` (1 to 128) into the two words at `tags`, and leaves the others. An error for another
/// connection, a window that there is not, a null buffer or another width; then nothing is written.
LIBVUE_API CGError CGSGetWindowTags(CGSConnectionID connection, NSInteger windowNumber, std::uint64_t* tags, int bits);
/// Sets the lowest `bits` to those of `tags`; tags that are not kept are ignored. Errors as above.
LIBVUE_API CGError CGSSetWindowTags(CGSConnectionID connection, NSInteger windowNumber, const std::uint64_t* tags,
                                    int bits);

} // namespace libvue
