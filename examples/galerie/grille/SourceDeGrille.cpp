#include <grille/SourceDeGrille.h>

#include <map>

namespace galerie {

namespace {
std::multimap<int, RegistreSources::Fabrique>& fabriques() {
    static std::multimap<int, RegistreSources::Fabrique> toutes;
    return toutes;
}
} // namespace

void RegistreSources::inscrit(int rang, Fabrique fabrique) { fabriques().emplace(rang, fabrique); }

std::vector<Ref<SourceDeGrille>> RegistreSources::fabriqueToutes() {
    std::vector<Ref<SourceDeGrille>> sources;
    for (const auto& [rang, fabrique] : fabriques())
        sources.push_back(fabrique());
    return sources;
}

} // namespace galerie
