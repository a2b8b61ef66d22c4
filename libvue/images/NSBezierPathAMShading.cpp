#include <libvue/images/NSBezierPathAMShading.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/foundation/ClassExtension.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/graphics/NSColor.h>

namespace libvue {

namespace {

const ClassExtension<NSBezierPath> extension([](ClassExtension<NSBezierPath>::Description& c) {
    c.answers<&linearGradientFillWithStartColor_endColor>("linearGradientFillWithStartColor:endColor:");
    c.answers<&linearGradientFillWithStartColor_endColor_angle>("linearGradientFillWithStartColor:endColor:angle:");
    c.answers<&bilinearGradientFillWithOuterColor_innerColor>("bilinearGradientFillWithOuterColor:innerColor:");
    c.answers<&bilinearGradientFillWithOuterColor_innerColor_angle>(
        "bilinearGradientFillWithOuterColor:innerColor:angle:");
    c.answers<&customVerticalFillWithCallbacks_firstColor_secondColor_angle>(
        "customVerticalFillWithCallbacks:firstColor:secondColor:angle:");
});

constexpr CGFloat versLeHaut = pi * 0.5;

void evalueLineaire(void* info, const CGFloat* in, CGFloat* out) {
    const auto& couleurs = *static_cast<const CouleursDegrade*>(info);
    for (int i = 0; i < 4; ++i)
        out[i] = *in * couleurs.difference[i] + couleurs.premiere[i];
}

void evalueMiroir(void* info, const CGFloat* in, CGFloat* out) {
    const CGFloat u = *in > 0.5 ? 2.0 - 2 * *in : 2 * *in;
    evalueLineaire(info, &u, out);
}

void lisComposantes(NSColor* couleur, CGFloat composantes[4]) {
    if (!couleur) raiseNamed(NSInvalidArgumentException, "A gradient fill needs two colours.");
    const Ref<NSColor> convertie = couleur->colorUsingColorSpaceName(NSDeviceRGBColorSpace);
    // A colour that does not convert is asked for its components all the same, and raises.
    const NSColor* lue = convertie ? convertie.get() : couleur;
    composantes[0] = lue->redComponent();
    composantes[1] = lue->greenComponent();
    composantes[2] = lue->blueComponent();
    composantes[3] = lue->alphaComponent();
}

} // namespace

void linearGradientFillWithStartColor_endColor(NSBezierPath* path, NSColor* start, NSColor* end) {
    linearGradientFillWithStartColor_endColor_angle(path, start, end, versLeHaut);
}

void linearGradientFillWithStartColor_endColor_angle(NSBezierPath* path, NSColor* start, NSColor* end, CGFloat angle) {
    customVerticalFillWithCallbacks_firstColor_secondColor_angle(path, {0, &evalueLineaire, nullptr}, start, end,
                                                                 angle);
}

void bilinearGradientFillWithOuterColor_innerColor(NSBezierPath* path, NSColor* outer, NSColor* inner) {
    bilinearGradientFillWithOuterColor_innerColor_angle(path, outer, inner, versLeHaut);
}

void bilinearGradientFillWithOuterColor_innerColor_angle(NSBezierPath* path, NSColor* outer, NSColor* inner,
                                                         CGFloat angle) {
    // The inner colour goes first, whatever the names suggest.
    customVerticalFillWithCallbacks_firstColor_secondColor_angle(path, {0, &evalueMiroir, nullptr}, inner, outer,
                                                                 angle);
}

void customVerticalFillWithCallbacks_firstColor_secondColor_angle(NSBezierPath* path, CGFunctionCallbacks callbacks,
                                                                  NSColor* first, NSColor* second, CGFloat angle) {
    if (!path) return;
    NSGraphicsContext* courant = NSGraphicsContext::currentContext();
    const CGContextRef port = courant ? courant->graphicsPort() : nullptr;

    CouleursDegrade couleurs;
    lisComposantes(first, couleurs.premiere);
    lisComposantes(second, couleurs.seconde);
    for (int i = 0; i < 4; ++i)
        couleurs.difference[i] = couleurs.seconde[i] - couleurs.premiere[i];

    const CGColorSpaceRef espace = CGColorSpaceCreateDeviceRGB();
    const CGFloat domaine[2] = {0, 1};
    const CGFloat etendue[8] = {0, 1, 0, 1, 0, 1, 0, 1};
    const Ref<CGFunction> fonction =
        CGFunctionCreate(&couleurs, 1, domaine, CGColorSpaceGetNumberOfComponents(espace) + 1, etendue, &callbacks);
    if (fonction && (callbacks.evaluate == &evalueLineaire || callbacks.evaluate == &evalueMiroir))
        fonction->setLinear(callbacks.evaluate == &evalueMiroir);

    const NSRect bornes = path->bounds();
    const CGFloat hw = bornes.size.width * 0.5;
    const CGFloat hh = bornes.size.height * 0.5;
    const CGFloat cx = bornes.origin.x + hw;
    const CGFloat cy = bornes.origin.y + hh;
    const CGFloat dy = std::min(hh, std::sin(angle) * hh);
    const CGFloat dx = std::min(hw, std::cos(angle) * hw);
    const Ref<CGShading> degrade =
        CGShadingCreateAxial(espace, {cx - dx, cy - dy}, {cx + dx, cy + dy}, fonction, NO, NO);

    CGContextSaveGState(port);
    path->addClip();
    CGContextDrawShading(port, degrade);
    CGContextRestoreGState(port);
}

} // namespace libvue
