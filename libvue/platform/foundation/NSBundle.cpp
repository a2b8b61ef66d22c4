#include <libvue/platform/foundation/NSBundle.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <libvue/platform/foundation/JSONDocument.h>
#include <libvue/platform/foundation/Languages.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/NSURL.h>
#include <libvue/platform/foundation/StringsTable.h>

namespace libvue {

namespace {

namespace fs = std::filesystem;

bool isThere(const fs::path& p) {
    std::error_code code;
    return fs::exists(p, code);
}

bool isFolder(const fs::path& p) {
    std::error_code code;
    return fs::is_directory(p, code);
}

constexpr std::string_view translations = ".lproj";

const ClassRegistration<NSBundle> registration;

} // namespace

void NSBundle::describe(ClassDescription<NSBundle>&) {}

NSBundle::NSBundle(const NSString* path, const NSString* resources)
    : path_(NSString::stringWithString(path)),
      resources_(NSString::stringWithString(resources)),
      tables_(NSMutableDictionary::dictionary()) {}

NSBundle::~NSBundle() = default;

NSDictionary* NSBundle::infoDictionary() {
    if (info_) return info_;
    info_ = NSDictionary::dictionary();
    fs::path file = fs::path(resources_->utf8()) / "Info.json";
    if (!isThere(file)) return info_;
    auto data = NSData::dataWithContentsOfFile(NSString::fromUTF8(file.string()));
    std::string fault = "it cannot be read";
    auto root = data ? JSONDocument::read(data->view(), &fault) : nullptr;
    if (auto* d = as<NSDictionary>(root))
        info_ = d;
    else
        NSLog(u"%s makes no sense: %s"_ns.get(), file.c_str(), fault.c_str());
    return info_;
}

NSObject* NSBundle::objectForInfoDictionaryKey(const NSString* key) { return infoDictionary()->objectForKey(key); }
NSString* NSBundle::bundleIdentifier() { return infoDictionary()->get<NSString>(u"CFBundleIdentifier"_ns); }

Ref<NSString> NSBundle::pathForResource_ofType(const NSString* name, const NSString* type) {
    return pathForResource_ofType_inDirectory(name, type, nullptr);
}

Ref<NSString> NSBundle::pathForResource_ofType_inDirectory(const NSString* name, const NSString* type,
                                                           const NSString* directory) {
    if (!name || name->length() == 0) return nullptr;
    std::string file = name->utf8();
    if (type && type->length()) file += (type->unit(0) == u'.' ? "" : ".") + type->utf8();
    fs::path within = directory ? directory->utf8() : std::string();
    fs::path root = resources_->utf8();
    auto languages = preferredLocalizations();
    for (NSString* language : languages->as<NSString>()) {
        fs::path p = root / (language->utf8() + std::string(translations)) / within / file;
        if (isThere(p)) return NSString::fromUTF8(p.string());
    }
    fs::path p = root / within / file;
    return isThere(p) ? NSString::fromUTF8(p.string()) : nullptr;
}

Ref<NSURL> NSBundle::URLForResource_withExtension(const NSString* name, const NSString* extension) {
    auto path = pathForResource_ofType(name, extension);
    return path ? NSURL::fileURLWithPath(path) : nullptr;
}

Ref<NSArray> NSBundle::pathsForResourcesOfType_inDirectory(const NSString* type, const NSString* directory) {
    std::string extension = type && type->length() ? (type->unit(0) == u'.' ? "" : ".") + type->utf8() : "";
    fs::path within = directory ? directory->utf8() : std::string();
    fs::path root = resources_->utf8();
    std::vector<fs::path> folders;
    auto languages = preferredLocalizations();
    for (NSString* language : languages->as<NSString>())
        folders.push_back(root / (language->utf8() + std::string(translations)) / within);
    folders.push_back(root / within);
    std::vector<std::string> found;
    for (const auto& folder : folders) {
        std::error_code code;
        std::vector<std::string> here;
        for (fs::directory_iterator i(folder, code), end; !code && i != end; i.increment(code))
            if (extension.empty() || i->path().extension() == extension) here.push_back(i->path().string());
        std::sort(here.begin(), here.end());
        found.insert(found.end(), here.begin(), here.end());
    }
    auto all = NSMutableArray::array();
    for (const auto& p : found)
        all->addObject(NSString::fromUTF8(p));
    return all;
}

Ref<NSArray> NSBundle::localizations() const {
    std::vector<std::string> names;
    std::error_code code;
    for (fs::directory_iterator i(resources_->utf8(), code), end; !code && i != end; i.increment(code))
        if (i->path().extension() == translations) names.push_back(i->path().stem().string());
    std::sort(names.begin(), names.end());
    auto all = NSMutableArray::array();
    for (const auto& n : names)
        all->addObject(NSString::fromUTF8(n));
    return all;
}

Ref<NSArray> NSBundle::preferredLocalizations() const {
    auto all = NSMutableArray::array();
    fs::path root = resources_->utf8();
    auto add = [&](const std::string& language) {
        if (!isFolder(root / (language + std::string(translations)))) return;
        auto name = NSString::fromUTF8(language);
        if (!all->containsObject(name)) all->addObject(name);
    };
    auto addWithParents = [&](const std::string& language) {
        add(language);
        auto underscore = language.find('_');
        if (underscore == std::string::npos) return;
        add(language.substr(0, underscore) + "-" + language.substr(underscore + 1));
        add(language.substr(0, underscore));
    };
    // Behind French no other language is asked: a text that has no French translation is French as it stands in the
    // code.
    for (const auto& language : userLanguages()) {
        addWithParents(language);
        if (language.compare(0, 2, "fr") == 0 && (language.size() == 2 || language[2] == '_')) return all;
    }
    add("fr");
    return all;
}

NSDictionary* NSBundle::table(const NSString* name) {
    if (auto* known = tables_->get<NSDictionary>(name)) return known;
    auto merged = NSMutableDictionary::dictionary();
    fs::path root = resources_->utf8();
    std::string file = name->utf8() + ".strings";
    auto read = [&](const fs::path& p) {
        std::string fault;
        readStringsFile(p.string(), *merged, fault);
        if (!fault.empty()) NSLog(u"%s: %s"_ns.get(), p.c_str(), fault.c_str());
    };
    auto languages = preferredLocalizations();
    for (NSString* language : languages->as<NSString>())
        read(root / (language->utf8() + std::string(translations)) / file);
    read(root / file);
    tables_->setObject_forKey(merged, name);
    return tables_->get<NSDictionary>(name);
}

Ref<NSString> NSBundle::localizedStringForKey_value_table(const NSString* key, const NSString* value,
                                                          const NSString* tableName) {
    if (!key) return value ? NSString::stringWithString(value) : NSString::string();
    Ref<NSString> name = tableName && tableName->length() ? NSString::stringWithString(tableName) : u"Localizable"_ns;
    if (auto* found = table(name)->get<NSString>(key)) return found;
    return NSString::stringWithString(value && value->length() ? value : key);
}

Ref<NSString> NSBundle::description() const {
    return NSString::stringWithFormat(u"NSBundle <%@>"_ns.get(), path_.get());
}

Ref<NSString> NSLocalizedString(const NSString* key, const NSString*) {
    return NSBundle::mainBundle()->localizedStringForKey_value_table(key, nullptr, nullptr);
}

} // namespace libvue
