#include <libvue/platform/foundation/CollationWeights.h>

#include <algorithm>
#include <map>

namespace libvue::detail {

namespace {

/// The accents of a letter as they are compared: from the last one to the letter's own.
using Accents = std::vector<std::uint32_t>;
struct Letter {
    std::uint32_t primary;
    Accents accents;
};

/// False where an accent stands without a letter.
bool letters(const std::vector<CollationWeights::Weight>& weights, std::vector<Letter>& out) {
    for (const auto& w : weights) {
        if (w.primary)
            out.push_back({w.primary, {w.secondary}});
        else if (!w.secondary)
            continue;
        else if (out.empty())
            return false;
        else
            out.back().accents.insert(out.back().accents.begin(), w.secondary);
    }
    return true;
}

bool beginsWith(const Accents& longer, const Accents& shorter) {
    return longer.size() > shorter.size() && std::equal(shorter.begin(), shorter.end(), longer.begin());
}

/// Numbers the keys of a sorted table from `first` on; false where a byte does not do.
template <class K> bool number(std::map<K, std::uint8_t>& table, unsigned first) {
    if (table.empty() || table.size() + first > 256) return false;
    for (auto& [key, rank] : table)
        rank = static_cast<std::uint8_t>(first++);
    return true;
}

std::uint64_t bigEndian(const std::uint8_t* bytes) noexcept {
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < sizeof word; ++i)
        word = word << 8 | bytes[i];
    return word;
}

} // namespace

bool CollationWeights::fill(const std::vector<Character>& characters) {
    elements_.fill(unknown);
    lists_.clear();
    std::vector<std::pair<unichar, std::vector<Letter>>> known;
    std::map<std::uint32_t, std::uint8_t> primaries;
    std::map<Accents, std::uint8_t> accents;
    for (const Character& c : characters) {
        std::vector<Letter> of;
        if (!covers(c.unit) || !letters(c.weights, of) || of.size() >= List().size()) continue;
        // Accents are compared letter by letter, which takes that none of them go on where others end.
        const auto mixes = [&](const Letter& l) {
            return std::any_of(accents.begin(), accents.end(), [&](const auto& other) {
                return beginsWith(other.first, l.accents) || beginsWith(l.accents, other.first);
            });
        };
        if (std::any_of(of.begin(), of.end(), mixes)) continue;
        for (const Letter& l : of) {
            primaries.emplace(l.primary, 0);
            accents.emplace(l.accents, 0);
        }
        known.emplace_back(c.unit, std::move(of));
    }
    if (!number(primaries, firstRank) || !number(accents, plain)) return false;
    for (const auto& [unit, of] : known) {
        List list{};
        for (std::size_t i = 0; i < of.size(); ++i)
            list[i] = static_cast<Element>(primaries[of[i].primary] << 8 | accents[of[i].accents]);
        Element& element = elements_[slotOf(unit)];
        if (of.size() <= 1)
            element = of.empty() ? ignored : list[0];
        else {
            auto place = std::find(lists_.begin(), lists_.end(), list);
            if (place == lists_.end()) place = lists_.insert(place, list);
            const auto index = static_cast<std::size_t>(place - lists_.begin()) + firstList;
            if (index < firstLetter) element = static_cast<Element>(index);
        }
    }
    return true;
}

/// The next element that has a letter, `unknown`, or `ignored` at the end.
template <class T> CollationWeights::Element CollationWeights::next(Cursor<T>& c) const noexcept {
    if (c.rest && *c.rest) return *c.rest++;
    while (c.at != c.end) {
        const Element e = element(*c.at++);
        if (e >= firstLetter || e == unknown) return e;
        if (e == ignored) continue;
        c.rest = lists_[e - firstList].data();
        return *c.rest++;
    }
    return ignored;
}

template <class A, class B> bool CollationWeights::compareSlowly(Cursor<A> a, Cursor<B> b, int& order) const noexcept {
    for (;;) {
        const Element x = next(a), y = next(b);
        if (x == unknown || y == unknown) return false;
        if (x == y) {
            if (x == ignored) return true;
            continue;
        }
        if (x >= firstLetter && y >= firstLetter && (x ^ y) < firstLetter) {
            order = x < y ? -1 : 1;
            continue;
        }
        if (!a.standsAlone(*this) || !b.standsAlone(*this)) return false;
        order = x < y ? -1 : 1;
        return true;
    }
}

template <class T>
bool CollationWeights::appendKey(const T* units, std::size_t count, std::vector<std::uint64_t>& words,
                                 std::vector<std::uint8_t>& room) const {
    constexpr std::size_t wordSize = sizeof(std::uint64_t);
    // The key, and behind it the accents until the last one is known.
    const std::size_t most = (List().size() - 1) * count, longest = 2 * most + 1 + wordSize;
    if (room.size() < longest + most) room.resize(longest + most);
    std::uint8_t* end = room.data();
    std::uint8_t* const firstAccent = end + longest;
    std::uint8_t* accent = firstAccent;
    const auto put = [&](Element e) {
        *end++ = static_cast<std::uint8_t>(e >> 8);
        *accent++ = static_cast<std::uint8_t>(e);
    };
    for (std::size_t i = 0; i < count; ++i) {
        const Element e = element(units[i]);
        if (e >= firstLetter)
            put(e);
        else if (e == unknown)
            return false;
        else if (e != ignored)
            for (const Element* rest = lists_[e - firstList].data(); *rest; ++rest)
                put(*rest);
    }
    *end++ = keySeparator;
    // The least accents at the end of a key order as nothing does.
    const std::uint8_t* least = firstAccent;
    while (least != accent && *least == plain)
        ++least;
    while (accent != least)
        *end++ = *--accent;
    std::fill_n(end, wordSize, keyEnd);
    const std::size_t size = static_cast<std::size_t>(end - room.data()) / wordSize + 1;
    for (std::size_t i = 0; i < size; ++i)
        words.push_back(bigEndian(room.data() + i * wordSize));
    return true;
}

template bool CollationWeights::compareSlowly(Cursor<std::uint8_t>, Cursor<std::uint8_t>, int&) const noexcept;
template bool CollationWeights::compareSlowly(Cursor<std::uint8_t>, Cursor<unichar>, int&) const noexcept;
template bool CollationWeights::compareSlowly(Cursor<unichar>, Cursor<std::uint8_t>, int&) const noexcept;
template bool CollationWeights::compareSlowly(Cursor<unichar>, Cursor<unichar>, int&) const noexcept;
template bool CollationWeights::appendKey(const std::uint8_t*, std::size_t, std::vector<std::uint64_t>&,
                                          std::vector<std::uint8_t>&) const;
template bool CollationWeights::appendKey(const unichar*, std::size_t, std::vector<std::uint64_t>&,
                                          std::vector<std::uint8_t>&) const;

} // namespace libvue::detail
