#include <libvue/search/UnitesSimples.h>

#include <libvue/platform/foundation/NSCharacterSet.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

UnitesSimples::UnitesSimples(Casse casse) {
    const auto* deMot = NSCharacterSet::alphanumericCharacterSet();
    const auto rang = [](unichar c) -> Numero {
        if (c < finLatin) return c;
        const unsigned signe = c - debutSignes;
        return signe < nombreSignes ? static_cast<Numero>(finLatin + signe) : pasSimple;
    };
    const auto numeroDe = [&](unichar c) {
        Ref<NSString> forme = NSString::from({&c, 1});
        if (casse == Casse::ignoree) forme = forme->stringByFoldingWithOptions(NSCaseInsensitiveSearch);
        forme = forme->precomposedStringWithCanonicalMapping();
        if (forme->length() != 1) return pasSimple;
        const Ref<NSString> decomposee = forme->decomposedStringWithCanonicalMapping();
        for (NSUInteger i = 1; i < decomposee->length(); ++i)
            if (decomposee->unit(i) < 0x300 || decomposee->unit(i) > 0x36F) return pasSimple;
        const unichar egale = forme->unit(0);
        return deMot->characterIsMember(egale) == deMot->characterIsMember(c) ? rang(egale) : pasSimple;
    };
    for (unsigned i = 0; i < numeros_.size(); ++i) {
        const auto c = static_cast<unichar>(i < finLatin ? i : debutSignes + (i - finLatin));
        numeros_[i] = numeroDe(c);
        deMot_[i] = deMot->characterIsMember(c);
    }
    for (const unichar c : u"œŒæÆ")
        if (c) numeros_[rang(c)] = ligature;
    numeros_[rang(u'\u2019')] = numeros_[u'\''];
}

const UnitesSimples& UnitesSimples::avecCasse() {
    static const UnitesSimples unites(Casse::respectee);
    return unites;
}

const UnitesSimples& UnitesSimples::sansCasse() {
    static const UnitesSimples unites(Casse::ignoree);
    return unites;
}

} // namespace libvue
