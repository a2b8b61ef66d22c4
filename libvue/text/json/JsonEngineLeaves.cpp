// Texts of the JSON reader that are more than one run of plain letters, and words too long for a word of the machine.

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
#include <libvue/text/json/JsonRuns.h>

namespace libvue {

using json::bytesOf;
using json::isDigit;
using json::runEnd;

// Texts.

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
        // A control character or the end of the input. A run is left where it is no UTF-8, which no text gives.
        if (static_cast<signed char>(b) >= ' ') NSLog(u"should not be able to get here"_ns);
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
    if (role == Role::key) {
        NSString* const key = NSString::from({units, unitCount_}).leak();
        keyHashes_.push_back(detail::DocumentObjects::hashOf(key));
        return key;
    }
    return detail::DocumentObjects::text(units, unitCount_);
}

} // namespace libvue
