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
    /// A unit in both cases; the same one twice where it has none.
    using Formes = std::array<std::uint8_t, 2>;

    Formes premieres_{}, secondes_{};
    std::array<std::uint8_t, 4> autres_{}; ///< not simple
    bool deux_, utile_;
};

} // namespace libvue
