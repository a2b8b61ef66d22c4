#pragma once

#include <functional>

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// What an object writes itself to and is read from. A keyed coder names each value; an unkeyed one has them in order.
///
/// Reading never raises: a value that is absent or of another type reads as null, zero or an empty rectangle, and the
/// coder remembers the first failure in `error()`. Each base implementation raises NSInvalidArgumentException: the
/// coder at hand is of the other kind.
class LIBVUE_API NSCoder : public NSObject {
public:
    static void describe(ClassDescription<NSCoder>& c);

    [[nodiscard]] virtual BOOL allowsKeyedCoding() const noexcept = 0;
    /// A constructor from a coder calls this with itself before it decodes anything, so that what it holds may refer
    /// back to it. It must not throw afterwards. Until then, references to the object read as null.
    virtual void beginDecoding(NSObject* self);
    /// The first failure of a reading coder, or null.
    [[nodiscard]] NSError* error() const noexcept;

    // Keyed. A key that comes again replaces its value.

    virtual void encodeObject_forKey(const NSObject* o, const NSString* key);
    /// Written only if something else in the archive writes the object for its own sake; reads as null otherwise.
    virtual void encodeConditionalObject_forKey(const NSObject* o, const NSString* key);
    virtual void encodeBool_forKey(BOOL v, const NSString* key);
    virtual void encodeInteger_forKey(NSInteger v, const NSString* key);
    virtual void encodeDouble_forKey(double v, const NSString* key);
    virtual void encodeFloat_forKey(float v, const NSString* key);
    virtual void encodeBytes_length_forKey(const void* bytes, NSUInteger length, const NSString* key);
    void encodeInt_forKey(int v, const NSString* key) { encodeInteger_forKey(v, key); }
    void encodeInt32_forKey(std::int32_t v, const NSString* key) { encodeInteger_forKey(v, key); }
    void encodeInt64_forKey(std::int64_t v, const NSString* key) { encodeInteger_forKey(v, key); }
    void encodePoint_forKey(NSPoint v, const NSString* key);
    void encodeSize_forKey(NSSize v, const NSString* key);
    void encodeRect_forKey(const NSRect& v, const NSString* key);
    void encodeRange_forKey(NSRange v, const NSString* key);

    [[nodiscard]] virtual BOOL containsValueForKey(const NSString* key) const;
    [[nodiscard]] virtual Ref<NSObject> decodeObject_forKey(const NSString* key);
    /// The object as a `T`, null where it is none.
    template <class T> [[nodiscard]] Ref<T> decodeObjectOf_forKey(const NSString* key) {
        return Ref<T>(dynamic_cast<T*>(decodeObject_forKey(key).get()));
    }
    [[nodiscard]] Ref<NSObject> decodeObjectForKey(const NSString* key) { return decodeObject_forKey(key); }
    [[nodiscard]] virtual BOOL decodeBoolForKey(const NSString* key);
    [[nodiscard]] virtual NSInteger decodeIntegerForKey(const NSString* key);
    [[nodiscard]] virtual double decodeDoubleForKey(const NSString* key);
    [[nodiscard]] virtual Ref<NSData> decodeBytesForKey(const NSString* key);
    [[nodiscard]] float decodeFloatForKey(const NSString* key) { return static_cast<float>(decodeDoubleForKey(key)); }
    /// Held to the type's limits.
    [[nodiscard]] int decodeIntForKey(const NSString* key);
    [[nodiscard]] std::int32_t decodeInt32ForKey(const NSString* key) { return decodeIntForKey(key); }
    [[nodiscard]] std::int64_t decodeInt64ForKey(const NSString* key) { return decodeIntegerForKey(key); }
    [[nodiscard]] NSPoint decodePointForKey(const NSString* key);
    [[nodiscard]] NSSize decodeSizeForKey(const NSString* key);
    [[nodiscard]] NSRect decodeRectForKey(const NSString* key);
    [[nodiscard]] NSRange decodeRangeForKey(const NSString* key);

    // Unkeyed: read back in the order of writing.

    virtual void encodeObject(const NSObject* o);
    virtual void encodeConditionalObject(const NSObject* o);
    virtual void encodeBool(BOOL v);
    virtual void encodeInteger(NSInteger v);
    virtual void encodeDouble(double v);
    virtual void encodeBytes_length(const void* bytes, NSUInteger length);
    void encodePoint(NSPoint v);
    void encodeSize(NSSize v);
    void encodeRect(const NSRect& v);
    /// `type` is one letter: c C s S i I l L q Q f d B @; anything else raises NSInvalidArgumentException.
    void encodeValueOfObjCType_at(const char* type, const void* at);

    [[nodiscard]] virtual Ref<NSObject> decodeObject();
    template <class T> [[nodiscard]] Ref<T> decodeObjectOf() { return Ref<T>(dynamic_cast<T*>(decodeObject().get())); }
    [[nodiscard]] virtual BOOL decodeBool();
    [[nodiscard]] virtual NSInteger decodeInteger();
    [[nodiscard]] virtual double decodeDouble();
    [[nodiscard]] virtual Ref<NSData> decodeBytes();
    [[nodiscard]] NSPoint decodePoint();
    [[nodiscard]] NSSize decodeSize();
    [[nodiscard]] NSRect decodeRect();
    /// An object comes as a Ref<NSObject>* for "@".
    void decodeValueOfObjCType_at(const char* type, void* at);

protected:
    NSCoder() noexcept;
    ~NSCoder() override;
    void fail(const NSString* reason);
    void fail(const char* reason);

private:
    [[noreturn]] void raiseWrongKind(const char* operation) const;
    Ref<NSError> error_;
};

/// The elements of a collection, in order: "NS.object.0" and so on, or their number and then each.
LIBVUE_API void encodeElements(NSCoder& coder, NSUInteger count, const std::function<NSObject*(NSUInteger)>& element);
/// Gives the elements to `take`, one after the other; null for one that could not be read.
LIBVUE_API void decodeElements(NSCoder& coder, const std::function<void(NSObject*)>& take);

} // namespace libvue
