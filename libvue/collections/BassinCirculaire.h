#pragma once

#include <libvue/collections/ListeCirculaire.h>

namespace libvue {

/// A ring that is always full of copies of a prototype, and only ever grows.
class LIBVUE_API BassinCirculaire : public ListeCirculaire {
public:
    static void describe(ClassDescription<BassinCirculaire, ListeCirculaire>& c);
    BassinCirculaire();
    /// initAvecTaille:prototype:
    BassinCirculaire(std::uint64_t taille, NSObject* prototype);
    ~BassinCirculaire() override;

    /// Never in the ring itself.
    [[nodiscard]] NSObject* prototype() const noexcept { return monPrototype; }
    /// Kept. Elements that are there stay as they are.
    void setPrototype(NSObject* prototype) { monPrototype = prototype; }
    /// Fills up with copies. Where the prototype or its copy is null, raises NSInvalidArgumentException.
    void setTaille(std::uint64_t taille) override;

private:
    Ref<NSObject> monPrototype;
};

} // namespace libvue
