#include <algorithm>
#include <string>

#include <unicode/unorm2.h>
#include <unicode/ustring.h>

#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/StringBuilder.h>
#include <libvue/platform/foundation/StringFolding.h>
#include <libvue/platform/foundation/StringUnits.h>

namespace libvue {

namespace {

/// Runs an ICU operation (source, length, destination, capacity, status) on the units; null where ICU fails.
template <class Operation> Ref<NSString> transform(std::u16string_view units, Operation operation) {
    std::u16string out(units.size() + units.size() / 4 + 16, u'\0');
    for (int attempt = 0; attempt < 2; ++attempt) {
        UErrorCode status = U_ZERO_ERROR;
        const std::int32_t size = operation(units.data(), static_cast<std::int32_t>(units.size()), out.data(),
                                            static_cast<std::int32_t>(out.size()), &status);
        if (size > static_cast<std::int32_t>(out.size())) {
            out.resize(static_cast<std::size_t>(size));
            continue;
        }
        if (U_FAILURE(status)) return nullptr;
        return NSString::from({out.data(), static_cast<std::size_t>(size)});
    }
    return nullptr;
}

enum class Form { nfc, nfd, nfkc, nfkd };

const UNormalizer2* normalizer(Form form) {
    UErrorCode status = U_ZERO_ERROR;
    switch (form) {
    case Form::nfc:
        return unorm2_getNFCInstance(&status);
    case Form::nfd:
        return unorm2_getNFDInstance(&status);
    case Form::nfkc:
        return unorm2_getNFKCInstance(&status);
    case Form::nfkd:
        return unorm2_getNFKDInstance(&status);
    }
    return nullptr;
}

/// Null where the text is in that form already, which needs no looking at for ASCII, nor at composed forms for Latin-1.
Ref<NSString> normalized(const NSString& s, Form form) {
    if (const std::uint8_t* narrow = s.latin1Contents())
        if (form == Form::nfc || detail::isASCII(narrow, s.length())) return nullptr;
    const UNormalizer2* n = normalizer(form);
    if (!n) return nullptr;
    const detail::WideUnits units(s);
    return transform(units.view(), [n](auto... a) { return unorm2_normalize(n, a...); });
}

std::uint8_t lowerLatin1(std::uint8_t c) { return detail::foldLatin1(c); }
std::uint8_t upperLatin1(std::uint8_t c) {
    const bool lower = (c >= 'a' && c <= 'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7);
    return static_cast<std::uint8_t>(lower ? c - 0x20 : c);
}
/// These have a capital form out of Latin-1.
bool leavesLatin1(std::uint8_t c) { return c == 0xB5 || c == 0xDF || c == 0xFF; }

Ref<NSString> mapLatin1(const std::uint8_t* units, std::size_t count, std::uint8_t (*map)(std::uint8_t)) {
    std::string out(count, '\0');
    std::transform(units, units + count, out.begin(), [map](std::uint8_t c) { return static_cast<char>(map(c)); });
    return NSString::fromLatin1(out);
}

} // namespace

Ref<NSString> NSString::lowercaseString() const {
    if (const std::uint8_t* narrow = latin1Contents()) return mapLatin1(narrow, length_, lowerLatin1);
    Ref<NSString> s =
        transform({units16(), length_}, [](const UChar* from, std::int32_t n, UChar* to, std::int32_t room,
                                           UErrorCode* status) { return u_strToLower(to, room, from, n, "", status); });
    return s ? s : immutable();
}

Ref<NSString> NSString::uppercaseString() const {
    if (const std::uint8_t* narrow = latin1Contents())
        if (std::none_of(narrow, narrow + length_, leavesLatin1)) return mapLatin1(narrow, length_, upperLatin1);
    const detail::WideUnits units(*this);
    Ref<NSString> s =
        transform(units.view(), [](const UChar* from, std::int32_t n, UChar* to, std::int32_t room,
                                   UErrorCode* status) { return u_strToUpper(to, room, from, n, "", status); });
    return s ? s : immutable();
}

Ref<NSString> NSString::capitalizedString() const {
    const detail::WideUnits units(*this);
    Ref<NSString> s = transform(
        units.view(), [](const UChar* from, std::int32_t n, UChar* to, std::int32_t room, UErrorCode* status) {
            return u_strToTitle(to, room, from, n, nullptr, "", status);
        });
    return s ? s : immutable();
}

Ref<NSString> NSString::decomposedStringWithCanonicalMapping() const {
    Ref<NSString> s = normalized(*this, Form::nfd);
    return s ? s : immutable();
}

Ref<NSString> NSString::precomposedStringWithCanonicalMapping() const {
    Ref<NSString> s = normalized(*this, Form::nfc);
    return s ? s : immutable();
}

Ref<NSString> NSString::decomposedStringWithCompatibilityMapping() const {
    Ref<NSString> s = normalized(*this, Form::nfkd);
    return s ? s : immutable();
}

Ref<NSString> NSString::precomposedStringWithCompatibilityMapping() const {
    Ref<NSString> s = normalized(*this, Form::nfkc);
    return s ? s : immutable();
}

Ref<NSString> NSString::stringByFoldingWithOptions(NSUInteger options) const {
    options &= detail::foldingOptions;
    if (!options) return immutable();
    const detail::FoldedText folded(*this, {0, length_}, options);
    return from(folded.units)->precomposedStringWithCanonicalMapping();
}

} // namespace libvue
