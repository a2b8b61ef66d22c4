#pragma once

#include <libvue/platform/foundation/NSDictionary.h>

namespace libvue {

/// A dictionary with the keys of both. Where both have a key, the value of `a` stays, but two dictionaries are merged
/// in the same way. Of any depth. A null `b` adds nothing, a null `a` gives null.
[[nodiscard]] LIBVUE_API Ref<NSDictionary> dictionaryByMergingWith(const NSDictionary* a, const NSDictionary* b);

} // namespace libvue
