#pragma once

#include <libvue/alerts/Forward.h>
#include <libvue/platform/foundation/ConstantString.h>

namespace libvue {

/// In the user defaults: a dictionary of booleans by key, YES for an alert that is not to appear again.
inline constexpr ConstantString kPrefsAlertes{u"prefsAlertes"};

/// Whether the alert of that key is not to appear again.
[[nodiscard]] LIBVUE_API BOOL estReponseRetenue(const UniChaine& cle);
/// Keeps it: on the disk when this returns.
LIBVUE_API void retiensReponse(const UniChaine& cle);
/// The alert of that key appears again.
LIBVUE_API void oublieReponse(const UniChaine& cle);

/// What the raw code of an alert means: the tag of one of its first four buttons, else the code itself. With a key, a
/// box that is ticked and another answer than the cancel button, the alert will not appear again.
[[nodiscard]] int reponseAlerte(NSAlert* alerte, NSInteger code, const UniChaine* cle, int annuler);

} // namespace libvue
