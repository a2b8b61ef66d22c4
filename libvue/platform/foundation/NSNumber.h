#pragma once

#include <libvue/platform/foundation/NSValue.h>

namespace libvue {

/// A number or a boolean as an object: 24 bytes, immutable. Small integers and the booleans are shared.
///
/// Two numbers are equal when their values are, whatever their types. Conversions to integers cut towards zero and hold
/// to the type's limits; not a number gives 0.
class LIBVUE_API NSNumber : public NSValue {
public:
    static void describe(ClassDescription<NSNumber, NSValue>& c);

    [[nodiscard]] static Ref<NSNumber> numberWithBool(BOOL v);
    [[nodiscard]] static Ref<NSNumber> numberWithChar(signed char v);
    [[nodiscard]] static Ref<NSNumber> numberWithUnsignedChar(unsigned char v);
    [[nodiscard]] static Ref<NSNumber> numberWithShort(short v);
    [[nodiscard]] static Ref<NSNumber> numberWithUnsignedShort(unsigned short v);
    [[nodiscard]] static Ref<NSNumber> numberWithInt(int v);
    [[nodiscard]] static Ref<NSNumber> numberWithUnsignedInt(unsigned v);
    [[nodiscard]] static Ref<NSNumber> numberWithLong(long v) { return numberWithInteger(v); }
    [[nodiscard]] static Ref<NSNumber> numberWithUnsignedLong(unsigned long v) { return numberWithUnsignedInteger(v); }
    [[nodiscard]] static Ref<NSNumber> numberWithLongLong(long long v) { return numberWithInteger(v); }
    [[nodiscard]] static Ref<NSNumber> numberWithUnsignedLongLong(unsigned long long v) {
        return numberWithUnsignedInteger(v);
    }
    [[nodiscard]] static Ref<NSNumber> numberWithInteger(NSInteger v);
    [[nodiscard]] static Ref<NSNumber> numberWithUnsignedInteger(NSUInteger v);
    [[nodiscard]] static Ref<NSNumber> numberWithFloat(float v);
    [[nodiscard]] static Ref<NSNumber> numberWithDouble(double v);

    [[nodiscard]] virtual BOOL boolValue() const noexcept;
    [[nodiscard]] signed char charValue() const noexcept { return static_cast<signed char>(integerValue()); }
    [[nodiscard]] unsigned char unsignedCharValue() const noexcept {
        return static_cast<unsigned char>(unsignedIntegerValue());
    }
    [[nodiscard]] short shortValue() const noexcept { return static_cast<short>(integerValue()); }
    [[nodiscard]] unsigned short unsignedShortValue() const noexcept {
        return static_cast<unsigned short>(unsignedIntegerValue());
    }
    [[nodiscard]] int intValue() const noexcept { return static_cast<int>(integerValue()); }
    [[nodiscard]] unsigned unsignedIntValue() const noexcept { return static_cast<unsigned>(unsignedIntegerValue()); }
    [[nodiscard]] long longValue() const noexcept { return integerValue(); }
    [[nodiscard]] unsigned long unsignedLongValue() const noexcept { return unsignedIntegerValue(); }
    [[nodiscard]] long long longLongValue() const noexcept { return integerValue(); }
    [[nodiscard]] unsigned long long unsignedLongLongValue() const noexcept { return unsignedIntegerValue(); }
    [[nodiscard]] virtual NSInteger integerValue() const noexcept;
    /// A negative integer wraps as it does in C.
    [[nodiscard]] virtual NSUInteger unsignedIntegerValue() const noexcept;
    [[nodiscard]] float floatValue() const noexcept { return static_cast<float>(doubleValue()); }
    [[nodiscard]] virtual double doubleValue() const noexcept;
    /// The shortest text that reads back as the same value; booleans are "1" and "0".
    [[nodiscard]] virtual Ref<NSString> stringValue() const;
    [[nodiscard]] Ref<NSString> descriptionWithLocale(NSObject* locale) const;

    /// True where the number was made from a boolean.
    [[nodiscard]] BOOL isBoolean() const noexcept { return kind() == Kind::boolean; }
    /// True for float, double and decimal numbers.
    [[nodiscard]] BOOL isFloating() const noexcept { return kind() >= Kind::float32; }

    /// By value, exactly also between 64-bit integers and doubles; against a decimal number a double that is no 64-bit
    /// integer counts as its shortest decimal text. Not a number comes before all others; null raises
    /// NSInvalidArgumentException.
    [[nodiscard]] NSComparisonResult compare(const NSNumber* n) const;
    [[nodiscard]] BOOL isEqualToNumber(const NSNumber* n) const { return n && isEqual(n); }
    /// One letter: c C s S i I q Q f d. A boolean says c, as a signed char does.
    [[nodiscard]] const char* objCType() const noexcept override;
    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSString> description() const override;
    void encodeWithCoder(NSCoder& coder) const override;
    /// The number in an archive, or null.
    [[nodiscard]] static Ref<NSNumber> initWithCoder(NSCoder& coder);

protected:
    explicit NSNumber(Kind kind) noexcept : integer_(0) { setTag_(static_cast<std::uint8_t>(kind)); }
    ~NSNumber() override = default;

private:
    NSNumber(Kind kind, NSInteger v) noexcept : integer_(v) { setTag_(static_cast<std::uint8_t>(kind)); }
    NSNumber(Kind kind, double v) noexcept : double_(v) { setTag_(static_cast<std::uint8_t>(kind)); }
    [[nodiscard]] static Ref<NSNumber> withInteger(Kind kind, NSInteger v);
    [[nodiscard]] bool isUnsigned64() const noexcept { return kind() == Kind::uint64; }

protected:
    // The value: an unsigned 64-bit one in the same bits, a single-precision one widened. A decimal number has its own
    // use for the integer.
    union {
        NSInteger integer_;
        double double_;
    };
};

} // namespace libvue
