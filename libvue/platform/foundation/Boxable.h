#pragma once

#include <type_traits>

#include <libvue/platform/foundation/Forward.h>
#include <libvue/platform/foundation/Ref.h>

namespace libvue {

template <class T> [[nodiscard]] Ref<NSObject> boxed(const T& v);
template <class T> [[nodiscard]] T unboxed(NSObject* v);

namespace detail {

template <class T> struct IsReference : std::false_type {};
template <class T> struct IsReference<Ref<T>> : std::true_type {};
template <class T> struct IsReference<Weak<T>> : std::true_type {};

template <class T> struct Referred;
template <class T> struct Referred<Ref<T>> { using type = T; };
template <class T> struct Referred<Weak<T>> { using type = T; };

template <class T>
concept Polymorphic = requires {
    sizeof(T);
}
&&std::is_polymorphic_v<T>;

/// Whether `boxed` and `unboxed` know the type. A class that is only declared where this is asked is not known.
template <class T> consteval bool isBoxable() {
    if constexpr (std::is_pointer_v<T>)
        return Polymorphic<std::remove_pointer_t<T>>;
    else if constexpr (IsReference<T>::value)
        return Polymorphic<typename Referred<T>::type>;
    else
        return std::is_arithmetic_v<T> || std::is_enum_v<T> || std::is_same_v<T, NSPoint> ||
               std::is_same_v<T, NSSize> || std::is_same_v<T, NSRect> || std::is_same_v<T, NSRange>;
}

} // namespace detail

} // namespace libvue
