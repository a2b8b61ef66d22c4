#include <libvue/socle/UniChaine.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace libvue {

constinit const UniChaine kUniChaineNulle;

namespace {

constexpr char espaceInsecable = '\xA0'; // Latin-1
constexpr int plusDeDecimales = 15;

/// Copies the digits behind `sortie` with a space before each group of three but the first.
char* ecrisGroupes(char* sortie, const char* chiffres, std::ptrdiff_t nombre) {
    for (std::ptrdiff_t reste = nombre; reste > 0; --reste) {
        if (reste != nombre && reste % 3 == 0) *sortie++ = espaceInsecable;
        *sortie++ = *chiffres++;
    }
    return sortie;
}

UniChaine depuisLatin1(const char* debut, const char* fin) {
    return NSString::fromLatin1({debut, static_cast<std::size_t>(fin - debut)});
}

} // namespace

UniChaine::UniChaine(const NSString* texte) {
    if (texte && texte->length()) texte_ = NSString::stringWithString(texte);
}

UniChaine::UniChaine(std::u16string_view unites) {
    if (!unites.empty()) texte_ = NSString::from(unites);
}

UniChaine::UniChaine(const char16_t* unites)
    : UniChaine(unites ? std::u16string_view(unites) : std::u16string_view()) {}

UniChaine::UniChaine(const char* utf8) {
    if (utf8 && *utf8) texte_ = NSString::fromUTF8(utf8);
}

NSString* UniChaine::vide() {
    static NSString* const vide = keptForever(NSString::string());
    return vide;
}

UniChaine::Place UniChaine::TrouveDernier(unichar unite, NSInteger depart) const noexcept {
    const NSInteger dernier = Longueur() - 1;
    for (NSInteger i = depart < 0 ? dernier : std::min(depart, dernier); i >= 0; --i)
        if (texte_->unit(static_cast<NSUInteger>(i)) == unite) return {true, i};
    return {};
}

UniChaine UniChaine::SousChaine(NSInteger debut, NSInteger longueur) const {
    const NSInteger toute = Longueur();
    debut = std::clamp<NSInteger>(debut, 0, toute);
    const NSInteger reste = toute - debut;
    longueur = longueur < 0 ? reste : std::min(longueur, reste);
    if (longueur == 0) return {};
    if (longueur == toute) return *this;
    return texte_->substringWithRange({static_cast<NSUInteger>(debut), static_cast<NSUInteger>(longueur)});
}

UniChaine& UniChaine::operator+=(const UniChaine& suite) {
    if (!texte_)
        texte_ = suite.texte_;
    else if (suite.texte_)
        texte_ = texte_->stringByAppendingString(suite.texte_);
    return *this;
}

bool UniChaine::estEgale(const UniChaine& autre) const noexcept {
    if (texte_ == autre.texte_) return true;
    return texte_ && autre.texte_ && texte_->isEqualToString(autre.texte_);
}

std::strong_ordering UniChaine::compare(const UniChaine& autre) const noexcept {
    const NSInteger communes = std::min(Longueur(), autre.Longueur());
    for (NSInteger i = 0; i < communes; ++i)
        if (const auto ordre = (*this)[i] <=> autre[i]; std::is_neq(ordre)) return ordre;
    return Longueur() <=> autre.Longueur();
}

UniChaine UniChaine::DonneNombreFormatay(double nombre, bool zerosFinals, int decimales) {
    if (std::isnan(nombre)) return u"NaN";
    if (std::isinf(nombre)) return nombre < 0 ? u"-\u221E" : u"\u221E";
    decimales = std::clamp(decimales, 0, plusDeDecimales);
    constexpr int plusLong = 309 + 1 + plusDeDecimales; // digits of the largest number, comma, decimals
    char chiffres[plusLong] = {};
    const char* fin =
        std::to_chars(chiffres, chiffres + plusLong, std::abs(nombre), std::chars_format::fixed, decimales).ptr;
    const char* finEntiers = decimales > 0 ? fin - decimales - 1 : fin;
    if (decimales > 0 && !zerosFinals) {
        while (fin[-1] == '0')
            --fin;
        if (fin[-1] == '.') --fin;
    }
    char texte[1 + plusLong + plusLong / 3];
    char* sortie = texte;
    // What rounds to zero has no sign.
    const bool estNul =
        std::all_of(static_cast<const char*>(chiffres), fin, [](char c) { return c == '0' || c == '.'; });
    if (nombre < 0 && !estNul) *sortie++ = '-';
    sortie = ecrisGroupes(sortie, chiffres, finEntiers - chiffres);
    if (fin > finEntiers) {
        *sortie++ = ',';
        sortie = std::copy(finEntiers + 1, fin, sortie);
    }
    return depuisLatin1(texte, sortie);
}

UniChaine UniChaine::DonneNombreFormatay(int nombre) {
    char chiffres[16] = {};
    const char* fin = std::to_chars(chiffres, chiffres + sizeof chiffres, nombre).ptr;
    const char* debut = chiffres;
    char texte[24];
    char* sortie = texte;
    if (*debut == '-') *sortie++ = *debut++;
    return depuisLatin1(texte, ecrisGroupes(sortie, debut, fin - debut));
}

} // namespace libvue
