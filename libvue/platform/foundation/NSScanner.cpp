#include <libvue/platform/foundation/NSScanner.h>

#include <limits>

#include <libvue/platform/foundation/AsciiDigits.h>
#include <libvue/platform/foundation/NSCharacterSet.h>
#include <libvue/platform/foundation/NSException.h>

namespace libvue {

using detail::hexDigit;
using detail::isDigit;

void NSScanner::describe(ClassDescription<NSScanner>&) {}

NSScanner::NSScanner(const NSString* s) {
    if (!s) raiseNamed(NSInvalidArgumentException, "a scanner needs a text");
    string_ = NSString::stringWithString(s);
    skipped_ = NSCharacterSet::whitespaceAndNewlineCharacterSet();
}

NSScanner::~NSScanner() = default;

Ref<NSScanner> NSScanner::scannerWithString(const NSString* s) { return make<NSScanner>(s); }

void NSScanner::setScanLocation(NSUInteger location) {
    if (location > string_->length()) raiseNamed(NSRangeException, "the scan location is out of the text");
    location_ = location;
}

void NSScanner::setCharactersToBeSkipped(NSCharacterSet* set) { skipped_ = set; }

NSUInteger NSScanner::afterSkipped() const {
    NSUInteger i = location_;
    while (skipped_ && i < string_->length() && skipped_->characterIsMember(string_->unit(i)))
        ++i;
    return i;
}

BOOL NSScanner::isAtEnd() const { return afterSkipped() == string_->length(); }

BOOL NSScanner::take(NSUInteger from, NSUInteger to, Ref<NSString>* value) {
    if (from == to) return NO;
    if (value) *value = string_->substringWithRange({from, to - from});
    location_ = to;
    return YES;
}

BOOL NSScanner::scanInteger(NSInteger* value) {
    const NSUInteger from = afterSkipped(), end = string_->length();
    NSUInteger i = from;
    if (i < end && (string_->unit(i) == '-' || string_->unit(i) == '+')) ++i;
    const NSUInteger digits = i;
    while (i < end && isDigit(string_->unit(i)))
        ++i;
    if (i == digits) return NO;
    if (value) *value = string_->substringWithRange({from, i - from})->integerValue();
    location_ = i;
    return YES;
}

BOOL NSScanner::scanInt(int* value) {
    NSInteger wide = 0;
    if (!scanInteger(&wide)) return NO;
    using Limits = std::numeric_limits<int>;
    if (value)
        *value = static_cast<int>(wide < Limits::min() ? Limits::min() : wide > Limits::max() ? Limits::max() : wide);
    return YES;
}

BOOL NSScanner::scanHexInt(unsigned* value) {
    const NSUInteger end = string_->length();
    NSUInteger i = afterSkipped();
    if (i + 2 < end && string_->unit(i) == '0' && (string_->unit(i + 1) | 0x20) == 'x' &&
        hexDigit(string_->unit(i + 2)) >= 0)
        i += 2;
    const NSUInteger digits = i;
    std::uint64_t v = 0;
    constexpr std::uint64_t most = std::numeric_limits<unsigned>::max();
    for (; i < end && hexDigit(string_->unit(i)) >= 0; ++i)
        v = v > most ? v : v * 16 + static_cast<std::uint64_t>(hexDigit(string_->unit(i)));
    if (i == digits) return NO;
    if (value) *value = static_cast<unsigned>(v > most ? most : v);
    location_ = i;
    return YES;
}

BOOL NSScanner::scanDouble(double* value) {
    const NSUInteger from = afterSkipped(), end = string_->length();
    NSUInteger i = from;
    const auto digits = [&] {
        const NSUInteger first = i;
        while (i < end && isDigit(string_->unit(i)))
            ++i;
        return i - first;
    };
    if (i < end && (string_->unit(i) == '-' || string_->unit(i) == '+')) ++i;
    NSUInteger count = digits();
    if (i < end && string_->unit(i) == '.') {
        ++i;
        count += digits();
    }
    if (count == 0) return NO;
    const NSUInteger mantissa = i;
    if (i < end && (string_->unit(i) | 0x20) == 'e') {
        ++i;
        if (i < end && (string_->unit(i) == '-' || string_->unit(i) == '+')) ++i;
        if (digits() == 0) i = mantissa;
    }
    if (value) *value = string_->substringWithRange({from, i - from})->doubleValue();
    location_ = i;
    return YES;
}

BOOL NSScanner::scanString_intoString(const NSString* s, Ref<NSString>* value) {
    if (!s || s->length() == 0) return NO;
    const NSUInteger from = afterSkipped();
    const NSUInteger options =
        NSUInteger{NSAnchoredSearch} | (caseSensitive_ ? 0 : NSUInteger{NSCaseInsensitiveSearch});
    const NSRange at = string_->rangeOfString_options_range(s, options, {from, string_->length() - from});
    if (at.location != from) return NO;
    return take(from, NSMaxRange(at), value);
}

BOOL NSScanner::scanCharactersFromSet_intoString(const NSCharacterSet* set, Ref<NSString>* value) {
    if (!set) return NO;
    const NSUInteger from = afterSkipped();
    NSUInteger i = from;
    for (;;) {
        const NSRange at =
            string_->rangeOfCharacterFromSet_options_range(set, NSAnchoredSearch, {i, string_->length() - i});
        if (at.length == 0) break;
        i = NSMaxRange(at);
    }
    return take(from, i, value);
}

BOOL NSScanner::scanUpToString_intoString(const NSString* s, Ref<NSString>* value) {
    if (!s) return NO;
    const NSUInteger from = afterSkipped();
    const NSRange at = string_->rangeOfString_options_range(s, caseSensitive_ ? 0 : NSUInteger{NSCaseInsensitiveSearch},
                                                            {from, string_->length() - from});
    return take(from, at.length ? at.location : string_->length(), value);
}

BOOL NSScanner::scanUpToCharactersFromSet_intoString(const NSCharacterSet* set, Ref<NSString>* value) {
    if (!set) return NO;
    const NSUInteger from = afterSkipped();
    const NSRange at = string_->rangeOfCharacterFromSet_options_range(set, 0, {from, string_->length() - from});
    return take(from, at.length ? at.location : string_->length(), value);
}

} // namespace libvue
