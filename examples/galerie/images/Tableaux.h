#pragma once

#include <libvue/platform/graphics/NSImage.h>

namespace galerie {

using namespace libvue;

/// A lake at the end of a day, which fills the size.
[[nodiscard]] Ref<NSImage> paysage(NSSize taille);
/// A sailing boat: ink on nothing, part of it translucent.
[[nodiscard]] Ref<NSImage> voilier(CGFloat cote);

} // namespace galerie
