#pragma once

#include <libvue/platform/foundation/NSSet.h>

namespace libvue {

/// The distinct objects, those that were added most often first; in no given order where they are equal in that. Null
/// for null.
[[nodiscard]] LIBVUE_API Ref<NSArray> objectsByOcccurence(const NSCountedSet* set);

} // namespace libvue
