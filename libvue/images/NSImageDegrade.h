#pragma once

#include <cstdint>

#include <libvue/images/Forward.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/Ref.h>

namespace libvue {

/// An image filled with two greys, the first one at its bottom. Type 2 is light, type 3 a translucent gloss, any other
/// the darkest. Null where the size is empty; raises NSImageCacheException where it is too large to draw into.
[[nodiscard]] LIBVUE_API Ref<NSImage> greyGradientImageWithSize_type(NSSize size, std::int32_t type);

} // namespace libvue
