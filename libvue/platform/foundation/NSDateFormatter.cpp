#include <libvue/platform/foundation/NSDateFormatter.h>

#include <cmath>
#include <memory>
#include <vector>

#include <unicode/ucal.h>
#include <unicode/udat.h>

#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSDate.h>
#include <libvue/platform/foundation/NSLocale.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

const ClassRegistration<NSDateFormatter> registration;

UDateFormatStyle styleOf(NSDateFormatterStyle style) noexcept {
    switch (style) {
    case NSDateFormatterShortStyle:
        return UDAT_SHORT;
    case NSDateFormatterMediumStyle:
        return UDAT_MEDIUM;
    case NSDateFormatterLongStyle:
        return UDAT_LONG;
    case NSDateFormatterFullStyle:
        return UDAT_FULL;
    default:
        return UDAT_NONE;
    }
}

struct CloseCalendar {
    void operator()(UCalendar* c) const noexcept { ucal_close(c); }
};

} // namespace

/// Null where ICU could make no format, or where there is nothing to show.
class NSDateFormatter::Engine {
public:
    explicit Engine(const NSDateFormatter& f) {
        std::u16string pattern = f.format_ ? f.format_->utf16() : std::u16string();
        std::u16string zone = f.zone_ ? f.zone_->utf16() : std::u16string();
        if (!f.format_ && f.dateStyle_ == NSDateFormatterNoStyle && f.timeStyle_ == NSDateFormatterNoStyle) return;
        UErrorCode status = U_ZERO_ERROR;
        format_ =
            udat_open(f.format_ ? UDAT_PATTERN : styleOf(f.timeStyle_),
                      f.format_ ? UDAT_PATTERN : styleOf(f.dateStyle_), f.locale_->localeIdentifier()->UTF8String(),
                      f.zone_ ? zone.data() : nullptr, static_cast<int32_t>(zone.size()),
                      f.format_ ? pattern.data() : nullptr, static_cast<int32_t>(pattern.size()), &status);
        if (U_FAILURE(status)) {
            udat_close(format_);
            format_ = nullptr;
        }
    }
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    ~Engine() { udat_close(format_); }

    Ref<NSString> text(double since1970) {
        if (!format_ || !std::isfinite(since1970)) return NSString::string();
        std::vector<UChar> text(128);
        for (;;) {
            UErrorCode status = U_ZERO_ERROR;
            int32_t n = udat_format(format_, since1970 * millisecondsOfSecond, text.data(),
                                    static_cast<int32_t>(text.size()), nullptr, &status);
            if (status == U_BUFFER_OVERFLOW_ERROR) {
                text.resize(static_cast<std::size_t>(n) + 1);
                continue;
            }
            if (U_FAILURE(status)) return NSString::string();
            return NSString::from({text.data(), static_cast<std::size_t>(n)});
        }
    }
    Ref<NSDate> date(const NSString& s) {
        if (!format_) return nullptr;
        std::u16string text = s.utf16();
        UErrorCode status = U_ZERO_ERROR;
        int32_t at = 0;
        // The writing is read freely, but the thirty-first of a short month is no date.
        const std::unique_ptr<UCalendar, CloseCalendar> fields(ucal_clone(udat_getCalendar(format_), &status));
        if (U_FAILURE(status)) return nullptr;
        ucal_clear(fields.get());
        ucal_setAttribute(fields.get(), UCAL_LENIENT, 0);
        udat_parseCalendar(format_, fields.get(), text.data(), static_cast<int32_t>(text.size()), &at, &status);
        const UDate d = ucal_getMillis(fields.get(), &status);
        if (U_FAILURE(status) || static_cast<std::size_t>(at) != text.size()) return nullptr;
        return NSDate::dateWithTimeIntervalSince1970(d / millisecondsOfSecond);
    }

private:
    static constexpr double millisecondsOfSecond = 1000;
    UDateFormat* format_ = nullptr;
};

void NSDateFormatter::describe(ClassDescription<NSDateFormatter, NSFormatter>&) {}
NSDateFormatter::NSDateFormatter() : locale_(NSLocale::currentLocale()) {}
NSDateFormatter::~NSDateFormatter() = default;

NSDateFormatter::NSDateFormatter(NSCoder& coder) : NSFormatter(coder) {
    if (coder.allowsKeyedCoding()) {
        dateStyle_ = static_cast<NSDateFormatterStyle>(coder.decodeIntegerForKey(u"NS.dateStyle"_ns));
        timeStyle_ = static_cast<NSDateFormatterStyle>(coder.decodeIntegerForKey(u"NS.timeStyle"_ns));
        format_ = coder.decodeObjectOf_forKey<NSString>(u"NS.format"_ns);
        zone_ = coder.decodeObjectOf_forKey<NSString>(u"NS.zone"_ns);
        locale_ = coder.decodeObjectOf_forKey<NSLocale>(u"NS.locale"_ns);
    } else {
        dateStyle_ = static_cast<NSDateFormatterStyle>(coder.decodeInteger());
        timeStyle_ = static_cast<NSDateFormatterStyle>(coder.decodeInteger());
        format_ = coder.decodeObjectOf<NSString>();
        zone_ = coder.decodeObjectOf<NSString>();
        locale_ = coder.decodeObjectOf<NSLocale>();
    }
    if (!locale_) locale_ = NSLocale::currentLocale();
}

void NSDateFormatter::encodeWithCoder(NSCoder& coder) const {
    NSFormatter::encodeWithCoder(coder);
    if (coder.allowsKeyedCoding()) {
        coder.encodeInteger_forKey(static_cast<NSInteger>(dateStyle_), u"NS.dateStyle"_ns);
        coder.encodeInteger_forKey(static_cast<NSInteger>(timeStyle_), u"NS.timeStyle"_ns);
        coder.encodeObject_forKey(format_, u"NS.format"_ns);
        coder.encodeObject_forKey(zone_, u"NS.zone"_ns);
        coder.encodeObject_forKey(locale_, u"NS.locale"_ns);
    } else {
        coder.encodeInteger(static_cast<NSInteger>(dateStyle_));
        coder.encodeInteger(static_cast<NSInteger>(timeStyle_));
        coder.encodeObject(format_);
        coder.encodeObject(zone_);
        coder.encodeObject(locale_);
    }
}

Ref<NSObject> NSDateFormatter::copyWithZone() const {
    const Ref<NSObject> made = isa().alloc();
    Ref<NSDateFormatter> f(as<NSDateFormatter>(made));
    if (!f) f = make<NSDateFormatter>(); // a subclass that cannot be made without arguments
    f->dateStyle_ = dateStyle_;
    f->timeStyle_ = timeStyle_;
    f->format_ = format_;
    f->zone_ = zone_;
    f->locale_ = locale_;
    return f;
}

NSDateFormatter::Engine& NSDateFormatter::engine() {
    if (!engine_) engine_ = std::make_unique<Engine>(*this);
    return *engine_;
}
void NSDateFormatter::changed() { engine_ = nullptr; }

void NSDateFormatter::setDateStyle(NSDateFormatterStyle style) {
    dateStyle_ = style;
    changed();
}
void NSDateFormatter::setTimeStyle(NSDateFormatterStyle style) {
    timeStyle_ = style;
    changed();
}
void NSDateFormatter::setDateFormat(const NSString* pattern) {
    format_ = pattern ? NSString::stringWithString(pattern) : nullptr;
    changed();
}
void NSDateFormatter::setLocale(NSLocale* locale) {
    locale_ = locale ? Ref<NSLocale>(locale) : NSLocale::currentLocale();
    changed();
}
void NSDateFormatter::setTimeZoneName(const NSString* zone) {
    zone_ = zone ? NSString::stringWithString(zone) : nullptr;
    changed();
}

Ref<NSString> NSDateFormatter::stringFromDate(const NSDate* d) {
    return d ? engine().text(d->timeIntervalSince1970()) : nullptr;
}
Ref<NSDate> NSDateFormatter::dateFromString(const NSString* s) { return s ? engine().date(*s) : nullptr; }

Ref<NSString> NSDateFormatter::stringForObjectValue(NSObject* value) { return stringFromDate(as<NSDate>(value)); }

BOOL NSDateFormatter::getObjectValue_forString_errorDescription(Ref<NSObject>* value, NSString* string,
                                                                Ref<NSString>* error) {
    bool empty = !string || string->length() == 0;
    Ref<NSDate> d = empty ? nullptr : dateFromString(string);
    if (!d && !empty) {
        if (error) *error = u"Ce texte n’est pas une date."_ns;
        return NO;
    }
    if (value) *value = d;
    return YES;
}

} // namespace libvue
