#pragma once

#include <libvue/platform/foundation/NSNumber.h>

namespace libvue {

/// How the last digit kept is chosen.
enum NSRoundingMode : NSUInteger { NSRoundPlain = 0, NSRoundDown = 1, NSRoundUp = 2, NSRoundBankers = 3 };

/// What an operation on decimal numbers came to.
enum NSCalculationError : NSUInteger {
    NSCalculationNoError = 0,
    NSCalculationLossOfPrecision = 1,
    NSCalculationUnderflow = 2,
    NSCalculationOverflow = 3,
    NSCalculationDivideByZero = 4
};

/// A decimal number: up to 38 significant digits, exponent from -128 to 127, sign; or not a number. Immutable.
class LIBVUE_API NSDecimalNumber : public NSNumber {
public:
    static void describe(ClassDescription<NSDecimalNumber, NSNumber>& c);
    static void* operator new(std::size_t) = delete; ///< made by its own functions alone
    /// The number in an archive, or null.
    [[nodiscard]] static Ref<NSDecimalNumber> initWithCoder(NSCoder& coder);

    [[nodiscard]] static Ref<NSDecimalNumber> zero();
    [[nodiscard]] static Ref<NSDecimalNumber> one();
    [[nodiscard]] static Ref<NSDecimalNumber> notANumber();
    /// Sign, digits, point, digits, exponent; digits beyond the 38th are rounded. Not a number where the text does not
    /// begin with one, or where it is too large; what is too small is zero.
    [[nodiscard]] static Ref<NSDecimalNumber> decimalNumberWithString(const NSString* s);
    [[nodiscard]] static Ref<NSDecimalNumber> decimalNumberWithText(std::string_view ascii);
    /// The shortest decimal that reads back as `v`.
    [[nodiscard]] static Ref<NSDecimalNumber> decimalNumberWithDouble(double v);

    // Results are rounded plainly to 38 digits. Overflow, underflow and division by zero raise
    // NSDecimalNumberOverflowException, …UnderflowException and …DivideByZeroException; not a number stays so.

    [[nodiscard]] Ref<NSDecimalNumber> decimalNumberByAdding(const NSDecimalNumber* n) const;
    [[nodiscard]] Ref<NSDecimalNumber> decimalNumberBySubtracting(const NSDecimalNumber* n) const;
    [[nodiscard]] Ref<NSDecimalNumber> decimalNumberByMultiplyingBy(const NSDecimalNumber* n) const;
    [[nodiscard]] Ref<NSDecimalNumber> decimalNumberByDividingBy(const NSDecimalNumber* n) const;
    /// `scale` digits behind the point; a negative scale rounds whole tens.
    [[nodiscard]] Ref<NSDecimalNumber> decimalNumberByRounding_scale(NSRoundingMode mode, short scale) const;

    [[nodiscard]] BOOL isNotANumber() const noexcept { return (tag() & tagNotANumber) != 0; }
    [[nodiscard]] BOOL isNegative() const noexcept { return (tag() & tagNegative) != 0; }
    [[nodiscard]] short exponent() const noexcept {
        return static_cast<short>(isLong() ? integer_ : integer_ << (64 - exponentBits) >> (64 - exponentBits));
    }

    [[nodiscard]] BOOL boolValue() const noexcept override;
    [[nodiscard]] NSInteger integerValue() const noexcept override;
    [[nodiscard]] NSUInteger unsignedIntegerValue() const noexcept override;
    /// Correctly rounded.
    [[nodiscard]] double doubleValue() const noexcept override;
    /// Plain digits without an exponent, "NaN" for not a number.
    [[nodiscard]] Ref<NSString> stringValue() const override;
    [[nodiscard]] const char* objCType() const noexcept override { return "d"; }

private:
    friend class NSNumber;
    friend struct Decimal;
    explicit NSDecimalNumber(std::uint8_t bits, NSInteger v) noexcept : NSNumber(Kind::decimal) {
        setTag_(static_cast<std::uint8_t>(tag() | bits));
        integer_ = v;
    }
    ~NSDecimalNumber() override;
    static void* operator new(std::size_t, void* room) noexcept { return room; }
    static void operator delete(void* object) noexcept;

    // The mantissa carries no trailing zeros, so that equal values have equal fields. Mantissa and exponent share a
    // word where they fit; else the word holds the exponent, and the mantissa stands behind the object.
    static constexpr std::uint8_t tagNegative = 0x20, tagLong = 0x40, tagNotANumber = 0x80;
    static constexpr int exponentBits = 6, mantissaBits = 64 - exponentBits;
    struct Mantissa {
        std::uint64_t high, low;
    };
    [[nodiscard]] bool isLong() const noexcept { return (tag() & tagLong) != 0; }
    [[nodiscard]] Mantissa mantissa() const noexcept {
        if (isLong()) return *reinterpret_cast<const Mantissa*>(this + 1);
        return {0, static_cast<std::uint64_t>(integer_) >> exponentBits};
    }
};

} // namespace libvue
