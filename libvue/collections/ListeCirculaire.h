#pragma once

#include <cstdint>

#include <libvue/collections/Forward.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// A ring of objects, addressed by an absolute element number that wraps. It keeps its elements.
///
/// All arithmetic is on 64 unsigned bits. A backward step that passes the first slot therefore lands on the true ring
/// position only where the number of elements divides 2^64: the elements then have other numbers than before, but the
/// ring stays one rotation. Whoever scrolls back binds again what it fetches.
class LIBVUE_API ListeCirculaire : public NSObject {
public:
    static void describe(ClassDescription<ListeCirculaire>& c);
    ListeCirculaire(); ///< Of capacity 0.
    /// initAvecTaille:
    explicit ListeCirculaire(std::uint64_t taille);
    ~ListeCirculaire() override;

    /// Behind the last element. A full ring drops it silently; null raises NSInvalidArgumentException.
    void ajouteElement(NSObject* element);
    /// Borrowed. A number out of the current range wraps. To ask an empty ring is an error; it answers null.
    [[nodiscard]] NSObject* preteElement(std::uint64_t numero) const;
    /// Moves the first element by that many. To scroll an empty ring is an error; it stays as it is.
    void scroll(std::int64_t pas);

    [[nodiscard]] std::uint64_t premierNoElement() const noexcept { return monPremierNoElement; }
    /// Moves nothing: the element in front has that number from now on.
    void setPremierNoElement(std::uint64_t numero) noexcept { monPremierNoElement = numero; }
    /// The capacity, not the number of elements.
    [[nodiscard]] std::uint64_t taille() const noexcept { return maTailleDeListe; }
    /// Only ever grows.
    virtual void setTaille(std::uint64_t taille);

private:
    std::uint64_t maTailleDeListe = 0;
    std::int64_t maTeteDeListe = 0;
    std::uint64_t monPremierNoElement = 0;
    Ref<NSMutableArray> monTableau;
};

} // namespace libvue
