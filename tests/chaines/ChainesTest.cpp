#include <limits>
#include <string>

#include <libvue/platform/foundation/ClassExtension.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/text/chaines/NSAttributedStringTri.h>
#include <libvue/text/chaines/NSStringModificationChaine.h>
#include <libvue/text/chaines/NSStringTri.h>
#include <libvue/text/chaines/ZerlCharacterSet.h>

#include "foundation/Textes.h"

using namespace libvue;
using namespace libvue::textes;

TEST(ZerlCharacterSetTest, holdsWhatAWordIsMadeOf) {
    const NSCharacterSet* mot = ZerlCharacterSet::motCharacterSet();
    for (const char16_t c : std::u16string_view(u"aZ\u00E9\u0153\u03B109\u0661\u0301\u4E00-"))
        EXPECT_TRUE(mot->characterIsMember(c)) << shown(std::u16string_view(&c, 1));
    for (const char16_t c : std::u16string_view(u"'\u2019_\u2010\u2011\u2013\u00AD \u00A0.\u00AB\n"))
        EXPECT_FALSE(mot->characterIsMember(c)) << shown(std::u16string_view(&c, 1));
    EXPECT_TRUE(mot->longCharacterIsMember(U'\U0001D400'));

    const NSCharacterSet* apostrophe = ZerlCharacterSet::apostropheCharacterSet();
    NSUInteger members = 0;
    for (unsigned c = 0; c < 0x10000; ++c)
        members += apostrophe->characterIsMember(static_cast<unichar>(c));
    EXPECT_EQ(members, 2u);
    EXPECT_TRUE(apostrophe->characterIsMember(u'\'') && apostrophe->characterIsMember(u'\u2019'));

    EXPECT_EQ(dynamic_cast<const NSMutableCharacterSet*>(mot), nullptr);
    ZerlCharacterSet::initialize(classOf<ZerlCharacterSet>());
    EXPECT_EQ(ZerlCharacterSet::motCharacterSet(), mot) << "made once";
}

TEST(ModificationChaineTest, rewrites) {
    struct Row {
        Ref<NSString> (*rewrite)(const NSString*);
        std::u16string_view text, expected;
    };
    const auto sansAb = [](const NSString* s) { return stringByRemovingOccurencesOfString(s, u"ab"_ns); };
    const auto sansRien = [](const NSString* s) { return stringByRemovingOccurencesOfString(s, u""_ns); };
    const std::u16string_view emoji = u"a\U0001F600";
    const char16_t emojiReversed[] = {0xDE00, 0xD83D, u'a'};
    const Row rows[] = {
        {sansAb, u"abXabYab", u"XY"},
        {sansAb, u"aabb", u"ab"}, // what is left is not looked at again
        {sansRien, u"abc", u"abc"},
        {stringByReversing, u"", u""},
        {stringByReversing, u"\u0153uf!", u"!fu\u0153"},
        {stringByReversing, u"e\u0301a", u"a\u0301e"},
        {stringByReversing, emoji, {emojiReversed, 3}},
        {stringAvecEspacesSimples, u"a\r\nb", u"a\u00A0 b"},
        {stringAvecEspacesSimples, u"  a \t\n b  ", u"a b"},
        {stringAvecEspacesSimples, u"\r a\r\rb \r", u"\u00A0 a\u00A0\u00A0b \u00A0"},
        {stringAvecEspacesSimples, u"a\u00A0\u00A0 b", u"a\u00A0\u00A0 b"},
        {stringAvecEspacesSimples, u"\u2026\t\u4E00", u"\u2026 \u4E00"},
    };
    for (const Row& row : rows) {
        const Ref<NSString> given = text(row.text), wide = wideText(row.text);
        EXPECT_EQ(shown(row.rewrite(given)), shown(row.expected)) << shown(row.text);
        EXPECT_EQ(shown(row.rewrite(wide)), shown(row.expected)) << shown(row.text);
    }
}

TEST(ModificationChaineTest, truncatesAfterSpaces) {
    struct Row {
        std::u16string_view text;
        NSUInteger count;
        std::u16string_view expected;
    };
    const Row rows[] = {
        {u"", 0, u" \u2026"},
        {u"un  deux trois", 2, u"un  \u2026"},
        {u"un deux trois", 2, u"un deux \u2026"},
        {u"un ", 1, u"un \u2026"},
        {u"un\u00A0deux\ttrois", 1, u"un\u00A0deux\ttrois"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(shown(stringEnTronquantApresXEspaces(text(row.text), row.count)), shown(row.expected))
            << shown(row.text) << row.count;
    // The receiver itself where there is nothing to cut.
    const Ref<NSString> deux = text(u"un deux"), vide = text(u"");
    EXPECT_EQ(stringEnTronquantApresXEspaces(deux, 2), deux);
    EXPECT_EQ(stringEnTronquantApresXEspaces(deux, std::numeric_limits<NSUInteger>::max()), deux);
    EXPECT_EQ(stringEnTronquantApresXEspaces(vide, 1), vide);
}

TEST(TriTest, comparesWhatStandsInTheMiddle) {
    struct Row {
        std::u16string_view a, b;
        NSInteger order;
    };
    const Row rows[] = {
        {u"\u00ABmot\u00BB", u"mot", 0}, {u"-mot", u"mot", -1},
        {u"\u2019mot' ", u"MOT", 0},     {u"l'ami", u"lami", -1}, // only at the ends
        {u"\u00AB \u00BB", u"", 0},      {u"(\u00E9t\u00E9)", u"ete.", 1},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(comparaisonTrimmay(text(row.a), text(row.b)), row.order) << shown(row.a) << shown(row.b);
        EXPECT_EQ(comparaisonTrimmay(text(row.b), text(row.a)), -row.order) << shown(row.a) << shown(row.b);
    }
    EXPECT_EQ(comparaisonTrimmay(u"..."_ns, nullptr), NSOrderedSame);
}

TEST(TriTest, sortsByTheSelectorsOfTheExtensions) {
    const Ref<NSArray> texts =
        NSArray::arrayWithObjects({u"zz"_ns, u"\u00C9b"_ns, u"abc"_ns, u"eb"_ns, u"\U0001F600"_ns});
    EXPECT_EQ(shown(texts->sortedArrayUsingSelector(sel("comparaisonPlusLongueChaine:"))),
              "|abc|\\uD83D\\uDE00|eb|\\u00C9b|zz|");
    EXPECT_EQ(comparaisonPlusLongueChaine(u"a"_ns, nullptr), NSOrderedAscending);
    EXPECT_EQ(comparaisonPlusLongueChaine(nullptr, nullptr), NSOrderedSame);
    const Ref<NSArray> quoted = NSArray::arrayWithObjects({u"\u00ABb\u00BB"_ns, u"c"_ns, u"'a'"_ns});
    EXPECT_EQ(shown(quoted->sortedArrayUsingSelector(sel("comparaisonTrimmay:"))), "|'a'|\\u00ABb\\u00BB|c|");
    const Ref<NSString> abc = u"abc"_ns;
    const Ref<NSObject> reversed = abc->performSelector_withObject(sel("stringByReversing"), nullptr);
    EXPECT_EQ(shown(dynamic_cast<NSString*>(reversed.get())), "cba");
}

TEST(TriTest, attributesPlayNoPart) {
    const Ref<NSDictionary> loud = NSDictionary::dictionaryWithObject_forKey(u"1"_ns, u"loud"_ns);
    const auto attributed = [&](const Ref<NSString>& s) { return make<NSAttributedString>(s.get(), loud.get()); };
    const Ref<NSAttributedString> ete = attributed(u"\u00E9t\u00E9"_ns), capital = attributed(u"\u00C9T\u00C9"_ns);
    const Ref<NSAttributedString> zoo = make<NSMutableAttributedString>(u"Zoo"_ns);
    EXPECT_EQ(localizedCaseInsensitiveCompare(ete, capital), NSOrderedSame);
    EXPECT_EQ(caseInsensitiveCompare(ete, capital), NSOrderedSame);
    EXPECT_NE(localizedCompare(ete, capital), NSOrderedSame);
    EXPECT_EQ(compare(ete, nullptr), NSOrderedDescending);
    EXPECT_EQ(compare(nullptr, ete), NSOrderedAscending);

    const Ref<NSArray> list = NSArray::arrayWithObjects({zoo, ete});
    const std::pair<const char*, const NSAttributedString*> rows[] = {{"localizedCaseInsensitiveCompare:", ete},
                                                                      {"localizedCompare:", ete},
                                                                      {"caseInsensitiveCompare:", ete},
                                                                      {"compare:", zoo}};
    for (const auto& [selector, first] : rows)
        EXPECT_EQ(list->sortedArrayUsingSelector(sel(selector))->firstObject(), first) << selector;
}

namespace {

class Base : public NSObject {
public:
    static void describe(ClassDescription<Base>&) {}
};
class Fille : public Base {};

NSInteger plusDeux(Base*, NSInteger n) { return n + 2; }

} // namespace

TEST(ClassExtensionTest, reachesClassesThatHaveAnsweredAlready) {
    constexpr Operation<NSInteger(NSInteger)> op{"plusDeux:"};
    const Ref<Fille> fille = make<Fille>();
    EXPECT_FALSE(op.of(fille));
    static const ClassExtension<Base> extension(
        [](ClassExtension<Base>::Description& c) { c.answers<&plusDeux>("plusDeux:"); });
    ASSERT_TRUE(op.of(fille));
    EXPECT_EQ(op.of(fille)(3), 5);
}
