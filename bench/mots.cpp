// All word boundaries of a long French text, forward from its start and back from its end, beside ICU's word iterator
// on the same units.

#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <unicode/ubrk.h>

#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSString.h>

#include "Banc.h"
#include "Mots.h"

using namespace libvue;

namespace {

constexpr std::size_t kLongueur = 1000000;

/// Sentences of words from all over the list between the small words of the language, with its elisions.
std::u16string texte(char16_t apostrophe) {
    static constexpr std::u16string_view courts[] = {u"le",  u"de",   u"un", u"et",  u"à",   u"les", u"dans", u"est",
                                                     u"que", u"pour", u"ne", u"sur", u"par", u"des", u"il",   u"ce"};
    static constexpr std::u16string_view elides[] = {u"l", u"d", u"qu", u"n", u"s", u"j", u"aujourd"};
    static constexpr std::u16string_view fins[] = {u", ", u", ", u". ", u"\u00A0; ", u"\u00A0? ", u".\n"};
    std::vector<std::u16string> mots;
    for (const std::string& mot : banc::mots())
        mots.push_back(NSString::fromUTF8(mot)->utf16());
    std::mt19937 hasard(1);
    std::u16string t;
    while (t.size() < kLongueur) {
        const unsigned tirage = hasard() % 20;
        if (tirage < 9)
            t += courts[hasard() % std::size(courts)];
        else if (tirage < 12) {
            const auto elide = elides[hasard() % std::size(elides)];
            t += elide;
            t += apostrophe;
            t += elide == u"aujourd" ? u"hui" : std::u16string_view(mots[hasard() % mots.size()]);
        } else
            t += mots[hasard() % mots.size()];
        t += hasard() % 8 == 0 ? fins[hasard() % std::size(fins)] : u" ";
    }
    t.resize(kLongueur);
    return t;
}

/// With U+2019 the text is stored as UTF-16, with the typewriter's apostrophe as 8-bit where its words allow it.
banc::Chemin mots(char16_t apostrophe, bool latin) {
    struct Donnees {
        std::u16string unites;
        Ref<NSAttributedString> notre;
        UBreakIterator* pair = nullptr;
        ~Donnees() { ubrk_close(pair); }
    };
    auto d = std::make_shared<Donnees>();
    d->unites = texte(apostrophe);
    if (latin)
        for (char16_t& c : d->unites)
            if (c > 0xFF) c = u'o';
    d->notre = NSAttributedString::initWithString(NSString::from(d->unites));
    UErrorCode etat = U_ZERO_ERROR;
    d->pair = ubrk_open(UBRK_WORD, "fr", d->unites.data(), static_cast<std::int32_t>(d->unites.size()), &etat);
    if (U_FAILURE(etat)) throw std::runtime_error("no word iterator");
    return {[d] {
                NSUInteger nombre = 0;
                const NSUInteger fin = d->notre->length();
                for (NSUInteger i = 0; i < fin; ++nombre)
                    i = d->notre->nextWordFromIndex_forward(i, YES);
                for (NSUInteger i = fin; i > 0; ++nombre)
                    i = d->notre->nextWordFromIndex_forward(i, NO);
                banc::garde(nombre);
            },
            [d] {
                NSUInteger nombre = 0;
                for (ubrk_first(d->pair); ubrk_next(d->pair) != UBRK_DONE;)
                    ++nombre;
                for (ubrk_last(d->pair); ubrk_previous(d->pair) != UBRK_DONE;)
                    ++nombre;
                banc::garde(nombre);
            }};
}

} // namespace

int main(int argc, char** argv) {
    banc::Banc banc;
    banc.ajoute("words-french", [] { return mots(u'\u2019', false); });
    banc.ajoute("words-french-8-bit", [] { return mots(u'\'', true); });
    return banc.lance(argc, argv);
}
