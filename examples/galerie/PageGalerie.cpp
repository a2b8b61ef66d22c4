#include <PageGalerie.h>

#include <algorithm>

namespace galerie {

namespace {

struct Inscrite {
    int rang;
    RegistrePages::Fabrique fabrique;
};

/// Filled before main, in no certain order.
std::vector<Inscrite>& inscrites() {
    static std::vector<Inscrite> toutes;
    return toutes;
}

} // namespace

NSView* PageGalerie::vue() {
    if (!vue_) vue_ = construitVue();
    return vue_;
}

void RegistrePages::inscrit(int rang, Fabrique fabrique) { inscrites().push_back({rang, fabrique}); }

std::vector<Ref<PageGalerie>> RegistrePages::fabriqueToutes() {
    auto& toutes = inscrites();
    std::sort(toutes.begin(), toutes.end(), [](const auto& a, const auto& b) { return a.rang < b.rang; });
    std::vector<Ref<PageGalerie>> pages;
    for (const Inscrite& i : toutes)
        pages.push_back(i.fabrique());
    return pages;
}

} // namespace galerie
