#pragma once

#include <cstdint>
#include <string_view>

#include <libvue/platform/foundation/NSDecimalNumber.h>
#include <libvue/platform/foundation/StringBuilder.h>

namespace libvue {

__extension__ typedef unsigned __int128 UInt128;

/// The arithmetic under NSDecimalNumber: mantissa × 10^exponent with at most 38 digits and no trailing zeros. Zero is
/// all fields zero. Each operation rounds once, and says through `error` what that cost.
struct Decimal {
    static constexpr int mostDigits = 38;
    static constexpr int leastExponent = -128, mostExponent = 127;

    UInt128 mantissa = 0;
    int exponent = 0;
    bool negative = false;
    bool notANumber = false;

    static Decimal nan() noexcept { return {0, 0, false, true}; }
    static Decimal of(std::uint64_t magnitude, bool negative = false) noexcept;
    static Decimal of(const NSDecimalNumber& n) noexcept;
    /// Not a number where the text does not begin with a number.
    static Decimal parse(std::string_view ascii) noexcept;
    static Decimal ofDouble(double v) noexcept;
    Ref<NSDecimalNumber> object() const;
    /// A number in one word, or null where it takes more than that. The mantissa may have trailing zeros.
    static NSDecimalNumber* inOneWord(std::uint64_t mantissa, int exponent, bool negative);

    /// Holds any mantissa and exponent to what the format can take.
    static Decimal held(UInt128 mantissa, long exponent, bool negative, NSCalculationError& error) noexcept;
    static Decimal add(const Decimal& a, const Decimal& b, NSCalculationError& error) noexcept;
    static Decimal multiply(const Decimal& a, const Decimal& b, NSCalculationError& error) noexcept;
    static Decimal divide(const Decimal& a, const Decimal& b, NSCalculationError& error) noexcept;
    Decimal rounded(NSRoundingMode mode, int scale) const noexcept;
    Decimal negated() const noexcept;
    /// Neither may be not a number.
    static int compare(const Decimal& a, const Decimal& b) noexcept;

    [[nodiscard]] double toDouble() const noexcept;
    /// Cut towards zero; what is larger than 64 bits is the largest value.
    [[nodiscard]] std::uint64_t integerMagnitude() const noexcept;
    /// The room that write() needs; no number fills it.
    static constexpr std::size_t mostUnits = 192;
    /// Writes plain digits without an exponent, "NaN" for not a number, and answers where they end. Units are char,
    /// std::uint8_t or unichar.
    template <class Unit> Unit* write(Unit* to) const noexcept;
    template <class Unit> static Unit* write(const NSDecimalNumber& n, Unit* to) noexcept;
    /// The same with short whole numbers written on the spot, for whoever writes many.
    template <class Unit> static Unit* writeQuickly(const NSDecimalNumber& n, Unit* to) noexcept;
    void appendTo(StringBuilder& b) const;
};

} // namespace libvue
