// The order of French texts, beside ICU's collator on the same words as UTF-16.

#include <algorithm>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <unicode/ucol.h>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSString.h>

#include "Banc.h"
#include "Mots.h"

using namespace libvue;

namespace {

constexpr std::size_t nombre = 100000;

/// The words as texts, which lie in memory in their order; so do those of the peer.
Ref<NSArray> liste(const std::vector<std::string>& mots) {
    std::vector<Ref<NSString>> textes;
    for (const std::string& mot : mots)
        textes.push_back(NSString::fromUTF8(mot));
    return NSArray::arrayWithRefs(textes);
}

UCollator* collateur() {
    static UCollator* const unique = [] {
        UErrorCode etat = U_ZERO_ERROR;
        UCollator* c = ucol_open("fr_CA", &etat);
        ucol_setStrength(c, UCOL_SECONDARY);
        ucol_setAttribute(c, UCOL_NORMALIZATION_MODE, UCOL_ON, &etat);
        if (U_FAILURE(etat)) throw std::runtime_error("no collator of fr_CA");
        return c;
    }();
    return unique;
}

UCollationResult comparePair(std::u16string_view a, std::u16string_view b) {
    return ucol_strcoll(collateur(), a.data(), static_cast<std::int32_t>(a.size()), b.data(),
                        static_cast<std::int32_t>(b.size()));
}

banc::Chemin tri() {
    struct Donnees {
        Ref<NSArray> liste;
        std::vector<std::u16string> textes;
        std::vector<std::u16string_view> vues;
    };
    auto d = std::make_shared<Donnees>();
    d->liste = liste(banc::motsMelanges(nombre));
    for (NSUInteger i = 0; i < d->liste->count(); ++i)
        d->textes.push_back(d->liste->at<NSString>(i)->utf16());
    d->vues.assign(d->textes.begin(), d->textes.end());
    return {[d, ordre = sel("localizedCaseInsensitiveCompare:")] {
                banc::garde(d->liste->sortedArrayUsingSelector(ordre));
            },
            [d] {
                auto copie = d->vues;
                std::sort(copie.begin(), copie.end(), [](auto a, auto b) { return comparePair(a, b) == UCOL_LESS; });
                banc::garde(copie);
            }};
}

/// Pairs that are compared one after the other, so that no one learns a single pair by heart.
banc::Chemin paires(const std::vector<std::pair<Ref<NSString>, Ref<NSString>>>& choisies) {
    struct Donnees {
        std::vector<std::pair<Ref<NSString>, Ref<NSString>>> notres;
        std::vector<std::pair<std::u16string, std::u16string>> pairs;
        std::size_t notre = 0, pair = 0;
    };
    auto d = std::make_shared<Donnees>();
    for (const auto& [a, b] : choisies) {
        d->notres.emplace_back(NSString::from(a->utf16()), NSString::from(b->utf16()));
        d->pairs.emplace_back(a->utf16(), b->utf16());
    }
    return {[d] {
                const auto& [a, b] = d->notres[d->notre];
                if (++d->notre == d->notres.size()) d->notre = 0;
                banc::garde(a->localizedCaseInsensitiveCompare(b));
            },
            [d] {
                const auto& [a, b] = d->pairs[d->pair];
                if (++d->pair == d->pairs.size()) d->pair = 0;
                banc::garde(comparePair(a, b));
            }};
}

/// Neighbours of the sorted list: they are alike for long, as the pairs of a sort's last rounds are.
banc::Chemin voisins() {
    const Ref<NSArray> melanges = liste(banc::motsMelanges(nombre));
    const Ref<NSArray> tries = melanges->sortedArrayUsingSelector(sel("localizedCaseInsensitiveCompare:"));
    std::vector<std::pair<Ref<NSString>, Ref<NSString>>> choisies;
    for (NSUInteger i = 0; i + 1 < tries->count(); i += 97)
        choisies.emplace_back(tries->at<NSString>(i), tries->at<NSString>(i + 1));
    std::shuffle(choisies.begin(), choisies.end(), std::mt19937(1));
    return paires(choisies);
}

/// Pairs that differ in accents or in nothing.
banc::Chemin accents() {
    return paires({{u"c\u00F4te"_ns, u"cot\u00E9"_ns},
                   {u"\u00E9l\u00E8ve"_ns, u"\u00E9lev\u00E9"_ns},
                   {u"\u00C9L\u00C8VE"_ns, u"\u00E9l\u00E8ve"_ns},
                   {u"p\u00EAcheur"_ns, u"p\u00E9cheur"_ns},
                   {u"c\u0153ur"_ns, u"coeur"_ns}});
}

} // namespace

int main(int argc, char** argv) {
    banc::Banc banc;
    banc.ajoute("sort-french", tri);
    banc.ajoute("compare-french", voisins);
    banc.ajoute("compare-french-accents", accents);
    return banc.lance(argc, argv);
}
