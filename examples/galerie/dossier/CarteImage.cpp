#include <dossier/CarteImage.h>

#include <cmath>

#include <libvue/platform/appkit/NSNib.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSParagraphStyle.h>
#include <libvue/platform/graphics/NSStringDrawing.h>

namespace galerie {

namespace {

/// Around the card, empty: on paper the views of a grid lie over one another by nearly as much.
constexpr CGFloat kMarge = 11;
constexpr CGFloat kBord = 5, kNom = 18, kRayon = 8;

Ref<NSDictionary> attributs(NSColor* couleur) {
    const auto style = make<NSMutableParagraphStyle>();
    style->setAlignment(NSCenterTextAlignment);
    style->setLineBreakMode(NSLineBreakByTruncatingMiddle);
    return NSDictionary::dictionaryWithObjectsAndKeys(
        {{NSFontAttributeName, NSFont::systemFontOfSize(NSFont::smallSystemFontSize())},
         {NSForegroundColorAttributeName, couleur},
         {NSParagraphStyleAttributeName, style}});
}

Ref<NSBezierPath> arrondi(const NSRect& r, CGFloat rayon) {
    return NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(r, rayon, rayon);
}

} // namespace

void CarteImage::describe(ClassDescription<CarteImage, NSView>& c) { decritVueItem<CarteImage>(c); }

CarteImage::CarteImage() : NSView({NSZeroPoint, taille()}) {}
CarteImage::~CarteImage() { lache(); }

NSString* CarteImage::ressource() {
    static constexpr ConstantString nom{u"CarteImage"};
    NSNib::registerBuilder(nom.get(), [](NSObject*, NSMutableArray* objets) {
        objets->addObject(make<CarteImage>());
        return YES;
    });
    return nom.get();
}

void CarteImage::montre() {
    if (fichier_ && !isHidden()) fichier_->reserve()->montre(fichier_, this);
}
void CarteImage::lache() {
    if (fichier_) fichier_->reserve()->lache(fichier_, this);
}

void CarteImage::setObjetConnectay(NSObject* objet) {
    lache();
    fichier_ = as<FichierImage>(objet);
    montre();
    setNeedsDisplay(YES);
}

void CarteImage::setHidden(BOOL cache) {
    if (cache == isHidden()) return;
    NSView::setHidden(cache);
    cache ? lache() : montre();
}

void CarteImage::drawRect(const NSRect&) {
    if (!fichier_) return;
    // Another grid, one that prints, may have given it back.
    if (fichier_->etat == FichierImage::Etat::absente) montre();
    // A page is drawn once, and what comes later is not on it.
    if (!NSGraphicsContext::currentContextDrawingToScreen()) fichier_->reserve()->lisMaintenant(fichier_);
    const NSRect b = NSInsetRect(bounds(), kMarge, kMarge);
    if (fichier_->estChoisi()) {
        NSColor::controlAccentColor()->colorWithAlphaComponent(0.16)->setFill();
        arrondi(b, kRayon)->fill();
        NSColor::controlAccentColor()->setStroke();
        arrondi(NSInsetRect(b, 0.5, 0.5), kRayon - 0.5)->stroke();
    }
    const NSSize p = place();
    const NSRect cadre{{NSMinX(b) + kBord, NSMaxY(b) - kBord - p.height}, p};
    if (const Ref<NSImage> image = fichier_->vignette) {
        const NSSize t = image->size();
        const NSRect ou{{std::round(NSMidX(cadre) - t.width / 2), std::round(NSMidY(cadre) - t.height / 2)}, t};
        image->drawInRect_fromRect_operation_fraction(ou, NSZeroRect, NSCompositeSourceOver, 1);
        NSColor::labelColor()->colorWithAlphaComponent(0.14)->setStroke();
        NSBezierPath::bezierPathWithRect(NSInsetRect(ou, 0.5, 0.5))->stroke();
    } else
        dessineManque(cadre, fichier_->etat == FichierImage::Etat::illisible);
    const NSRect ligne{{NSMinX(b) + kBord, NSMinY(b) + kBord - 2}, {p.width, kNom}};
    drawWithRect_options_attributes(
        fichier_->nom(), ligne, NSStringDrawingUsesLineFragmentOrigin | NSStringDrawingTruncatesLastVisibleLine,
        attributs(fichier_->estChoisi() ? NSColor::labelColor() : NSColor::secondaryLabelColor()));
}

/// A faint field while the picture is on its way; a torn picture and a word where there is none.
void CarteImage::dessineManque(const NSRect& cadre, bool illisible) const {
    NSColor::labelColor()->colorWithAlphaComponent(illisible ? 0.04 : 0.06)->setFill();
    arrondi(cadre, 6)->fill();
    if (!illisible) return;
    const auto bord = arrondi(NSInsetRect(cadre, 0.5, 0.5), 5.5);
    const CGFloat tirets[] = {4, 3};
    bord->setLineDash_count_phase(tirets, 2, 0);
    NSColor::tertiaryLabelColor()->setStroke();
    bord->stroke();

    constexpr CGFloat kLarge = 40, kHaut = 30;
    const NSPoint o{std::round(NSMidX(cadre) - kLarge / 2), std::round(NSMidY(cadre) - kHaut / 2 + 9)};
    const auto image = arrondi({o, {kLarge, kHaut}}, 3);
    image->setLineWidth(1.5);
    NSColor::secondaryLabelColor()->setStroke();
    image->stroke();
    const auto montagne = NSBezierPath::bezierPath();
    montagne->moveToPoint({o.x + 5, o.y + 6});
    montagne->lineToPoint({o.x + 14, o.y + 18});
    montagne->lineToPoint({o.x + 20, o.y + 11});
    montagne->lineToPoint({o.x + 25, o.y + 15});
    montagne->lineToPoint({o.x + 35, o.y + 6});
    montagne->setLineWidth(1.5);
    montagne->stroke();
    // The stroke through it stands clear of what it strikes out.
    const auto barre = NSBezierPath::bezierPath();
    barre->moveToPoint({o.x - 4, o.y - 4});
    barre->lineToPoint({o.x + kLarge + 4, o.y + kHaut + 4});
    barre->setLineCapStyle(NSRoundLineCapStyle);
    barre->setLineWidth(5);
    NSColor::windowBackgroundColor()->setStroke();
    barre->stroke();
    barre->setLineWidth(1.5);
    NSColor::secondaryLabelColor()->setStroke();
    barre->stroke();
    const NSRect mot{{cadre.origin.x, o.y - 26}, {cadre.size.width, kNom}};
    drawInRect_withAttributes(u"Illisible"_ns, mot, attributs(NSColor::secondaryLabelColor()));
}

AccessibilityDescription CarteImage::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"image"_ns;
    if (fichier_) {
        d.label = fichier_->nom();
        if (fichier_->etat == FichierImage::Etat::illisible) d.value = u"illisible"_ns;
    }
    return d;
}

} // namespace galerie
