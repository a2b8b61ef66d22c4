#include <libvue/platform/graphics/TextLayoutCache.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include <libvue/platform/backend/Backend.h>

namespace libvue {

namespace {

using backend::TextInput;
using backend::TextParagraph;
using backend::TextRun;

bool same(const TextRun& a, const TextRun& b) {
    return a.range == b.range && a.font == b.font && a.color == b.color && a.background == b.background &&
           a.underline == b.underline && a.strikethrough == b.strikethrough && a.underlineColor == b.underlineColor &&
           a.baselineOffset == b.baselineOffset && a.kern == b.kern && a.attachment == b.attachment &&
           a.shadow == b.shadow;
}

bool same(const TextParagraph& a, const TextParagraph& b) {
    return a.range == b.range && a.alignment == b.alignment && a.lineBreak == b.lineBreak &&
           a.firstLineHeadIndent == b.firstLineHeadIndent && a.headIndent == b.headIndent &&
           a.tailIndent == b.tailIndent && a.lineSpacing == b.lineSpacing && a.paragraphSpacing == b.paragraphSpacing &&
           a.paragraphSpacingBefore == b.paragraphSpacingBefore && a.minimumLineHeight == b.minimumLineHeight &&
           a.maximumLineHeight == b.maximumLineHeight && a.lineHeightMultiple == b.lineHeightMultiple &&
           a.defaultTabInterval == b.defaultTabInterval && a.tabStops == b.tabStops && a.rightToLeft == b.rightToLeft;
}

std::size_t hashOf(const TextInput& input) {
    std::size_t h = std::hash<std::u16string_view>()(input.text);
    const auto mix = [&h](std::size_t v) { h = (h ^ v) * 0x9E3779B97F4A7C15u; };
    mix(std::hash<double>()(input.width));
    mix(std::hash<double>()(input.height));
    for (const TextRun& r : input.runs) {
        mix(std::hash<const void*>()(r.font.get()));
        mix(std::hash<double>()(r.color.red * 256 + r.color.green * 65536 + r.color.blue + r.color.alpha * 0.37));
    }
    for (const TextParagraph& p : input.paragraphs)
        mix(static_cast<std::size_t>(p.alignment) * 8 + static_cast<std::size_t>(p.lineBreak));
    return h;
}

} // namespace

/// Entries in places that are used again, chained by hash and in the order of their last use.
struct TextLayoutCache::Table {
    using Place = std::uint32_t;
    static constexpr Place none = UINT32_MAX;
    static constexpr std::size_t chains = std::bit_ceil(2 * capacity);

    struct Entry {
        std::size_t hash;
        double width, height;
        NSUInteger maximumLines;
        std::vector<TextParagraph> paragraphs;
        std::shared_ptr<const backend::TextLayout> layout; // has the text and its runs
        Place next;                                        // of those of one chain
        Place newer, older;

        [[nodiscard]] bool is(const TextInput& i) const {
            const auto equal = [](const auto& x, const auto& y) { return same(x, y); };
            const auto runs = layout->runs();
            return layout->text() == i.text && width == i.width && height == i.height &&
                   maximumLines == i.maximumLines &&
                   std::equal(runs.begin(), runs.end(), i.runs.begin(), i.runs.end(), equal) &&
                   std::equal(paragraphs.begin(), paragraphs.end(), i.paragraphs.begin(), i.paragraphs.end(), equal);
        }
    };
    std::vector<Entry> entries;
    std::array<Place, chains> first;
    Place newest = none, oldest = none;
    std::size_t hits = 0;

    Table() { first.fill(none); }
    void clear() {
        entries.clear();
        first.fill(none);
        newest = oldest = none;
    }

    Place& chainOf(std::size_t hash) { return first[hash % chains]; }

    void unlink(Place p) {
        const Entry& e = entries[p];
        (e.newer == none ? newest : entries[e.newer].older) = e.older;
        (e.older == none ? oldest : entries[e.older].newer) = e.newer;
    }
    void linkAsNewest(Place p) {
        Entry& e = entries[p];
        e.newer = none;
        e.older = newest;
        (newest == none ? oldest : entries[newest].newer) = p;
        newest = p;
    }
    /// A place for a new entry, in no list: the one that was not used for the longest time where all are taken.
    Place freePlace() {
        if (entries.size() < capacity) {
            entries.emplace_back();
            return static_cast<Place>(entries.size() - 1);
        }
        const Place p = oldest;
        unlink(p);
        Place* at = &chainOf(entries[p].hash);
        while (*at != p)
            at = &entries[*at].next;
        *at = entries[p].next;
        return p;
    }
};

TextLayoutCache::TextLayoutCache() : table_(std::make_unique<Table>()) {}
TextLayoutCache::~TextLayoutCache() = default;

TextLayoutCache& TextLayoutCache::shared() {
    // Never torn down: at the end of the process the engine may be gone before its layouts.
    static TextLayoutCache& cache = *new TextLayoutCache;
    return cache;
}

std::shared_ptr<const backend::TextLayout> TextLayoutCache::layout(const backend::TextInput& input) {
    backend::TextEngine& engine = *backend::Backend::current().text;
    if (input.text.size() > longestText) return engine.layout(input);
    Table& t = *table_;
    const std::size_t hash = hashOf(input);
    for (Table::Place p = t.chainOf(hash); p != Table::none; p = t.entries[p].next) {
        if (t.entries[p].hash != hash || !t.entries[p].is(input)) continue;
        ++t.hits;
        t.unlink(p);
        t.linkAsNewest(p);
        return t.entries[p].layout;
    }
    const Table::Place p = t.freePlace();
    // What goes makes room for what comes.
    t.entries[p].layout = nullptr;
    auto made = engine.layout(input);
    Table::Entry& e = t.entries[p];
    e.layout = std::move(made);
    e.hash = hash;
    e.width = input.width;
    e.height = input.height;
    e.maximumLines = input.maximumLines;
    e.paragraphs.assign(input.paragraphs.begin(), input.paragraphs.end());
    e.next = std::exchange(t.chainOf(hash), p);
    t.linkAsNewest(p);
    return e.layout;
}

void TextLayoutCache::clear() { table_->clear(); }

std::size_t TextLayoutCache::count() const noexcept { return table_->entries.size(); }

std::size_t TextLayoutCache::hits() const noexcept { return table_->hits; }

} // namespace libvue
