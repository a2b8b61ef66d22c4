#pragma once

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// A language and a country, such as "fr_CA". Immutable.
class LIBVUE_API NSLocale : public NSObject {
public:
    static void describe(ClassDescription<NSLocale>& c);
    /// Any text; an unknown one behaves as the nearest locale known. Null is "fr".
    explicit NSLocale(const NSString* identifier);
    explicit NSLocale(NSCoder& coder);
    ~NSLocale() override;

    [[nodiscard]] static Ref<NSLocale> localeWithLocaleIdentifier(const NSString* identifier);
    /// From LC_ALL, LC_NUMERIC's kin and LANG; "fr" where they say nothing.
    [[nodiscard]] static Ref<NSLocale> currentLocale();

    [[nodiscard]] NSString* localeIdentifier() const noexcept { return identifier_; }
    /// Null where there is none.
    [[nodiscard]] Ref<NSString> countryCode() const;

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;

private:
    Ref<NSString> identifier_;
};

} // namespace libvue
