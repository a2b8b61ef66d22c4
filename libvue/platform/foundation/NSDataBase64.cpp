#include <array>
#include <cstdint>
#include <string>

#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/StringBuilder.h>

namespace libvue {

namespace {

constexpr char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::array<std::int8_t, 128> makeValues() {
    std::array<std::int8_t, 128> values{};
    for (auto& v : values)
        v = -1;
    for (int i = 0; i < 64; ++i)
        values[static_cast<unsigned char>(letters[i])] = static_cast<std::int8_t>(i);
    return values;
}
constexpr std::array<std::int8_t, 128> values = makeValues();

} // namespace

Ref<NSString> NSData::base64EncodedStringWithOptions(NSUInteger options) const {
    const NSUInteger line = options & NSDataBase64Encoding64CharacterLineLength   ? 64
                            : options & NSDataBase64Encoding76CharacterLineLength ? 76
                                                                                  : 0;
    const auto* bytes = static_cast<const std::uint8_t*>(bytes_);
    StringBuilder out(length_ / 3 * 4 + 4);
    NSUInteger column = 0;
    for (NSUInteger i = 0; i < length_; i += 3) {
        if (line && column == line) {
            out.append("\r\n");
            column = 0;
        }
        const NSUInteger left = length_ - i;
        const std::uint32_t three = std::uint32_t{bytes[i]} << 16 | (left > 1 ? std::uint32_t{bytes[i + 1]} << 8 : 0) |
                                    (left > 2 ? bytes[i + 2] : 0);
        out.append(letters[three >> 18]);
        out.append(letters[three >> 12 & 63]);
        out.append(left > 1 ? letters[three >> 6 & 63] : '=');
        out.append(left > 2 ? letters[three & 63] : '=');
        column += 4;
    }
    return out.build();
}

Ref<NSData> NSData::initWithBase64EncodedString_options(const NSString* s, NSUInteger options) {
    if (!s) return nullptr;
    std::string out;
    std::uint32_t bits = 0;
    unsigned have = 0, padding = 0;
    for (NSUInteger i = 0; i < s->length(); ++i) {
        const unichar c = s->unit(i);
        const int value = c < 128 ? values[c] : -1;
        if (c == '=') {
            ++padding;
        } else if (value < 0) {
            if (!(options & NSDataBase64DecodingIgnoreUnknownCharacters)) return nullptr;
            continue;
        } else if (padding)
            return nullptr;
        else
            bits = bits << 6 | static_cast<std::uint32_t>(value);
        if (++have < 4) continue;
        if (padding > 2) return nullptr;
        bits <<= 6 * padding;
        out.push_back(static_cast<char>(bits >> 16));
        if (padding < 2) out.push_back(static_cast<char>(bits >> 8));
        if (padding < 1) out.push_back(static_cast<char>(bits));
        bits = 0;
        have = 0;
    }
    return have == 0 ? from(out) : nullptr;
}

} // namespace libvue
