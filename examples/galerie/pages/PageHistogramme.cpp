// Histograms: bands cut into sections, over an axis that finds its own steps.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

#include <Composition.h>
#include <PageComposee.h>
#include <graphiques/Couleurs.h>
#include <graphiques/DonneesMots.h>
#include <graphiques/HistogrammeClavier.h>
#include <graphiques/PanneauGraphique.h>
#include <graphiques/Relais.h>
#include <libvue/charts/TableAccessible.h>
#include <libvue/layout/KCFlippedView.h>
#include <libvue/platform/appkit/FocusRing.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/foundation/NSNotification.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/NSTextAttributes.h>
#include <libvue/socle/UniChaine.h>

namespace galerie {

namespace {

constexpr CGFloat kNoms = 64, kLargeur = 392, kHauteur = 460, kBarre = 12, kColonne = 236, kGouttiere = 20,
                  kZone = kNoms + kLargeur + 12;
constexpr std::size_t kValeursMax = 2000;

enum Jeu : NSInteger { lettres, longueurs, accents, saisie, vide };
constexpr const char16_t* kJeux[] = {u"Lettres", u"Longueurs", u"Accents", u"Vos valeurs", u"Aucune donnée"};
constexpr const char16_t* kCouleurs[] = {u"Ardoise", u"Dégradés", u"Roue"};

/// The names of the sections with their colours, and at the right the unit of the axis, on one line.
class CleDesSections : public NSView {
public:
    static void describe(ClassDescription<CleDesSections, NSView>&) {}
    using NSView::NSView;
    std::vector<std::u16string> noms;
    Ref<NSArray> couleurs;
    Ref<NSString> unite;
    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    void drawRect(const NSRect&) override {
        const auto attributs = NSDictionary::dictionaryWithObjectsAndKeys(
            {{NSFontAttributeName, NSFont::systemFontOfSize(NSFont::smallSystemFontSize())},
             {NSForegroundColorAttributeName, NSColor::secondaryLabelColor()}});
        CGFloat x = 0;
        for (std::size_t s = 0; s < noms.size() && couleurs && s < couleurs->count(); ++s) {
            couleurDeLegende(couleurs, s)->setFill();
            NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius({{x, 2}, {12, 12}}, 3, 3)->fill();
            const auto nom = NSString::from(noms[s]);
            drawAtPoint_withAttributes(nom, {x + 18, 1}, attributs);
            x += std::ceil(sizeWithAttributes(nom, attributs).width) + 36;
        }
        if (unite)
            drawAtPoint_withAttributes(unite, {bounds().size.width - sizeWithAttributes(unite, attributs).width, 1},
                                       attributs);
    }
};

/// What scrolls and is exported: the key, the names and the chart, with the ring of the keyboard round the latter two.
class ZoneGraphique : public KCFlippedView {
public:
    static void describe(ClassDescription<ZoneGraphique, KCFlippedView>&) {}
    explicit ZoneGraphique(HistogrammeClavier* h) : KCFlippedView(NSZeroRect), histogramme_(h) {}
    void drawRect(const NSRect&) override {
        if (!histogramme_->aLeClavier()) return;
        const NSRect h = histogramme_->frame();
        drawFocusRing({{kBord, h.origin.y}, {bounds().size.width - 2 * kBord, h.size.height - kBord}}, 4);
    }
    static constexpr CGFloat kBord = 4; ///< room for the ring

private:
    Ref<HistogrammeClavier> histogramme_;
};

struct Saisie {
    std::vector<double> valeurs;
    std::size_t laissees = 0; ///< those past the most that a chart is given
};

/// The numbers in a text, whatever stands between them; decimal commas count.
Saisie valeursDe(const NSString* texte) {
    Saisie s;
    std::string mot;
    const auto finit = [&] {
        double v = 0;
        char* fin = nullptr;
        if (!mot.empty()) v = std::strtod(mot.c_str(), &fin);
        if (fin && fin != mot.c_str() && *fin == '\0') {
            if (s.valeurs.size() < kValeursMax)
                s.valeurs.push_back(v);
            else
                ++s.laissees;
        }
        mot.clear();
    };
    for (const char c : texte->utf8()) {
        if ((c >= '0' && c <= '9') || c == '.' || c == '-' || c == '+' || c == 'e')
            mot += c;
        else if (c == ',')
            mot += '.';
        else
            finit();
    }
    finit();
    return s;
}

Ref<NSString> nombre(std::size_t n) { return UniChaine::DonneNombreFormatay(static_cast<int>(n)).DonneChaine(); }
/// As many of them, in the plural from two on.
Ref<NSString> tant(std::size_t n, NSString* nom) {
    return NSString::stringWithFormat(n > 1 ? u"%@ %@s"_ns : u"%@ %@"_ns, nombre(n).get(), nom);
}

/// Everything on the page, and what ties it together.
class Histogrammes : public PanneauGraphique {
public:
    static void describe(ClassDescription<Histogrammes, PanneauGraphique>& c) {
        c.answers<&Histogrammes::jeuChoisi>("jeuChoisi:");
        c.answers<&Histogrammes::aspectChange>("aspectChange:");
        c.answers<&Histogrammes::largeurChange>("largeurChange:");
        c.answers<&Histogrammes::controlTextDidChange>(op::controlTextDidChange);
    }
    Histogrammes();
    ~Histogrammes() override {
        relais_->surAction = nullptr;
        histogramme_->setTarget(nullptr);
    }

private:
    Ref<NSView> construitReglages();
    void montre();
    void applique();
    void ajuste();
    void montreBande();
    void montreCompte(Jeu jeu);

    void jeuChoisi(NSObject*) { montre(); }
    void aspectChange(NSObject*) { applique(); }
    void largeurChange(NSObject*) { ajuste(); }
    void controlTextDidChange(NSNotification* n);

    Ref<Relais> relais_ = make<Relais>();
    Ref<HistogrammeClavier> histogramme_;
    Ref<NomsDeBandes> noms_;
    Ref<CleDesSections> cle_;
    Ref<ZoneGraphique> zone_;
    Ref<NSScrollView> defilement_;
    Ref<NSPopUpButton> jeux_, couleurs_, sections_;
    Ref<NSTextField> valeurs_, compte_, bande_;
    Ref<NSButton> pourcentages_, ombre_, bordure_;
    Ref<NSSlider> epaisseur_, espacement_, largeur_;
    std::vector<std::u16string> nomsDesSections_;
    Saisie saisie_{{12, 5, 3, 8, 9, 2, 15, 4, 6}};
};

Ref<NSView> Histogrammes::construitReglages() {
    const auto coche = [this](NSString* titre, NSInteger etat) {
        auto b = NSButton::checkboxWithTitle_target_action(titre, this, sel("aspectChange:"));
        b->setState(etat);
        return b;
    };
    jeux_ = choix(u"Données"_ns, kJeux, "jeuChoisi:");
    valeurs_ = large(NSTextField::textFieldWithString(u"12 5 3  8 9 2  15 4 6"_ns), kColonne);
    valeurs_->setAccessibilityLabel(u"Valeurs"_ns);
    valeurs_->setDelegate(this);
    constexpr const char16_t* nombres[] = {u"1", u"2", u"3", u"4", u"5", u"6"};
    sections_ = choix(u"Sections"_ns, nombres, "jeuChoisi:");
    sections_->selectItemAtIndex(2);
    couleurs_ = choix(u"Couleurs"_ns, kCouleurs, "aspectChange:");
    couleurs_->selectItemAtIndex(static_cast<NSInteger>(Palette::degrades));
    pourcentages_ = coche(u"Pourcentages"_ns, NSOnState);
    ombre_ = coche(u"Ombre"_ns, NSOnState);
    bordure_ = coche(u"Bordures"_ns, NSOffState);
    epaisseur_ = curseur(u"Épaisseur"_ns, 11, 40, "aspectChange:");
    espacement_ = curseur(u"Espacement"_ns, 4, 20, "aspectChange:");
    largeur_ = curseur(u"Largeur"_ns, kLargeur, kLargeur, "largeurChange:");
    compte_ = large(legende(u" "_ns), kColonne);
    return pile(
        {groupe(u"Données"_ns, {ligne(u"Montre"_ns, jeux_), valeurs_, ligne(u"Sections"_ns, sections_), compte_}),
         groupe(u"Aspect"_ns, {ligne(u"Couleurs"_ns, couleurs_), pourcentages_, rangee({ombre_, bordure_}, 16),
                               ligne(u"Épaisseur"_ns, epaisseur_), ligne(u"Espacement"_ns, espacement_),
                               ligne(u"Largeur"_ns, largeur_)})},
        kGroupe);
}

Histogrammes::Histogrammes() : PanneauGraphique("histogramme", kColonne) {
    histogramme_ = make<HistogrammeClavier>(NSZeroRect);
    histogramme_->setAccessibilityLabel(u"Histogramme"_ns);
    histogramme_->setCouleurDesAxes(NSColor::secondaryLabelColor());
    histogramme_->setAttributsEtiquettes(NSDictionary::dictionaryWithObjectsAndKeys(
        {{NSFontAttributeName, NSFont::systemFontOfSize(NSFont::smallSystemFontSize())},
         {NSForegroundColorAttributeName, NSColor::secondaryLabelColor()}}));
    relais_->surAction = [this] { montreBande(); };
    histogramme_->setTarget(relais_);
    histogramme_->setAction(sel("relaie:"));
    noms_ = make<NomsDeBandes>(histogramme_);
    cle_ = make<CleDesSections>(NSMakeRect(0, 0, kLargeur, 16));
    zone_ = make<ZoneGraphique>(histogramme_);
    for (NSView* v : std::initializer_list<NSView*>{noms_, histogramme_, cle_})
        zone_->addSubview(v);
    defilement_ = make<NSScrollView>(NSMakeRect(0, 0, kZone + kBarre, kHauteur));
    defilement_->setDrawsBackground(NO);
    defilement_->setHasVerticalScroller(YES);
    defilement_->setDocumentView(zone_);
    bande_ = large(titreGroupe(u" "_ns), kNoms + kLargeur);
    compose(pile({bande_, defilement_}, 10), construitReglages(), zone_, kGouttiere);
    montre();
}

void Histogrammes::montre() {
    const DonneesMots& d = DonneesMots::duSysteme();
    const auto jeu = static_cast<Jeu>(jeux_->indexOfSelectedItem());
    const Releve releve = jeu == lettres     ? d.lettres
                          : jeu == longueurs ? d.longueurs
                          : jeu == accents   ? d.accents.plusGrands(14)
                                             : Releve{};
    const Ref<NSMutableArray> valeurs = NSMutableArray::array(), noms = NSMutableArray::array();
    nomsDesSections_ = releve.parts;
    for (const auto& r : releve.rangs) {
        noms->addObject(NSString::from(r.nom));
        for (const NSInteger p : r.parts)
            valeurs->addObject(NSNumber::numberWithInteger(p));
    }
    if (jeu == saisie) {
        const auto sections = static_cast<std::size_t>(std::max<NSInteger>(sections_->indexOfSelectedItem(), 0)) + 1;
        for (const double v : saisie_.valeurs)
            valeurs->addObject(NSNumber::numberWithDouble(v));
        for (std::size_t s = 0; s < sections; ++s)
            nomsDesSections_.push_back(u"section " + std::u16string(1, static_cast<char16_t>(u'1' + s)));
        for (std::size_t b = 0; b < saisie_.valeurs.size() / sections; ++b)
            noms->addObject(NSString::stringWithFormat(u"bande %ld"_ns, static_cast<long>(b + 1)));
    }
    sections_->setEnabled(jeu == saisie);
    histogramme_->setDonnees(valeurs);
    histogramme_->setLegendesAccessibles(noms);
    const Ref<NSMutableArray> sections = NSMutableArray::array();
    for (const auto& n : nomsDesSections_)
        sections->addObject(NSString::from(n));
    histogramme_->setLegendesDesSectionsAccessibles(sections);
    histogramme_->setClickedBar(-1);
    applique();
    montreBande();
    montreCompte(jeu);
    defilement_->contentView()->scrollToPoint(NSZeroPoint);
    defilement_->reflectScrolledClipView(defilement_->contentView());
}

void Histogrammes::montreCompte(Jeu jeu) {
    const DonneesMots& d = DonneesMots::duSysteme();
    const std::size_t n = saisie_.valeurs.size();
    const auto bandes = static_cast<std::size_t>(histogramme_->bandesAvecDonnees());
    const std::size_t reste = n - bandes * std::min(n, nomsDesSections_.size());
    Ref<NSString> dit = u" "_ns;
    if (jeu == saisie && saisie_.laissees)
        dit = NSString::stringWithFormat(saisie_.laissees > 1 ? u"%@ au plus\u00A0: %@ sont laissées."_ns
                                                              : u"%@ au plus\u00A0: %@ est laissée."_ns,
                                         tant(kValeursMax, u"valeur"_ns).get(), nombre(saisie_.laissees).get());
    else if (jeu == saisie && reste)
        dit = NSString::stringWithFormat(u"%@, %@ et un reste de %@."_ns, tant(n, u"valeur"_ns).get(),
                                         tant(bandes, u"bande"_ns).get(), nombre(reste).get());
    else if (jeu == saisie)
        dit = NSString::stringWithFormat(u"%@, %@."_ns, tant(n, u"valeur"_ns).get(), tant(bandes, u"bande"_ns).get());
    else if (jeu != vide)
        dit = NSString::stringWithFormat(u"%@ mots\u00A0: %@."_ns, nombre(static_cast<std::size_t>(d.mots)).get(),
                                         NSString::from(d.source).get());
    compte_->setStringValue(dit);
}

void Histogrammes::applique() {
    const auto palette = static_cast<Palette>(std::max<NSInteger>(couleurs_->indexOfSelectedItem(), 0));
    const auto couleurs = couleursDeSections(palette, nomsDesSections_.size());
    histogramme_->setCouleurs(couleurs);
    histogramme_->setEtiquettesAbsolues(pourcentages_->state() == NSOffState);
    Ref<NSShadow> ombre;
    if (ombre_->state() == NSOnState) {
        ombre = make<NSShadow>();
        ombre->setShadowColor(NSColor::blackColor()->colorWithAlphaComponent(0.45));
        ombre->setShadowOffset({1, -1.5});
        ombre->setShadowBlurRadius(3);
    }
    histogramme_->setOmbrage(ombre);
    histogramme_->setCouleurBordureDesBandes(
        bordure_->state() == NSOnState ? NSColor::blackColor()->colorWithAlphaComponent(0.55) : Ref<NSColor>());
    histogramme_->setLargeurBandes(std::round(epaisseur_->doubleValue()));
    histogramme_->setEspacementBandes(std::round(espacement_->doubleValue()));
    cle_->noms = nomsDesSections_.size() > 1 ? nomsDesSections_ : std::vector<std::u16string>{};
    cle_->couleurs = couleurs;
    cle_->unite = histogramme_->etiquettesAbsolues() ? u"en nombre"_ns : u"en % du total"_ns;
    ajuste();
}

void Histogrammes::ajuste() {
    constexpr CGFloat haut = 24; // of the key
    const CGFloat naturelle = histogramme_->hauteurNaturelle();
    zone_->setFrameSize({kZone, haut + naturelle});
    cle_->setFrame(NSMakeRect(kNoms, 0, kLargeur, 16));
    histogramme_->setFrame(NSMakeRect(kNoms, haut, std::round(largeur_->doubleValue()), naturelle));
    noms_->setFrame(NSMakeRect(0, haut, kNoms, naturelle));
    for (NSView* v : std::initializer_list<NSView*>{cle_, histogramme_, noms_})
        v->setNeedsDisplay(YES);
}

void Histogrammes::montreBande() {
    const NSInteger b = histogramme_->clickedBar();
    const auto table = histogramme_->tableDesBandes();
    const bool choisie = b >= 0 && b < static_cast<NSInteger>(table.lignes.size());
    noms_->setChoisie(choisie ? b : -1);
    bande_->setStringValue(choisie ? table.texteDeLaLigne(static_cast<NSUInteger>(b))
                                   : u"Cliquez une bande, ou prenez les flèches du clavier."_ns);
}

void Histogrammes::controlTextDidChange(NSNotification* n) {
    if (n->object() != valeurs_.get()) return;
    saisie_ = valeursDe(valeurs_->stringValue());
    jeux_->selectItemAtIndex(saisie);
    montre();
}

} // namespace

class PageHistogramme : public PageDe<Histogrammes> {
public:
    static void describe(ClassDescription<PageHistogramme, PageComposee>&) {}
    [[nodiscard]] Ref<NSString> nom() const override { return u"Histogramme"_ns; }
    [[nodiscard]] Ref<NSString> resume() const override {
        return u"Des bandes empilées sur un axe qui choisit ses graduations\u00A0; un clic nomme la bande."_ns;
    }
};

namespace {
const InscriptionPage<PageHistogramme> inscription{70};
} // namespace

} // namespace galerie
