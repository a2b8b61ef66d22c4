// Notices over every place, with what they say, and how they look.
#include <algorithm>
#include <functional>

#include <Composition.h>
#include <PageGalerie.h>
#include <avis/Apercus.h>
#include <bulles/Actions.h>
#include <libvue/alerts/KAlerteEphemere.h>
#include <libvue/layout/KCFlippedView.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSScroller.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/Palette.h>

namespace galerie {

namespace {

constexpr CGFloat kHaut = 4, kRayon = 10, kInspecteur = 232, kIntitule = 84, kListe = 112;
constexpr int kLignes = 20;

class VueAvis : public NSView {
public:
    static void describe(ClassDescription<VueAvis, NSView>&) {}
    VueAvis() : NSView(NSZeroRect), icones_{iconeCoche(), iconeLoupe(), iconeFeuille()} {
        apercus();
        liste_ = liste();
        addSubview(liste_);
        cote_ = make<NSScrollView>(NSZeroRect);
        cote_->setDrawsBackground(NO);
        cote_->setHasVerticalScroller(YES);
        cote_->setDocumentView(inspecteur());
        addSubview(cote_);
    }

    [[nodiscard]] BOOL isFlipped() const override { return YES; }

    void viewWillMoveToWindow(NSWindow* w) override {
        NSView::viewWillMoveToWindow(w);
        if (!w) KAlerteEphemere::annuleAlerte();
    }

    void resizeSubviewsWithOldSize(const NSSize&) override {
        const NSSize t = bounds().size;
        cote_->setFrame(NSMakeRect(t.width - kMarge - kInspecteur, kHaut, kInspecteur + NSScroller::scrollerWidth(),
                                   std::max(0.0, t.height - kHaut - kMarge)));
        const CGFloat largeur = std::max(0.0, t.width - 3 * kMarge - kInspecteur);
        const CGFloat hauteur = std::max(0.0, t.height - kHaut - kMarge - kListe - 12);
        apercus_->setFrame(NSMakeRect(kMarge, kHaut, largeur, hauteur));
        liste_->setFrame(NSInsetRect(NSMakeRect(kMarge, kHaut + hauteur + 12, largeur, kListe), 1, 1));
    }

    void drawRect(const NSRect&) override {
        const auto fond = NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(
            NSInsetRect(NSInsetRect(liste_->frame(), -1, -1), 0.5, 0.5), kRayon, kRayon);
        NSColor::controlBackgroundColor()->setFill();
        fond->fill();
        NSColor::separatorColor()->setStroke();
        fond->stroke();
    }

private:
    NSObject* agis(Actions::Fonction f) { return actions_.cible(std::move(f)); }
    Ref<NSButton> bouton(NSString* titre, Actions::Fonction f) {
        return NSButton::buttonWithTitle_target_action(titre, agis(std::move(f)), Actions::selecteur());
    }

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

    Ref<NSScrollView> liste() {
        auto defilement = make<NSScrollView>(NSZeroRect);
        defilement->setHasVerticalScroller(YES);
        defilement->setDrawsBackground(NO);
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
        defilement->setDocumentView(document_);
        return defilement;
    }

    Ref<NSPopUpButton> choix(NSString* nom, std::initializer_list<Ref<NSString>> titres) {
        auto p = make<NSPopUpButton>(NSZeroRect);
        for (const Ref<NSString>& t : titres)
            p->addItemWithTitle(t);
        p->setAccessibilityLabel(nom);
        p->sizeToFit();
        return large(p, kInspecteur - kIntitule - kEcart);
    }
    static Ref<NSTextField> champ(NSString* nom, NSString* texte) {
        const auto c = NSTextField::textFieldWithString(texte);
        c->setAccessibilityLabel(nom);
        return large(c, kInspecteur - kIntitule - kEcart);
    }
    static Ref<NSView> ligne(NSString* nom, const Ref<NSView>& v) {
        return rangee({large(etiquette(nom), kIntitule), v});
    }

    void montre(NSObject* place) {
        constexpr CGFloat largeurs[] = {256, 200, 400};
        const NSInteger i = icone_->indexOfSelectedItem(),
                        l = std::clamp<NSInteger>(largeur_->indexOfSelectedItem(), 0, 2);
        NSImage* const image = i > 0 && i <= 3 ? icones_[i - 1].get() : nullptr;
        KAlerteEphemere::alerteAvecTitre_explication_icone_emplacement_commeEnfant_largeur(
            titre_->stringValue(), texte_->stringValue(), image, place, enfant_->state() == NSOnState, largeurs[l]);
    }

    Ref<NSView> inspecteur() {
        titre_ = champ(u"Titre"_ns, u"Enregistré"_ns);
        texte_ = champ(u"Explication"_ns, u"Dans vos documents"_ns);
        icone_ = choix(u"Icône"_ns, {u"Aucune"_ns, u"Coche"_ns, u"Loupe"_ns, u"Feuille"_ns});
        icone_->selectItemAtIndex(1);
        largeur_ = choix(u"Largeur"_ns, {u"256 points"_ns, u"200 points"_ns, u"400 points"_ns});
        enfant_ = NSButton::checkboxWithTitle_target_action(u"Suit la fenêtre du lieu"_ns, nullptr, nullptr);
        enfant_->setState(NSOnState);
        const auto lieu = [this](NSString* nom, std::function<NSObject*()> ou) {
            return large(bouton(nom, [this, ou = std::move(ou)](NSObject*) { montre(ou()); }), kInspecteur);
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
                                            kInspecteur)})},
            kGroupe);
    }

    Actions actions_;
    Ref<NSImage> icones_[3];
    Ref<Apercus> apercus_;
    Ref<NSView> document_;
    Ref<NSScrollView> liste_, cote_;
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
