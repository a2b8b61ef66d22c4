#include <dossier/VueDossier.h>

#include <algorithm>
#include <cmath>

#include <Composition.h>
#include <dossier/CarteImage.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSTextFieldCell.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/graphics/NSParagraphStyle.h>
#include <libvue/socle/UniChaine.h>

namespace galerie {

namespace {

constexpr CGFloat kLigne = 24, kBarre = 160;

/// "1 234 images", "1 image".
std::u16string nombreDe(std::size_t n, const char16_t* un, const char16_t* plusieurs) {
    const UniChaine chiffres = UniChaine::DonneNombreFormatay(static_cast<double>(n), false, 0);
    return chiffres.DonneChaine()->utf16() + u"\u00A0" + (n < 2 ? un : plusieurs);
}

Ref<NSTextField> ligneDeTexte() {
    auto l = legende(u" "_ns);
    l->cell()->setLineBreakMode(NSLineBreakByTruncatingTail);
    return l;
}

} // namespace

void VueDossier::describe(ClassDescription<VueDossier, KCFlippedView>& c) {
    c.answers<&VueDossier::lis>("lis:");
    c.answers<&VueDossier::paysages>("paysages:");
    c.answers<&VueDossier::annule>("annule:");
}

VueDossier::VueDossier()
    : titre_(etiquette(u"Dossier"_ns)),
      chemin_(make<NSTextField>(NSMakeRect(0, 0, 200, kLigne))),
      etat_(ligneDeTexte()),
      barre_(make<BarreTravail>()),
      defilement_(make<NSScrollView>(NSZeroRect)),
      grille_(make<KCCollectionView>()),
      reserve_(make<ReserveVignettes>(CarteImage::place())),
      lecture_(make<LectureDossier>()),
      essai_(make<ImagesEssai>()) {
    const auto bouton = [this](NSString* titre, const char* action) {
        auto b = NSButton::buttonWithTitle_target_action(titre, this, sel(action));
        b->sizeToFit();
        return b;
    };
    lire_ = bouton(u"Lire"_ns, "lis:");
    paysages_ = bouton(u"Paysages"_ns, "paysages:");
    paysages_->setToolTip(u"Un dossier d’images peintes pour l’occasion"_ns);
    annuler_ = bouton(u"Annuler"_ns, "annule:");
    chemin_->setTarget(this);
    chemin_->setAction(sel("lis:"));
    chemin_->setAccessibilityLabel(u"Dossier d’images"_ns);

    grille_->setClasseVueItem(&classOf<CarteImage>());
    grille_->setNomNib(CarteImage::ressource());
    grille_->setEspacement({8, 8});
    grille_->setDelegate(reserve_);
    grille_->awakeFromNib();
    grille_->setAutoresizingMask(NSViewWidthSizable);
    defilement_->setHasVerticalScroller(YES);
    defilement_->setBorderType(NSLineBorder);
    defilement_->setDocumentView(grille_);
    const std::initializer_list<NSView*> vues = {titre_, chemin_, lire_,    paysages_,
                                                 barre_, etat_,   annuler_, defilement_};
    for (NSView* v : vues)
        addSubview(v);

    lecture_->surProgres = [this] { lectureAvance(); };
    lecture_->surFin = [this](LectureDossier::Fin fin) { lectureFinie(fin); };
    essai_->surProgres = [this] {
        barre_->setPart(static_cast<CGFloat>(essai_->faites()) / ImagesEssai::kNombre);
        dis(u"Peinture des paysages\u00A0: " + enTexte(essai_->faites())->utf16() + u" sur " +
            enTexte(ImagesEssai::kNombre)->utf16());
    };
    essai_->surFin = [this](BOOL bien) {
        if (bien)
            lecture_->commence(ImagesEssai::dossier());
        else {
            travaille(false);
            dis(u"Les paysages n’ont pas pu être écrits.");
        }
    };
    reserve_->surArrivee = [this] {
        if (!lecture_->enCours() && !essai_->enCours()) disNombre();
    };
    travaille(false);
}

VueDossier::~VueDossier() {
    essai_->annule();
    essai_->surProgres = nullptr;
    essai_->surFin = nullptr;
    reserve_->surArrivee = nullptr;
    lecture_->surFin = nullptr;
    lecture_->surProgres = nullptr;
    lecture_->annule();
}

void VueDossier::viewDidMoveToWindow() {
    KCFlippedView::viewDidMoveToWindow();
    if (window() && !std::exchange(commence_, true)) montreDossier(nullptr);
}

// Placing.

void VueDossier::resizeSubviewsWithOldSize(const NSSize&) { place(); }

void VueDossier::place() {
    const NSSize t = bounds().size;
    const auto milieu = [](NSView* v, CGFloat x, CGFloat y, CGFloat largeur) {
        const CGFloat h = v->frame().size.height;
        v->setFrame({{x, y + std::round((kLigne - h) / 2)}, {std::max(0.0, largeur), h}});
    };
    const CGFloat wTitre = titre_->frame().size.width, wLire = lire_->frame().size.width,
                  wPaysages = paysages_->frame().size.width, wAnnuler = annuler_->frame().size.width;
    milieu(titre_, 0, 0, wTitre);
    milieu(paysages_, t.width - wPaysages, 0, wPaysages);
    milieu(lire_, t.width - wPaysages - kEcart - wLire, 0, wLire);
    milieu(chemin_, wTitre + kEcart, 0, t.width - wTitre - wPaysages - wLire - 3 * kEcart);
    const CGFloat y = kLigne + kEcart;
    const bool occupe = !barre_->isHidden();
    milieu(barre_, 0, y, kBarre);
    milieu(annuler_, t.width - wAnnuler, y, wAnnuler);
    const CGFloat x = occupe ? kBarre + kEcart : 0;
    milieu(etat_, x, y, t.width - x - (occupe ? wAnnuler + kEcart : 0));
    const CGFloat bas = y + kLigne + kEcart;
    defilement_->setFrame({{0, bas}, {t.width, std::max(0.0, t.height - bas)}});
    // The grid takes the width of its room from then on.
    if (grille_->frame().size.width != defilement_->contentSize().width)
        grille_->setFrameSize({defilement_->contentSize().width, grille_->frame().size.height});
}

// The work.

void VueDossier::travaille(bool oui) {
    barre_->setHidden(!oui);
    annuler_->setHidden(!oui);
    lire_->setEnabled(!oui);
    paysages_->setEnabled(!oui);
    place();
}

void VueDossier::dis(std::u16string_view texte) { etat_->setStringValue(NSString::from(texte)); }

void VueDossier::lis(NSObject*) { montreDossier(chemin_->stringValue()->stringByExpandingTildeInPath()); }
void VueDossier::paysages(NSObject*) { montreDossier(nullptr); }

void VueDossier::montreDossier(NSString* chemin) {
    const Ref<NSString> garde(chemin);
    commence_ = true;
    lecture_->annule();
    essai_->annule();
    barre_->setPart(0);
    travaille(true);
    const bool aPeindre = !chemin || chemin->length() == 0;
    chemin_->setStringValue(aPeindre ? NSString::fromUTF8(ImagesEssai::dossier()) : garde);
    if (aPeindre && !ImagesEssai::sontLa()) {
        dis(u"Peinture des paysages…");
        essai_->commence();
        return;
    }
    dis(u"Lecture du dossier…");
    lecture_->commence(aPeindre ? ImagesEssai::dossier() : garde->utf8());
}

void VueDossier::annule(NSObject*) {
    if (essai_->enCours()) {
        // What is there already is worth a look.
        essai_->annule();
        lecture_->commence(ImagesEssai::dossier());
        fin_ = LectureDossier::Fin::annulee;
        return;
    }
    lecture_->annule();
}

void VueDossier::lectureAvance() {
    barre_->avance();
    dis(u"Lecture du dossier\u00A0: " + nombreDe(lecture_->images().size(), u"image", u"images"));
}

void VueDossier::lectureFinie(LectureDossier::Fin fin) {
    fin_ = fin;
    travaille(false);
    if (fin == LectureDossier::Fin::impossible) {
        grille_->setDonnees(NSArray::array());
        dis(u"Ce dossier n’existe pas ou ne peut pas être lu.");
        return;
    }
    const auto donnees = make<NSMutableArray>();
    for (const std::string& chemin : lecture_->images())
        donnees->addObject(make<FichierImage>(chemin));
    grille_->setDonnees(donnees);
    disNombre();
}

void VueDossier::disNombre() {
    const std::size_t n = lecture_->images().size();
    if (fin_ == LectureDossier::Fin::impossible) return;
    std::u16string texte = n == 0 ? u"Aucune image dans ce dossier" : nombreDe(n, u"image", u"images");
    if (fin_ == LectureDossier::Fin::annulee) texte = texte + u", lecture annulée";
    if (const std::size_t m = reserve_->enAttente())
        texte = texte + u" — " + nombreDe(m, u"vignette en chemin", u"vignettes en chemin");
    dis(texte);
}

void VueDossier::attends() {
    NSApp()->drain_();
    reserve_->attends();
    NSApp()->drain_();
}

} // namespace galerie
