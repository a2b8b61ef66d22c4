#include <libvue/platform/foundation/NSNumber.h>

#include <cmath>
#include <functional>
#include <limits>

#include <libvue/platform/foundation/Decimal.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/NumberText.h>
#include <libvue/platform/foundation/StringBuilder.h>

namespace libvue {

namespace {

const ClassRegistration<NSNumber> registration;

constexpr double twoTo63 = 9223372036854775808.0, twoTo64 = 18446744073709551616.0;

/// An integer of 65 bits.
struct Integer {
    std::uint64_t magnitude;
    bool negative;

    static Integer of(NSInteger v) noexcept {
        return {v < 0 ? 0 - static_cast<std::uint64_t>(v) : static_cast<std::uint64_t>(v), v < 0};
    }
    [[nodiscard]] double toDouble() const noexcept {
        auto v = static_cast<double>(magnitude);
        return negative ? -v : v;
    }
};

int compareIntegers(const Integer& a, const Integer& b) noexcept {
    if (a.negative != b.negative) return a.negative ? -1 : 1;
    int magnitude = a.magnitude < b.magnitude ? -1 : a.magnitude > b.magnitude;
    return a.negative ? -magnitude : magnitude;
}

/// `b` is a number.
int compareWithDouble(const Integer& a, double b) noexcept {
    if (b >= twoTo64) return -1;
    if (b < -twoTo63) return 1;
    double whole = std::trunc(b);
    Integer cut{static_cast<std::uint64_t>(std::fabs(whole)), whole < 0};
    if (int c = compareIntegers(a, cut)) return c;
    return b > whole ? -1 : b < whole;
}

int compareDoubles(double a, double b) noexcept {
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) ? -!std::isnan(b) : 1;
    return a < b ? -1 : a > b;
}

} // namespace

void NSNumber::describe(ClassDescription<NSNumber, NSValue>& c) {
    c.answers<&NSNumber::compare>("compare:");
    c.answers<&NSNumber::stringValue>("stringValue");
    c.answers<&NSNumber::boolValue>("boolValue");
    c.answers<&NSNumber::intValue>("intValue");
    c.answers<&NSNumber::integerValue>("integerValue");
    c.answers<&NSNumber::floatValue>("floatValue");
    c.answers<&NSNumber::doubleValue>("doubleValue");
    c.key<&NSNumber::stringValue>("stringValue");
    c.key<&NSNumber::boolValue>("boolValue");
    c.key<&NSNumber::intValue>("intValue");
    c.key<&NSNumber::integerValue>("integerValue");
    c.key<&NSNumber::doubleValue>("doubleValue");
}

Ref<NSNumber> NSNumber::withInteger(Kind kind, NSInteger v) { return adopt(new NSNumber(kind, v)); }

Ref<NSNumber> NSNumber::numberWithBool(BOOL v) {
    static NSNumber* const shared[2] = {keptForever(withInteger(Kind::boolean, 0)),
                                        keptForever(withInteger(Kind::boolean, 1))};
    return shared[v ? 1 : 0];
}

Ref<NSNumber> NSNumber::numberWithInt(int v) {
    constexpr int least = -1, most = 12;
    if (v < least || v > most) return withInteger(Kind::int32, v);
    static NSNumber* shared[most - least + 1];
    NSNumber*& one = shared[v - least];
    if (!one) one = keptForever(withInteger(Kind::int32, v));
    return one;
}

Ref<NSNumber> NSNumber::numberWithInteger(NSInteger v) {
    constexpr NSInteger least = -1, most = 255;
    if (v < least || v > most) return withInteger(Kind::int64, v);
    static NSNumber* shared[most - least + 1];
    NSNumber*& one = shared[v - least];
    if (!one) one = keptForever(withInteger(Kind::int64, v));
    return one;
}

Ref<NSNumber> NSNumber::numberWithChar(signed char v) { return withInteger(Kind::int8, v); }
Ref<NSNumber> NSNumber::numberWithUnsignedChar(unsigned char v) { return withInteger(Kind::uint8, v); }
Ref<NSNumber> NSNumber::numberWithShort(short v) { return withInteger(Kind::int16, v); }
Ref<NSNumber> NSNumber::numberWithUnsignedShort(unsigned short v) { return withInteger(Kind::uint16, v); }
Ref<NSNumber> NSNumber::numberWithUnsignedInt(unsigned v) { return withInteger(Kind::uint32, v); }
Ref<NSNumber> NSNumber::numberWithUnsignedInteger(NSUInteger v) {
    return withInteger(Kind::uint64, static_cast<NSInteger>(v));
}
Ref<NSNumber> NSNumber::numberWithFloat(float v) { return adopt(new NSNumber(Kind::float32, static_cast<double>(v))); }
Ref<NSNumber> NSNumber::numberWithDouble(double v) { return adopt(new NSNumber(Kind::float64, v)); }

BOOL NSNumber::boolValue() const noexcept { return isFloating() ? double_ != 0 : integer_ != 0; }

NSInteger NSNumber::integerValue() const noexcept {
    constexpr auto most = std::numeric_limits<NSInteger>::max();
    if (isFloating()) {
        if (std::isnan(double_)) return 0;
        if (double_ >= twoTo63) return most;
        if (double_ < -twoTo63) return std::numeric_limits<NSInteger>::min();
        return static_cast<NSInteger>(double_);
    }
    return isUnsigned64() && integer_ < 0 ? most : integer_;
}

NSUInteger NSNumber::unsignedIntegerValue() const noexcept {
    if (isFloating()) {
        if (double_ >= twoTo64) return std::numeric_limits<NSUInteger>::max();
        if (double_ >= twoTo63) return static_cast<NSUInteger>(double_);
        return static_cast<NSUInteger>(NSNumber::integerValue());
    }
    return static_cast<NSUInteger>(integer_);
}

double NSNumber::doubleValue() const noexcept {
    if (isFloating()) return double_;
    return isUnsigned64() ? static_cast<double>(static_cast<NSUInteger>(integer_)) : static_cast<double>(integer_);
}

Ref<NSString> NSNumber::stringValue() const {
    StringBuilder b;
    if (kind() == Kind::float32)
        appendShortest(b, static_cast<float>(double_));
    else if (isFloating())
        appendShortest(b, double_);
    else if (isUnsigned64())
        b.appendUnsigned(static_cast<NSUInteger>(integer_));
    else
        b.appendNumber(integer_);
    return b.build();
}

Ref<NSString> NSNumber::description() const { return stringValue(); }
Ref<NSString> NSNumber::descriptionWithLocale(NSObject*) const { return stringValue(); }

NSComparisonResult NSNumber::compare(const NSNumber* n) const {
    if (!n) raiseNamed(NSInvalidArgumentException, "compare: a number is compared with null");
    auto integer = [](const NSNumber& v) {
        return v.isUnsigned64() ? Integer{static_cast<std::uint64_t>(v.integer_), false} : Integer::of(v.integer_);
    };
    auto result = [](int c) { return c < 0 ? NSOrderedAscending : c > 0 ? NSOrderedDescending : NSOrderedSame; };

    if (kind() == Kind::decimal || n->kind() == Kind::decimal) {
        // Infinities and what is not a number have no decimal form, and keep their order as doubles.
        double a = doubleValue(), b = n->doubleValue();
        if (!std::isfinite(a) || !std::isfinite(b)) return result(compareDoubles(a, b));
        auto decimal = [&](const NSNumber& v) {
            if (v.kind() == Kind::decimal) return Decimal::of(static_cast<const NSDecimalNumber&>(v));
            bool whole = v.isFloating() && std::fabs(v.double_) < twoTo64 && v.double_ == std::trunc(v.double_);
            if (v.isFloating() && !whole) return Decimal::ofDouble(v.double_);
            Integer i = whole ? Integer{static_cast<std::uint64_t>(std::fabs(v.double_)), v.double_ < 0} : integer(v);
            return Decimal::of(i.magnitude, i.negative);
        };
        Decimal x = decimal(*this), y = decimal(*n);
        // A double beyond the decimal range.
        if (x.notANumber || y.notANumber) return result(compareDoubles(a, b));
        return result(Decimal::compare(x, y));
    }
    if (isFloating() && n->isFloating()) return result(compareDoubles(double_, n->double_));
    if (isFloating()) {
        if (std::isnan(double_)) return NSOrderedAscending;
        return result(-compareWithDouble(integer(*n), double_));
    }
    if (n->isFloating()) {
        if (std::isnan(n->double_)) return NSOrderedDescending;
        return result(compareWithDouble(integer(*this), n->double_));
    }
    return result(compareIntegers(integer(*this), integer(*n)));
}

const char* NSNumber::objCType() const noexcept {
    switch (kind()) {
    case Kind::boolean:
    case Kind::int8:
        return "c";
    case Kind::uint8:
        return "C";
    case Kind::int16:
        return "s";
    case Kind::uint16:
        return "S";
    case Kind::int32:
        return "i";
    case Kind::uint32:
        return "I";
    case Kind::int64:
        return "q";
    case Kind::uint64:
        return "Q";
    case Kind::float32:
        return "f";
    default:
        return "d";
    }
}

BOOL NSNumber::isEqual(const NSObject* other) const {
    if (this == other) return YES;
    auto* n = dynamic_cast<const NSNumber*>(other);
    return n && compare(n) == NSOrderedSame;
}

NSUInteger NSNumber::hash() const {
    // Equal numbers of any two kinds round to the same double.
    double v = doubleValue();
    if (std::isnan(v)) return 0x7ff8;
    return std::hash<double>()(v == 0 ? 0.0 : v);
}

void NSNumber::encodeWithCoder(NSCoder& coder) const {
    bool keyed = coder.allowsKeyedCoding();
    auto kindKey = u"NS.kind"_ns, valueKey = u"NS.value"_ns;
    auto code = static_cast<NSInteger>(kind());
    if (keyed)
        coder.encodeInteger_forKey(code, kindKey);
    else
        coder.encodeInteger(code);
    if (kind() == Kind::decimal) {
        auto text = stringValue();
        keyed ? coder.encodeObject_forKey(text, valueKey) : coder.encodeObject(text);
    } else if (isFloating())
        keyed ? coder.encodeDouble_forKey(double_, valueKey) : coder.encodeDouble(double_);
    else
        keyed ? coder.encodeInteger_forKey(integer_, valueKey) : coder.encodeInteger(integer_);
}

Ref<NSNumber> NSNumber::initWithCoder(NSCoder& coder) {
    bool keyed = coder.allowsKeyedCoding();
    auto kindKey = u"NS.kind"_ns, valueKey = u"NS.value"_ns;
    auto code = keyed ? coder.decodeIntegerForKey(kindKey) : coder.decodeInteger();
    if (code < static_cast<NSInteger>(Kind::boolean) || code > static_cast<NSInteger>(Kind::decimal)) return nullptr;
    auto kind = static_cast<Kind>(code);
    if (kind == Kind::decimal) {
        auto held = keyed ? coder.decodeObject_forKey(valueKey) : coder.decodeObject();
        auto* text = libvue::as<NSString>(held);
        if (!text) return nullptr;
        return NSDecimalNumber::decimalNumberWithString(text);
    }
    if (kind == Kind::float32 || kind == Kind::float64) {
        double v = keyed ? coder.decodeDoubleForKey(valueKey) : coder.decodeDouble();
        return kind == Kind::float32 ? numberWithFloat(static_cast<float>(v)) : numberWithDouble(v);
    }
    NSInteger v = keyed ? coder.decodeIntegerForKey(valueKey) : coder.decodeInteger();
    switch (kind) {
    case Kind::boolean:
        return numberWithBool(v != 0);
    case Kind::int8:
        return numberWithChar(static_cast<signed char>(v));
    case Kind::uint8:
        return numberWithUnsignedChar(static_cast<unsigned char>(v));
    case Kind::int16:
        return numberWithShort(static_cast<short>(v));
    case Kind::uint16:
        return numberWithUnsignedShort(static_cast<unsigned short>(v));
    case Kind::int32:
        return numberWithInt(static_cast<int>(v));
    case Kind::uint32:
        return numberWithUnsignedInt(static_cast<unsigned>(v));
    case Kind::uint64:
        return numberWithUnsignedInteger(static_cast<NSUInteger>(v));
    default:
        return numberWithInteger(v);
    }
}

} // namespace libvue
