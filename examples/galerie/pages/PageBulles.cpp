// Balloons from every side, ours and the system's, and a notice that fades.
#include <algorithm>
#include <array>
#include <cmath>

#include <PageGalerie.h>
#include <VueAReglages.h>
#include <bulles/AncresEcran.h>
#include <bulles/Montreur.h>
#include <libvue/alerts/KAlerteEphemere.h>
#include <libvue/layout/KCFlippedView.h>
#include <libvue/platform/graphics/Palette.h>

namespace galerie {

namespace {

constexpr CGFloat kIntitule = 96, kListe = 132, kBordAncre = 14;
constexpr int kLignes = 14;

class VueBulles : public VueAReglages {
public:
    static void describe(ClassDescription<VueBulles, VueAReglages>&) {}
    VueBulles() : VueAReglages(kListe, kIntitule), montreur_(make<Montreur>()), ecran_(*montreur_) {
        couleurs();
        scene_ = make<KCFlippedView>(NSZeroRect);
        addSubview(scene_);
        ancres();
        ajouteListe(document());
        ajouteReglages(reglages());
    }

    void viewWillMoveToWindow(NSWindow* w) override {
        NSView::viewWillMoveToWindow(w);
        if (w) return;
        montreur_->fermeTout();
        ecran_.cache();
        auBord_->setState(NSOffState);
        KAlerteEphemere::annuleAlerte();
    }

    void resizeSubviewsWithOldSize(const NSSize& oldSize) override {
        VueAReglages::resizeSubviewsWithOldSize(oldSize);
        const NSRect f = feuille();
        scene_->setFrame(f);
        for (std::size_t i = 0; i < ancres_.size(); ++i) {
            if (!ancres_[i]) continue;
            const NSSize a = ancres_[i]->frame().size;
            const std::size_t colonne = i % 3, rang = i / 3;
            const NSRect r = NSInsetRect(scene_->bounds(), kBordAncre, kBordAncre);
            ancres_[i]->setFrameOrigin(
                {std::round(NSMinX(r) + (r.size.width - a.width) * static_cast<CGFloat>(colonne) / 2),
                 std::round(NSMinY(r) + (r.size.height - a.height) * static_cast<CGFloat>(rang) / 2)});
        }
        const NSSize m = milieu_->frame().size;
        milieu_->setFrameOrigin({std::round((f.size.width - m.width) / 2), std::round((f.size.height - m.height) / 2)});
    }

    void drawRect(const NSRect& dirtyRect) override {
        dessineFeuille(feuille());
        VueAReglages::drawRect(dirtyRect);
    }

private:
    void couleurs() {
        montreur_->reglages().fond = NSColor::systemColor(SystemColor::menuBackground);
        montreur_->reglages().bordure = NSColor::labelColor()->colorWithAlphaComponent(0.3);
    }

    void ancres() {
        constexpr std::u16string_view noms[9] = {u"↖", u"↑", u"↗", u"←", u"", u"→", u"↙", u"↓", u"↘"};
        for (std::size_t i = 0; i < 9; ++i) {
            if (noms[i].empty()) continue;
            const auto b = bouton(NSString::from(noms[i]), [this](NSObject* e) { montreur_->montre(as<NSView>(e)); });
            b->setFrameSize({40, b->frame().size.height});
            b->setAccessibilityLabel(u"Ouvrir une bulle ici"_ns);
            scene_->addSubview(b);
            ancres_[i] = b;
        }
        // The two kinds beside each other.
        const auto genre = [this](NSString* titre, BOOL systeme) {
            return bouton(titre, [this, systeme](NSObject* e) { montreur_->montre_genre(as<NSView>(e), systeme); });
        };
        const auto maison = genre(u"Bulle maison"_ns, NO), systeme = genre(u"Bulle du système"_ns, YES);
        const auto deux = bouton(
            u"Les deux"_ns, [this, m = maison.get(), s = systeme.get()](NSObject*) { montreur_->montreLesDeux(m, s); });
        milieu_ = pile({rangee({maison, systeme}, 12), deux}, 12);
        deux->setFrameOrigin(
            {std::round((milieu_->frame().size.width - deux->frame().size.width) / 2), deux->frame().origin.y});
        scene_->addSubview(milieu_);
    }

    Ref<NSView> document() {
        auto document = make<KCFlippedView>(NSZeroRect);
        CGFloat y = 10, largeur = 0;
        for (int i = 0; i < kLignes; ++i) {
            const auto b = bouton(u"Ouvrir"_ns, [this](NSObject* e) { montreur_->montre(as<NSView>(e)); });
            b->setControlSize(NSSmallControlSize);
            b->sizeToFit();
            const auto r =
                rangee({b, legende(NSString::stringWithFormat(u"Ligne %d d’une liste qui défile"_ns, i + 1))}, 10);
            r->setFrameOrigin({14, y});
            document->addSubview(r);
            y += r->frame().size.height + 6;
            largeur = std::max(largeur, r->frame().size.width + 28);
        }
        document->setFrameSize({largeur, y + 4});
        return document;
    }

    Ref<NSView> bordsPermis() {
        ReglagesBulles& r = montreur_->reglages();
        const auto bord = [&](NSString* titre, NSUInteger e) {
            return large(coche(titre, YES,
                               [&r, e](BOOL oui) {
                                   const NSUInteger bit = NSUInteger{1} << e;
                                   r.masque = oui ? r.masque | bit : r.masque & ~bit;
                               }),
                         106);
        };
        return groupe(u"Autres bords permis"_ns,
                      {rangee({bord(u"Dessus"_ns, NSMaxYEdge), bord(u"Dessous"_ns, NSMinYEdge)}),
                       rangee({bord(u"À gauche"_ns, NSMinXEdge), bord(u"À droite"_ns, NSMaxXEdge)})});
    }

    Ref<NSView> reglages() {
        ReglagesBulles& r = montreur_->reglages();
        const auto sorte = choix(u"Sorte"_ns, {u"Maison"_ns, u"Système"_ns}, 0, [&r](NSInteger i) { r.systeme = i; });
        const auto bord = choix(u"Bord préféré"_ns, {u"Dessus"_ns, u"Dessous"_ns, u"À gauche"_ns, u"À droite"_ns}, 0,
                                [&r](NSInteger i) {
                                    constexpr NSUInteger bords[] = {NSMaxYEdge, NSMinYEdge, NSMinXEdge, NSMaxXEdge};
                                    r.bord = bords[std::clamp<NSInteger>(i, 0, 3)];
                                });
        const auto fond =
            choix(u"Couleur du fond"_ns, {u"Du thème"_ns, u"Ambre"_ns, u"Ardoise"_ns}, 0, [this](NSInteger i) {
                couleurs();
                ReglagesBulles& c = montreur_->reglages();
                if (i == 1) c.fond = NSColor::colorWithSRGBRed_green_blue_alpha(0.99, 0.91, 0.68, 1);
                if (i == 2) c.fond = NSColor::colorWithSRGBRed_green_blue_alpha(0.55, 0.63, 0.72, 1);
            });
        const auto comportement = choix(u"Ce qui ferme"_ns, {u"Rien"_ns, u"Tout geste"_ns, u"La fenêtre"_ns}, 1,
                                        [&r](NSInteger i) { r.comportement = i; });
        auBord_ = coche(u"Ancres au bord de l’écran"_ns, NO, [this](BOOL oui) {
            if (oui && window())
                ecran_.montre(window()->screen());
            else
                ecran_.cache();
        });
        const auto avis = bouton(u"Montrer un avis"_ns, [this](NSObject*) {
            KAlerteEphemere::alerteAvecTitre_explication_icone_emplacement_commeEnfant(
                u"Un avis"_ns, u"Il s’efface de lui-même"_ns, nullptr, window(), YES);
        });
        return pile(
            {groupe(u"Bulles"_ns,
                    {ligne(u"Sorte"_ns, sorte), ligne(u"Bord préféré"_ns, bord),
                     coche(u"Se détache quand on la tire"_ns, YES, [&r](BOOL oui) { r.detachable = oui; }), auBord_}),
             groupe(u"Maison"_ns, {ligne(u"Fond"_ns, fond), bordsPermis()}),
             groupe(u"Système"_ns, {ligne(u"La ferment"_ns, comportement)}), groupe(u"Avis"_ns, {avis})},
            kGroupe);
    }

    Ref<Montreur> montreur_;
    AncresEcran ecran_;
    std::array<Ref<NSButton>, 9> ancres_; ///< three rows of three, without the one in the middle
    Ref<NSView> scene_, milieu_;
    Ref<NSButton> auBord_;
};

} // namespace

class PageBulles : public PageGalerie {
public:
    static void describe(ClassDescription<PageBulles, PageGalerie>&) {}
    [[nodiscard]] Ref<NSString> nom() const override { return u"Bulles"_ns; }
    [[nodiscard]] Ref<NSString> resume() const override {
        return u"Une bulle trouve sa place à l’écran, se détache et s’efface. Ouvrez-en une de chaque bord."_ns;
    }
    [[nodiscard]] NSSize tailleMin() const override { return {620, 420}; }

protected:
    Ref<NSView> construitVue() override { return make<VueBulles>(); }
};

namespace {
const InscriptionPage<PageBulles> inscription{30};
} // namespace

} // namespace galerie
