#include <libvue/platform/graphics/FontName.h>

#include <algorithm>
#include <array>
#include <unordered_map>
#include <utility>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/graphics/NSFont.h>

namespace libvue {

namespace {

std::string withoutSpaces(std::string_view s) {
    std::string out(s);
    std::erase(out, ' ');
    return out;
}

/// Installed families by their names without spaces; only those that have some.
std::unordered_map<std::string, std::string>& spacedFamilies() {
    static std::unordered_map<std::string, std::string> table;
    return table;
}

const std::string* spacedFamily(const std::string& name) {
    auto& table = spacedFamilies();
    if (table.empty()) {
        for (const std::string& family : backend::Backend::current().text->families())
            if (std::string bare = withoutSpaces(family); bare != family) table.emplace(std::move(bare), family);
        table.emplace("LucidaGrande", "Lucida Grande");
        table.emplace("TimesNewRoman", "Times New Roman");
    }
    const auto found = table.find(name);
    return found == table.end() ? nullptr : &found->second;
}

/// The traits that the suffix spells out; false where a part of it is no trait.
bool takeTraits(std::string_view suffix, NSUInteger& traits) {
    static constexpr std::array<std::pair<std::string_view, NSUInteger>, 11> words{{
        {"Bold", NSBoldFontMask},
        {"Heavy", NSBoldFontMask},
        {"Black", NSBoldFontMask},
        {"Italic", NSItalicFontMask},
        {"Oblique", NSItalicFontMask},
        {"Condensed", NSCondensedFontMask},
        {"Regular", 0},
        {"Roman", 0},
        {"Medium", 0},
        {"MT", 0},
        {" ", 0},
    }};
    if (suffix.empty()) return false;
    while (!suffix.empty()) {
        const auto word = std::find_if(words.begin(), words.end(),
                                       [&](const auto& w) { return suffix.substr(0, w.first.size()) == w.first; });
        if (word == words.end()) return false;
        traits |= word->second;
        suffix.remove_prefix(word->first.size());
    }
    return true;
}

/// Names that were taken apart: drawing code asks for the same few again and again.
std::unordered_map<std::string, FontName>& parsedNames() {
    static std::unordered_map<std::string, FontName> table;
    return table;
}

FontName parse(std::string_view name) {
    FontName out{std::string(name), 0};
    if (const auto hyphen = name.rfind('-'); hyphen != std::string_view::npos && hyphen > 0) {
        NSUInteger traits = 0;
        if (takeTraits(name.substr(hyphen + 1), traits)) out = {std::string(name.substr(0, hyphen)), traits};
    }
    for (const std::string_view ending : {"MT", "PS"})
        if (out.family.size() > ending.size() + 2 && out.family.ends_with(ending))
            out.family.resize(out.family.size() - ending.size());
    if (const std::string* spaced = spacedFamily(out.family)) out.family = *spaced;
    return out;
}

} // namespace

const FontName& parseFontName(const std::string& name) {
    auto& table = parsedNames();
    if (const auto found = table.find(name); found != table.end()) return found->second;
    constexpr std::size_t mostNames = 256;
    if (table.size() >= mostNames) table.clear();
    return table.emplace(name, parse(name)).first->second;
}

std::string fullFontName(std::string_view family, NSUInteger traits) {
    std::string name = withoutSpaces(family);
    std::string suffix;
    if (traits & NSCondensedFontMask) suffix += "Condensed";
    if (traits & NSBoldFontMask) suffix += "Bold";
    if (traits & NSItalicFontMask) suffix += "Italic";
    return suffix.empty() ? name : name + "-" + suffix;
}

} // namespace libvue
