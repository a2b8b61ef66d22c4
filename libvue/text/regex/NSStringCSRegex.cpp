#include <libvue/text/regex/NSStringCSRegex.h>

#include <string_view>

#include <libvue/platform/foundation/ClassExtension.h>
#include <libvue/platform/foundation/StringUnits.h>
#include <libvue/text/regex/CSRegex.h>

namespace libvue {

namespace {

const ClassExtension<NSString> extension([](ClassExtension<NSString>::Description& c) {
    c.answers<&matchedByPattern_options>("matchedByPattern:options:");
    c.answers<&matchedByPattern>("matchedByPattern:");
    c.answers<&substringMatchedByPattern_options>("substringMatchedByPattern:options:");
    c.answers<&substringMatchedByPattern>("substringMatchedByPattern:");
    c.answers<&substringsCapturedByPattern_options>("substringsCapturedByPattern:options:");
    c.answers<&substringsCapturedByPattern>("substringsCapturedByPattern:");
    c.answers<&escapedPattern>("escapedPattern");
});

/// ] and } mean nothing by themselves, so they are not among them.
constexpr std::u16string_view kSpeciaux = u"$()*+.?[\\^{|";

} // namespace

BOOL matchedByPattern_options(const NSString* s, const NSString* pattern, int options) {
    return s && CSRegex::regexWithPattern_options(pattern, options | REG_NOSUB)->matchesString(s);
}

BOOL matchedByPattern(const NSString* s, const NSString* pattern) { return matchedByPattern_options(s, pattern, 0); }

Ref<NSString> substringMatchedByPattern_options(const NSString* s, const NSString* pattern, int options) {
    if (!s) return nullptr;
    return CSRegex::regexWithPattern_options(pattern, options)->matchedSubstringOfString(s);
}

Ref<NSString> substringMatchedByPattern(const NSString* s, const NSString* pattern) {
    return substringMatchedByPattern_options(s, pattern, 0);
}

Ref<NSArray> substringsCapturedByPattern_options(const NSString* s, const NSString* pattern, int options) {
    if (!s) return nullptr;
    return CSRegex::regexWithPattern_options(pattern, options)->capturedSubstringsOfString(s);
}

Ref<NSArray> substringsCapturedByPattern(const NSString* s, const NSString* pattern) {
    return substringsCapturedByPattern_options(s, pattern, 0);
}

Ref<NSString> escapedPattern(const NSString* s) {
    if (!s) return nullptr;
    const detail::WideUnits unites(*s);
    std::u16string motif;
    motif.reserve(unites.size() + 8);
    for (const unichar c : unites.view()) {
        if (kSpeciaux.find(c) != std::u16string_view::npos) motif += u'\\';
        motif += c;
    }
    return NSString::from(motif);
}

} // namespace libvue
