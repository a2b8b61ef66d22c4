// The page of French texts, as a person uses it.
#include "PageFixture.h"

#include <francais/BandeauMots.h>
#include <francais/ListeMots.h>
#include <libvue/platform/appkit/NSSlider.h>
#include <libvue/platform/appkit/NSText.h>

namespace galerie {
namespace {

struct PageFrancaisTest : PageFixture {
    PageFrancaisTest() : PageFixture(u"Français") {}

    [[nodiscard]] std::string ordre() const {
        return toutes<ListeMots>().at(0)->mots()->componentsJoinedByString(u" "_ns)->utf8();
    }
};

TEST_F(PageFrancaisTest, TheListFollowsTheTypingAndTheOrder) {
    auto* champ = nommee<NSTextField>(u"Mots à trier");
    remplace(champ, u"coté, zèbre  Côte cote «côté");
    EXPECT_EQ(ordre(), "«côté cote Côte coté zèbre");
    tape(u" abc");
    EXPECT_EQ(ordre(), "«côté abc cote Côte coté zèbre");
    EXPECT_EQ(toutes<ListeMots>().at(1)->mots()->componentsJoinedByString(u" "_ns)->utf8(),
              "Côte abc cote coté zèbre «côté");
    choisis(nommee<NSPopUpButton>(u"Ordre"), 1);
    EXPECT_EQ(ordre(), "abc cote Côte coté «côté zèbre");
    remplace(champ, u" ,; ");
    EXPECT_EQ(ordre(), "");
}

TEST_F(PageFrancaisTest, ADoubleClickSaysWhichRuleMadeItsRange) {
    auto* champ = nommee<NSTextField>(u"Texte à parcourir");
    remplace(champ, u"aujourd'hui l'ami l' ");
    const auto* editeur = champ->currentEditor();
    ASSERT_TRUE(editeur);
    clique(champ, {12, 12}, 2);
    EXPECT_EQ(editeur->selectedRange(), (NSRange{0, 11}));
    EXPECT_TRUE(dit(u"«\u00A0aujourd'hui\u00A0», de 0 à 11"));
    EXPECT_TRUE(dit(u"«\u00A0hui\u00A0» n’est pas un mot à part"));
    touche(NSRightArrowFunctionKey, NSControlKeyMask);
    EXPECT_EQ(editeur->selectedRange(), (NSRange{14, 0}));
    EXPECT_TRUE(dit(u"Le curseur est en 14."));
    EXPECT_TRUE(dit(u"Ctrl+← mène en 12, Ctrl+→ en 17, par-dessus «\u00A0ami\u00A0»."));
    touche(NSRightArrowFunctionKey, NSShiftKeyMask);
    EXPECT_TRUE(dit(u"Une sélection libre"));
    touche(NSLeftArrowFunctionKey, NSControlKeyMask);
    EXPECT_EQ(editeur->selectedRange(), (NSRange{14, 0}));
}

TEST_F(PageFrancaisTest, AClickOnAPieceSelectsItInTheField) {
    auto* champ = nommee<NSTextField>(u"Texte à parcourir");
    remplace(champ, u"d'hui, l'ami");
    auto* bandeau = toutes<BandeauMots>().at(0);
    // d'hui | , | · | l' | ami
    ASSERT_EQ(bandeau->nombre(), 5u);
    touche(u'\t'); // the field is left, and entered again by the click
    const NSRect r = bandeau->rectDuMorceau(3);
    clique(bandeau, {NSMidX(r), NSMidY(r)});
    ASSERT_TRUE(champ->currentEditor());
    EXPECT_EQ(champ->currentEditor()->selectedRange(), (NSRange{7, 2}));
    EXPECT_TRUE(dit(u"Une élision"));
}

TEST_F(PageFrancaisTest, RomanNumeralsGoBothWays) {
    auto* nombre = nommee<NSTextField>(u"Nombre");
    auto* romain = nommee<NSTextField>(u"Chiffres romains");
    remplace(nombre, u"1994");
    EXPECT_EQ(romain->stringValue()->utf8(), "MCMXCIV");
    EXPECT_EQ(nommee<NSSlider>(u"Nombre")->doubleValue(), 1994);
    remplace(romain, u"MMXXVI");
    EXPECT_EQ(nombre->stringValue()->utf8(), "2026");
    remplace(romain, u"IIII");
    EXPECT_TRUE(dit(u"Ce n’est pas un nombre"));
    touche(u'\t'); // what was refused goes when the field is left
    EXPECT_FALSE(dit(u"Ce n’est pas un nombre"));
}

} // namespace
} // namespace galerie
