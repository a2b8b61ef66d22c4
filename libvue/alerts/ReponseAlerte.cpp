#include <libvue/alerts/ReponseAlerte.h>

#include <libvue/platform/appkit/NSAlert.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSUserDefaults.h>
#include <libvue/socle/UniChaine.h>

namespace libvue {

namespace {

/// Buttons whose answer is their tag.
constexpr NSInteger kBoutonsTraduits = 4;

Ref<NSMutableDictionary> reponses() {
    const NSDictionary* retenues = NSUserDefaults::standardUserDefaults()->dictionaryForKey(kPrefsAlertes);
    return retenues ? NSMutableDictionary::dictionaryWithDictionary(retenues) : NSMutableDictionary::dictionary();
}

void ecris(NSDictionary* reponses) {
    NSUserDefaults* defauts = NSUserDefaults::standardUserDefaults();
    defauts->setObject_forKey(reponses, kPrefsAlertes);
    // Not at the next turn: what the user answered must outlive an application that ends badly right afterwards.
    defauts->synchronize();
}

} // namespace

BOOL estReponseRetenue(const UniChaine& cle) {
    const NSDictionary* retenues = NSUserDefaults::standardUserDefaults()->dictionaryForKey(kPrefsAlertes);
    const auto* oui = retenues ? as<NSNumber>(retenues->objectForKey(cle.DonneChaine())) : nullptr;
    return oui && oui->boolValue();
}

void retiensReponse(const UniChaine& cle) {
    const auto toutes = reponses();
    toutes->setObject_forKey(NSNumber::numberWithBool(YES), cle.DonneChaine());
    ecris(toutes);
}

void oublieReponse(const UniChaine& cle) {
    const auto toutes = reponses();
    if (!toutes->objectForKey(cle.DonneChaine())) return;
    toutes->removeObjectForKey(cle.DonneChaine());
    ecris(toutes);
}

int reponseAlerte(NSAlert* alerte, NSInteger code, const UniChaine* cle, int annuler) {
    NSInteger reponse = code;
    const NSInteger rang = code - NSAlertFirstButtonReturn;
    const auto boutons = alerte->buttons();
    if (rang >= 0 && rang < kBoutonsTraduits && rang < static_cast<NSInteger>(boutons->count()))
        reponse = as<NSButton>(boutons->objectAtIndex(static_cast<NSUInteger>(rang)))->tag();
    if (cle && reponse != annuler && alerte->showsSuppressionButton() &&
        alerte->suppressionButton()->state() == NSOnState)
        retiensReponse(*cle);
    return static_cast<int>(reponse);
}

} // namespace libvue
