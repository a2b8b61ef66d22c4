#include <libvue/platform/foundation/NSDecimalNumber.h>

#include <limits>

#include <libvue/platform/foundation/Decimal.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/SmallBlocks.h>
#include <libvue/platform/foundation/StringBuilder.h>

namespace libvue {

namespace {

const ClassRegistration<NSDecimalNumber> registration;

Decimal valueOf(const NSDecimalNumber* n) {
    if (!n) raiseNamed(NSInvalidArgumentException, "NSDecimalNumber: an operand is null");
    return Decimal::of(*n);
}

Ref<NSDecimalNumber> checked(const Decimal& result, NSCalculationError error) {
    switch (error) {
    case NSCalculationOverflow:
        raiseNamed("NSDecimalNumberOverflowException", "the result is too large");
    case NSCalculationUnderflow:
        raiseNamed("NSDecimalNumberUnderflowException", "the result is too small");
    case NSCalculationDivideByZero:
        raiseNamed("NSDecimalNumberDivideByZeroException", "division by zero");
    default:
        return result.object();
    }
}

} // namespace

NSDecimalNumber::~NSDecimalNumber() = default;

void NSDecimalNumber::operator delete(void* object) noexcept { detail::SmallBlocks::giveFast(object); }

void NSDecimalNumber::describe(ClassDescription<NSDecimalNumber, NSNumber>&) {}

Ref<NSDecimalNumber> NSDecimalNumber::initWithCoder(NSCoder& coder) {
    return Ref<NSDecimalNumber>(dynamic_cast<NSDecimalNumber*>(NSNumber::initWithCoder(coder).get()));
}

Ref<NSDecimalNumber> NSDecimalNumber::zero() { return Decimal().object(); }
Ref<NSDecimalNumber> NSDecimalNumber::one() { return Decimal::of(1).object(); }
Ref<NSDecimalNumber> NSDecimalNumber::notANumber() { return Decimal::nan().object(); }

Ref<NSDecimalNumber> NSDecimalNumber::decimalNumberWithString(const NSString* s) {
    if (!s) return notANumber();
    if (const auto* bytes = s->latin1Contents())
        return decimalNumberWithText({reinterpret_cast<const char*>(bytes), s->length()});
    return decimalNumberWithText(s->utf8());
}

Ref<NSDecimalNumber> NSDecimalNumber::decimalNumberWithText(std::string_view ascii) {
    return Decimal::parse(ascii).object();
}
Ref<NSDecimalNumber> NSDecimalNumber::decimalNumberWithDouble(double v) { return Decimal::ofDouble(v).object(); }

Ref<NSDecimalNumber> NSDecimalNumber::decimalNumberByAdding(const NSDecimalNumber* n) const {
    NSCalculationError error = NSCalculationNoError;
    Decimal d = Decimal::add(Decimal::of(*this), valueOf(n), error);
    return checked(d, error);
}

Ref<NSDecimalNumber> NSDecimalNumber::decimalNumberBySubtracting(const NSDecimalNumber* n) const {
    NSCalculationError error = NSCalculationNoError;
    Decimal d = Decimal::add(Decimal::of(*this), valueOf(n).negated(), error);
    return checked(d, error);
}

Ref<NSDecimalNumber> NSDecimalNumber::decimalNumberByMultiplyingBy(const NSDecimalNumber* n) const {
    NSCalculationError error = NSCalculationNoError;
    Decimal d = Decimal::multiply(Decimal::of(*this), valueOf(n), error);
    return checked(d, error);
}

Ref<NSDecimalNumber> NSDecimalNumber::decimalNumberByDividingBy(const NSDecimalNumber* n) const {
    NSCalculationError error = NSCalculationNoError;
    Decimal d = Decimal::divide(Decimal::of(*this), valueOf(n), error);
    return checked(d, error);
}

Ref<NSDecimalNumber> NSDecimalNumber::decimalNumberByRounding_scale(NSRoundingMode mode, short scale) const {
    return Decimal::of(*this).rounded(mode, scale).object();
}

BOOL NSDecimalNumber::boolValue() const noexcept {
    const Mantissa m = mantissa();
    return m.high != 0 || m.low != 0;
}

NSInteger NSDecimalNumber::integerValue() const noexcept {
    constexpr auto most = std::numeric_limits<NSInteger>::max();
    std::uint64_t m = Decimal::of(*this).integerMagnitude();
    if (isNegative())
        return m > static_cast<std::uint64_t>(most) ? std::numeric_limits<NSInteger>::min()
                                                    : -static_cast<NSInteger>(m);
    return m > static_cast<std::uint64_t>(most) ? most : static_cast<NSInteger>(m);
}

NSUInteger NSDecimalNumber::unsignedIntegerValue() const noexcept {
    return isNegative() ? static_cast<NSUInteger>(integerValue()) : Decimal::of(*this).integerMagnitude();
}

double NSDecimalNumber::doubleValue() const noexcept { return Decimal::of(*this).toDouble(); }

Ref<NSString> NSDecimalNumber::stringValue() const {
    StringBuilder b;
    Decimal::of(*this).appendTo(b);
    return b.build();
}

} // namespace libvue
