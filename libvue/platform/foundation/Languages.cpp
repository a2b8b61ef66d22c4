#include <libvue/platform/foundation/Languages.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace libvue {

std::string bareLocale(const char* name) {
    std::string_view s = name ? name : "";
    s = s.substr(0, s.find_first_of(".@"));
    if (s == "C" || s == "POSIX") return {};
    std::string bare(s);
    std::replace(bare.begin(), bare.end(), '-', '_');
    return bare;
}

std::vector<std::string> userLanguages() {
    std::vector<std::string> all;
    auto add = [&](const std::string& name) {
        if (!name.empty() && std::find(all.begin(), all.end(), name) == all.end()) all.push_back(name);
    };
    std::string locale;
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const char* v = std::getenv(variable); v && *v) {
            locale = bareLocale(v);
            break;
        }
    // A list of languages counts only where messages are translated at all.
    if (const char* list = std::getenv("LANGUAGE"); list && *list && !locale.empty()) {
        std::string_view rest = list;
        while (!rest.empty()) {
            auto colon = std::min(rest.find(':'), rest.size());
            add(bareLocale(std::string(rest.substr(0, colon)).c_str()));
            rest.remove_prefix(std::min(colon + 1, rest.size()));
        }
    }
    add(locale);
    if (all.empty()) all.emplace_back("fr");
    return all;
}

} // namespace libvue
