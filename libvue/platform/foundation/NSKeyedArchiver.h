#pragma once

#include <memory>

#include <libvue/platform/foundation/NSCoder.h>

namespace libvue {

/// Writes an archive in which each object's values have names. The archive is JSON text; an object that is met again,
/// or that leads back to itself, is written once.
class LIBVUE_API NSKeyedArchiver : public NSCoder {
public:
    static void describe(ClassDescription<NSKeyedArchiver, NSCoder>& c);
    NSKeyedArchiver();
    ~NSKeyedArchiver() override;

    [[nodiscard]] static Ref<NSData> archivedDataWithRootObject(const NSObject* root);
    static BOOL archiveRootObject_toFile(const NSObject* root, const NSString* path);
    /// Writes what is still open and answers the archive; nothing can be encoded afterwards.
    [[nodiscard]] Ref<NSData> encodedData();

    [[nodiscard]] BOOL allowsKeyedCoding() const noexcept override { return YES; }
    void encodeObject_forKey(const NSObject* o, const NSString* key) override;
    void encodeConditionalObject_forKey(const NSObject* o, const NSString* key) override;
    void encodeBool_forKey(BOOL v, const NSString* key) override;
    void encodeInteger_forKey(NSInteger v, const NSString* key) override;
    void encodeDouble_forKey(double v, const NSString* key) override;
    void encodeFloat_forKey(float v, const NSString* key) override;
    void encodeBytes_length_forKey(const void* bytes, NSUInteger length, const NSString* key) override;

private:
    class Writer;
    std::unique_ptr<Writer> writer_;
};

/// Reads what NSKeyedArchiver wrote. Damaged archives and unknown classes give null and fill `error()`.
class LIBVUE_API NSKeyedUnarchiver : public NSCoder {
public:
    static void describe(ClassDescription<NSKeyedUnarchiver, NSCoder>& c);
    explicit NSKeyedUnarchiver(const NSData* data);
    ~NSKeyedUnarchiver() override;

    /// Null where the archive is damaged or its root is of an unknown class; `error` (may be null) says why.
    [[nodiscard]] static Ref<NSObject> unarchiveObjectWithData(const NSData* data, Ref<NSError>* error = nullptr);
    [[nodiscard]] static Ref<NSObject> unarchiveObjectWithFile(const NSString* path, Ref<NSError>* error = nullptr);
    /// Reads objects archived as `name` as instances of `c`.
    void setClass_forClassName(const Class* c, const NSString* name);

    [[nodiscard]] BOOL allowsKeyedCoding() const noexcept override { return YES; }
    void beginDecoding(NSObject* self) override;
    [[nodiscard]] BOOL containsValueForKey(const NSString* key) const override;
    [[nodiscard]] Ref<NSObject> decodeObject_forKey(const NSString* key) override;
    [[nodiscard]] BOOL decodeBoolForKey(const NSString* key) override;
    [[nodiscard]] NSInteger decodeIntegerForKey(const NSString* key) override;
    [[nodiscard]] double decodeDoubleForKey(const NSString* key) override;
    [[nodiscard]] Ref<NSData> decodeBytesForKey(const NSString* key) override;

private:
    class Reader;
    std::unique_ptr<Reader> reader_;
};

} // namespace libvue
