#pragma once

#include <libvue/platform/foundation/NSString.h>

namespace libvue {

/// A copy of the text in the form in which candidates are compared: straight apostrophes, no French ligatures.
[[nodiscard]] Ref<NSString> chaineNormalisee(const NSString* s);

} // namespace libvue
