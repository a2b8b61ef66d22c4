#include <disposition/Feuilles.h>

#include <algorithm>
#include <cmath>

#include <Composition.h>
#include <libvue/platform/appkit/NSBox.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/NSTextAttributes.h>
#include <libvue/platform/graphics/Palette.h>

namespace galerie {

namespace {

NSColor* couleurDeTeinte(NSUInteger teinte) {
    constexpr SystemColor teintes[] = {SystemColor::accent, SystemColor::success, SystemColor::warning};
    return NSColor::systemColor(teintes[teinte % std::size(teintes)]);
}

/// In the middle of the rectangle, one line, where it fits in height.
void dessineAuMilieu(const NSString* texte, NSFont* police, NSColor* couleur, const NSRect& r) {
    const auto attributs = NSDictionary::dictionaryWithObjectsAndKeys(
        {{NSFontAttributeName, police}, {NSForegroundColorAttributeName, couleur}});
    const NSSize t = sizeWithAttributes(texte, attributs);
    if (t.height > r.size.height + 2) return;
    const CGFloat x = r.origin.x + std::max(4.0, std::floor((r.size.width - t.width) / 2));
    drawAtPoint_withAttributes(texte, {x, std::floor(NSMidY(r) - t.height / 2)}, attributs);
}

} // namespace

Pastille::Pastille(NSString* nom, NSUInteger teinte, NSSize taille)
    : NSView({NSZeroPoint, taille}), nom_(nom), teinte_(teinte) {}

void Pastille::setNom(NSString* nom) {
    nom_ = nom;
    setNeedsDisplay(YES);
}

// The size is written on it, so another size is another picture.
void Pastille::setFrame(const NSRect& cadre) {
    if (!NSEqualSizes(cadre.size, frame().size)) setNeedsDisplay(YES);
    NSView::setFrame(cadre);
}
void Pastille::setFrameSize(const NSSize& taille) {
    if (!NSEqualSizes(taille, frame().size)) setNeedsDisplay(YES);
    NSView::setFrameSize(taille);
}

void Pastille::drawRect(const NSRect&) {
    NSColor* couleur = couleurDeTeinte(teinte_);
    const NSRect b = bounds();
    const auto forme = NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(NSInsetRect(b, 0.5, 0.5), 5, 5);
    couleur->colorWithAlphaComponent(0.2)->setFill();
    forme->fill();
    couleur->colorWithAlphaComponent(0.65)->setStroke();
    forme->stroke();
    const auto mesure =
        NSString::stringWithFormat(u"%@ × %@"_ns, enTexte(b.size.width).get(), enTexte(b.size.height).get());
    const auto police = NSFont::systemFontOfSize(12), petite = NSFont::systemFontOfSize(10);
    if (b.size.height >= 36 && b.size.width >= 56) {
        const CGFloat milieu = std::floor(NSMidY(b));
        dessineAuMilieu(nom_, police, NSColor::labelColor(), NSMakeRect(0, milieu - 17, b.size.width, 18));
        dessineAuMilieu(mesure, petite, NSColor::secondaryLabelColor(), NSMakeRect(0, milieu + 1, b.size.width, 14));
    } else
        dessineAuMilieu(nom_, police, NSColor::labelColor(), b);
}

AccessibilityDescription Pastille::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"group"_ns;
    d.label = nom_;
    return d;
}

BOOL ChampFeuille::becomeFirstResponder() {
    if (surEntree) surEntree(this);
    return NSTextField::becomeFirstResponder();
}

void ChampFeuille::mouseDown(NSEvent* e) {
    if (surEntree) surEntree(this);
    NSTextField::mouseDown(e);
}

void ChampFeuille::textDidChange(NSNotification* n) {
    NSTextField::textDidChange(n);
    if (surEntree) surEntree(this);
}

Ref<NSView> fabriqueFeuille(GenreFeuille genre, NSString* nom, NSUInteger teinte, NSSize taille) {
    Ref<NSView> feuille;
    switch (genre) {
    case GenreFeuille::pastille:
        return make<Pastille>(nom, teinte, taille);
    case GenreFeuille::etiquette:
        feuille = etiquette(nom);
        break;
    case GenreFeuille::champ:
        feuille = make<ChampFeuille>(NSZeroRect);
        static_cast<ChampFeuille*>(feuille.get())->setStringValue(nom);
        break;
    case GenreFeuille::boite:
        feuille = make<NSBox>(NSZeroRect);
        static_cast<NSBox*>(feuille.get())->setTitleFont(NSFont::systemFontOfSize(NSFont::smallSystemFontSize()));
        static_cast<NSBox*>(feuille.get())->setTitle(nom);
        break;
    }
    feuille->setFrameSize(taille);
    return feuille;
}

Ref<NSString> nomDeFeuille(const NSView* feuille) {
    if (auto* p = as<const Pastille>(feuille)) return p->nom();
    if (auto* b = as<const NSBox>(feuille)) return b->title();
    if (auto* c = as<const NSTextField>(feuille)) return c->stringValue();
    return NSString::string();
}

void nommeFeuille(NSView* feuille, NSString* nom) {
    if (auto* p = as<Pastille>(feuille))
        p->setNom(nom);
    else if (auto* b = as<NSBox>(feuille))
        b->setTitle(nom);
    else if (auto* c = as<NSTextField>(feuille))
        c->setStringValue(nom);
}

} // namespace galerie
