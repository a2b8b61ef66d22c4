#pragma once

#include <memory>

#include <libvue/platform/foundation/NSFormatter.h>

namespace libvue {

/// How much of a date or a time is written, from figures alone to all of it in words. No style leaves the part out.
enum NSDateFormatterStyle : NSUInteger {
    NSDateFormatterNoStyle = 0,
    NSDateFormatterShortStyle = 1,
    NSDateFormatterMediumStyle = 2,
    NSDateFormatterLongStyle = 3,
    NSDateFormatterFullStyle = 4
};

/// Dates and times in the words of a locale, in the zone of the user unless another is set.
class LIBVUE_API NSDateFormatter : public NSFormatter {
public:
    static void describe(ClassDescription<NSDateFormatter, NSFormatter>& c);
    /// No style, the current locale.
    NSDateFormatter();
    explicit NSDateFormatter(NSCoder& coder);
    ~NSDateFormatter() override;

    /// Null for null.
    [[nodiscard]] Ref<NSString> stringFromDate(const NSDate* d);
    /// The date that the whole text is, or null.
    [[nodiscard]] Ref<NSDate> dateFromString(const NSString* s);

    [[nodiscard]] NSDateFormatterStyle dateStyle() const noexcept { return dateStyle_; }
    void setDateStyle(NSDateFormatterStyle style);
    [[nodiscard]] NSDateFormatterStyle timeStyle() const noexcept { return timeStyle_; }
    void setTimeStyle(NSDateFormatterStyle style);
    /// A pattern such as "d MMMM y"; null gives the styles back.
    [[nodiscard]] NSString* dateFormat() const noexcept { return format_; }
    void setDateFormat(const NSString* pattern);
    [[nodiscard]] NSLocale* locale() const noexcept { return locale_; }
    /// Null is the current locale.
    void setLocale(NSLocale* locale);
    /// A zone such as "Europe/Paris"; null is the user's.
    void setTimeZoneName(const NSString* zone);

    [[nodiscard]] Ref<NSString> stringForObjectValue(NSObject* value) override;
    BOOL getObjectValue_forString_errorDescription(Ref<NSObject>* value, NSString* string,
                                                   Ref<NSString>* error) override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;

private:
    class Engine;
    Engine& engine();
    void changed();
    NSDateFormatterStyle dateStyle_ = NSDateFormatterNoStyle;
    NSDateFormatterStyle timeStyle_ = NSDateFormatterNoStyle;
    Ref<NSString> format_;
    Ref<NSString> zone_;
    Ref<NSLocale> locale_;
    std::unique_ptr<Engine> engine_; // built on first use after a change
};

} // namespace libvue
