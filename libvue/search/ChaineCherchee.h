#pragma once

#include <optional>
#include <vector>

#include <libvue/platform/foundation/NSString.h>
#include <libvue/search/FiltreEtroit.h>
#include <libvue/search/UnitesSimples.h>

namespace libvue {

/// Where a match must stand.
enum class PlaceMot : unsigned char { partout, debutDeMot, motEntier };
/// What must lie behind a match at the start of the text.
enum class FinMot : unsigned char { libre, memeLongueur };

/// A sought text made ready for many candidates. It answers for texts of simple units, and says where it cannot.
class ChaineCherchee {
public:
    enum class Reponse : unsigned char { non, oui, inconnue };

    /// The one that was made last where it is for that text, else a new one in its place. Texts are sought one after
    /// the other in long lists, so one is enough.
    [[nodiscard]] static const ChaineCherchee& pour(const NSString& s, BOOL respecterCasse);

    [[nodiscard]] Reponse estDans(const NSString& texte, PlaceMot place) const;
    [[nodiscard]] Reponse commence(const NSString& texte, FinMot fin) const;

private:
    using Numero = UnitesSimples::Numero;
    /// Which work a text needs, besides the answers.
    enum class Suite : unsigned char { non, oui, inconnue, ligatures };

    [[nodiscard]] bool estPour(const NSString& s, BOOL respecterCasse) const noexcept;
    void prepare(const NSString& s, BOOL respecterCasse);
    template <class Lecture>
    [[nodiscard]] Suite cherche(Lecture lecture, std::size_t debut, std::size_t n, PlaceMot place) const;
    template <class Lecture> [[nodiscard]] Suite chercheAuDebut(Lecture lecture, std::size_t n, FinMot fin) const;
    /// Runs the search on the text as it is stored, and again on a copy without ligatures where it meets one.
    template <class Unite, class Recherche>
    [[nodiscard]] Reponse parcours(const Unite* lues, std::size_t n, Recherche recherche) const;

    // What it was made of: the units as they were stored, kept as a copy since texts change and go away.
    std::vector<std::uint8_t> octets_;
    bool large_ = false, prete_ = false, respecterCasse_ = false;

    const UnitesSimples* unites_ = nullptr;
    std::vector<Numero> numeros_; ///< empty where the text cannot be sought here
    std::optional<FiltreEtroit> filtre_;
    std::size_t longueur_ = 0; ///< of the normalised text
};

} // namespace libvue
