#include <dossier/ImagesDeDossier.h>

#include <Composition.h>
#include <dossier/CarteImage.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/socle/UniChaine.h>

namespace galerie {

namespace {

const InscriptionSource<ImagesDeDossier> inscription{20};

/// "1 234 images", "1 image".
std::u16string nombreDe(std::size_t n, const char16_t* un, const char16_t* plusieurs) {
    const UniChaine chiffres = UniChaine::DonneNombreFormatay(static_cast<double>(n), false, 0);
    return chiffres.DonneChaine()->utf16() + u"\u00A0" + (n < 2 ? un : plusieurs);
}

} // namespace

ImagesDeDossier::ImagesDeDossier()
    : barre_(make<BarreDossier>()),
      reserve_(make<ReserveVignettes>(CarteImage::place())),
      lecture_(make<LectureDossier>()),
      essai_(make<ImagesEssai>()),
      fichiers_(make<NSMutableArray>()) {
    barre_->surLecture = [this](NSString* chemin) { montreDossier(chemin); };
    barre_->surAnnulation = [this] { annule(); };
    lecture_->surProgres = [this] { lectureAvance(); };
    lecture_->surFin = [this](LectureDossier::Fin fin) { lectureFinie(fin); };
    essai_->surProgres = [this] { peintureAvance(); };
    essai_->surFin = [this](BOOL bien) {
        if (bien) {
            lecture_->commence(ImagesEssai::dossier());
            return;
        }
        barre_->setTravaille(false);
        barre_->dis(u"Les paysages n’ont pas pu être écrits.");
    };
    reserve_->surArrivee = [this] {
        if (!lecture_->enCours() && !essai_->enCours()) disNombre();
    };
}

// What the page still holds may outlive the source.
ImagesDeDossier::~ImagesDeDossier() {
    barre_->surLecture = nullptr;
    barre_->surAnnulation = nullptr;
    reserve_->surArrivee = nullptr;
    essai_->annule();
    essai_->surProgres = nullptr;
    essai_->surFin = nullptr;
    lecture_->surFin = nullptr;
    lecture_->surProgres = nullptr;
    lecture_->annule();
}

Ref<NSArray> ImagesDeDossier::objets(NSUInteger nombre) {
    if (nombre >= fichiers_->count()) return fichiers_;
    auto premiers = make<NSMutableArray>();
    for (NSUInteger i = 0; i < nombre; ++i)
        premiers->addObject(fichiers_->objectAtIndex(i));
    return premiers;
}

const Class& ImagesDeDossier::classeVue() const { return classOf<CarteImage>(); }
Ref<NSString> ImagesDeDossier::nomNib() const { return CarteImage::ressource(); }

Ref<NSString> ImagesDeDossier::dit(NSObject* objet) const {
    const auto* fichier = as<FichierImage>(objet);
    return fichier ? fichier->nom() : u""_ns;
}

void ImagesDeDossier::commence() {
    if (!commence_) montreDossier(nullptr);
}

void ImagesDeDossier::attends() {
    NSApp()->drain_();
    reserve_->attends();
    NSApp()->drain_();
}

// The work.

void ImagesDeDossier::montreDossier(NSString* chemin) {
    const Ref<NSString> garde(chemin);
    commence_ = true;
    peintureCoupee_ = false;
    essai_->annule();
    lecture_->annule();
    barre_->travail()->setPart(0);
    barre_->setTravaille(true);
    const bool aPeindre = !chemin || chemin->length() == 0;
    const std::string dossier = aPeindre ? ImagesEssai::dossier() : garde->utf8();
    barre_->setChemin(NSString::fromUTF8(dossier));
    if (aPeindre && !ImagesEssai::sontLa()) {
        barre_->dis(u"Peinture des paysages…");
        essai_->commence();
        return;
    }
    barre_->dis(u"Lecture du dossier…");
    lecture_->commence(dossier);
}

void ImagesDeDossier::annule() {
    if (!essai_->enCours()) {
        lecture_->annule();
        return;
    }
    // What is painted already is worth a look.
    essai_->annule();
    peintureCoupee_ = true;
    lecture_->commence(ImagesEssai::dossier());
}

void ImagesDeDossier::peintureAvance() {
    barre_->travail()->setPart(static_cast<CGFloat>(essai_->faites()) / ImagesEssai::kNombre);
    barre_->dis(u"Peinture des paysages\u00A0: " + enTexte(essai_->faites())->utf16() + u" sur " +
                enTexte(ImagesEssai::kNombre)->utf16());
}

void ImagesDeDossier::lectureAvance() {
    barre_->travail()->avance();
    barre_->dis(u"Lecture du dossier\u00A0: " + nombreDe(lecture_->images().size(), u"image", u"images"));
}

void ImagesDeDossier::lectureFinie(LectureDossier::Fin fin) {
    const Ref<ImagesDeDossier> moi(this);
    fin_ = fin;
    barre_->setTravaille(false);
    fichiers_ = make<NSMutableArray>();
    if (fin == LectureDossier::Fin::impossible)
        barre_->dis(u"Ce dossier n’existe pas ou ne peut pas être lu.");
    else
        for (const std::string& chemin : lecture_->images())
            fichiers_->addObject(make<FichierImage>(chemin, reserve_));
    disNombre();
    if (surChangement) surChangement();
}

void ImagesDeDossier::disNombre() {
    if (fin_ == LectureDossier::Fin::impossible) return;
    const std::size_t n = fichiers_->count();
    std::u16string texte = n == 0 ? u"Aucune image dans ce dossier" : nombreDe(n, u"image", u"images");
    if (fin_ == LectureDossier::Fin::annulee) texte += u", lecture annulée";
    if (peintureCoupee_) texte += u", peinture annulée";
    if (const std::size_t m = reserve_->enAttente())
        texte += u" — " + nombreDe(m, u"vignette en chemin", u"vignettes en chemin");
    barre_->dis(texte);
}

} // namespace galerie
