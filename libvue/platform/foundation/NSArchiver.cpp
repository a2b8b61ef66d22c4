#include <libvue/platform/foundation/NSArchiver.h>

#include <libvue/platform/foundation/Archive.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

class NSArchiver::Writer : public ArchiveWriter {
public:
    using ArchiveWriter::ArchiveWriter;
};

void NSArchiver::describe(ClassDescription<NSArchiver, NSCoder>&) {}
NSArchiver::NSArchiver() : writer_(std::make_unique<Writer>(ArchiveWriter::Kind::ordered)) {}
NSArchiver::~NSArchiver() = default;

Ref<NSData> NSArchiver::archivedDataWithRootObject(const NSObject* root) {
    auto archiver = make<NSArchiver>();
    archiver->encodeObject(root);
    return archiver->encodedData();
}

Ref<NSData> NSArchiver::encodedData() { return writer_->finish(*this); }
void NSArchiver::encodeObject(const NSObject* o) { writer_->putObject(o, ArchiveWriter::Strength::own, nullptr); }
void NSArchiver::encodeConditionalObject(const NSObject* o) {
    writer_->putObject(o, ArchiveWriter::Strength::conditional, nullptr);
}
void NSArchiver::encodeBool(BOOL v) { writer_->putBool(v, nullptr); }
void NSArchiver::encodeInteger(NSInteger v) { writer_->putInteger(v, nullptr); }
void NSArchiver::encodeDouble(double v) { writer_->putDouble(v, nullptr); }
void NSArchiver::encodeBytes_length(const void* bytes, NSUInteger length) { writer_->putBytes(bytes, length, nullptr); }

class NSUnarchiver::Reader : public ArchiveReader {
public:
    using ArchiveReader::ArchiveReader;
};

void NSUnarchiver::describe(ClassDescription<NSUnarchiver, NSCoder>&) {}
NSUnarchiver::NSUnarchiver(const NSData* data)
    : reader_(std::make_unique<Reader>(ArchiveWriter::Kind::ordered, data,
                                       [this](const std::string& reason) { fail(reason.c_str()); })) {}
NSUnarchiver::~NSUnarchiver() = default;

Ref<NSObject> NSUnarchiver::unarchiveObjectWithData(const NSData* data, Ref<NSError>* error) {
    auto unarchiver = make<NSUnarchiver>(data);
    auto root = unarchiver->decodeObject();
    if (error) *error = unarchiver->error();
    return unarchiver->error() ? nullptr : root;
}

void NSUnarchiver::beginDecoding(NSObject* self) { reader_->beginDecoding(self); }
Ref<NSObject> NSUnarchiver::decodeObject() { return reader_->object(reader_->value(nullptr), *this); }
BOOL NSUnarchiver::decodeBool() { return reader_->boolean(reader_->value(nullptr)); }
NSInteger NSUnarchiver::decodeInteger() { return reader_->integer(reader_->value(nullptr)); }
double NSUnarchiver::decodeDouble() { return reader_->number(reader_->value(nullptr)); }
Ref<NSData> NSUnarchiver::decodeBytes() { return reader_->bytes(reader_->value(nullptr)); }

} // namespace libvue
