#pragma once

#include <libvue/platform/foundation/Types.h>

namespace libvue::KDialogue {

/// The buttons of an alert: a mask says which it has, a single one is the default, the cancel button or the answer.
/// The gaps are buttons without a title.
enum eBoutons : int {
    kBoutonOK = 0x1,
    kBoutonAnnuler = 0x2,
    kBoutonAppliquer = 0x4,
    kBoutonFermer = 0x8,
    kBoutonSauvegarder = 0x10,
    kBoutonSauvegarderTout = 0x20,
    kBoutonAide = 0x40,
    kBoutonOui = 0x80,
    kBoutonOuiATout = 0x100,
    kBoutonNon = 0x200,
    kBoutonNonATout = 0x400,
    kBoutonReessayer = 0x800,
    kBoutonIgnorer = 0x1000,
    kBoutonSansTitre1 = 0x2000,
    kBoutonContinuer = 0x4000,
    kBoutonEssayer = 0x8000,
    // The caller's own labels.
    kBoutonAutre1 = 0x10000,
    kBoutonSansTitre2 = 0x20000,
    kBoutonAutre2 = 0x40000,
    kBoutonAutre3 = 0x80000,
    kBoutonAutre4 = 0x100000,
    kBoutonAutre5 = 0x200000
};

/// Where the "not again" answers are kept. Any other value is as none.
enum eTypStockeur : int {
    kStockeurAucun = 0,
    kStockeurPreferences = 1 ///< the user defaults; the alert shows the box
};

/// What an alert is: its sign, or another way to show it. Any other value is a warning.
enum eTypDialogue : int {
    kDialogueInformation = 2,
    kDialogueAttention = 3,
    kDialogueErreur = 4,
    kDialogueEphemere = 5,    ///< a notice that fades away by itself
    kDialogueNotification = 6 ///< the desktop's, where there is nothing to choose
};

} // namespace libvue::KDialogue
