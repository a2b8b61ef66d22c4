#pragma once

#include <string_view>
#include <vector>

#include <libvue/alerts/KAlerte.h>

namespace galerie {

using namespace libvue;

/// What the page asks of the next alert.
struct ReglagesAlerte {
    int sorte = KDialogue::kDialogueAttention;
    int masque = KDialogue::kBoutonOK | KDialogue::kBoutonAnnuler;
    int defaut = KDialogue::kBoutonOK, annuler = KDialogue::kBoutonAnnuler;
    int texte = 0; ///< short, long, endless
    bool enFeuille = true, neplus = false;
};

/// A button as the page names it.
struct BoutonNomme {
    int bouton;
    std::u16string_view nom;
};
[[nodiscard]] const std::vector<BoutonNomme>& boutonsNommes();

/// A choice of buttons that is met often.
struct Modele {
    std::u16string_view nom;
    int masque, defaut, annuler;
};
[[nodiscard]] const std::vector<Modele>& modeles();

/// What an answer is called: a button's name, or the code as it came.
[[nodiscard]] Ref<NSString> nomReponse(int reponse);

/// Shows what was asked; the answer of a sheet goes to the receiver.
int montreAlerte(const ReglagesAlerte& r, NSWindow* fenetre, const KDialogue::KAlerteReceveur* receveur);
/// Whether the alert of the page is not to appear again, and the end of that.
[[nodiscard]] BOOL alerteSeTait();
void oublieAlerte();

} // namespace galerie
