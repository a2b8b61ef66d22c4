#include <libvue/text/json/JsonOutput.h>

#include <algorithm>
#include <charconv>
#include <cstring>

#include <libvue/platform/foundation/Decimal.h>
#include <libvue/platform/foundation/StringUnits.h>
#include <libvue/text/json/JsonEscapes.h>

namespace libvue {

void JsonOutput::flush() {
    if (wide_)
        text_.append({block_.wide, length_});
    else
        text_.appendLatin1({reinterpret_cast<const char*>(block_.narrow), length_});
    length_ = 0;
}

void JsonOutput::widen() {
    if (wide_) return;
    flush();
    wide_ = true;
}

void JsonOutput::put(std::string_view latin1) {
    need(latin1.size());
    if (wide_)
        detail::widenUnits(reinterpret_cast<const std::uint8_t*>(latin1.data()), latin1.size(), block_.wide + length_);
    else
        std::memcpy(block_.narrow + length_, latin1.data(), latin1.size());
    length_ += latin1.size();
}

void JsonOutput::putRepeated(char c, NSUInteger times) {
    while (times) {
        const NSUInteger now = std::min<NSUInteger>(times, blockUnits);
        need(now);
        if (wide_)
            std::fill_n(block_.wide + length_, now, static_cast<unsigned char>(c));
        else
            std::memset(block_.narrow + length_, c, now);
        length_ += now;
        times -= now;
    }
}

void JsonOutput::putPlain(const NSString& s) {
    const std::uint8_t* narrow = s.latin1Contents();
    if (narrow && s.length() <= blockUnits) return put({reinterpret_cast<const char*>(narrow), s.length()});
    flush();
    text_.appendString(&s);
}

template <class Unit> void JsonOutput::putEscaped(const Unit* units, std::size_t count) {
    // Pieces for which the block has room even if every unit becomes six.
    constexpr std::size_t piece = 1024;
    static_assert(piece * JsonEscapes::longest <= blockUnits);
    do {
        const std::size_t now = std::min(count, piece);
        need(now * JsonEscapes::longest);
        if (wide_)
            length_ = static_cast<std::size_t>(JsonEscapes::copy(units, now, block_.wide + length_) - block_.wide);
        else if constexpr (sizeof(Unit) == 1)
            length_ = static_cast<std::size_t>(JsonEscapes::copy(units, now, block_.narrow + length_) - block_.narrow);
        units += now;
        count -= now;
    } while (count);
}

void JsonOutput::putQuoted(const NSString& s) {
    put('"');
    if (const std::uint8_t* narrow = s.latin1Contents())
        putEscaped(narrow, s.length());
    else if (s.length()) {
        widen();
        putEscaped(s._fastCharacterContents(), s.length());
    }
    put('"');
}

void JsonOutput::putInteger(NSInteger v) {
    char digits[24];
    put(std::string_view(digits, static_cast<std::size_t>(std::to_chars(digits, std::end(digits), v).ptr - digits)));
}

void JsonOutput::putUnsigned(NSUInteger v) {
    char digits[24];
    put(std::string_view(digits, static_cast<std::size_t>(std::to_chars(digits, std::end(digits), v).ptr - digits)));
}

void JsonOutput::putDecimal(const NSDecimalNumber& n) {
    need(Decimal::mostCharacters);
    if (!wide_) {
        char* const at = reinterpret_cast<char*>(block_.narrow) + length_;
        length_ += static_cast<std::size_t>(Decimal::of(n).write(at) - at);
        return;
    }
    char text[Decimal::mostCharacters];
    const auto count = static_cast<std::size_t>(Decimal::of(n).write(text) - text);
    detail::widenUnits(reinterpret_cast<const std::uint8_t*>(text), count, block_.wide + length_);
    length_ += count;
}

} // namespace libvue
