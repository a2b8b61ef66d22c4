// Histograms: bands cut into sections, over an axis that finds its own steps.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <span>
#include <string>

#include <Composition.h>
#include <PageGalerie.h>
#include <graphiques/Couleurs.h>
#include <graphiques/DonneesMots.h>
#include <graphiques/Exportation.h>
#include <graphiques/HistogrammeClavier.h>
#include <graphiques/Relais.h>
#include <libvue/charts/TableAccessible.h>
#include <libvue/layout/KCFlippedView.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSSlider.h>
#include <libvue/platform/foundation/NSNotification.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/NSTextAttributes.h>

namespace galerie {

namespace {

constexpr CGFloat kNoms = 64, kLargeur = 408, kHauteur = 440, kColonne = 236, kGouttiere = 28, kIntitule = 78;
constexpr std::size_t kValeursMax = 2000;

enum Jeu : NSInteger { lettres, longueurs, accents, saisie, vide };
constexpr const char16_t* kJeux[] = {u"Lettres", u"Longueurs", u"Accents", u"Vos valeurs", u"Aucune donnée"};
constexpr const char16_t* kCouleurs[] = {u"Ardoise", u"Dégradés", u"Roue"};

/// The names of the sections with their colours, on one line.
class CleDesSections : public NSView {
public:
    static void describe(ClassDescription<CleDesSections, NSView>&) {}
    using NSView::NSView;
    std::vector<std::u16string> noms;
    Ref<NSArray> couleurs;
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
    }
};

/// The numbers in a text, whatever stands between them; decimal commas count.
std::vector<double> valeursDe(const NSString* texte) {
    std::vector<double> valeurs;
    std::string mot;
    const auto finit = [&] {
        double v = 0;
        char* fin = nullptr;
        if (!mot.empty()) v = std::strtod(mot.c_str(), &fin);
        if (fin && fin != mot.c_str() && *fin == '\0' && valeurs.size() < kValeursMax) valeurs.push_back(v);
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
    return valeurs;
}

/// Everything on the page, and what ties it together.
class Histogrammes : public NSObject {
public:
    static void describe(ClassDescription<Histogrammes>& c) {
        c.answers<&Histogrammes::jeuChoisi>("jeuChoisi:");
        c.answers<&Histogrammes::aspectChange>("aspectChange:");
        c.answers<&Histogrammes::largeurChange>("largeurChange:");
        c.answers<&Histogrammes::exportePDF>("exportePDF:");
        c.answers<&Histogrammes::exportePNG>("exportePNG:");
        c.answers<&Histogrammes::controlTextDidChange>(op::controlTextDidChange);
    }
    Histogrammes();
    ~Histogrammes() override {
        relais_->surAction = nullptr;
        histogramme_->setTarget(nullptr);
    }
    [[nodiscard]] KCLayoutView* vue() const noexcept { return vue_; }

private:
    Ref<NSPopUpButton> choix(NSString* nom, std::span<const char16_t* const> titres, const char* action);
    Ref<NSSlider> curseur(NSString* nom, double valeur, double min, double max, const char* action);
    Ref<NSView> construitReglages();
    void montre();
    void applique();
    void ajuste();
    void montreBande();

    void jeuChoisi(NSObject*) { montre(); }
    void aspectChange(NSObject*) { applique(); }
    void largeurChange(NSObject*) { ajuste(); }
    void exportePDF(NSObject*) { dit_->setStringValue(exporte(zone_, "histogramme", Format::pdf)); }
    void exportePNG(NSObject*) { dit_->setStringValue(exporte(zone_, "histogramme", Format::png)); }
    void controlTextDidChange(NSNotification* n);

    Ref<KCLayoutView> vue_;
    Ref<Relais> relais_ = make<Relais>();
    Ref<HistogrammeClavier> histogramme_;
    Ref<NomsDeBandes> noms_;
    Ref<CleDesSections> cle_;
    Ref<KCFlippedView> zone_; ///< what is exported: names, chart, key
    Ref<NSPopUpButton> jeux_, couleurs_, sections_;
    Ref<NSTextField> valeurs_, bande_, dit_;
    Ref<NSButton> pourcentages_, ombre_, bordure_;
    Ref<NSSlider> epaisseur_, espacement_, largeur_;
    std::vector<std::u16string> nomsDesSections_;
    std::vector<double> saisies_{12, 5, 3, 8, 9, 2, 15, 4, 6};
};

Ref<NSPopUpButton> Histogrammes::choix(NSString* nom, std::span<const char16_t* const> titres, const char* action) {
    auto p = make<NSPopUpButton>(NSZeroRect);
    for (const char16_t* t : titres)
        p->addItemWithTitle(NSString::from(t));
    p->setAccessibilityLabel(nom);
    p->setTarget(this);
    p->setAction(sel(action));
    p->sizeToFit();
    return large(p, kColonne - kIntitule - kEcart);
}

Ref<NSSlider> Histogrammes::curseur(NSString* nom, double valeur, double min, double max, const char* action) {
    auto s = NSSlider::sliderWithValue_minValue_maxValue_target_action(valeur, min, max, this, sel(action));
    s->setAccessibilityLabel(nom);
    s->sizeToFit();
    return large(s, kColonne - kIntitule - kEcart);
}

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
    epaisseur_ = curseur(u"Épaisseur"_ns, 11, 0, 40, "aspectChange:");
    espacement_ = curseur(u"Espacement"_ns, 4, 0, 20, "aspectChange:");
    largeur_ = curseur(u"Largeur"_ns, kLargeur, 0, kLargeur, "largeurChange:");
    const auto ligne = [](NSString* t, const Ref<NSView>& v) { return rangee({large(etiquette(t), kIntitule), v}); };
    return pile({groupe(u"Données"_ns, {ligne(u"Montre"_ns, jeux_), valeurs_, ligne(u"Sections"_ns, sections_)}),
                 groupe(u"Aspect"_ns, {ligne(u"Couleurs"_ns, couleurs_), rangee({pourcentages_, ombre_}, 16), bordure_,
                                       ligne(u"Épaisseur"_ns, epaisseur_), ligne(u"Espacement"_ns, espacement_),
                                       ligne(u"Largeur"_ns, largeur_)})},
                kGroupe);
}

Histogrammes::Histogrammes() {
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
    zone_ = make<KCFlippedView>(NSMakeRect(0, 0, kNoms + kLargeur, kHauteur));
    for (NSView* v : std::initializer_list<NSView*>{noms_, histogramme_, cle_})
        zone_->addSubview(v);
    bande_ = large(titreGroupe(u" "_ns), kNoms + kLargeur);
    dit_ = large(legende(u" "_ns), kColonne);
    const auto reglages = construitReglages();
    const auto pdf = NSButton::buttonWithTitle_target_action(u"PDF"_ns, this, sel("exportePDF:"));
    const auto png = NSButton::buttonWithTitle_target_action(u"PNG"_ns, this, sel("exportePNG:"));
    vue_ = rangee({pile({bande_, zone_}, 10),
                   pile({reglages, pile({rangee({etiquette(u"Exporter en"_ns), pdf, png}), dit_})}, kGroupe)},
                  kGouttiere);
    for (NSView* c : vue_->subviews())
        c->setFrameOrigin({c->frame().origin.x, 0});
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
        for (const double v : saisies_)
            valeurs->addObject(NSNumber::numberWithDouble(v));
        for (std::size_t s = 0; s < sections; ++s)
            nomsDesSections_.push_back(u"section " + std::u16string(1, static_cast<char16_t>(u'1' + s)));
        for (std::size_t b = 0; b < saisies_.size() / sections; ++b)
            noms->addObject(NSString::stringWithFormat(u"bande %ld"_ns, static_cast<long>(b + 1)));
    }
    sections_->setEnabled(jeu == saisie);
    histogramme_->setDonnees(valeurs);
    histogramme_->setLegendesAccessibles(noms);
    histogramme_->setClickedBar(-1);
    applique();
    montreBande();
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
    ajuste();
}

void Histogrammes::ajuste() {
    constexpr CGFloat haut = 24; // of the key
    const CGFloat naturelle = histogramme_->hauteurNaturelle();
    cle_->setFrame(NSMakeRect(kNoms, 0, kLargeur, 16));
    histogramme_->setFrame(NSMakeRect(kNoms, haut, std::round(largeur_->doubleValue()), naturelle));
    noms_->setFrame(NSMakeRect(0, haut, kNoms, naturelle));
    for (NSView* v : std::initializer_list<NSView*>{cle_, histogramme_, noms_})
        v->setNeedsDisplay(YES);
}

void Histogrammes::montreBande() {
    const NSInteger b = histogramme_->clickedBar();
    const auto table = histogramme_->tableAccessible();
    const bool choisie = b >= 0 && b < static_cast<NSInteger>(table.lignes.size());
    noms_->setChoisie(choisie ? b : -1);
    bande_->setStringValue(choisie ? table.texteDeLaLigne(static_cast<NSUInteger>(b))
                                   : u"Cliquez une bande, ou prenez les flèches du clavier."_ns);
}

void Histogrammes::controlTextDidChange(NSNotification* n) {
    if (n->object() != valeurs_.get()) return;
    saisies_ = valeursDe(valeurs_->stringValue());
    jeux_->selectItemAtIndex(saisie);
    montre();
}

} // namespace

class PageHistogramme : public PageGalerie {
public:
    static void describe(ClassDescription<PageHistogramme, PageGalerie>&) {}
    [[nodiscard]] Ref<NSString> nom() const override { return u"Histogramme"_ns; }
    [[nodiscard]] Ref<NSString> resume() const override {
        return u"Des bandes empilées sur un axe qui choisit ses graduations\u00A0; un clic nomme la bande."_ns;
    }
    [[nodiscard]] NSSize tailleMin() const override {
        return {2 * kMarge + kNoms + kLargeur + kGouttiere + kColonne, hauteur_};
    }

protected:
    Ref<NSView> construitVue() override {
        histogrammes_ = make<Histogrammes>();
        const auto page = make<KCFlippedView>(NSZeroRect);
        histogrammes_->vue()->setFrameOrigin({kMarge, 4});
        hauteur_ = 4 + histogrammes_->vue()->frame().size.height + kMarge;
        page->addSubview(histogrammes_->vue());
        return page;
    }

private:
    Ref<Histogrammes> histogrammes_;
    CGFloat hauteur_ = 520;
};

namespace {
const InscriptionPage<PageHistogramme> inscription{70};
} // namespace

} // namespace galerie
