#pragma once

#include <libvue/alerts/FenAlerte.h>
#include <libvue/alerts/KAlerteReceveur.h>
#include <libvue/socle/KAlerteInfo.h>

namespace libvue {

// Alerts, as the kind of the descriptor says: a sheet on the window where there is one that has been on the screen,
// else a window that blocks the application; a notice that fades away; the desktop's notification.
//
// They answer the button (an eBoutons) where the alert was modal, the default button where nothing was asked, and 1 for
// a sheet, whose answer goes to the receiver (null: to nobody, and nothing is remembered). The fifth button of a modal
// alert and those after it answer 1004 and on; one that ended without a button NSRunAbortedResponse. With an empty
// message, and from any other thread than the main one, nothing is shown and the answer is 0.
//
// A notification that nobody can show becomes an alert: at once where that is known, else from the run loop, when the
// desktop's service turns out to be gone.

/// With one button, "OK".
LIBVUE_API int KAlerte(FenAlerte* fenetre, const KAlerteInfo& info);
/// `masque` holds eBoutons; the receiver must answer for the sheet, or end before it.
LIBVUE_API int KAlerte(FenAlerte* fenetre, const KAlerteInfo& info, int masque, KDialogue::eBoutons defaut,
                       KDialogue::eBoutons annuler, const KDialogue::KAlerteReceveur* receveur);
/// The labels are the titles of kBoutonAutre1 to kBoutonAutre5.
LIBVUE_API int KAlerte(FenAlerte* fenetre, const KAlerteInfo& info, int masque, KDialogue::eBoutons defaut,
                       KDialogue::eBoutons annuler, const UniChaine& autre1, const UniChaine& autre2,
                       const UniChaine& autre3, const UniChaine& autre4, const UniChaine& autre5,
                       const KDialogue::KAlerteReceveur* receveur);
/// With a box "not again", which is remembered under the key; from then on nothing is shown, and the default button is
/// the answer.
LIBVUE_API int KAlerteRappel(FenAlerte* fenetre, const KAlerteInfo& info, KDialogue::eTypStockeur stockeur,
                             UniChaine cle, int masque, KDialogue::eBoutons defaut, KDialogue::eBoutons annuler,
                             const UniChaine& autre1, const UniChaine& autre2, const UniChaine& autre3,
                             const UniChaine& autre4, const UniChaine& autre5,
                             const KDialogue::KAlerteReceveur* receveur);
LIBVUE_API int KAlerteErreur(FenAlerte* fenetre, const KAlerteInfoErreur& info);
/// `fenetre` is an NSWindow*, untyped; null for none.
LIBVUE_API int KAlerteCentrageNatif(void* fenetre, const KAlerteInfo& info);
/// Forgets nothing: whoever remembers answers keeps them.
LIBVUE_API void KAlerteOublieToutesLesReponses(KDialogue::eTypStockeur stockeur);

} // namespace libvue
