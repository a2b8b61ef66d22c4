#pragma once

#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSData.h>

namespace libvue {

/// Writes values by their keys, or, where the coder has no keys, in the order of the calls: one list for both kinds of
/// archive.
class CoderWriter {
public:
    explicit CoderWriter(NSCoder& coder) : coder_(coder), keyed_(coder.allowsKeyedCoding()) {}

    void object(const NSObject* v, const NSString* key) {
        keyed_ ? coder_.encodeObject_forKey(v, key) : coder_.encodeObject(v);
    }
    void flag(BOOL v, const NSString* key) { keyed_ ? coder_.encodeBool_forKey(v, key) : coder_.encodeBool(v); }
    void integer(NSInteger v, const NSString* key) {
        keyed_ ? coder_.encodeInteger_forKey(v, key) : coder_.encodeInteger(v);
    }
    void real(double v, const NSString* key) { keyed_ ? coder_.encodeDouble_forKey(v, key) : coder_.encodeDouble(v); }
    void size(NSSize v, const NSString* key) { keyed_ ? coder_.encodeSize_forKey(v, key) : coder_.encodeSize(v); }
    void rect(const NSRect& v, const NSString* key) {
        keyed_ ? coder_.encodeRect_forKey(v, key) : coder_.encodeRect(v);
    }
    void bytes(const void* v, NSUInteger length, const NSString* key) {
        keyed_ ? coder_.encodeBytes_length_forKey(v, length, key) : coder_.encodeBytes_length(v, length);
    }

private:
    NSCoder& coder_;
    bool keyed_;
};

/// Reads what a CoderWriter has written; the calls come in the same order.
class CoderReader {
public:
    /// For the constructor of `self` from a coder, before it decodes anything.
    CoderReader(NSCoder& coder, NSObject* self) : coder_(coder), keyed_(coder.allowsKeyedCoding()) {
        coder.beginDecoding(self);
    }

    /// Null where it is no `T`.
    template <class T> [[nodiscard]] Ref<T> object(const NSString* key) {
        return keyed_ ? coder_.decodeObjectOf_forKey<T>(key) : coder_.decodeObjectOf<T>();
    }
    [[nodiscard]] BOOL flag(const NSString* key) { return keyed_ ? coder_.decodeBoolForKey(key) : coder_.decodeBool(); }
    [[nodiscard]] NSInteger integer(const NSString* key) {
        return keyed_ ? coder_.decodeIntegerForKey(key) : coder_.decodeInteger();
    }
    [[nodiscard]] double real(const NSString* key) {
        return keyed_ ? coder_.decodeDoubleForKey(key) : coder_.decodeDouble();
    }
    [[nodiscard]] NSSize size(const NSString* key) {
        return keyed_ ? coder_.decodeSizeForKey(key) : coder_.decodeSize();
    }
    [[nodiscard]] NSRect rect(const NSString* key) {
        return keyed_ ? coder_.decodeRectForKey(key) : coder_.decodeRect();
    }
    [[nodiscard]] Ref<NSData> bytes(const NSString* key) {
        return keyed_ ? coder_.decodeBytesForKey(key) : coder_.decodeBytes();
    }

private:
    NSCoder& coder_;
    bool keyed_;
};

} // namespace libvue
