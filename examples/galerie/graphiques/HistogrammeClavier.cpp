#include <graphiques/HistogrammeClavier.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/NSTextAttributes.h>

namespace galerie {

namespace {

constexpr CGFloat kMargeBandes = 5, kSousAxe = 24, kRetrait = 6;
constexpr NSInteger kBandesVides = 5;

} // namespace

NSInteger HistogrammeClavier::bandesAvecDonnees() const {
    return nombreSections() > 0 ? static_cast<NSInteger>(donnees()->count()) / nombreSections() : 0;
}

CGFloat HistogrammeClavier::hauteurNaturelle() const {
    const NSInteger bandes = bandesAvecDonnees();
    const auto n = static_cast<CGFloat>(bandes ? bandes : kBandesVides);
    return n * largeurBandes() + (n - 1) * espacementBandes() + 2 * kMargeBandes + kSousAxe;
}

BOOL HistogrammeClavier::becomeFirstResponder() {
    if (superview()) superview()->setNeedsDisplay(YES);
    return YES;
}

BOOL HistogrammeClavier::resignFirstResponder() {
    if (superview()) superview()->setNeedsDisplay(YES);
    return YES;
}

void HistogrammeClavier::mouseDown(NSEvent* e) {
    if (window()) window()->makeFirstResponder(this);
    KCHistogramme::mouseDown(e);
}

void HistogrammeClavier::choisis(NSInteger bande) {
    const NSInteger n = bandesAvecDonnees();
    if (n == 0) return;
    bande = std::clamp<NSInteger>(bande, 0, n - 1);
    setClickedBar(bande);
    const CGFloat pas = largeurBandes() + espacementBandes(), haut = static_cast<CGFloat>(bande) * pas;
    // With the last one comes the axis.
    scrollRectToVisible({{0, haut}, {1, bande == n - 1 ? bounds().size.height - haut : pas + kMargeBandes}});
    if (action()) NSApp()->sendAction_to_from(action(), target(), this);
}

void HistogrammeClavier::keyDown(NSEvent* e) {
    NSString* touches = e->charactersIgnoringModifiers();
    const unichar c = touches && touches->length() > 0 ? touches->characterAtIndex(0) : 0;
    switch (c) {
    case NSDownArrowFunctionKey:
        return choisis(clickedBar() + 1);
    case NSUpArrowFunctionKey:
        return choisis(clickedBar() - 1);
    case NSHomeFunctionKey:
        return choisis(0);
    case NSEndFunctionKey:
        return choisis(bandesAvecDonnees() - 1);
    default:
        KCHistogramme::keyDown(e);
    }
}

void HistogrammeClavier::drawRect(const NSRect&) {
    // A chart scales to the width that it is handed: always the whole one, be a part of it dirty or all.
    KCHistogramme::drawRect(bounds());
}

BOOL HistogrammeClavier::aLeClavier() const {
    return window() && window()->firstResponder() == this && window()->isKeyWindow();
}

NomsDeBandes::NomsDeBandes(KCHistogramme* histogramme) : NSView(NSZeroRect), histogramme_(histogramme) {}

void NomsDeBandes::setChoisie(NSInteger bande) {
    choisie_ = bande;
    setNeedsDisplay(YES);
}

void NomsDeBandes::drawRect(const NSRect&) {
    NSArray* noms = histogramme_->legendesAccessibles();
    if (!noms) return;
    const CGFloat largeur = bounds().size.width, epais = histogramme_->largeurBandes();
    const CGFloat pas = epais + histogramme_->espacementBandes();
    // Names too close to each other to be read are thinned out.
    const auto saut =
        std::max<NSUInteger>(1, static_cast<NSUInteger>(std::ceil(std::min(11 / std::max(pas, 0.1), 1e4))));
    for (NSUInteger i = 0; i < noms->count(); ++i) {
        const bool choisie = static_cast<NSInteger>(i) == choisie_;
        if (i % saut && !choisie) continue;
        const Ref<NSFont> police = choisie ? NSFont::boldSystemFontOfSize(NSFont::smallSystemFontSize())
                                           : NSFont::systemFontOfSize(NSFont::smallSystemFontSize());
        const auto attributs = NSDictionary::dictionaryWithObjectsAndKeys(
            {{NSFontAttributeName, police},
             {NSForegroundColorAttributeName, choisie ? NSColor::labelColor() : NSColor::secondaryLabelColor()}});
        const auto* nom = noms->at<NSString>(i);
        const NSSize taille = sizeWithAttributes(nom, attributs);
        const CGFloat milieu = kMargeBandes + static_cast<CGFloat>(i) * pas + epais / 2;
        drawAtPoint_withAttributes(nom, {largeur - kRetrait - taille.width, std::round(milieu - taille.height / 2)},
                                   attributs);
    }
}

} // namespace galerie
