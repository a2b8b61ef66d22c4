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
    /// The number in an archive, or null.
    [[nodiscard]] static Ref<NSDecimalNumber> initWithCoder(NSCoder& coder);

    [[nodiscard]] static Ref<NSDecimalNumber> zero();
    [[nodiscard]] static Ref<NSDecimalNumber> one();
    [[nodiscard]] static Ref<NSDecimalNumber> notANumber();
    [[nodiscard]] static Ref<NSDecimalNumber> maximumDecimalNumber();
    [[nodiscard]] static Ref<NSDecimalNumber> minimumDecimalNumber();
    [[nodiscard]] static Ref<NSDecimalNumber>
    decimalNumberWithMantissa_exponent_isNegative(NSUInteger mantissa, short exponent, BOOL negative);
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
    /// Multiplied by ten to that power.
    [[nodiscard]] Ref<NSDecimalNumber> decimalNumberByMultiplyingByPowerOf10(short power) const;
    /// `scale` digits behind the point; a negative scale rounds whole tens.
    [[nodiscard]] Ref<NSDecimalNumber> decimalNumberByRounding_scale(NSRoundingMode mode, short scale) const;

    [[nodiscard]] BOOL isNotANumber() const noexcept { return notANumber_; }
    [[nodiscard]] BOOL isNegative() const noexcept { return negative_; }
    [[nodiscard]] short exponent() const noexcept { return exponent_; }

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
    NSDecimalNumber() noexcept : NSNumber(Kind::decimal) {}

    // The mantissa carries no trailing zeros, so that equal values have equal fields.
    std::uint64_t high_ = 0, low_ = 0;
    std::int16_t exponent_ = 0;
    bool negative_ = false;
    bool notANumber_ = false;
};

} // namespace libvue
