#pragma once

#include <type_traits>

#include <libvue/platform/foundation/Boxable.h>

namespace libvue {

// What `boxed` and `unboxed` below are made of.

/// A new NSNumber; that of a boolean or a small integer is shared.
[[nodiscard]] LIBVUE_API Ref<NSObject> boxedBool(BOOL v);
[[nodiscard]] LIBVUE_API Ref<NSObject> boxedInteger(NSInteger v);
[[nodiscard]] LIBVUE_API Ref<NSObject> boxedUnsigned(NSUInteger v);
[[nodiscard]] LIBVUE_API Ref<NSObject> boxedDouble(double v);
/// A new NSValue.
[[nodiscard]] LIBVUE_API Ref<NSObject> boxedPoint(const NSPoint& v);
[[nodiscard]] LIBVUE_API Ref<NSObject> boxedSize(const NSSize& v);
[[nodiscard]] LIBVUE_API Ref<NSObject> boxedRect(const NSRect& v);
[[nodiscard]] LIBVUE_API Ref<NSObject> boxedRange(const NSRange& v);
/// The value of a number, or of a text that begins with one; NO or 0 for null and for anything else.
[[nodiscard]] LIBVUE_API BOOL unboxedBool(NSObject* v);
[[nodiscard]] LIBVUE_API NSInteger unboxedInteger(NSObject* v);
[[nodiscard]] LIBVUE_API NSUInteger unboxedUnsigned(NSObject* v);
[[nodiscard]] LIBVUE_API double unboxedDouble(NSObject* v);
/// The geometry in an NSValue of that type; all zeros for null and for anything else.
LIBVUE_API void unboxGeometry(NSObject* v, NSPoint& out);
LIBVUE_API void unboxGeometry(NSObject* v, NSSize& out);
LIBVUE_API void unboxGeometry(NSObject* v, NSRect& out);
LIBVUE_API void unboxGeometry(NSObject* v, NSRange& out);

/// A value as an object: numbers and booleans as NSNumber, geometry as NSValue, objects as they are (null for null).
template <class T> [[nodiscard]] Ref<NSObject> boxed(const T& v) {
    if constexpr (std::is_same_v<T, bool>)
        return boxedBool(v);
    else if constexpr (std::is_enum_v<T>)
        return boxedInteger(static_cast<NSInteger>(v));
    else if constexpr (std::is_integral_v<T> && std::is_signed_v<T>)
        return boxedInteger(v);
    else if constexpr (std::is_integral_v<T>)
        return boxedUnsigned(v);
    else if constexpr (std::is_floating_point_v<T>)
        return boxedDouble(v);
    else if constexpr (std::is_pointer_v<T>)
        return Ref<NSObject>(objectBehind(v));
    else if constexpr (detail::IsReference<T>::value)
        return Ref<NSObject>(objectBehind(v.get()));
    else if constexpr (std::is_same_v<T, NSPoint>)
        return boxedPoint(v);
    else if constexpr (std::is_same_v<T, NSSize>)
        return boxedSize(v);
    else if constexpr (std::is_same_v<T, NSRange>)
        return boxedRange(v);
    else
        return boxedRect(v);
}

/// The value in an object. A null or unfit object gives zero, an absent reference, an empty rectangle.
template <class T> [[nodiscard]] T unboxed(NSObject* v) {
    if constexpr (std::is_same_v<T, bool>)
        return unboxedBool(v);
    else if constexpr (std::is_enum_v<T>)
        return static_cast<T>(unboxedInteger(v));
    else if constexpr (std::is_integral_v<T> && std::is_signed_v<T>)
        return static_cast<T>(unboxedInteger(v));
    else if constexpr (std::is_integral_v<T>)
        return static_cast<T>(unboxedUnsigned(v));
    else if constexpr (std::is_floating_point_v<T>)
        return static_cast<T>(unboxedDouble(v));
    else if constexpr (std::is_pointer_v<T>)
        return dynamic_cast<T>(v);
    else if constexpr (detail::IsReference<T>::value)
        return T(dynamic_cast<typename std::remove_reference_t<decltype(*std::declval<T>())>*>(v));
    else {
        T out{};
        unboxGeometry(v, out);
        return out;
    }
}

} // namespace libvue

#include <libvue/platform/foundation/NSObject.h>
