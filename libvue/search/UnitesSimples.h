#pragma once

#include <array>
#include <cstdint>

#include <libvue/platform/foundation/Types.h>

namespace libvue {

/// The units of ordinary French text, brought to numbers that are equal where a search takes the units for equal.
///
/// A unit is simple where it is a character of its own, whose canonical decomposition begins with its only base, so
/// that texts of simple units match where their numbers do, one by one. Whatever is not simple (marks, surrogates, the
/// sharp s without its case, other scripts) is left to the platform's search.
class UnitesSimples {
public:
    using Numero = std::uint16_t;
    /// A ligature, which the normalisation makes two units of.
    static constexpr Numero ligature = 0xFFFE;
    static constexpr Numero pasSimple = 0xFFFF;

    /// Made on first use.
    [[nodiscard]] static const UnitesSimples& avecCasse();
    [[nodiscard]] static const UnitesSimples& sansCasse();

    [[nodiscard]] Numero numero(std::uint8_t c) const noexcept { return numeros_[c]; }
    [[nodiscard]] Numero numero(unichar c) const noexcept {
        if (c < finLatin) return numeros_[c];
        const unsigned signe = c - debutSignes;
        return signe < nombreSignes ? numeros_[finLatin + signe] : pasSimple;
    }
    /// Whether the unit of that number is part of a word.
    [[nodiscard]] bool estDeMot(Numero n) const noexcept { return deMot_[n]; }

private:
    enum class Casse : bool { respectee, ignoree };
    explicit UnitesSimples(Casse casse);

    /// Latin letters and phonetic ones, then the signs of punctuation and currencies.
    static constexpr unsigned finLatin = 0x2B0, debutSignes = 0x2000, nombreSignes = 0xD0;
    std::array<Numero, finLatin + nombreSignes> numeros_;
    std::array<bool, finLatin + nombreSignes> deMot_;
};

} // namespace libvue
