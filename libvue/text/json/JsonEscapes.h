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
        if (count >= step && count <= 2 * step) {
            // Both at once, so that nothing has to be foretold.
            const bool first = isPlain<From>(load<std::uint64_t>(from));
            if (!(first & isPlain<From>(load<std::uint64_t>(end - step)))) return copyEscaping(from, end, to);
            copyPlain<step>(from, to);
            copyPlain<step>(end - step, to + (count - step));
            return to + count;
        }
        if (count >= step) {
            To* const start = to;
            const From* const last = end - step;
            for (; from <= last; from += step, to += step) {
                if (!isPlain<From>(load<std::uint64_t>(from))) return copyEscaping(from, end, to);
                copyPlain<step>(from, to);
            }
            // The rest, together with some of what is there already.
            if (!isPlain<From>(load<std::uint64_t>(last))) return copyEscaping(from, end, to);
            copyPlain<step>(last, start + (count - step));
            return start + count;
        }
        if constexpr (step == 8)
            if (count >= 4) {
                const std::uint64_t first = load<std::uint32_t>(from), second = load<std::uint32_t>(end - 4);
                if (!isPlain<From>(first | second << 32)) return copyEscaping(from, end, to);
                copyPlain<4>(from, to);
                copyPlain<4>(end - 4, to + (count - 4));
                return to + count;
            }
        for (; from != end; ++from)
            to = isPlain(*from) ? (*to = *from, to + 1) : escape(*from, to);
        return to;
    }

private:
    template <class Word> static Word load(const void* from) noexcept {
        Word word;
        std::memcpy(&word, from, sizeof word);
        return word;
    }
    template <std::size_t count, class From, class To> static void copyPlain(const From* from, To* to) noexcept {
        if constexpr (sizeof(From) == sizeof(To))
            std::memcpy(to, from, count * sizeof(To));
        else
            for (std::size_t i = 0; i < count; ++i)
                to[i] = from[i];
    }
    /// The same as copy(), for units of which one must be escaped.
    template <class From, class To> static To* copyEscaping(const From* from, const From* end, To* to) noexcept {
        constexpr std::ptrdiff_t step = sizeof(std::uint64_t) / sizeof(From);
        while (from != end) {
            for (; end - from >= step && isPlain<From>(load<std::uint64_t>(from)); from += step, to += step)
                copyPlain<step>(from, to);
            while (from != end && isPlain(*from))
                *to++ = *from++;
            if (from != end) to = escape(*from++, to);
        }
        return to;
    }
    static bool isPlain(unichar unit) noexcept { return unit >= 0x20 && unit != u'"' && unit != u'\\'; }
    /// Whether no unit of the word must be escaped. The three tests borrow upwards only from a unit that is found.
    template <class Unit> static bool isPlain(std::uint64_t word) noexcept {
        constexpr std::uint64_t ones = sizeof(Unit) == 1 ? 0x0101010101010101 : 0x0001000100010001;
        constexpr std::uint64_t tops = ones << (8 * sizeof(Unit) - 1);
        const std::uint64_t quotes = word ^ (ones * u'"'), backslashes = word ^ (ones * u'\\');
        // What has its top bit set is none of them, and none of the differences from them is.
        const std::uint64_t found = ((word - ones * 0x20) | (quotes - ones) | (backslashes - ones)) & ~word;
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
