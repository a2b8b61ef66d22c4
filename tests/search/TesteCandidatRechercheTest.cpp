#include <libvue/search/TesteCandidatRecherche.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>

using namespace libvue;

namespace {

// The same rules, slow and obvious: texts are lists of characters, and a match is a run of whole characters.
namespace evident {

struct Caractere {
    std::u16string unites;
    std::size_t debut = 0;
};

const UNormalizer2* compose() {
    UErrorCode etat = U_ZERO_ERROR;
    return unorm2_getNFCInstance(&etat);
}

std::vector<Caractere> caracteres(const std::u16string& s) {
    std::vector<Caractere> liste;
    for (std::size_t i = 0; i < s.size();) {
        const std::size_t debut = i;
        UChar32 c;
        U16_NEXT(s.data(), i, s.size(), c);
        if (debut == 0 || unorm2_hasBoundaryBefore(compose(), c)) liste.push_back({{}, debut});
        liste.back().unites.append(s, debut, i - debut);
    }
    return liste;
}

std::u16string decomposee(const std::u16string& s) {
    UErrorCode etat = U_ZERO_ERROR;
    char16_t lieu[200];
    const auto n = unorm2_normalize(unorm2_getNFDInstance(&etat), s.data(), int32_t(s.size()), lieu, 200, &etat);
    return {lieu, std::size_t(n)};
}

std::u16string cle(const std::u16string& s, bool casse) {
    const std::u16string d = decomposee(s);
    UErrorCode etat = U_ZERO_ERROR;
    char16_t lieu[200];
    const auto n = u_strFoldCase(lieu, 200, d.data(), int32_t(d.size()), U_FOLD_CASE_DEFAULT, &etat);
    return casse ? d : decomposee({lieu, std::size_t(n)});
}

std::u16string normalisee(const std::u16string& s) {
    std::u16string n;
    for (const Caractere& c : caracteres(s))
        n += c.unites == u"\u2019" ? u"'"
             : c.unites == u"œ"    ? u"oe"
             : c.unites == u"Œ"    ? u"OE"
             : c.unites == u"æ"    ? u"ae"
             : c.unites == u"Æ"    ? u"Ae"
                                   : c.unites;
    return n;
}

struct Plage {
    std::size_t debut, fin;
};
constexpr std::size_t absente = std::u16string::npos;

Plage cherche(const std::u16string& texte, const std::u16string& quoi, bool casse, std::size_t depuis, bool auDebut) {
    std::u16string but;
    for (const Caractere& c : caracteres(quoi))
        but += cle(c.unites, casse);
    if (but.empty()) return {absente, absente};
    const auto liste = caracteres(texte.substr(depuis));
    for (std::size_t i = 0; i < (auDebut ? std::min<std::size_t>(1, liste.size()) : liste.size()); ++i) {
        std::u16string amas;
        for (std::size_t j = i; j < liste.size(); ++j) {
            amas += cle(liste[j].unites, casse);
            if (amas == but) return {depuis + liste[i].debut, depuis + liste[j].debut + liste[j].unites.size()};
        }
    }
    return {absente, absente};
}

bool deMot(char16_t c) { return (U_GET_GC_MASK(c) & (U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK)) != 0; }

bool parJetons(const std::u16string& texte, const std::u16string& quoi, bool casse, int type) {
    if (type == 3) return texte == quoi;
    const auto t = normalisee(texte), s = normalisee(quoi);
    for (Plage r = cherche(t, s, casse, 0, false); r.debut != absente; r = cherche(t, s, casse, r.debut + 1, false)) {
        if (type == 0) return true;
        if (r.debut > 0 && deMot(t[r.debut - 1])) continue;
        if (type == 1 || r.fin == t.size() || !deMot(t[r.fin])) return true;
    }
    return false;
}

bool simple(const std::u16string& texte, const std::u16string& quoi, bool casse, int type) {
    const auto t = normalisee(texte), s = normalisee(quoi);
    if (type == 2 && t.size() != s.size()) return false;
    return cherche(t, s, casse, 0, type != 0).debut != absente;
}

} // namespace evident

std::string lisible(const std::u16string& s) {
    std::string l;
    for (const char16_t c : s) {
        char morceau[8];
        std::snprintf(morceau, sizeof morceau, c > 0x20 && c < 0x7F ? "%c" : "<%X>", static_cast<unsigned>(c));
        l += morceau;
    }
    return l;
}

TEST(TesteCandidatRecherche, RowsMadeByHand) {
    // The eight last columns: by words without and with case, types 0 to 3 each; '1' for a match.
    struct Rangee {
        const char16_t *texte, *quoi;
        const char* parJetons;
        const char* simple;
    };
    const Rangee rangees[] = {
        {u"cœur", u"coeur", "1110 1110", "1111 1111"},
        {u"cœur", u"cœur", "1111 1111", "1111 1111"},
        {u"CŒUR", u"coeur", "1110 0000", "1111 0000"},
        {u"l\u2019ami", u"l'ami", "1110 1110", "1111 1111"},
        {u"l\u2019ami", u"ami", "1110 1110", "1000 1000"},
        {u"porte-monnaie", u"monnaie", "1110 1110", "1000 1000"},
        {u"Cœur", u"coeur", "1110 0000", "1111 0000"},
        {u"mot-clé", u"mot", "1110 1110", "1101 1101"},
        {u"motif", u"mot", "1100 1100", "1101 1101"},
        {u"demot mot", u"mot", "1110 1110", "1000 1000"},
        {u"porte-monnaie", u"onnaie", "1000 1000", "1000 1000"},
        {u"anana", u"ana", "1100 1100", "1101 1101"},
        {u"aaa aa", u"aa", "1110 1110", "1101 1101"}, // the first two overlap
        {u"-a-a-", u"-a-", "1100 1100", "1101 1101"},
        {u"Élève", u"eleve", "0000 0000", "0000 0000"}, // accents count
        {u"Élève", u"élève", "1110 0000", "1111 0000"},
        {u"e\u0301le\u0300ve", u"élève", "1110 1110", "1101 1101"}, // decomposed; two units longer
        {u"élève", u"e\u0301le\u0300ve", "1110 1110", "1101 1101"},
        {u"e\u0301t", u"e", "0000 0000", "0000 0000"},   // half a character is not found
        {u"ÆSOPE", u"AESOPE", "1110 0000", "1111 0000"}, // Æ gives Ae…
        {u"Æsope", u"Aesope", "1110 1110", "1111 1111"},
        {u"Œil", u"OEil", "1110 1110", "1111 1111"}, // …and Œ gives OE
        {u"Œil", u"Oeil", "1110 0000", "1111 0000"},
        {u"œ\u0301x", u"oe", "0000 0000", "0000 0000"}, // a ligature with a mark is another character
        {u"3e étage", u"e", "1000 1000", "1000 1000"},  // digits are of words
        {u"straße", u"STRASSE", "1110 0000", "1101 0000"},
        {u"mot", u"", "0000 0000", "0000 0000"},
        {u"", u"mot", "0000 0000", "0000 0000"},
        {u"", u"", "0001 0001", "0000 0000"},
    };
    for (const Rangee& r : rangees) {
        std::string parJetons, simple;
        const Ref<NSString> t = NSString::from(r.texte), s = NSString::from(r.quoi);
        for (const BOOL casse : {NO, YES}) {
            for (int type = 0; type < 4; ++type) {
                parJetons += testeCandidatRechercheParJetons(t, s, casse, type) ? '1' : '0';
                simple += testeCandidatRecherche(t, s, casse, type) ? '1' : '0';
            }
            if (!casse) parJetons += ' ', simple += ' ';
        }
        EXPECT_EQ(parJetons, r.parJetons) << lisible(r.quoi) << " in " << lisible(r.texte);
        EXPECT_EQ(simple, r.simple) << lisible(r.quoi) << " in " << lisible(r.texte);
    }
    EXPECT_FALSE(testeCandidatRechercheParJetons(nullptr, u"a"_ns, NO, 3));
    EXPECT_FALSE(testeCandidatRecherche(u"a"_ns, nullptr, NO, 0));
}

/// One time in two a text that has room for wide units, whether it needs them or not.
Ref<NSString> texteDe(const std::u16string& s, std::mt19937& hasard) {
    if (hasard() % 2) return NSString::from(s);
    const Ref<NSMutableString> m = make<NSMutableString>();
    m->append(u"\u2019");
    m->append(s);
    m->deleteCharactersInRange({0, 1});
    return m;
}

TEST(TesteCandidatRecherche, AgreesWithTheObviousRules) {
    const std::u16string alphabets[] = {
        u"aAeE-' ",
        u"aeoéÉœŒ\u2019'- ",
        u"aeEæÆéÉßsS3\u00B5",
        std::u16string(u"aeE\u0301\u0323œ\u2019\u01FD\u017F\u0130ıiI\u0149n\u2000\u2002") + u'\0',
        u"aeK\u212A\u212B\u00C5\U0001D49C\U0001F600\u1100\u1161\uFB01f\u20AC\u1E9E",
        std::u16string(u"a e\u0301") + char16_t(0xD835) + char16_t(0xDC9C) + char16_t(0xDC00),
    };
    std::mt19937 hasard(20);
    for (int tour = 0; tour < 3000; ++tour) {
        const std::u16string& alphabet = alphabets[static_cast<std::size_t>(tour) % std::size(alphabets)];
        const auto alea = [&](std::size_t n) {
            std::u16string s;
            while (s.size() < n)
                s += alphabet[hasard() % alphabet.size()];
            return s;
        };
        // Mostly short ones; the long ones reach over the blocks that are looked at together.
        const std::u16string texte = alea(hasard() % (tour % 4 ? 9 : 40));
        std::u16string quoi = alea(hasard() % 4);
        if (hasard() % 3 == 0 && !texte.empty()) quoi = texte.substr(hasard() % texte.size(), 1 + hasard() % 5);
        if (hasard() % 8 == 0) quoi = evident::decomposee(quoi);
        const Ref<NSString> t = texteDe(texte, hasard), s = texteDe(quoi, hasard);
        for (const bool casse : {false, true}) {
            for (int type = -1; type < 5; ++type) {
                ASSERT_EQ(testeCandidatRechercheParJetons(t, s, casse, type),
                          evident::parJetons(texte, quoi, casse, type))
                    << lisible(quoi) << " in " << lisible(texte) << ", by words, case " << casse << ", type " << type;
                ASSERT_EQ(testeCandidatRecherche(t, s, casse, type), evident::simple(texte, quoi, casse, type))
                    << lisible(quoi) << " in " << lisible(texte) << ", case " << casse << ", type " << type;
            }
        }
    }
}

TEST(TesteCandidatRecherche, ASoughtTextThatChangesIsReadAgain) {
    const Ref<NSMutableString> s = make<NSMutableString>(u"mer"_ns.get());
    const Ref<NSString> texte = u"la mer et le ciel, l’œil"_ns;
    EXPECT_TRUE(testeCandidatRechercheParJetons(texte, s, NO, 2));
    s->setString(u"mur"_ns);
    EXPECT_FALSE(testeCandidatRechercheParJetons(texte, s, NO, 2));
    s->setString(u"Œil"_ns);
    EXPECT_TRUE(testeCandidatRechercheParJetons(texte, s, NO, 2));
    EXPECT_FALSE(testeCandidatRechercheParJetons(texte, s, YES, 2)) << "the same text, with its case";
}

} // namespace
