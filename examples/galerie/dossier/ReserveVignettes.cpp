#include <dossier/ReserveVignettes.h>

#include <libvue/platform/foundation/NSString.h>

namespace galerie {

namespace {

/// Crisp on every screen.
constexpr CGFloat kFinesse = 2;

std::size_t poids(const NSImage& image) {
    const NSSize t = image.size();
    return static_cast<std::size_t>(t.width * t.height * kFinesse * kFinesse * 4);
}

} // namespace

ReserveVignettes::ReserveVignettes(NSSize vignette, std::size_t octets)
    : chargeur_(make<ThumbnailLoader>()), taille_(vignette), plusOctets_(octets) {}

void ReserveVignettes::montre(FichierImage* fichier, NSView* carte) {
    fichier->carte = carte;
    if (fichier->etat != FichierImage::Etat::absente) return;
    if (const auto place = parChemin_.find(fichier->chemin()); place != parChemin_.end()) {
        fichier->vignette = place->second->image;
        fichier->etat = FichierImage::Etat::prete;
        octets_ -= place->second->octets;
        dernieres_.erase(place->second);
        parChemin_.erase(place);
        return;
    }
    fichier->etat = FichierImage::Etat::attendue;
    // The loader goes with this object, so nothing arrives after it.
    fichier->ticket = chargeur_->load(NSString::fromUTF8(fichier->chemin()), taille_, kFinesse,
                                      [this, f = Ref<FichierImage>(fichier)](NSImage* image, const std::string&) {
                                          recoit(f, image);
                                          if (f->carte) f->carte->setNeedsDisplay(YES);
                                          if (surArrivee) surArrivee();
                                      });
}

void ReserveVignettes::recoit(FichierImage* fichier, NSImage* image) {
    fichier->ticket = 0;
    fichier->vignette = image;
    fichier->etat = image ? FichierImage::Etat::prete : FichierImage::Etat::illisible;
}

void ReserveVignettes::lisMaintenant(FichierImage* fichier) {
    if (fichier->etat != FichierImage::Etat::attendue) return;
    chargeur_->cancel(fichier->ticket);
    recoit(fichier, ThumbnailLoader::read(NSString::fromUTF8(fichier->chemin()), taille_, kFinesse, nullptr));
}

void ReserveVignettes::lache(FichierImage* fichier, const NSView* carte) {
    // A card that goes is not read through its weak reference any more.
    if (fichier->carte && fichier->carte != carte) return;
    fichier->carte = nullptr;
    if (fichier->etat == FichierImage::Etat::attendue) {
        chargeur_->cancel(fichier->ticket);
        fichier->ticket = 0;
        fichier->etat = FichierImage::Etat::absente;
    } else if (fichier->etat == FichierImage::Etat::prete) {
        garde(fichier->chemin(), fichier->vignette);
        fichier->vignette = nullptr;
        fichier->etat = FichierImage::Etat::absente;
    }
}

void ReserveVignettes::garde(const std::string& chemin, NSImage* image) {
    const std::size_t octets = poids(*image);
    if (parChemin_.count(chemin) != 0 || octets > plusOctets_) return;
    dernieres_.push_front({chemin, image, octets});
    parChemin_.emplace(chemin, dernieres_.begin());
    octets_ += octets;
    while (octets_ > plusOctets_) {
        octets_ -= dernieres_.back().octets;
        parChemin_.erase(dernieres_.back().chemin);
        dernieres_.pop_back();
    }
}

} // namespace galerie
