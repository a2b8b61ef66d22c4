#pragma once

#include <string>
#include <vector>

#include <libvue/platform/foundation/NSString.h>

namespace galerie {

using namespace libvue;

/// What becomes of those that are not among the largest.
enum class Reste { reunit, ote };

/// Named numbers, each cut into the same number of parts.
struct Releve {
    struct Rang {
        std::u16string nom;
        std::vector<NSInteger> parts;
        [[nodiscard]] NSInteger total() const noexcept;
    };
    std::vector<std::u16string> parts; ///< the names of the parts
    std::vector<Rang> rangs;

    /// The `combien` largest in falling order, and the rest as one "autres" where it is wanted.
    [[nodiscard]] Releve plusGrands(std::size_t combien, Reste reste = Reste::reunit) const;
};

/// What is counted in a list of words, all of it in one pass.
struct DonneesMots {
    std::u16string source; ///< where the words come from, for a person
    NSInteger mots = 0;
    Releve lettres;   ///< without accents: at the start of a word, within it, at its end
    Releve longueurs; ///< of words in letters: without an accent, with one
    Releve accents;   ///< letters with a sign, by letter and sign
    Releve paires;    ///< of letters that follow each other

    /// Words that anything but a letter or a hyphen separates, in UTF-8; what is ill-formed separates too.
    [[nodiscard]] static DonneesMots compte(std::string_view texte, std::u16string source);
    /// The system's list of French words, or a text of our own where there is none. Counted at the first call.
    [[nodiscard]] static const DonneesMots& duSysteme();
};

} // namespace galerie
