#include <alertes/ReglagesAlerte.h>

#include <algorithm>

#include <libvue/alerts/ReponseAlerte.h>
#include <libvue/platform/appkit/NSWindow.h>

namespace galerie {

using namespace KDialogue;

namespace {

const UniChaine kCle{u"galerie.alerte"};
const UniChaine kLibelles[] = {u"Choix A", u"Choix B", u"Choix C", u"Choix D", u"Un libellé plus long"};

KAlerteInfo infoDe(const ReglagesAlerte& r) {
    constexpr std::u16string_view suite =
        u" Les textes se coupent aux mots, et l’alerte s’élargit un peu quand ils sont longs.";
    std::u16string texte = u"La version précédente sera perdue.";
    for (int i = 0; i < (r.texte == 0 ? 0 : r.texte == 1 ? 5 : 60); ++i)
        texte += suite;
    return KAlerteInfo{u"Remplacer le document « Abricots » ?", UniChaine(std::u16string_view(texte)), r.sorte};
}

} // namespace

const std::vector<BoutonNomme>& boutonsNommes() {
    static const std::vector<BoutonNomme> tous = {{kBoutonOK, u"OK"},
                                                  {kBoutonAnnuler, u"Annuler"},
                                                  {kBoutonAppliquer, u"Appliquer"},
                                                  {kBoutonFermer, u"Fermer"},
                                                  {kBoutonSauvegarder, u"Sauvegarder"},
                                                  {kBoutonSauvegarderTout, u"Sauvegarder tout"},
                                                  {kBoutonAide, u"Aide"},
                                                  {kBoutonOui, u"Oui"},
                                                  {kBoutonOuiATout, u"Oui à tout"},
                                                  {kBoutonNon, u"Non"},
                                                  {kBoutonNonATout, u"Non à tout"},
                                                  {kBoutonReessayer, u"Réessayer"},
                                                  {kBoutonIgnorer, u"Ignorer"},
                                                  {kBoutonSansTitre1, u"Sans titre"},
                                                  {kBoutonContinuer, u"Continuer"},
                                                  {kBoutonEssayer, u"Essayer"},
                                                  {kBoutonAutre1, u"Choix A"},
                                                  {kBoutonSansTitre2, u"Sans titre (2)"},
                                                  {kBoutonAutre2, u"Choix B"},
                                                  {kBoutonAutre3, u"Choix C"},
                                                  {kBoutonAutre4, u"Choix D"},
                                                  {kBoutonAutre5, u"Un libellé plus long"}};
    return tous;
}

const std::vector<Modele>& modeles() {
    static const std::vector<Modele> tous = {
        {u"OK", kBoutonOK, kBoutonOK, kBoutonOK},
        {u"OK, Annuler", kBoutonOK | kBoutonAnnuler, kBoutonOK, kBoutonAnnuler},
        {u"Oui, Non, Annuler", kBoutonOui | kBoutonNon | kBoutonAnnuler, kBoutonOui, kBoutonAnnuler},
        {u"Sauvegarder…", kBoutonSauvegarder | kBoutonFermer | kBoutonAnnuler, kBoutonSauvegarder, kBoutonAnnuler},
        {u"Réessayer…", kBoutonReessayer | kBoutonIgnorer | kBoutonAnnuler, kBoutonReessayer, kBoutonAnnuler},
        {u"Cinq boutons", kBoutonOui | kBoutonOuiATout | kBoutonNon | kBoutonNonATout | kBoutonAnnuler, kBoutonOui,
         kBoutonAnnuler},
        {u"Trop larges", kBoutonSauvegarderTout | kBoutonAutre5 | kBoutonOuiATout | kBoutonNonATout | kBoutonAnnuler,
         kBoutonAutre5, kBoutonAnnuler},
        {u"Libellés", kBoutonAutre1 | kBoutonAutre2 | kBoutonAutre3 | kBoutonAutre4, kBoutonAutre1, kBoutonAutre4}};
    return tous;
}

Ref<NSString> nomReponse(int reponse) {
    for (const BoutonNomme& b : boutonsNommes())
        if (b.bouton == reponse) return NSString::stringWithFormat(u"%@ (%d)"_ns, NSString::from(b.nom).get(), reponse);
    return NSString::stringWithFormat(u"code %d"_ns, reponse);
}

int montreAlerte(const ReglagesAlerte& r, NSWindow* fenetre, const KAlerteReceveur* receveur) {
    FenAlerte ici(fenetre);
    return KAlerteRappel(r.enFeuille ? &ici : nullptr, infoDe(r), r.neplus ? kStockeurPreferences : kStockeurAucun,
                         kCle, r.masque, static_cast<eBoutons>(r.defaut), static_cast<eBoutons>(r.annuler),
                         kLibelles[0], kLibelles[1], kLibelles[2], kLibelles[3], kLibelles[4],
                         // Only without one a notification is shown.
                         r.sorte == kDialogueNotification && r.masque <= 1 ? nullptr : receveur);
}

BOOL alerteSeTait() { return estReponseRetenue(kCle); }
void oublieAlerte() { oublieReponse(kCle); }

} // namespace galerie
