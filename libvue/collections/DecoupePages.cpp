#include <libvue/collections/DecoupePages.h>

#include <algorithm>
#include <cmath>

namespace libvue {

namespace {

// Nobody prints more; a header of absurd height would ask for it.
constexpr std::size_t kPagesMaximales = 1000000;

} // namespace

std::vector<NSRect> decoupePages(const RangeesAImprimer& r) {
    std::vector<NSRect> pages;
    if (r.total < r.element || r.rangees <= 0) return pages;
    const CGFloat pas = r.element + r.espacement;
    if (!(pas > 0) || !std::isfinite(pas)) return {{{0, 0}, r.page}};

    // Rows behind the first one of a page: on the later pages, and on the first one.
    CGFloat suivantes = std::floor((r.page.height - r.element) / pas);
    CGFloat premieres = std::floor((r.page.height - r.entete - r.element) / pas);
    if (!(suivantes >= 0)) {
        // Not even one row fits: without this no page would move on.
        suivantes = 0;
        premieres = r.entete > 0 ? -1 : 0;
    }
    const CGFloat hauteurPremiere = premieres * pas + r.entete + r.element;
    const CGFloat hauteurSuivante = suivantes * pas + r.element;
    const auto rangees = static_cast<CGFloat>(r.rangees);
    CGFloat y = 0, placees = 0;
    while (pages.size() < kPagesMaximales) {
        const bool premiere = pages.empty();
        const CGFloat hauteur = premiere ? hauteurPremiere : hauteurSuivante;
        pages.push_back({{0, y}, {r.page.width, hauteur}});
        y += hauteur + r.espacement;
        if (r.total - y < r.element) break;
        placees += (premiere ? premieres : suivantes) + 1;
        if (placees >= rangees) break;
    }
    return pages;
}

} // namespace libvue
