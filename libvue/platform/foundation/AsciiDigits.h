#pragma once

namespace libvue::detail {

/// 0 to 9 of ASCII, whatever the locale and whatever other digits there are.
template <class Unit> constexpr bool isDigit(Unit c) noexcept { return c >= '0' && c <= '9'; }

/// The value of a hexadecimal digit of ASCII, or -1.
template <class Unit> constexpr int hexDigit(Unit c) noexcept {
    if (isDigit(c)) return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

} // namespace libvue::detail
