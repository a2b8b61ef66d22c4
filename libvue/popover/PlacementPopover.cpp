#include <libvue/popover/PlacementPopover.h>

#include <algorithm>

namespace libvue {

namespace {

/// One axis of the fit: not longer than the room, and slid into it, its lower end first.
void ajuste(CGFloat& origine, CGFloat& longueur, CGFloat voulue, CGFloat placeOrigine, CGFloat place) noexcept {
    if (voulue > place) longueur = place;
    if (placeOrigine > origine)
        origine = placeOrigine;
    else if (origine + longueur > placeOrigine + place)
        origine = placeOrigine + place - longueur;
}

CGFloat aire(const NSRect& r) noexcept { return r.size.width * r.size.height; }

} // namespace

NSRect rectPopover(const AncragePopover& a, NSUInteger edge, NSSize taille) noexcept {
    NSRect r = a.ancre, v = a.cadreVisible;
    switch (edge) {
    case NSMinXEdge:
        v.size.width = std::min(r.origin.x, v.origin.x + v.size.width) - v.origin.x;
        r.origin.x -= taille.width;
        r.origin.y += (r.size.height - taille.height) * 0.5;
        break;
    case NSMinYEdge:
        v.size.height = std::min(r.origin.y, v.origin.y + v.size.height) - v.origin.y;
        r.origin.x += (r.size.width - taille.width) * 0.5;
        r.origin.y -= taille.height;
        break;
    case NSMaxXEdge: {
        const CGFloat m = std::max(r.origin.x + r.size.width, v.origin.x);
        v.size.width = v.origin.x + v.size.width - m;
        v.origin.x = m;
        r.origin.x += r.size.width;
        r.origin.y += (r.size.height - taille.height) * 0.5;
        break;
    }
    case NSMaxYEdge: {
        const CGFloat m = std::max(r.origin.y + r.size.height, v.origin.y);
        v.size.height = v.origin.y + v.size.height - m;
        v.origin.y = m;
        r.origin.x += (r.size.width - taille.width) * 0.5;
        r.origin.y += r.size.height;
        break;
    }
    default:
        break;
    }
    r.size = taille;
    ajuste(r.origin.x, r.size.width, taille.width, v.origin.x, v.size.width);
    ajuste(r.origin.y, r.size.height, taille.height, v.origin.y, v.size.height);
    return r;
}

PlacementPopover placementOptimal(const AncragePopover& a, NSUInteger edgePrefere, NSUInteger masque, NSSize taille,
                                  NSSize tailleActuelle) noexcept {
    PlacementPopover mieux{rectPopover(a, edgePrefere, taille), edgePrefere};
    // The mask has no say in the preferred edge.
    if (NSEqualSizes(mieux.rect.size, taille)) return mieux;
    constexpr NSUInteger edges = 4;
    for (NSUInteger pas = 1; pas < edges; ++pas) {
        const NSUInteger edge = (edgePrefere - pas) % edges;
        if (!(masque & NSUInteger{1} << edge)) continue;
        // The others are weighed with the content as it stands, not with the size that was asked for.
        const NSRect r = rectPopover(a, edge, tailleActuelle);
        if (aire(r) > aire(mieux.rect)) mieux = {r, edge};
    }
    return mieux;
}

} // namespace libvue
