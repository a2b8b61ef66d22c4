#include <libvue/platform/foundation/Boxing.h>

#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/NSValue.h>

namespace libvue {

Ref<NSObject> boxedBool(BOOL v) { return NSNumber::numberWithBool(v); }
Ref<NSObject> boxedInteger(NSInteger v) { return NSNumber::numberWithInteger(v); }
Ref<NSObject> boxedUnsigned(NSUInteger v) { return NSNumber::numberWithUnsignedInteger(v); }
Ref<NSObject> boxedDouble(double v) { return NSNumber::numberWithDouble(v); }
Ref<NSObject> boxedPoint(const NSPoint& v) { return NSValue::valueWithPoint(v); }
Ref<NSObject> boxedSize(const NSSize& v) { return NSValue::valueWithSize(v); }
Ref<NSObject> boxedRect(const NSRect& v) { return NSValue::valueWithRect(v); }
Ref<NSObject> boxedRange(const NSRange& v) { return NSValue::valueWithRange(v); }

BOOL unboxedBool(NSObject* v) {
    if (auto* n = as<NSNumber>(v)) return n->boolValue();
    if (auto* s = as<NSString>(v)) return s->boolValue();
    return NO;
}

NSInteger unboxedInteger(NSObject* v) {
    if (auto* n = as<NSNumber>(v)) return n->integerValue();
    if (auto* s = as<NSString>(v)) return s->integerValue();
    return 0;
}

NSUInteger unboxedUnsigned(NSObject* v) {
    if (auto* n = as<NSNumber>(v)) return n->unsignedIntegerValue();
    return static_cast<NSUInteger>(unboxedInteger(v));
}

double unboxedDouble(NSObject* v) {
    if (auto* n = as<NSNumber>(v)) return n->doubleValue();
    if (auto* s = as<NSString>(v)) return s->doubleValue();
    return 0;
}

void unboxGeometry(NSObject* v, NSPoint& out) {
    auto* value = as<NSValue>(v);
    out = value ? value->pointValue() : NSZeroPoint;
}

void unboxGeometry(NSObject* v, NSSize& out) {
    auto* value = as<NSValue>(v);
    out = value ? value->sizeValue() : NSZeroSize;
}

void unboxGeometry(NSObject* v, NSRect& out) {
    auto* value = as<NSValue>(v);
    out = value ? value->rectValue() : NSZeroRect;
}

void unboxGeometry(NSObject* v, NSRange& out) {
    auto* value = as<NSValue>(v);
    out = value ? value->rangeValue() : NSRange{};
}

} // namespace libvue
