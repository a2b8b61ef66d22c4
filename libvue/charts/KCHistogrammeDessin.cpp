#include <libvue/charts/KCHistogramme.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

#include <libvue/charts/GraduationsHistogramme.h>
#include <libvue/charts/NombresTenus.h>
#include <libvue/images/NSBezierPathAMShading.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/graphics/CGContext.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/socle/UniChaine.h>

namespace libvue {

namespace {

constexpr NSInteger kBandesSansDonnees = 5; ///< an empty chart keeps its frame for that many
constexpr CGFloat kMargeDroite = 2.5;
constexpr CGFloat kLongueurMin = 2.0;
constexpr CGFloat kAlphaTrait = 0.75;

} // namespace

void KCHistogramme::drawRect(const NSRect& rect) {
    const Ref<KCHistogramme> self(this);
    Totaux t = totaux();
    monNombreBandes = t.bandes ? t.bandes : kBandesSansDonnees;
    if (t.ensemble == 0) t.plusGrand = t.ensemble = 1.0;
    const CGFloat place = rect.size.width - kMargeDroite;
    if (place < 0) return;
    const CGFloat hauteur = hauteurPour(monNombreBandes);
    const GraduationsHistogramme g =
        choisisGraduations(t.plusGrand, t.ensemble, mesEtiquettesAbsolues ? UniteAxe::valeurs : UniteAxe::pourcentages,
                           place, [&](NSInteger valeur) { return largeurEtiquette(valeur); });
    if (!(g.largeur > 0)) return;
    drawGraduations_maximum_largeur_positionY(g.nombre, static_cast<CGFloat>(g.maximum), g.largeur, hauteur);
    drawBandesAvecTotalMax_avecLargeur(t.plusGrand, g.longueur());
    drawAxesAvecLargeur_avecHauteur(g.largeur, hauteur);
}

CGFloat KCHistogramme::largeurEtiquette(NSInteger valeur) const {
    const Ref<NSString> texte = NSNumber::numberWithInteger(valeur)->stringValue();
    return sizeWithAttributes(texte, mesAttributsEtiquette).width;
}

void KCHistogramme::drawGraduations_maximum_largeur_positionY(NSInteger nombre, CGFloat maximum, CGFloat largeur,
                                                              CGFloat y) {
    if (maCouleurDesAxes) maCouleurDesAxes->setStroke();
    const Ref<NSDictionary> attributs = mesAttributsEtiquette;
    for (NSInteger i = 1; i <= nombre; ++i) {
        const CGFloat f = static_cast<CGFloat>(i) / static_cast<CGFloat>(nombre);
        const CGFloat x = f * largeur + 0.5;
        NSBezierPath::strokeLineFromPoint_toPoint({x, y + 0.5}, {x, y + 4.5});
        // A label is a number of 32 bits; of a larger one, the low ones are shown.
        const auto valeur = static_cast<std::int32_t>(arrondiTenu(enSimple(f * maximum)));
        const UniChaine texte = UniChaine::DonneNombreFormatay(static_cast<int>(valeur));
        const NSSize taille = sizeWithAttributes(texte, attributs);
        drawInRect_withAttributes(texte, {{x - taille.width * 0.5, y + 6.5}, taille}, attributs);
    }
}

void KCHistogramme::dessineSection(const NSRect& rect, NSObject* couleur) const {
    const Ref<NSBezierPath> contour = NSBezierPath::bezierPathWithRect(rect);
    if (const auto* degrade = as<NSArray>(couleur)) {
        linearGradientFillWithStartColor_endColor(contour, degrade->at<NSColor>(0), degrade->at<NSColor>(1));
    } else if (auto* unie = as<NSColor>(couleur)) {
        unie->setFill();
        contour->fill();
    }
    if (!maCouleurBordureDesBandes) return;
    maCouleurBordureDesBandes->setStroke();
    NSBezierPath::bezierPathWithRect(NSInsetRect(rect, 0.0, 0.5))->stroke();
}

void KCHistogramme::drawBandesAvecTotalMax_avecLargeur(CGFloat totalMax, CGFloat largeur) {
    const Ref<NSArray> donnees = mesDonnees, couleurs = mesCouleurs;
    const Ref<NSShadow> ombrage = monOmbrage;
    const Ref<NSColor> trait = NSColor::colorWithDeviceRed_green_blue_alpha(0, 0, 0, kAlphaTrait);
    NSGraphicsContext* courant = NSGraphicsContext::currentContext();
    const CGContextRef port = courant ? courant->graphicsPort() : nullptr;

    const NSInteger bandes = compteBandes();
    for (NSInteger b = 0; b < bandes; ++b) {
        const CGFloat y = static_cast<CGFloat>(b) * (maLargeurBandes + monEspacementBandes) + kMarge;
        const CGFloat total = totalDeLaBande(*donnees, b);
        if (!(total > 0)) continue;
        CGFloat longueur = total / totalMax * largeur;
        CGFloat facteur = 1.0;
        if (longueur < kLongueurMin) {
            facteur = kLongueurMin / longueur;
            longueur = kLongueurMin;
        }
        if (ombrage) {
            CGContextSaveGState(port);
            ombrage->set();
            NSColor::whiteColor()->setFill();
            NSBezierPath::bezierPathWithRect(NSInsetRect({{0, y}, {longueur, maLargeurBandes}}, 0.5, 0.5))->fill();
            CGContextRestoreGState(port);
        }
        CGFloat x = 0;
        for (NSInteger s = 0; s < monNombreSections; ++s) {
            const CGFloat v = valeur(*donnees, b * monNombreSections + s);
            trait->setStroke();
            if (!(v > 0)) continue;
            const CGFloat part = v / totalMax * largeur * facteur;
            dessineSection({{x, y}, {part, maLargeurBandes}}, couleurs->objectAtIndex(static_cast<NSUInteger>(s)));
            x += part;
        }
    }
}

void KCHistogramme::drawAxesAvecLargeur_avecHauteur(CGFloat largeur, CGFloat hauteur) {
    if (maCouleurDesAxes) maCouleurDesAxes->setStroke();
    NSBezierPath::strokeLineFromPoint_toPoint({0.5, 0}, {0.5, hauteur});
    NSBezierPath::strokeLineFromPoint_toPoint({0.5, hauteur + 0.5}, {largeur + 0.5, hauteur + 0.5});
}

} // namespace libvue
