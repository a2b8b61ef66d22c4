#include <disposition/Marques.h>

#include <disposition/Scene.h>
#include <libvue/platform/appkit/NSBox.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/Palette.h>

namespace galerie {

namespace {

void remplit(const NSRect& r, NSColor* couleur) {
    if (NSIsEmptyRect(r)) return;
    couleur->setFill();
    NSRectFillUsingOperation(r, NSCompositeSourceOver);
}

} // namespace

void Marques::drawRect(const NSRect&) {
    NSView* choisie = scene_.choisie();
    if (!choisie || choisie->isHiddenOrHasHiddenAncestor()) return;
    dessineEcarts();
    const bool active = window() && window()->isKeyWindow() && window()->firstResponder() == superview();
    const NSRect r = NSInsetRect(convertRect_fromView(choisie->bounds(), choisie), -2.5, -2.5);
    const auto anneau = NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(r, 8, 8);
    if (active) {
        NSColor::keyboardFocusIndicatorColor()->setStroke();
        anneau->setLineWidth(5);
        anneau->stroke();
    }
    NSColor::controlAccentColor()->setStroke();
    anneau->setLineWidth(2);
    anneau->stroke();
}

void Marques::dessineEcarts() const {
    const Cadre* c = scene_.conteneur();
    if (!c) return;
    const bool deCote = c->lineaire()->direction() == 0;
    const Ref<NSColor> ecart = NSColor::controlAccentColor()->colorWithAlphaComponent(0.22);
    const Ref<NSColor> supplement = NSColor::systemColor(SystemColor::warning)->colorWithAlphaComponent(0.9);
    const NSRect tout = c->disposition()->bounds();
    const NSView* avant = nullptr;
    const NSView* visibleAvant = nullptr;
    for (const NSView* v : c->disposition()->subviews()) {
        if (!v->isHidden()) {
            if (visibleAvant) {
                const NSRect a = visibleAvant->frame(), b = v->frame();
                NSRect vide = deCote ? NSMakeRect(NSMaxX(a), tout.origin.y, NSMinX(b) - NSMaxX(a), tout.size.height)
                                     : NSMakeRect(tout.origin.x, NSMaxY(a), tout.size.width, NSMinY(b) - NSMaxY(a));
                if (!deCote && as<const NSBox>(v) && as<const NSTextField>(avant)) {
                    NSRect trois;
                    NSDivideRect(vide, &trois, &vide, 3, NSMaxYEdge);
                    remplit(convertRect_fromView(trois, c->disposition()), supplement);
                }
                remplit(convertRect_fromView(vide, c->disposition()), ecart);
            }
            visibleAvant = v;
        }
        avant = v;
    }
}

} // namespace galerie
