#include "Textes.h"

#include <libvue/platform/foundation/NSCharacterSet.h>

using namespace libvue;
using namespace libvue::textes;

TEST(NSCharacterSetTest, standardSetsHoldWhatTheyShould) {
    struct Row {
        const char* name;
        NSCharacterSet* set;
        std::u32string_view in, out;
    };
    const Row rows[] = {
        {"alphanumeric", NSCharacterSet::alphanumericCharacterSet(),
         U"aZ09\u00E9\u0301\u0661\u4E00\U00010400\U0001D7CE\u2160", U" -_'\u2019\u00D7\n\U0001F600"},
        {"letter", NSCharacterSet::letterCharacterSet(), U"a\u00E9\u0301\u00AA", U"1 -\u0661"},
        {"digit", NSCharacterSet::decimalDigitCharacterSet(), U"09\u0661\U0001D7CE", U"a\u00BD\u00B2\u2160"},
        {"blank", NSCharacterSet::whitespaceCharacterSet(), U" \t\u00A0\u2003\u202F\u3000",
         U"\n\r\u000B\u0085\u2028\u200Ba"},
        {"blank and line end", NSCharacterSet::whitespaceAndNewlineCharacterSet(),
         U" \t\n\r\u000B\u0085\u2028\u2029\u00A0", U"a\u200B"},
        {"line end", NSCharacterSet::newlineCharacterSet(), U"\n\u000B\u000C\r\u0085\u2028\u2029", U" \t\u0009\u000E"},
        {"punctuation", NSCharacterSet::punctuationCharacterSet(), U".,'-\u2019\u00AB\u2026_", U"a+$ "},
        {"symbol", NSCharacterSet::symbolCharacterSet(), U"+$<\u20AC\u00D7\U0001F600", U"a.- "},
        {"upper", NSCharacterSet::uppercaseLetterCharacterSet(), U"AZ\u00C9\u01C5\U00010400", U"az\u00E91"},
        {"lower", NSCharacterSet::lowercaseLetterCharacterSet(), U"az\u00E9\u00DF\U00010428", U"AZ1\u01C5"},
        {"control", NSCharacterSet::controlCharacterSet(), std::u32string_view(U"\0\n\u007F\u0085\u200D", 5), U"a "},
        {"illegal", NSCharacterSet::illegalCharacterSet(), U"\uFFFF\U0010FFFF\u0378", U"a\uE000"},
        {"mark", NSCharacterSet::nonBaseCharacterSet(), U"\u0301\u0327", U"ae"},
        {"decomposable", NSCharacterSet::decomposableCharacterSet(), U"\u00E9\u212A\uAC00", U"e\uFB01"},
    };
    for (const Row& row : rows) {
        for (const char32_t c : row.in)
            EXPECT_TRUE(row.set->longCharacterIsMember(c)) << row.name << " U+" << std::hex << static_cast<unsigned>(c);
        for (const char32_t c : row.out)
            EXPECT_FALSE(row.set->longCharacterIsMember(c))
                << row.name << " U+" << std::hex << static_cast<unsigned>(c);
        const Ref<NSCharacterSet> others = row.set->invertedSet();
        for (char32_t c = 0; c < 0x11000; ++c)
            ASSERT_NE(row.set->longCharacterIsMember(c), others->longCharacterIsMember(c))
                << row.name << " " << static_cast<unsigned>(c);
    }
}

TEST(NSCharacterSetTest, membersOfSetsMadeByHand) {
    const struct {
        Ref<NSCharacterSet> set;
        std::u32string_view in, out;
    } rows[] = {
        {NSCharacterSet::characterSetWithCharactersInString(text(u"caba\u00FF\u0100\uFFFF\U0001F600")),
         U"abc\u00FF\u0100\uFFFF\U0001F600", U"d`\u00FE\u0101\uFFFE\U0001F5FF\U0001F601"},
        {NSCharacterSet::characterSetWithCharactersInString(nullptr), U"", U"a"},
        {NSCharacterSet::characterSetWithRange({0xFFFE, 4}), U"\uFFFE\U00010001", U"\uFFFD\U00010002"},
        {NSCharacterSet::characterSetWithRange({0x10FFFF, 1}), U"\U0010FFFF", U"\U0010FFFE"},
        {NSCharacterSet::characterSetWithRange({0, 0x110000}), U"a\U0010FFFF", U""},
        {NSCharacterSet::characterSetWithRange({0, 1}), std::u32string_view(U"\0", 1), U"\u0001"},
    };
    for (const auto& row : rows) {
        const Ref<NSCharacterSet> others = row.set->invertedSet();
        for (const char32_t c : row.in)
            EXPECT_TRUE(row.set->longCharacterIsMember(c) && !others->longCharacterIsMember(c)) << std::uint32_t{c};
        for (const char32_t c : row.out)
            EXPECT_TRUE(!row.set->longCharacterIsMember(c) && others->longCharacterIsMember(c)) << std::uint32_t{c};
        EXPECT_TRUE(row.set->isEqual(others->invertedSet()));
        EXPECT_EQ(row.set->hash(), others->invertedSet()->hash());
        EXPECT_FALSE(row.set->isEqual(others));
        EXPECT_TRUE(row.set->isSupersetOfSet(row.set));
        EXPECT_TRUE(rows[4].set->isSupersetOfSet(row.set));
        EXPECT_EQ(row.set->isSupersetOfSet(rows[4].set), &row == &rows[4]);
    }
    const Ref<NSCharacterSet> pair = rows[0].set;
    EXPECT_FALSE(pair->characterIsMember(0xD83D)); // the halves of the pair are no members
    EXPECT_TRUE(NSCharacterSet::characterSetWithCharactersInString(text(u"\xD800"))->characterIsMember(0xD800));
    EXPECT_TRUE(pair->hasMemberInPlane(1));
    EXPECT_FALSE(pair->hasMemberInPlane(2) || pair->hasMemberInPlane(17));
    expectRaised("NSInvalidArgumentException",
                 {[] { (void)NSCharacterSet::characterSetWithRange(NSMakeRange(0x10FFFF, 2)); },
                  [] { (void)NSCharacterSet::characterSetWithRange(NSMakeRange(1, ~NSUInteger{0})); }});
}

TEST(NSCharacterSetTest, aMutableSetFollowsItsChanges) {
    Ref<NSMutableCharacterSet> set = make<NSMutableCharacterSet>(NSCharacterSet::alphanumericCharacterSet());
    EXPECT_TRUE(set->characterIsMember(u'\u00E9'));
    EXPECT_TRUE(set->characterIsMember(u'\u4E00')); // fills the table, which the next changes must throw away
    set->addCharactersInString(text(u"-\u2010"));
    EXPECT_TRUE(set->characterIsMember(u'-'));
    EXPECT_TRUE(set->characterIsMember(u'\u2010'));
    const Ref<NSObject> frozen = set->copyWithZone();
    set->removeCharactersInRange({0x4E00, 0x100});
    EXPECT_FALSE(set->characterIsMember(u'\u4E00'));
    set->removeCharactersInString(text(u"-z"));
    EXPECT_FALSE(set->characterIsMember(u'z'));
    set->formIntersectionWithCharacterSet(NSCharacterSet::characterSetWithRange({'a', 26}));
    set->formUnionWithCharacterSet(NSCharacterSet::characterSetWithCharactersInString(text(u"!")));
    set->formUnionWithCharacterSet(nullptr);
    EXPECT_TRUE(set->isEqual(NSCharacterSet::characterSetWithCharactersInString(text(u"!abcdefghijklmnopqrstuvwxy"))));
    set->invert();
    EXPECT_FALSE(set->characterIsMember(u'a'));
    EXPECT_TRUE(set->characterIsMember(u'z'));
    set->formIntersectionWithCharacterSet(nullptr);
    EXPECT_FALSE(set->characterIsMember(u'z'));
    const auto* copy = as<NSCharacterSet>(frozen.get());
    EXPECT_TRUE(copy->characterIsMember(u'\u4E00') && copy->characterIsMember(u'-'));
}
