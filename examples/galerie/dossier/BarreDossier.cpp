#include <dossier/BarreDossier.h>

#include <algorithm>
#include <cmath>

#include <Composition.h>
#include <libvue/platform/appkit/NSTextFieldCell.h>
#include <libvue/platform/graphics/NSParagraphStyle.h>

namespace galerie {

namespace {
constexpr CGFloat kLigne = 24, kBarre = 160, kEntreLignes = 6;
} // namespace

void BarreDossier::describe(ClassDescription<BarreDossier, KCFlippedView>& c) {
    c.answers<&BarreDossier::lis>("lis:");
    c.answers<&BarreDossier::paysages>("paysages:");
    c.answers<&BarreDossier::annule>("annule:");
}

BarreDossier::BarreDossier()
    : KCFlippedView({NSZeroPoint, {560, 2 * kLigne + kEntreLignes}}),
      titre_(etiquette(u"Dossier"_ns)),
      chemin_(make<NSTextField>(NSMakeRect(0, 0, 200, kLigne))),
      etat_(legende(u" "_ns)),
      dit_(u""_ns),
      travail_(make<BarreTravail>()) {
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
    etat_->cell()->setLineBreakMode(NSLineBreakByTruncatingTail);
    const std::initializer_list<NSView*> vues = {titre_, chemin_, lire_, paysages_, travail_, etat_, annuler_};
    for (NSView* v : vues)
        addSubview(v);
    setTravaille(false);
}

void BarreDossier::resizeSubviewsWithOldSize(const NSSize&) { place(); }

void BarreDossier::place() {
    const CGFloat large = bounds().size.width;
    const auto milieu = [](NSView* v, CGFloat x, CGFloat y, CGFloat largeur) {
        const CGFloat h = v->frame().size.height;
        v->setFrame({{x, y + std::round((kLigne - h) / 2)}, {std::max(0.0, largeur), h}});
    };
    const CGFloat wTitre = titre_->frame().size.width, wLire = lire_->frame().size.width,
                  wPaysages = paysages_->frame().size.width, wAnnuler = annuler_->frame().size.width;
    milieu(titre_, 0, 0, wTitre);
    milieu(paysages_, large - wPaysages, 0, wPaysages);
    milieu(lire_, large - wPaysages - kEcart - wLire, 0, wLire);
    milieu(chemin_, wTitre + kEcart, 0, large - wTitre - wPaysages - wLire - 3 * kEcart);
    const CGFloat y = kLigne + kEntreLignes;
    const bool occupe = !travail_->isHidden();
    milieu(travail_, 0, y, kBarre);
    milieu(annuler_, large - wAnnuler, y, wAnnuler);
    const CGFloat x = occupe ? kBarre + kEcart : 0;
    milieu(etat_, x, y, large - x - (occupe ? wAnnuler + kEcart : 0));
}

void BarreDossier::setTravaille(bool travaille) {
    travail_->setHidden(!travaille);
    annuler_->setHidden(!travaille);
    lire_->setEnabled(!travaille);
    paysages_->setEnabled(!travaille);
    place();
}

void BarreDossier::dis(std::u16string_view texte) {
    dit_ = NSString::from(texte);
    etat_->setStringValue(dit_);
}

void BarreDossier::lis(NSObject*) {
    const Ref<NSString> chemin = chemin_->stringValue()->stringByExpandingTildeInPath();
    if (surLecture) surLecture(chemin);
}
void BarreDossier::paysages(NSObject*) {
    if (surLecture) surLecture(nullptr);
}
void BarreDossier::annule(NSObject*) {
    if (surAnnulation) surAnnulation();
}

} // namespace galerie
