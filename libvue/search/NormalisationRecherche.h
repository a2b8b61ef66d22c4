#pragma once

#include <libvue/platform/foundation/NSString.h>

namespace libvue {

/// The text in the form in which candidates are compared: straight apostrophes, no French ligatures. Itself where it is
/// so already.
[[nodiscard]] Ref<NSString> chaineNormalisee(const NSString* s);

} // namespace libvue
