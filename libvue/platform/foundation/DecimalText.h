#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

// Decimal digits put straight into units of eight or sixteen bits, eight of them at a time. Functions that put digits
// may change up to eight units behind those that they count.

namespace libvue::detail {

__extension__ typedef unsigned __int128 UInt128;

/// The powers of ten that 64 bits hold.
struct PowersOfTen {
    std::uint64_t of[20];
    constexpr PowersOfTen() : of{} {
        std::uint64_t p = 1;
        for (std::uint64_t& power : of) {
            power = p;
            p *= 10;
        }
    }
};
inline constexpr PowersOfTen powersOfTen;

/// Multipliers that stand for a division by a power of ten, for numbers below 2^63.
struct TenthsOf {
    std::uint64_t multiplier[20];
    int shift[20];
    constexpr TenthsOf() : multiplier{}, shift{} {
        for (int i = 1; i < 20; ++i) {
            shift[i] = 63 - std::countl_zero(powersOfTen.of[i]);
            // Rounded up: what it is too large by stays below one in the quotient of any number below 2^63.
            multiplier[i] =
                static_cast<std::uint64_t>((static_cast<UInt128>(1) << (64 + shift[i])) / powersOfTen.of[i]) + 1;
        }
    }
    /// `v` cut after `places` digits from the right, from 1 to 19.
    [[nodiscard]] constexpr std::uint64_t quotient(std::uint64_t v, int places) const noexcept {
        return static_cast<std::uint64_t>(static_cast<UInt128>(v) * multiplier[places] >> 64) >> shift[places];
    }
};
inline constexpr TenthsOf tenthsOf;

/// One for zero.
inline int digitCount(std::uint64_t v) noexcept {
    // 1233 / 4096 is the logarithm of two, near enough for 64 bits.
    const int guess = (64 - std::countl_zero(v | 1)) * 1233 >> 12;
    return guess + (guess == 0 || v >= powersOfTen.of[guess]);
}

/// Eight digits side by side, the first in the lowest byte: halved by 10000, by 100, by 10.
inline std::uint64_t eightDigits(std::uint32_t v) noexcept {
    const std::uint64_t fours = v / 10000 | static_cast<std::uint64_t>(v % 10000) << 32;
    const std::uint64_t hundreds = (fours * 10486 >> 20) & 0x0000007F0000007F;
    const std::uint64_t twos = hundreds | (fours - hundreds * 100) << 16;
    const std::uint64_t tens = (twos * 103 >> 10) & 0x000F000F000F000F;
    return (tens | (twos - tens * 10) << 8) + 0x3030303030303030;
}

template <class Unit> inline void storeDigits(std::uint64_t digits, Unit* to) noexcept {
    if constexpr (std::endian::native == std::endian::big) {
        for (int i = 0; i < 8; ++i)
            to[i] = static_cast<Unit>(digits >> (8 * i) & 0xFF);
    } else if constexpr (sizeof(Unit) == 1)
        std::memcpy(to, &digits, 8);
    else {
        const auto apart = [](std::uint64_t four) {
            four = (four | four << 16) & 0x0000FFFF0000FFFF;
            return (four | four << 8) & 0x00FF00FF00FF00FF;
        };
        const std::uint64_t halves[] = {apart(digits & 0xFFFFFFFF), apart(digits >> 32)};
        std::memcpy(to, halves, sizeof halves);
    }
}

/// A number below 10^8 without zeros in front. Answers where its digits end.
template <class Unit> inline Unit* putShort(std::uint32_t v, Unit* to) noexcept {
    const std::uint64_t digits = eightDigits(v);
    // The last digit stays whatever it is.
    const int zeros = std::countr_zero((digits ^ 0x3030303030303030) | std::uint64_t(1) << 56) / 8;
    storeDigits(digits >> (8 * zeros), to);
    return to + (8 - zeros);
}

/// The same for a number below 10^16.
template <class Unit> inline Unit* putWhole(std::uint64_t v, Unit* to) noexcept {
    constexpr std::uint64_t eight = 100000000;
    if (v < eight) return putShort(static_cast<std::uint32_t>(v), to);
    const std::uint64_t high = v / eight;
    if (high < 10)
        *to++ = static_cast<Unit>('0' + high);
    else
        to = putShort(static_cast<std::uint32_t>(high), to);
    storeDigits(eightDigits(static_cast<std::uint32_t>(v - high * eight)), to);
    return to + 8;
}

/// The last `count` digits of `v`, with zeros in front where it has fewer; from 1 to 20.
template <class Unit> inline void putDigits(std::uint64_t v, int count, Unit* to) noexcept {
    constexpr std::uint64_t eight = 100000000;
    if (count <= 8) return storeDigits(eightDigits(static_cast<std::uint32_t>(v)) >> (8 * (8 - count)), to);
    std::uint64_t high = v / eight;
    const auto low = static_cast<std::uint32_t>(v - high * eight);
    if (count > 16) {
        const std::uint64_t highest = high / eight;
        storeDigits(eightDigits(static_cast<std::uint32_t>(highest)) >> (8 * (24 - count)), to);
        storeDigits(eightDigits(static_cast<std::uint32_t>(high - highest * eight)), to + count - 16);
    } else
        storeDigits(eightDigits(static_cast<std::uint32_t>(high)) >> (8 * (16 - count)), to);
    storeDigits(eightDigits(low), to + count - 8);
}

/// mantissa × 10^exponent as plain digits, for a mantissa below 2^63. Answers where they end.
template <class Unit> inline Unit* putDecimal(std::uint64_t mantissa, int exponent, Unit* to) noexcept {
    const int count = digitCount(mantissa);
    if (exponent >= 0) {
        putDigits(mantissa, count, to);
        to += count;
        for (; exponent; --exponent)
            *to++ = '0';
        return to;
    }
    const int whole = count + exponent; // digits before the point
    if (whole > 0) {
        const std::uint64_t cut = tenthsOf.quotient(mantissa, -exponent);
        putDigits(cut, whole, to);
        to[whole] = '.';
        putDigits(mantissa - cut * powersOfTen.of[-exponent], -exponent, to + whole + 1);
        return to + count + 1;
    }
    *to++ = '0';
    *to++ = '.';
    for (int i = whole; i; ++i)
        *to++ = '0';
    putDigits(mantissa, count, to);
    return to + count;
}

/// The digits of a mantissa of any size below 10^39, without leading zeros; "0" for zero. Answers how many.
inline int putMantissa(UInt128 m, char (&text)[48]) noexcept {
    const std::uint64_t tenTo19 = powersOfTen.of[19];
    if (!(m >> 64)) {
        const int count = digitCount(static_cast<std::uint64_t>(m));
        putDigits(static_cast<std::uint64_t>(m), count, text);
        return count;
    }
    auto high = static_cast<std::uint64_t>(m / tenTo19);
    const int count = digitCount(high);
    putDigits(high, count, text);
    putDigits(static_cast<std::uint64_t>(m % tenTo19), 19, text + count);
    return count + 19;
}

} // namespace libvue::detail
