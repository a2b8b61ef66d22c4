#pragma once

#include <memory>

#include <libvue/platform/foundation/NSCoder.h>

namespace libvue {

/// Writes an archive in which each object's values stand in the order of writing, without names.
class LIBVUE_API NSArchiver : public NSCoder {
public:
    static void describe(ClassDescription<NSArchiver, NSCoder>& c);
    NSArchiver();
    ~NSArchiver() override;

    [[nodiscard]] static Ref<NSData> archivedDataWithRootObject(const NSObject* root);
    [[nodiscard]] Ref<NSData> encodedData();

    [[nodiscard]] BOOL allowsKeyedCoding() const noexcept override { return NO; }
    void encodeObject(const NSObject* o) override;
    void encodeConditionalObject(const NSObject* o) override;
    void encodeBool(BOOL v) override;
    void encodeInteger(NSInteger v) override;
    void encodeDouble(double v) override;
    void encodeBytes_length(const void* bytes, NSUInteger length) override;

private:
    class Writer;
    std::unique_ptr<Writer> writer_;
};

/// Reads what NSArchiver wrote. Reading in another order than that of writing, a damaged archive and an unknown class
/// fill `error()`; from then on everything reads as null and zero.
class LIBVUE_API NSUnarchiver : public NSCoder {
public:
    static void describe(ClassDescription<NSUnarchiver, NSCoder>& c);
    explicit NSUnarchiver(const NSData* data);
    ~NSUnarchiver() override;

    [[nodiscard]] static Ref<NSObject> unarchiveObjectWithData(const NSData* data, Ref<NSError>* error = nullptr);

    [[nodiscard]] BOOL allowsKeyedCoding() const noexcept override { return NO; }
    void beginDecoding(NSObject* self) override;
    [[nodiscard]] Ref<NSObject> decodeObject() override;
    [[nodiscard]] BOOL decodeBool() override;
    [[nodiscard]] NSInteger decodeInteger() override;
    [[nodiscard]] double decodeDouble() override;
    [[nodiscard]] Ref<NSData> decodeBytes() override;

private:
    class Reader;
    std::unique_ptr<Reader> reader_;
};

} // namespace libvue
