#include <libvue/search/NormalisationRecherche.h>

#include <array>

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

/// Which of them the text may need. No other character is canonically equivalent to any of these units.
std::array<bool, std::size(remplacements)> presents(const NSString* s) {
    std::array<bool, std::size(remplacements)> vus{};
    for (NSUInteger i = 0; i < s->length(); ++i)
        for (std::size_t k = 0; k < vus.size(); ++k)
            if (s->unit(i) == remplacements[k].cherche.text()[0]) vus[k] = true;
    return vus;
}

} // namespace

Ref<NSString> chaineNormalisee(const NSString* s) {
    Ref<NSString> forme = const_cast<NSString*>(s);
    const auto vus = presents(s);
    // A replacement by the platform's search leaves a ligature that carries a mark as it is.
    for (std::size_t k = 0; k < vus.size(); ++k)
        if (vus[k])
            forme =
                forme->stringByReplacingOccurrencesOfString_withString(remplacements[k].cherche, remplacements[k].par);
    return forme;
}

} // namespace libvue
