#include <libvue/collections/BassinCirculaire.h>

namespace libvue {

namespace {
const ClassRegistration<BassinCirculaire> enregistrement;
} // namespace

void BassinCirculaire::describe(ClassDescription<BassinCirculaire, ListeCirculaire>&) {}

BassinCirculaire::BassinCirculaire() = default;
BassinCirculaire::BassinCirculaire(std::uint64_t taille, NSObject* prototype) : monPrototype(prototype) {
    BassinCirculaire::setTaille(taille);
}
BassinCirculaire::~BassinCirculaire() = default;

void BassinCirculaire::setTaille(std::uint64_t n) {
    const std::uint64_t ancienne = taille();
    if (ancienne >= n) return;
    ListeCirculaire::setTaille(n);
    for (std::uint64_t i = ancienne; i < n; ++i) {
        const Ref<NSObject> prototype = monPrototype;
        const Ref<NSObject> copie = prototype ? prototype->copyWithZone() : nullptr;
        ajouteElement(copie);
    }
}

} // namespace libvue
