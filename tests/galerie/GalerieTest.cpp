// The gallery through its window, as a person uses it, in memory and virtual time.
#include <unistd.h>

#include <filesystem>
#include <set>

#include "PageFixture.h"

#include <Images.h>
#include <disposition/Cadre.h>
#include <disposition/Feuilles.h>
#include <disposition/Scene.h>
#include <libvue/platform/appkit/NSSlider.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/graphics/NSImage.h>

namespace galerie {
namespace {

struct GalerieTest : PageFixture {
    GalerieTest() : PageFixture(u"Disposition") {}

    [[nodiscard]] Scene* scene() const { return toutes<Scene>().at(0); }
    [[nodiscard]] Cadre* cadre(std::u16string_view nom) const {
        for (Cadre* c : scene()->cadres())
            if (c->nom()->isEqualTo(nom)) return c;
        return nullptr;
    }
    static NSView* enfant(Cadre* c, std::size_t i) { return c->disposition()->subviews()[i]; }
    /// Where that part of it is, from its lower left corner.
    void cliqueEn(NSView* v, CGFloat partX, CGFloat partY = 0.5) const {
        const NSRect b = v->bounds();
        clique(v, {b.origin.x + partX * b.size.width, b.origin.y + partY * b.size.height});
    }
};

TEST_F(GalerieTest, TheSliderOfTheSpacingMovesTheChildren) {
    Cadre* colonne = cadre(u"Colonne");
    ASSERT_EQ(scene()->conteneur(), colonne);
    auto* curseur = nommee<NSSlider>(u"Espacement");
    cliqueEn(curseur, 0.5);
    const CGFloat ecart = colonne->lineaire()->espacement();
    EXPECT_NEAR(ecart, 20, 1);
    EXPECT_EQ(NSMinY(enfant(colonne, 1)->frame()), 18 + ecart);
    // The box follows a field: three points more.
    EXPECT_EQ(NSMinY(enfant(colonne, 2)->frame()), NSMaxY(enfant(colonne, 1)->frame()) + ecart + 3);
    EXPECT_EQ(colonne->disposition()->frame().size.height, NSMaxY(enfant(colonne, 2)->frame()));
    // The frames around have followed, and the field beside the slider says the number.
    EXPECT_GE(cadre(u"Corps")->disposition()->frame().size.height, NSMaxY(colonne->frame()));
    auto* champ = nommee<NSTextField>(u"Espacement");
    EXPECT_EQ(champ->integerValue(), static_cast<NSInteger>(ecart));
    for (const auto& [ecrit, tenu] : {std::pair{u"12", 12}, {u"4000", 40}, {u"-3", 0}, {u"abc", 0}}) {
        remplace(champ, ecrit);
        tape(u"\n");
        EXPECT_EQ(colonne->lineaire()->espacement(), tenu);
        EXPECT_EQ(champ->stringValue()->utf8(), std::to_string(tenu));
    }
}

TEST_F(GalerieTest, HidingAndTurningLayTheTreeOutAnew) {
    Cadre* galerieDeVues = cadre(u"Galerie");
    clique(enfant(galerieDeVues, 0));
    ASSERT_EQ(scene()->choisie(), enfant(galerieDeVues, 0));
    const CGFloat avant = galerieDeVues->frame().size.height;
    cliqueEn(boutonDeTitre(u"Aperçu"), 0.05);
    EXPECT_TRUE(enfant(galerieDeVues, 0)->isHidden());
    EXPECT_EQ(NSMinY(enfant(galerieDeVues, 1)->frame()), 0);
    EXPECT_EQ(galerieDeVues->frame().size.height, avant - 110 - 8);
    cliqueEn(boutonDeTitre(u"Aperçu"), 0.05);
    EXPECT_EQ(galerieDeVues->frame().size.height, avant);

    cliqueEn(cadre(u"Vignettes"), 0.5, 0.05);
    cliqueEn(boutonDeTitre(u"Verticale"), 0.1);
    EXPECT_EQ(enfant(cadre(u"Vignettes"), 1)->frame().origin, (NSPoint{0, 44 + 6}));
    EXPECT_EQ(boutonDeTitre(u"Horizontale")->state(), NSOffState);
}

TEST_F(GalerieTest, WhatIsTypedBecomesTheNameOfTheChosenLeaf) {
    NSView* apercu = enfant(cadre(u"Galerie"), 0);
    clique(apercu);
    auto* nom = nommee<NSTextField>(u"Nom");
    remplace(nom, u"étude");
    EXPECT_EQ(nomDeFeuille(apercu)->utf16(), u"étude");
    EXPECT_NE(boutonDeTitre(u"étude"), nullptr); // its check box too
    // A field within the tree is chosen by entering it.
    NSView* champ = enfant(cadre(u"Colonne"), 1);
    clique(champ);
    EXPECT_EQ(scene()->choisie(), champ);
    EXPECT_TRUE(nom->stringValue()->isEqualToString(nomDeFeuille(champ)));
}

TEST_F(GalerieTest, TheArrowsWalkTheTreeAndDeleteTakesOut) {
    cliqueEn(cadre(u"Colonne"), 0.5, 0.05);
    for (const unichar fleche : {NSRightArrowFunctionKey, NSDownArrowFunctionKey, NSRightArrowFunctionKey})
        touche(static_cast<char16_t>(fleche));
    EXPECT_EQ(scene()->choisie(), cadre(u"Vignettes"));
    touche(NSDeleteFunctionKey);
    EXPECT_EQ(cadre(u"Vignettes"), nullptr);
    EXPECT_EQ(scene()->choisie(), enfant(cadre(u"Galerie"), 0));
    for (int i = 0; i < 6; ++i)
        touche(NSUpArrowFunctionKey);
    EXPECT_EQ(scene()->choisie(), scene()->racine());
    touche(NSDeleteFunctionKey); // the outermost one stays
    EXPECT_EQ(scene()->choisie(), scene()->racine());
}

TEST_F(GalerieTest, TabReachesEveryControlAndComesBack) {
    for (NSUInteger page = 0; page < galerie->pages().size(); ++page) {
        galerie->montrePage(page);
        drain();
        std::set<NSView*> attendues, atteintes;
        for (NSControl* c : toutes<NSControl>())
            if (c->acceptsFirstResponder()) attendues.insert(c);
        NSResponder* depart = fenetre()->firstResponder();
        for (std::size_t i = 0; i < attendues.size() + 10; ++i) {
            touche(u'\t');
            // A field that is edited has handed the focus to its editor.
            for (auto* v = as<NSView>(fenetre()->firstResponder()); v; v = v->superview())
                if (attendues.count(v)) {
                    atteintes.insert(v);
                    break;
                }
            if (fenetre()->firstResponder() == depart) break;
        }
        EXPECT_EQ(atteintes, attendues) << galerie->pages()[page]->nom()->utf8();
        EXPECT_EQ(fenetre()->firstResponder(), depart);
    }
}

TEST_F(GalerieTest, KeysChangeThePageAndEscapeEndsTheGallery) {
    touche(u'2', kCommande);
    EXPECT_EQ(galerie->indiceDePage(), 1u);
    touche(NSUpArrowFunctionKey);
    EXPECT_EQ(galerie->indiceDePage(), 0u);
    touche(NSUpArrowFunctionKey);
    EXPECT_EQ(galerie->indiceDePage(), 0u);
    clique(nommee<NSSlider>(u"Espacement"));
    touche(NSEscapeCharacter);
    EXPECT_TRUE(fenetre()->isVisible());
    touche(NSEscapeCharacter);
    EXPECT_FALSE(fenetre()->isVisible());
}

TEST_F(GalerieTest, APictureIsWhatTheWindowShowsAndNothingElse) {
    for (NSUInteger page = 0; page < galerie->pages().size(); ++page) {
        galerie->montrePage(page);
        for (const Appearance a : {Appearance::light, Appearance::dark}) {
            galerie->setBureau(a);
            drain();
            const auto image = galerie->image(1);
            ASSERT_TRUE(image);
            EXPECT_TRUE(image->isEqualToData(fenetre()->captureImage()->PNGRepresentation()));
            EXPECT_TRUE(image->isEqualToData(galerie->image(1)));
        }
    }
}

TEST_F(GalerieTest, PicturesGoIntoFiles) {
    const auto dossier = std::filesystem::temp_directory_path() / ("galerie-" + std::to_string(getpid()));
    EXPECT_TRUE(ecritImages(*galerie, {dossier / "a", {0}, {Appearance::light, Appearance::dark}, {1, 1.5}}));
    std::set<std::string> noms;
    for (const auto& f : std::filesystem::directory_iterator(dossier / "a"))
        noms.insert(f.path().filename());
    EXPECT_EQ(noms, (std::set<std::string>{"disposition-clair@1x.png", "disposition-clair@1.5x.png",
                                           "disposition-sombre@1x.png", "disposition-sombre@1.5x.png"}));
    // A file stands where the folder should be.
    EXPECT_FALSE(ecritImages(*galerie, {dossier / "a/disposition-clair@1x.png", {0}, {Appearance::light}, {1}}));
    std::filesystem::remove_all(dossier);
    EXPECT_EQ(nomDeFichier(u"Été à Noël"_ns), "ete-a-noel");
}

} // namespace
} // namespace galerie
