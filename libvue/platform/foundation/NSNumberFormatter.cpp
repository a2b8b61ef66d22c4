#include <libvue/platform/foundation/NSNumberFormatter.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include <unicode/unum.h>

#include <libvue/platform/foundation/AsciiDigits.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSDecimalNumber.h>
#include <libvue/platform/foundation/NSLocale.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

const ClassRegistration<NSNumberFormatter> registration;

UNumberFormatStyle styleOf(NSNumberFormatterStyle style) noexcept {
    switch (style) {
    case NSNumberFormatterCurrencyStyle:
        return UNUM_CURRENCY;
    case NSNumberFormatterPercentStyle:
        return UNUM_PERCENT;
    case NSNumberFormatterScientificStyle:
        return UNUM_SCIENTIFIC;
    case NSNumberFormatterSpellOutStyle:
        return UNUM_SPELLOUT;
    default:
        return UNUM_DECIMAL;
    }
}

/// The spaces that languages put between groups of digits, and the one on every keyboard.
bool isSpace(unichar c) noexcept { return c == u' ' || c == 0x00A0 || c == 0x2009 || c == 0x202F; }

constexpr NSUInteger mostDigits = 340;
int heldDigits(NSUInteger n) noexcept { return static_cast<int>(std::min(n, mostDigits)); }

} // namespace

struct NSNumberFormatter::State {
    NSNumberFormatterStyle style = NSNumberFormatterNoStyle;
    Ref<NSLocale> locale = NSLocale::currentLocale();
    Ref<NSString> positive, negative;
    Ref<NSNumber> minimum, maximum;
    std::optional<int> minimumFraction, maximumFraction;
    std::optional<bool> grouping;
    bool floats = true, decimals = false;
};

/// Null inside where ICU could make no format.
class NSNumberFormatter::Engine {
public:
    explicit Engine(const State& s) {
        UErrorCode status = U_ZERO_ERROR;
        format_ = unum_open(styleOf(s.style), nullptr, 0, s.locale->localeIdentifier()->UTF8String(), nullptr, &status);
        if (U_FAILURE(status)) {
            unum_close(format_);
            format_ = nullptr;
            return;
        }
        if (s.style == NSNumberFormatterNoStyle && !s.positive) {
            set(UNUM_GROUPING_USED, 0);
            set(UNUM_MAX_FRACTION_DIGITS, 0);
        }
        if (s.positive || s.negative) applyPattern(s);
        if (s.minimumFraction) set(UNUM_MIN_FRACTION_DIGITS, *s.minimumFraction);
        if (s.maximumFraction) set(UNUM_MAX_FRACTION_DIGITS, *s.maximumFraction);
        if (s.grouping) set(UNUM_GROUPING_USED, *s.grouping);
    }
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    ~Engine() { unum_close(format_); }

    Ref<NSString> text(const NSNumber& n) {
        if (!format_) return n.stringValue();
        // Decimal digits for whatever a double would round.
        std::string digits = std::isfinite(n.doubleValue()) ? n.stringValue()->utf8() : std::string();
        std::vector<UChar> text(64);
        for (;;) {
            UErrorCode status = U_ZERO_ERROR;
            auto room = static_cast<int32_t>(text.size());
            int32_t count = digits.empty()
                                ? unum_formatDouble(format_, n.doubleValue(), text.data(), room, nullptr, &status)
                                : unum_formatDecimal(format_, digits.data(), static_cast<int32_t>(digits.size()),
                                                     text.data(), room, nullptr, &status);
            if (status == U_BUFFER_OVERFLOW_ERROR) {
                text.resize(static_cast<std::size_t>(count) + 1);
                continue;
            }
            if (U_FAILURE(status)) return n.stringValue();
            return NSString::from({text.data(), static_cast<std::size_t>(count)});
        }
    }

    /// The plain decimal text of the number that the whole of `s` is; empty where it is none.
    std::string parse(const NSString& s) {
        if (!format_) return {};
        std::u16string text = s.utf16();
        while (!text.empty() && isSpace(text.back()))
            text.pop_back();
        text.erase(0, std::min(text.find_first_not_of(u" \u00A0\u2009\u202F"), text.size()));
        // Whatever space was typed between the digits is the locale's own.
        UChar group[8];
        UErrorCode status = U_ZERO_ERROR;
        int32_t n = unum_getSymbol(format_, UNUM_GROUPING_SEPARATOR_SYMBOL, group, 8, &status);
        if (U_SUCCESS(status) && n == 1 && isSpace(group[0]))
            for (std::size_t i = 1; i + 1 < text.size(); ++i)
                if (isSpace(text[i]) && detail::isDigit(text[i - 1]) && detail::isDigit(text[i + 1]))
                    text[i] = group[0];
        if (text.empty()) return {};
        char digits[512];
        int32_t at = 0;
        status = U_ZERO_ERROR;
        int32_t count = unum_parseDecimal(format_, text.data(), static_cast<int32_t>(text.size()), &at, digits,
                                          sizeof digits, &status);
        if (U_FAILURE(status) || static_cast<std::size_t>(at) != text.size()) return {};
        return {digits, static_cast<std::size_t>(count)};
    }

private:
    void set(UNumberFormatAttribute a, int v) { unum_setAttribute(format_, a, v); }
    void applyPattern(const State& s) {
        std::u16string pattern;
        if (s.positive)
            pattern = s.positive->utf16();
        else {
            UChar own[128];
            UErrorCode status = U_ZERO_ERROR;
            int32_t n = unum_toPattern(format_, false, own, 128, &status);
            if (U_FAILURE(status)) return;
            pattern.assign(own, static_cast<std::size_t>(n));
            pattern.resize(std::min(pattern.find(u';'), pattern.size()));
        }
        if (s.negative) pattern += u";" + s.negative->utf16();
        UErrorCode status = U_ZERO_ERROR;
        // A pattern that makes no sense leaves the style's own.
        unum_applyPattern(format_, false, pattern.data(), static_cast<int32_t>(pattern.size()), nullptr, &status);
    }
    UNumberFormat* format_ = nullptr;
};

void NSNumberFormatter::describe(ClassDescription<NSNumberFormatter, NSFormatter>&) {}
NSNumberFormatter::NSNumberFormatter() : state_(std::make_unique<State>()) {}
NSNumberFormatter::~NSNumberFormatter() = default;

NSNumberFormatter::Engine& NSNumberFormatter::engine() {
    if (!engine_) engine_ = std::make_unique<Engine>(*state_);
    return *engine_;
}
void NSNumberFormatter::changed() { engine_ = nullptr; }

Ref<NSString> NSNumberFormatter::stringFromNumber(const NSNumber* n) { return n ? engine().text(*n) : nullptr; }

Ref<NSNumber> NSNumberFormatter::numberFromString(const NSString* s) {
    std::string digits = s ? engine().parse(*s) : std::string();
    if (digits.empty()) return nullptr;
    auto decimal = NSDecimalNumber::decimalNumberWithText(digits);
    if (decimal->isNotANumber()) return nullptr;
    if (state_->decimals) return decimal;
    NSInteger whole = decimal->integerValue();
    auto integer = NSNumber::numberWithInteger(whole);
    if (decimal->compare(integer) == NSOrderedSame) return integer;
    return state_->floats ? NSNumber::numberWithDouble(decimal->doubleValue()) : nullptr;
}

Ref<NSString> NSNumberFormatter::localizedStringFromNumber_numberStyle(const NSNumber* n,
                                                                       NSNumberFormatterStyle style) {
    auto f = make<NSNumberFormatter>();
    f->setNumberStyle(style);
    return f->stringFromNumber(n);
}

NSNumberFormatterStyle NSNumberFormatter::numberStyle() const noexcept { return state_->style; }
void NSNumberFormatter::setNumberStyle(NSNumberFormatterStyle style) {
    state_->style = style;
    changed();
}
NSLocale* NSNumberFormatter::locale() const noexcept { return state_->locale; }
void NSNumberFormatter::setLocale(NSLocale* locale) {
    state_->locale = locale ? Ref<NSLocale>(locale) : NSLocale::currentLocale();
    changed();
}
void NSNumberFormatter::setPositiveFormat(const NSString* pattern) {
    state_->positive = pattern ? NSString::stringWithString(pattern) : nullptr;
    changed();
}
void NSNumberFormatter::setNegativeFormat(const NSString* pattern) {
    state_->negative = pattern ? NSString::stringWithString(pattern) : nullptr;
    changed();
}
void NSNumberFormatter::setFormat(const NSString* pattern) {
    NSRange semicolon = pattern ? pattern->rangeOfString(u";"_ns) : NSRange{static_cast<NSUInteger>(NSNotFound), 0};
    bool two = semicolon.length > 0;
    setPositiveFormat(two ? pattern->substringToIndex(semicolon.location).get() : pattern);
    setNegativeFormat(two ? pattern->substringFromIndex(NSMaxRange(semicolon)).get() : nullptr);
}

void NSNumberFormatter::setMinimumFractionDigits(NSUInteger digits) {
    state_->minimumFraction = heldDigits(digits);
    if (state_->maximumFraction && *state_->maximumFraction < *state_->minimumFraction)
        state_->maximumFraction = state_->minimumFraction;
    changed();
}
void NSNumberFormatter::setMaximumFractionDigits(NSUInteger digits) {
    state_->maximumFraction = heldDigits(digits);
    if (state_->minimumFraction && *state_->minimumFraction > *state_->maximumFraction)
        state_->minimumFraction = state_->maximumFraction;
    changed();
}
void NSNumberFormatter::setUsesGroupingSeparator(BOOL uses) {
    state_->grouping = uses;
    changed();
}
void NSNumberFormatter::setAllowsFloats(BOOL allows) { state_->floats = allows; }
NSNumber* NSNumberFormatter::minimum() const noexcept { return state_->minimum; }
void NSNumberFormatter::setMinimum(NSNumber* n) { state_->minimum = n; }
NSNumber* NSNumberFormatter::maximum() const noexcept { return state_->maximum; }
void NSNumberFormatter::setMaximum(NSNumber* n) { state_->maximum = n; }
void NSNumberFormatter::setGeneratesDecimalNumbers(BOOL generates) { state_->decimals = generates; }

Ref<NSString> NSNumberFormatter::stringForObjectValue(NSObject* value) {
    if (!value) return NSString::string();
    return stringFromNumber(as<NSNumber>(value));
}

BOOL NSNumberFormatter::getObjectValue_forString_errorDescription(Ref<NSObject>* value, NSString* string,
                                                                  Ref<NSString>* error) {
    auto refused = [&](const Ref<NSString>& reason) {
        if (error) *error = reason;
        return NO;
    };
    Ref<NSNumber> n;
    if (string && string->length()) {
        n = numberFromString(string);
        if (!n) return refused(u"Ce texte n’est pas un nombre."_ns);
        if (!state_->floats && n->doubleValue() != std::trunc(n->doubleValue()))
            return refused(u"Ce nombre n’est pas entier."_ns);
        if (state_->minimum && n->compare(state_->minimum) == NSOrderedAscending)
            return refused(u"Ce nombre est trop petit."_ns);
        if (state_->maximum && n->compare(state_->maximum) == NSOrderedDescending)
            return refused(u"Ce nombre est trop grand."_ns);
    }
    if (value) *value = n;
    return YES;
}

Ref<NSObject> NSNumberFormatter::copyWithZone() const {
    const Ref<NSObject> made = isa().alloc();
    Ref<NSNumberFormatter> f(as<NSNumberFormatter>(made));
    if (!f) f = make<NSNumberFormatter>(); // a subclass that cannot be made without arguments
    *f->state_ = *state_;
    return f;
}

NSNumberFormatter::NSNumberFormatter(NSCoder& coder) : NSFormatter(coder), state_(std::make_unique<State>()) {
    if (!coder.allowsKeyedCoding()) {
        state_->style = static_cast<NSNumberFormatterStyle>(coder.decodeInteger());
        if (auto locale = coder.decodeObjectOf<NSLocale>()) state_->locale = locale;
        state_->positive = coder.decodeObjectOf<NSString>();
        state_->negative = coder.decodeObjectOf<NSString>();
        state_->minimum = coder.decodeObjectOf<NSNumber>();
        state_->maximum = coder.decodeObjectOf<NSNumber>();
        const auto next = [&]() -> std::optional<int> {
            const NSInteger n = coder.decodeInteger();
            return n < 0 ? std::nullopt : std::optional(heldDigits(static_cast<NSUInteger>(n)));
        };
        state_->minimumFraction = next();
        state_->maximumFraction = next();
        if (const auto grouping = next()) state_->grouping = *grouping != 0;
        state_->floats = !coder.decodeBool();
        state_->decimals = coder.decodeBool();
        return;
    }
    auto digits = [&](const Ref<NSString>& key, std::optional<int>& field) {
        NSInteger n = coder.decodeIntegerForKey(key);
        if (coder.containsValueForKey(key)) field = n < 0 ? 0 : heldDigits(static_cast<NSUInteger>(n));
    };
    state_->style = static_cast<NSNumberFormatterStyle>(coder.decodeIntegerForKey(u"NS.style"_ns));
    if (auto locale = coder.decodeObjectOf_forKey<NSLocale>(u"NS.locale"_ns)) state_->locale = locale;
    state_->positive = coder.decodeObjectOf_forKey<NSString>(u"NS.positive"_ns);
    state_->negative = coder.decodeObjectOf_forKey<NSString>(u"NS.negative"_ns);
    state_->minimum = coder.decodeObjectOf_forKey<NSNumber>(u"NS.minimum"_ns);
    state_->maximum = coder.decodeObjectOf_forKey<NSNumber>(u"NS.maximum"_ns);
    digits(u"NS.minimumFraction"_ns, state_->minimumFraction);
    digits(u"NS.maximumFraction"_ns, state_->maximumFraction);
    if (coder.containsValueForKey(u"NS.grouping"_ns)) state_->grouping = coder.decodeBoolForKey(u"NS.grouping"_ns);
    state_->floats = !coder.decodeBoolForKey(u"NS.integersOnly"_ns);
    state_->decimals = coder.decodeBoolForKey(u"NS.decimals"_ns);
}

void NSNumberFormatter::encodeWithCoder(NSCoder& coder) const {
    NSFormatter::encodeWithCoder(coder);
    if (!coder.allowsKeyedCoding()) {
        coder.encodeInteger(static_cast<NSInteger>(state_->style));
        coder.encodeObject(state_->locale);
        coder.encodeObject(state_->positive);
        coder.encodeObject(state_->negative);
        coder.encodeObject(state_->minimum);
        coder.encodeObject(state_->maximum);
        for (const std::optional<int> n : {state_->minimumFraction, state_->maximumFraction,
                                           state_->grouping ? std::optional<int>(*state_->grouping) : std::nullopt})
            coder.encodeInteger(n.value_or(-1));
        coder.encodeBool(!state_->floats);
        coder.encodeBool(state_->decimals);
        return;
    }
    auto digits = [&](const Ref<NSString>& key, std::optional<int> field) {
        if (field) coder.encodeInteger_forKey(*field, key);
    };
    coder.encodeInteger_forKey(static_cast<NSInteger>(state_->style), u"NS.style"_ns);
    coder.encodeObject_forKey(state_->locale, u"NS.locale"_ns);
    coder.encodeObject_forKey(state_->positive, u"NS.positive"_ns);
    coder.encodeObject_forKey(state_->negative, u"NS.negative"_ns);
    coder.encodeObject_forKey(state_->minimum, u"NS.minimum"_ns);
    coder.encodeObject_forKey(state_->maximum, u"NS.maximum"_ns);
    digits(u"NS.minimumFraction"_ns, state_->minimumFraction);
    digits(u"NS.maximumFraction"_ns, state_->maximumFraction);
    if (state_->grouping) coder.encodeBool_forKey(*state_->grouping, u"NS.grouping"_ns);
    coder.encodeBool_forKey(!state_->floats, u"NS.integersOnly"_ns);
    coder.encodeBool_forKey(state_->decimals, u"NS.decimals"_ns);
}

} // namespace libvue
