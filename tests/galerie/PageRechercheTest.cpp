// The search page, as a person uses it without a mouse.
#include "PageFixture.h"

#include <libvue/alerts/KAlerteEphemere.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSPasteboard.h>
#include <libvue/search/KPanneauRecherche.h>
#include <recherche/ListeCherchable.h>
#include <recherche/TexteCherchable.h>

namespace galerie {
namespace {

constexpr char16_t kF3 = 0xF706;

struct PageRechercheTest : PageFixture {
    PageRechercheTest() : PageFixture(u"Recherche") {}
    void TearDown() override {
        KAlerteEphemere::annuleAlerte();
        if (panneau()) panneau()->orderOut(nullptr);
        PageFixture::TearDown();
        NSPasteboard::pasteboardWithName(NSFindPboard)->clearContents();
    }
    [[nodiscard]] static KPanneauRecherche* panneau() { return KPanneauRecherche::panneauRecherche(); }
    [[nodiscard]] TexteCherchable* texte() const { return toutes<TexteCherchable>().at(0); }
    [[nodiscard]] ListeCherchable* liste() const { return toutes<ListeCherchable>().at(0); }
    void cherche(std::u16string_view quoi) {
        touche(u'f', kCommande);
        ASSERT_TRUE(panneau()->isKeyWindow());
        tape(quoi);
        touche(u'\r');
    }
};

TEST_F(PageRechercheTest, TheTextShowsWhatWasFound) {
    fenetre()->makeFirstResponder(texte());
    cherche(u"coeur");
    EXPECT_FALSE(panneau()->isVisible());
    EXPECT_FALSE(panneau()->typeRech()->isEnabled());
    EXPECT_EQ(texte()->donneSelection()->utf8(), "cœur");
    EXPECT_TRUE(dit(u"1 sur 5"));
    const NSRange premiere = texte()->selection();
    touche(kF3, kMajuscule);
    EXPECT_TRUE(dit(u"5 sur 5")) << "it goes on at the other end";
    const CGFloat bas = NSMinY(texte()->visibleRect());
    EXPECT_GT(bas, 0) << "scrolled to it";
    touche(kF3);
    EXPECT_EQ(texte()->selection(), premiere);
    EXPECT_LT(NSMinY(texte()->visibleRect()), bas);

    touche(NSRightArrowFunctionKey);
    EXPECT_EQ(texte()->donneSelection()->utf8(), "du");
    touche(u'e', kCommande);
    EXPECT_EQ(panneau()->string()->utf8(), "du");
    cherche(u"zzz");
    EXPECT_TRUE(panneau()->isVisible());
    EXPECT_FALSE(panneau()->msgIntrouvable()->isHidden());
    EXPECT_EQ(texte()->donneSelection()->utf8(), "du");
}

TEST_F(PageRechercheTest, TheListKnowsEveryType) {
    fenetre()->makeFirstResponder(liste());
    EXPECT_TRUE(panneau()->typeRech()->isEnabled());
    panneau()->boiteBoucle()->setState(NSOffState);
    const char16_t* const bilans[] = {u"1 sur 16", u"1 sur 4", u"introuvable", u"introuvable"};
    for (NSInteger type = 0; type < 4; ++type) {
        liste()->setChoisi(-1);
        panneau()->typeRech()->selectItemAtIndex(type);
        cherche(u"oeu");
        EXPECT_TRUE(dit(bilans[type])) << "type " << type;
    }
    panneau()->typeRech()->selectItemAtIndex(2);
    panneau()->orderOut(nullptr);
    cherche(u"monnaie");
    EXPECT_EQ(liste()->donneSelection()->utf8(), "monnaie");
    touche(kF3);
    EXPECT_EQ(liste()->donneSelection()->utf8(), "porte-monnaie");
    touche(kF3);
    EXPECT_TRUE(dit(u"rien de plus dans ce sens"));
    EXPECT_FALSE(fenetre()->childWindows()->count() == 0) << "a notice says so";
}

} // namespace
} // namespace galerie
