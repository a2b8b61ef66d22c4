#pragma once

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// The JSON value that the text holds, whatever it is; null where it holds none, with the reasons in the log, and for
/// null.
[[nodiscard]] LIBVUE_API Ref<NSObject> JSONFragmentValue(const NSString* text);
/// The same for an object or an array.
[[nodiscard]] LIBVUE_API Ref<NSObject> JSONValue(const NSString* text);

} // namespace libvue
