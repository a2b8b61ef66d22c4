#include <recherche/Occurrences.h>

#include <algorithm>

#include <libvue/search/TesteCandidatRecherche.h>

namespace galerie {

namespace {

constexpr int kCommence = 1;

} // namespace

std::vector<NSRange> occurrences(const NSString* texte, const NSString* cherche, BOOL respecterCasse) {
    std::vector<NSRange> plages;
    const NSUInteger fin = texte->length();
    // A ligature on either side makes one of the two longer, to twice the other at most.
    const NSUInteger portee = 2 * cherche->length() + 1;
    for (NSUInteger i = 0; i < fin;) {
        const NSUInteger limite = std::min(portee, fin - i);
        const auto ici = [&](NSUInteger n) {
            return testeCandidatRecherche(texte->substringWithRange({i, n}), cherche, respecterCasse, kCommence);
        };
        if (!ici(limite)) {
            ++i;
            continue;
        }
        NSUInteger n = 1;
        while (n < limite && !ici(n))
            ++n;
        plages.push_back({i, n});
        i += n;
    }
    return plages;
}

std::optional<std::size_t> occurrenceSuivante(const std::vector<NSRange>& plages, NSRange selection, BOOL avant,
                                              BOOL boucle) {
    if (plages.empty()) return std::nullopt;
    if (avant) {
        const auto place = std::find_if(plages.begin(), plages.end(),
                                        [&](const NSRange& p) { return p.location >= NSMaxRange(selection); });
        if (place != plages.end()) return static_cast<std::size_t>(place - plages.begin());
        return boucle ? std::optional<std::size_t>(0) : std::nullopt;
    }
    const auto place = std::find_if(plages.rbegin(), plages.rend(),
                                    [&](const NSRange& p) { return NSMaxRange(p) <= selection.location; });
    if (place != plages.rend()) return static_cast<std::size_t>(plages.rend() - place) - 1;
    return boucle ? std::optional(plages.size() - 1) : std::nullopt;
}

} // namespace galerie
