#include <libvue/alerts/BoutonsAlerte.h>

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSBundle.h>
#include <libvue/socle/UniChaine.h>

namespace libvue {

namespace {

using namespace KDialogue;

struct Titre {
    constexpr Titre(int b, std::u16string_view c, std::u16string_view v = u"") : bouton(b), cle(c), valeur(v) {}
    int bouton;
    ConstantString cle, valeur; ///< an empty value makes the key the title
};

// The values with an escape hold it as it stands, letter for letter: translations have always been keyed and compared
// that way.
constexpr Titre titres[] = {
    {kBoutonOK, u"OK"},
    {kBoutonAnnuler, u"Annuler"},
    {kBoutonAppliquer, u"Appliquer"},
    {kBoutonFermer, u"Fermer"},
    {kBoutonSauvegarder, u"Sauvegarder"},
    {kBoutonSauvegarderTout, u"Sauvegarder tout"},
    {kBoutonAide, u"Aide"},
    {kBoutonOui, u"Oui"},
    {kBoutonOuiATout, u"Oui a tout", u"Oui \\U00E0 tout"},
    {kBoutonNon, u"Non"},
    {kBoutonNonATout, u"Non a tout", u"Non \\U00E0 tout"},
    {kBoutonReessayer, u"Reessayer", u"R\\U00E9essayer"},
    {kBoutonIgnorer, u"Ignorer"},
    {kBoutonContinuer, u"Continuer"},
    {kBoutonEssayer, u"Essayer"},
};

constexpr int libres[] = {kBoutonAutre1, kBoutonAutre2, kBoutonAutre3, kBoutonAutre4, kBoutonAutre5};

} // namespace

std::vector<int> ordreBoutons(int masque, int defaut, int annuler) {
    std::vector<int> ordre;
    std::ptrdiff_t n = 0;
    for (int bouton = kBoutonOK; bouton <= kBoutonAutre5; bouton *= 2) {
        if (!(masque & bouton)) continue;
        if (bouton == defaut) {
            ordre.insert(ordre.begin(), bouton);
            ++n;
        } else if (bouton == annuler)
            ordre.push_back(bouton);
        else
            ordre.insert(ordre.begin() + n++, bouton);
    }
    return ordre;
}

Ref<NSString> titreBouton(int bouton, const LibellesAlerte& libelles) {
    for (const Titre& t : titres)
        if (t.bouton == bouton)
            return NSBundle::mainBundle()->localizedStringForKey_value_table(t.cle, t.valeur, nullptr);
    for (std::size_t i = 0; i < libelles.size(); ++i)
        if (libres[i] == bouton && libelles[i]) return libelles[i]->DonneChaine();
    return NSString::string();
}

} // namespace libvue
