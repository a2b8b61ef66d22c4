#include <libvue/platform/foundation/Selector.h>

#include <algorithm>
#include <cstring>
#include <unordered_map>

#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

using Table = std::unordered_map<std::string_view, SEL>;

Table& table() {
    static auto& t = *new Table;
    return t;
}

/// The name's UTF-8, without a copy where the text is stored as ASCII.
template <class Use> SEL withBytes(const NSString* name, Use use) {
    if (const std::uint8_t* bytes = name->latin1Contents()) {
        const std::string_view view(reinterpret_cast<const char*>(bytes), name->length());
        if (std::all_of(view.begin(), view.end(), [](char c) { return (c & 0x80) == 0; })) return use(view);
    }
    return use(std::string_view(name->utf8()));
}

} // namespace

SEL findSelector(std::string_view name) {
    const auto found = table().find(name);
    return found == table().end() ? nullptr : found->second;
}

SEL findSelector(const NSString* name) {
    if (!name) return nullptr;
    return withBytes(name, [](std::string_view bytes) { return findSelector(bytes); });
}

SEL sel(std::string_view name) {
    if (SEL known = findSelector(name)) return known;
    char* kept = new char[name.size() + 1];
    std::memcpy(kept, name.data(), name.size());
    kept[name.size()] = 0;
    SEL made = new Selector{std::string_view(kept, name.size())};
    table().emplace(made->name, made);
    return made;
}

Ref<NSString> NSStringFromSelector(SEL selector) { return selector ? NSString::fromUTF8(selector->name) : nullptr; }

SEL NSSelectorFromString(NSString* name) {
    if (!name) return nullptr;
    return withBytes(name, [](std::string_view bytes) { return sel(bytes); });
}

} // namespace libvue
