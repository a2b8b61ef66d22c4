#include <libvue/search/TesteCandidatRecherche.h>

#include <libvue/platform/foundation/NSCharacterSet.h>
#include <libvue/search/ChaineCherchee.h>
#include <libvue/search/NormalisationRecherche.h>

namespace libvue {

namespace {

constexpr NSUInteger introuvable = static_cast<NSUInteger>(NSNotFound);

NSUInteger optionsPour(BOOL respecterCasse) { return respecterCasse ? 0 : NSUInteger{NSCaseInsensitiveSearch}; }

/// For any text at all: with the platform's search.
BOOL chercheMots(const NSString* texte, const NSString* cherche, BOOL respecterCasse, PlaceMot place) {
    const Ref<NSString> t = chaineNormalisee(texte), s = chaineNormalisee(cherche);
    const NSUInteger longueur = t->length(), options = optionsPour(respecterCasse);
    const NSCharacterSet* deMot = NSCharacterSet::alphanumericCharacterSet();
    NSRange r = t->rangeOfString_options_range(s, options, {0, longueur});
    while (r.location != introuvable) {
        if (place == PlaceMot::partout) return YES;
        if (r.location == 0 || !deMot->characterIsMember(t->unit(r.location - 1))) {
            if (place == PlaceMot::debutDeMot || NSMaxRange(r) == longueur) return YES;
            if (!deMot->characterIsMember(t->unit(NSMaxRange(r)))) return YES;
        }
        r = t->rangeOfString_options_range(s, options, {r.location + 1, longueur - r.location - 1});
    }
    return NO;
}

BOOL chercheAuDebut(const NSString* texte, const NSString* cherche, BOOL respecterCasse, FinMot fin) {
    const Ref<NSString> t = chaineNormalisee(texte), s = chaineNormalisee(cherche);
    if (fin == FinMot::memeLongueur && t->length() != s->length()) return NO;
    return t->rangeOfString_options(s, optionsPour(respecterCasse) | NSAnchoredSearch).location != introuvable;
}

} // namespace

BOOL testeCandidatRechercheParJetons(const NSString* texte, const NSString* cherche, BOOL respecterCasse, int type) {
    if (!texte || !cherche) return NO;
    if (type == 3) return texte->isEqual(cherche);
    const PlaceMot place = type == 0 ? PlaceMot::partout : type == 1 ? PlaceMot::debutDeMot : PlaceMot::motEntier;
    const auto reponse = ChaineCherchee::pour(*cherche, respecterCasse).estDans(*texte, place);
    if (reponse != ChaineCherchee::Reponse::inconnue) return reponse == ChaineCherchee::Reponse::oui;
    return chercheMots(texte, cherche, respecterCasse, place);
}

BOOL testeCandidatRecherche(const NSString* texte, const NSString* cherche, BOOL respecterCasse, int type) {
    if (type == 0) return testeCandidatRechercheParJetons(texte, cherche, respecterCasse, 0);
    if (!texte || !cherche) return NO;
    const FinMot fin = type == 2 ? FinMot::memeLongueur : FinMot::libre;
    const auto reponse = ChaineCherchee::pour(*cherche, respecterCasse).commence(*texte, fin);
    if (reponse != ChaineCherchee::Reponse::inconnue) return reponse == ChaineCherchee::Reponse::oui;
    return chercheAuDebut(texte, cherche, respecterCasse, fin);
}

} // namespace libvue
