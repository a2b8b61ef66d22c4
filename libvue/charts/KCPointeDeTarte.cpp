#include <libvue/charts/KCPointeDeTarte.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

#include <libvue/charts/NombresTenus.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/CGContext.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSParagraphStyle.h>
#include <libvue/platform/graphics/NSShadow.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/NSTextAttributes.h>
#include <libvue/socle/UniChaine.h>

namespace libvue {

static const ClassRegistration<KCPointeDeTarte> enregistrement;

namespace {

constexpr CGFloat kPlaceEtiquette = 0.65; ///< of the radius
constexpr CGFloat kGrossissement = 2.0;   ///< points that a label gains when its slice is pulled out
constexpr CGFloat kFlouEtiquette = 2.0;
constexpr NSSize kDecalageOmbreEtiquette{0.0, -1.0};

NSUInteger changements = 1; ///< of slices' values, in the whole process

bool estNul(CGFloat depart, CGFloat fin) noexcept {
    constexpr CGFloat seuil = 0.1;
    const CGFloat ouverture = fin - depart;
    return ouverture > -seuil && ouverture < seuil;
}

} // namespace

void KCPointeDeTarte::describe(ClassDescription<KCPointeDeTarte>& c) {
    c.key<&KCPointeDeTarte::userdata, &KCPointeDeTarte::setUserdata>("userdata");
    c.key<&KCPointeDeTarte::couleur, &KCPointeDeTarte::setCouleur>("couleur");
    c.key<&KCPointeDeTarte::valeur, &KCPointeDeTarte::setValeur>("valeur");
    c.key<&KCPointeDeTarte::pourcentageExtraction, &KCPointeDeTarte::setPourcentageExtraction>("pourcentageExtraction");
    c.key<&KCPointeDeTarte::chaine, &KCPointeDeTarte::setChaine>("chaine");
    c.key<&KCPointeDeTarte::etiquette, &KCPointeDeTarte::setEtiquette>("etiquette");
}

KCPointeDeTarte::~KCPointeDeTarte() { ++changements; }

void KCPointeDeTarte::setValeur(NSInteger v) noexcept {
    maValeur = v;
    ++changements;
}

NSUInteger KCPointeDeTarte::generation_() noexcept { return changements; }

Ref<NSBezierPath> KCPointeDeTarte::pointeAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin(NSPoint centre,
                                                                                               CGFloat rayon,
                                                                                               CGFloat depart,
                                                                                               CGFloat fin) {
    Ref<NSBezierPath> contour = NSBezierPath::bezierPath();
    contour->moveToPoint(centre);
    contour->appendBezierPathWithArcWithCenter_radius_startAngle_endAngle(centre, rayon, depart, fin);
    contour->closePath();
    return contour;
}

NSSize KCPointeDeTarte::offsetPourExtraireDeLaTarteAvecAngleDeDepart_avecAngleDeFin_avecDistance(CGFloat depart,
                                                                                                 CGFloat fin,
                                                                                                 CGFloat distance) {
    if (depart == fin) return NSZeroSize;
    // Both the angle and its radians go through single precision.
    const auto milieu = static_cast<double>(enSimple((depart + fin) * 0.5));
    const auto radians = static_cast<double>(enSimple(milieu / 180.0 * pi));
    return {std::cos(radians) * distance, std::sin(radians) * distance};
}

NSPoint KCPointeDeTarte::extrait(NSPoint p, CGFloat depart, CGFloat fin) {
    if (!(monPourcentageExtraction > 0)) return p;
    const NSSize offset =
        offsetPourExtraireDeLaTarteAvecAngleDeDepart_avecAngleDeFin_avecDistance(depart, fin, kDistanceExtraction);
    const auto part = static_cast<double>(monPourcentageExtraction);
    p.x += part * offset.width;
    p.y += part * offset.height;
    return p;
}

void KCPointeDeTarte::drawAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin(NSPoint centre, CGFloat rayon,
                                                                                CGFloat depart, CGFloat fin) {
    if (estNul(depart, fin)) return;
    const Ref<NSBezierPath> contour =
        pointeAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin(extrait(centre, depart, fin), rayon, depart, fin);
    // Without a colour of its own it takes the context's.
    if (maCouleur) maCouleur->setFill();
    contour->fill();
}

Ref<NSString> KCPointeDeTarte::texteEtiquette(CGFloat depart, CGFloat fin) const {
    const auto pourcentage = [&] { return UniChaine::DonneNombreFormatay((fin - depart) / 3.6, false, 1); };
    const auto cardinalite = [&] {
        return UniChaine::DonneNombreFormatay(static_cast<int>(static_cast<std::int32_t>(maValeur)));
    };
    switch (monEtiquette) {
    case KCPointeDeTarteEtiquettePourcentage:
        return NSString::stringWithFormat(u"%@\u00A0%%"_ns, pourcentage().DonneChaine());
    case KCPointeDeTarteEtiquetteChaine:
        return maChaine;
    case KCPointeDeTarteEtiquetteChaineEtPourcentage:
        return NSString::stringWithFormat(u"%@\n%@\u00A0%%"_ns, maChaine.get(), pourcentage().DonneChaine());
    case KCPointeDeTarteEtiquetteCardinalite:
        return NSString::stringWithString(cardinalite());
    case KCPointeDeTarteEtiquetteChaineEtCardinalite:
        return NSString::stringWithFormat(u"%@\n%@"_ns, maChaine.get(), cardinalite().DonneChaine());
    default:
        return nullptr;
    }
}

void KCPointeDeTarte::drawEtiquetteAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin_avecCadre(
    NSPoint centre, CGFloat rayon, CGFloat depart, CGFloat fin, const NSRect& cadre) {
    if (estNul(depart, fin) || monEtiquette == KCPointeDeTarteEtiquetteAucune ||
        monEtiquette > KCPointeDeTarteEtiquetteChaineEtCardinalite)
        return;
    const Ref<NSShadow> ombre = make<NSShadow>();
    ombre->setShadowColor(NSColor::blackColor()->colorWithAlphaComponent(1.0));
    ombre->setShadowBlurRadius(kFlouEtiquette);
    ombre->setShadowOffset(kDecalageOmbreEtiquette);
    const Ref<NSMutableParagraphStyle> style = NSParagraphStyle::defaultParagraphStyle()->mutableCopy();
    style->setAlignment(NSCenterTextAlignment);
    // Only a slice that is on its way out has a larger label.
    const auto sortie = static_cast<double>(std::max(0.0F, monPourcentageExtraction));
    const Ref<NSFont> police = NSFont::systemFontOfSize(NSFont::smallSystemFontSize() + kGrossissement * sortie);
    const Ref<NSDictionary> attributs =
        NSDictionary::dictionaryWithObjectsAndKeys({{NSForegroundColorAttributeName.get(), NSColor::whiteColor()},
                                                    {NSShadowAttributeName.get(), ombre},
                                                    {NSFontAttributeName.get(), police},
                                                    {NSParagraphStyleAttributeName.get(), style}});
    const Ref<NSString> texte = texteEtiquette(depart, fin);
    const Ref<NSAttributedString> attribue = NSAttributedString::initWithString_attributes(texte, attributs);
    drawAttributedString_avecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin_avecCadre(attribue, centre, rayon,
                                                                                         depart, fin, cadre);
}

void KCPointeDeTarte::drawAttributedString_avecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin_avecCadre(
    NSAttributedString* texte, NSPoint centre, CGFloat rayon, CGFloat depart, CGFloat fin, const NSRect& cadre) {
    if (estNul(depart, fin)) return;
    const NSSize ancre =
        offsetPourExtraireDeLaTarteAvecAngleDeDepart_avecAngleDeFin_avecDistance(depart, fin, rayon * kPlaceEtiquette);
    const NSPoint o = extrait({ancre.width, ancre.height}, depart, fin);
    const NSSize taille = size(texte);
    const CGFloat x = o.x + centre.x - taille.width * 0.5;
    const CGFloat y = o.y + centre.y - taille.height * 0.5;
    const CGFloat largeur = std::min(taille.width, cadre.size.width);
    const CGFloat hauteur = std::min(taille.height, cadre.size.height);
    // The limits run from 0, wherever the frame stands; the lower one wins.
    drawInRect(texte, {{std::max(0.0, std::min(x, cadre.size.width - largeur)),
                        std::max(0.0, std::min(y, cadre.size.height - hauteur))},
                       {largeur, hauteur}});
}

} // namespace libvue
