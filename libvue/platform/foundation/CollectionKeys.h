#pragma once

#include <vector>

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// The answer of a collection to a key path: an operator that begins with "@", or the first key asked of each element
/// by `valueForKey` and the rest of the answer.
Ref<NSObject> collectionValueForKeyPath(NSObject& collection, const std::vector<Ref<NSObject>>& elements,
                                        NSString* path);

} // namespace libvue
