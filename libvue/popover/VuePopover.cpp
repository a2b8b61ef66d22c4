#include <libvue/popover/VuePopover.h>

#include <libvue/platform/appkit/BalloonDrawing.h>
#include <libvue/platform/appkit/NSScreen.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/popover/ContourPopover.h>
#include <libvue/popover/KCPopover.h>

namespace libvue {

static const ClassRegistration<VuePopover> enregistrement;

namespace {

constexpr CGFloat kAlphaReflet = 0.95, kAlphaBordureInactive = 0.2;
constexpr BalloonDrawing::Shadow kOmbre{.blur = 8, .drop = 2, .alpha = 0.26};
/// From the view's edge to where its fill covers everything, corners too.
constexpr CGFloat kRetraitCouvert = kRetraitInterieur + 2;

} // namespace

void VuePopover::describe(ClassDescription<VuePopover, NSView>&) {}

VuePopover::~VuePopover() = default;

KCPopover* VuePopover::popover() const noexcept { return popover_; }
void VuePopover::setPopover(KCPopover* popover) { popover_ = popover; }

NSBezierPath* VuePopover::contourExterieur() {
    if (!contourExterieur_)
        contourExterieur_ = contourAvecRectInterieur(NSInsetRect(bounds(), kRetraitExterieur, kRetraitExterieur));
    return contourExterieur_;
}

NSBezierPath* VuePopover::contourInterieur() {
    if (!contourInterieur_)
        contourInterieur_ = contourAvecRectInterieur(NSInsetRect(bounds(), kRetraitInterieur, kRetraitInterieur));
    return contourInterieur_;
}

void VuePopover::setContourExterieur(NSBezierPath* contour) { contourExterieur_ = contour; }
void VuePopover::setContourInterieur(NSBezierPath* contour) { contourInterieur_ = contour; }

void VuePopover::invalidateContour() {
    setContourExterieur(nullptr);
    setContourInterieur(nullptr);
    setNeedsDisplay(YES);
}

void VuePopover::setBounds(const NSRect& bounds) {
    invalidateContour();
    NSView::setBounds(bounds);
}

NSRect VuePopover::ancreVueDIci() {
    const Ref<KCPopover> p = popover_.ref();
    const NSView* vue = p ? p->vueAncre() : nullptr;
    const NSWindow* fenetreAncre = vue ? vue->window() : nullptr;
    const NSScreen* ecran = fenetreAncre ? fenetreAncre->screen() : nullptr;
    if (!ecran || !window()) return NSZeroRect;
    NSRect a = vue->convertRect_toView(p->rectAncre(), nullptr);
    a.origin = fenetreAncre->convertBaseToScreen(a.origin);
    // Only the part on a usable part of the screen counts.
    a = NSIntersectionRect(a, ecran->visibleFrame());
    a.origin = window()->convertScreenToBase(a.origin);
    return convertRect_fromView(a, nullptr);
}

Ref<NSBezierPath> VuePopover::contourAvecRectInterieur(const NSRect& r) {
    const NSRect ancre = ancreVueDIci();
    if (NSIsEmptyRect(ancre))
        return NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(r, kLongueurCoin, kLongueurCoin);
    Ref<NSBezierPath> chemin = NSBezierPath::bezierPath();
    const ContourPopover contour = contourPopover(r, ancre, bounds(), popover_->edgeTemporaire());
    for (const ElementContour& e : contour.elements()) {
        switch (e.sorte) {
        case ElementContour::Sorte::debut:
            chemin->moveToPoint(e.point);
            break;
        case ElementContour::Sorte::ligne:
            chemin->lineToPoint(e.point);
            break;
        case ElementContour::Sorte::courbe:
            chemin->curveToPoint_controlPoint1_controlPoint2(e.point, e.controle, e.controle);
            break;
        case ElementContour::Sorte::fermeture:
            chemin->closePath();
            break;
        }
    }
    return chemin;
}

void VuePopover::drawRect(const NSRect&) {
    const Ref<KCPopover> p = popover_.ref();
    if (!p || !p->attachay()) return;
    const NSWindow* w = window();
    const bool active = w && (w->isKeyWindow() || (w->parentWindow() && w->parentWindow()->isKeyWindow()));
    Ref<NSColor> bordure(p->couleurBordure());
    if (!active) bordure = bordure->colorWithAlphaComponent(bordure->alphaComponent() * kAlphaBordureInactive);
    const Ref<NSColor> fond(p->couleurFond()), reflet = NSColor::colorWithCalibratedWhite_alpha(1, kAlphaReflet);
    const BalloonDrawing::Line traits[] = {{contourInterieur(), reflet}, {contourExterieur(), bordure}};
    // The room round the outline is there for its shadow.
    drawBalloon(w, {bounds().size, NSInsetRect(bounds(), kRetraitCouvert, kRetraitCouvert), contourInterieur(), fond,
                    traits, kOmbre});
}

} // namespace libvue
