#include <libvue/search/FiltreEtroit.h>

#include <algorithm>
#include <bit>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace libvue {

FiltreEtroit::FiltreEtroit(const UnitesSimples& unites, UnitesSimples::Numero premiere,
                           std::optional<UnitesSimples::Numero> seconde) noexcept
    : deux_(seconde.has_value()) {
    utile_ = trouveFormes(unites, premiere, premieres_) && (!deux_ || trouveFormes(unites, *seconde, secondes_));
    std::size_t autres = 0;
    for (unsigned c = 0; c < 256; ++c) {
        if (unites.numero(static_cast<std::uint8_t>(c)) < UnitesSimples::ligature) continue;
        if (autres == autres_.size()) {
            utile_ = false;
            return;
        }
        std::fill(autres_.begin() + static_cast<std::ptrdiff_t>(autres++), autres_.end(), static_cast<std::uint8_t>(c));
    }
}

/// False where there are more forms than are looked for. A unit that no 8-bit text holds has none, and the filter is of
/// no use then either.
bool FiltreEtroit::trouveFormes(const UnitesSimples& unites, UnitesSimples::Numero n, Formes& formes) noexcept {
    std::size_t trouvees = 0;
    for (unsigned c = 0; c < 256; ++c) {
        if (unites.numero(static_cast<std::uint8_t>(c)) != n) continue;
        if (trouvees == formes.size()) return false;
        std::fill(formes.begin() + static_cast<std::ptrdiff_t>(trouvees++), formes.end(), static_cast<std::uint8_t>(c));
    }
    return trouvees != 0;
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

/// A bit for each unit that is one of the three.
unsigned parmi(__m128i unites, const std::array<std::uint8_t, 3>& formes) noexcept {
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
