// Notices over every place, with what they say, and how they look.
#include <algorithm>
#include <functional>

#include <PageGalerie.h>
#include <VueAReglages.h>
#include <avis/Apercus.h>
#include <libvue/alerts/KAlerteEphemere.h>
#include <libvue/layout/KCFlippedView.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/graphics/NSImage.h>

namespace galerie {

namespace {

constexpr CGFloat kIntitule = 84, kListe = 112;
constexpr int kLignes = 20;

class VueAvis : public VueAReglages {
public:
    static void describe(ClassDescription<VueAvis, VueAReglages>&) {}
    VueAvis() : VueAReglages(kListe, kIntitule), icones_{iconeCoche(), iconeLoupe(), iconeFeuille()} {
        apercus();
        ajouteListe(document());
        ajouteReglages(reglages());
    }

    void viewWillMoveToWindow(NSWindow* w) override {
        NSView::viewWillMoveToWindow(w);
        if (!w) KAlerteEphemere::annuleAlerte();
    }

    void resizeSubviewsWithOldSize(const NSSize& oldSize) override {
        VueAReglages::resizeSubviewsWithOldSize(oldSize);
        apercus_->setFrame(feuille());
    }

private:
    void apercus() {
        apercus_ = make<Apercus>();
        apercus_->ajoute(u"Icône, titre et explication"_ns, u"Enregistré"_ns, u"Le brouillon est dans vos documents"_ns,
                         icones_[0]);
        apercus_->ajoute(u"Icône et titre"_ns, u"Copié"_ns, nullptr, icones_[2]);
        apercus_->ajoute(u"Titre et explication"_ns, u"Introuvable"_ns, u"La recherche reprend au début"_ns, nullptr);
        apercus_->ajoute(u"Titre seul"_ns, u"Fin du document"_ns, nullptr, nullptr);
        apercus_->ajoute(u"Un titre qui rapetisse"_ns, u"La recherche reprend au début"_ns, nullptr, nullptr);
        apercus_->ajoute(u"Un titre que l’on coupe"_ns, u"La recherche reprend au début du document ouvert"_ns, nullptr,
                         nullptr);
        addSubview(apercus_);
    }

    Ref<NSView> document() {
        document_ = make<KCFlippedView>(NSZeroRect);
        CGFloat y = 10, largeur = 0;
        for (int i = 0; i < kLignes; ++i) {
            const auto l = legende(NSString::stringWithFormat(
                u"Ligne %d d’un document qui défile\u00A0: l’avis se place sur ce que l’on en voit"_ns, i + 1));
            l->setFrameOrigin({14, y});
            document_->addSubview(l);
            y += l->frame().size.height + 6;
            largeur = std::max(largeur, l->frame().size.width + 28);
        }
        document_->setFrameSize({largeur, y + 4});
        return document_;
    }

    [[nodiscard]] Ref<NSTextField> champ(NSString* nom, NSString* texte) const {
        const auto c = NSTextField::textFieldWithString(texte);
        c->setAccessibilityLabel(nom);
        return large(c, largeurReglage());
    }

    void montre(NSObject* place) {
        constexpr CGFloat largeurs[] = {256, 200, 400};
        const NSInteger i = icone_->indexOfSelectedItem(),
                        l = std::clamp<NSInteger>(largeur_->indexOfSelectedItem(), 0, 2);
        NSImage* const image = i > 0 && i <= 3 ? icones_[i - 1].get() : nullptr;
        KAlerteEphemere::alerteAvecTitre_explication_icone_emplacement_commeEnfant_largeur(
            titre_->stringValue(), texte_->stringValue(), image, place, enfant_->state() == NSOnState, largeurs[l]);
    }

    Ref<NSView> reglages() {
        titre_ = champ(u"Titre"_ns, u"Enregistré"_ns);
        texte_ = champ(u"Explication"_ns, u"Dans vos documents"_ns);
        icone_ = choix(u"Icône"_ns, {u"Aucune"_ns, u"Coche"_ns, u"Loupe"_ns, u"Feuille"_ns}, 1);
        largeur_ = choix(u"Largeur"_ns, {u"256 points"_ns, u"200 points"_ns, u"400 points"_ns});
        enfant_ = NSButton::checkboxWithTitle_target_action(u"Suit la fenêtre du lieu"_ns, nullptr, nullptr);
        enfant_->setState(NSOnState);
        const auto lieu = [this](NSString* nom, std::function<NSObject*()> ou) {
            return large(bouton(nom, [this, ou = std::move(ou)](NSObject*) { montre(ou()); }), kLargeurReglages);
        };
        return pile(
            {groupe(u"L’avis"_ns, {ligne(u"Titre"_ns, titre_), ligne(u"Explication"_ns, texte_),
                                   ligne(u"Icône"_ns, icone_), ligne(u"Largeur"_ns, largeur_), enfant_}),
             groupe(u"Le montrer"_ns, {lieu(u"Sur une vue"_ns, [this] { return apercus_.get(); }),
                                       lieu(u"Sur le document qui défile"_ns, [this] { return document_.get(); }),
                                       lieu(u"Sur la fenêtre"_ns, [this] { return window(); }),
                                       lieu(u"À l’écran"_ns, [] { return nullptr; })}),
             groupe(u"L’annuler"_ns, {large(bouton(u"Retirer l’avis tout de suite"_ns,
                                                   [](NSObject*) { KAlerteEphemere::annuleAlerte(); }),
                                            kLargeurReglages)})},
            kGroupe);
    }

    Ref<NSImage> icones_[3];
    Ref<Apercus> apercus_;
    Ref<NSView> document_;
    Ref<NSTextField> titre_, texte_;
    Ref<NSPopUpButton> icone_, largeur_;
    Ref<NSButton> enfant_;
};

class PageAvis : public PageGalerie {
public:
    static void describe(ClassDescription<PageAvis, PageGalerie>&) {}
    [[nodiscard]] Ref<NSString> nom() const override { return u"Avis"_ns; }
    [[nodiscard]] Ref<NSString> resume() const override {
        return u"Un avis se montre sur ce qu’il concerne, ne demande rien et s’efface de lui-même."_ns;
    }
    [[nodiscard]] NSSize tailleMin() const override { return {620, 540}; }

protected:
    Ref<NSView> construitVue() override { return make<VueAvis>(); }
};

const InscriptionPage<PageAvis> inscription{32};

} // namespace

} // namespace galerie
