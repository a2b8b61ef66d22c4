#include <dossier/BarreTravail.h>

#include <algorithm>
#include <cmath>

#include <Composition.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>

namespace galerie {

void BarreTravail::setPart(CGFloat part) {
    part_ = std::clamp(part, 0.0, 1.0);
    phase_ = -1;
    setNeedsDisplay(YES);
}

void BarreTravail::avance() {
    phase_ = phase_ < 0 ? 0 : std::fmod(phase_ + 0.02, 2);
    setNeedsDisplay(YES);
}

void BarreTravail::drawRect(const NSRect&) {
    const NSRect b = bounds();
    const CGFloat rayon = b.size.height / 2;
    const auto fond = NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(b, rayon, rayon);
    NSColor::labelColor()->colorWithAlphaComponent(0.12)->setFill();
    fond->fill();
    constexpr CGFloat kMorceau = 0.25;
    const CGFloat debut = phase_ < 0 ? 0 : (1 - kMorceau) * (phase_ <= 1 ? phase_ : 2 - phase_);
    const CGFloat largeur = phase_ < 0 ? part_ : kMorceau;
    if (largeur <= 0) return;
    NSColor::controlAccentColor()->setFill();
    NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(
        {{b.origin.x + debut * b.size.width, b.origin.y},
         {std::max(largeur * b.size.width, b.size.height), b.size.height}},
        rayon, rayon)
        ->fill();
}

AccessibilityDescription BarreTravail::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"progress bar"_ns;
    if (phase_ < 0) d.value = enTexte(std::round(part_ * 100));
    return d;
}

} // namespace galerie
