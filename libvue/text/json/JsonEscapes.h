#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <libvue/platform/foundation/Types.h>

namespace libvue {

/// The copy of a text's units into JSON text, with the escapes that it needs: quote, backslash and the units below
/// 0x20.
///
/// Units are looked at eight bytes at a time, and copied while they are looked at.
class JsonEscapes {
public:
    /// The most units that one unit becomes.
    static constexpr std::size_t longest = 6;

    /// Answers where the copy ends. `to` has room for six times the units. 8-bit units may go into wider ones.
    template <class From, class To> static To* copy(const From* from, std::size_t count, To* to) noexcept {
        constexpr std::size_t step = sizeof(std::uint64_t) / sizeof(From);
        const From* const end = from + count;
        for (;;) {
            while (end - from >= static_cast<std::ptrdiff_t>(step) && isPlain<From>(load<std::uint64_t>(from)))
                to = copyPlain<step>(from, to);
            if (end - from < static_cast<std::ptrdiff_t>(step)) break;
            // One of the next units must be escaped.
            while (isPlain(*from))
                *to++ = *from++;
            to = escape(*from++, to);
        }
        if constexpr (step == 8) {
            if (end - from >= 4 && isPlain<From>(load<std::uint32_t>(from) | std::uint64_t{0x4040404000000000}))
                to = copyPlain<4>(from, to);
        }
        for (; from != end; ++from) {
            if (isPlain(*from))
                *to++ = *from;
            else
                to = escape(*from, to);
        }
        return to;
    }

private:
    template <class Word> static Word load(const void* from) noexcept {
        Word word;
        std::memcpy(&word, from, sizeof word);
        return word;
    }
    template <std::size_t count, class From, class To> static To* copyPlain(const From*& from, To* to) noexcept {
        for (std::size_t i = 0; i < count; ++i)
            to[i] = from[i];
        from += count;
        return to + count;
    }
    static bool isPlain(unichar unit) noexcept { return unit >= 0x20 && unit != u'"' && unit != u'\\'; }
    /// Whether no unit of the word must be escaped. The three tests borrow upwards only from a unit that is found.
    template <class Unit> static bool isPlain(std::uint64_t word) noexcept {
        constexpr std::uint64_t ones = sizeof(Unit) == 1 ? 0x0101010101010101 : 0x0001000100010001;
        constexpr std::uint64_t tops = ones << (8 * sizeof(Unit) - 1);
        const std::uint64_t quotes = word ^ (ones * u'"'), backslashes = word ^ (ones * u'\\');
        const std::uint64_t found =
            ((word - ones * 0x20) & ~word) | ((quotes - ones) & ~quotes) | ((backslashes - ones) & ~backslashes);
        return (found & tops) == 0;
    }
    template <class To> static To* escape(unichar unit, To* to) noexcept {
        static constexpr char digits[] = "0123456789abcdef";
        // The letters of the units below 0x20 that have one.
        static constexpr char letters[] = "\0\0\0\0\0\0\0\0btn\0fr";
        *to++ = '\\';
        if (unit >= 0x20)
            *to++ = static_cast<To>(unit);
        else if (unit < sizeof letters - 1 && letters[unit])
            *to++ = static_cast<To>(letters[unit]);
        else {
            *to++ = 'u';
            *to++ = '0';
            *to++ = '0';
            *to++ = static_cast<To>(digits[unit >> 4]);
            *to++ = static_cast<To>(digits[unit & 15]);
        }
        return to;
    }
};

} // namespace libvue
