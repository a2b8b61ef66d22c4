#include <libvue/text/json/JsonOutput.h>

#include <algorithm>

namespace libvue {

template <class Unit> Unit* JsonOutput::handOn(Unit* at) {
    Unit* const start = block<Unit>();
    const auto count = static_cast<std::size_t>(at - start);
    if constexpr (sizeof(Unit) == 1)
        text_.appendLatin1({reinterpret_cast<const char*>(start), count});
    else
        text_.append({start, count});
    return start;
}

template <class Unit> Unit* JsonOutput::putRepeated(char c, NSUInteger times, Unit* at) {
    while (times) {
        at = ready(at);
        const NSUInteger now = std::min<NSUInteger>(times, room);
        at = std::fill_n(at, now, static_cast<Unit>(c));
        times -= now;
    }
    return ready(at);
}

template <class Unit> Unit* JsonOutput::putPlain(const NSString& s, Unit* at) {
    at = ready(at);
    const std::uint8_t* narrow = s.latin1Contents();
    if (narrow && s.length() < room / 2) return std::copy_n(narrow, s.length(), at);
    at = handOn(at);
    text_.appendString(&s);
    return at;
}

template <class From, class Unit> Unit* JsonOutput::putPieces(const From* units, std::size_t count, Unit* at) {
    constexpr std::size_t piece = room / JsonEscapes::longest;
    while (count) {
        const std::size_t now = std::min(count, piece);
        at = JsonEscapes::copy(units, now, ready(at));
        units += now;
        count -= now;
    }
    return at;
}

template <class Unit> Unit* JsonOutput::putLong(const NSString& s, Unit* at) {
    *at++ = '"';
    if (const std::uint8_t* narrow = s.latin1Contents())
        at = putPieces(narrow, s.length(), at);
    else if constexpr (sizeof(Unit) > 1) {
        wideCame_ = true;
        at = putPieces(s._fastCharacterContents(), s.length(), at);
    }
    at = ready(at);
    *at++ = '"';
    return at;
}

template std::uint8_t* JsonOutput::handOn(std::uint8_t*);
template std::uint8_t* JsonOutput::putRepeated(char, NSUInteger, std::uint8_t*);
template std::uint8_t* JsonOutput::putPlain(const NSString&, std::uint8_t*);
template std::uint8_t* JsonOutput::putLong(const NSString&, std::uint8_t*);
template unichar* JsonOutput::handOn(unichar*);
template unichar* JsonOutput::putRepeated(char, NSUInteger, unichar*);
template unichar* JsonOutput::putPlain(const NSString&, unichar*);
template unichar* JsonOutput::putLong(const NSString&, unichar*);

} // namespace libvue
