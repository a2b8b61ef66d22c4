#pragma once

#include <libvue/platform/foundation/NSString.h>
#include <libvue/search/Forward.h>

namespace libvue::op {

// What a search client may offer; each is optional.

/// Searches for the text: forward or backwards, with regard to case, going on at the other end, and by that type (see
/// testeCandidatRechercheParJetons). Answers whether it was found.
inline constexpr Operation<BOOL(NSString*, BOOL, BOOL, BOOL, int)>
    cherche_direction_respecterCasse_boucle_typeRecherche{"cherche:direction:respecterCasse:boucle:typeRecherche:"};
/// YES where the client searches by type 0 alone.
inline constexpr Operation<BOOL()> contientSeulement{"contientSeulement"};
/// The text that is selected in the client; null for none.
inline constexpr Operation<Ref<NSString>()> donneSelection{"donneSelection"};

/// Of the application's delegate: the one search panel, which it owns.
inline constexpr Operation<KPanneauRecherche*()> panneauRecherche{"panneauRecherche"};

} // namespace libvue::op
