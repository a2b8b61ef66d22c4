#include <libvue/platform/foundation/NSLocale.h>

#include <cstdlib>

#include <unicode/uloc.h>

#include <libvue/platform/foundation/Languages.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

const ClassRegistration<NSLocale> registration;

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

Ref<NSString> NSLocale::countryCode() const {
    UErrorCode status = U_ZERO_ERROR;
    char text[ULOC_COUNTRY_CAPACITY];
    const int32_t n = uloc_getCountry(identifier_->UTF8String(), text, sizeof text, &status);
    return U_SUCCESS(status) && n > 0 ? NSString::fromUTF8({text, static_cast<std::size_t>(n)}) : nullptr;
}

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
