#pragma once

#include <libvue/platform/foundation/NSAttributedString.h>

namespace libvue {

// Comparisons of the characters alone, by the operation of the same name of NSString: attributes never change an order.
// Attributed texts answer them as selectors, so that lists of them can be sorted. Null compares as the empty text.

[[nodiscard]] LIBVUE_API NSComparisonResult localizedCaseInsensitiveCompare(const NSAttributedString* s,
                                                                            const NSAttributedString* other);
[[nodiscard]] LIBVUE_API NSComparisonResult localizedCompare(const NSAttributedString* s,
                                                             const NSAttributedString* other);
[[nodiscard]] LIBVUE_API NSComparisonResult caseInsensitiveCompare(const NSAttributedString* s,
                                                                   const NSAttributedString* other);
[[nodiscard]] LIBVUE_API NSComparisonResult compare(const NSAttributedString* s, const NSAttributedString* other);

} // namespace libvue
