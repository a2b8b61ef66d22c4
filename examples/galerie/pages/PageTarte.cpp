// Pies: what French words are made of, in slices that can be pulled out and changed.
#include <algorithm>

#include <Composition.h>
#include <PageComposee.h>
#include <graphiques/Couleurs.h>
#include <graphiques/DonneesMots.h>
#include <graphiques/PanneauGraphique.h>
#include <graphiques/TarteClavier.h>
#include <libvue/charts/KCPointeDeTarte.h>
#include <libvue/layout/KCFlippedView.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/Palette.h>
#include <libvue/socle/UniChaine.h>

namespace galerie {

namespace {

constexpr CGFloat kCote = 404, kColonne = 300, kGouttiere = 36, kListe = 300;
constexpr CGFloat kNom = 150, kChamp = 84, kPastille = 12;

enum Jeu : NSInteger { lettres, longueurs, accents, quarante, uneSeule, vide };
constexpr const char16_t* kJeux[] = {u"Lettres",          u"Longueurs des mots", u"Lettres accentuées",
                                     u"Quarante pointes", u"Une seule pointe",   u"Aucune pointe"};
constexpr const char16_t* kEtiquettes[] = {u"Aucune", u"Pourcentage",  u"Nom", u"Nom et pourcentage",
                                           u"Nombre", u"Nom et nombre"};

class Pastille : public NSView {
public:
    static void describe(ClassDescription<Pastille, NSView>&) {}
    explicit Pastille(NSColor* couleur) : NSView(NSMakeRect(0, 0, kPastille, kPastille)), couleur_(couleur) {}
    void drawRect(const NSRect&) override {
        couleur_->setFill();
        NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(bounds(), 3, 3)->fill();
    }

private:
    Ref<NSColor> couleur_;
};

/// Everything on the page, and what ties it together.
class Tartes : public PanneauGraphique {
public:
    static void describe(ClassDescription<Tartes, PanneauGraphique>& c) {
        c.answers<&Tartes::jeuChoisi>("jeuChoisi:");
        c.answers<&Tartes::etiquetteChoisie>("etiquetteChoisie:");
        c.answers<&Tartes::controlTextDidChange>(op::controlTextDidChange);
    }
    Tartes();
    ~Tartes() override { NSNotificationCenter::defaultCenter()->removeObserver(this); }

private:
    Ref<NSView> construitReglages();
    void montre(Jeu jeu);
    void construitListe(const std::vector<Ref<NSColor>>& couleurs);
    void montreSelection();

    void jeuChoisi(NSObject*) { montre(static_cast<Jeu>(jeux_->indexOfSelectedItem())); }
    void etiquetteChoisie(NSObject*);
    void controlTextDidChange(NSNotification* n);
    void selectionChange(NSNotification*) { montreSelection(); }

    Ref<TarteClavier> tarte_;
    Ref<NSPopUpButton> jeux_, etiquettes_;
    Ref<NSScrollView> liste_;
    Ref<NSTextField> choisie_, compte_;
    std::vector<Ref<NSTextField>> champs_;
};

Ref<NSView> Tartes::construitReglages() {
    jeux_ = choix(u"Données"_ns, kJeux, "jeuChoisi:");
    etiquettes_ = choix(u"Étiquettes"_ns, kEtiquettes, "etiquetteChoisie:");
    etiquettes_->selectItemAtIndex(static_cast<NSInteger>(KCPointeDeTarteEtiquetteChaineEtPourcentage));
    compte_ = large(legende(u" "_ns), kColonne);
    liste_ = make<NSScrollView>(NSMakeRect(0, 0, kColonne, kListe));
    liste_->setBorderType(NSLineBorder);
    liste_->setHasVerticalScroller(YES);
    return groupe(u"Ce que la tarte montre"_ns,
                  {ligne(u"Données"_ns, jeux_), ligne(u"Étiquettes"_ns, etiquettes_), liste_, compte_});
}

Tartes::Tartes() : PanneauGraphique("tarte", kColonne) {
    tarte_ = make<TarteClavier>(NSMakeRect(0, 0, kCote, kCote));
    tarte_->setAccessibilityLabel(u"Tarte"_ns);
    choisie_ = large(titreGroupe(u" "_ns), kCote);
    choisie_->setAlignment(NSCenterTextAlignment);
    compose(pile({tarte_, choisie_}, 4), construitReglages(), tarte_, kGouttiere);
    NSNotificationCenter::defaultCenter()->addObserver<&Tartes::selectionChange>(this, kTarteSelectionDidChange,
                                                                                 tarte_);
    montre(lettres);
    tarte_->setSelectedIndex(NSNumber::numberWithInteger(0));
}

void Tartes::montre(Jeu jeu) {
    const DonneesMots& d = DonneesMots::duSysteme();
    const Releve releve = jeu == lettres     ? d.lettres.plusGrands(9)
                          : jeu == longueurs ? d.longueurs.plusGrands(10)
                          : jeu == accents   ? d.accents.plusGrands(6)
                          : jeu == quarante  ? d.paires.plusGrands(40, Reste::ote)
                          : jeu == uneSeule  ? Releve{{u"mots"}, {{u"mots", {d.mots}}}}
                                             : Releve{};
    const auto couleurs = roueDeCouleurs(releve.rangs.size());
    tarte_->initTarte();
    for (std::size_t i = 0; i < releve.rangs.size(); ++i) {
        const auto p = make<KCPointeDeTarte>();
        p->setValeur(releve.rangs[i].total());
        p->setChaine(NSString::from(releve.rangs[i].nom));
        p->setCouleur(couleurs[i]);
        tarte_->ajoutePointe(p);
    }
    // Forty names with their numbers would lie on each other.
    if (jeu == quarante) etiquettes_->selectItemAtIndex(static_cast<NSInteger>(KCPointeDeTarteEtiquetteChaine));
    etiquetteChoisie(nullptr);
    construitListe(couleurs);
    const auto mots = UniChaine::DonneNombreFormatay(static_cast<int>(d.mots));
    compte_->setStringValue(
        NSString::stringWithFormat(u"%@ mots\u00A0: %@."_ns, mots.DonneChaine(), NSString::from(d.source).get()));
    montreSelection();
    tarte_->setNeedsDisplay(YES);
}

void Tartes::construitListe(const std::vector<Ref<NSColor>>& couleurs) {
    champs_.clear();
    std::vector<Ref<NSView>> rangees;
    for (NSUInteger i = 0; i < tarte_->pointes()->count(); ++i) {
        const KCPointeDeTarte* p = tarte_->pretePointe(i);
        const auto valeur = NSNumber::numberWithInteger(p->valeur())->stringValue();
        auto champ = large(NSTextField::textFieldWithString(valeur), kChamp);
        champ->setAlignment(NSRightTextAlignment);
        champ->setAccessibilityLabel(NSString::stringWithFormat(u"Valeur de %@"_ns, p->chaine()));
        champ->setDelegate(this);
        champs_.push_back(champ);
        rangees.push_back(rangee({make<Pastille>(couleurs[i]), large(etiquette(p->chaine()), kNom), champ}, 10));
    }
    if (rangees.empty()) rangees.push_back(legende(u"Sans pointe, la tarte est un disque gris."_ns));
    const auto contenu = pile(rangees, 4);
    const auto document =
        make<KCFlippedView>(NSMakeRect(0, 0, kColonne - 20, std::max(contenu->frame().size.height + 16, kListe - 4)));
    contenu->setFrameOrigin({10, 8});
    document->addSubview(contenu);
    liste_->setDocumentView(document);
}

void Tartes::montreSelection() {
    const auto texte = tarte_->ditSelection();
    choisie_->setStringValue(texte->length()   ? texte
                             : tarte_->total() ? u"Cliquez une pointe, ou prenez les flèches du clavier."_ns
                                               : u" "_ns);
}

void Tartes::etiquetteChoisie(NSObject*) {
    const auto sorte = static_cast<NSUInteger>(std::max<NSInteger>(etiquettes_->indexOfSelectedItem(), 0));
    for (KCPointeDeTarte* p : tarte_->pointes()->as<KCPointeDeTarte>())
        p->setEtiquette(sorte);
    tarte_->setNeedsDisplay(YES);
}

void Tartes::controlTextDidChange(NSNotification* n) {
    for (NSUInteger i = 0; i < champs_.size(); ++i) {
        if (n->object() != champs_[i].get()) continue;
        const auto texte = champs_[i]->stringValue();
        const NSInteger valeur = texte->integerValue();
        const bool bonne = valeur >= 0 && NSNumber::numberWithInteger(valeur)->stringValue()->isEqualToString(texte);
        champs_[i]->setTextColor(bonne ? NSColor::textColor() : NSColor::systemColor(SystemColor::danger));
        if (bonne) tarte_->setValeur_deLaPointe(valeur, i);
        montreSelection();
    }
}

} // namespace

class PageTarte : public PageDe<Tartes> {
public:
    static void describe(ClassDescription<PageTarte, PageComposee>&) {}
    [[nodiscard]] Ref<NSString> nom() const override { return u"Tarte"_ns; }
    [[nodiscard]] Ref<NSString> resume() const override {
        return u"Des parts d’un tout\u00A0: une pointe s’extrait d’un clic, ses valeurs se changent à côté."_ns;
    }
};

namespace {
const InscriptionPage<PageTarte> inscription{60};
} // namespace

} // namespace galerie
