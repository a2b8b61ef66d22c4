#include <libvue/platform/foundation/TextSort.h>

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include <libvue/platform/foundation/CollationWeights.h>
#include <libvue/platform/foundation/ObjectSort.h>
#include <libvue/platform/foundation/StringUnits.h>

namespace libvue {

namespace {

/// A text by the word of its key that is looked at.
struct Keyed {
    std::uint64_t word;
    std::uint32_t at;   ///< of the word in the table of all keys
    std::uint32_t text; ///< its index in the list: equal keys keep that order
};

bool before(const Keyed& a, const Keyed& b) noexcept { return a.word != b.word ? a.word < b.word : a.text < b.text; }

/// Byte by byte from the last, each pass stable; bytes that are the same in all words need none.
void sortByDigits(std::span<Keyed> items, std::vector<Keyed>& room) {
    constexpr std::size_t digits = sizeof(std::uint64_t);
    std::array<std::array<std::uint32_t, 256>, digits> counts{};
    for (const Keyed& k : items)
        for (std::size_t d = 0; d < digits; ++d)
            ++counts[d][k.word >> 8 * d & 0xFF];
    if (room.size() < items.size()) room.resize(items.size());
    Keyed* from = items.data();
    Keyed* to = room.data();
    for (std::size_t d = 0; d < digits; ++d) {
        auto& places = counts[d];
        if (places[from->word >> 8 * d & 0xFF] == items.size()) continue;
        std::uint32_t place = 0;
        for (std::uint32_t& p : places)
            place += std::exchange(p, place);
        for (std::size_t i = 0; i < items.size(); ++i)
            to[places[from[i].word >> 8 * d & 0xFF]++] = from[i];
        std::swap(from, to);
    }
    if (from != items.data()) std::copy(from, from + items.size(), items.data());
}

/// Sorts items that have come in the order of their texts and whose keys are the same before these words.
void sortKeyed(std::span<Keyed> items, const std::vector<std::uint64_t>& words, std::vector<Keyed>& room) {
    constexpr std::size_t few = 400;
    struct Part {
        std::size_t begin, end;
    };
    std::vector<Part> parts{{0, items.size()}};
    while (!parts.empty()) {
        const Part part = parts.back();
        parts.pop_back();
        const std::span<Keyed> now = items.subspan(part.begin, part.end - part.begin);
        if (now.size() > few)
            sortByDigits(now, room);
        else
            std::sort(now.begin(), now.end(), before);
        for (std::size_t begin = 0, end; begin < now.size(); begin = end) {
            const std::uint64_t word = now[begin].word;
            for (end = begin + 1; end < now.size() && now[end].word == word;)
                ++end;
            // A word with a zero byte at its end is the key's last.
            if (end - begin == 1 || (word & 0xFF) == 0) continue;
            for (std::size_t i = begin; i < end; ++i)
                now[i].word = words[++now[i].at];
            parts.push_back({part.begin + begin, part.begin + end});
        }
    }
}

NSString::Comparison sortedComparison = nullptr;
TextSort wholeSort = nullptr;

} // namespace

void sortTexts(CollatorRef collator, NSString** texts, NSUInteger count) {
    if (count > std::numeric_limits<std::uint32_t>::max()) {
        std::vector<NSString*> all(texts, texts + count);
        mergeSort(all, [&](NSString* a, NSString* b) { return compareTexts(collator, *a, *b) > 0; });
        std::copy(all.begin(), all.end(), texts);
        return;
    }
    if (count < 2) return;
    const detail::CollationWeights* weights = detail::weightsFor(collator, count * std::bit_width(count));
    std::vector<Keyed> keyed;
    std::vector<std::uint32_t> others;
    std::vector<std::uint64_t> words;
    if (weights) {
        keyed.reserve(count);
        words.reserve(2 * count);
    }
    std::vector<std::uint8_t> room;
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::size_t at = words.size();
        const bool known = weights && at < std::numeric_limits<std::uint32_t>::max() / 2 &&
                           detail::visitUnits(*texts[i], [&](const auto* units, std::size_t n) {
                               return weights->appendKey(units, n, words, room);
                           });
        if (known)
            keyed.push_back({words[at], static_cast<std::uint32_t>(at), i});
        else
            others.push_back(i);
    }
    std::vector<Keyed> space;
    sortKeyed(keyed, words, space);
    mergeSort(others,
              [&](std::uint32_t a, std::uint32_t b) { return compareTexts(collator, *texts[a], *texts[b]) > 0; });

    // The texts without a key go in between; there are few of them or nothing else.
    std::vector<NSString*> sorted;
    sorted.reserve(count);
    auto next = keyed.begin();
    for (const std::uint32_t other : others) {
        const auto place = std::partition_point(next, keyed.end(), [&](const Keyed& k) {
            const SInt32 order = compareTexts(collator, *texts[k.text], *texts[other]);
            return order < 0 || (order == 0 && k.text < other);
        });
        for (; next != place; ++next)
            sorted.push_back(texts[next->text]);
        sorted.push_back(texts[other]);
    }
    for (; next != keyed.end(); ++next)
        sorted.push_back(texts[next->text]);
    std::copy(sorted.begin(), sorted.end(), texts);
}

void installTextSort(NSString::Comparison comparison, TextSort sort) noexcept {
    sortedComparison = comparison;
    wholeSort = sort;
}

TextSort detail::installedTextSort() noexcept {
    const NSString::Comparison inUse = installedTextComparison();
    return inUse && inUse == sortedComparison ? wholeSort : nullptr;
}

} // namespace libvue
