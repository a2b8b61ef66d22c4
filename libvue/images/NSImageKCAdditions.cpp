#include <libvue/images/NSImageKCAdditions.h>

#include <libvue/images/FocusImage.h>
#include <libvue/platform/foundation/ClassExtension.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSImage.h>

namespace libvue {

namespace {

const ClassExtension<NSImage> extension([](ClassExtension<NSImage>::Description& c) {
    c.answers<&imageWithAlpha>("imageWithAlpha:");
    c.answers<&imageComposedWithColor>("imageComposedWithColor:");
    c.answers<&imageWithSize>("imageWithSize:");
});

/// The image drawn into a new one of that size at that strength; the colour (may be null) over its ink.
Ref<NSImage> derive(NSImage* image, NSSize taille, CGFloat force, NSColor* teinte) {
    if (!image) return nullptr;
    Ref<NSImage> nouvelle = make<NSImage>(taille);
    if (!(taille.width > 0) || !(taille.height > 0)) return nouvelle;
    const NSRect tout{NSZeroPoint, taille};
    const FocusImage focus(nouvelle);
    image->drawInRect_fromRect_operation_fraction(tout, NSZeroRect, NSCompositeSourceOver, force);
    if (!teinte) return nouvelle;
    teinte->setFill();
    NSRectFillUsingOperation(tout, NSCompositeSourceAtop);
    return nouvelle;
}

} // namespace

Ref<NSImage> imageWithAlpha(NSImage* image, CGFloat alpha) {
    return image ? derive(image, image->size(), alpha, nullptr) : nullptr;
}

Ref<NSImage> imageComposedWithColor(NSImage* image, NSColor* color) {
    return image ? derive(image, image->size(), 1.0, color) : nullptr;
}

Ref<NSImage> imageWithSize(NSImage* image, NSSize size) { return derive(image, size, 1.0, nullptr); }

} // namespace libvue
