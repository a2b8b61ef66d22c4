#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include <libvue/search/UnitesSimples.h>

namespace libvue {

/// Passes quickly over the units of 8-bit texts at which no match can begin, sixteen at a time where the processor can.
class FiltreEtroit {
public:
    /// For a sought text that begins with that unit, and goes on with the second where it has one.
    FiltreEtroit(const UnitesSimples& unites, UnitesSimples::Numero premiere,
                 std::optional<UnitesSimples::Numero> seconde) noexcept;

    /// The first place at which a match may begin or a unit is not simple; `n` where there is none.
    [[nodiscard]] std::size_t premierePlace(const std::uint8_t* unites, std::size_t n) const noexcept;

private:
    /// The 8-bit units that a search takes for one another; the same one twice where there are less.
    using Formes = std::array<std::uint8_t, 3>;
    static bool trouveFormes(const UnitesSimples& unites, UnitesSimples::Numero n, Formes& formes) noexcept;

    Formes premieres_{}, secondes_{}, autres_{};
    bool deux_ = false, utile_ = true;
};

} // namespace libvue
