#include <libvue/platform/foundation/StringUnits.h>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <libvue/platform/foundation/StringBuilder.h>

namespace libvue::detail {

bool isASCII(const std::uint8_t* units, std::size_t count) noexcept {
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8) {
        std::uint64_t eight;
        std::memcpy(&eight, units + i, 8);
        if (eight & 0x8080808080808080u) return false;
    }
    for (; i < count; ++i)
        if (units[i] >= 0x80) return false;
    return true;
}

bool fitsLatin1(const unichar* units, std::size_t count) noexcept {
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8) {
        std::uint64_t four, others;
        std::memcpy(&four, units + i, 8);
        std::memcpy(&others, units + i + 4, 8);
        if ((four | others) & 0xFF00FF00FF00FF00u) return false;
    }
    for (; i < count; ++i)
        if (units[i] > 0xFF) return false;
    return true;
}

void widenUnits(const std::uint8_t* from, std::size_t count, unichar* to) noexcept {
    std::size_t i = 0;
#ifdef __SSE2__
    const __m128i zero = _mm_setzero_si128();
    for (; i + 16 <= count; i += 16) {
        const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + i));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to + i), _mm_unpacklo_epi8(units, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to + i + 8), _mm_unpackhi_epi8(units, zero));
    }
#endif
    for (; i < count; ++i)
        to[i] = from[i];
}

void narrowUnits(const unichar* from, std::size_t count, std::uint8_t* to) noexcept {
    std::size_t i = 0;
#ifdef __SSE2__
    for (; i + 16 <= count; i += 16) {
        const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + i));
        const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + i + 8));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to + i), _mm_packus_epi16(low, high));
    }
#endif
    for (; i < count; ++i)
        to[i] = static_cast<std::uint8_t>(from[i]);
}

locale_t cLocale() noexcept {
    static const locale_t locale = ::newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

char32_t nextUTF8(const std::uint8_t*& p, const std::uint8_t* end) noexcept {
    const std::uint8_t lead = *p++;
    if (lead < 0x80) return lead;
    int more;
    char32_t c;
    std::uint8_t low = 0x80, high = 0xBF; // what the second byte may be
    if (lead >= 0xC2 && lead <= 0xDF) {
        more = 1;
        c = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        more = 2;
        c = lead & 0x0F;
        if (lead == 0xE0) low = 0xA0;
        if (lead == 0xED) high = 0x9F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        more = 3;
        c = lead & 0x07;
        if (lead == 0xF0) low = 0x90;
        if (lead == 0xF4) high = 0x8F;
    } else
        return illFormed;
    for (; more; --more) {
        if (p == end || *p < low || *p > high) return illFormed;
        c = c << 6 | (*p++ & 0x3F);
        low = 0x80;
        high = 0xBF;
    }
    return c;
}

std::size_t putUTF8(char32_t c, char* out) noexcept {
    if (c < 0x80) {
        out[0] = static_cast<char>(c);
        return 1;
    }
    if (c < 0x800) {
        out[0] = static_cast<char>(0xC0 | c >> 6);
        out[1] = static_cast<char>(0x80 | (c & 0x3F));
        return 2;
    }
    if (c < 0x10000) {
        if (isHighSurrogate(c) || isLowSurrogate(c)) c = 0xFFFD;
        out[0] = static_cast<char>(0xE0 | c >> 12);
        out[1] = static_cast<char>(0x80 | (c >> 6 & 0x3F));
        out[2] = static_cast<char>(0x80 | (c & 0x3F));
        return 3;
    }
    out[0] = static_cast<char>(0xF0 | c >> 18);
    out[1] = static_cast<char>(0x80 | (c >> 12 & 0x3F));
    out[2] = static_cast<char>(0x80 | (c >> 6 & 0x3F));
    out[3] = static_cast<char>(0x80 | (c & 0x3F));
    return 4;
}

Ref<NSString> stringFromUTF8(std::string_view bytes, IllFormed policy) {
    if (isASCII(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size())) return NSString::fromLatin1(bytes);
    StringBuilder out(bytes.size());
    const auto* p = reinterpret_cast<const std::uint8_t*>(bytes.data());
    const std::uint8_t* const end = p + bytes.size();
    while (p != end) {
        const char32_t c = nextUTF8(p, end);
        if (c == illFormed && policy == IllFormed::refuse) return nullptr;
        out.appendCodePoint(c == illFormed ? 0xFFFD : c);
    }
    return out.build();
}

} // namespace libvue::detail
