#pragma once

#include <string>
#include <string_view>

namespace libvue::detail {

/// The pattern with the ranges of its bracket expressions that reach beyond ASCII written out, character by character
/// in the order of the code points. Well-formed UTF-8 in and out. Ranges that are turned round stay as they are, and
/// so do all of them where they would make too many characters.
[[nodiscard]] std::string plagesDeveloppees(std::string_view motif);

} // namespace libvue::detail
