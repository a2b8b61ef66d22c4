// The pages of charts, as a person uses them.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "PageFixture.h"

#include <graphiques/DonneesMots.h>
#include <graphiques/HistogrammeClavier.h>
#include <graphiques/TarteClavier.h>
#include <libvue/charts/KCPointeDeTarte.h>
#include <libvue/charts/TableAccessible.h>
#include <libvue/platform/appkit/NSSlider.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSNumber.h>

namespace galerie {
namespace {

struct PageGraphiquesTest : PageFixture {
    PageGraphiquesTest() : PageFixture(u"Tarte") {}

    /// What was written under that name into the folder of the exports.
    [[nodiscard]] std::string exporte(const char16_t* bouton, const char* fichier) const {
        const auto dossier = std::filesystem::temp_directory_path() / ("galerie-exports-" + std::to_string(getpid()));
        std::filesystem::create_directories(dossier);
        setenv("GALERIE_EXPORTS", dossier.c_str(), 1);
        clique(boutonDeTitre(bouton));
        std::ifstream f(dossier / fichier, std::ios::binary);
        std::string octets((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
        unsetenv("GALERIE_EXPORTS");
        std::filesystem::remove_all(dossier);
        return octets;
    }
};

TEST_F(PageGraphiquesTest, WordsAreCountedByLetterPlaceAndLength) {
    const auto d = DonneesMots::compte("Été, porte-clé\xFFl’à\n", u"essai");
    EXPECT_EQ(d.mots, 4); // été, porteclé, l, à
    const auto& e = d.lettres.rangs.at(4).parts;
    EXPECT_EQ(e, (std::vector<NSInteger>{1, 1, 2}));
    EXPECT_EQ(d.lettres.rangs.at(0).parts, (std::vector<NSInteger>{1, 0, 0}));
    EXPECT_EQ(d.longueurs.rangs.at(0).parts, (std::vector<NSInteger>{1, 1}));
    EXPECT_EQ(d.longueurs.rangs.at(2).parts, (std::vector<NSInteger>{0, 1}));
    EXPECT_EQ(d.longueurs.rangs.at(7).parts, (std::vector<NSInteger>{0, 1}));
    const auto grands = d.lettres.plusGrands(2);
    ASSERT_EQ(grands.rangs.size(), 3u);
    EXPECT_EQ(grands.rangs[0].nom, u"E");
    EXPECT_EQ(grands.rangs[1].nom, u"L");
    EXPECT_EQ(grands.rangs[2].nom, u"autres");
    EXPECT_EQ(grands.rangs[0].total() + grands.rangs[1].total() + grands.rangs[2].total(), 13);
}

TEST_F(PageGraphiquesTest, SlicesAreReachedFromTheKeyboard) {
    auto* t = nommee<TarteClavier>(u"Tarte");
    ASSERT_TRUE(t);
    const auto choisie = [&] { return t->selectedIndex()->integerValue(); };
    const auto n = static_cast<NSInteger>(t->pointes()->count());
    ASSERT_GT(n, 5);
    EXPECT_EQ(choisie(), 0);
    fenetre()->makeFirstResponder(t);
    t->setValeur_deLaPointe(0, 2); // not to be seen
    const std::pair<unichar, NSInteger> touches[] = {{NSRightArrowFunctionKey, 1},
                                                     {NSDownArrowFunctionKey, 3},
                                                     {NSEndFunctionKey, n - 1},
                                                     {NSRightArrowFunctionKey, 0},
                                                     {NSLeftArrowFunctionKey, n - 1},
                                                     {NSHomeFunctionKey, 0},
                                                     {NSHomeFunctionKey, 0}, // and not off again
                                                     {u' ', -1}};
    for (const auto& [c, attendue] : touches) {
        touche(c);
        EXPECT_EQ(choisie(), attendue);
        if (attendue < 0) continue;
        EXPECT_EQ(t->pretePointe(attendue)->pourcentageExtraction(), 1);
        EXPECT_TRUE(dit(t->pretePointe(attendue)->chaine()->utf16() + u"\u00A0: "));
    }
    EXPECT_EQ(t->pretePointe(0)->pourcentageExtraction(), 0);
    EXPECT_TRUE(dit(u"Cliquez une pointe"));
    clique(t, {t->centre().x - 40, t->centre().y + 10});
    EXPECT_GE(choisie(), 0);
    EXPECT_EQ(fenetre()->firstResponder(), t);
}

TEST_F(PageGraphiquesTest, APiesDataAndValuesChange) {
    auto* t = nommee<TarteClavier>(u"Tarte");
    auto* champ = nommee<NSTextField>(u"Valeur de E");
    ASSERT_TRUE(t && champ);
    const NSInteger avant = t->total(), valeur = t->pretePointe(0)->valeur();
    for (const auto saisie : {u"7", u"7x"}) {
        remplace(champ, saisie);
        EXPECT_EQ(t->total(), avant - valeur + 7);
    }
    const NSUInteger nombres[] = {10, 11, 7, 40, 1, 0};
    for (NSInteger i = 0; i < 6; ++i) {
        choisis(nommee<NSPopUpButton>(u"Données"), i);
        EXPECT_EQ(t->pointes()->count(), nombres[i]) << i;
        EXPECT_EQ(t->total() != 0, i < 5);
    }
}

TEST_F(PageGraphiquesTest, ChartsAreExported) {
    EXPECT_EQ(exporte(u"PDF", "tarte.pdf").substr(0, 5), "%PDF-");
    EXPECT_EQ(exporte(u"PNG", "tarte.png").substr(1, 3), "PNG");
    EXPECT_TRUE(dit(u"Écrit dans "));
    page(u"Histogramme");
    EXPECT_GT(exporte(u"PDF", "histogramme.pdf").size(), 1000u);
    EXPECT_GT(exporte(u"PNG", "histogramme.png").size(), 1000u);
}

TEST_F(PageGraphiquesTest, BandsAreReachedFromTheKeyboardAndNamed) {
    page(u"Histogramme");
    auto* h = nommee<HistogrammeClavier>(u"Histogramme");
    ASSERT_TRUE(h);
    EXPECT_EQ(h->bandesAvecDonnees(), 26);
    clique(h, {50, 5 + 4 * (h->largeurBandes() + h->espacementBandes()) + 2});
    EXPECT_EQ(h->clickedBar(), 4);
    EXPECT_TRUE(dit(u"E\u00A0: "));
    touche(NSDownArrowFunctionKey);
    EXPECT_TRUE(dit(u"F\u00A0: "));
    touche(NSEndFunctionKey);
    touche(NSDownArrowFunctionKey);
    EXPECT_EQ(h->clickedBar(), 25);
    touche(NSHomeFunctionKey);
    touche(NSUpArrowFunctionKey);
    EXPECT_EQ(h->clickedBar(), 0);
    EXPECT_TRUE(dit(u"A\u00A0: "));
}

TEST_F(PageGraphiquesTest, ValuesAreTypedAndTheChartShrinksToNothing) {
    page(u"Histogramme");
    auto* h = nommee<HistogrammeClavier>(u"Histogramme");
    auto* champ = nommee<NSTextField>(u"Valeurs");
    ASSERT_TRUE(h && champ);
    remplace(champ, u"1,5;2 3\u00A04 x 5 -6 1e400 nan");
    EXPECT_EQ(h->donnees()->count(), 7u);
    EXPECT_EQ(h->donnees()->at<NSNumber>(0)->doubleValue(), 1.5);
    EXPECT_EQ(h->bandesAvecDonnees(), 2); // three sections
    EXPECT_TRUE(dit(u"7 valeurs, 2 bandes et un reste de 1."));
    std::u16string trop;
    for (int i = 0; i < 2004; ++i)
        trop += u"4 ";
    fenetre()->makeFirstResponder(h);
    champ->setStringValue(NSString::from(trop));
    clique(champ, {10, champ->bounds().size.height / 2});
    touche(NSEndFunctionKey);
    tape(u"4");
    EXPECT_TRUE(dit(u"2\u00A0000 valeurs au plus\u00A0: 5 sont laissées."));
    EXPECT_EQ(h->donnees()->count(), 2000u);
    EXPECT_EQ(h->tableDesBandes().lignes.size(), 666u);
    EXPECT_NE(h->tableAccessible().texteDeLaLigne(1)->utf8().find("bande 1, section 2"), std::string::npos);
    remplace(champ, u"12 5 3 8 9 2");
    auto* largeur = nommee<NSSlider>(u"Largeur");
    for (const double l : {300.0, 40.0, 12.0, 2.0, 0.0}) {
        largeur->setDoubleValue(l);
        largeur->sendAction_to(largeur->action(), largeur->target());
        drain();
        EXPECT_EQ(h->frame().size.width, l);
        ASSERT_TRUE(galerie->image(1));
    }
}

} // namespace
} // namespace galerie
