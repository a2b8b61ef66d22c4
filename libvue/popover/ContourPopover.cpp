#include <libvue/popover/ContourPopover.h>

#include <algorithm>
#include <cmath>

namespace libvue {

namespace {

/// Middle of the part of the anchor that lies over the view, on a whole number. In single precision: a middle that is
/// a half there goes away from zero.
CGFloat milieu(CGFloat debut, CGFloat fin, CGFloat longueur) noexcept {
    const CGFloat bas = std::max(debut, 0.0), haut = std::min(fin, longueur);
    return static_cast<CGFloat>(std::round(static_cast<float>(bas + (haut - bas) * 0.5)));
}

} // namespace

CGFloat centreFleche(const NSRect& r, const NSRect& ancre, const NSRect& bounds, NSUInteger edge) noexcept {
    const bool verticale = edge == NSMinXEdge || edge == NSMaxXEdge;
    CGFloat c = verticale ? milieu(ancre.origin.y, ancre.origin.y + ancre.size.height, bounds.size.height)
                          : milieu(ancre.origin.x, ancre.origin.x + ancre.size.width, bounds.size.width);
    // Up for two of the edges and down for the other two: the difference is meant.
    c += edge <= NSMinYEdge ? kDemiPoint : -kDemiPoint;
    const CGFloat bas = (verticale ? r.origin.y : r.origin.x) + kDemiPoint;
    const CGFloat haut = (verticale ? r.origin.y + r.size.height : r.origin.x + r.size.width) - kDemiPoint;
    // The lower limit is applied last: on a side shorter than the arrow it wins.
    return std::max(std::min(c, haut - kDemiFleche), bas + kDemiFleche);
}

ContourPopover contourPopover(const NSRect& r, const NSRect& ancre, const NSRect& bounds, NSUInteger edge) noexcept {
    const CGFloat gauche = r.origin.x + kDemiPoint, droite = r.origin.x + r.size.width - kDemiPoint;
    const CGFloat bas = r.origin.y + kDemiPoint, haut = r.origin.y + r.size.height - kDemiPoint;
    const CGFloat c = edge <= NSMaxYEdge ? centreFleche(r, ancre, bounds, edge) : 0;
    ContourPopover p;
    p.debut({droite, bas + kLongueurCoin});
    if (edge == NSMinXEdge) {
        p.ligne({droite, c - kDemiFleche});
        p.ligne({bounds.origin.x + bounds.size.width - kDemiPoint, c});
        p.ligne({droite, c + kDemiFleche});
    }
    p.ligne({droite, haut - kLongueurCoin});
    p.courbe({droite - kLongueurCoin, haut}, {droite, haut});
    if (edge == NSMinYEdge) {
        p.ligne({c + kDemiFleche, haut});
        p.ligne({c, bounds.origin.y + bounds.size.height - kDemiPoint});
        p.ligne({c - kDemiFleche, haut});
    }
    p.ligne({gauche + kLongueurCoin, haut});
    p.courbe({gauche, haut - kLongueurCoin}, {gauche, haut});
    if (edge == NSMaxXEdge) {
        p.ligne({gauche, c + kDemiFleche});
        // Alone of the four, this tip does not follow the origin of the bounds.
        p.ligne({kDemiPoint, c});
        p.ligne({gauche, c - kDemiFleche});
    }
    p.ligne({gauche, bas + kLongueurCoin});
    p.courbe({gauche + kLongueurCoin, bas}, {gauche, bas});
    if (edge == NSMaxYEdge) {
        p.ligne({c - kDemiFleche, bas});
        p.ligne({c, bounds.origin.y + kDemiPoint});
        p.ligne({c + kDemiFleche, bas});
    }
    p.ligne({droite - kLongueurCoin, bas});
    p.courbe({droite, bas + kLongueurCoin}, {droite, bas});
    p.ferme();
    return p;
}

} // namespace libvue
