#pragma once

#include <functional>

#include <libvue/platform/foundation/NSGeometry.h>

namespace libvue {

/// The value axis of a histogram: how far it goes and in how many equal steps of whole numbers.
struct GraduationsHistogramme {
    NSInteger nombre = 0;  ///< of graduations, at most kGraduationsMax; 0 or less for none
    NSInteger maximum = 0; ///< at the last graduation
    CGFloat largeur = 0;   ///< of the axis, points; not above 0 where there is no room to draw in
    CGFloat plusGrand = 0; ///< the largest total, in the axis's unit
    static constexpr NSInteger kGraduationsMax = 12;

    /// How long the largest band is, points.
    [[nodiscard]] CGFloat longueur() const noexcept { return plusGrand / static_cast<CGFloat>(maximum) * largeur; }
};

enum class UniteAxe : unsigned char { valeurs, pourcentages };

/// Width of a number as a label, points.
using LargeurEtiquette = std::function<CGFloat(NSInteger)>;

/// Chooses the graduations for the largest total of a band and the total of all bands (0 counts as 1 out of 1), on an
/// axis of at most `place` points. Each label gets its width and a gap. Any number will do.
[[nodiscard]] LIBVUE_API GraduationsHistogramme choisisGraduations(CGFloat plusGrand, CGFloat total, UniteAxe unite,
                                                                   CGFloat place, const LargeurEtiquette& largeur);

} // namespace libvue
