#pragma once

#include <regex.h>

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/text/regex/Forward.h>

namespace libvue {

/// Raised by a pattern that does not compile.
inline constexpr ConstantString CSRegexException{u"CSRegexException"};

/// A regular expression of the C library, always of the extended kind. The flags are the C library's own:
/// REG_ICASE, REG_NOSUB, REG_NEWLINE.
///
/// Patterns and texts are read as UTF-8, character by character, whatever the locale of the process; ranges between
/// brackets go by code point. Both are read like any text of the C library: an embedded NUL ends them, and a lone
/// surrogate counts as U+FFFD. A null text matches nothing, and so does one of more bytes than the C library can number
/// (2 GiB).
class LIBVUE_API CSRegex : public NSObject {
public:
    static void describe(ClassDescription<CSRegex>& c);
    /// Raises CSRegexException for a pattern that the C library refuses, or that is nested more deeply, or repeats more
    /// often, than it can bear; NSInvalidArgumentException for null.
    CSRegex(const NSString* pattern, int options);
    ~CSRegex() override;
    [[nodiscard]] static Ref<CSRegex> regexWithPattern_options(const NSString* pattern, int options);
    [[nodiscard]] static Ref<CSRegex> regexWithPattern(const NSString* pattern);

    /// The empty text that stands for a group which took no part in a match: always this very object, which no
    /// group that matched the empty text shares. Owned by the process.
    [[nodiscard]] static NSString* null();

    [[nodiscard]] BOOL matchesString(const NSString* s) const;
    /// The first and longest match; null where there is none. With REG_NOSUB a match reads as the empty text.
    [[nodiscard]] Ref<NSString> matchedSubstringOfString(const NSString* s) const;
    /// The whole match, then each group in the order of the opening parentheses, null() for those that took no part;
    /// null where there is no match. With REG_NOSUB they are all empty.
    [[nodiscard]] Ref<NSArray> capturedSubstringsOfString(const NSString* s) const;

private:
    [[nodiscard]] bool execute(const char* text, std::size_t count, regmatch_t* matches) const;

    regex_t preg_;
};

} // namespace libvue
