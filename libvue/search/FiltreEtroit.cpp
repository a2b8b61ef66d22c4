#include <libvue/search/FiltreEtroit.h>

#include <algorithm>
#include <bit>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace libvue {

namespace {

/// Writes the 8-bit units of which that holds, the last one again where there are less. False where there are none, or
/// more than have room.
template <std::size_t N, class Condition>
bool rassemble(const UnitesSimples& unites, std::array<std::uint8_t, N>& trouvees, Condition condition) {
    std::size_t nombre = 0;
    for (unsigned c = 0; c < 256; ++c) {
        if (!condition(unites.numero(static_cast<std::uint8_t>(c)))) continue;
        if (nombre == N) return false;
        std::fill(trouvees.begin() + static_cast<std::ptrdiff_t>(nombre++), trouvees.end(),
                  static_cast<std::uint8_t>(c));
    }
    return nombre != 0;
}

} // namespace

FiltreEtroit::FiltreEtroit(const UnitesSimples& unites, UnitesSimples::Numero premiere,
                           std::optional<UnitesSimples::Numero> seconde) noexcept
    : deux_(seconde.has_value()) {
    using Numero = UnitesSimples::Numero;
    utile_ = rassemble(unites, premieres_, [&](Numero n) { return n == premiere; }) &&
             (!deux_ || rassemble(unites, secondes_, [&](Numero n) { return n == *seconde; })) &&
             rassemble(unites, autres_, [](Numero n) { return n >= UnitesSimples::ligature; });
}

#ifdef __SSE2__

namespace {

/// Sixteen units, or less with zeros behind them; nothing is read beyond the end.
__m128i lis(const std::uint8_t* unites, std::size_t n) noexcept {
    if (n >= 16) return _mm_loadu_si128(reinterpret_cast<const __m128i*>(unites));
    std::uint64_t bas = 0, haut = 0;
    if (n >= 8) {
        std::memcpy(&bas, unites, 8);
        if (n > 8) {
            std::memcpy(&haut, unites + n - 8, 8);
            haut >>= 8 * (16 - n);
        }
    } else if (n >= 4) {
        std::uint32_t debut, fin;
        std::memcpy(&debut, unites, 4);
        std::memcpy(&fin, unites + n - 4, 4);
        bas = debut | (std::uint64_t{fin} << 8 * (n - 4));
    } else {
        for (std::size_t i = 0; i < n; ++i)
            bas |= std::uint64_t{unites[i]} << 8 * i;
    }
    return _mm_set_epi64x(static_cast<long long>(haut), static_cast<long long>(bas));
}

/// A bit for each unit that is one of those.
template <std::size_t N> unsigned parmi(__m128i unites, const std::array<std::uint8_t, N>& formes) noexcept {
    __m128i egales = _mm_setzero_si128();
    for (const std::uint8_t forme : formes)
        egales = _mm_or_si128(egales, _mm_cmpeq_epi8(unites, _mm_set1_epi8(static_cast<char>(forme))));
    return static_cast<unsigned>(_mm_movemask_epi8(egales));
}

} // namespace

std::size_t FiltreEtroit::premierePlace(const std::uint8_t* unites, std::size_t n) const noexcept {
    if (!utile_) return 0;
    for (std::size_t i = 0; i < n; i += 16) {
        const std::size_t reste = n - i;
        const __m128i seize = lis(unites + i, reste);
        unsigned places = parmi(seize, premieres_);
        // What follows the sixteenth is not known yet.
        if (deux_) places &= parmi(seize, secondes_) >> 1 | 0x8000;
        places |= parmi(seize, autres_);
        if (reste < 16) places &= (1u << reste) - 1;
        if (places) return i + static_cast<std::size_t>(std::countr_zero(places));
    }
    return n;
}

#else

std::size_t FiltreEtroit::premierePlace(const std::uint8_t*, std::size_t) const noexcept { return 0; }

#endif

} // namespace libvue
