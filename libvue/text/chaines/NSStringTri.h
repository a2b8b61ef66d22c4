#pragma once

#include <libvue/platform/foundation/NSString.h>

namespace libvue {

// Comparisons for sorts by selector; texts answer them as `comparaisonTrimmay:` and `comparaisonPlusLongueChaine:`.
// Null compares as the empty text.

/// The French order of the texts without what stands around their words: punctuation, quotes, apostrophes and spaces at
/// the ends play no part. Hyphens do.
[[nodiscard]] LIBVUE_API NSComparisonResult comparaisonTrimmay(const NSString* s, const NSString* other);
/// The text with more UTF-16 units first; the French order between texts of one length.
[[nodiscard]] LIBVUE_API NSComparisonResult comparaisonPlusLongueChaine(const NSString* s, const NSString* other);

} // namespace libvue
