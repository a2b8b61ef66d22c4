#include <cstdlib>
#include <limits>
#include <string>

#include <libvue/platform/foundation/AsciiDigits.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/StringUnits.h>

namespace libvue {

namespace {

using detail::isDigit;

bool isSpace(unichar c) noexcept {
    return c == ' ' || (c >= 9 && c <= 13) || c == 0xA0 || (c >= 0x2000 && c <= 0x200A) || c == 0x3000;
}

NSUInteger afterSpace(const NSString& s) noexcept {
    NSUInteger i = 0;
    while (i < s.length() && isSpace(s.unit(i)))
        ++i;
    return i;
}

/// Held to the range of the type.
template <class Integer> Integer readInteger(const NSString& s) noexcept {
    using Limits = std::numeric_limits<Integer>;
    NSUInteger i = afterSpace(s);
    bool negative = false;
    if (i < s.length() && (s.unit(i) == '-' || s.unit(i) == '+')) negative = s.unit(i++) == '-';
    // Counted below zero, where there is room for one more.
    Integer value = 0;
    for (; i < s.length() && isDigit(s.unit(i)); ++i) {
        const auto digit = static_cast<Integer>(s.unit(i) - '0');
        if (value < (Limits::min() + digit) / 10) return negative ? Limits::min() : Limits::max();
        value = static_cast<Integer>(value * 10 - digit);
    }
    if (negative) return value;
    return value == Limits::min() ? Limits::max() : static_cast<Integer>(-value);
}

} // namespace

int NSString::intValue() const { return readInteger<int>(*this); }

NSInteger NSString::integerValue() const { return readInteger<NSInteger>(*this); }

double NSString::doubleValue() const {
    NSUInteger i = afterSpace(*this);
    // The C library also reads words and hexadecimal, so the characters of a decimal number are picked out first.
    std::string digits;
    bool negative = false;
    if (i < length_ && (unit(i) == '-' || unit(i) == '+')) negative = unit(i++) == '-';
    const NSUInteger first = i;
    for (; i < length_; ++i) {
        const unichar c = unit(i);
        const bool sign = (c == '+' || c == '-') && i > first && (unit(i - 1) == 'e' || unit(i - 1) == 'E');
        if (!isDigit(c) && c != '.' && c != 'e' && c != 'E' && !sign) break;
        digits.push_back(static_cast<char>(c));
    }
    if (digits.empty() || !(isDigit(digits[0]) || digits[0] == '.')) return 0;
    const double value = ::strtod_l(digits.c_str(), nullptr, detail::cLocale());
    return negative ? -value : value;
}

float NSString::floatValue() const { return static_cast<float>(doubleValue()); }

BOOL NSString::boolValue() const {
    NSUInteger i = afterSpace(*this);
    if (i < length_ && (unit(i) == '-' || unit(i) == '+')) ++i;
    while (i < length_ && unit(i) == '0')
        ++i;
    if (i == length_) return NO;
    const unichar c = unit(i);
    return c == 'Y' || c == 'y' || c == 'T' || c == 't' || (c >= '1' && c <= '9');
}

} // namespace libvue
