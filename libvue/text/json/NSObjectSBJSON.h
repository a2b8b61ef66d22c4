#pragma once

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

namespace op {
/// Answered by an object that can be written as JSON through another value, which must itself be one that can.
inline constexpr Operation<Ref<NSObject>()> proxyForJson{"proxyForJson"};
} // namespace op

/// The value as JSON text on one line, whatever it is; null where it cannot be written, with the reasons in the log,
/// and for null.
[[nodiscard]] LIBVUE_API Ref<NSString> JSONFragment(NSObject* value);
/// The same for an object or an array, or what stands for one through `proxyForJson`.
[[nodiscard]] LIBVUE_API Ref<NSString> JSONRepresentation(NSObject* value);

} // namespace libvue
