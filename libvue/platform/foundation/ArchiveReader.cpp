#include <cmath>
#include <limits>

#include <libvue/platform/foundation/Archive.h>
#include <libvue/platform/foundation/JSONDocument.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSNull.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

/// An object is made inside the one that first asks for it.
constexpr std::size_t deepest = 400;

} // namespace

ArchiveReader::ArchiveReader(ArchiveWriter::Kind kind, const NSData* data, Fail fail)
    : kind_(kind), fail_(std::move(fail)) {
    std::string reason;
    auto root = data ? JSONDocument::read(data->view(), &reason) : nullptr;
    auto* archive = as<NSDictionary>(root);
    auto* format = archive ? archive->get<NSString>(u"format"_ns) : nullptr;
    if (!format || !format->isEqualTo(u"libvue-archive")) {
        fault("this is no archive: " + reason);
        return;
    }
    auto* version = archive->get<NSNumber>(u"version"_ns);
    if (!version || version->integerValue() != 1) {
        fault("an archive of another version");
        return;
    }
    auto* kindName = archive->get<NSString>(u"kind"_ns);
    bool keyed = kind == ArchiveWriter::Kind::keyed;
    if (!kindName || !kindName->isEqualTo(keyed ? u"keyed" : u"ordered")) {
        fault("an archive of the other kind");
        return;
    }
    NSObject* top = archive->objectForKey(u"top"_ns);
    objects_ = archive->get<NSArray>(u"objects"_ns);
    if (!objects_ || (keyed ? !as<NSDictionary>(top) : !as<NSArray>(top))) {
        objects_ = nullptr;
        fault("an archive without objects");
        return;
    }
    entries_.resize(objects_->count());
    bodies_.push_back({Ref<NSObject>(top)});
}

ArchiveReader::~ArchiveReader() = default;

void ArchiveReader::fault(const std::string& reason) {
    if (failed_) return;
    failed_ = true;
    fail_(reason);
}

void ArchiveReader::setClass(const Class* c, const NSString* name) {
    if (name) classes_[name->utf8()] = c;
}

void ArchiveReader::beginDecoding(NSObject* self) {
    if (bodies_.empty() || bodies_.back().place < 0) return;
    Entry& e = entries_[static_cast<std::size_t>(bodies_.back().place)];
    if (e.stage == Stage::open && !e.self) e.self = self;
}

bool ArchiveReader::contains(const NSString* key) const {
    if (failed_ || !key) return false;
    return static_cast<NSDictionary*>(bodies_.back().values.get())->objectForKey(key) != nullptr;
}

Ref<NSObject> ArchiveReader::value(const NSString* key) {
    if (failed_) return nullptr;
    Body& b = bodies_.back();
    if (kind_ == ArchiveWriter::Kind::keyed)
        return key ? static_cast<NSDictionary*>(b.values.get())->objectForKey(key) : nullptr;
    auto* list = static_cast<NSArray*>(b.values.get());
    if (b.next < list->count()) return list->objectAtIndex(b.next++);
    fault("more values are read than were written");
    return nullptr;
}

NSObject* ArchiveReader::tagged(NSObject* value, const char16_t* tag) const {
    auto* d = as<NSDictionary>(value);
    if (!d || d->count() != 1) return nullptr;
    auto [key, held] = *d->begin();
    auto* name = as<NSString>(key);
    return name && name->isEqualTo(tag) ? held : nullptr;
}

Ref<NSObject> ArchiveReader::object(NSObject* value, NSCoder& coder) {
    if (!value || value == NSNull::null()) return nullptr;
    auto* place = as<NSNumber>(tagged(value, u"o"));
    if (!place || place->isBoolean() || place->isFloating()) {
        fault("a value is read as an object and is none");
        return nullptr;
    }
    NSInteger i = place->integerValue();
    if (i < 0 || static_cast<std::size_t>(i) >= entries_.size()) {
        fault("an object is not in the archive");
        return nullptr;
    }
    return made(i, coder);
}

Ref<NSObject> ArchiveReader::text(const NSDictionary& entry) {
    if (auto* s = entry.get<NSString>(u"text"_ns)) return NSMutableString::stringWithString(s);
    auto* coded = entry.get<NSString>(u"units"_ns);
    auto bytes = coded ? NSData::initWithBase64EncodedString_options(coded, 0) : nullptr;
    if (!bytes) return nullptr;
    std::string_view v = bytes->view();
    std::u16string units;
    for (std::size_t i = 0; i + 1 < v.size(); i += 2)
        units.push_back(
            static_cast<char16_t>(static_cast<unsigned char>(v[i]) | static_cast<unsigned char>(v[i + 1]) << 8));
    return NSMutableString::stringWithString(NSString::from(units));
}

Ref<NSObject> ArchiveReader::made(NSInteger place, NSCoder& coder) {
    auto i = static_cast<std::size_t>(place);
    if (entries_[i].stage == Stage::done) return entries_[i].object;
    if (entries_[i].stage == Stage::open) return Ref<NSObject>(entries_[i].self);
    if (bodies_.size() > deepest) {
        fault("the objects are nested too deeply");
        return nullptr;
    }
    auto finish = [&](Ref<NSObject> o) {
        entries_[i] = {Stage::done, nullptr, o};
        return o;
    };

    NSObject* held = objects_->objectAtIndex(i);
    if (held == NSNull::null() || as<NSString>(held)) return finish(held == NSNull::null() ? nullptr : held);
    auto* entry = as<NSDictionary>(held);
    auto* name = entry ? entry->get<NSString>(u"class"_ns) : nullptr;
    if (!name) {
        fault("an object without a class");
        return nullptr;
    }
    bool plain = name->isEqualTo(u"NSString");
    if (plain || name->isEqualTo(u"NSMutableString")) {
        auto o = text(*entry);
        if (!o) fault("a text without its letters");
        return finish(o && plain ? o->copyWithZone() : o);
    }

    auto chosen = classes_.find(name->utf8());
    const Class* c = chosen != classes_.end() ? chosen->second : NSClassFromString(name);
    if (!c || !c->hasInitWithCoder()) {
        fault((c ? "the class cannot be read from an archive: " : "an unknown class: ") + name->utf8());
        return nullptr;
    }
    NSObject* values = entry->objectForKey(u"values"_ns);
    if (kind_ == ArchiveWriter::Kind::keyed ? !as<NSDictionary>(values) : !as<NSArray>(values)) {
        fault("an object without values");
        return nullptr;
    }
    entries_[i].stage = Stage::open;
    bodies_.push_back({Ref<NSObject>(values), 0, place});
    Ref<NSObject> o;
    try {
        o = c->initWithCoder(coder);
    } catch (const NSExceptionRaised& e) {
        fault(c->name() + " raised: " + e.what());
    }
    bodies_.pop_back();
    return finish(o);
}

bool ArchiveReader::boolean(NSObject* value) {
    if (!value) return false;
    auto* n = as<NSNumber>(value);
    if (n && (n->isBoolean() || kind_ == ArchiveWriter::Kind::keyed)) return n->boolValue();
    fault("a value is read as a boolean and is none");
    return false;
}

NSInteger ArchiveReader::integer(NSObject* value) {
    if (!value) return 0;
    auto* n = as<NSNumber>(value);
    bool exact = n && !n->isBoolean() && !n->isFloating();
    if (n && (exact || kind_ == ArchiveWriter::Kind::keyed)) return n->integerValue();
    fault("a value is read as an integer and is none");
    return 0;
}

double ArchiveReader::number(NSObject* value) {
    if (!value) return 0;
    if (auto* special = as<NSString>(tagged(value, u"d"))) {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        if (special->isEqualTo(u"nan")) return std::numeric_limits<double>::quiet_NaN();
        if (special->isEqualTo(u"inf")) return infinity;
        if (special->isEqualTo(u"-inf")) return -infinity;
    }
    auto* n = as<NSNumber>(value);
    if (n && (n->isFloating() || kind_ == ArchiveWriter::Kind::keyed)) return n->doubleValue();
    fault("a value is read as a number and is none");
    return 0;
}

Ref<NSData> ArchiveReader::bytes(NSObject* value) {
    if (!value || value == NSNull::null()) return nullptr;
    auto* coded = as<NSString>(tagged(value, u"b"));
    auto data = coded ? NSData::initWithBase64EncodedString_options(coded, 0) : nullptr;
    if (!data) fault("a value is read as bytes and is none");
    return data;
}

} // namespace libvue
