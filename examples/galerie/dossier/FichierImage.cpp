#include <dossier/FichierImage.h>

#include <dossier/ReserveVignettes.h>
#include <libvue/collections/KCCollectionView.h>

namespace galerie {

void FichierImage::describe(ClassDescription<FichierImage>& c) {
    c.answers<&FichierImage::setSelected>(op::setSelected);
}

FichierImage::FichierImage(std::string chemin, ReserveVignettes* reserve)
    : chemin_(std::move(chemin)), reserve_(reserve) {}
FichierImage::~FichierImage() = default;

Ref<NSString> FichierImage::nom() const {
    const std::size_t barre = chemin_.rfind('/');
    return NSString::fromUTF8(barre == std::string::npos ? chemin_ : chemin_.substr(barre + 1));
}

void FichierImage::setSelected(BOOL choisi) {
    if (choisi == choisi_) return;
    choisi_ = choisi;
    if (carte) carte->setNeedsDisplay(YES);
}

} // namespace galerie
