#include <libvue/platform/graphics/TextLayoutCache.h>

#include <algorithm>
#include <functional>
#include <list>
#include <unordered_map>

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

struct Entry {
    std::size_t hash;
    std::u16string text;
    std::vector<TextRun> runs;
    std::vector<TextParagraph> paragraphs;
    double width, height;
    NSUInteger maximumLines;
    std::shared_ptr<const backend::TextLayout> layout;

    [[nodiscard]] bool is(const TextInput& i) const {
        const auto equal = [](const auto& x, const auto& y) { return same(x, y); };
        return text == i.text && width == i.width && height == i.height && maximumLines == i.maximumLines &&
               std::equal(runs.begin(), runs.end(), i.runs.begin(), i.runs.end(), equal) &&
               std::equal(paragraphs.begin(), paragraphs.end(), i.paragraphs.begin(), i.paragraphs.end(), equal);
    }
};

} // namespace

struct TextLayoutCache::Table {
    std::list<Entry> entries; // the one used last in front
    std::unordered_multimap<std::size_t, std::list<Entry>::iterator> byHash;
    std::size_t hits = 0;

    void dropLast() {
        const auto last = std::prev(entries.end());
        const auto [low, high] = byHash.equal_range(last->hash);
        const auto found = std::find_if(low, high, [&](const auto& e) { return e.second == last; });
        byHash.erase(found);
        entries.erase(last);
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
    const auto [low, high] = t.byHash.equal_range(hash);
    for (auto i = low; i != high; ++i) {
        if (!i->second->is(input)) continue;
        ++t.hits;
        t.entries.splice(t.entries.begin(), t.entries, i->second);
        return i->second->layout;
    }
    auto made = engine.layout(input);
    if (t.entries.size() >= capacity) t.dropLast();
    t.entries.push_front({hash,
                          std::u16string(input.text),
                          {input.runs.begin(), input.runs.end()},
                          {input.paragraphs.begin(), input.paragraphs.end()},
                          input.width,
                          input.height,
                          input.maximumLines,
                          made});
    t.byHash.emplace(hash, t.entries.begin());
    return made;
}

void TextLayoutCache::clear() {
    table_->byHash.clear();
    table_->entries.clear();
}

std::size_t TextLayoutCache::count() const noexcept { return table_->entries.size(); }

std::size_t TextLayoutCache::hits() const noexcept { return table_->hits; }

} // namespace libvue
