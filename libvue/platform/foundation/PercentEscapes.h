#pragma once

#include <string>
#include <string_view>

// Escapes of URLs, for the sources of NSURL and NSString.

namespace libvue::detail {

/// Whether each character may stand in a URL and each percent sign begins an escape.
[[nodiscard]] bool isEscapedProperly(std::string_view s) noexcept;
/// The bytes of a path, with what a path may not hold escaped.
[[nodiscard]] std::string escapedPath(std::string_view path);
/// False where an escape is broken.
[[nodiscard]] bool unescape(std::string_view s, std::string& bytes);

} // namespace libvue::detail
