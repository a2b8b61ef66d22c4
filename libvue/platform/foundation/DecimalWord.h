#pragma once

#include <bit>
#include <limits>

#include <libvue/platform/foundation/Decimal.h>
#include <libvue/platform/foundation/DecimalText.h>
#include <libvue/platform/foundation/SmallBlocks.h>

// Decimal numbers in one word, for the sources that make many of them.

namespace libvue {

namespace detail {

/// Whether ten divides `v`, and how often. The product with the inverse of five is small where five divides.
inline bool divisibleByTen(std::uint64_t v, std::uint64_t& tenth) noexcept {
    tenth = std::rotr(v * 0xCCCCCCCCCCCCCCCDu, 1);
    return tenth <= std::numeric_limits<std::uint64_t>::max() / 10;
}

} // namespace detail

inline NSDecimalNumber* Decimal::inOneWord(std::uint64_t mantissa, int exponent, bool negative) {
    constexpr int most = 1 << (NSDecimalNumber::exponentBits - 1);
    if (mantissa == 0) {
        exponent = 0;
        negative = false;
    } else
        for (std::uint64_t tenth; detail::divisibleByTen(mantissa, tenth); ++exponent)
            mantissa = tenth;
    if (mantissa >> NSDecimalNumber::mantissaBits || exponent < -most || exponent >= most) return nullptr;
    const std::uint64_t word = mantissa << NSDecimalNumber::exponentBits |
                               (static_cast<std::uint64_t>(exponent) & ((1u << NSDecimalNumber::exponentBits) - 1));
    return new (detail::SmallBlocks::takeFast(sizeof(NSDecimalNumber)))
        NSDecimalNumber(negative ? NSDecimalNumber::tagNegative : 0, static_cast<NSInteger>(word));
}

template <class Unit>
[[gnu::always_inline]] inline Unit* Decimal::writeQuickly(const NSDecimalNumber& n, Unit* to) noexcept {
    constexpr std::uint8_t special =
        NSDecimalNumber::tagNegative | NSDecimalNumber::tagLong | NSDecimalNumber::tagNotANumber;
    const auto word = static_cast<std::uint64_t>(n.integer_);
    const std::uint64_t exponent = word & ((1u << NSDecimalNumber::exponentBits) - 1);
    const std::uint64_t mantissa = word >> NSDecimalNumber::exponentBits;
    // Both fit, so that their product has no more than 16 digits; a negative exponent counts as a large one here.
    if ((n.tag() & special) != 0 || exponent > 6 || mantissa >= 10000000000) return write(n, to);
    return detail::putWhole(mantissa * detail::powersOfTen.of[exponent], to);
}

} // namespace libvue
