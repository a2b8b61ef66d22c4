#include <libvue/platform/foundation/StringBuilder.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <new>

#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/StringUnits.h>

namespace libvue {

void StringBuilder::freeBuffer() noexcept {
    if (buffer_ != inline_) std::free(buffer_);
}

void StringBuilder::grow(NSUInteger units) {
    const NSUInteger capacity = std::max(units, capacity_ + capacity_ / 2 + 16);
    const std::size_t size = capacity * (wide_ ? sizeof(unichar) : 1);
    void* room = buffer_ == inline_ ? std::malloc(size) : std::realloc(buffer_, size);
    if (!room) throw std::bad_alloc();
    if (buffer_ == inline_) std::memcpy(room, inline_, length_ * (wide_ ? sizeof(unichar) : 1));
    buffer_ = room;
    capacity_ = capacity;
}

void StringBuilder::widen() {
    if (wide_) return;
    if (buffer_ == inline_ && length_ <= inlineBytes / sizeof(unichar)) {
        std::uint8_t narrow[inlineBytes / sizeof(unichar)];
        std::memcpy(narrow, inline_, length_);
        detail::widenUnits(narrow, length_, reinterpret_cast<unichar*>(inline_));
        capacity_ = inlineBytes / sizeof(unichar);
    } else {
        const NSUInteger capacity = std::max<NSUInteger>(capacity_, length_ + 16);
        auto* room = static_cast<unichar*>(std::malloc(capacity * sizeof(unichar)));
        if (!room) throw std::bad_alloc();
        detail::widenUnits(static_cast<const std::uint8_t*>(buffer_), length_, room);
        freeBuffer();
        buffer_ = room;
        capacity_ = capacity;
    }
    wide_ = true;
}

void StringBuilder::append(std::string_view latin1) {
    reserve(length_ + latin1.size());
    const auto* units = reinterpret_cast<const std::uint8_t*>(latin1.data());
    if (wide_)
        detail::widenUnits(units, latin1.size(), static_cast<unichar*>(buffer_) + length_);
    else if (!latin1.empty())
        std::memcpy(static_cast<std::uint8_t*>(buffer_) + length_, units, latin1.size());
    length_ += latin1.size();
}

void StringBuilder::append(std::u16string_view units) {
    if (units.empty()) return;
    if (!wide_ && !detail::fitsLatin1(units.data(), units.size())) widen();
    reserve(length_ + units.size());
    if (wide_)
        std::memcpy(static_cast<unichar*>(buffer_) + length_, units.data(), units.size() * sizeof(unichar));
    else
        detail::narrowUnits(units.data(), units.size(), static_cast<std::uint8_t*>(buffer_) + length_);
    length_ += units.size();
}

void StringBuilder::append(const NSString* s) {
    if (s) append(s, 0, s->length());
}

void StringBuilder::append(const NSString* s, NSUInteger from, NSUInteger length) {
    if (!s) return;
    if (const std::uint8_t* narrow = s->latin1Contents())
        append(std::string_view(reinterpret_cast<const char*>(narrow) + from, length));
    else
        append(std::u16string_view(s->_fastCharacterContents() + from, length));
}

void StringBuilder::appendUTF8(std::string_view bytes) {
    const auto* p = reinterpret_cast<const std::uint8_t*>(bytes.data());
    if (detail::isASCII(p, bytes.size())) return append(bytes);
    const std::uint8_t* const end = p + bytes.size();
    while (p != end) {
        const char32_t c = detail::nextUTF8(p, end);
        appendCodePoint(c == detail::illFormed ? 0xFFFD : c);
    }
}

void StringBuilder::appendCodePoint(char32_t c) {
    unichar units[2];
    if (c > 0x10FFFF) c = 0xFFFD;
    const std::size_t count = detail::putCodePoint(c, units);
    append(units[0]);
    if (count == 2) append(units[1]);
}

void StringBuilder::appendNumber(NSInteger v) {
    char digits[24];
    append(std::string_view(digits, static_cast<std::size_t>(std::to_chars(digits, std::end(digits), v).ptr - digits)));
}

void StringBuilder::appendUnsigned(NSUInteger v) {
    char digits[24];
    append(std::string_view(digits, static_cast<std::size_t>(std::to_chars(digits, std::end(digits), v).ptr - digits)));
}

void StringBuilder::appendRepeated(unichar unit, NSUInteger times) {
    if (unit > 0xFF) widen();
    reserve(length_ + times);
    for (; times; --times)
        append(unit);
}

Ref<NSString> StringBuilder::build() const {
    if (wide_) return NSString::from({static_cast<const unichar*>(buffer_), length_});
    return NSString::fromLatin1({static_cast<const char*>(buffer_), length_});
}

} // namespace libvue
