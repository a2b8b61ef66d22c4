#pragma once

#include <libvue/platform/foundation/NSString.h>

namespace libvue {

// Whether a text matches a sought one. Both are normalised alike first: the typographic apostrophe becomes the straight
// one, and the ligatures œ, Œ, æ, Æ become oe, OE, ae, Ae. Accents count: "coeur" finds "cœur", "eleve" does not find
// "élève". Texts are compared up to canonical equivalence.
//
// An empty sought text is found nowhere, and null matches nothing. Main thread.

/// Searches everywhere in the text. Types: 0 anywhere, 1 at the start of a word, 2 as a whole word, 3 the two texts are
/// equal as they stand, normalisation and case set aside; any other type is 2. A word ends at whatever is neither
/// letter nor mark nor number, so at a hyphen and an apostrophe too: "monnaie" is a word of "porte-monnaie".
[[nodiscard]] LIBVUE_API BOOL testeCandidatRechercheParJetons(const NSString* texte, const NSString* cherche,
                                                              BOOL respecterCasse, int type);

/// Searches at the start of the text. Types: 0 anywhere, 1 and 3 the text starts with it, 2 the same and both have the
/// same length, in units of the normalised texts; any other type is 1.
[[nodiscard]] LIBVUE_API BOOL testeCandidatRecherche(const NSString* texte, const NSString* cherche,
                                                     BOOL respecterCasse, int type);

} // namespace libvue
