#include <libvue/platform/foundation/PercentEscapes.h>

#include <libvue/platform/foundation/AsciiDigits.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/NSURL.h>
#include <libvue/platform/foundation/StringBuilder.h>
#include <libvue/platform/foundation/StringUnits.h>

namespace libvue {

namespace {

bool isAlphanumeric(unsigned char c) noexcept {
    return detail::isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isOneOf(unsigned char c, std::string_view set) noexcept { return c && set.find(static_cast<char>(c)) != set.npos; }

/// What may stand in a URL without an escape, besides the sign of a fragment and brackets.
bool isLegal(unsigned char c) noexcept { return isAlphanumeric(c) || isOneOf(c, "-_.~!*'();/?:@&=+$,"); }

/// The byte of the escape at `i`, or -1.
int escapeAt(std::string_view s, std::size_t i) noexcept {
    if (i + 2 >= s.size() || s[i] != '%') return -1;
    const int high = detail::hexDigit(s[i + 1]), low = detail::hexDigit(s[i + 2]);
    return high < 0 || low < 0 ? -1 : high * 16 + low;
}

void putEscape(std::string& out, unsigned char byte) {
    static constexpr char hex[] = "0123456789ABCDEF";
    out += '%';
    out += hex[byte >> 4];
    out += hex[byte & 15];
}

bool holds(const NSString* set, std::u16string_view character) {
    if (!set) return false;
    const std::u16string units = set->utf16();
    return units.find(character) != units.npos;
}

} // namespace

bool detail::isEscapedProperly(std::string_view s) noexcept {
    for (std::size_t i = 0; i < s.size(); ++i) {
        const auto c = static_cast<unsigned char>(s[i]);
        if (c == '%' ? escapeAt(s, i) < 0 : !isLegal(c) && !isOneOf(c, "#[]")) return false;
    }
    return true;
}

std::string detail::escapedPath(std::string_view path) {
    std::string out;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (isAlphanumeric(byte) || isOneOf(byte, "-_.~!*'()/:@&=+$,"))
            out += c;
        else
            putEscape(out, byte);
    }
    return out;
}

bool detail::unescape(std::string_view s, std::string& bytes) {
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] != '%') {
            bytes += s[i];
            continue;
        }
        const int byte = escapeAt(s, i);
        if (byte < 0) return false;
        bytes += static_cast<char>(byte);
        i += 2;
    }
    return true;
}

static Ref<NSString> escaped(const NSString& s, const NSString* leave, const NSString* alsoEscape,
                             NSStringEncoding encoding) {
    const detail::WideUnits units(s);
    StringBuilder out(units.size());
    for (std::size_t i = 0; i < units.size();) {
        const std::size_t from = i;
        const char32_t c = detail::nextCodePoint(units.data(), units.size(), i);
        const std::u16string_view character = units.view().substr(from, i - from);
        const bool stays = holds(leave, character) ||
                           (c < 0x80 && isLegal(static_cast<unsigned char>(c)) && !holds(alsoEscape, character));
        if (stays) {
            out.append(character);
            continue;
        }
        const Ref<NSData> bytes = NSString::from(character)->dataUsingEncoding(encoding);
        if (!bytes) return nullptr;
        std::string escapes;
        for (const char byte : bytes->view())
            putEscape(escapes, static_cast<unsigned char>(byte));
        out.append(std::string_view(escapes));
    }
    return out.build();
}

Ref<NSString> CFURLCreateStringByAddingPercentEscapes(const NSString* s, const NSString* leave,
                                                      const NSString* alsoEscape, CFStringEncoding encoding) {
    if (!s || encoding != kCFStringEncodingUTF8) return nullptr;
    return escaped(*s, leave, alsoEscape, NSUTF8StringEncoding);
}

Ref<NSString> CFURLCreateStringByReplacingPercentEscapes(const NSString* s, const NSString* leaveEscaped) {
    if (!s) return nullptr;
    if (!leaveEscaped) return NSString::stringWithString(s);
    const std::string bytes = s->utf8();
    std::string out;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] != '%') {
            out += bytes[i];
            continue;
        }
        const int byte = escapeAt(bytes, i);
        if (byte < 0) return nullptr;
        const auto unit = static_cast<unichar>(byte);
        if (byte < 0x80 && holds(leaveEscaped, {&unit, 1}))
            out.append(bytes, i, 3);
        else
            out += static_cast<char>(byte);
        i += 2;
    }
    return detail::stringFromUTF8(out, detail::IllFormed::refuse);
}

Ref<NSString> NSString::stringByAddingPercentEscapesUsingEncoding(NSStringEncoding encoding) const {
    return escaped(*this, nullptr, nullptr, encoding);
}

Ref<NSString> NSString::stringByReplacingPercentEscapesUsingEncoding(NSStringEncoding encoding) const {
    const Ref<NSData> plain = dataUsingEncoding(encoding);
    std::string bytes;
    if (!plain || !detail::unescape(plain->view(), bytes)) return nullptr;
    return initWithBytes_length_encoding(bytes.data(), bytes.size(), encoding);
}

} // namespace libvue
