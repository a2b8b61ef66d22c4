#include <libvue/images/VoileImage.h>

#include <cmath>

#include <libvue/images/FocusImage.h>
#include <libvue/platform/graphics/CGContext.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/NSShadow.h>

namespace libvue {

namespace {

constexpr CGFloat opaciteVoile = 0.25;
constexpr CGFloat decalageRegion = 2.0;
constexpr CGFloat margeRegion = 4.0;
constexpr CGFloat bordImage = 2.0;
constexpr CGFloat rayonTrou = 4.0;
constexpr CGFloat flouTrou = 4.0;
/// A blur reaches less far than twice its radius.
constexpr CGFloat porteeFlou = 2 * flouTrou + 2;

} // namespace

NSRect regionDInteret(const NSRect& fractions, NSSize taille) {
    return {{fractions.origin.x * taille.width, fractions.origin.y * taille.height + decalageRegion},
            {fractions.size.width * taille.width, fractions.size.height * taille.height}};
}

NSRect regionElargie(const NSRect& region, NSSize taille) {
    return NSIntersectionRect(NSInsetRect(region, -margeRegion, -margeRegion),
                              NSInsetRect({NSZeroPoint, taille}, bordImage, bordImage));
}

Ref<NSImage> voileNoir(NSSize taille, CGFloat rayon) {
    Ref<NSImage> voile = make<NSImage>(taille);
    const FocusImage focus(voile);
    NSColor::blackColor()->colorWithAlphaComponent(opaciteVoile)->setFill();
    NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius({NSZeroPoint, taille}, rayon, rayon)->fill();
    return voile;
}

Ref<NSImage> voilePerce(NSImage* voile, NSSize taille, const NSRect& partie, const NSRect& trou, CGFloat force) {
    Ref<NSImage> masque = make<NSImage>(partie.size);
    const FocusImage focus(masque);
    const CGContextRef port = NSGraphicsContext::currentContext()->graphicsPort();
    CGContextTranslateCTM(port, -partie.origin.x, -partie.origin.y);

    CGContextSaveGState(port);
    CGContextTranslateCTM(port, 0, taille.height);
    CGContextScaleCTM(port, 1, -1);
    const Ref<NSBezierPath> contour =
        NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(trou, rayonTrou, rayonTrou);
    const Ref<NSShadow> halo = make<NSShadow>();
    halo->setShadowOffset({0, 0});
    halo->setShadowBlurRadius(flouTrou);
    halo->setShadowColor(NSColor::whiteColor());
    NSColor::blackColor()->colorWithAlphaComponent(force)->set();
    halo->set();
    contour->fill();
    CGContextRestoreGState(port);

    // What was drawn so far is only a shape: the veil stays where it is not.
    if (voile) voile->drawAtPoint_fromRect_operation_fraction(NSZeroPoint, NSZeroRect, NSCompositeSourceOut, 1.0);
    return masque;
}

NSRect porteeDuTrou(const NSRect& trou, NSSize taille) {
    const NSRect large = NSInsetRect(trou, -porteeFlou, -porteeFlou);
    const CGFloat x0 = std::floor(NSMinX(large)), x1 = std::ceil(NSMaxX(large));
    const CGFloat y0 = std::floor(taille.height - NSMaxY(large)), y1 = std::ceil(taille.height - NSMinY(large));
    return NSIntersectionRect({{x0, y0}, {x1 - x0, y1 - y0}}, {NSZeroPoint, taille});
}

void poseVoile(NSImage* image, NSImage* voile, NSPoint coin) {
    const FocusImage focus(image);
    voile->drawAtPoint_fromRect_operation_fraction(coin, NSZeroRect, NSCompositeSourceAtop, 1.0);
}

} // namespace libvue
