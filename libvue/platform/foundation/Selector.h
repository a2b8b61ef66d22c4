#pragma once

#include <string_view>

#include <libvue/platform/foundation/Forward.h>

namespace libvue {

/// An interned operation name, such as "clique:". Never freed.
struct Selector {
    std::string_view name;
};

/// The one selector of that name, made on first use. Main thread.
[[nodiscard]] LIBVUE_API SEL sel(std::string_view name);
/// The selector of that name if one was ever made, else null: for names that come from data, which must not pile up.
[[nodiscard]] LIBVUE_API SEL findSelector(std::string_view name);
[[nodiscard]] LIBVUE_API SEL findSelector(const NSString* name);

/// Null for null.
[[nodiscard]] LIBVUE_API Ref<NSString> NSStringFromSelector(SEL selector);
/// As `sel`; null for null.
[[nodiscard]] LIBVUE_API SEL NSSelectorFromString(NSString* name);

} // namespace libvue
