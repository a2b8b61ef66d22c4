#include <libvue/text/formats/ChiffresRomainsFormateur.h>

#include <cstdint>
#include <string>
#include <string_view>

#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

const ClassRegistration<ChiffresRomainsFormateur> enregistrement;

struct Ecriture {
    int valeur;
    std::string_view lettres;
};
constexpr Ecriture kEcritures[] = {{1000, "M"}, {900, "CM"}, {500, "D"}, {400, "CD"}, {100, "C"}, {90, "XC"}, {50, "L"},
                                   {40, "XL"},  {10, "X"},   {9, "IX"},  {5, "V"},    {4, "IV"},  {1, "I"}};

constexpr int valeurDeLaLettre(unichar lettre) noexcept {
    switch (lettre) {
    case u'M':
        return 1000;
    case u'D':
        return 500;
    case u'C':
        return 100;
    case u'L':
        return 50;
    case u'X':
        return 10;
    case u'V':
        return 5;
    case u'I':
        return 1;
    default:
        return 0;
    }
}

} // namespace

void ChiffresRomainsFormateur::describe(ClassDescription<ChiffresRomainsFormateur, NSNumberFormatter>&) {}

Ref<NSString> ChiffresRomainsFormateur::stringForObjectValue(NSObject* value) {
    const auto* nombre = as<NSNumber>(value);
    if (!nombre) return NSString::string();
    int n = nombre->intValue();
    // The words say more than the test allows: neither 0 nor 4000 can be written.
    if (n < 1 || n > 3999) raiseNamed(kNombreTropGrandException, "Le nombre doit être entre 0 et 4000");
    std::string lettres;
    for (const Ecriture& e : kEcritures)
        for (; n >= e.valeur; n -= e.valeur)
            lettres += e.lettres;
    return NSString::fromLatin1(lettres);
}

BOOL ChiffresRomainsFormateur::getObjectValue_forString_errorDescription(Ref<NSObject>* value, NSString* string,
                                                                         Ref<NSString>* error) {
    if (error) *error = nullptr;
    std::int64_t total = 0;
    const NSUInteger longueur = string ? string->length() : 0;
    for (NSUInteger i = 0; i < longueur; ++i) {
        const int v = valeurDeLaLettre(string->unit(i));
        const bool retranche = i + 1 < longueur && valeurDeLaLettre(string->unit(i + 1)) > v;
        total += retranche ? -v : v;
    }
    const Ref<NSNumber> nombre = NSNumber::numberWithUnsignedInteger(static_cast<NSUInteger>(total));
    // What cannot be written raises here too: an empty text is an error of the caller and no refusal.
    if (!stringForObjectValue(nombre)->isEqualToString(string)) return NO;
    if (value) *value = nombre;
    return YES;
}

Ref<NSAttributedString> ChiffresRomainsFormateur::attributedStringForObjectValue_withDefaultAttributes(NSObject*,
                                                                                                       NSDictionary*) {
    return nullptr;
}

} // namespace libvue
