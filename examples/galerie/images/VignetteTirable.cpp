#include <images/VignetteTirable.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include <libvue/platform/appkit/NSCursor.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSImage.h>

namespace galerie {

namespace {

constexpr CGFloat kMoindre = 0.02, kPas = 0.02;

NSRect tenue(NSRect r) {
    r.size.width = std::clamp(r.size.width, 0.0, 1.0);
    r.size.height = std::clamp(r.size.height, 0.0, 1.0);
    r.origin.x = std::clamp(r.origin.x, 0.0, 1 - r.size.width);
    r.origin.y = std::clamp(r.origin.y, 0.0, 1 - r.size.height);
    return r;
}

} // namespace

VignetteTirable::VignetteTirable(NSImage* image, const NSRect& region)
    : VignetteVisuel({NSZeroPoint, image->size()}), donnees_(image->PNGRepresentation()) {
    setBordered(NO);
    setImagePosition(NSImageOnly);
    setFocusRingType(NSFocusRingTypeNone);
    setAccessibilityLabel(u"Vignette"_ns);
    region_ = tenue(region);
    setImageAvecDonnees(donnees_);
}

VignetteTirable::~VignetteTirable() = default;

void VignetteTirable::choisis(const NSRect& region) {
    region_ = tenue(region);
    rejoue();
    if (surRegion) surRegion();
}

void VignetteTirable::rejoue() {
    auRepos_ = false;
    // The picture first: it ends a fade that still runs.
    setImageAvecDonnees(donnees_);
    setRectInteret(region_);
}

NSPoint VignetteTirable::enFractions(NSEvent* e) const {
    const NSPoint p = convertPoint_fromView(e->locationInWindow(), nullptr);
    const NSRect b = bounds();
    const CGFloat y = isFlipped() ? p.y : b.size.height - p.y;
    return {std::clamp(p.x / b.size.width, 0.0, 1.0), std::clamp(y / b.size.height, 0.0, 1.0)};
}

NSRect VignetteTirable::regionEnVue() const {
    const NSRect b = bounds();
    const NSRect r{{region_.origin.x * b.size.width, region_.origin.y * b.size.height},
                   {region_.size.width * b.size.width, region_.size.height * b.size.height}};
    return isFlipped() ? r : NSRect{{r.origin.x, b.size.height - NSMaxY(r)}, r.size};
}

void VignetteTirable::mouseDown(NSEvent* e) {
    if (window()) window()->makeFirstResponder(this);
    prise_ = enFractions(e);
    avant_ = region_;
    geste_ = NSPointInRect(prise_, region_) ? Geste::deplace : Geste::trace;
}

void VignetteTirable::mouseDragged(NSEvent* e) {
    if (geste_ == Geste::aucun) return;
    const NSPoint p = enFractions(e);
    if (geste_ == Geste::deplace)
        region_ = tenue(NSOffsetRect(avant_, p.x - prise_.x, p.y - prise_.y));
    else
        region_ = {{std::min(p.x, prise_.x), std::min(p.y, prise_.y)},
                   {std::abs(p.x - prise_.x), std::abs(p.y - prise_.y)}};
    auRepos_ = false;
    setImageAvecDonnees(donnees_);
    setNeedsDisplay(YES);
}

void VignetteTirable::mouseUp(NSEvent* e) {
    const Geste geste = std::exchange(geste_, Geste::aucun);
    if (geste == Geste::aucun) return;
    const NSPoint p = enFractions(e);
    const bool bouge = std::abs(p.x - prise_.x) >= kMoindre || std::abs(p.y - prise_.y) >= kMoindre;
    const bool tropPetite = region_.size.width < kMoindre || region_.size.height < kMoindre;
    choisis(bouge && !tropPetite ? region_ : avant_);
}

void VignetteTirable::keyDown(NSEvent* e) {
    const Ref<NSString> signes = e->characters();
    const unichar touche = signes && signes->length() ? signes->unit(0) : unichar{0};
    NSRect r = region_;
    switch (touche) {
    case NSLeftArrowFunctionKey:
        r.origin.x -= kPas;
        break;
    case NSRightArrowFunctionKey:
        r.origin.x += kPas;
        break;
    case NSUpArrowFunctionKey:
        r.origin.y -= kPas;
        break;
    case NSDownArrowFunctionKey:
        r.origin.y += kPas;
        break;
    case u'\r':
    case u' ':
        return rejoue();
    default:
        return VignetteVisuel::keyDown(e);
    }
    choisis(r);
}

void VignetteTirable::drawRect(const NSRect& r) {
    if (auRepos_)
        donneImageAvecDonnees_etRectInteret(donnees_, region_)->drawInRect(bounds());
    else
        VignetteVisuel::drawRect(r);
    const bool active = window() && window()->firstResponder() == this;
    if (geste_ == Geste::aucun && !active) return;
    const NSRect cadre = NSInsetRect(geste_ == Geste::aucun ? bounds() : regionEnVue(), 1, 1);
    const CGFloat rayon = geste_ == Geste::aucun ? 8 : 4;
    const auto contour = NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(cadre, rayon, rayon);
    contour->setLineWidth(2);
    (geste_ == Geste::aucun ? NSColor::keyboardFocusIndicatorColor() : NSColor::whiteColor())->setStroke();
    contour->stroke();
}

void VignetteTirable::resetCursorRects() { addCursorRect_cursor(bounds(), NSCursor::crosshairCursor()); }

AccessibilityDescription VignetteTirable::accessibilityDescription() const {
    AccessibilityDescription d = VignetteVisuel::accessibilityDescription();
    const auto pour100 = [](CGFloat v) { return std::lround(v * 100); };
    d.value = NSString::stringWithFormat(u"%ld, %ld, %ld, %ld"_ns, pour100(region_.origin.x), pour100(region_.origin.y),
                                         pour100(region_.size.width), pour100(region_.size.height));
    return d;
}

} // namespace galerie
