#pragma once

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// The description of a collection, with the collections in it indented: (…) for lists, {…} for dictionaries, {(…)} for
/// sets. Texts are quoted where they are no plain words.
Ref<NSString> collectionText(const NSObject* collection);

} // namespace libvue
