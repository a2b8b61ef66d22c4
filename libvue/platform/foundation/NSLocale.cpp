#include <libvue/platform/foundation/NSLocale.h>

#include <cstdlib>

#include <unicode/uloc.h>
#include <unicode/unum.h>

#include <libvue/platform/foundation/Languages.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

const ClassRegistration<NSLocale> registration;

Ref<NSString> symbolOf(const NSLocale& locale, UNumberFormatSymbol symbol) {
    UErrorCode status = U_ZERO_ERROR;
    UNumberFormat* f = unum_open(UNUM_DECIMAL, nullptr, 0, locale.localeIdentifier()->UTF8String(), nullptr, &status);
    UChar text[16];
    int32_t n = U_SUCCESS(status) ? unum_getSymbol(f, symbol, text, 16, &status) : 0;
    unum_close(f);
    if (U_FAILURE(status) || n > 16) return NSString::string();
    return NSString::from({text, static_cast<std::size_t>(n)});
}

using Part = int32_t (*)(const char*, char*, int32_t, UErrorCode*);

Ref<NSString> partOf(const NSLocale& locale, Part part) {
    UErrorCode status = U_ZERO_ERROR;
    char text[ULOC_FULLNAME_CAPACITY];
    int32_t n = part(locale.localeIdentifier()->UTF8String(), text, sizeof text, &status);
    return U_SUCCESS(status) && n > 0 ? NSString::fromUTF8({text, static_cast<std::size_t>(n)}) : nullptr;
}

} // namespace

void NSLocale::describe(ClassDescription<NSLocale>&) {}

NSLocale::NSLocale(const NSString* identifier)
    : identifier_(identifier ? NSString::stringWithString(identifier) : u"fr"_ns) {}

NSLocale::NSLocale(NSCoder& coder)
    : identifier_(coder.allowsKeyedCoding() ? coder.decodeObjectOf_forKey<NSString>(u"NS.identifier"_ns)
                                            : coder.decodeObjectOf<NSString>()) {
    if (!identifier_) identifier_ = u"fr"_ns;
}

NSLocale::~NSLocale() = default;

Ref<NSLocale> NSLocale::localeWithLocaleIdentifier(const NSString* identifier) { return make<NSLocale>(identifier); }

Ref<NSLocale> NSLocale::currentLocale() {
    for (const char* variable : {"LC_ALL", "LC_NUMERIC", "LANG"})
        if (const char* v = std::getenv(variable); v && *v) {
            auto name = bareLocale(v);
            return make<NSLocale>(name.empty() ? u"fr"_ns : NSString::fromUTF8(name));
        }
    return make<NSLocale>(u"fr"_ns);
}

Ref<NSLocale> NSLocale::systemLocale() { return make<NSLocale>(u"en_US_POSIX"_ns); }

Ref<NSArray> NSLocale::preferredLanguages() {
    auto all = NSMutableArray::array();
    for (auto language : userLanguages()) {
        for (char& c : language)
            if (c == '_') c = '-';
        all->addObject(NSString::fromUTF8(language));
    }
    return all;
}

Ref<NSString> NSLocale::languageCode() const {
    auto code = partOf(*this, uloc_getLanguage);
    return code ? code : NSString::string();
}
Ref<NSString> NSLocale::countryCode() const { return partOf(*this, uloc_getCountry); }
Ref<NSString> NSLocale::decimalSeparator() const { return symbolOf(*this, UNUM_DECIMAL_SEPARATOR_SYMBOL); }
Ref<NSString> NSLocale::groupingSeparator() const { return symbolOf(*this, UNUM_GROUPING_SEPARATOR_SYMBOL); }

BOOL NSLocale::isEqual(const NSObject* other) const {
    auto* l = dynamic_cast<const NSLocale*>(other);
    return l && l->identifier_->isEqual(identifier_);
}
NSUInteger NSLocale::hash() const { return identifier_->hash(); }
Ref<NSObject> NSLocale::copyWithZone() const { return Ref<NSObject>(const_cast<NSLocale*>(this)); }

void NSLocale::encodeWithCoder(NSCoder& coder) const {
    if (coder.allowsKeyedCoding())
        coder.encodeObject_forKey(identifier_, u"NS.identifier"_ns);
    else
        coder.encodeObject(identifier_);
}

} // namespace libvue
