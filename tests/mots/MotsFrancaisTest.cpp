#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSCharacterSet.h>
#include <libvue/text/chaines/ZerlCharacterSet.h>
#include <libvue/text/mots/MotsFrancais.h>

#include "foundation/Textes.h"

namespace libvue {
namespace {

using namespace std::string_literals;

Ref<NSAttributedString> attribue(std::u16string_view texte) {
    return NSAttributedString::initWithString(NSString::from(texte));
}

/// The same text with the typographic apostrophe.
std::u16string courbe(std::u16string texte) {
    std::replace(texte.begin(), texte.end(), u'\'', u'\u2019');
    return texte;
}

struct Clic {
    std::u16string texte;
    NSUInteger index;
    NSRange attendu;
    RegleMot regle;
};

TEST(MotsFrancaisTest, doubleClicks) {
    using enum RegleMot;
    const std::u16string t = u"aujourd'hui, l'ami";
    for (const auto& [texte, index, attendu, regle] : std::vector<Clic>{
             {t, 2, {0, 11}, hui},
             {t, 6, {0, 11}, hui},
             {t, 7, {7, 1}, ponctuation},
             {t, 9, {8, 3}, mot},
             {t, 11, {11, 1}, ponctuation},
             {t, 12, {12, 1}, blancs},
             {t, 13, {13, 2}, elision},
             {t, 14, {14, 1}, ponctuation},
             {t, 15, {15, 3}, mot},
             // "hui" needs its three letters, and an end behind them.
             {u"d'hui", 0, {0, 5}, hui},
             {u"d'hu", 0, {0, 2}, elision},
             {u"d'", 0, {0, 1}, apostropheFinale},
             {u"aujourd'HUI", 1, {0, 11}, hui},
             {u"aujourd'huile", 3, {0, 8}, elision},
             {u"aujourd'hui-meme", 3, {0, 8}, elision},
             {u"aujourd'hui\u0308", 3, {0, 8}, elision}, // a mark is part of the word
             {u"aujourd'hui'", 3, {0, 11}, hui},
             {u"d'hu\u0131", 0, {0, 2}, elision}, // neither the i without nor the one with a dot of Turkish
             {u"d'HU\u0130", 0, {0, 2}, elision},
             // One apostrophe is crossed, never two.
             {u"qu'aujourd'hui", 0, {0, 3}, elision},
             {u"qu'aujourd'hui", 4, {3, 11}, hui},
             {u"l''ami", 0, {0, 1}, apostropheFinale},
             // An apostrophe without a word behind it stays outside.
             {u"l' ami", 0, {0, 1}, apostropheFinale},
             {u"'mot'", 1, {1, 3}, apostropheFinale},
             // Hyphens.
             {u"le porte-monnaie", 5, {3, 13}, mot},
             {u"a -- b", 2, {2, 2}, mot},
             {u"l'-", 0, {0, 2}, elision},
             // Blanks are taken together, and lines end them.
             {u"a \t\u00A0b", 2, {1, 3}, blancs},
             {u"a \n b", 1, {1, 1}, blancs},
             {u"a \n b", 2, {2, 1}, ponctuation},
             {u"a  'ami", 1, {1, 3}, elision},
             {u"a  'hui", 2, {1, 6}, hui},
             {u"a  ' b", 2, {1, 2}, apostropheFinale},
             // Digits and other scripts are words, what lies beyond the first plane is not.
             {u"n°12,5", 2, {2, 2}, mot},
             {u"e\u0301te\u0301", 0, {0, 5}, mot},
             {u"a\U0001F600b", 1, {1, 1}, ponctuation},
             {u"a\0b"s, 1, {1, 1}, ponctuation},
         })
        for (const std::u16string& ecrit : {texte, courbe(texte)}) {
            const ClicMot c = clicSurMot(NSString::from(ecrit), index);
            EXPECT_EQ(c.plage, attendu) << textes::shown(ecrit) << " " << index;
            EXPECT_EQ(c.regle, regle) << textes::shown(ecrit) << " " << index;
            EXPECT_EQ(attribue(ecrit)->doubleClickAtIndex(index), attendu) << textes::shown(ecrit) << " " << index;
        }
}

TEST(MotsFrancaisTest, moves) {
    struct Pas {
        std::u16string texte;
        NSUInteger index;
        BOOL enAvant;
        NSUInteger attendu;
    };
    const std::u16string t = u"aujourd'hui, l'ami";
    for (const auto& [texte, index, enAvant, attendu] : std::vector<Pas>{
             {t, 0, YES, 11},
             {t, 7, YES, 11}, // from the apostrophe on, "hui" is a word
             {t, 11, YES, 15},
             {t, 15, YES, 18},
             {t, 18, YES, 18},
             {t, 99, YES, 99}, // unchanged, not held to the end
             {t, 18, NO, 15},
             {t, 15, NO, 13},
             {t, 13, NO, 8},
             {t, 11, NO, 8}, // the way back knows no "hui"
             {t, 8, NO, 0},
             {t, 0, NO, 0},
             {u"mot' autre", 0, YES, 4}, // where a double click leaves it out
             {u"mot'", 0, YES, 4},
             {u"d'hui", 0, YES, 5},
             {u"d'hu", 0, YES, 2},
             {u"d'huile", 0, YES, 2},
             {u"d'hui-même", 0, YES, 2},
             {u"qu'aujourd'hui", 0, YES, 3},
             {u"qu'aujourd'hui", 3, YES, 14},
             {u"fin...", 3, YES, 6},
             {u"...", 0, YES, 3},
             {u"  ''mot", 5, NO, 4},
             {u"  mot", 2, NO, 0},
             {u"porte-monnaie vide", 0, YES, 13},
             {u"a\U0001F600b", 1, YES, 4},
             {u"", 0, YES, 0},
             {u"", 0, NO, 0},
         })
        for (const std::u16string& ecrit : {texte, courbe(texte)})
            EXPECT_EQ(attribue(ecrit)->nextWordFromIndex_forward(index, enAvant), attendu)
                << textes::shown(ecrit) << " " << index << (enAvant ? " on" : " back");
}

TEST(MotsFrancaisTest, indexesOutOfTheText) {
    for (const std::u16string texte : {u"mot", u"mot\u2019"}) {
        const Ref<NSAttributedString> s = attribue(texte);
        const NSUInteger l = s->length();
        EXPECT_EQ(textes::raised([&] { (void)s->doubleClickAtIndex(l); }), "NSRangeException");
        EXPECT_EQ(textes::raised([&] { (void)s->doubleClickAtIndex(~NSUInteger{0}); }), "NSRangeException");
        EXPECT_EQ(textes::raised([&] { (void)s->nextWordFromIndex_forward(l + 1, NO); }), "NSRangeException");
        EXPECT_EQ(s->nextWordFromIndex_forward(~NSUInteger{0}, YES), ~NSUInteger{0});
    }
    EXPECT_EQ(textes::raised([&] { (void)attribue(u"")->doubleClickAtIndex(0); }), "NSRangeException");
    EXPECT_EQ(textes::raised([&] { (void)attribue(u"")->nextWordFromIndex_forward(1, NO); }), "NSRangeException");
    EXPECT_EQ(textes::raised([] { (void)clicSurMot(nullptr, 0); }), "NSRangeException");
    EXPECT_EQ(textes::raised([] { (void)motPrecedent(nullptr, 1); }), "NSRangeException");
    EXPECT_EQ(motSuivant(nullptr, 0), 0u);
    EXPECT_EQ(motPrecedent(nullptr, 0), 0u);
}

TEST(MotsFrancaisTest, aTextThatChangesIsReadAsItStands) {
    const auto s = NSMutableAttributedString::initWithString(NSString::from(u"l'\u00E9t\u00E9"));
    EXPECT_EQ(s->doubleClickAtIndex(0), (NSRange{0, 2}));
    s->replaceCharactersInRange_withString({1, 1}, NSString::from(u"\u2019")); // from 8-bit to UTF-16
    EXPECT_EQ(s->doubleClickAtIndex(0), (NSRange{0, 2}));
    s->deleteCharactersInRange({1, 1});
    EXPECT_EQ(s->doubleClickAtIndex(0), (NSRange{0, 4}));
}

// The rules once more, step by step, through the operations of NSString alone.

struct ReglesLentes {
    const NSString& t;
    const NSCharacterSet* mots = ZerlCharacterSet::motCharacterSet();
    const NSCharacterSet* apostrophes = ZerlCharacterSet::apostropheCharacterSet();
    NSUInteger longueur = t.length();

    [[nodiscard]] bool est(const NSCharacterSet* classe, NSUInteger i) const {
        return i < longueur && classe->characterIsMember(t.characterAtIndex(i));
    }
    /// Behind the run of the class that holds or follows `e`, and behind what an apostrophe there takes with it.
    [[nodiscard]] NSUInteger apres(const NSCharacterSet* classe, NSUInteger e) const {
        while (est(classe, e))
            ++e;
        if (!est(apostrophes, e)) return e;
        if (e + 4 > longueur) return e + 1;
        if (t.substringWithRange({e + 1, 3})->caseInsensitiveCompare(u"hui"_ns) != NSOrderedSame) return e + 1;
        return est(mots, e + 4) ? e + 1 : e + 4;
    }
    [[nodiscard]] NSRange clic(NSUInteger i) const {
        const NSCharacterSet* blancs = NSCharacterSet::whitespaceCharacterSet();
        const NSCharacterSet* classe = est(mots, i) ? mots : est(blancs, i) ? blancs : nullptr;
        if (!classe) return {i, 1};
        NSUInteger s = i, e = i;
        while (s > 0 && est(classe, s - 1))
            --s;
        while (est(classe, e))
            ++e;
        return {s, (est(mots, e + 1) ? apres(classe, i) : e) - s};
    }
    [[nodiscard]] NSUInteger avance(NSUInteger i) const {
        while (i < longueur && !est(mots, i))
            ++i;
        return i < longueur ? apres(mots, i) : i;
    }
    [[nodiscard]] NSUInteger recule(NSUInteger i) const {
        while (i > 0 && !est(mots, i - 1))
            --i;
        while (i > 0 && est(mots, i - 1))
            --i;
        return i;
    }
};

void compare(const std::u16string& texte) {
    const Ref<NSAttributedString> s = attribue(texte);
    const ReglesLentes lentes{*s->string()};
    for (NSUInteger i = 0; i <= texte.size(); ++i) {
        if (i < texte.size()) {
            ASSERT_EQ(s->doubleClickAtIndex(i), lentes.clic(i)) << textes::shown(texte) << " " << i;
        }
        ASSERT_EQ(s->nextWordFromIndex_forward(i, YES), lentes.avance(i)) << textes::shown(texte) << " on from " << i;
        ASSERT_EQ(s->nextWordFromIndex_forward(i, NO), lentes.recule(i)) << textes::shown(texte) << " back from " << i;
    }
}

TEST(MotsFrancaisTest, everyBoundaryIsTheOneOfTheRules) {
    // Pieces that meet in the ways that the rules tell apart.
    const std::u16string pieces[] = {u"'",      u"\u2019", u"h",      u"u",          u"i",      u"hui",     u"HUI",
                                     u"Hui",    u"huile",  u"a",      u"\u00E9",     u"-",      u" ",       u"  ",
                                     u"\t",     u"\u00A0", u"\n",     u".",          u"\u0153", u"\u0301",  u"1",
                                     u"\u0130", u"\u0131", u"\u2014", u"\U0001D49C", u"\xD800", u"aujourd", u"l'"};
    std::mt19937 hasard(20240229);
    for (int fois = 0; fois < 4000; ++fois) {
        std::u16string texte;
        for (unsigned n = 1 + hasard() % 8; n > 0; --n)
            texte += pieces[hasard() % std::size(pieces)];
        compare(texte);
        if (HasFatalFailure()) return;
    }
}

TEST(MotsFrancaisTest, everyUnitBelongsToTheClassOfItsSet) {
    // Each unit as a word of its own, behind an apostrophe, and as a letter of "hui".
    std::u16string texte = u"a'?b";
    for (std::uint32_t c = 0; c < 0x10000; ++c) {
        texte[2] = static_cast<char16_t>(c);
        const Ref<NSString> s = NSString::from(texte);
        const ReglesLentes lentes{*s};
        for (NSUInteger i : {0u, 2u}) {
            ASSERT_EQ(clicSurMot(s, i).plage, lentes.clic(i)) << std::hex << c;
            ASSERT_EQ(motSuivant(s, i), lentes.avance(i)) << std::hex << c;
        }
        ASSERT_EQ(motPrecedent(s, 3), lentes.recule(3)) << std::hex << c;
    }
    std::u16string hui = u"d'hui";
    for (NSUInteger lettre = 2; lettre < 5; ++lettre) {
        for (std::uint32_t c = 0; c < 0x10000; ++c) {
            std::u16string essai = hui;
            essai[lettre] = static_cast<char16_t>(c);
            const Ref<NSString> s = NSString::from(essai);
            ASSERT_EQ(clicSurMot(s, 0).plage, ReglesLentes{*s}.clic(0)) << std::hex << c;
        }
    }
}

} // namespace
} // namespace libvue
