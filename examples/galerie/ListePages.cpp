#include <ListePages.h>

#include <cmath>

#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSTrackingArea.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/NSTextAttributes.h>

namespace galerie {

namespace {

constexpr CGFloat kHauteur = 30, kPas = 32, kRetrait = 10, kTexte = 12, kRayon = 6;

Ref<NSDictionary> attributs(NSFont* police, NSColor* couleur) {
    return NSDictionary::dictionaryWithObjectsAndKeys(
        {{NSFontAttributeName, police}, {NSForegroundColorAttributeName, couleur}});
}

} // namespace

ListePages::ListePages(std::vector<Ref<NSString>> noms) : noms_(std::move(noms)) {
    setFrameSize({0, kPas * static_cast<CGFloat>(noms_.size())});
    setFocusRingType(NSFocusRingTypeNone);
    setAccessibilityLabel(u"Pages"_ns);
}

NSRect ListePages::rectDeRangee(NSUInteger i) const {
    return NSMakeRect(kRetrait, kPas * static_cast<CGFloat>(i) + (kPas - kHauteur) / 2,
                      bounds().size.width - 2 * kRetrait, kHauteur);
}

NSUInteger ListePages::rangeeAuPoint(NSPoint p) const {
    for (NSUInteger i = 0; i < noms_.size(); ++i)
        if (NSPointInRect(p, rectDeRangee(i))) return i;
    return NSNotFound;
}

void ListePages::setChoisie(NSUInteger i) {
    if (i >= noms_.size() || i == choisie_) return;
    choisie_ = i;
    scrollRectToVisible(rectDeRangee(i));
    setNeedsDisplay(YES);
}

void ListePages::choisit(NSUInteger i) {
    if (i >= noms_.size() || i == choisie_) return;
    setChoisie(i);
    if (surChoix) surChoix(i);
}

void ListePages::setSurvolee(NSUInteger i) {
    if (i == survolee_) return;
    survolee_ = i;
    setNeedsDisplay(YES);
}

BOOL ListePages::becomeFirstResponder() {
    setNeedsDisplay(YES);
    return YES;
}

BOOL ListePages::resignFirstResponder() {
    setNeedsDisplay(YES);
    return YES;
}

void ListePages::drawRect(const NSRect&) {
    const bool active = window() && window()->firstResponder() == this && window()->isKeyWindow();
    for (NSUInteger i = 0; i < noms_.size(); ++i) {
        const NSRect r = rectDeRangee(i);
        const bool choisie = i == choisie_;
        if (choisie || i == survolee_) {
            Ref<NSColor> fond(choisie && active ? NSColor::alternateSelectedControlColor()
                                                : NSColor::secondarySelectedControlColor());
            if (!choisie) fond = fond->colorWithAlphaComponent(0.5);
            fond->setFill();
            NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(r, kRayon, kRayon)->fill();
        }
        NSColor* encre = choisie && active ? NSColor::alternateSelectedControlTextColor() : NSColor::controlTextColor();
        const auto nom = attributs(NSFont::systemFontOfSize(13), encre);
        const NSSize t = sizeWithAttributes(noms_[i], nom);
        drawAtPoint_withAttributes(noms_[i], {r.origin.x + kTexte, std::floor(NSMidY(r) - t.height / 2)}, nom);
        if (i >= 9) continue;
        const auto touche = NSString::stringWithFormat(u"Ctrl %d"_ns, static_cast<int>(i) + 1);
        const Ref<NSColor> pale =
            choisie && active ? encre->colorWithAlphaComponent(0.75) : Ref<NSColor>(NSColor::tertiaryLabelColor());
        const auto petit = attributs(NSFont::systemFontOfSize(10), pale);
        const NSSize s = sizeWithAttributes(touche, petit);
        drawAtPoint_withAttributes(
            touche, {NSMaxX(r) - kTexte - std::ceil(s.width), std::floor(NSMidY(r) - s.height / 2)}, petit);
    }
}

void ListePages::mouseDown(NSEvent* e) {
    if (window()) window()->makeFirstResponder(this);
    choisit(rangeeAuPoint(convertPoint_fromView(e->locationInWindow(), nullptr)));
}

void ListePages::mouseMoved(NSEvent* e) {
    setSurvolee(rangeeAuPoint(convertPoint_fromView(e->locationInWindow(), nullptr)));
}

void ListePages::mouseExited(NSEvent*) { setSurvolee(NSNotFound); }

void ListePages::updateTrackingAreas() {
    NSView::updateTrackingAreas();
    if (survol_) removeTrackingArea(survol_);
    survol_ = make<NSTrackingArea>(bounds(),
                                   NSTrackingMouseEnteredAndExited | NSTrackingMouseMoved |
                                       NSTrackingActiveInActiveApp | NSTrackingInVisibleRect,
                                   this, nullptr);
    addTrackingArea(survol_);
}

void ListePages::keyDown(NSEvent* e) {
    NSString* touches = e->charactersIgnoringModifiers();
    const unichar c = touches && touches->length() > 0 ? touches->characterAtIndex(0) : 0;
    switch (c) {
    case NSUpArrowFunctionKey:
        if (choisie_ > 0) choisit(choisie_ - 1);
        return;
    case NSDownArrowFunctionKey:
        choisit(choisie_ + 1);
        return;
    case NSHomeFunctionKey:
        choisit(0);
        return;
    case NSEndFunctionKey:
        choisit(noms_.size() - 1);
        return;
    default:
        NSView::keyDown(e);
    }
}

AccessibilityDescription ListePages::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"list"_ns;
    if (choisie_ < noms_.size()) d.value = noms_[choisie_];
    d.action = u"pick"_ns;
    return d;
}

} // namespace galerie
