#pragma once

#include <memory>

#include <libvue/platform/foundation/NSFormatter.h>

namespace libvue {

/// What a number is written as, in the ways of the locale. No style writes a plain integer.
enum NSNumberFormatterStyle : NSUInteger {
    NSNumberFormatterNoStyle = 0,
    NSNumberFormatterDecimalStyle = 1,
    NSNumberFormatterCurrencyStyle = 2,
    NSNumberFormatterPercentStyle = 3,
    NSNumberFormatterScientificStyle = 4,
    NSNumberFormatterSpellOutStyle = 5
};

/// Numbers in the words of a locale.
class LIBVUE_API NSNumberFormatter : public NSFormatter {
public:
    static void describe(ClassDescription<NSNumberFormatter, NSFormatter>& c);
    /// No style, the current locale.
    NSNumberFormatter();
    explicit NSNumberFormatter(NSCoder& coder);
    ~NSNumberFormatter() override;

    /// Null for null.
    [[nodiscard]] Ref<NSString> stringFromNumber(const NSNumber* n);
    /// The number that the whole text is, or null.
    [[nodiscard]] Ref<NSNumber> numberFromString(const NSString* s);
    [[nodiscard]] static Ref<NSString> localizedStringFromNumber_numberStyle(const NSNumber* n,
                                                                             NSNumberFormatterStyle style);

    [[nodiscard]] NSNumberFormatterStyle numberStyle() const noexcept;
    void setNumberStyle(NSNumberFormatterStyle style);
    [[nodiscard]] NSLocale* locale() const noexcept;
    /// Null is the current locale.
    void setLocale(NSLocale* locale);
    /// A pattern such as "#,##0.00"; null gives the style's own back.
    void setPositiveFormat(const NSString* pattern);
    void setNegativeFormat(const NSString* pattern);
    /// Both at once: "positive;negative".
    void setFormat(const NSString* pattern);
    void setMinimumFractionDigits(NSUInteger digits);
    void setMaximumFractionDigits(NSUInteger digits);
    void setUsesGroupingSeparator(BOOL uses);
    /// NO: a text with a fraction is no number.
    void setAllowsFloats(BOOL allows);
    [[nodiscard]] NSNumber* minimum() const noexcept;
    void setMinimum(NSNumber* n);
    [[nodiscard]] NSNumber* maximum() const noexcept;
    void setMaximum(NSNumber* n);
    /// YES: text is read as NSDecimalNumber.
    void setGeneratesDecimalNumbers(BOOL generates);

    [[nodiscard]] Ref<NSString> stringForObjectValue(NSObject* value) override;
    BOOL getObjectValue_forString_errorDescription(Ref<NSObject>* value, NSString* string,
                                                   Ref<NSString>* error) override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;

private:
    struct State;
    class Engine;
    Engine& engine();
    void changed();
    std::unique_ptr<State> state_;
    std::unique_ptr<Engine> engine_; // built on first use after a change
};

} // namespace libvue
