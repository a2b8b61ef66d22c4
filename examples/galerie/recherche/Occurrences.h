#pragma once

#include <optional>
#include <vector>

#include <libvue/platform/foundation/NSString.h>

namespace galerie {

using namespace libvue;

/// Where the sought text stands in the text, by the rules of the search panel; they do not overlap.
[[nodiscard]] std::vector<NSRange> occurrences(const NSString* texte, const NSString* cherche, BOOL respecterCasse);

/// The place of the range that comes next: behind the selection, or before it, and from the other end where it wraps.
[[nodiscard]] std::optional<std::size_t> occurrenceSuivante(const std::vector<NSRange>& plages, NSRange selection,
                                                            BOOL avant, BOOL boucle);

} // namespace galerie
