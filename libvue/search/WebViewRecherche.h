#pragma once

#include <libvue/platform/appkit/WebView.h>

namespace libvue {

// Web views as clients of the search panel: they answer these by name.

/// The type is ignored. Straight apostrophes are sought as typographic ones, which is how pages write them.
[[nodiscard]] LIBVUE_API BOOL cherche_direction_respecterCasse_boucle_typeRecherche(WebView* vue, NSString* texte,
                                                                                    BOOL avant, BOOL respecterCasse,
                                                                                    BOOL boucle, int type);
/// Always YES.
[[nodiscard]] LIBVUE_API BOOL contientSeulement(WebView* vue);
/// Null where there is no selection.
[[nodiscard]] LIBVUE_API Ref<NSString> donneSelection(WebView* vue);

} // namespace libvue
