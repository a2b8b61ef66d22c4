// Alerts of every kind, with any buttons, as sheets or on their own, and the answers as they come back.
#include <array>
#include <functional>

#include <Actions.h>
#include <Composition.h>
#include <PageGalerie.h>
#include <alertes/ReglagesAlerte.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/graphics/NSColor.h>

namespace galerie {

using namespace KDialogue;

namespace {

constexpr CGFloat kHaut = 4, kIntitule = 96, kChoix = 180, kCase = 156, kGouttiere = 36;
constexpr CGFloat kReglages = kIntitule + kEcart + kChoix;
constexpr std::size_t kLignesJournal = 5;

class VueAlertes : public NSView, public KAlerteReceveur {
public:
    static void describe(ClassDescription<VueAlertes, NSView>&) {}
    VueAlertes() : KAlerteReceveur(1) {
        const auto gauche = pile({reglages(), boutons()}, kGroupe), droite = pile({masque(), journal()}, kGroupe);
        gauche->setFrameOrigin({kMarge, kHaut});
        droite->setFrameOrigin({kMarge + kReglages + kGouttiere, kHaut});
        addSubview(gauche);
        addSubview(droite);
        metsAJour();
    }

    [[nodiscard]] BOOL isFlipped() const override { return YES; }

    void TraiteReponseAlerte(int&, int reponse) const override {
        const_cast<VueAlertes*>(this)->ecris(u"Feuille"_ns, nomReponse(reponse));
    }

private:
    NSObject* agis(Actions::Fonction f) { return actions_.cible(std::move(f)); }

    Ref<NSPopUpButton> choix(NSString* nom, const std::vector<std::u16string_view>& titres,
                             std::function<void(NSInteger)> f) {
        auto p = make<NSPopUpButton>(NSZeroRect);
        for (const auto titre : titres)
            p->addItemWithTitle(NSString::from(titre));
        p->setAccessibilityLabel(nom);
        p->setTarget(
            agis([f = std::move(f)](NSObject* e) { f(static_cast<NSPopUpButton*>(e)->indexOfSelectedItem()); }));
        p->setAction(Actions::selecteur());
        p->sizeToFit();
        return large(p, kChoix);
    }
    static Ref<NSView> ligne(NSString* nom, const Ref<NSView>& v) {
        return rangee({large(etiquette(nom), kIntitule), v});
    }
    Ref<NSButton> case_(NSString* titre, bool* valeur) {
        auto c = NSButton::checkboxWithTitle_target_action(titre, agis([this, valeur](NSObject* e) {
                                                               *valeur =
                                                                   static_cast<NSButton*>(e)->state() == NSOnState;
                                                               metsAJour();
                                                           }),
                                                           Actions::selecteur());
        c->setState(*valeur ? NSOnState : NSOffState);
        return c;
    }

    Ref<NSView> reglages() {
        const auto sorte =
            choix(u"Sorte"_ns, {u"Information", u"Attention", u"Erreur", u"Avis éphémère", u"Notification"},
                  [this](NSInteger i) { r_.sorte = kDialogueInformation + static_cast<int>(i); });
        sorte->selectItemAtIndex(r_.sorte - kDialogueInformation);
        const auto texte = choix(u"Texte"_ns, {u"Court", u"Long", u"Interminable"},
                                 [this](NSInteger i) { r_.texte = static_cast<int>(i); });
        return groupe(u"Alerte"_ns, {ligne(u"Sorte"_ns, sorte), ligne(u"Texte"_ns, texte),
                                     case_(u"En feuille sur cette fenêtre"_ns, &r_.enFeuille),
                                     case_(u"Avec la case « Ne plus afficher »"_ns, &r_.neplus)});
    }

    Ref<NSView> boutons() {
        std::vector<std::u16string_view> noms, titres;
        for (const BoutonNomme& b : boutonsNommes())
            noms.push_back(b.nom);
        for (const Modele& m : modeles())
            titres.push_back(m.nom);
        const auto modele = choix(u"Modèle"_ns, titres, [this](NSInteger i) {
            const Modele& m = modeles()[static_cast<std::size_t>(i)];
            r_.masque = m.masque;
            r_.defaut = m.defaut;
            r_.annuler = m.annuler;
            metsAJour();
        });
        modele->selectItemAtIndex(1);
        defaut_ = choix(u"Par défaut"_ns, noms, [this](NSInteger i) { r_.defaut = 1 << i; });
        annuler_ = choix(u"Annulation"_ns, noms, [this](NSInteger i) { r_.annuler = 1 << i; });
        const auto montre = NSButton::buttonWithTitle_target_action(
            u"Montrer l’alerte"_ns, agis([this](NSObject*) {
                // Once the button has come up again.
                NSRunLoop::mainRunLoop()->performBlock([moi = Ref<VueAlertes>(this)] { moi->montre(); });
            }),
            Actions::selecteur());
        montre->setKeyEquivalent(u"\r"_ns);
        oubli_ = NSButton::buttonWithTitle_target_action(u"Oublier la réponse"_ns, agis([this](NSObject*) {
                                                             oublieAlerte();
                                                             ecris(u"Oubli"_ns, u"l’alerte reparaîtra"_ns);
                                                             metsAJour();
                                                         }),
                                                         Actions::selecteur());
        return pile({groupe(u"Boutons"_ns, {ligne(u"Modèle"_ns, modele), ligne(u"Par défaut"_ns, defaut_),
                                            ligne(u"Annulation"_ns, annuler_)}),
                     rangee({montre, oubli_})},
                    kGroupe);
    }

    Ref<NSView> masque() {
        std::vector<Ref<NSView>> rangees;
        const auto& tous = boutonsNommes();
        // Down the first column, then the second one.
        const std::size_t moitie = (tous.size() + 1) / 2;
        cases_.resize(tous.size());
        for (std::size_t i = 0; i < tous.size(); ++i) {
            const int bouton = tous[i].bouton;
            cases_[i] = large(NSButton::checkboxWithTitle_target_action(
                                  NSString::from(tous[i].nom), agis([this, bouton](NSObject* e) {
                                      const bool oui = static_cast<NSButton*>(e)->state() == NSOnState;
                                      r_.masque = oui ? r_.masque | bouton : r_.masque & ~bouton;
                                  }),
                                  Actions::selecteur()),
                              kCase);
        }
        for (std::size_t i = 0; i < moitie; ++i)
            rangees.push_back(rangee({cases_[i], cases_[i + moitie]}));
        return pile({titreGroupe(u"Boutons présents"_ns), pile(rangees, 3)});
    }

    Ref<NSView> journal() {
        std::vector<Ref<NSView>> lignes;
        for (auto& l : lignes_) {
            l = large(etiquette(u" "_ns), 2 * kCase + kEcart);
            lignes.push_back(l);
        }
        lignes_[0]->setStringValue(u"Aucune réponse encore."_ns);
        lignes_[0]->setTextColor(NSColor::secondaryLabelColor());
        return groupe(u"Réponses"_ns, {pile(lignes, 2)});
    }

    void montre() {
        const bool tue = r_.neplus && alerteSeTait();
        const int reponse = montreAlerte(r_, window(), this);
        const bool feuille = window() && window()->attachedSheet();
        if (r_.sorte == kDialogueEphemere)
            ecris(u"Avis"_ns, NSString::stringWithFormat(u"rien à répondre (%d)"_ns, reponse));
        else if (tue)
            ecris(u"Retenue"_ns, nomReponse(reponse));
        else if (!feuille)
            ecris(r_.sorte == kDialogueNotification && r_.masque <= 1 ? u"Notification"_ns : u"Alerte"_ns,
                  nomReponse(reponse));
        metsAJour();
    }

    void ecris(NSString* source, NSString* reponse) {
        for (std::size_t i = lignes_.size() - 1; i > 0; --i)
            lignes_[i]->setStringValue(compte_ == 0 ? u" "_ns : lignes_[i - 1]->stringValue());
        ++compte_;
        const auto texte = NSString::stringWithFormat(u"%d.  %@ : %@"_ns, compte_, source, reponse);
        lignes_[0]->setStringValue(texte);
        lignes_[0]->setTextColor(NSColor::labelColor());
        metsAJour();
    }

    void metsAJour() {
        const auto& tous = boutonsNommes();
        for (std::size_t i = 0; i < tous.size(); ++i) {
            cases_[i]->setState(r_.masque & tous[i].bouton ? NSOnState : NSOffState);
            if (tous[i].bouton == r_.defaut) defaut_->selectItemAtIndex(static_cast<NSInteger>(i));
            if (tous[i].bouton == r_.annuler) annuler_->selectItemAtIndex(static_cast<NSInteger>(i));
        }
        oubli_->setEnabled(alerteSeTait());
    }

    ReglagesAlerte r_;
    Actions actions_;
    Ref<NSPopUpButton> defaut_, annuler_;
    Ref<NSButton> oubli_;
    std::vector<Ref<NSButton>> cases_;
    std::array<Ref<NSTextField>, kLignesJournal> lignes_;
    int compte_ = 0;
};

} // namespace

class PageAlertes : public PageGalerie {
public:
    static void describe(ClassDescription<PageAlertes, PageGalerie>&) {}
    [[nodiscard]] Ref<NSString> nom() const override { return u"Alertes"_ns; }
    [[nodiscard]] Ref<NSString> resume() const override {
        return u"Une alerte pose sa question et rapporte la réponse. Entrée et Échap y suffisent."_ns;
    }
    [[nodiscard]] NSSize tailleMin() const override { return {700, 500}; }

protected:
    Ref<NSView> construitVue() override { return make<VueAlertes>(); }
};

namespace {
const InscriptionPage<PageAlertes> inscription{90};
} // namespace

} // namespace galerie
