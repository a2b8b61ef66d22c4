#pragma once

#include <functional>
#include <list>
#include <string>
#include <unordered_map>

#include <dossier/FichierImage.h>
#include <libvue/platform/graphics/ThumbnailLoader.h>

namespace galerie {

/// The thumbnails of the files that cards show, and of those that they showed last, up to so many bytes.
class ReserveVignettes : public NSObject {
public:
    static void describe(ClassDescription<ReserveVignettes>&) {}
    /// In points.
    explicit ReserveVignettes(NSSize vignette, std::size_t octets = std::size_t{48} << 20);

    /// The file comes into view in that card, which is redrawn once the thumbnail is there.
    void montre(FichierImage* fichier, NSView* carte);
    /// Reads at once the thumbnail that was asked for and has not come: for paper, on which nothing is drawn later.
    void lisMaintenant(FichierImage* fichier);
    /// It leaves the card: what was asked for is taken back, what is there becomes one of the last ones.
    void lache(FichierImage* fichier, const NSView* carte);
    /// Blocks until everything that was asked for has been read.
    void attends() { chargeur_->wait(); }

    /// What is kept beside the cards.
    [[nodiscard]] std::size_t octets() const noexcept { return octets_; }
    [[nodiscard]] std::size_t enAttente() const noexcept { return chargeur_->waiting(); }

    /// A thumbnail has come, or will not.
    std::function<void()> surArrivee;

private:
    struct Derniere {
        std::string chemin;
        Ref<NSImage> image;
        std::size_t octets;
    };
    static void recoit(FichierImage* fichier, NSImage* image);
    void garde(const std::string& chemin, NSImage* image);

    Ref<ThumbnailLoader> chargeur_;
    NSSize taille_;
    std::size_t plusOctets_, octets_ = 0;
    std::list<Derniere> dernieres_; ///< the newest first
    std::unordered_map<std::string, std::list<Derniere>::iterator> parChemin_;
};

} // namespace galerie
