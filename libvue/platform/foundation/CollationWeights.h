#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include <libvue/platform/foundation/Types.h>

namespace libvue::detail {

/// The order of texts of common European characters, told from small tables instead of by a collator: letters first,
/// then accents, from the end of the texts backwards. A text with any other character is not known, and then the
/// collator must be asked.
///
/// A character is a few elements, each a letter and its accents. Elements are numbered in their order, so that two of
/// them compare as two bytes do.
class CollationWeights {
public:
    /// One of a collator's weights. A secondary weight without a primary one is an accent of the letter before.
    struct Weight {
        std::uint32_t primary;
        std::uint32_t secondary;
    };
    /// The units that may be known.
    [[nodiscard]] static constexpr bool covers(unichar unit) noexcept { return slotOf(unit) != outside; }

    /// Fills the tables. Characters whose weights do not fit are left unknown; false where nothing could be known.
    struct Character {
        unichar unit;
        std::vector<Weight> weights;
    };
    bool fill(const std::vector<Character>& characters);
    [[nodiscard]] bool knows(unichar unit) const noexcept { return element(unit) != unknown; }

    /// Writes -1, 0 or 1; false where a text holds an unknown character that may matter.
    template <class A, class B>
    [[nodiscard]] bool compare(const A* a, std::size_t countA, const B* b, std::size_t countB,
                               int& order) const noexcept;

    /// Appends a sort key, in words that compare as numbers; the last one, and no other, ends with a zero byte. False,
    /// and nothing appended, for an unknown character.
    template <class T>
    [[nodiscard]] bool appendKey(const T* units, std::size_t count, std::vector<std::uint64_t>& words,
                                 std::vector<std::uint8_t>& room) const;

private:
    /// Letter in the high byte, accents in the low one. Without a letter it is one of these, or a list of elements.
    using Element = std::uint16_t;
    static constexpr Element unknown = 0, ignored = 1, firstList = 2, firstLetter = 0x100;
    static constexpr std::size_t latin = 0x180, punctuationFrom = 0x2000, punctuation = 0x80;
    static constexpr std::size_t outside = latin + punctuation;
    // In a key, letters are separated from accents, and nothing follows them.
    static constexpr std::uint8_t keyEnd = 0, keySeparator = 1, firstRank = 2;
    static constexpr std::uint8_t plain = 1; ///< the least accents

    /// Up to three elements and a zero.
    using List = std::array<Element, 4>;

    [[nodiscard]] static constexpr std::size_t slotOf(std::uint8_t unit) noexcept { return unit; }
    [[nodiscard]] static constexpr std::size_t slotOf(unichar unit) noexcept {
        if (unit < latin) return unit;
        const std::size_t beyond = static_cast<std::size_t>(unit) - punctuationFrom;
        return beyond < punctuation ? latin + beyond : outside;
    }
    template <class T> [[nodiscard]] Element element(T unit) const noexcept { return elements_[slotOf(unit)]; }

    /// Whether a letter stands at `i` that the unit behind it does not change.
    template <class T> [[nodiscard]] bool standsAlone(const T* units, std::size_t i, std::size_t count) const noexcept {
        return element(units[i]) >= firstLetter && (i + 1 == count || element(units[i + 1]) != unknown);
    }

    template <class T> struct Cursor;
    template <class T> [[nodiscard]] Element next(Cursor<T>& c) const noexcept;
    template <class A, class B> [[nodiscard]] bool compareSlowly(Cursor<A> a, Cursor<B> b, int& order) const noexcept;

    std::array<Element, outside + 1> elements_{};
    std::vector<List> lists_;
};

/// The place of the first difference between words of units; as many as fit where there is none.
template <class Word, class T> std::size_t differenceOfWords(const T* a, const T* b) noexcept {
    Word x, y;
    std::memcpy(&x, a, sizeof x);
    std::memcpy(&y, b, sizeof y);
    return static_cast<std::size_t>(std::countr_zero(static_cast<Word>(x ^ y))) / (8 * sizeof(T));
}

/// How many units the texts begin with in common.
template <class A, class B>
[[gnu::always_inline]] inline std::size_t equalUnits(const A* a, const B* b, std::size_t count) noexcept {
    std::size_t i = 0;
    if constexpr (sizeof(A) == sizeof(B) && std::endian::native == std::endian::little) {
        constexpr std::size_t step = sizeof(std::uint64_t) / sizeof(A), half = step / 2;
        // The last words may lie over those before them.
        if (count >= step) {
            for (; i + step < count; i += step)
                if (const std::size_t k = differenceOfWords<std::uint64_t>(a + i, b + i); k < step) return i + k;
            i = count - step;
            return i + differenceOfWords<std::uint64_t>(a + i, b + i);
        }
        if (count >= half) {
            if (const std::size_t k = differenceOfWords<std::uint32_t>(a, b); k < half) return k;
            i = count - half;
            return i + differenceOfWords<std::uint32_t>(a + i, b + i);
        }
    }
    while (i < count && a[i] == b[i])
        ++i;
    return i;
}

template <class T> struct CollationWeights::Cursor {
    const T* at;
    const T* end;
    const Element* rest; ///< of a list; at its zero, or null, when none is under way
    /// The unit behind the element is not one that could have changed it.
    [[nodiscard]] bool standsAlone(const CollationWeights& w) const noexcept {
        return at == end || w.element(*at) != unknown;
    }
};

// One pair takes ten nanoseconds or so: two calls less are felt.
template <class A, class B>
[[gnu::always_inline]] inline bool CollationWeights::compare(const A* a, std::size_t countA, const B* b,
                                                             std::size_t countB, int& order) const noexcept {
    // Elements stand one below the other as long as the letters are equal, so the last difference of accents is the
    // first one from behind.
    const std::size_t common = countA < countB ? countA : countB;
    std::size_t i = equalUnits(a, b, common);
    // What is equal weighs the same, whatever it is, unless it reaches over into what follows.
    if (i > 0 && element(a[i - 1]) == unknown) return false;
    int accents = 0;
    for (; i < common; ++i) {
        const Element x = element(a[i]), y = element(b[i]);
        if (x == y) {
            if (x == unknown) return false;
            continue;
        }
        if (x < firstLetter || y < firstLetter) break;
        if ((x ^ y) < firstLetter) {
            accents = x < y ? -1 : 1;
            continue;
        }
        if (!standsAlone(a, i, countA) || !standsAlone(b, i, countB)) return false;
        order = x < y ? -1 : 1;
        return true;
    }
    order = accents;
    if (i == countA && i == countB) return true;
    // One text goes on where the other ends, mostly with a letter.
    if (i == countA && standsAlone(b, i, countB)) {
        order = -1;
        return true;
    }
    if (i == countB && standsAlone(a, i, countA)) {
        order = 1;
        return true;
    }
    return compareSlowly(Cursor<A>{a + i, a + countA, nullptr}, Cursor<B>{b + i, b + countB, nullptr}, order);
}

} // namespace libvue::detail
