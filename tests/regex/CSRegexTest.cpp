#include <clocale>
#include <locale.h>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <libvue/platform/foundation/NSException.h>
#include <libvue/text/regex/CSRegex.h>
#include <libvue/text/regex/NSStringCSRegex.h>

namespace libvue {
namespace {

using namespace std::string_literals;

/// The reason of the CSRegexException that a pattern raises; absent where it compiles.
std::optional<std::string> refus(const NSString* motif, int options = 0) {
    try {
        (void)make<CSRegex>(motif, options);
    } catch (const NSExceptionRaised& e) {
        EXPECT_EQ(e.exception->name()->utf8(), "CSRegexException");
        return e.exception->reason()->utf8();
    }
    return std::nullopt;
}

std::string enUTF8(const Ref<NSString>& s) { return s ? s->utf8() : "(null)"; }

/// "whole|group|…", with (null) for a group that took no part.
std::string captures(const NSString* s, const NSString* motif, int options = 0) {
    const Ref<NSArray> a = substringsCapturedByPattern_options(s, motif, options);
    if (!a) return "(none)";
    std::string tout;
    for (NSUInteger i = 0; i < a->count(); ++i) {
        const auto* partie = as<NSString>(a->objectAtIndex(i));
        tout += (i ? "|" : "") + (partie == CSRegex::null() ? "(null)"s : partie->utf8());
    }
    return tout;
}

TEST(CSRegexTest, matches) {
    struct Cas {
        const char16_t *texte, *motif;
        int options;
        const char* attendu; // null: no match
    };
    for (const auto& [texte, motif, options, attendu] : {
             Cas{u"abc", u"b+", 0, "b"},
             {u"aXbbXb", u"b+|bb", 0, "bb"}, // the first, then the longest
             {u"xabcabcx", u"(abc|abcabc)", 0, "abcabc"},
             {u"", u"^$", 0, ""},
             {u"", u".", 0, nullptr},
             {u"ABC", u"b", 0, nullptr},
             {u"ABC", u"b", REG_ICASE, "B"},
             {u"a\nb", u"a.b", 0, "a\nb"},
             {u"a\nb", u"a.b", REG_NEWLINE, nullptr},
             {u"a\nb", u"^b$", 0, nullptr},
             {u"a\nb", u"^b$", REG_NEWLINE, "b"},
             // Characters, not bytes.
             {u"été", u"^...$", 0, "été"},
             {u"né à Noël", u"[é-ï]l", 0, "ël"},
             {u"né à Noël", u"[[:alpha:]]+l", 0, "Noël"},
             // Ranges beyond ASCII, among everything else that stands between brackets.
             {u"Où est l'été?", u"[a-zà-ÿ]+$|[a-zà-ÿ]{3}", 0, "est"},
             {u"dÉjà", u"[à-é]+", REG_ICASE, "É"},
             {u"x-é]", u"[]é-ï-]+", 0, "-é]"},
             {u"x-é]", u"[^]é-ï-]+", 0, "x"},
             {u"7\u00E6[", u"[[:digit:]à-ç[]+", 0, "7\u00E6["},
             {u"a]^é€", u"[]-€]+", 0, "a]^é€"},
             {u"Zé€", u"[^[-é]+", 0, "Z"},
             {u"\\é", u"[\\à-é]+", 0, "\\é"},
             {u"[é-ï]", u"\\[é-ï]", 0, "[é-ï]"},
             {u"x\U0001F601y", u"[\U0001F600-\U0001F602]", 0, "\U0001F601"},
             {u"ÉTÉ", u"été", REG_ICASE, "ÉTÉ"},
             {u"a\U0001F600b", u"^a.b$", 0, "a\U0001F600b"},
             {u"l’été", u"[’'](.*)", 0, "’été"},
         }) {
        const Ref<NSString> s = NSString::from(texte), p = NSString::from(motif);
        const std::string cas = s->utf8() + " / " + p->utf8();
        EXPECT_EQ(matchedByPattern_options(s, p, options), attendu != nullptr) << cas;
        EXPECT_EQ(enUTF8(substringMatchedByPattern_options(s, p, options)), attendu ? attendu : "(null)") << cas;
    }
}

TEST(CSRegexTest, captures) {
    EXPECT_EQ(captures(u"né le 3 août 1990"_ns, u"([0-9]+) ([^ ]+) ([0-9]+)"_ns), "3 août 1990|3|août|1990");
    EXPECT_EQ(captures(u"ab"_ns, u"(x)?(a)(y*)b"_ns), "ab|(null)|a|");
    EXPECT_EQ(captures(u"ab"_ns, u"(b)|(a)"_ns), "a|(null)|a");
    EXPECT_EQ(captures(u"été"_ns, u"((é)t)(é)"_ns), "été|ét|é|é");
    EXPECT_EQ(captures(u"aXY"_ns, u"(x)(y)"_ns, REG_ICASE), "XY|X|Y");
    EXPECT_EQ(captures(u"ab"_ns, u"c"_ns), "(none)");
    // Places are not asked for, so there are none to cut at.
    EXPECT_EQ(captures(u"ab"_ns, u"(a)(b)"_ns, REG_NOSUB), "||");
    EXPECT_EQ(enUTF8(substringMatchedByPattern_options(u"ab"_ns, u"b"_ns, REG_NOSUB)), "");
}

TEST(CSRegexTest, oneObjectStandsForEveryGroupThatTookNoPart) {
    const Ref<CSRegex> r = CSRegex::regexWithPattern(u"(x)?(y)?a(b*)"_ns);
    const Ref<NSArray> a = r->capturedSubstringsOfString(u"a"_ns);
    ASSERT_EQ(a->count(), 4u);
    EXPECT_EQ(a->objectAtIndex(1), CSRegex::null());
    EXPECT_EQ(a->objectAtIndex(2), CSRegex::null());
    EXPECT_NE(a->objectAtIndex(3), CSRegex::null());
    EXPECT_EQ(as<NSString>(a->objectAtIndex(3))->length(), 0u);
    EXPECT_NE(r->matchedSubstringOfString(u"a"_ns), CSRegex::null());
    // The same expression again, after other texts.
    EXPECT_EQ(r->capturedSubstringsOfString(u"zz"_ns), nullptr);
    EXPECT_EQ(as<NSString>(r->capturedSubstringsOfString(u"xab"_ns)->objectAtIndex(1))->utf8(), "x");
}

TEST(CSRegexTest, aBadPatternRaises) {
    const Ref<NSString> motif = u"l’(été"_ns;
    const std::optional<std::string> raison = refus(motif);
    ASSERT_TRUE(raison);
    const std::string debut = "Could not compile regex \"l’(été\": ";
    EXPECT_EQ(raison->substr(0, debut.size()), debut);
    EXPECT_GT(raison->size(), debut.size());
    for (const char16_t* m : {u"(", u"[", u"[a", u"a{2,1}", u"[[:lettre:]]", u"\\", u"[é-à]", u"[à-é",
                              u"[\u0100-\U0010FFFF]", u"[à-é][é-à]"})
        EXPECT_TRUE(refus(NSString::from(m))) << NSString::from(m)->utf8();
    EXPECT_FALSE(refus(u"a]}"_ns));
    // Out of the one-line forms too, whatever the text.
    EXPECT_THROW((void)matchedByPattern(u""_ns, u"("_ns), NSExceptionRaised);
    EXPECT_THROW((void)substringMatchedByPattern(u""_ns, u"("_ns), NSExceptionRaised);
    EXPECT_THROW((void)substringsCapturedByPattern(u""_ns, u"("_ns), NSExceptionRaised);
    EXPECT_THROW((void)CSRegex::regexWithPattern(nullptr), NSExceptionRaised);
}

TEST(CSRegexTest, whatTheLibraryWouldNotEndIsRefused) {
    const auto fois = [](std::size_t n, const std::string& s) {
        std::string tout;
        while (n--)
            tout += s;
        return tout;
    };
    const struct {
        std::string motif;
        bool refuse;
    } rows[] = {
        {fois(500, "(") + "a" + fois(500, ")"), false},
        {fois(100000, "(") + "a" + fois(100000, ")"), true},
        {"a" + fois(3000, "|mot"), false},
        {"a" + fois(100000, "|x"), true},
        {fois(3000, "(b)\\("), false},
        // Each + copies what stands before it, and each number copies as often.
        {"a" + fois(6, "+"), false},
        {"a" + fois(40, "+"), true},
        {"a{1,255}", false},
        {"(a{1,255}){1,255}", true},
        {"((a|b){16}){16}", false},
        {"(((a{100}){100}){100}){100}", true},
        {"((x*){1,200}(y?){1,200}){40}", true},
        // What only looks like that.
        {"[" + fois(40, "+") + "]", false},
        {"[]+{9}[:alpha:](*]{3}", false},
        {"a" + fois(40, "\\+"), false},
        {fois(9, "a{200}"), false},
        {fois(9, "(a*){100}\\{200}"), false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(refus(NSString::fromLatin1(row.motif)).has_value(), row.refuse) << row.motif.substr(0, 60);
    EXPECT_TRUE(matchedByPattern(u"motmot"_ns, NSString::fromLatin1("^(a" + fois(3000, "|mot") + "){2}$")));
}

TEST(CSRegexTest, textsEndAtANulAndLoneSurrogatesAreReplaced) {
    const Ref<NSString> nul = NSString::from(u"ab\0cd"s), seul = NSString::from(u"é\xD800z"s);
    EXPECT_TRUE(matchedByPattern(nul, u"^ab$"_ns));
    EXPECT_FALSE(matchedByPattern(nul, u"c"_ns));
    EXPECT_TRUE(matchedByPattern(u"xab"_ns, NSString::from(u"ab\0(("s)));
    EXPECT_EQ(captures(seul, u"^é(.)z$"_ns), "é\uFFFDz|\uFFFD");
    EXPECT_TRUE(matchedByPattern(NSString::from(u"\xDC00"s), NSString::from(u"^\xD800$"s)));
    EXPECT_FALSE(matchedByPattern(nullptr, u"a"_ns));
    EXPECT_EQ(substringMatchedByPattern(nullptr, u"a"_ns), nullptr);
    EXPECT_EQ(substringsCapturedByPattern(nullptr, u"a"_ns), nullptr);
    const Ref<CSRegex> r = CSRegex::regexWithPattern(u"a*"_ns);
    EXPECT_FALSE(r->matchesString(nullptr));
    EXPECT_EQ(r->matchedSubstringOfString(nullptr), nullptr);
    EXPECT_EQ(r->capturedSubstringsOfString(nullptr), nullptr);
}

TEST(CSRegexTest, theLocaleOfTheProcessPlaysNoPartAndStays) {
    const Ref<NSString> texte = u"ÉTÉ"_ns, motif = u"^é.é$"_ns;
    const std::string avant = std::setlocale(LC_ALL, nullptr);
    for (const char* nom : {"C", "C.UTF-8"}) {
        ASSERT_NE(std::setlocale(LC_ALL, nom), nullptr) << nom;
        EXPECT_EQ(enUTF8(substringMatchedByPattern_options(texte, motif, REG_ICASE)), "ÉTÉ") << nom;
        EXPECT_EQ(std::setlocale(LC_ALL, nullptr), std::string(nom));
        EXPECT_EQ(uselocale(locale_t{}), LC_GLOBAL_LOCALE);
    }
    std::setlocale(LC_ALL, avant.c_str());
    // A locale that this thread alone has is back afterwards, even from a pattern that raises.
    const locale_t propre = newlocale(LC_ALL_MASK, "C", locale_t{});
    uselocale(propre);
    EXPECT_TRUE(matchedByPattern_options(texte, motif, REG_ICASE));
    EXPECT_TRUE(refus(u"("_ns));
    const locale_t apres = uselocale(LC_GLOBAL_LOCALE);
    freelocale(propre);
    EXPECT_EQ(apres, propre);
}

TEST(CSRegexTest, escapedPatterns) {
    for (const auto& [texte, attendu] : std::vector<std::pair<std::u16string, std::u16string>>{
             {u"a.b", u"a\\.b"},
             {u"", u""},
             {u"$()*+.?[\\^{|", u"\\$\\(\\)\\*\\+\\.\\?\\[\\\\\\^\\{\\|"},
             {u"]}-/\"'#&~", u"]}-/\"'#&~"},
             {u"l’été\xD800\U0001F600", u"l’été\xD800\U0001F600"},
             {u"a\0."s, u"a\0\\."s},
         }) {
        const Ref<NSString> s = NSString::from(texte);
        const Ref<NSString> motif = escapedPattern(s);
        EXPECT_EQ(motif->utf16(), attendu);
        if (texte.find(u'\0') == std::u16string::npos) {
            EXPECT_TRUE(matchedByPattern(s, u"^"_ns->stringByAppendingString(motif)->stringByAppendingString(u"$"_ns)));
        }
    }
    EXPECT_EQ(escapedPattern(nullptr), nullptr);
}

} // namespace
} // namespace libvue
