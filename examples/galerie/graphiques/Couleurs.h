#pragma once

#include <vector>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/graphics/NSColor.h>

namespace galerie {

using namespace libvue;

/// That many colours next to each other on a wheel, of one lightness, that bear a white text.
[[nodiscard]] std::vector<Ref<NSColor>> roueDeCouleurs(std::size_t combien);

enum class Palette { ardoise, degrades, roue };
/// An entry a section, as a histogram takes them.
[[nodiscard]] Ref<NSArray> couleursDeSections(Palette palette, std::size_t sections);
/// The colour that stands for a section in a key: the one itself, or the second of a gradient.
[[nodiscard]] NSColor* couleurDeLegende(const NSArray* couleurs, std::size_t section);

} // namespace galerie
