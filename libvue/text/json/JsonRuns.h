#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

// Runs of bytes of JSON text, several at a time where the text goes on behind them.

namespace libvue::json {

/// The bytes that end a run of a text: the zero, 0x01 to 0x19, the quote and the backslash. From 0x1A on they do not.
inline bool endsRun(unsigned char b) noexcept { return b <= 0x19 || b == '"' || b == '\\'; }

/// The end of the run at `p`, as strcspn() finds it.
inline const char* runEnd(const char* p, const char* end, bool& ascii) noexcept {
    unsigned high = 0;
#ifdef __SSE2__
    while (end - p >= 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        const __m128i stop = _mm_or_si128(
            _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('"')), _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\'))),
            _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(0x19)), bytes));
        const auto stops = static_cast<unsigned>(_mm_movemask_epi8(stop));
        const auto highs = static_cast<unsigned>(_mm_movemask_epi8(bytes));
        if (stops) {
            ascii = !(high | (highs & (stops - 1)));
            return p + std::countr_zero(stops);
        }
        high |= highs;
        p += 16;
    }
#endif
    for (; !endsRun(static_cast<unsigned char>(*p)); ++p)
        high |= static_cast<unsigned char>(*p) & 0x80u;
    static_cast<void>(end);
    ascii = !high;
    return p;
}

inline const std::uint8_t* bytesOf(const char* p) noexcept { return reinterpret_cast<const std::uint8_t*>(p); }

inline bool isDigit(char b) noexcept { return static_cast<unsigned char>(b - '0') <= 9; }

inline std::uint64_t eightBytes(const char* p) noexcept {
    std::uint64_t v;
    std::memcpy(&v, p, 8);
    return v;
}

/// The high bit of each byte that is no digit.
inline std::uint64_t otherThanDigits(std::uint64_t v) noexcept {
    const std::uint64_t off = v ^ 0x3030303030303030u;
    return (((off & 0x7F7F7F7F7F7F7F7Fu) + 0x7676767676767676u) | off) & 0x8080808080808080u;
}

/// The first byte is the lowest, and the highest digit.
inline std::uint64_t eightDigits(std::uint64_t v) noexcept {
    v = (v & 0x0F0F0F0F0F0F0F0Fu) * 2561 >> 8;
    v = (v & 0x00FF00FF00FF00FFu) * 6553601 >> 16;
    return (v & 0x0000FFFF0000FFFFu) * 42949672960001u >> 32;
}

/// Reads digits into `value`, which wraps around where they are too many.
inline const char* scanDigits(const char* p, const char* end, std::uint64_t& value) noexcept {
    if constexpr (std::endian::native == std::endian::little)
        while (end - p >= 8) {
            const std::uint64_t v = eightBytes(p);
            const std::uint64_t other = otherThanDigits(v);
            if (other == 0) {
                value = value * 100000000 + eightDigits(v);
                p += 8;
                continue;
            }
            const int n = std::countr_zero(other) / 8;
            if (n == 0) return p;
            // What lies below the digits then counts as zeros in front of them.
            static constexpr std::uint32_t powers[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000};
            value = value * powers[n] + eightDigits(v << (64 - 8 * n));
            return p + n;
        }
    for (; isDigit(*p); ++p)
        value = value * 10 + static_cast<unsigned>(*p - '0');
    return p;
}

} // namespace libvue::json
