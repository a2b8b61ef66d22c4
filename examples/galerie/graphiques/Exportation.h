#pragma once

#include <string>

#include <libvue/platform/appkit/NSView.h>

namespace galerie {

using namespace libvue;

enum class Format { pdf, png };

/// Writes the view, in its light look, as "NAME.pdf" or "NAME.png" (two pixels a point) into the folder that the
/// environment names as GALERIE_EXPORTS, else the person's own. Answers what there is to say about it.
[[nodiscard]] Ref<NSString> exporte(NSView* vue, const std::string& nom, Format format);

} // namespace galerie
