#include <libvue/images/NSImageDegrade.h>

#include <libvue/images/FocusImage.h>
#include <libvue/platform/graphics/CGContext.h>
#include <libvue/platform/graphics/NSImage.h>

namespace libvue {

namespace {

/// Grey and alpha at both ends.
struct Arrets {
    CGFloat debut[2];
    CGFloat fin[2];
};

constexpr Arrets clair{{0.81, 1.0}, {0.91, 1.0}};
constexpr Arrets reflet{{1.0, 0.666}, {0.666, 0.666}};
constexpr Arrets fonce{{0.58, 1.0}, {0.78, 1.0}};

const Arrets& arretsDuType(std::int32_t type) {
    switch (type) {
    case 2:
        return clair;
    case 3:
        return reflet;
    default:
        return fonce;
    }
}

void evalue(void* info, const CGFloat* in, CGFloat* out) {
    const auto& arrets = *static_cast<const Arrets*>(info);
    for (int i = 0; i < 2; ++i)
        out[i] = arrets.debut[i] + (arrets.fin[i] - arrets.debut[i]) * *in;
}

} // namespace

Ref<NSImage> greyGradientImageWithSize_type(NSSize size, std::int32_t type) {
    if (!(size.width > 0) || !(size.height > 0)) return nullptr;
    Arrets arrets = arretsDuType(type);
    Ref<NSImage> image = make<NSImage>(size);
    const FocusImage focus(image);
    const CGContextRef port = NSGraphicsContext::currentContext()->graphicsPort();
    CGContextSaveGState(port);
    const CGColorSpaceRef espace = CGColorSpaceCreateDeviceGray();
    const CGFloat domaine[2] = {0, 1};
    const CGFloat etendue[4] = {0, 1, 0, 1};
    const CGFunctionCallbacks callbacks{0, &evalue, nullptr};
    const Ref<CGFunction> fonction =
        CGFunctionCreate(&arrets, 1, domaine, CGColorSpaceGetNumberOfComponents(espace) + 1, etendue, &callbacks);
    const Ref<CGShading> degrade = CGShadingCreateAxial(espace, {0, 0}, {0, size.height}, fonction, NO, NO);
    CGContextDrawShading(port, degrade);
    CGContextRestoreGState(port);
    return image;
}

} // namespace libvue
