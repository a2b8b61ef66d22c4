#include <libvue/text/formats/NSDictionaryMerge.h>

#include <vector>

#include <libvue/platform/foundation/ClassExtension.h>

namespace libvue {

static const ClassExtension<NSDictionary> extension([](ClassExtension<NSDictionary>::Description& c) {
    c.answers<&dictionaryByMergingWith>("dictionaryByMergingWith:");
});

Ref<NSDictionary> dictionaryByMergingWith(const NSDictionary* a, const NSDictionary* b) {
    if (!a) return nullptr;
    // Levels that are still to be merged wait in a list: nesting costs no stack.
    struct Niveau {
        Ref<NSMutableDictionary> resultat;
        const NSDictionary* ajout;
    };
    const Ref<NSMutableDictionary> racine = NSMutableDictionary::dictionaryWithDictionary(a);
    std::vector<Niveau> niveaux;
    if (b) niveaux.push_back({racine, b});
    while (!niveaux.empty()) {
        const Niveau n = std::move(niveaux.back());
        niveaux.pop_back();
        for (auto [cle, x] : *n.ajout) {
            NSObject* y = n.resultat->objectForKey(cle);
            if (!y) {
                n.resultat->setObject_forKey(x, cle);
                continue;
            }
            const auto* dx = as<NSDictionary>(x);
            const auto* dy = as<NSDictionary>(y);
            if (!dx || !dy) continue;
            const Ref<NSMutableDictionary> fusion = NSMutableDictionary::dictionaryWithDictionary(dy);
            n.resultat->setObject_forKey(fusion, cle);
            niveaux.push_back({fusion, dx});
        }
    }
    return racine;
}

} // namespace libvue
