#include <libvue/platform/foundation/NSKeyedArchiver.h>

#include <libvue/platform/foundation/Archive.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {
constexpr std::u16string_view rootKey = u"root";
} // namespace

class NSKeyedArchiver::Writer : public ArchiveWriter {
public:
    using ArchiveWriter::ArchiveWriter;
};

void NSKeyedArchiver::describe(ClassDescription<NSKeyedArchiver, NSCoder>&) {}
NSKeyedArchiver::NSKeyedArchiver() : writer_(std::make_unique<Writer>(ArchiveWriter::Kind::keyed)) {}
NSKeyedArchiver::~NSKeyedArchiver() = default;

Ref<NSData> NSKeyedArchiver::archivedDataWithRootObject(const NSObject* root) {
    auto archiver = make<NSKeyedArchiver>();
    archiver->encodeObject_forKey(root, NSString::from(rootKey));
    return archiver->encodedData();
}

BOOL NSKeyedArchiver::archiveRootObject_toFile(const NSObject* root, const NSString* path) {
    return archivedDataWithRootObject(root)->writeToFile_atomically(path, YES);
}

Ref<NSData> NSKeyedArchiver::encodedData() { return writer_->finish(*this); }

void NSKeyedArchiver::encodeObject_forKey(const NSObject* o, const NSString* key) {
    writer_->putObject(o, ArchiveWriter::Strength::own, key);
}
void NSKeyedArchiver::encodeConditionalObject_forKey(const NSObject* o, const NSString* key) {
    writer_->putObject(o, ArchiveWriter::Strength::conditional, key);
}
void NSKeyedArchiver::encodeBool_forKey(BOOL v, const NSString* key) { writer_->putBool(v, key); }
void NSKeyedArchiver::encodeInteger_forKey(NSInteger v, const NSString* key) { writer_->putInteger(v, key); }
void NSKeyedArchiver::encodeDouble_forKey(double v, const NSString* key) { writer_->putDouble(v, key); }
void NSKeyedArchiver::encodeFloat_forKey(float v, const NSString* key) {
    writer_->putDouble(static_cast<double>(v), key);
}
void NSKeyedArchiver::encodeBytes_length_forKey(const void* bytes, NSUInteger length, const NSString* key) {
    writer_->putBytes(bytes, length, key);
}

class NSKeyedUnarchiver::Reader : public ArchiveReader {
public:
    using ArchiveReader::ArchiveReader;
};

void NSKeyedUnarchiver::describe(ClassDescription<NSKeyedUnarchiver, NSCoder>&) {}
NSKeyedUnarchiver::NSKeyedUnarchiver(const NSData* data)
    : reader_(std::make_unique<Reader>(ArchiveWriter::Kind::keyed, data,
                                       [this](const std::string& reason) { fail(reason.c_str()); })) {}
NSKeyedUnarchiver::~NSKeyedUnarchiver() = default;

Ref<NSObject> NSKeyedUnarchiver::unarchiveObjectWithData(const NSData* data, Ref<NSError>* error) {
    auto unarchiver = make<NSKeyedUnarchiver>(data);
    auto root = unarchiver->decodeObject_forKey(NSString::from(rootKey));
    if (error) *error = unarchiver->error();
    return unarchiver->error() ? nullptr : root;
}

Ref<NSObject> NSKeyedUnarchiver::unarchiveObjectWithFile(const NSString* path, Ref<NSError>* error) {
    Ref<NSError> fault;
    auto data = NSData::dataWithContentsOfFile_options_error(path, 0, &fault);
    if (data) return unarchiveObjectWithData(data, error);
    if (error) *error = fault;
    return nullptr;
}

void NSKeyedUnarchiver::setClass_forClassName(const Class* c, const NSString* name) { reader_->setClass(c, name); }
void NSKeyedUnarchiver::beginDecoding(NSObject* self) { reader_->beginDecoding(self); }
BOOL NSKeyedUnarchiver::containsValueForKey(const NSString* key) const { return reader_->contains(key); }
Ref<NSObject> NSKeyedUnarchiver::decodeObject_forKey(const NSString* key) {
    return reader_->object(reader_->value(key), *this);
}
BOOL NSKeyedUnarchiver::decodeBoolForKey(const NSString* key) { return reader_->boolean(reader_->value(key)); }
NSInteger NSKeyedUnarchiver::decodeIntegerForKey(const NSString* key) { return reader_->integer(reader_->value(key)); }
double NSKeyedUnarchiver::decodeDoubleForKey(const NSString* key) { return reader_->number(reader_->value(key)); }
Ref<NSData> NSKeyedUnarchiver::decodeBytesForKey(const NSString* key) { return reader_->bytes(reader_->value(key)); }

} // namespace libvue
