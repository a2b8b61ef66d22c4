#include <libvue/charts/GraduationsHistogramme.h>

#include <algorithm>
#include <cmath>

#include <libvue/charts/NombresTenus.h>

namespace libvue {

namespace {

constexpr CGFloat kEcartEtiquettes = 10.0;
constexpr float kMultiplePourcentages = 5;

NSInteger auDessus(double v) { return entierTenu(static_cast<double>(std::ceil(enSimple(v)))); }

/// Held to the limits; both factors are above 0.
NSInteger produitTenu(NSInteger a, NSInteger b) {
    NSInteger produit = 0;
    return __builtin_mul_overflow(a, b, &produit) ? std::numeric_limits<NSInteger>::max() : produit;
}

/// The largest divisor of `nombre` in the upper half of 1 to `c`; `c` itself where there is none.
NSInteger diviseur(NSInteger nombre, NSInteger c) {
    for (NSInteger k = c; k > c / 2; --k)
        if (nombre % k == 0) return k;
    return c;
}

} // namespace

GraduationsHistogramme choisisGraduations(CGFloat plusGrand, CGFloat total, UniteAxe unite, CGFloat place,
                                          const LargeurEtiquette& largeur) {
    if (total == 0) plusGrand = total = 1.0;
    GraduationsHistogramme g;
    const bool valeurs = unite == UniteAxe::valeurs;
    const CGFloat t = valeurs ? plusGrand : plusGrand / total * 100.0;
    g.plusGrand = t;
    g.maximum =
        valeurs ? auDessus(t) : entierTenu(static_cast<double>(kMultiplePourcentages * std::ceil(enSimple(t / 5.0))));
    // Half a label is kept free to the right of the last graduation.
    CGFloat w = largeur(g.maximum);
    g.largeur = std::max(0.0, place - w * 0.5);
    const float tiennent = std::floor(enSimple(g.largeur / (w + kEcartEtiquettes)));
    const NSInteger c = std::min(entierTenu(static_cast<double>(std::min(static_cast<float>(g.maximum), tiennent))),
                                 GraduationsHistogramme::kGraduationsMax);
    g.nombre = c;
    if (c <= 0) return g;

    NSInteger pas = auDessus(t / static_cast<double>(diviseur(g.maximum, c)));
    g.nombre = auDessus(t / static_cast<double>(pas));
    if (g.nombre > GraduationsHistogramme::kGraduationsMax) {
        // Only numbers that single precision rounds down come here.
        pas = entierTenu(std::ceil(t / static_cast<double>(GraduationsHistogramme::kGraduationsMax)));
        g.nombre =
            std::min(entierTenu(std::ceil(t / static_cast<double>(pas))), GraduationsHistogramme::kGraduationsMax);
    }
    g.maximum = produitTenu(pas, g.nombre);
    w = largeur(g.maximum);
    g.largeur = std::max(0.0, place - w * 0.5);
    return g;
}

} // namespace libvue
