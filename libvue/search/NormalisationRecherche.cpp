#include <libvue/search/NormalisationRecherche.h>

#include <libvue/platform/foundation/ConstantString.h>

namespace libvue {

namespace {

struct Remplacement {
    ConstantString cherche, par;
};

// The last one gives a lower-case second letter, unlike the third: lists that were matched so stay matched so.
constexpr Remplacement remplacements[] = {
    {ConstantString{u"\u2019"}, ConstantString{u"'"}}, {ConstantString{u"œ"}, ConstantString{u"oe"}},
    {ConstantString{u"Œ"}, ConstantString{u"OE"}},     {ConstantString{u"æ"}, ConstantString{u"ae"}},
    {ConstantString{u"Æ"}, ConstantString{u"Ae"}},
};

} // namespace

Ref<NSString> chaineNormalisee(const NSString* s) {
    Ref<NSMutableString> copie = NSMutableString::stringWithString(s);
    for (const Remplacement& r : remplacements)
        copie->replaceOccurrencesOfString_withString_options_range(r.cherche, r.par, 0, {0, copie->length()});
    return copie;
}

} // namespace libvue
