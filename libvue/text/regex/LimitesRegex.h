#pragma once

namespace libvue::detail {

/// Whether the C library can compile and match the extended pattern with the stack, the memory and the time that there
/// are. It copies what a repetition stands behind: `a{2}{3}` is six of them, and each + of `a+++` doubles what stands
/// before it. The limits are far above what anyone writes.
[[nodiscard]] bool estRaisonnable(const char* motif);

} // namespace libvue::detail
