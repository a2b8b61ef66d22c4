#pragma once

#include <libvue/platform/foundation/NSString.h>

namespace libvue {

/// The order of French-Canadian dictionaries: case, width and composition are ignored, accents count, from the end of
/// the text backwards. Linking the library makes it the `localizedCaseInsensitiveCompare:` of every text in the
/// process, and so of every sort by that selector.
///
/// The sign of the result is the collator's. Null compares as the empty text.
[[nodiscard]] LIBVUE_API NSComparisonResult localizedCaseInsensitiveCompare(const NSString* s, const NSString* other);

} // namespace libvue
