#include <grille/CarteVue.h>

#include <libvue/collections/KCCollectionView.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/socle/UniChaine.h>

namespace galerie {

namespace {
constexpr CGFloat kRayon = 7;
/// Around the card, empty: on paper the views of a grid lie over one another by nearly as much.
constexpr CGFloat kMarge = 11;
const ClassRegistration<CarteVue> enregistrement;
} // namespace

void Carte::describe(ClassDescription<Carte>& c) { c.answers<&Carte::setSelected>(op::setSelected); }

void Carte::setSelected(BOOL choisie) {
    choisie_ = choisie;
    if (vue_) vue_->montre();
}

void CarteVue::describe(ClassDescription<CarteVue, NSView>& c) {
    decritVueItem(c);
    c.key<&CarteVue::titre, &CarteVue::setTitre>("titre");
    c.key<&CarteVue::detail, &CarteVue::setDetail>("detail");
}

CarteVue::~CarteVue() {
    if (carte_ && carte_->vue() == this) carte_->setVue(nullptr);
}

void CarteVue::setObjetConnectay(NSObject* objet) {
    if (carte_ && carte_->vue() == this) carte_->setVue(nullptr);
    carte_ = as<Carte>(objet);
    if (!carte_) return;
    carte_->setVue(this);
    if (titre_) titre_->setStringValue(carte_->mot());
    if (detail_) {
        const auto nombre = UniChaine::DonneNombreFormatay(static_cast<int>(carte_->numero()));
        detail_->setStringValue(NSString::stringWithFormat(u"n° %@"_ns, nombre.DonneChaine()));
    }
    montre();
}

void CarteVue::montre() {
    const BOOL choisie = carte_ && carte_->estChoisie();
    if (titre_) titre_->setTextColor(choisie ? NSColor::alternateSelectedControlTextColor() : NSColor::labelColor());
    if (detail_)
        detail_->setTextColor(choisie ? NSColor::alternateSelectedControlTextColor() : NSColor::secondaryLabelColor());
    setNeedsDisplay(YES);
}

void CarteVue::drawRect(const NSRect&) {
    const NSRect r = NSInsetRect(bounds(), kMarge + 0.5, kMarge + 0.5);
    const Ref<NSBezierPath> forme = NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(r, kRayon, kRayon);
    if (carte_ && carte_->estChoisie()) {
        NSColor::alternateSelectedControlColor()->setFill();
        forme->fill();
        return;
    }
    NSColor::textBackgroundColor()->setFill();
    forme->fill();
    NSColor::separatorColor()->setStroke();
    forme->stroke();
}

NSView* CarteVue::hitTest(NSPoint p) { return NSView::hitTest(p) ? this : nullptr; }

AccessibilityDescription CarteVue::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"cell"_ns;
    if (carte_) d.label = carte_->mot();
    return d;
}

} // namespace galerie
