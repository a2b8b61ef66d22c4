#include <cmath>

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

Ref<NSDictionary> tagged(const Ref<NSString>& tag, NSObject* value) {
    return NSDictionary::dictionaryWithObject_forKey(value, tag);
}

Ref<NSString> base64(const void* bytes, NSUInteger length) {
    return NSData::dataWithBytes_length(bytes, length)->base64EncodedStringWithOptions(0);
}

/// UTF-8 has no place for half of a surrogate pair.
bool fitsUTF8(const NSString& s) {
    const unichar* u = s._fastCharacterContents();
    if (!u) return true;
    for (NSUInteger i = 0, n = s.length(); i < n; ++i) {
        if ((u[i] & 0xF800) != 0xD800) continue;
        bool pair = (u[i] & 0xFC00) == 0xD800 && i + 1 < n && (u[i + 1] & 0xFC00) == 0xDC00;
        if (!pair) return false;
        ++i;
    }
    return true;
}

} // namespace

ArchiveWriter::ArchiveWriter(Kind kind) : kind_(kind), top_(freshBody()), body_(top_) {}
ArchiveWriter::~ArchiveWriter() = default;

Ref<NSObject> ArchiveWriter::freshBody() const {
    if (kind_ == Kind::keyed) return NSMutableDictionary::dictionary();
    return NSMutableArray::array();
}

void ArchiveWriter::put(NSObject* value, const NSString* key) {
    if (!body_) raiseNamed(NSInvalidArchiveOperationException, "the archive is finished");
    if (kind_ == Kind::keyed)
        static_cast<NSMutableDictionary*>(body_.get())->setObject_forKey(value, key);
    else
        static_cast<NSMutableArray*>(body_.get())->addObject(value);
}

void ArchiveWriter::putObject(const NSObject* o, Strength strength, const NSString* key) {
    if (!o) return put(NSNull::null(), key);
    auto [at, made] = places_.try_emplace(o, static_cast<NSInteger>(entries_.size()));
    if (made) entries_.push_back({Ref<const NSObject>(o), nullptr});
    Entry& e = entries_[static_cast<std::size_t>(at->second)];
    if (strength == Strength::own && !e.wanted) {
        e.wanted = true;
        due_.push_back(at->second);
    }
    put(tagged(u"o"_ns, NSNumber::numberWithInteger(at->second)), key);
}

void ArchiveWriter::putBool(BOOL v, const NSString* key) { put(NSNumber::numberWithBool(v), key); }
void ArchiveWriter::putInteger(NSInteger v, const NSString* key) { put(NSNumber::numberWithInteger(v), key); }

void ArchiveWriter::putDouble(double v, const NSString* key) {
    if (std::isfinite(v)) return put(NSNumber::numberWithDouble(v), key);
    put(tagged(u"d"_ns, std::isnan(v) ? u"nan"_ns : v < 0 ? u"-inf"_ns : u"inf"_ns), key);
}

void ArchiveWriter::putBytes(const void* bytes, NSUInteger length, const NSString* key) {
    put(tagged(u"b"_ns, base64(bytes, length)), key);
}

Ref<NSObject> ArchiveWriter::written(const NSObject& o, NSCoder& coder) {
    auto* text = dynamic_cast<const NSString*>(&o);
    bool plain = text && !dynamic_cast<const NSMutableString*>(text);
    if (plain && fitsUTF8(*text)) return text->copyWithZone();
    auto entry = NSMutableDictionary::dictionary();
    entry->setObject_forKey(NSString::fromUTF8(plain ? "NSString" : o.isa().name()), u"class"_ns);
    if (text) {
        if (fitsUTF8(*text))
            entry->setObject_forKey(text->copyWithZone(), u"text"_ns);
        else {
            std::string bytes;
            for (NSUInteger i = 0; i < text->length(); ++i) {
                bytes.push_back(static_cast<char>(text->unit(i) & 0xFF));
                bytes.push_back(static_cast<char>(text->unit(i) >> 8));
            }
            entry->setObject_forKey(base64(bytes.data(), bytes.size()), u"units"_ns);
        }
        return entry;
    }
    body_ = freshBody();
    o.encodeWithCoder(coder);
    entry->setObject_forKey(body_, u"values"_ns);
    return entry;
}

Ref<NSData> ArchiveWriter::finish(NSCoder& coder) {
    if (!body_) raiseNamed(NSInvalidArchiveOperationException, "the archive is finished");
    for (std::size_t i = 0; i < due_.size(); ++i) {
        auto place = static_cast<std::size_t>(due_[i]);
        Ref<const NSObject> o = entries_[place].object;
        auto body = written(*o, coder); // may add entries
        entries_[place].written = body;
    }
    body_ = nullptr;
    auto objects = NSMutableArray::array();
    for (const Entry& e : entries_)
        objects->addObject(e.written ? e.written.get() : NSNull::null());
    auto archive =
        NSDictionary::dictionaryWithObjectsAndKeys({{u"format"_ns, u"libvue-archive"_ns},
                                                    {u"version"_ns, NSNumber::numberWithInteger(1)},
                                                    {u"kind"_ns, kind_ == Kind::keyed ? u"keyed"_ns : u"ordered"_ns},
                                                    {u"top"_ns, top_},
                                                    {u"objects"_ns, objects}});
    std::string out;
    if (!JSONDocument::write(archive, JSONDocument::Layout::compact, out))
        raiseNamed(NSInternalInconsistencyException, "an archive cannot be written");
    return NSData::from(out);
}

} // namespace libvue
