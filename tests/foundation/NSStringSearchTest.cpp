#include "Textes.h"

#include <algorithm>
#include <vector>

#include <libvue/platform/foundation/NSCharacterSet.h>

using namespace libvue;
using namespace libvue::textes;

TEST(NSStringSearchTest, ranges) {
    constexpr NSUInteger i = NSCaseInsensitiveSearch, l = NSLiteralSearch, b = NSBackwardsSearch, a = NSAnchoredSearch,
                         d = NSDiacriticInsensitiveSearch, w = NSWidthInsensitiveSearch;
    const struct {
        const char16_t* in;
        const char16_t* what;
        NSUInteger options;
        NSRange found;
    } rows[] = {
        {u"abc", u"", 0, notFound},
        {u"", u"a", 0, notFound},
        {u"ab", u"abc", 0, notFound},
        {u"abcabc", u"bc", 0, {1, 2}},
        {u"abcabc", u"bc", b, {4, 2}},
        {u"abcabc", u"abc", a, {0, 3}},
        {u"abcabc", u"bc", a, notFound},
        {u"aaaa", u"aa", b, {2, 2}},
        {u"abc", u"BC", 0, notFound},
        {u"abc", u"BC", i, {1, 2}},
        {u"\u00C9COLE", u"\u00E9cole", i, {0, 5}},
        {u"\u00D7", u"\u00F7", i, notFound}, // the signs are no two cases of one letter
        // Canonical equivalence, unless the search is literal.
        {u"caf\u00E9", u"e\u0301", 0, {3, 1}},
        {u"cafe\u0301!", u"\u00E9", 0, {3, 2}},
        {u"cafe\u0301!", u"\u00E9", l, notFound},
        {u"caf\u00E9", u"\u00C9", i | l, {3, 1}},
        // Half a character is never found.
        {u"cafe\u0301", u"e", 0, notFound},
        {u"cafe\u0301", u"e", l, {3, 1}},
        {u"e\u0301e", u"e", 0, {2, 1}},
        {u"ee\u0301", u"e", b, {0, 1}},
        {u"\u1EC7", u"e\u0323\u0302", 0, {0, 1}},
        {u"e\u0302\u0323", u"\u1EC7", 0, {0, 3}}, // the order of marks does not matter
        // Diacritics and width.
        {u"\u00C9l\u00E8ve", u"eleve", d | i, {0, 5}},
        {u"\u00C9l\u00E8ve", u"eleve", d, notFound},
        {u"xe\u0301\u0323y", u"e", d, {1, 3}},
        {u"\uFF21\uFF22", u"AB", w, {0, 2}},
        {u"\uFF21\uFF22", u"ab", w | i, {0, 2}},
        // Letters whose other case is longer.
        {u"Stra\u00DFe", u"STRASSE", i, {0, 6}},
        {u"Stra\u00DFe", u"s", i | b, {0, 1}},
        {u"MASSE", u"\u00DF", i, {2, 2}},
        {u"\u212A", u"k", i, {0, 1}},
        {u"\u0130", u"i", i | d, {0, 1}},
        // Lone surrogates and pairs.
        {u"a\xD83D", u"\xD83D", 0, {1, 1}},
        {u"\U0001F600\U0001F601", u"\U0001F601", 0, {2, 2}},
        {u"\U0001F600", u"\xDE00", 0, notFound},
        {u"\U0001F600", u"\xDE00", l, {1, 1}},
        {u"\U0001F600e\u2019e\u0301", u"e", b, {2, 1}},
        {u"\U00010400", u"\U00010428", i, {0, 2}},
        {u"\U0001D15E", u"\U0001D157\U0001D165", 0, {0, 2}}, // a decomposition out of the BMP
        {u"\uAC00", u"\u1100\u1161", 0, {0, 1}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(text(row.in)->rangeOfString_options(text(row.what), row.options), row.found)
            << shown(row.what) << " in " << shown(row.in) << " with " << row.options;
}

TEST(NSStringSearchTest, aRangeLimitsTheSearch) {
    const Ref<NSString> s = text(u"abcabcabc");
    EXPECT_EQ(s->rangeOfString_options_range(text(u"abc"), 0, {1, 8}), (NSRange{3, 3}));
    EXPECT_EQ(s->rangeOfString_options_range(text(u"abc"), NSBackwardsSearch, {0, 8}), (NSRange{3, 3}));
    EXPECT_EQ(s->rangeOfString_options_range(text(u"abc"), NSAnchoredSearch, {3, 6}), (NSRange{3, 3}));
    EXPECT_EQ(s->rangeOfString_options_range(text(u"a"), 0, {9, 0}), notFound);
    // The places found in the folded form are those of the text.
    const Ref<NSString> folded = text(u"\u00DF\u00DFe\u0301x\u00C9");
    EXPECT_EQ(folded->rangeOfString_options_range(text(u"\u00E9"), NSCaseInsensitiveSearch, {1, 5}), (NSRange{2, 2}));
    EXPECT_EQ(folded->rangeOfString_options_range(text(u"\u00E9"), NSCaseInsensitiveSearch, {4, 2}), (NSRange{5, 1}));
}

TEST(NSStringSearchTest, charactersOfASet) {
    const Ref<NSCharacterSet> set = NSCharacterSet::characterSetWithCharactersInString(text(u"x\U0001F600"));
    const Ref<NSString> s = text(u"a\U0001F600bxc");
    EXPECT_EQ(s->rangeOfCharacterFromSet(set), (NSRange{1, 2}));
    EXPECT_EQ(s->rangeOfCharacterFromSet_options(set, NSBackwardsSearch), (NSRange{4, 1}));
    EXPECT_EQ(s->rangeOfCharacterFromSet_options(set, NSAnchoredSearch), notFound);
    EXPECT_EQ(s->rangeOfCharacterFromSet_options_range(set, NSAnchoredSearch | NSBackwardsSearch, {0, 3}),
              (NSRange{1, 2}));
    // Half a pair is not the pair.
    EXPECT_EQ(s->rangeOfCharacterFromSet_options_range(set, 0, {2, 2}), notFound);
    EXPECT_EQ(s->rangeOfCharacterFromSet_options_range(set, NSBackwardsSearch, {0, 2}), notFound);
}

TEST(NSStringSearchTest, replacingKeepsWhatIsBetween) {
    const struct {
        const char16_t *in, *what, *by;
        NSUInteger options;
        const char16_t* out;
    } rows[] = {
        {u"aXbX", u"X", u"", 0, u"ab"},
        {u"aaa", u"aa", u"b", 0, u"ba"},
        {u"aaa", u"aa", u"b", NSBackwardsSearch, u"ab"},
        {u"XaX", u"X", u"-", NSAnchoredSearch, u"-aX"},
        {u"XaX", u"X", u"-", NSAnchoredSearch | NSBackwardsSearch, u"Xa-"},
        {u"cafe\u0301 caf\u00E9", u"\u00E9", u"e", 0, u"cafe cafe"},
        {u"abc", u"", u"y", 0, u"abc"},
        {u"a", u"a", u"aa", 0, u"aa"},
    };
    for (const auto& row : rows) {
        const Ref<NSString> s = text(row.in);
        EXPECT_EQ(shown(s->stringByReplacingOccurrencesOfString_withString_options_range(
                      text(row.what), text(row.by), row.options, {0, s->length()})),
                  shown(row.out))
            << shown(row.in);
    }
}

TEST(NSStringSearchTest, comparing) {
    constexpr NSUInteger i = NSCaseInsensitiveSearch, l = NSLiteralSearch, n = NSNumericSearch,
                         d = NSDiacriticInsensitiveSearch, w = NSWidthInsensitiveSearch, f = NSForcedOrderingSearch;
    const struct {
        const char16_t *a, *b;
        NSUInteger options;
        int order;
    } rows[] = {
        {u"", u"a", 0, -1},
        {u"a", u"B", 0, 1},
        {u"a", u"B", i, -1},
        {u"abc", u"abcd", 0, -1},
        {u"ABC", u"abc", i, 0},
        {u"ABC", u"abc", i | f, -1},
        {u"\u00E9", u"e\u0301", 0, 0},
        {u"\u00E9", u"e\u0301", l, 1},
        {u"\u00E9", u"e\u0301", f, 1},
        {u"\u00E9", u"\u00C9", i, 0},
        {u"e\u0301", u"\u00C9", i, 0},
        {u"\u00E9", u"e", 0, 1},
        {u"\u00E9", u"f", 0, -1}, // by the letter, then by its marks
        {u"\u00E9", u"e", d, 0},
        {u"\u00C9t\u00E9", u"ete", d | i, 0},
        {u"Stra\u00DFe", u"strasse", i, 0},
        {u"\uFF21", u"A", w, 0},
        {u"file9", u"file10", 0, 1},
        {u"file9", u"file10", n, -1},
        {u"file09", u"file9", n, 0},
        {u"file09", u"file9", n | f, -1},
        {u"FILE9a", u"file9B", n | i, -1},
        {u"1.10", u"1.9", n, 1},
        {u"99999999999999999999999", u"100000000000000000000000", n, -1},
        {u"\U0001F600", u"\uFFFD", 0, -1}, // by UTF-16 units
    };
    for (const auto& row : rows) {
        EXPECT_EQ(text(row.a)->compare_options(text(row.b), row.options), row.order)
            << shown(row.a) << " and " << shown(row.b) << " with " << row.options;
        EXPECT_EQ(text(row.b)->compare_options(text(row.a), row.options), -row.order)
            << shown(row.b) << " and " << shown(row.a) << " with " << row.options;
    }
    EXPECT_EQ(text(u"")->compare(nullptr), NSOrderedSame);
    EXPECT_EQ(text(u"a")->localizedCompare(nullptr), NSOrderedDescending);
    EXPECT_EQ(text(u"xabcx")->compare_options_range(text(u"abc"), 0, {1, 3}), NSOrderedSame);
}

TEST(NSStringSearchTest, comparingIsAnOrder) {
    // Every pair of texts from an alphabet that mixes letters, marks, composed letters, digits and nothing.
    std::vector<Ref<NSString>> all;
    const std::u16string_view alphabet[] = {u"",       u"a", u"A", u"e",  u"e\u0301", u"\u00E9",
                                            u"\u0301", u"z", u"1", u"10", u"\u00DF"};
    for (const auto x : alphabet)
        for (const auto y : alphabet)
            all.push_back(text(std::u16string(x) + std::u16string(y)));
    for (const NSUInteger options : {0, 1, 2, 64, 128, 129}) {
        std::vector<Ref<NSString>> sorted = all;
        std::sort(sorted.begin(), sorted.end(),
                  [&](const auto& x, const auto& y) { return x->compare_options(y, options) == NSOrderedAscending; });
        for (std::size_t k = 0; k < sorted.size(); ++k)
            for (std::size_t m = 0; m < sorted.size(); ++m) {
                const NSComparisonResult there = sorted[k]->compare_options(sorted[m], options);
                EXPECT_EQ(there, -sorted[m]->compare_options(sorted[k], options)) << options;
                if (k < m) {
                    EXPECT_NE(there, NSOrderedDescending) << shown(sorted[k]) << " " << shown(sorted[m]);
                }
            }
    }
}

TEST(NSStringSearchTest, localizedOrderIsThatOfDictionaries) {
    const char16_t* const ordered[] = {u"cote", u"cot\u00E9", u"cotte", u"D\u00E9j\u00E0", u"\u00E9l\u00E8ve", u"zoo"};
    for (std::size_t k = 0; k + 1 < std::size(ordered); ++k) {
        EXPECT_EQ(text(ordered[k])->localizedCompare(text(ordered[k + 1])), NSOrderedAscending) << k;
        EXPECT_EQ(text(ordered[k + 1])->localizedCaseInsensitiveCompare(text(ordered[k])), NSOrderedDescending) << k;
    }
    EXPECT_EQ(text(u"ELEVE")->localizedCaseInsensitiveCompare(text(u"eleve")), NSOrderedSame);
    EXPECT_NE(text(u"ELEVE")->localizedCompare(text(u"eleve")), NSOrderedSame);
    EXPECT_EQ(text(u"e\u0301")->localizedCaseInsensitiveCompare(text(u"\u00C9")), NSOrderedSame);
}

TEST(NSStringSearchTest, theInstalledComparisonServesTheWholeProcess) {
    NSString::installLocalizedCaseInsensitiveCompare([](const NSString* a, const NSString* b) {
        return static_cast<NSComparisonResult>(a->length() - b->length());
    });
    const NSInteger longer = text(u"aaaa")->localizedCaseInsensitiveCompare(text(u"b"));
    NSString::installLocalizedCaseInsensitiveCompare(nullptr);
    EXPECT_EQ(longer, 3); // passed on as it is
    EXPECT_EQ(text(u"aaaa")->localizedCaseInsensitiveCompare(text(u"b")), NSOrderedAscending);
}

TEST(NSStringSearchTest, charactersAsTheUserSeesThem) {
    const struct {
        const char16_t* text;
        NSUInteger index;
        NSRange range;
    } rows[] = {
        {u"ae\u0301b", 0, {0, 1}},
        {u"ae\u0301b", 1, {1, 2}},
        {u"ae\u0301b", 2, {1, 2}},
        {u"\U0001F600", 1, {0, 2}},
        {u"\r\n", 1, {0, 2}},
        {u"\n\r", 0, {0, 1}},
        {u"\u2019\r\n", 2, {1, 2}},
        {u"\xD800z", 0, {0, 1}},
        {u"x\U0001F1EB\U0001F1F7y", 3, {1, 4}},                     // a flag
        {u"\U0001F468\u200D\U0001F469\u200D\U0001F467", 4, {0, 8}}, // a family
    };
    for (const auto& row : rows)
        EXPECT_EQ(text(row.text)->rangeOfComposedCharacterSequenceAtIndex(row.index), row.range)
            << shown(row.text) << " at " << row.index;
}

TEST(NSStringSearchTest, caseAndForm) {
    const struct {
        const char16_t *text, *lower, *upper, *capitalized;
    } rows[] = {
        {u"aujourd'hui", u"aujourd'hui", u"AUJOURD'HUI", u"Aujourd'hui"},
        {u"\u00C9T\u00C9 \u00E0 l'OUEST", u"\u00E9t\u00E9 \u00E0 l'ouest", u"\u00C9T\u00C9 \u00C0 L'OUEST",
         u"\u00C9t\u00E9 \u00C0 L'ouest"},
        {u"stra\u00DFe \u00FF\u00B5", u"stra\u00DFe \u00FF\u00B5", u"STRASSE \u0178\u039C",
         u"Stra\u00DFe \u0178\u00B5"},
        {u"\u01C6", u"\u01C6", u"\u01C4", u"\u01C5"},
        {u"\U00010428", u"\U00010428", u"\U00010400", u"\U00010400"},
        {u"\u039F\u03A3", u"\u03BF\u03C2", u"\u039F\u03A3", u"\u039F\u03C2"}, // a final sigma
    };
    for (const auto& row : rows) {
        EXPECT_EQ(shown(text(row.text)->lowercaseString()), shown(row.lower));
        EXPECT_EQ(shown(text(row.text)->uppercaseString()), shown(row.upper));
        EXPECT_EQ(shown(text(row.text)->capitalizedString()), shown(row.capitalized));
    }
    const Ref<NSString> s = text(u"\u00E9\uFB01e\u0301");
    EXPECT_EQ(shown(s->decomposedStringWithCanonicalMapping()), shown(u"e\u0301\uFB01e\u0301"));
    EXPECT_EQ(shown(s->precomposedStringWithCanonicalMapping()), shown(u"\u00E9\uFB01\u00E9"));
    EXPECT_EQ(shown(s->decomposedStringWithCompatibilityMapping()), shown(u"e\u0301fie\u0301"));
    EXPECT_EQ(shown(s->precomposedStringWithCompatibilityMapping()), shown(u"\u00E9fi\u00E9"));
    EXPECT_EQ(shown(text(u"\u00C9le\u0300ve \u304C")->stringByFoldingWithOptions(NSDiacriticInsensitiveSearch)),
              shown(u"Eleve \u304C")); // the sign of a voiced kana is no accent
}
