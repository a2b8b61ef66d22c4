// The pages that speak to the user and that slide, by the keyboard alone and by the mouse.
#include "PageFixture.h"

#include <libvue/alerts/KAlerteEphemere.h>
#include <libvue/alerts/ReponseAlerte.h>
#include <libvue/panels/KCConteneurDePanneauxGlissants.h>
#include <libvue/platform/foundation/NSUserDefaults.h>

namespace galerie {
namespace {

struct PagesAvisTest : PageFixture {
    PagesAvisTest() : PageFixture(u"Avis") {}
    void TearDown() override {
        KAlerteEphemere::annuleAlerte();
        PageFixture::TearDown();
    }
    /// On to the control, by Tab alone.
    void vaSur(NSView* v) const {
        ASSERT_TRUE(v);
        for (int i = 0; i < 100 && fenetre()->firstResponder() != v; ++i)
            touche(u'\t');
        ASSERT_EQ(fenetre()->firstResponder(), v);
    }
    void presse(std::u16string_view titre, bool auClavier) const {
        if (!auClavier) return clique(boutonDeTitre(titre));
        vaSur(boutonDeTitre(titre));
        touche(u' ');
    }
    [[nodiscard]] NSWindow* avis() const {
        const Ref<NSArray> fenetres = NSApp()->orderedWindows();
        auto* devant = fenetres->at<NSWindow>(0);
        return devant == fenetre() ? nullptr : devant;
    }
};

TEST_F(PagesAvisTest, ANoticeStandsWhereItWasAskedFor) {
    for (const bool auClavier : {true, false}) {
        for (const auto& [titre, enfant] : {std::pair{u"Sur une vue", true},
                                            {u"Sur le document qui défile", true},
                                            {u"Sur la fenêtre", true},
                                            {u"À l’écran", false}}) {
            presse(titre, auClavier);
            ASSERT_TRUE(avis());
            EXPECT_EQ(avis()->parentWindow(), enfant ? fenetre() : nullptr);
            EXPECT_EQ(avis()->frame().size, (NSSize{256, 152}));
            EXPECT_TRUE(fenetre()->isKeyWindow());
        }
        presse(u"Retirer l’avis tout de suite", auClavier);
        EXPECT_FALSE(avis());
    }
    choisis(nommee<NSPopUpButton>(u"Largeur"), 2);
    choisis(nommee<NSPopUpButton>(u"Icône"), 0);
    remplace(nommee<NSTextField>(u"Explication"), u"x");
    touche(NSDeleteCharacter);
    presse(u"Suit la fenêtre du lieu", true);
    presse(u"Sur la fenêtre", true);
    ASSERT_TRUE(avis());
    EXPECT_EQ(avis()->frame().size, (NSSize{400, 58}));
    EXPECT_FALSE(avis()->parentWindow());
    page(u"Panneaux");
    EXPECT_FALSE(avis()) << "it goes with its page";
}

TEST_F(PagesAvisTest, PanelsSlideByArrowsAndButtonsAndSayWhatTheyHear) {
    page(u"Panneaux");
    auto* conteneur = toutes<KCConteneurDePanneauxGlissants>().at(0);
    NSView* const avant = conteneur->panneauActuel();
    EXPECT_TRUE(dit(u"2.  «\u00A0Marges\u00A0»")) << "the panel, and the one in it";
    vaSur(conteneur);
    bool change = false;
    const auto attendsChange = [&] {
        change = !change;
        EXPECT_EQ(conteneur->panneauActuel() == avant, !change);
        EXPECT_EQ(conteneur->subviews().size(), 1u);
        EXPECT_EQ(conteneur->panneauActuel()->frame(), conteneur->bounds());
    };
    for (const std::uint32_t par : {0u, kMajuscule})
        for (const unichar fleche :
             {NSLeftArrowFunctionKey, NSRightArrowFunctionKey, NSUpArrowFunctionKey, NSDownArrowFunctionKey}) {
            touche(static_cast<char16_t>(fleche), par);
            attendsChange();
        }
    for (const char16_t* nom :
         {u"Pousser vers la gauche", u"Pousser vers la droite", u"Pousser vers le haut", u"Pousser vers le bas",
          u"Couvrir vers la gauche", u"Couvrir vers la droite", u"Couvrir vers le haut", u"Couvrir vers le bas"}) {
        clique(nommee<NSButton>(nom));
        attendsChange();
    }
    presse(u"Changer de panneau", true);
    attendsChange();
    presse(u"Afficher le même encore", true);
    EXPECT_EQ(conteneur->panneauActuel() == avant, !change);
}

TEST_F(PagesAvisTest, AnAlertIsAskedAnsweredRememberedAndForgotten) {
    page(u"Alertes");
    touche(u'\r');
    ASSERT_TRUE(fenetre()->attachedSheet());
    touche(0x1B);
    EXPECT_TRUE(dit(u"1.  Feuille : Annuler (2)"));
    presse(u"Avec la case « Ne plus afficher »", true);
    touche(u'\r');
    touche(u'\t');
    touche(u'\t');
    touche(u' ');
    touche(u'\r');
    EXPECT_TRUE(dit(u"2.  Feuille : OK (1)"));
    touche(u'\r');
    EXPECT_FALSE(fenetre()->attachedSheet());
    EXPECT_TRUE(dit(u"3.  Retenue : OK (1)"));
    presse(u"Oublier la réponse", true);
    EXPECT_FALSE(boutonDeTitre(u"Oublier la réponse")->isEnabled());
    presse(u"En feuille sur cette fenêtre", true);
    int tours = 0;
    const std::function<void()> quandModale = [&] {
        if (NSApp()->modalWindow()) return windows().key(0x1B);
        if (++tours < 20) NSRunLoop::mainRunLoop()->performBlock(quandModale);
    };
    NSRunLoop::mainRunLoop()->performBlock(quandModale);
    touche(u'\r');
    EXPECT_TRUE(dit(u"5.  Alerte : Annuler (2)"));
    NSUserDefaults::standardUserDefaults()->removeObjectForKey(kPrefsAlertes);
}

} // namespace
} // namespace galerie
