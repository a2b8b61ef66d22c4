#include <libvue/collections/ListeCirculaire.h>

#include <algorithm>
#include <cassert>

#include <libvue/platform/foundation/NSArray.h>

namespace libvue {

namespace {
const ClassRegistration<ListeCirculaire> enregistrement;

/// A capacity is a promise, not a need: no more than this is reserved at once.
constexpr std::uint64_t kReserveMax = 1 << 16;
} // namespace

void ListeCirculaire::describe(ClassDescription<ListeCirculaire>&) {}

ListeCirculaire::ListeCirculaire() : monTableau(NSMutableArray::array()) {}
ListeCirculaire::ListeCirculaire(std::uint64_t taille)
    : maTailleDeListe(taille), monTableau(NSMutableArray::arrayWithCapacity(std::min(taille, kReserveMax))) {}
ListeCirculaire::~ListeCirculaire() = default;

void ListeCirculaire::ajouteElement(NSObject* element) {
    if (monTableau->count() >= maTailleDeListe) return;
    // Just before the head is the logical end: numbers already given keep their elements.
    monTableau->insertObject_atIndex(element, static_cast<NSUInteger>(maTeteDeListe));
    maTeteDeListe = static_cast<std::int64_t>((static_cast<std::uint64_t>(maTeteDeListe) + 1) % monTableau->count());
}

NSObject* ListeCirculaire::preteElement(std::uint64_t numero) const {
    assert(monTableau->count() > 0);
    if (monTableau->count() == 0) return nullptr;
    const std::uint64_t tete = static_cast<std::uint64_t>(maTeteDeListe);
    return monTableau->objectAtIndex((numero - monPremierNoElement + tete) % monTableau->count());
}

void ListeCirculaire::scroll(std::int64_t pas) {
    assert(monTableau->count() > 0);
    if (monTableau->count() == 0) return;
    monPremierNoElement += static_cast<std::uint64_t>(pas);
    maTeteDeListe = static_cast<std::int64_t>(
        (static_cast<std::uint64_t>(pas) + static_cast<std::uint64_t>(maTeteDeListe)) % monTableau->count());
    while (maTeteDeListe < 0)
        maTeteDeListe += static_cast<std::int64_t>(monTableau->count());
}

void ListeCirculaire::setTaille(std::uint64_t taille) {
    if (maTailleDeListe < taille) maTailleDeListe = taille;
}

} // namespace libvue
