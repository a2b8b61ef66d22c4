#include <libvue/search/ChaineCherchee.h>

#include <algorithm>
#include <array>
#include <cstring>

#include <libvue/platform/foundation/InlineVector.h>
#include <libvue/search/NormalisationRecherche.h>

namespace libvue {

namespace {

std::array<unichar, 2> sansLigature(unichar c) noexcept {
    switch (c) {
    case u'œ':
        return {u'o', u'e'};
    case u'Œ':
        return {u'O', u'E'};
    case u'æ':
        return {u'a', u'e'};
    default:
        return {u'A', u'e'};
    }
}

template <class Mot> bool memesBouts(const std::uint8_t* a, const std::uint8_t* b, std::size_t n) noexcept {
    Mot debutA, debutB, finA, finB;
    std::memcpy(&debutA, a, sizeof(Mot));
    std::memcpy(&debutB, b, sizeof(Mot));
    std::memcpy(&finA, a + n - sizeof(Mot), sizeof(Mot));
    std::memcpy(&finB, b + n - sizeof(Mot), sizeof(Mot));
    return ((debutA ^ debutB) | (finA ^ finB)) == 0;
}

/// A few bytes, which are compared once a candidate: a call of memcmp would cost as much as a short candidate's search.
bool memesOctets(const std::uint8_t* a, const std::uint8_t* b, std::size_t n) noexcept {
    if (n > 16) return std::memcmp(a, b, n) == 0;
    if (n >= 8) return memesBouts<std::uint64_t>(a, b, n);
    if (n >= 4) return memesBouts<std::uint32_t>(a, b, n);
    for (std::size_t i = 0; i < n; ++i)
        if (a[i] != b[i]) return false;
    return true;
}

} // namespace

const ChaineCherchee& ChaineCherchee::pour(const NSString& s, BOOL respecterCasse) {
    static ChaineCherchee derniere;
    if (!derniere.estPour(s, respecterCasse)) derniere.prepare(s, respecterCasse);
    return derniere;
}

bool ChaineCherchee::estPour(const NSString& s, BOOL respecterCasse) const noexcept {
    const std::uint8_t* etroites = s.latin1Contents();
    const std::size_t octets = s.length() * (etroites ? 1 : sizeof(unichar));
    if (!prete_ || respecterCasse_ != static_cast<bool>(respecterCasse) || large_ != !etroites ||
        octets_.size() != octets)
        return false;
    if (!etroites) etroites = reinterpret_cast<const std::uint8_t*>(s._fastCharacterContents());
    return memesOctets(etroites, octets_.data(), octets);
}

void ChaineCherchee::prepare(const NSString& s, BOOL respecterCasse) {
    prete_ = false;
    numeros_.clear();
    const std::uint8_t* unites = s.latin1Contents();
    large_ = !unites;
    if (large_) unites = reinterpret_cast<const std::uint8_t*>(s._fastCharacterContents());
    octets_.assign(unites, unites + s.length() * (large_ ? sizeof(unichar) : 1));
    unites_ = respecterCasse ? &UnitesSimples::avecCasse() : &UnitesSimples::sansCasse();
    const Ref<NSString> normalisee = chaineNormalisee(&s);
    longueur_ = normalisee->length();
    // A search sees canonical equivalents alike, so the composed form, which is more often simple, finds the same.
    const Ref<NSString> composee = normalisee->precomposedStringWithCanonicalMapping();
    for (NSUInteger i = 0; i < composee->length(); ++i) {
        const Numero numero = unites_->numero(composee->unit(i));
        if (numero >= UnitesSimples::ligature) {
            numeros_.clear();
            break;
        }
        numeros_.push_back(numero);
    }
    filtre_.reset();
    if (!numeros_.empty())
        filtre_.emplace(*unites_, numeros_[0], numeros_.size() > 1 ? std::optional(numeros_[1]) : std::nullopt);
    respecterCasse_ = respecterCasse;
    prete_ = true;
}

template <class Lecture>
ChaineCherchee::Suite ChaineCherchee::cherche(Lecture lecture, std::size_t debut, std::size_t n, PlaceMot place) const {
    const Numero* const cherchees = numeros_.data();
    const std::size_t nombre = numeros_.size();
    const Numero premiere = cherchees[0];
    for (std::size_t i = debut; i < n; ++i) {
        const Numero numero = lecture(i);
        if (numero >= UnitesSimples::ligature)
            return numero == UnitesSimples::ligature ? Suite::ligatures : Suite::inconnue;
        if (numero != premiere) continue;
        std::size_t k = 1;
        while (k < nombre && i + k < n && lecture(i + k) == cherchees[k])
            ++k;
        if (k < nombre) continue; // What stopped it is looked at in its turn.
        const std::size_t apres = i + nombre;
        const Numero suivante = apres < n ? lecture(apres) : Numero{0};
        // A mark would belong to the last unit found, and the match would end within a character.
        if (suivante >= UnitesSimples::ligature)
            return suivante == UnitesSimples::ligature ? Suite::ligatures : Suite::inconnue;
        if (place == PlaceMot::partout) return Suite::oui;
        if (i > 0 && unites_->estDeMot(lecture(i - 1))) continue;
        if (place == PlaceMot::debutDeMot || apres == n || !unites_->estDeMot(suivante)) return Suite::oui;
    }
    return Suite::non;
}

template <class Lecture>
ChaineCherchee::Suite ChaineCherchee::chercheAuDebut(Lecture lecture, std::size_t n, FinMot fin) const {
    // No replacement makes a text shorter.
    if (fin == FinMot::memeLongueur && n > longueur_) return Suite::non;
    const std::size_t nombre = numeros_.size();
    bool egales = n >= nombre;
    // The unit behind the match, or behind the first difference, may be a mark that changes the one before; ligatures
    // change the length wherever they stand.
    const std::size_t limite = fin == FinMot::memeLongueur ? n : std::min(n, nombre + 1);
    for (std::size_t k = 0; k < limite; ++k) {
        const Numero numero = lecture(k);
        if (numero >= UnitesSimples::ligature)
            return numero == UnitesSimples::ligature ? Suite::ligatures : Suite::inconnue;
        if (k < nombre && numero != numeros_[k]) egales = false;
    }
    return egales && (fin == FinMot::libre || n == longueur_) ? Suite::oui : Suite::non;
}

template <class Unite, class Recherche>
ChaineCherchee::Reponse ChaineCherchee::parcours(const Unite* lues, std::size_t n, Recherche recherche) const {
    const UnitesSimples& unites = *unites_;
    Suite suite = recherche([&](std::size_t i) { return unites.numero(lues[i]); }, n);
    if (suite == Suite::ligatures) {
        InlineVector<Numero, 120> sansLigatures;
        for (std::size_t i = 0; i < n; ++i) {
            const Numero numero = unites.numero(lues[i]);
            if (numero == UnitesSimples::pasSimple) return Reponse::inconnue;
            if (numero != UnitesSimples::ligature) {
                sansLigatures.push_back(numero);
                continue;
            }
            for (const unichar c : sansLigature(lues[i]))
                sansLigatures.push_back(unites.numero(c));
        }
        const Numero* numeros = sansLigatures.begin();
        suite = recherche([numeros](std::size_t i) { return numeros[i]; }, sansLigatures.size());
    }
    if (suite == Suite::inconnue) return Reponse::inconnue;
    return suite == Suite::oui ? Reponse::oui : Reponse::non;
}

ChaineCherchee::Reponse ChaineCherchee::estDans(const NSString& texte, PlaceMot place) const {
    if (numeros_.empty()) return longueur_ ? Reponse::inconnue : Reponse::non;
    const std::size_t n = texte.length();
    const std::uint8_t* etroites = texte.latin1Contents();
    const std::size_t debut = etroites ? filtre_->premierePlace(etroites, n) : 0;
    if (debut == n) return Reponse::non;
    const auto recherche = [&](auto lecture, std::size_t nombre) {
        // With its ligatures taken apart the text is another one, which is searched from its start.
        return cherche(lecture, nombre == n ? debut : 0, nombre, place);
    };
    return etroites ? parcours(etroites, n, recherche) : parcours(texte._fastCharacterContents(), n, recherche);
}

ChaineCherchee::Reponse ChaineCherchee::commence(const NSString& texte, FinMot fin) const {
    if (numeros_.empty()) return longueur_ ? Reponse::inconnue : Reponse::non;
    const auto recherche = [&](auto lecture, std::size_t n) { return chercheAuDebut(lecture, n, fin); };
    const std::size_t n = texte.length();
    if (const std::uint8_t* etroites = texte.latin1Contents()) return parcours(etroites, n, recherche);
    return parcours(texte._fastCharacterContents(), n, recherche);
}

} // namespace libvue
