#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

#include <locale.h>

#include <libvue/platform/foundation/NSString.h>

// Units of texts, for the sources of the text classes.

namespace libvue::detail {

[[nodiscard]] bool isASCII(const std::uint8_t* units, std::size_t count) noexcept;
/// Whether all units fit in eight bits.
[[nodiscard]] bool fitsLatin1(const unichar* units, std::size_t count) noexcept;
void widenUnits(const std::uint8_t* from, std::size_t count, unichar* to) noexcept;
/// The units are known to fit.
void narrowUnits(const unichar* from, std::size_t count, std::uint8_t* to) noexcept;

[[nodiscard]] constexpr bool isHighSurrogate(char32_t c) noexcept { return (c & 0xFFFFFC00u) == 0xD800; }
[[nodiscard]] constexpr bool isLowSurrogate(char32_t c) noexcept { return (c & 0xFFFFFC00u) == 0xDC00; }
[[nodiscard]] constexpr char32_t codePoint(char32_t high, char32_t low) noexcept {
    return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}
/// The code point at `i`, which moves behind it. A lone surrogate is itself.
[[nodiscard]] inline char32_t nextCodePoint(const unichar* units, std::size_t count, std::size_t& i) noexcept {
    const char32_t c = units[i++];
    if (isHighSurrogate(c) && i < count && isLowSurrogate(units[i])) return codePoint(c, units[i++]);
    return c;
}
/// Writes the code point as one or two units and answers how many.
inline std::size_t putCodePoint(char32_t c, unichar* out) noexcept {
    if (c < 0x10000) {
        out[0] = static_cast<unichar>(c);
        return 1;
    }
    out[0] = static_cast<unichar>(0xD7C0 + (c >> 10));
    out[1] = static_cast<unichar>(0xDC00 + (c & 0x3FF));
    return 2;
}

/// Runs `f(pointer, count)` on the units of a part that is known to be good, 8-bit or UTF-16 as they are stored.
template <class F> decltype(auto) visitUnits(const NSString& s, NSRange range, F&& f) {
    if (const std::uint8_t* narrow = s.latin1Contents())
        return f(narrow + range.location, static_cast<std::size_t>(range.length));
    return f(s._fastCharacterContents() + range.location, static_cast<std::size_t>(range.length));
}
template <class F> decltype(auto) visitUnits(const NSString& s, F&& f) {
    return visitUnits(s, NSRange{0, s.length()}, std::forward<F>(f));
}

/// UTF-16 units of a part of a text: the text's own where it is stored so, else a copy, which needs no memory when
/// short.
class WideUnits {
public:
    explicit WideUnits(const NSString& s) : WideUnits(s, {0, s.length()}) {}
    WideUnits(const NSString& s, NSRange range) : size_(range.length) {
        if (const unichar* wide = s._fastCharacterContents()) {
            data_ = wide + range.location;
            return;
        }
        unichar* to = inline_.data();
        if (size_ > inline_.size()) {
            heap_.reset(new unichar[size_]);
            to = heap_.get();
        }
        widenUnits(s.latin1Contents() + range.location, size_, to);
        data_ = to;
    }
    WideUnits(const WideUnits&) = delete;
    WideUnits& operator=(const WideUnits&) = delete;

    [[nodiscard]] const unichar* data() const noexcept { return data_; }
    [[nodiscard]] std::size_t size() const noexcept { return size_; }
    [[nodiscard]] std::u16string_view view() const noexcept { return {data_, size_}; }
    [[nodiscard]] unichar operator[](std::size_t i) const noexcept { return data_[i]; }

private:
    const unichar* data_;
    std::size_t size_;
    std::unique_ptr<unichar[]> heap_;
    std::array<unichar, 128> inline_;
};

/// The C library's own locale: numbers are written and read alike whatever the user's language is.
[[nodiscard]] locale_t cLocale() noexcept;

/// The next code point of UTF-8 bytes; `p` moves behind it. Ill-formed bytes give `illFormed` and are skipped as far as
/// they could have begun a character.
inline constexpr char32_t illFormed = 0xFFFFFFFF;
[[nodiscard]] char32_t nextUTF8(const std::uint8_t*& p, const std::uint8_t* end) noexcept;
/// Writes the code point's bytes (up to four) and answers how many; a surrogate becomes U+FFFD.
std::size_t putUTF8(char32_t c, char* out) noexcept;

enum class IllFormed : bool { replace, refuse };
/// Null where `refuse` meets ill-formed bytes.
[[nodiscard]] Ref<NSString> stringFromUTF8(std::string_view bytes, IllFormed policy);

} // namespace libvue::detail
