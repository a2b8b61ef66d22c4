#pragma once

#include <array>
#include <vector>

#include <libvue/alerts/Forward.h>
#include <libvue/platform/foundation/Ref.h>
#include <libvue/socle/KDialogue.h>

namespace libvue {

/// The caller's own labels; null for none.
using LibellesAlerte = std::array<const UniChaine*, 5>;

/// The buttons of the mask in the order of their adding: the default first, the cancel button last, the others between
/// them in rising order.
[[nodiscard]] LIBVUE_API std::vector<int> ordreBoutons(int masque, int defaut, int annuler);

/// In the words of the main bundle; empty for a button without a title.
[[nodiscard]] LIBVUE_API Ref<NSString> titreBouton(int bouton, const LibellesAlerte& libelles);

} // namespace libvue
