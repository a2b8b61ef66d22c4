#include <libvue/platform/foundation/DefaultsFile.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <libvue/platform/foundation/Files.h>
#include <libvue/platform/foundation/JSONDocument.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSDate.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

/// A little less than JSONDocument's own limit, since tags add levels.
constexpr int deepest = JSONDocument::deepest / 2 - 2;

Ref<NSObject> copied(const NSObject* v, int depth);
Ref<NSObject> toJSON(const NSObject* v);
Ref<NSObject> fromJSON(NSObject* v);

Ref<NSObject> copiedDictionary(const NSDictionary& d, int depth) {
    auto all = NSMutableDictionary::dictionary();
    for (auto [key, value] : d) {
        auto stored = dynamic_cast<NSString*>(key) ? copied(value, depth) : nullptr;
        if (!stored) return nullptr;
        all->setObject_forKey(stored, key);
    }
    return all->copyWithZone();
}

Ref<NSObject> copied(const NSObject* v, int depth) {
    if (depth > deepest) return nullptr;
    if (dynamic_cast<const NSString*>(v) || dynamic_cast<const NSNumber*>(v) || dynamic_cast<const NSDate*>(v) ||
        dynamic_cast<const NSData*>(v))
        return v->copyWithZone();
    if (auto* d = dynamic_cast<const NSDictionary*>(v)) return copiedDictionary(*d, depth + 1);
    auto* a = dynamic_cast<const NSArray*>(v);
    if (!a) return nullptr;
    auto all = NSMutableArray::array();
    for (NSObject* o : *a) {
        auto stored = copied(o, depth + 1);
        if (!stored) return nullptr;
        all->addObject(stored);
    }
    return all->copyWithZone();
}

Ref<NSObject> tagged(const Ref<NSString>& tag, NSObject* v) {
    return NSDictionary::dictionaryWithObject_forKey(v, tag);
}

/// The key of a dictionary that looks like a tagged value, or null.
const NSString* tagOf(const NSDictionary& d) {
    if (d.count() != 1) return nullptr;
    auto* key = dynamic_cast<NSString*>((*d.begin()).key);
    return key && key->length() && key->unit(0) == u'$' ? key : nullptr;
}

Ref<NSObject> toJSON(const NSObject* v) {
    if (auto* data = dynamic_cast<const NSData*>(v))
        return tagged(u"$data"_ns, data->base64EncodedStringWithOptions(0));
    if (auto* date = dynamic_cast<const NSDate*>(v))
        return tagged(u"$date"_ns, toJSON(NSNumber::numberWithDouble(date->timeIntervalSinceReferenceDate())));
    if (auto* n = dynamic_cast<const NSNumber*>(v); n && n->isFloating() && !std::isfinite(n->doubleValue()))
        return tagged(u"$number"_ns, n->stringValue()->lowercaseString());
    if (auto* a = dynamic_cast<const NSArray*>(v)) {
        auto all = NSMutableArray::array();
        for (NSObject* o : *a)
            all->addObject(toJSON(o));
        return all;
    }
    if (auto* d = dynamic_cast<const NSDictionary*>(v)) {
        auto all = NSMutableDictionary::dictionary();
        for (auto [key, value] : *d)
            all->setObject_forKey(toJSON(value), key);
        return tagOf(*d) ? tagged(u"$dictionary"_ns, all) : Ref<NSObject>(all);
    }
    return Ref<NSObject>(const_cast<NSObject*>(v));
}

Ref<NSObject> numberFromTag(const NSString& text) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    if (text.isEqualTo(u"nan")) return NSNumber::numberWithDouble(std::numeric_limits<double>::quiet_NaN());
    if (text.isEqualTo(u"inf")) return NSNumber::numberWithDouble(infinity);
    if (text.isEqualTo(u"-inf")) return NSNumber::numberWithDouble(-infinity);
    return nullptr;
}

/// Null where one of the values makes no sense.
Ref<NSObject> dictionaryFromJSON(const NSDictionary& d) {
    auto all = NSMutableDictionary::dictionary();
    for (auto [key, value] : d) {
        auto read = fromJSON(value);
        if (!read) return nullptr;
        all->setObject_forKey(read, key);
    }
    return all->copyWithZone();
}

Ref<NSObject> fromTag(const NSString& tag, NSObject* v) {
    if (tag.isEqualTo(u"$dictionary")) {
        auto* d = as<NSDictionary>(v);
        return d ? dictionaryFromJSON(*d) : nullptr;
    }
    if (tag.isEqualTo(u"$date")) {
        auto seconds = fromJSON(v);
        auto* n = as<NSNumber>(seconds);
        return n ? NSDate::dateWithTimeIntervalSinceReferenceDate(n->doubleValue()) : nullptr;
    }
    auto* text = as<NSString>(v);
    if (!text) return nullptr;
    if (tag.isEqualTo(u"$data")) return NSData::initWithBase64EncodedString_options(text, 0);
    if (tag.isEqualTo(u"$number")) return numberFromTag(*text);
    return nullptr;
}

Ref<NSObject> fromJSON(NSObject* v) {
    if (as<NSString>(v) || as<NSNumber>(v)) return v;
    if (auto* d = as<NSDictionary>(v)) {
        if (auto* tag = tagOf(*d)) return fromTag(*tag, (*d->begin()).value);
        return dictionaryFromJSON(*d);
    }
    auto* a = as<NSArray>(v);
    if (!a) return nullptr;
    auto all = NSMutableArray::array();
    for (NSObject* o : *a) {
        auto read = fromJSON(o);
        if (!read) return nullptr;
        all->addObject(read);
    }
    return all->copyWithZone();
}

std::string reasonOf(int code) { return std::generic_category().message(code); }

} // namespace

Ref<NSObject> defaultsValue(const NSObject* value) { return copied(value, 0); }

DefaultsFileState readDefaultsFile(const std::string& path, NSMutableDictionary& values, std::string& fault) {
    std::string bytes;
    if (!detail::readFile(path, bytes)) {
        if (errno == ENOENT || errno == ENOTDIR) return DefaultsFileState::missing;
        fault = reasonOf(errno);
        return DefaultsFileState::damaged;
    }
    auto root = JSONDocument::read(bytes, &fault);
    auto* all = as<NSDictionary>(root);
    if (!all) {
        if (root) fault = "it holds no object";
        return DefaultsFileState::damaged;
    }
    for (auto [key, value] : *all) {
        if (auto read = fromJSON(value))
            values.setObject_forKey(read, key);
        else
            NSLog(u"The setting %@ of %s makes no sense and is left out."_ns.get(), key, path.c_str());
    }
    return DefaultsFileState::read;
}

bool writeDefaultsFile(const std::string& path, const NSDictionary& values, std::string& fault) {
    // The outermost dictionary is never tagged: its keys are the settings' names.
    auto all = NSMutableDictionary::dictionary();
    for (auto [key, value] : values)
        all->setObject_forKey(toJSON(value), key);
    std::string bytes;
    if (!JSONDocument::write(all, JSONDocument::Layout::indented, bytes)) {
        fault = "the values cannot be written as JSON";
        return false;
    }
    bytes.push_back('\n');

    std::error_code code;
    auto folder = std::filesystem::path(detail::fileMeantBy(path)).parent_path();
    if (!folder.empty()) std::filesystem::create_directories(folder, code);
    constexpr mode_t ownersAlone = 0600;
    if (code || !detail::replaceFile(path, bytes, ownersAlone)) {
        fault = reasonOf(code ? code.value() : errno);
        return false;
    }
    // The new name is on the disk as well.
    const detail::OpenFile d(open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (d.isOpen()) (void)fsync(d.descriptor());
    return true;
}

bool setDefaultsFileAside(const std::string& path, std::string& kept) {
    std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char date[32];
    std::strftime(date, sizeof date, "%Y%m%d-%H%M%S", &local);
    constexpr int mostTries = 1000;
    for (int i = 0; i < mostTries; ++i) {
        kept = path + ".damaged-" + date;
        if (i) kept.append("-").append(std::to_string(i));
        // A link fails where the name is taken; a rename would take it over.
        if (link(path.c_str(), kept.c_str()) == 0) return unlink(path.c_str()) == 0;
        if (errno == EEXIST) continue;
        struct stat taken {};
        if (lstat(kept.c_str(), &taken) == 0) continue;
        return std::rename(path.c_str(), kept.c_str()) == 0; // a file system without links
    }
    return false;
}

} // namespace libvue
