#include <libvue/platform/foundation/NSValue.h>

#include <functional>

#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

template <class T, NSValue::Kind k> class NSValue::Holding final : public NSValue {
public:
    explicit Holding(const T& v) noexcept : value(v) { setTag_(static_cast<std::uint8_t>(k)); }
    const T value;
};

template <class T, NSValue::Kind k> T NSValue::held() const noexcept {
    return kind() == k ? static_cast<const Holding<T, k>*>(this)->value : T{};
}

namespace {
const ClassRegistration<NSValue> registration;
}

void NSValue::describe(ClassDescription<NSValue>&) {}

Ref<NSValue> NSValue::valueWithPoint(NSPoint v) { return adopt<NSValue>(new Holding<NSPoint, Kind::point>(v)); }
Ref<NSValue> NSValue::valueWithSize(NSSize v) { return adopt<NSValue>(new Holding<NSSize, Kind::size>(v)); }
Ref<NSValue> NSValue::valueWithRect(const NSRect& v) { return adopt<NSValue>(new Holding<NSRect, Kind::rect>(v)); }
Ref<NSValue> NSValue::valueWithRange(NSRange v) { return adopt<NSValue>(new Holding<NSRange, Kind::range>(v)); }
Ref<NSValue> NSValue::valueWithPointer(const void* v) {
    return adopt<NSValue>(new Holding<void*, Kind::pointer>(const_cast<void*>(v)));
}
Ref<NSValue> NSValue::valueWithNonretainedObject(NSObject* v) {
    return adopt<NSValue>(new Holding<NSObject*, Kind::nonretainedObject>(v));
}

NSPoint NSValue::pointValue() const noexcept { return held<NSPoint, Kind::point>(); }
NSSize NSValue::sizeValue() const noexcept { return held<NSSize, Kind::size>(); }
NSRect NSValue::rectValue() const noexcept { return held<NSRect, Kind::rect>(); }
NSRange NSValue::rangeValue() const noexcept { return held<NSRange, Kind::range>(); }
void* NSValue::pointerValue() const noexcept { return held<void*, Kind::pointer>(); }
NSObject* NSValue::nonretainedObjectValue() const noexcept { return held<NSObject*, Kind::nonretainedObject>(); }

const char* NSValue::objCType() const noexcept {
    switch (kind()) {
    case Kind::point:
        return "{NSPoint=dd}";
    case Kind::size:
        return "{NSSize=dd}";
    case Kind::rect:
        return "{NSRect={NSPoint=dd}{NSSize=dd}}";
    case Kind::range:
        return "{NSRange=QQ}";
    case Kind::pointer:
        return "^v";
    case Kind::nonretainedObject:
        return "@";
    default:
        return "";
    }
}

BOOL NSValue::isEqual(const NSObject* other) const {
    if (this == other) return YES;
    auto* v = dynamic_cast<const NSValue*>(other);
    if (!v || v->kind() != kind()) return NO;
    switch (kind()) {
    case Kind::point:
        return pointValue() == v->pointValue();
    case Kind::size:
        return sizeValue() == v->sizeValue();
    case Kind::rect:
        return rectValue() == v->rectValue();
    case Kind::range:
        return rangeValue() == v->rangeValue();
    case Kind::pointer:
        return pointerValue() == v->pointerValue();
    case Kind::nonretainedObject:
        return nonretainedObjectValue() == v->nonretainedObjectValue();
    default:
        return NO;
    }
}

NSUInteger NSValue::hash() const {
    auto mixed = [](std::initializer_list<double> fields) {
        NSUInteger h = 0;
        for (double f : fields)
            h = h * 31 + std::hash<double>()(f);
        return h;
    };
    switch (kind()) {
    case Kind::point:
        return mixed({pointValue().x, pointValue().y});
    case Kind::size:
        return mixed({sizeValue().width, sizeValue().height});
    case Kind::rect: {
        NSRect r = rectValue();
        return mixed({r.origin.x, r.origin.y, r.size.width, r.size.height});
    }
    case Kind::range:
        return rangeValue().location * 31 + rangeValue().length;
    case Kind::pointer:
        return reinterpret_cast<std::uintptr_t>(pointerValue()) >> 4;
    case Kind::nonretainedObject:
        return reinterpret_cast<std::uintptr_t>(nonretainedObjectValue()) >> 4;
    default:
        return 0;
    }
}

Ref<NSString> NSValue::description() const {
    switch (kind()) {
    case Kind::point:
        return NSStringFromPoint(pointValue());
    case Kind::size:
        return NSStringFromSize(sizeValue());
    case Kind::rect:
        return NSStringFromRect(rectValue());
    case Kind::range:
        return NSStringFromRange(rangeValue());
    case Kind::pointer:
        return NSString::stringWithFormat(u"<%p>"_ns, pointerValue());
    case Kind::nonretainedObject:
        return NSString::stringWithFormat(u"<%p>"_ns, static_cast<void*>(nonretainedObjectValue()));
    default:
        return NSObject::description();
    }
}

Ref<NSObject> NSValue::copyWithZone() const { return Ref<NSObject>(const_cast<NSValue*>(this)); }

void NSValue::encodeWithCoder(NSCoder& coder) const {
    // Addresses mean nothing to whoever reads the archive: such a value reads as null.
    auto text = [&]() -> Ref<NSString> {
        return kind() >= Kind::point && kind() <= Kind::range ? description() : NSString::string();
    };
    if (coder.allowsKeyedCoding()) {
        coder.encodeInteger_forKey(static_cast<NSInteger>(kind()), u"NS.kind"_ns);
        coder.encodeObject_forKey(text(), u"NS.value"_ns);
    } else {
        coder.encodeInteger(static_cast<NSInteger>(kind()));
        coder.encodeObject(text());
    }
}

Ref<NSValue> NSValue::initWithCoder(NSCoder& coder) {
    bool keyed = coder.allowsKeyedCoding();
    NSInteger kind = keyed ? coder.decodeIntegerForKey(u"NS.kind"_ns) : coder.decodeInteger();
    Ref<NSObject> held = keyed ? coder.decodeObject_forKey(u"NS.value"_ns) : coder.decodeObject();
    auto* text = libvue::as<NSString>(held);
    if (!text) return nullptr;
    switch (static_cast<Kind>(kind)) {
    case Kind::point:
        return valueWithPoint(NSPointFromString(text));
    case Kind::size:
        return valueWithSize(NSSizeFromString(text));
    case Kind::rect:
        return valueWithRect(NSRectFromString(text));
    case Kind::range:
        return valueWithRange(NSRangeFromString(text));
    default:
        return nullptr;
    }
}

} // namespace libvue
