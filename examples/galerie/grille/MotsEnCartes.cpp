#include <grille/MotsEnCartes.h>

#include <algorithm>
#include <sstream>
#include <string>

#include <ListeDeMots.h>
#include <grille/CarteVue.h>
#include <libvue/socle/UniChaine.h>

namespace galerie {

namespace {

/// For systems without a list of words.
constexpr const char* kPhrase = "portez ce vieux whisky au juge blond qui fume sur son île intérieure à côté de "
                                "l’alcôve ovoïde où les bûches se consument dans l’âtre";

const InscriptionSource<MotsEnCartes> inscription{10};

} // namespace

const NSArray& MotsEnCartes::mots() {
    if (mots_) return *mots_;
    const Ref<NSMutableArray> lus = NSMutableArray::array();
    const std::string liste = listeDeMots();
    std::istringstream mots(liste.empty() ? kPhrase : liste);
    for (std::string mot; std::getline(mots, mot, liste.empty() ? ' ' : '\n');)
        if (!mot.empty()) lus->addObject(NSString::fromUTF8(mot));
    mots_ = lus;
    return *mots_;
}

NSUInteger MotsEnCartes::auDebut() { return std::min(mots().count(), maximum()); }

Ref<NSArray> MotsEnCartes::objets(NSUInteger nombre) {
    const NSArray& m = mots();
    if (!cartes_) cartes_ = NSMutableArray::array();
    nombre = std::min(nombre, maximum());
    for (NSUInteger i = cartes_->count(); i < nombre; ++i)
        cartes_->addObject(make<Carte>(m.at<NSString>(i % m.count()), i + 1));
    return cartes_->subarrayWithRange({0, nombre});
}

const Class& MotsEnCartes::classeVue() const { return classOf<CarteVue>(); }

Ref<NSString> MotsEnCartes::dit(NSObject* objet) const {
    auto* carte = as<Carte>(objet);
    if (!carte) return u""_ns;
    const auto numero = UniChaine::DonneNombreFormatay(static_cast<int>(carte->numero()));
    return NSString::stringWithFormat(u"«\u00A0%@\u00A0», carte n° %@"_ns, carte->mot(), numero.DonneChaine());
}

} // namespace galerie
