// The pages of charts, as a person uses them.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "../appkit/AppFixture.h"

#include <FenetreGalerie.h>
#include <graphiques/DonneesMots.h>
#include <graphiques/HistogrammeClavier.h>
#include <graphiques/TarteClavier.h>
#include <libvue/charts/KCPointeDeTarte.h>
#include <libvue/charts/TableAccessible.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSSlider.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSNumber.h>

namespace galerie {
namespace {

using libvue::test::AppFixture;

struct PageGraphiquesTest : AppFixture {
    Ref<FenetreGalerie> galerie = make<FenetreGalerie>(RegistrePages::fabriqueToutes());

    PageGraphiquesTest() { galerie->ouvre(); }
    void TearDown() override {
        galerie = nullptr;
        setCurrentAppearance(Appearance::light);
        AppFixture::TearDown();
    }
    void page(const char16_t* nom) {
        for (NSUInteger i = 0; i < galerie->pages().size(); ++i)
            if (galerie->pages()[i]->nom()->isEqualTo(nom)) galerie->montrePage(i);
        drain();
    }
    [[nodiscard]] NSWindow* fenetre() const { return galerie->fenetre(); }
    template <class T, class Condition> T* cherche(NSView* dans, const Condition& admet) const {
        if (!dans) return nullptr;
        if (auto* t = as<T>(dans); t && admet(t)) return t;
        for (NSView* v : dans->subviews())
            if (T* t = cherche<T>(v, admet)) return t;
        return nullptr;
    }
    template <class T> T* nommee(const char16_t* nom) const {
        return cherche<T>(fenetre()->contentView(), [&](T* v) {
            const auto d = v->accessibilityDescription();
            return d.label && d.label->isEqualTo(nom);
        });
    }
    [[nodiscard]] bool dit(std::u16string_view texte) const {
        return cherche<NSTextField>(fenetre()->contentView(), [&](NSTextField* l) {
                   return !l->isEditable() && l->stringValue()->utf16().find(texte) != std::u16string::npos;
               }) != nullptr;
    }
    void clique(NSView* v, NSPoint ici) const {
        windows().click(fenetre()->convertBaseToScreen(v->convertPoint_toView(ici, nullptr)));
        drain();
    }
    void touche(char16_t c, std::uint32_t modificateurs = 0) const {
        windows().key(c, modificateurs);
        drain();
    }
    void remplace(NSTextField* champ, std::u16string_view texte) const {
        clique(champ, {champ->bounds().size.width / 2, champ->bounds().size.height / 2});
        touche(u'a', backend::modifierCommand);
        windows().typeText(texte);
        drain();
    }
    void choisis(NSPopUpButton* p, NSInteger i) const {
        p->selectItemAtIndex(i);
        p->sendAction_to(p->action(), p->target());
        drain();
    }
    /// What was written under that name into the folder of the exports.
    std::string exporte(const char16_t* bouton, const char* fichier) const {
        const auto dossier = std::filesystem::temp_directory_path() / ("galerie-exports-" + std::to_string(getpid()));
        std::filesystem::create_directories(dossier);
        setenv("GALERIE_EXPORTS", dossier.c_str(), 1);
        auto* b =
            cherche<NSButton>(fenetre()->contentView(), [&](NSButton* x) { return x->title()->isEqualTo(bouton); });
        if (b) clique(b, {b->bounds().size.width / 2, b->bounds().size.height / 2});
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
    page(u"Tarte");
    auto* t = nommee<TarteClavier>(u"Tarte");
    ASSERT_TRUE(t);
    const auto choisie = [&] { return t->selectedIndex()->integerValue(); };
    const auto n = static_cast<NSInteger>(t->pointes()->count());
    ASSERT_GT(n, 5);
    EXPECT_EQ(choisie(), 0);
    fenetre()->makeFirstResponder(t);
    touche(NSRightArrowFunctionKey);
    EXPECT_EQ(choisie(), 1);
    EXPECT_EQ(t->pretePointe(0)->pourcentageExtraction(), 0);
    EXPECT_EQ(t->pretePointe(1)->pourcentageExtraction(), 1);
    EXPECT_TRUE(dit(t->pretePointe(1)->chaine()->utf16() + u"\u00A0: "));
    t->setValeur_deLaPointe(0, 2); // not to be seen
    touche(NSDownArrowFunctionKey);
    EXPECT_EQ(choisie(), 3);
    touche(NSEndFunctionKey);
    EXPECT_EQ(choisie(), n - 1);
    touche(NSRightArrowFunctionKey);
    EXPECT_EQ(choisie(), 0);
    touche(NSLeftArrowFunctionKey);
    EXPECT_EQ(choisie(), n - 1);
    touche(NSHomeFunctionKey);
    EXPECT_EQ(choisie(), 0);
    touche(NSHomeFunctionKey); // and not off again
    EXPECT_EQ(choisie(), 0);
    touche(u' ');
    EXPECT_EQ(choisie(), -1);
    EXPECT_TRUE(dit(u"Cliquez une pointe"));
    clique(t, {t->centre().x - 40, t->centre().y + 10});
    EXPECT_GE(choisie(), 0);
    EXPECT_EQ(fenetre()->firstResponder(), t);
}

TEST_F(PageGraphiquesTest, APiesDataAndValuesChange) {
    page(u"Tarte");
    auto* t = nommee<TarteClavier>(u"Tarte");
    auto* champ = nommee<NSTextField>(u"Valeur de E");
    ASSERT_TRUE(t && champ);
    const NSInteger avant = t->total(), valeur = t->pretePointe(0)->valeur();
    remplace(champ, u"7");
    EXPECT_EQ(t->total(), avant - valeur + 7);
    remplace(champ, u"7x");
    EXPECT_EQ(t->total(), avant - valeur + 7);
    const NSUInteger nombres[] = {10, 11, 7, 40, 1, 0};
    for (NSInteger i = 0; i < 6; ++i) {
        choisis(nommee<NSPopUpButton>(u"Données"), i);
        EXPECT_EQ(t->pointes()->count(), nombres[i]) << i;
        EXPECT_EQ(t->total() != 0, i < 5);
        if (const char* ou = std::getenv("GALERIE_IMAGES"))
            galerie->image(1)->writeToFile_atomically(
                NSString::fromUTF8(std::string(ou) + "/jeu" + std::to_string(i) + ".png"), YES);
    }
}

TEST_F(PageGraphiquesTest, ChartsAreExported) {
    page(u"Tarte");
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
    windows().typeText(u"4");
    drain();
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
    for (NSInteger i = 0; i < 5; ++i) {
        choisis(nommee<NSPopUpButton>(u"Données"), i);
        largeur->setDoubleValue(400);
        largeur->sendAction_to(largeur->action(), largeur->target());
        choisis(nommee<NSPopUpButton>(u"Couleurs"), i % 3);
        if (const char* ou = std::getenv("GALERIE_IMAGES"))
            galerie->image(1)->writeToFile_atomically(
                NSString::fromUTF8(std::string(ou) + "/barres" + std::to_string(i) + ".png"), YES);
    }
}

} // namespace
} // namespace galerie
