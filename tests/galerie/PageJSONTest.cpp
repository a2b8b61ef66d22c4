// The page of JSON texts, as a person uses it.
#include "PageFixture.h"

#include <json/ArbreJson.h>
#include <json/ZoneSaisie.h>
#include <libvue/platform/appkit/NSPasteboard.h>

namespace galerie {
namespace {

struct PageJSONTest : PageFixture {
    PageJSONTest() : PageFixture(u"JSON") {}

    [[nodiscard]] ZoneSaisie* saisie() const { return toutes<ZoneSaisie>().at(0); }
    [[nodiscard]] ArbreJson* arbre() const { return toutes<ArbreJson>().at(0); }
    [[nodiscard]] std::string texte() const { return saisie()->string()->utf8(); }
    /// The rows, one a line.
    [[nodiscard]] std::string rangees() const {
        std::string r;
        for (NSUInteger i = 0; i < arbre()->nombreDeRangees(); ++i)
            r += arbre()->texteDeRangee(i)->utf8() + "\n";
        return r;
    }
    /// Into the emptied text, through the keyboard.
    void ecris(std::u16string_view texte) const {
        clique(saisie(), {40, 40});
        touche(u'a', kCommande);
        touche(NSDeleteCharacter);
        tape(texte);
    }
    void touches(std::u16string_view toutes, std::uint32_t modificateurs = 0) const {
        for (const char16_t c : toutes)
            touche(c, modificateurs);
    }
    void cliqueRangee(NSUInteger i, CGFloat x, int fois = 1) const {
        clique(arbre(), {x, 6 + 21 * (static_cast<CGFloat>(i) + 0.5)}, fois);
    }
};

TEST_F(PageJSONTest, TheTreeFollowsTheTypingAndShowsErrorsInnermostFirst) {
    ecris(u"[1");
    EXPECT_EQ(rangees(), "11 : End of input while parsing array\n");
    EXPECT_TRUE(dit(u"Erreurs") && dit(u"une erreur"));
    EXPECT_FALSE(boutonDeTitre(u"Indenté")->isEnabled());
    tape(u" {\"é\":\"a\\n\"} true null]");
    EXPECT_EQ(rangees(), "tableau · 4 valeurs\n1\nobjet · 1 clé\né : «\u00A0a\\n\u00A0»\ntrue\nnull\n");
    EXPECT_FALSE(dit(u"Erreurs"));
    EXPECT_TRUE(dit(u"25 unités lues"));
    EXPECT_TRUE(boutonDeTitre(u"Indenté")->isEnabled());
    ecris(u"{\"a\":[1,,2]}");
    EXPECT_EQ(rangees(), "3 : Unrecognised leading character\n3 : Expected value while parsing array\n"
                         "3 : Object value expected for key: a\n");
    EXPECT_TRUE(dit(u"3 erreurs"));
}

TEST_F(PageJSONTest, ReturnKeepsTheIndentation) {
    ecris(u"  [1\n2\n]");
    EXPECT_EQ(texte(), "  [1\n  2\n  ]");
    // Before the first character of the line only what stands before the caret is kept.
    touche(NSHomeFunctionKey);
    touche(NSRightArrowFunctionKey);
    tape(u"\n");
    EXPECT_EQ(texte(), "  [1\n  2\n \n  ]");
    EXPECT_EQ(saisie()->selectedRange(), (NSRange{12, 0}));
}

TEST_F(PageJSONTest, ChangesAreUndoneAndDoneAgain) {
    ecris(u"[1]");
    tape(u" ");
    tape(u"x");
    EXPECT_EQ(rangees(), "10 : Garbage after JSON\n");
    // A space begins a step of its own; the tree goes with each.
    touche(u'z', kCommande);
    EXPECT_EQ(texte(), "[1]");
    EXPECT_EQ(rangees(), "tableau · 1 valeur\n1\n");
    touche(u'z', kCommande);
    EXPECT_EQ(texte(), "");
    touches(u"zzz", kCommande | kMajuscule); // one more than there are
    EXPECT_EQ(texte(), "[1] x");
    // What the buttons write is a change like another; what is typed next ends what could be done again.
    touche(NSDeleteCharacter);
    clique(boutonDeTitre(u"Indenté"));
    clique(saisie(), {40, 40});
    touche(u'z', kCommande);
    EXPECT_EQ(texte(), "[1] ");
    tape(u" ");
    touche(u'z', kCommande | kMajuscule);
    EXPECT_EQ(texte(), "[1]  ");
    touches(std::u16string(50, u'z'), kCommande);
    EXPECT_NE(texte().find("Voyage d’hiver"), std::string::npos); // where the page began
}

TEST_F(PageJSONTest, TextGoesThroughThePasteboard) {
    ecris(u"[1,2]");
    touches(u"ac", kCommande);
    auto* presse = NSPasteboard::generalPasteboard();
    EXPECT_EQ(presse->stringForType(NSStringPboardType)->utf8(), "[1,2]");
    touche(u'x', kCommande);
    EXPECT_EQ(texte(), "");
    touches(u"vv", kCommande);
    EXPECT_EQ(texte(), "[1,2][1,2]");
    // Line ends of others, tabs and control characters.
    const std::string ailleurs = "{\r\n\t\"clé\" :\r1\x01}\xE2\x80\xA8";
    backend.clipboard().setFromElsewhere({{"text/plain", {ailleurs.begin(), ailleurs.end()}}});
    drain();
    touches(u"av", kCommande);
    EXPECT_EQ(texte(), "{\n  \"clé\" :\n1}\n");
    EXPECT_EQ(rangees(), "objet · 1 clé\nclé : 1\n");
    touche(u'c', kCommande); // nothing is selected: what was there stays
    EXPECT_EQ(presse->stringForType(NSStringPboardType)->utf8(), ailleurs);
}

TEST_F(PageJSONTest, DeadKeysAndInputMethodsGiveTheirText) {
    ecris(u"[\"");
    windows().commit(u"ê"); // a dead key and the key after it
    drain();
    // What is being composed shows behind the text, with the caret behind it, and is no part of it yet.
    const CGFloat avant = NSMinX(saisie()->caretRect());
    windows().preedit(u"か", {1, 0});
    drain();
    EXPECT_EQ(texte(), "[\"ê");
    EXPECT_GT(NSMinX(saisie()->caretRect()), avant);
    windows().commit(u"漢字");
    drain();
    tape(u"\"]");
    EXPECT_EQ(rangees(), "tableau · 1 valeur\n«\u00A0ê漢字\u00A0»\n");
}

TEST_F(PageJSONTest, BranchesFoldByMouseAndKeys) {
    ecris(u"{\"a\":[1,[2,3]],\"b\":{}}");
    const std::string tout =
        "objet · 2 clés\na : tableau · 2 valeurs\n1\ntableau · 2 valeurs\n2\n3\nb : objet · 0 clé\n";
    EXPECT_EQ(rangees(), tout);
    cliqueRangee(3, 12 + 14 + 2 * 16 - 8); // its triangle
    EXPECT_EQ(arbre()->nombreDeRangees(), 5u);
    cliqueRangee(1, 60, 2);
    EXPECT_EQ(rangees(), "objet · 2 clés\na : tableau · 2 valeurs\nb : objet · 0 clé\n");
    touche(NSRightArrowFunctionKey);
    EXPECT_EQ(arbre()->nombreDeRangees(), 5u) << "what was folded within stays so";
    touches(u"\uF701\uF701\uF703"); // down, down, right
    EXPECT_EQ(rangees(), tout);
    // An empty object does not fold, and a click below the rows does nothing.
    touches(u"\uF72B\uF702"); // end, left
    cliqueRangee(7, 60, 2);
    EXPECT_EQ(rangees(), tout);
}

TEST_F(PageJSONTest, ButtonsWriteTheValueAsAsked) {
    ecris(u"{\"b\":1.50,\"a\":[ ]}");
    clique(boutonDeTitre(u"Clés triées"), {10, 10});
    clique(boutonDeTitre(u"Compact"));
    EXPECT_EQ(texte(), "{\"a\":[],\"b\":1.5}");
    clique(boutonDeTitre(u"Indenté"));
    EXPECT_EQ(texte(), "{\n  \"a\" : [],\n  \"b\" : 1.5\n}");
    // A value alone cannot be written by what the check box does not allow.
    ecris(u"\"x\"");
    EXPECT_EQ(rangees(), "4 : Valid fragment, but not JSON\n");
    EXPECT_FALSE(boutonDeTitre(u"Compact")->isEnabled());
    clique(boutonDeTitre(u"Valeur seule permise"), {10, 10});
    EXPECT_EQ(rangees(), "«\u00A0x\u00A0»\n");
}

TEST_F(PageJSONTest, ADeepExampleIsScrolledToItsEndByTheKeyboard) {
    choisis(toutes<NSPopUpButton>().at(0), 5);
    EXPECT_EQ(arbre()->texteDeRangee(0)->utf8(), "7 : Nested too deep");
    EXPECT_EQ(arbre()->nombreDeRangees(), 513u);
    clique(arbre(), {60, 20});
    touche(NSEndFunctionKey);
    EXPECT_TRUE(NSContainsRect(NSInsetRect(arbre()->visibleRect(), -1, -1),
                               NSMakeRect(arbre()->visibleRect().origin.x, 6 + 21 * 512.0, 1, 21)));
}

} // namespace
} // namespace galerie
