#pragma once

#include <libvue/images/Forward.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/Ref.h>

namespace libvue {

// New images from one that stays as it is. A null image gives null; where there is no size to draw into, the new image
// is empty. A size that is too large raises NSImageCacheException.

/// The image at that strength, 0 to 1.
[[nodiscard]] LIBVUE_API Ref<NSImage> imageWithAlpha(NSImage* image, CGFloat alpha);
/// The colour painted where the image has ink. A null colour paints nothing.
[[nodiscard]] LIBVUE_API Ref<NSImage> imageComposedWithColor(NSImage* image, NSColor* color);
/// The whole image scaled to fill the size, without keeping its ratio.
[[nodiscard]] LIBVUE_API Ref<NSImage> imageWithSize(NSImage* image, NSSize size);

} // namespace libvue
