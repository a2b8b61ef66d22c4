#pragma once

#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include <libvue/platform/foundation/NSCoder.h>

namespace libvue {

/// What archivers of both kinds share. An archive is a table of objects, each with the body of its values, by name or
/// in order, in which another object is the number of its place. No object's body is written inside another's, so that
/// any graph is written without recursion.
class ArchiveWriter {
public:
    enum class Kind : std::uint8_t { keyed, ordered };
    enum class Strength : std::uint8_t { own, conditional };

    explicit ArchiveWriter(Kind kind);
    ~ArchiveWriter();

    // Values of the body at hand; keys are null in an ordered archive.

    void putObject(const NSObject* o, Strength strength, const NSString* key);
    void putBool(BOOL v, const NSString* key);
    void putInteger(NSInteger v, const NSString* key);
    void putDouble(double v, const NSString* key);
    void putBytes(const void* bytes, NSUInteger length, const NSString* key);

    /// Writes the bodies of all objects that are wanted, and answers the archive.
    Ref<NSData> finish(NSCoder& coder);

private:
    struct Entry {
        Ref<const NSObject> object; // kept, so that no other can take its address
        Ref<NSObject> written;
        bool wanted = false;
    };
    void put(NSObject* value, const NSString* key);
    Ref<NSObject> freshBody() const;
    Ref<NSObject> written(const NSObject& o, NSCoder& coder);

    Kind kind_;
    std::vector<Entry> entries_;
    std::unordered_map<const NSObject*, NSInteger> places_;
    std::vector<NSInteger> due_;
    Ref<NSObject> top_;
    Ref<NSObject> body_;
};

/// Reads an archive; nothing in it is believed. The first fault is told to `fail`, and from then on all values are
/// absent.
class ArchiveReader {
public:
    using Fail = std::function<void(const std::string& reason)>;
    ArchiveReader(ArchiveWriter::Kind kind, const NSData* data, Fail fail);
    ~ArchiveReader();

    void beginDecoding(NSObject* self);
    void setClass(const Class* c, const NSString* name);

    [[nodiscard]] bool contains(const NSString* key) const;
    /// The next value where `key` is null. Null where it is absent; in an ordered archive that is a fault.
    Ref<NSObject> value(const NSString* key);
    Ref<NSObject> object(NSObject* value, NSCoder& coder);
    bool boolean(NSObject* value);
    NSInteger integer(NSObject* value);
    double number(NSObject* value);
    Ref<NSData> bytes(NSObject* value);

private:
    enum class Stage : std::uint8_t { fresh, open, done };
    struct Entry {
        Stage stage = Stage::fresh;
        NSObject* self = nullptr; // while open, as the object has announced itself
        Ref<NSObject> object;
    };
    struct Body {
        Ref<NSObject> values;
        NSUInteger next = 0;
        NSInteger place = -1;
    };
    void fault(const std::string& reason);
    NSObject* tagged(NSObject* value, const char16_t* tag) const;
    Ref<NSObject> made(NSInteger place, NSCoder& coder);
    Ref<NSObject> text(const NSDictionary& entry);

    ArchiveWriter::Kind kind_;
    Fail fail_;
    bool failed_ = false;
    Ref<NSArray> objects_;
    std::vector<Entry> entries_;
    std::vector<Body> bodies_;
    std::unordered_map<std::string, const Class*> classes_;
};

} // namespace libvue
