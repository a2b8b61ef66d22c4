#include <graphiques/DonneesMots.h>

#include <algorithm>
#include <array>
#include <map>

#include <ListeDeMots.h>

namespace galerie {

namespace {

constexpr std::size_t kLongueurMax = 20; ///< longer words are counted together

/// The start of a tale, for systems without a list of words.
constexpr const char* kTexte =
    "Il était une fois un gentilhomme qui épousa en secondes noces une femme, la plus hautaine et la plus fière "
    "qu’on eût jamais vue. Elle avait deux filles de son humeur, et qui lui ressemblaient en toutes choses. Le mari "
    "avait de son côté une jeune fille, mais d’une douceur et d’une bonté sans exemple ; elle tenait cela de sa mère, "
    "qui était la meilleure personne du monde. Les noces ne furent pas plus tôt faites, que la belle-mère fit éclater "
    "sa mauvaise humeur ; elle ne put souffrir les bonnes qualités de cette jeune enfant, qui rendaient ses filles "
    "encore plus haïssables. Elle la chargea des plus viles occupations de la maison : c’était elle qui nettoyait la "
    "vaisselle et les montées, qui frottait la chambre de madame, et celles de mesdemoiselles ses filles ; elle "
    "couchait tout en haut de la maison, dans un grenier, sur une méchante paillasse, pendant que ses sœurs étaient "
    "dans des chambres parquetées, où elles avaient des lits des plus à la mode, et des miroirs où elles se voyaient "
    "depuis les pieds jusqu’à la tête.";

struct Lettre {
    char32_t lettre; ///< small, with its sign; 0 for the end of a word
    char base;       ///< 'a' to 'z', or 0 for what is none
    bool signe;
};

Lettre lettre(char32_t c) {
    if (c >= U'A' && c <= U'Z') c += 32;
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7) c += 32;
    if (c == 0x152) c = 0x153;
    if (c >= U'a' && c <= U'z') return {c, static_cast<char>(c), false};
    static constexpr std::u32string_view signes = U"àâäáãåçéèêëíîïìñóôöòõúùûüýÿœæ";
    static constexpr std::string_view bases = "aaaaaaceeeeiiiinooooouuuuyyoa";
    const std::size_t i = signes.find(c);
    if (i == std::u32string_view::npos) return {0, 0, false};
    return {c, bases[i], true};
}

/// The next character; 0 where the bytes are no UTF-8.
char32_t lis(std::string_view t, std::size_t& i) {
    const auto octet = static_cast<unsigned char>(t[i++]);
    if (octet < 0x80) return octet;
    const int suite = octet >= 0xF0 ? 3 : octet >= 0xE0 ? 2 : octet >= 0xC2 ? 1 : 0;
    char32_t c = octet & (0x3Fu >> suite);
    for (int k = 0; k < suite; ++k) {
        if (i >= t.size() || (static_cast<unsigned char>(t[i]) & 0xC0) != 0x80) return 0;
        c = (c << 6) | (static_cast<unsigned char>(t[i++]) & 0x3Fu);
    }
    return suite ? c : 0;
}

struct Compteur {
    std::array<std::array<NSInteger, 3>, 26> lettres{};
    std::array<std::array<NSInteger, 2>, kLongueurMax + 1> longueurs{};
    std::array<std::array<NSInteger, 26>, 26> paires{};
    std::map<char32_t, NSInteger> accents;
    NSInteger mots = 0;
    std::vector<Lettre> mot;

    void termine() {
        if (mot.empty()) return;
        ++mots;
        bool signe = false;
        for (std::size_t i = 0; i < mot.size(); ++i) {
            const auto b = static_cast<std::size_t>(mot[i].base - 'a');
            ++lettres[b][i == 0 ? 0 : i + 1 < mot.size() ? 1 : 2];
            if (i) ++paires[static_cast<std::size_t>(mot[i - 1].base - 'a')][b];
            if (!mot[i].signe) continue;
            signe = true;
            ++accents[mot[i].lettre];
        }
        ++longueurs[std::min(mot.size(), kLongueurMax)][signe ? 1 : 0];
        mot.clear();
    }
};

} // namespace

NSInteger Releve::Rang::total() const noexcept {
    NSInteger somme = 0;
    for (const NSInteger p : parts)
        somme += p;
    return somme;
}

Releve Releve::plusGrands(std::size_t combien, Reste reste) const {
    Releve r = *this;
    std::stable_sort(r.rangs.begin(), r.rangs.end(),
                     [](const Rang& a, const Rang& b) { return a.total() > b.total(); });
    if (r.rangs.size() <= combien) return r;
    Rang autres{u"autres", std::vector<NSInteger>(parts.size())};
    for (std::size_t i = combien; i < r.rangs.size(); ++i)
        for (std::size_t p = 0; p < autres.parts.size(); ++p)
            autres.parts[p] += r.rangs[i].parts[p];
    r.rangs.resize(combien);
    if (reste == Reste::reunit) r.rangs.push_back(std::move(autres));
    return r;
}

DonneesMots DonneesMots::compte(std::string_view texte, std::u16string source) {
    Compteur c;
    for (std::size_t i = 0; i < texte.size();) {
        const char32_t lu = lis(texte, i);
        if (lu == U'-') continue; // inside of a word, and no letter
        const Lettre l = lettre(lu);
        if (l.base)
            c.mot.push_back(l);
        else
            c.termine();
    }
    c.termine();

    DonneesMots d;
    d.source = std::move(source);
    d.mots = c.mots;
    d.lettres.parts = {u"au début", u"au milieu", u"à la fin"};
    d.paires.parts = {u"paires"};
    for (std::size_t a = 0; a < 26; ++a) {
        const auto capitale = static_cast<char16_t>(u'A' + a);
        d.lettres.rangs.push_back({{capitale}, {c.lettres[a].begin(), c.lettres[a].end()}});
        for (std::size_t b = 0; b < 26; ++b)
            if (c.paires[a][b])
                d.paires.rangs.push_back(
                    {{static_cast<char16_t>(u'a' + a), static_cast<char16_t>(u'a' + b)}, {c.paires[a][b]}});
    }
    d.longueurs.parts = {u"sans accent", u"avec accent"};
    for (std::size_t n = 1; n <= kLongueurMax; ++n) {
        const std::string nombre = std::to_string(n);
        std::u16string nom(nombre.begin(), nombre.end());
        if (n == kLongueurMax) nom += u"\u00A0et plus";
        d.longueurs.rangs.push_back({nom, {c.longueurs[n].begin(), c.longueurs[n].end()}});
    }
    d.accents.parts = {u"lettres"};
    for (const auto& [l, n] : c.accents)
        d.accents.rangs.push_back({{static_cast<char16_t>(l)}, {n}});
    return d;
}

const DonneesMots& DonneesMots::duSysteme() {
    static const DonneesMots d = [] {
        const std::string texte = listeDeMots();
        return texte.empty() ? compte(kTexte, u"le début d’un conte") : compte(texte, u"la liste de mots du système");
    }();
    return d;
}

} // namespace galerie
