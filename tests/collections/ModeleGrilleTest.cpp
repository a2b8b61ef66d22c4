#include <collections/GrilleEssai.h>

#include <cmath>
#include <map>
#include <random>

using namespace libvue;
using namespace libvue::test;

// The grid against a plain list of which object shows where, over random scripts.

namespace {

class ModeleGrille : public GrilleEssai {
protected:
    std::uint64_t plusGrand = 4;

    /// What must show, by the text of arithmetic alone: object number by place.
    void verifie(const std::string& quand) {
        const NSRect visible = defilement->documentVisibleRect();
        const NSSize e = grille->espacement();
        const CGFloat libre = grille->frame().size.width - 20, pas = 50 + e.height, entete = delegue->hauteurEntete;
        const auto n = grille->donnees()->count();
        const NSUInteger c = libre < 100 ? 0 : 1 + static_cast<NSUInteger>((libre - 100) / (100 + e.width));
        const auto capacite = static_cast<NSUInteger>(std::ceil(visible.size.height / pas) + 1) * c;
        const NSUInteger vivants = std::min<NSUInteger>(n, capacite);
        const CGFloat brut = std::floor((visible.origin.y - entete) / pas) * static_cast<CGFloat>(c);
        const auto premier = static_cast<NSUInteger>(std::max(0.0, std::min(brut, static_cast<CGFloat>(n - vivants))));
        plusGrand = std::max<std::uint64_t>(plusGrand, vivants);

        ASSERT_EQ(grille->mesVignettesAffichees(), NSMakeRange(premier, vivants)) << quand;
        EXPECT_EQ(grille->mesVues()->premierNoElement(), premier) << quand;
        EXPECT_LE(static_cast<std::uint64_t>(Vignette::nees), plusGrand + 1) << quand; // the prototype is one
        std::map<std::pair<CGFloat, CGFloat>, int> places;
        for (const Vignette* v : vignettes()) {
            EXPECT_EQ(v->liaisonsVaines, 0) << quand;
            if (v->isHidden() || !NSIntersectsRect(v->frame(), visible)) continue;
            const bool neuve = places.try_emplace({v->frame().origin.x, v->frame().origin.y}, v->numero()).second;
            EXPECT_TRUE(neuve) << quand << ": two views at one place";
        }
        // With a negative gap the row above the first live one reaches into sight by so much; it is not alive.
        for (NSUInteger i = premier; c > 0 && i < n; ++i) {
            const auto x = static_cast<CGFloat>(i % c), y = static_cast<CGFloat>(i / c);
            const NSRect place{{100 * x + 10 + e.width * x, e.height * y + 50 * y + entete}, {100, 50}};
            if (!NSIntersectsRect(place, visible)) continue;
            const auto trouve = places.find({place.origin.x, place.origin.y});
            ASSERT_NE(trouve, places.end()) << quand << ": nothing shows object " << i;
            EXPECT_EQ(trouve->second, objet(i)->numero) << quand;
            places.erase(trouve);
        }
        EXPECT_TRUE(places.empty()) << quand << ": shown without an object";
    }
};

TEST_F(ModeleGrille, EveryLiveViewShowsTheRightObjectAtTheRightPlace) {
    show(fenetre);
    for (unsigned graine = 1; graine <= 12; ++graine) {
        std::mt19937 hasard(graine);
        const auto tire = [&](int bas, int haut) { return std::uniform_int_distribution<int>(bas, haut)(hasard); };
        delegue->hauteurEntete = tire(0, 1) * 37;
        grille->setDonnees(objets(tire(0, 400), static_cast<int>(graine) * 1000));
        std::string script = "seed " + std::to_string(graine);
        for (int pas = 0; pas < 60; ++pas) {
            const int quoi = tire(0, 9);
            script += " " + std::to_string(quoi);
            const int total = static_cast<int>(grille->frame().size.height);
            switch (quoi) {
            case 0: // another list, often of another length
                grille->setDonnees(objets(tire(0, 3) ? tire(0, 500) : tire(0, 6), pas * 100000));
                break;
            case 1:
                fenetre->setContentSize({static_cast<CGFloat>(tire(90, 900)), static_cast<CGFloat>(tire(60, 700))});
                break;
            case 2:
                grille->setEspacement({static_cast<CGFloat>(tire(-10, 30)), static_cast<CGFloat>(tire(-10, 30))});
                grille->resizeSubviewsWithOldSize(NSZeroSize);
                break;
            case 3:
                grille->setSelection(tire(-1, 500));
                break;
            case 4:
                grille->doCommandBySelector(sel(tire(0, 1) ? "moveDown:" : "moveUp:"));
                break;
            case 5: // behind its back
                if (const auto v = vignettes(); !v.empty()) {
                    const Ref<NSView> une = v[static_cast<std::size_t>(tire(0, static_cast<int>(v.size()) - 1))];
                    tire(0, 1) ? une->setHidden(YES) : une->removeFromSuperview();
                }
                break;
            case 6:
                defile(tire(0, std::max(1, total)));
                break;
            default:
                defile(defilement->documentVisibleRect().origin.y + tire(-260, 260));
            }
            grille->setNeedsDisplay(YES);
            drain();
            verifie(script);
            if (HasFatalFailure()) return;
        }
    }
}

} // namespace
