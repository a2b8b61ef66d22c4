// Texts and numbers of the JSON reader.

#include <bit>
#include <cstdio>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <libvue/platform/foundation/Decimal.h>
#include <libvue/platform/foundation/DocumentObjects.h>
#include <libvue/platform/foundation/NSDecimalNumber.h>
#include <libvue/platform/foundation/StringUnits.h>
#include <libvue/text/json/JsonEngine.h>

namespace libvue {

namespace {

/// The bytes that end a run of a text: the zero, 0x01 to 0x19, the quote and the backslash. From 0x1A on they do not.
bool endsRun(unsigned char b) noexcept { return b <= 0x19 || b == '"' || b == '\\'; }

/// The end of the run at `p`, as strcspn() finds it.
const char* runEnd(const char* p, const char* end, bool& ascii) noexcept {
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

const std::uint8_t* bytesOf(const char* p) noexcept { return reinterpret_cast<const std::uint8_t*>(p); }

bool isDigit(char b) noexcept { return static_cast<unsigned char>(b - '0') <= 9; }

std::uint64_t eightBytes(const char* p) noexcept {
    std::uint64_t v;
    std::memcpy(&v, p, 8);
    return v;
}

bool areEightDigits(std::uint64_t v) noexcept {
    return ((v & 0xF0F0F0F0F0F0F0F0u) | ((v + 0x0606060606060606u) & 0xF0F0F0F0F0F0F0F0u) >> 4) == 0x3333333333333333u;
}

/// The first byte is the lowest, and the highest digit.
std::uint64_t eightDigits(std::uint64_t v) noexcept {
    v = (v & 0x0F0F0F0F0F0F0F0Fu) * 2561 >> 8;
    v = (v & 0x00FF00FF00FF00FFu) * 6553601 >> 16;
    return (v & 0x0000FFFF0000FFFFu) * 42949672960001u >> 32;
}

/// Reads digits into `value`, which wraps around where they are too many.
const char* scanDigits(const char* p, const char* end, std::uint64_t& value) noexcept {
    if constexpr (std::endian::native == std::endian::little)
        while (end - p >= 8) {
            const std::uint64_t v = eightBytes(p);
            if (!areEightDigits(v)) break;
            value = value * 100000000 + eightDigits(v);
            p += 8;
        }
    for (; isDigit(*p); ++p)
        value = value * 10 + static_cast<unsigned>(*p - '0');
    return p;
}

} // namespace

// Texts.

NSObject* SBJsonParser::Engine::scanRestOfString(Role role) {
    bool ascii = false;
    const char* const stop = runEnd(c, end_, ascii);
    // Nearly all texts are one run of plain letters.
    if (*stop != '"' || !ascii) return scanRestOfStringInPieces(role);
    const char* const from = c;
    const auto count = static_cast<std::size_t>(stop - from);
    c = stop + 1;
    if (role == Role::key) return knownKey(from, count);
    return detail::DocumentObjects::text(bytesOf(from), count);
}

NSObject* SBJsonParser::Engine::scanRestOfStringInPieces(Role role) {
    unitCount_ = 0;
    for (;;) {
        bool ascii = false;
        const char* const stop = runEnd(c, end_, ascii);
        if (stop != c && appendRun(c, stop)) c = stop;
        const char b = *c;
        if (b == '\\') {
            ++c;
            if (!scanEscape()) return nullptr;
            if (*c != '\0') continue;
            error(SBJSONErrorEOF, "Unexpected EOF while parsing string");
            return nullptr;
        }
        if (b == '"') {
            ++c;
            return textOfUnits(role);
        }
        // A control character, the end of the input; or ill-formed bytes, which no text gives as its UTF-8.
        char text[48];
        std::snprintf(text, sizeof text, "Unescaped control character '0x%x'",
                      static_cast<unsigned>(static_cast<unsigned char>(b)));
        error(SBJSONErrorControl, text);
        return nullptr;
    }
}

bool SBJsonParser::Engine::scanEscape() {
    unichar unit = 0;
    switch (*c) {
    case '"':
    case '\\':
    case '/':
        unit = static_cast<unichar>(*c);
        break;
    case 'b':
        unit = '\b';
        break;
    case 'f':
        unit = '\f';
        break;
    case 'n':
        unit = '\n';
        break;
    case 'r':
        unit = '\r';
        break;
    case 't':
        unit = '\t';
        break;
    case 'u':
        if (!scanUnicodeChar(unit)) {
            error(SBJSONErrorUnicode, "Broken unicode character");
            return false;
        }
        break;
    default: {
        char text[48];
        std::snprintf(text, sizeof text, "Illegal escape sequence '0x%x'",
                      static_cast<unsigned>(static_cast<unsigned char>(*c)));
        error(SBJSONErrorEscape, text);
        return false;
    }
    }
    ++c;
    appendUnit(unit);
    return true;
}

/// The cursor stands before the four digits, and on the last of them afterwards.
bool SBJsonParser::Engine::scanHexQuad(unichar& quad) {
    unsigned value = 0;
    for (int i = 0; i < 4; ++i) {
        const char b = *++c;
        unsigned digit = 0;
        if (isDigit(b))
            digit = static_cast<unsigned>(b - '0');
        else if (b >= 'a' && b <= 'f')
            digit = static_cast<unsigned>(b - 'a' + 10);
        else if (b >= 'A' && b <= 'F')
            digit = static_cast<unsigned>(b - 'A' + 10);
        else {
            error(SBJSONErrorUnicode, "Missing hex digit in quad");
            return false;
        }
        value = value << 4 | digit;
    }
    quad = static_cast<unichar>(value);
    return true;
}

bool SBJsonParser::Engine::scanUnicodeChar(unichar& unit) {
    unichar high = 0, low = 0;
    if (!scanHexQuad(high)) {
        error(SBJSONErrorUnicode, "Missing hex quad");
        return false;
    }
    if (high < 0xD800 || high >= 0xE000) {
        unit = high;
        return true;
    }
    if (high >= 0xDC00) {
        error(SBJSONErrorUnicode, "Invalid high character in surrogate pair");
        return false;
    }
    bool follows = c[1] == '\\' && c[2] == 'u';
    if (follows) {
        c += 2;
        follows = scanHexQuad(low);
    }
    if (!follows) {
        error(SBJSONErrorUnicode, "Missing low character in surrogate pair");
        return false;
    }
    // The bound leaves out 0xDFFF, and the pair is stored as one unit: both are part of what this reader does.
    const auto offset = static_cast<unichar>(low - 0xDC00);
    if (offset >= 0x3FF) {
        error(SBJSONErrorUnicode, "Invalid low surrogate char");
        return false;
    }
    unit = static_cast<unichar>((static_cast<unsigned>(high) << 10) + offset);
    return true;
}

void SBJsonParser::Engine::reserveUnits(std::size_t count) {
    if (unitCount_ + count <= unitRoom_) return;
    const std::size_t room = std::max<std::size_t>(256, 2 * (unitCount_ + count));
    auto larger = std::make_unique_for_overwrite<unichar[]>(room);
    if (unitCount_) std::memcpy(larger.get(), units_.get(), unitCount_ * sizeof(unichar));
    units_ = std::move(larger);
    unitRoom_ = room;
}

void SBJsonParser::Engine::appendUnit(unichar unit) {
    reserveUnits(1);
    units_[unitCount_++] = unit;
}

bool SBJsonParser::Engine::appendRun(const char* from, const char* to) {
    reserveUnits(static_cast<std::size_t>(to - from));
    const std::uint8_t *p = bytesOf(from), *const end = bytesOf(to);
    unichar* out = units_.get() + unitCount_;
    while (p != end) {
        if (*p < 0x80) {
            *out++ = *p++;
            continue;
        }
        // Three bytes but for surrogates and what two would do for.
        if (end - p >= 3 && (*p & 0xF0) == 0xE0 && (p[1] & 0xC0) == 0x80 && (p[2] & 0xC0) == 0x80) {
            const unsigned u = (*p & 0x0Fu) << 12 | (p[1] & 0x3Fu) << 6 | (p[2] & 0x3Fu);
            if (u >= 0x800 && (u & 0xF800) != 0xD800) {
                *out++ = static_cast<unichar>(u);
                p += 3;
                continue;
            }
        }
        const char32_t u = detail::nextUTF8(p, end);
        if (u == detail::illFormed) return false;
        out += detail::putCodePoint(u, out);
    }
    unitCount_ = static_cast<std::size_t>(out - units_.get());
    return true;
}

NSObject* SBJsonParser::Engine::textOfUnits(Role role) {
    const unichar* const units = units_ ? units_.get() : u"";
    if (role == Role::key) return NSString::from({units, unitCount_}).leak();
    return detail::DocumentObjects::text(units, unitCount_);
}

NSObject* SBJsonParser::Engine::knownKey(const char* from, std::size_t count) {
    std::uint64_t bits = count;
    if (count >= 8)
        bits ^= eightBytes(from) ^ std::rotl(eightBytes(from + count - 8), 29);
    else
        for (std::size_t i = 0; i < count; ++i)
            bits ^= static_cast<std::uint64_t>(static_cast<unsigned char>(from[i])) << (8 * i);
    NSString*& known = keys_[(bits * 0x9E3779B97F4A7C15u >> 40) & (known_ - 1)];
    if (known && known->length() == count && std::memcmp(known->latin1Contents(), from, count) == 0) {
        known->retain();
        return known;
    }
    Ref<NSString> fresh = NSString::fromLatin1({from, count});
    NSString* const old = std::exchange(known, Ref<NSString>(fresh).leak());
    if (old) old->release();
    return fresh.leak();
}

// Numbers.

NSObject* SBJsonParser::Engine::scanNumber() {
    const char* const start = c;
    const char* p = start;
    const bool negative = *p == '-';
    if (negative) ++p;

    std::uint64_t mantissa = 0;
    std::ptrdiff_t digits = 1, behindPoint = 0;
    if (*p == '0') {
        ++p;
        if (isDigit(*p)) {
            error(SBJSONErrorParseNumber, "Leading 0 disallowed in number");
            return nullptr;
        }
    } else if (!isDigit(*p)) {
        error(SBJSONErrorParseNumber, "No digits after initial minus");
        return nullptr;
    } else {
        const char* const first = p;
        p = scanDigits(p, end_, mantissa);
        digits = p - first;
    }
    if (*p == '.') {
        const char* const first = ++p;
        p = scanDigits(p, end_, mantissa);
        behindPoint = p - first;
        if (behindPoint == 0) {
            error(SBJSONErrorParseNumber, "No digits after decimal point");
            return nullptr;
        }
        digits += behindPoint;
    }
    std::uint64_t power = 0;
    bool down = false;
    std::ptrdiff_t powerDigits = 0;
    if (*p == 'e' || *p == 'E') {
        ++p;
        down = *p == '-';
        if (*p == '+' || *p == '-') ++p;
        const char* const first = p;
        p = scanDigits(p, end_, power);
        powerDigits = p - first;
        if (powerDigits == 0) {
            error(SBJSONErrorParseNumber, "No digits after exponent");
            return nullptr;
        }
    }
    c = p;

    // Up to 19 digits fit the mantissa; with an exponent in the middle of the range nothing has to be rounded.
    constexpr std::ptrdiff_t mostDigits = 19, mostPowerDigits = 3;
    constexpr int farthest = 100;
    if (digits <= mostDigits && powerDigits <= mostPowerDigits) [[likely]] {
        const int exponent =
            (down ? -static_cast<int>(power) : static_cast<int>(power)) - static_cast<int>(behindPoint);
        if (exponent >= -farthest && exponent <= farthest) return number(mantissa, exponent, negative);
    }
    NSObject* const made = NSDecimalNumber::decimalNumberWithText({start, static_cast<std::size_t>(p - start)}).leak();
    if (!made) error(SBJSONErrorParseNumber, "Failed creating decimal instance");
    return made;
}

NSObject* SBJsonParser::Engine::number(std::uint64_t mantissa, int exponent, bool negative) {
    // Numbers cannot change, so that equal ones may be one object. Long ones seldom come again.
    constexpr std::uint64_t longOne = std::uint64_t(1) << 44;
    if (mantissa >= longOne) {
        if (NSObject* made = Decimal::inOneWord(mantissa, exponent, negative)) return made;
        Decimal d = Decimal::of(mantissa, negative);
        d.exponent += exponent;
        return d.object().leak();
    }
    const int sign = exponent * 2 + negative;
    KnownNumber& known =
        numbers_[((mantissa ^ static_cast<std::uint64_t>(sign) << 48) * 0x9E3779B97F4A7C15u >> 40) & (known_ - 1)];
    if (known.number && known.mantissa == mantissa && known.sign == sign) {
        known.number->retain();
        return known.number;
    }
    NSObject* made = Decimal::inOneWord(mantissa, exponent, negative);
    if (!made) {
        Decimal d = Decimal::of(mantissa, negative);
        d.exponent += exponent;
        made = d.object().leak();
    }
    made->retain();
    if (known.number) known.number->release();
    known = {mantissa, sign, made};
    return made;
}

} // namespace libvue
