#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <unicode/ucol.h>

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSSortDescriptor.h>
#include <libvue/platform/foundation/UnicodeCollation.h>
#include <libvue/text/chaines/NSStringComparaisonAvancee.h>

#include "foundation/Textes.h"

using namespace libvue;
using namespace libvue::textes;

namespace {

/// ICU's own collator, made here from nothing of ours.
int reference(std::u16string_view a, std::u16string_view b) {
    static UCollator* const collator = [] {
        UErrorCode status = U_ZERO_ERROR;
        UCollator* c = ucol_open("fr_CA", &status);
        ucol_setStrength(c, UCOL_SECONDARY);
        ucol_setAttribute(c, UCOL_NORMALIZATION_MODE, UCOL_ON, &status);
        return U_SUCCESS(status) ? c : nullptr;
    }();
    return ucol_strcoll(collator, a.data(), static_cast<std::int32_t>(a.size()), b.data(),
                        static_cast<std::int32_t>(b.size()));
}

/// A thousand texts that are hard to order, no two of them the same.
std::vector<std::u16string> awkward() {
    using Text = std::u16string;
    std::vector<Text> out = {u"", u" ", u"  ", u"grand m\u00E8re", Text(1, u'\0'), Text(1, 0xD800), Text(1, 0xDC00)};
    out.insert(out.end(), {Text({u'a', 0xD83D}), Text({0xDE00, u'a'})});
    out.insert(out.end(), {Text(300, u'a'), Text(300, u'a') + u"\u00E9", Text(300, u'A') + u"e"});
    const std::u16string words =
        u"- ' \u2019 \u2010 \u00AD \u0001\u009F c\u00F4te cot\u00E9 cote c\u00F4t\u00E9 COTE co\u0302te "
        u"cote\u0301 c\u00D4TE c\u0153ur coeur C\u0152UR co\u00AEur \u00E6 ae \u00C6 AE stra\u00DFe "
        u"strasse \u1E9E \uFB01n fin \uFF46\uFF49\uFF4E aujourd'hui aujourd\u2019hui grand-m\u00E8re "
        u"grandm\u00E8re grand\u2010m\u00E8re 1 10 2 \u00B2 \u00BC 1\u20444 \u0661 l\u00B7l \u0140l ll "
        u"l\u0387l l\u00B7 l \u2026 ... \u3042 \u30A2 \u4E00 \U0001F600 \u0391 \u0430 \uFFFE a\uFFFEb "
        u"\uFFFF \u0301 \u0301a a\u0323\u0302 \u1EAD a\u0302\u0323 \u212B \u00C5 A\u030A";
    std::size_t start = 0;
    for (std::size_t end = 0; end != words.npos; start = end + 1) {
        end = words.find(u' ', start);
        out.push_back(words.substr(start, end - start));
    }
    // Then short texts over small alphabets, so that long common starts are frequent.
    const std::vector<std::u16string> alphabets[] = {
        {u"e", u"E", u"\u00E9", u"\u00C8", u"\u00EA", u"e\u0301", u"t", u"T"},
        {u"o", u"\u0153", u"oe", u"\u0152", u"\u00F8", u"\u00F6", u"e", u"O\u0308"},
        {u"a", u"b", u"-", u"'", u"\u2019", u" ", u"\u00A0", u"\u00AD", std::u16string(1, u'\0'), u"\t", u"\u00E0"},
        {u"s", u"\u00DF", u"ss", u"\u017F", u"S", u"\u0161", u"\uFF53"},
        {u"1", u"2", u"\u00B9", u"\u00BD", u"\uFF11", u".", u",", u"1\u0308"},
        {u"l", u"L", u"\u00B7", u"\u0140", u"\u0387", u"\u00E9", u"\u00AD"},
        {u"a", u"\u0300", u"\u0327", u"\u00E7", u"c", u"\u1E09", u"\u0001"},
        {u"\u00F0", u"d", u"\u0111", u"\u00FE", u"th", u"\u0149", u"\u02BCn", u"\u0132", u"ij", u"\u00B4"},
        // The first joins some of the others to it.
        {u"\uFDD1", u"4", u"L", u"0", u"9", u"A", u"Z", u"\u201C"},
        {u"a", std::u16string(1, char16_t(0xD835)), std::u16string(1, char16_t(0xDC00)), u"\u00E9", u"\U0001F600"}};
    std::mt19937 random(6);
    const auto below = [&](std::size_t n) { return static_cast<std::size_t>(random()) % n; };
    std::set<std::u16string> made(out.begin(), out.end());
    while (made.size() < 1000) {
        const auto& alphabet = alphabets[below(std::size(alphabets))];
        std::u16string s;
        for (std::size_t n = 1 + below(7); n > 0; --n)
            s += alphabet[below(alphabet.size())];
        if (made.insert(s).second) out.push_back(s);
    }
    return out;
}

/// The texts, each in one of the ways in which it can be stored.
std::vector<Ref<NSString>> stored(const std::vector<std::u16string>& units) {
    std::vector<Ref<NSString>> out;
    for (std::size_t i = 0; i < units.size(); ++i)
        out.push_back(i % 3 == 0 ? wideText(units[i]) : text(units[i]));
    return out;
}

std::vector<std::string> shownAll(const std::vector<Ref<NSString>>& texts) {
    std::vector<std::string> out;
    out.reserve(texts.size());
    for (const auto& t : texts)
        out.push_back(shown(t));
    return out;
}

const SEL localized = sel("localizedCaseInsensitiveCompare:");

/// By the selector's whole sort, which must give the very objects in the very order of a stable sort by ICU.
void expectSorted(const std::vector<Ref<NSString>>& texts) {
    const Ref<NSArray> list = NSArray::arrayWithRefs(texts);
    const Ref<NSArray> sorted = list->sortedArrayUsingSelector(localized);
    std::vector<Ref<NSString>> expected = texts;
    std::stable_sort(expected.begin(), expected.end(),
                     [](const auto& a, const auto& b) { return reference(a->utf16(), b->utf16()) < 0; });
    ASSERT_EQ(sorted->count(), expected.size());
    std::size_t elsewhere = 0;
    for (std::size_t i = 0; i < expected.size(); ++i)
        elsewhere += sorted->objectAtIndex(i) != expected[i].get();
    EXPECT_EQ(elsewhere, 0u) << "of " << testing::PrintToString(shownAll(expected));
}

/// Until now the texts may have been compared by ICU itself, which is no test of the tables of weights.
void makeWeights() {
    const Ref<NSString> a = u"a"_ns, b = u"b"_ns;
    for (int i = 0; i < 100000; ++i)
        (void)localizedCaseInsensitiveCompare(a, b);
}

} // namespace

TEST(OrdreTest, everyPairComparesAsTheCollatorSays) {
    const auto units = awkward();
    const auto texts = stored(units);
    makeWeights();
    int faults = 0;
    for (std::size_t i = 0; i < texts.size(); ++i)
        for (std::size_t k = 0; k < texts.size(); ++k) {
            const NSInteger ours = texts[i]->localizedCaseInsensitiveCompare(texts[k]);
            if (ours == reference(units[i], units[k])) continue;
            ADD_FAILURE() << shown(texts[i]) << " and " << shown(texts[k]) << " compare as " << ours;
            if (++faults == 20) return;
        }
}

TEST(OrdreTest, aSortIsTheStableSortByTheCollator) {
    makeWeights();
    std::vector<std::u16string> units = awkward();
    // Equal texts that are other objects, and mutable ones among them.
    units.insert(units.end(), units.begin(), units.begin() + 200);
    std::shuffle(units.begin(), units.end(), std::mt19937(3));
    expectSorted(stored(units));

    // Enough common words for the sort by digits, alike in their first sixteen letters.
    std::vector<std::u16string> words;
    std::mt19937 random(4);
    const std::u16string_view letters = u"ae\u00E9\u00C9E-'\u0153";
    for (int i = 0; i < 3000; ++i) {
        std::u16string s = i % 2 ? u"anticonstitution" : u"";
        for (std::size_t n = random() % 9; n > 0; --n)
            s += letters[random() % letters.size()];
        words.push_back(s);
    }
    expectSorted(stored(words));
    words.push_back(u"\u4E00");
    words.push_back(u"anticonstitutionne\u0301");
    words.push_back(u"a\u0301");
    std::shuffle(words.begin(), words.end(), std::mt19937(5));
    expectSorted(stored(words));
    expectSorted({});
    expectSorted(stored({u"a"}));
}

TEST(OrdreTest, listsThatAreNotAllTextsAreComparedInPairs) {
    class Dernier : public NSMutableString {
    public:
        static void describe(ClassDescription<Dernier, NSMutableString>& c) {
            c.answers<&Dernier::suit>("localizedCaseInsensitiveCompare:");
        }
        NSComparisonResult suit(const NSString*) const { return NSOrderedDescending; }
    };
    const Ref<Dernier> last = make<Dernier>();
    const Ref<NSString> b = text(u"b"), a = text(u"a");
    const Ref<NSArray> list = NSArray::arrayWithObjects({last, b, a});
    EXPECT_EQ(list->sortedArrayUsingSelector(localized)->lastObject(), last.get());
    const Ref<NSArray> mixed = NSArray::arrayWithObjects({list, a});
    EXPECT_EQ(raised([&] { (void)mixed->sortedArrayUsingSelector(localized); }), "NSInvalidArgumentException");
}

TEST(OrdreTest, descriptorsSortTextsAsTheSelectorDoes) {
    const auto entry = [](const char16_t* name, NSInteger n) {
        Ref<NSMutableDictionary> d = NSMutableDictionary::dictionaryWithObject_forKey(boxed(n), u"n"_ns);
        if (name) d->setObject_forKey(text(name), u"name"_ns);
        return d;
    };
    // One text in two objects, equal texts of two spellings, and none at all.
    const Ref<NSString> shared = text(u"cot\u00E9");
    const Ref<NSArray> list = NSArray::arrayWithObjects(
        {NSDictionary::dictionaryWithObjectsAndKeys({{u"name"_ns, shared}, {u"n"_ns, boxed(1)}}),
         entry(u"c\u00F4t\u00E9", 2), entry(u"C\u00D4TE", 3), entry(nullptr, 4), entry(u"COT\u00C9", 0),
         NSDictionary::dictionaryWithObjectsAndKeys({{u"name"_ns, shared}, {u"n"_ns, boxed(6)}}), entry(u"\u4E2D", 7)});
    const auto sorted = [&](BOOL ascending) {
        const Ref<NSArray> criteria = NSArray::arrayWithObjects(
            {NSSortDescriptor::sortDescriptorWithKey_ascending_selector(u"name"_ns, ascending, localized),
             NSSortDescriptor::sortDescriptorWithKey_ascending(u"n"_ns, YES)});
        const Ref<NSObject> numbers = list->sortedArrayUsingDescriptors(criteria)->valueForKey(u"n"_ns);
        return as<NSArray>(numbers)->componentsJoinedByString(u" "_ns)->utf8();
    };
    EXPECT_EQ(sorted(YES), "4 3 0 1 6 2 7");
    EXPECT_EQ(sorted(NO), "7 2 0 1 6 3 4");
}

TEST(OrdreTest, theOrderIsThePlatformsAndTheSelectors) {
    struct Row {
        const char16_t* a;
        const char16_t* b;
        NSInteger order;
    };
    const Row rows[] = {
        {u"\u00E9l\u00E8ve", u"eleve", 1},
        {u"ELEVE", u"eleve", 0},
        {u"", u"", 0},
        {u"c\u00F4te", u"cot\u00E9", -1},
        {u"cot\u00E9", u"c\u00F4t\u00E9", -1},
        {u"\uFF45", u"E", 0},
        {u"e\u0301", u"\u00C9", 0},
        {u"c\u0153ur", u"coeur", 1},
        {u"coeur", u"coev", -1},
    };
    for (const Row& row : rows) {
        const Ref<NSString> a = text(row.a), b = text(row.b);
        EXPECT_EQ(localizedCaseInsensitiveCompare(a, b), row.order) << shown(row.a) << " " << shown(row.b);
        EXPECT_EQ(a->localizedCaseInsensitiveCompare(b), row.order);
        EXPECT_EQ(b->localizedCaseInsensitiveCompare(a), -row.order);
    }
    EXPECT_EQ(localizedCaseInsensitiveCompare(nullptr, u"a"_ns), NSOrderedAscending);
    EXPECT_EQ(localizedCaseInsensitiveCompare(u"\u00AD"_ns, nullptr), NSOrderedSame);
}

TEST(CollatorTest, anotherComparisonThatIsInstalledSortsAlone) {
    NSString::installLocalizedCaseInsensitiveCompare([](const NSString* a, const NSString* b) {
        return static_cast<NSComparisonResult>(static_cast<NSInteger>(b->length()) -
                                               static_cast<NSInteger>(a->length()));
    });
    const Ref<NSArray> list = NSArray::arrayWithObjects({u"a"_ns, u"bbb"_ns, u"cc"_ns});
    const Ref<NSArray> sorted = list->sortedArrayUsingSelector(localized);
    NSString::installLocalizedCaseInsensitiveCompare(
        static_cast<NSString::Comparison>(&localizedCaseInsensitiveCompare));
    EXPECT_EQ(shown(sorted), "|bbb|cc|a|");
}

TEST(CollatorTest, comparesBuffersInTheOrderOfItsMasks) {
    LocaleRef locale = nullptr;
    ASSERT_EQ(LocaleRefFromLocaleString("fr_CA", &locale), noErr);
    LocaleRef again = nullptr;
    LocaleRefFromLocaleString("fr_CA", &again);
    EXPECT_EQ(again, locale);

    struct Row {
        UCCollateOptions options;
        const char16_t* a;
        const char16_t* b;
        SInt32 order;
    };
    constexpr UCCollateOptions french =
        kUCCollateComposeInsensitiveMask | kUCCollateWidthInsensitiveMask | kUCCollateCaseInsensitiveMask;
    const Row rows[] = {
        {french, u"", u"", 0},
        {french, u"c\u00F4te", u"cot\u00E9", -1},
        {french, u"COTE", u"cote", 0},
        {french | kUCCollateDiacritInsensitiveMask, u"c\u00F4te", u"COT\u00E9", 0},
        {french | kUCCollateDiacritInsensitiveMask, u"cote", u"cotf", -1},
        {kUCCollateComposeInsensitiveMask, u"COTE", u"cote", 1},
        {kUCCollateComposeInsensitiveMask | kUCCollateDiacritInsensitiveMask, u"cot\u00E9", u"cote", 0},
        {kUCCollateComposeInsensitiveMask | kUCCollateDiacritInsensitiveMask, u"COTE", u"cote", 1},
    };
    for (const Row& row : rows) {
        CollatorRef collator = nullptr;
        ASSERT_EQ(UCCreateCollator(locale, 0, row.options, &collator), noErr);
        const std::u16string_view a = row.a, b = row.b;
        Boolean same = 2;
        SInt32 order = 7;
        EXPECT_EQ(UCCompareText(collator, a.data(), a.size(), b.data(), b.size(), &same, &order), noErr);
        EXPECT_EQ(order, row.order) << row.options << shown(a) << shown(b);
        EXPECT_EQ(same, row.order == 0);
        EXPECT_EQ(UCCompareText(collator, nullptr, 0, b.data(), b.size(), nullptr, nullptr), noErr);
        EXPECT_EQ(UCDisposeCollator(&collator), noErr);
        EXPECT_EQ(collator, nullptr);
    }
}

TEST(CollatorTest, aCollatorThatCouldNotBeMadeOrdersNothing) {
    LocaleRef locale = nullptr;
    EXPECT_EQ(LocaleRefFromLocaleString(nullptr, &locale), paramErr);
    CollatorRef collator = nullptr;
    EXPECT_EQ(UCCreateCollator(nullptr, 0, 14, &collator), paramErr);
    EXPECT_EQ(collator, nullptr);
    SInt32 order = 7;
    EXPECT_EQ(UCCompareText(collator, u"a", 1, u"b", 1, nullptr, &order), paramErr);
    EXPECT_EQ(order, 7);
    EXPECT_EQ(compareTexts(nullptr, *u"a"_ns, *u"b"_ns), 0);
    EXPECT_EQ(UCDisposeCollator(&collator), paramErr);
}
