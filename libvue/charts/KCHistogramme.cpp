#include <libvue/charts/KCHistogramme.h>

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdint>

#include <libvue/charts/NombresTenus.h>
#include <libvue/charts/TableAccessible.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSTextAttributes.h>

namespace libvue {

static const ClassRegistration<KCHistogramme> enregistrement;

namespace {

constexpr CGFloat kLargeurBandes = 12.0, kEspacementBandes = 5.0;

constexpr Operation<double()> kDoubleValue{"doubleValue"};

/// The caption at that rank, else its number from 1.
Ref<NSString> legende(const NSArray* legendes, NSInteger rang) {
    const auto i = static_cast<NSUInteger>(rang);
    NSString* donnee = legendes && i < legendes->count() ? legendes->at<NSString>(i) : nullptr;
    return donnee ? Ref<NSString>(donnee) : NSString::stringWithFormat(u"%ld"_ns, static_cast<long>(rang + 1));
}

} // namespace

void KCHistogramme::describe(ClassDescription<KCHistogramme, NSView>& c) {
    c.key<&KCHistogramme::attributsEtiquettes, &KCHistogramme::setAttributsEtiquettes>("attributsEtiquettes");
    c.key<&KCHistogramme::donnees, &KCHistogramme::setDonnees>("donnees");
    c.key<&KCHistogramme::couleurs, &KCHistogramme::setCouleurs>("couleurs");
    c.key<&KCHistogramme::ombrage, &KCHistogramme::setOmbrage>("ombrage");
    c.key<&KCHistogramme::couleurBordureDesBandes, &KCHistogramme::setCouleurBordureDesBandes>(
        "couleurBordureDesBandes");
    c.key<&KCHistogramme::couleurDesAxes, &KCHistogramme::setCouleurDesAxes>("couleurDesAxes");
    c.key<&KCHistogramme::nombreBandes>("nombreBandes");
    c.key<&KCHistogramme::nombreSections>("nombreSections");
    c.key<&KCHistogramme::largeurBandes, &KCHistogramme::setLargeurBandes>("largeurBandes");
    c.key<&KCHistogramme::espacementBandes, &KCHistogramme::setEspacementBandes>("espacementBandes");
    c.key<&KCHistogramme::etiquettesAbsolues, &KCHistogramme::setEtiquettesAbsolues>("etiquettesAbsolues");
    c.key<&KCHistogramme::clickedBar, &KCHistogramme::setClickedBar>("clickedBar");
    c.key<&KCHistogramme::target, &KCHistogramme::setTarget>("target");
}

KCHistogramme::KCHistogramme() : KCHistogramme(NSZeroRect) {}
KCHistogramme::KCHistogramme(const NSRect& frame) : NSView(frame) { initPrivay(); }
KCHistogramme::KCHistogramme(NSCoder& coder) : NSView(coder) { initPrivay(); }
KCHistogramme::~KCHistogramme() = default;

void KCHistogramme::initPrivay() {
    setAttributsEtiquettes(NSDictionary::dictionaryWithObject_forKey(
        NSFont::fontWithName_size(u"Lucida Grande"_ns, NSFont::smallSystemFontSize()), NSFontAttributeName.get()));
    setDonnees(NSArray::array());
    setCouleurs(NSArray::arrayWithObject(NSColor::colorWithDeviceRed_green_blue_alpha(0.18, 0.345, 0.545, 1.0)));
    setCouleurBordureDesBandes(NSColor::blackColor());
    setCouleurDesAxes(NSColor::blackColor());
    setLargeurBandes(kLargeurBandes);
    setEspacementBandes(kEspacementBandes);
    setEtiquettesAbsolues(YES);
}

void KCHistogramme::setDonnees(NSArray* donnees) {
    mesDonnees = donnees;
    setNeedsDisplay(YES);
}

void KCHistogramme::setCouleurs(NSArray* couleurs) {
    mesCouleurs = couleurs;
    monNombreSections = couleurs ? static_cast<NSInteger>(couleurs->count()) : 0;
    setNeedsDisplay(YES);
}

void KCHistogramme::setOmbrage(NSShadow* ombrage) {
    monOmbrage = ombrage;
    setNeedsDisplay(YES);
}

void KCHistogramme::setCouleurBordureDesBandes(NSColor* couleur) {
    maCouleurBordureDesBandes = couleur;
    setNeedsDisplay(YES);
}

void KCHistogramme::setCouleurDesAxes(NSColor* couleur) {
    maCouleurDesAxes = couleur;
    setNeedsDisplay(YES);
}

void KCHistogramme::setLargeurBandes(CGFloat largeur) {
    maLargeurBandes = largeur;
    setNeedsDisplay(YES);
}

void KCHistogramme::setEspacementBandes(CGFloat espacement) {
    monEspacementBandes = espacement;
    setNeedsDisplay(YES);
}

void KCHistogramme::setEtiquettesAbsolues(BOOL absolues) {
    mesEtiquettesAbsolues = absolues;
    setNeedsDisplay(YES);
}

// The data.

NSInteger KCHistogramme::compteBandes() const {
    assert(monNombreSections > 0 && "a histogram has at least one colour");
    if (monNombreSections <= 0 || !mesDonnees) return 0;
    return static_cast<NSInteger>(mesDonnees->count()) / monNombreSections;
}

CGFloat KCHistogramme::valeur(const NSArray& donnees, NSInteger indice) {
    NSObject* const o = donnees.objectAtIndex(static_cast<NSUInteger>(indice));
    if (const auto* n = as<NSNumber>(o)) return n->doubleValue();
    if (const auto* s = as<NSString>(o)) return s->doubleValue();
    const auto demande = kDoubleValue.of(o);
    return demande ? demande() : 0;
}

CGFloat KCHistogramme::totalDeLaBande(const NSArray& donnees, NSInteger bande) const {
    CGFloat total = 0;
    for (NSInteger s = 0; s < monNombreSections; ++s)
        total += valeur(donnees, bande * monNombreSections + s);
    return total;
}

KCHistogramme::Totaux KCHistogramme::totaux() const {
    Totaux t;
    t.bandes = compteBandes();
    const Ref<NSArray> donnees = mesDonnees;
    for (NSInteger b = 0; b < t.bandes; ++b) {
        const CGFloat total = totalDeLaBande(*donnees, b);
        if (total > t.plusGrand) t.plusGrand = total;
        t.ensemble += total;
    }
    return t;
}

// Places.

CGFloat KCHistogramme::hauteurPour(NSInteger bandes) const {
    const auto n = static_cast<CGFloat>(bandes);
    return n * maLargeurBandes + (n - 1) * monEspacementBandes + 2 * kMarge;
}

NSPoint KCHistogramme::origineGraphiquePourNbBandes(NSInteger nombre) const {
    const NSRect f = frame();
    return {f.origin.x, f.origin.y + f.size.height - hauteurPour(nombre)};
}

NSInteger KCHistogramme::barAtPoint(NSPoint p) const {
    const CGFloat haut = kMarge - monEspacementBandes * 0.5;
    const float indice = std::floor(enSimple(std::max(0.0, p.y - haut) / (maLargeurBandes + monEspacementBandes)));
    return entierTenu(static_cast<double>(std::min(indice, static_cast<float>(monNombreBandes - 1))));
}

// The click.

void KCHistogramme::mouseDown(NSEvent*) {}

void KCHistogramme::mouseUp(NSEvent* e) {
    if (!action_) return;
    const Ref<KCHistogramme> self(this);
    setClickedBar(barAtPoint(convertPoint_fromView(e->locationInWindow(), nullptr)));
    NSApp()->sendAction_to_from(action_, target_, this);
}

// What assistive tools are told.

TableAccessible KCHistogramme::tableAccessible() const {
    if (monNombreSections <= 1) return tableDesBandes();
    TableAccessible table;
    const Totaux t = totaux();
    const Ref<NSArray> donnees = mesDonnees;
    table.lignes.reserve(static_cast<std::size_t>(t.bandes * monNombreSections));
    for (NSInteger b = 0; b < t.bandes; ++b) {
        const Ref<NSString> bande = legende(mesLegendes, b);
        for (NSInteger s = 0; s < monNombreSections; ++s) {
            const CGFloat v = valeur(*donnees, b * monNombreSections + s);
            const Ref<NSString> section = legende(mesLegendesDesSections, s);
            table.ajoute(NSString::stringWithFormat(u"%@, %@"_ns, bande.get(), section.get()), v, v / t.ensemble, NO);
        }
    }
    return table;
}

TableAccessible KCHistogramme::tableDesBandes() const {
    TableAccessible table;
    if (monNombreSections <= 0) return table;
    const Totaux t = totaux();
    const Ref<NSArray> donnees = mesDonnees;
    table.lignes.reserve(static_cast<std::size_t>(t.bandes));
    for (NSInteger b = 0; b < t.bandes; ++b) {
        const CGFloat total = totalDeLaBande(*donnees, b);
        table.ajoute(legende(mesLegendes, b), total, total / t.ensemble, NO);
    }
    return table;
}

AccessibilityDescription KCHistogramme::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"table"_ns;
    d.value = tableAccessible().texte();
    if (action_) d.action = u"pick"_ns;
    return d;
}

} // namespace libvue
