#include <libvue/platform/foundation/NSCoder.h>

#include <algorithm>
#include <limits>
#include <string>

#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

const ClassRegistration<NSCoder> registration;

Ref<NSString> elementKey(NSUInteger i) { return NSString::fromLatin1("NS.object." + std::to_string(i)); }

} // namespace

NSCoder::NSCoder() noexcept = default;
NSCoder::~NSCoder() = default;

void NSCoder::describe(ClassDescription<NSCoder>&) {}

void NSCoder::raiseWrongKind(const char* operation) const {
    raiseNamed(NSInvalidArgumentException, std::string(operation) + ": the coder " +
                                               (allowsKeyedCoding() ? "wants keys" : "takes no keys") +
                                               " or works in the other direction");
}

void NSCoder::beginDecoding(NSObject*) {}
NSError* NSCoder::error() const noexcept { return error_; }

void NSCoder::fail(const NSString* reason) {
    if (error_) return;
    constexpr NSInteger corrupt = 4864;
    auto text = reason ? reason->copyWithZone() : Ref<NSObject>(NSString::string());
    error_ = NSError::errorWithDomain_code_userInfo(
        NSCocoaErrorDomain, corrupt, NSDictionary::dictionaryWithObject_forKey(text, NSLocalizedDescriptionKey.get()));
}
void NSCoder::fail(const char* reason) { fail(NSString::fromUTF8(reason)); }

void NSCoder::encodeObject_forKey(const NSObject*, const NSString*) { raiseWrongKind("encodeObject:forKey:"); }
void NSCoder::encodeConditionalObject_forKey(const NSObject*, const NSString*) {
    raiseWrongKind("encodeConditionalObject:forKey:");
}
void NSCoder::encodeBool_forKey(BOOL, const NSString*) { raiseWrongKind("encodeBool:forKey:"); }
void NSCoder::encodeInteger_forKey(NSInteger, const NSString*) { raiseWrongKind("encodeInteger:forKey:"); }
void NSCoder::encodeDouble_forKey(double, const NSString*) { raiseWrongKind("encodeDouble:forKey:"); }
void NSCoder::encodeFloat_forKey(float, const NSString*) { raiseWrongKind("encodeFloat:forKey:"); }
void NSCoder::encodeBytes_length_forKey(const void*, NSUInteger, const NSString*) {
    raiseWrongKind("encodeBytes:length:forKey:");
}
void NSCoder::encodePoint_forKey(NSPoint v, const NSString* key) { encodeObject_forKey(NSStringFromPoint(v), key); }
void NSCoder::encodeSize_forKey(NSSize v, const NSString* key) { encodeObject_forKey(NSStringFromSize(v), key); }
void NSCoder::encodeRect_forKey(const NSRect& v, const NSString* key) { encodeObject_forKey(NSStringFromRect(v), key); }
void NSCoder::encodeRange_forKey(NSRange v, const NSString* key) { encodeObject_forKey(NSStringFromRange(v), key); }

BOOL NSCoder::containsValueForKey(const NSString*) const { raiseWrongKind("containsValueForKey:"); }
Ref<NSObject> NSCoder::decodeObject_forKey(const NSString*) { raiseWrongKind("decodeObjectForKey:"); }
BOOL NSCoder::decodeBoolForKey(const NSString*) { raiseWrongKind("decodeBoolForKey:"); }
NSInteger NSCoder::decodeIntegerForKey(const NSString*) { raiseWrongKind("decodeIntegerForKey:"); }
double NSCoder::decodeDoubleForKey(const NSString*) { raiseWrongKind("decodeDoubleForKey:"); }
Ref<NSData> NSCoder::decodeBytesForKey(const NSString*) { raiseWrongKind("decodeBytesForKey:"); }

int NSCoder::decodeIntForKey(const NSString* key) {
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<NSInteger>(decodeIntegerForKey(key), Limits::min(), Limits::max()));
}
NSPoint NSCoder::decodePointForKey(const NSString* key) {
    return NSPointFromString(decodeObjectOf_forKey<NSString>(key));
}
NSSize NSCoder::decodeSizeForKey(const NSString* key) { return NSSizeFromString(decodeObjectOf_forKey<NSString>(key)); }
NSRect NSCoder::decodeRectForKey(const NSString* key) { return NSRectFromString(decodeObjectOf_forKey<NSString>(key)); }
NSRange NSCoder::decodeRangeForKey(const NSString* key) {
    return NSRangeFromString(decodeObjectOf_forKey<NSString>(key));
}

void NSCoder::encodeObject(const NSObject*) { raiseWrongKind("encodeObject:"); }
void NSCoder::encodeConditionalObject(const NSObject*) { raiseWrongKind("encodeConditionalObject:"); }
void NSCoder::encodeBool(BOOL) { raiseWrongKind("encodeBool:"); }
void NSCoder::encodeInteger(NSInteger) { raiseWrongKind("encodeInteger:"); }
void NSCoder::encodeDouble(double) { raiseWrongKind("encodeDouble:"); }
void NSCoder::encodeBytes_length(const void*, NSUInteger) { raiseWrongKind("encodeBytes:length:"); }
void NSCoder::encodePoint(NSPoint v) { encodeObject(NSStringFromPoint(v)); }
void NSCoder::encodeSize(NSSize v) { encodeObject(NSStringFromSize(v)); }
void NSCoder::encodeRect(const NSRect& v) { encodeObject(NSStringFromRect(v)); }

Ref<NSObject> NSCoder::decodeObject() { raiseWrongKind("decodeObject"); }
BOOL NSCoder::decodeBool() { raiseWrongKind("decodeBool"); }
NSInteger NSCoder::decodeInteger() { raiseWrongKind("decodeInteger"); }
double NSCoder::decodeDouble() { raiseWrongKind("decodeDouble"); }
Ref<NSData> NSCoder::decodeBytes() { raiseWrongKind("decodeBytes"); }
NSPoint NSCoder::decodePoint() { return NSPointFromString(decodeObjectOf<NSString>()); }
NSSize NSCoder::decodeSize() { return NSSizeFromString(decodeObjectOf<NSString>()); }
NSRect NSCoder::decodeRect() { return NSRectFromString(decodeObjectOf<NSString>()); }

void NSCoder::encodeValueOfObjCType_at(const char* type, const void* at) {
    switch (type && at && type[0] && !type[1] ? type[0] : '\0') {
    case 'c':
        return encodeInteger(*static_cast<const signed char*>(at));
    case 'C':
        return encodeInteger(*static_cast<const unsigned char*>(at));
    case 's':
        return encodeInteger(*static_cast<const short*>(at));
    case 'S':
        return encodeInteger(*static_cast<const unsigned short*>(at));
    case 'i':
        return encodeInteger(*static_cast<const int*>(at));
    case 'I':
        return encodeInteger(*static_cast<const unsigned*>(at));
    case 'l':
    case 'q':
        return encodeInteger(*static_cast<const NSInteger*>(at));
    case 'L':
    case 'Q':
        return encodeInteger(static_cast<NSInteger>(*static_cast<const NSUInteger*>(at)));
    case 'f':
        return encodeDouble(static_cast<double>(*static_cast<const float*>(at)));
    case 'd':
        return encodeDouble(*static_cast<const double*>(at));
    case 'B':
        return encodeBool(*static_cast<const bool*>(at));
    case '@':
        return encodeObject(*static_cast<NSObject* const*>(at));
    default:
        raiseNamed(NSInvalidArgumentException, "encodeValueOfObjCType:at: an unknown type");
    }
}

void NSCoder::decodeValueOfObjCType_at(const char* type, void* at) {
    switch (type && at && type[0] && !type[1] ? type[0] : '\0') {
    case 'c':
        *static_cast<signed char*>(at) = static_cast<signed char>(decodeInteger());
        break;
    case 'C':
        *static_cast<unsigned char*>(at) = static_cast<unsigned char>(decodeInteger());
        break;
    case 's':
        *static_cast<short*>(at) = static_cast<short>(decodeInteger());
        break;
    case 'S':
        *static_cast<unsigned short*>(at) = static_cast<unsigned short>(decodeInteger());
        break;
    case 'i':
        *static_cast<int*>(at) = static_cast<int>(decodeInteger());
        break;
    case 'I':
        *static_cast<unsigned*>(at) = static_cast<unsigned>(decodeInteger());
        break;
    case 'l':
    case 'q':
        *static_cast<NSInteger*>(at) = decodeInteger();
        break;
    case 'L':
    case 'Q':
        *static_cast<NSUInteger*>(at) = static_cast<NSUInteger>(decodeInteger());
        break;
    case 'f':
        *static_cast<float*>(at) = static_cast<float>(decodeDouble());
        break;
    case 'd':
        *static_cast<double*>(at) = decodeDouble();
        break;
    case 'B':
        *static_cast<bool*>(at) = decodeBool();
        break;
    case '@':
        *static_cast<Ref<NSObject>*>(at) = decodeObject();
        break;
    default:
        raiseNamed(NSInvalidArgumentException, "decodeValueOfObjCType:at: an unknown type");
    }
}

void encodeElements(NSCoder& coder, NSUInteger count, const std::function<NSObject*(NSUInteger)>& element) {
    bool keyed = coder.allowsKeyedCoding();
    if (!keyed) coder.encodeInteger(static_cast<NSInteger>(count));
    for (NSUInteger i = 0; i < count; ++i)
        keyed ? coder.encodeObject_forKey(element(i), elementKey(i)) : coder.encodeObject(element(i));
}

void decodeElements(NSCoder& coder, const std::function<void(NSObject*)>& take) {
    // The number of elements is never believed: reading ends where the archive does.
    if (coder.allowsKeyedCoding()) {
        for (NSUInteger i = 0; !coder.error(); ++i) {
            auto key = elementKey(i);
            if (!coder.containsValueForKey(key)) return;
            take(coder.decodeObject_forKey(key));
        }
        return;
    }
    for (NSInteger left = coder.decodeInteger(); left > 0 && !coder.error(); --left)
        take(coder.decodeObject());
}

} // namespace libvue
