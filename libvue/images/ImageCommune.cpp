#include <libvue/images/ImageCommune.h>

#include <algorithm>
#include <utility>

#include <libvue/platform/foundation/NSBundle.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/socle/UniChaine.h>

namespace libvue {

ImageCommune::ImageCommune() : impl_(new ObjCImplImageCommune) {}

ImageCommune::ImageCommune(const UniChaine& nom) : ImageCommune() { Prends(nom); }

ImageCommune::ImageCommune(const ImageCommune& autre) : impl_(new ObjCImplImageCommune(*autre.impl_)) {}

ImageCommune& ImageCommune::operator=(const ImageCommune& autre) {
    if (this != &autre) impl_->image = autre.impl_->image;
    return *this;
}

ImageCommune::~ImageCommune() { delete impl_; }

void ImageCommune::Prends(const UniChaine& nom) {
    const UniChaine::Place point = nom.TrouveDernier('.');
    const NSInteger fin = point.trouvee ? point.position : nom.Longueur();
    const UniChaine type = point.trouvee ? nom.SousChaine(fin + 1) : UniChaine("png");

    const UniChaine::Place barre = nom.TrouveDernier('/');
    const UniChaine dossier = barre.trouvee ? nom.SousChaine(0, barre.position) : UniChaine();
    const NSInteger debut = barre.trouvee ? barre.position + 1 : 0;
    // A point in a folder's name may stand before the base begins: there is none then.
    const UniChaine base = nom.SousChaine(debut, std::max<NSInteger>(fin - debut, 0));

    const Ref<NSString> chemin = NSBundle::mainBundle()->pathForResource_ofType_inDirectory(
        base, type, barre.trouvee ? dossier.DonneChaine() : nullptr);
    Ref<NSImage> trouvee = NSImage::imageNamed(base);
    if (!trouvee) trouvee = NSImage::initWithContentsOfFile(chemin);
    impl_->image = std::move(trouvee);
}

void ImageCommune::Prends(ObjCImplImageCommune*& impl) { impl_->image = impl ? impl->image : nullptr; }

} // namespace libvue
