#include <libvue/text/regex/CSRegex.h>

#include <cstring>
#include <limits>
#include <locale.h>
#include <string>
#include <vector>

#include <libvue/platform/foundation/NSException.h>
#include <libvue/text/regex/LimitesRegex.h>
#include <libvue/text/regex/PlagesRegex.h>

namespace libvue {

static const ClassRegistration<CSRegex> enregistrement;

namespace {

constexpr std::size_t kLongueurMessage = 256;

/// The C library reads characters of several bytes only in a locale that has them, and asks for the locale both when
/// it compiles and when it matches. A process that never calls setlocale runs in "C", where "é" would be two
/// characters, so that "." cuts it and REG_ICASE does not see it. The locale is set for this thread alone, and given
/// back at the end.
class LocaleUTF8 {
public:
    LocaleUTF8() noexcept : avant_(locale() ? uselocale(locale()) : locale_t{}) {}
    ~LocaleUTF8() {
        if (avant_) uselocale(avant_);
    }
    LocaleUTF8(const LocaleUTF8&) = delete;
    LocaleUTF8& operator=(const LocaleUTF8&) = delete;

private:
    /// Made once, kept by the process. Null on a system without any UTF-8 locale: then the process's own serves.
    static locale_t locale() noexcept {
        static const locale_t kept = [] {
            for (const char* nom : {"C.UTF-8", "C.utf8", "fr_CA.UTF-8", "fr_FR.UTF-8", "en_US.UTF-8"})
                if (const locale_t l = newlocale(LC_CTYPE_MASK, nom, locale_t{})) return l;
            return locale_t{};
        }();
        return kept;
    }
    locale_t avant_;
};

[[noreturn]] void refuse(const NSString* pattern, int code, const regex_t* preg) {
    char message[kLongueurMessage];
    {
        const LocaleUTF8 utf8;
        regerror(code, preg, message, sizeof message);
    }
    NSException::raise_format(CSRegexException, u"Could not compile regex \"%@\": %s"_ns, pattern, message);
}

Ref<NSString> partie(const char* texte, const regmatch_t& m) {
    return NSString::fromUTF8({texte + m.rm_so, static_cast<std::size_t>(m.rm_eo - m.rm_so)});
}

} // namespace

void CSRegex::describe(ClassDescription<CSRegex>&) {}

CSRegex::CSRegex(const NSString* pattern, int options) {
    if (!pattern) raiseNamed(NSInvalidArgumentException, "CSRegex: a pattern is needed");
    const char* const motif = pattern->UTF8String();
    if (!detail::estRaisonnable(motif)) refuse(pattern, REG_ESPACE, nullptr);
    int code;
    {
        const LocaleUTF8 utf8;
        code = regcomp(&preg_, motif, options | REG_EXTENDED);
        // A locale without an order of its own has ranges of ASCII alone: "[à-ÿ]" is written out for it.
        if (code == REG_ECOLLATE) {
            const std::string developpe = detail::plagesDeveloppees(motif);
            if (developpe != motif) code = regcomp(&preg_, developpe.c_str(), options | REG_EXTENDED);
        }
    }
    if (code != 0) refuse(pattern, code, &preg_);
}

CSRegex::~CSRegex() { regfree(&preg_); }

Ref<CSRegex> CSRegex::regexWithPattern_options(const NSString* pattern, int options) {
    return make<CSRegex>(pattern, options);
}

Ref<CSRegex> CSRegex::regexWithPattern(const NSString* pattern) { return make<CSRegex>(pattern, 0); }

NSString* CSRegex::null() {
    static NSString* const vide = keptForever(NSString::string());
    return vide;
}

bool CSRegex::execute(const char* text, std::size_t count, regmatch_t* matches) const {
    if (std::strlen(text) > static_cast<std::size_t>(std::numeric_limits<regoff_t>::max()) - 1) return false;
    const LocaleUTF8 utf8;
    return regexec(&preg_, text, count, matches, 0) == 0;
}

BOOL CSRegex::matchesString(const NSString* s) const { return s && execute(s->UTF8String(), 0, nullptr); }

Ref<NSString> CSRegex::matchedSubstringOfString(const NSString* s) const {
    if (!s) return nullptr;
    const char* const texte = s->UTF8String();
    regmatch_t m{};
    if (!execute(texte, 1, &m)) return nullptr;
    return partie(texte, m);
}

Ref<NSArray> CSRegex::capturedSubstringsOfString(const NSString* s) const {
    if (!s) return nullptr;
    const char* const texte = s->UTF8String();
    std::vector<regmatch_t> matches(preg_.re_nsub + 1, regmatch_t{});
    if (!execute(texte, matches.size(), matches.data())) return nullptr;
    std::vector<Ref<NSString>> parties;
    parties.reserve(matches.size());
    for (const regmatch_t& m : matches)
        parties.push_back(m.rm_so != -1 || m.rm_eo != -1 ? partie(texte, m) : Ref<NSString>(null()));
    return NSArray::arrayWithRefs(parties);
}

} // namespace libvue
