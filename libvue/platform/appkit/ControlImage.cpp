#include <libvue/platform/appkit/ControlImage.h>

#include <libvue/platform/foundation/ScopeExit.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSImage.h>

namespace libvue {

namespace {

Ref<NSImage> filled(NSImage& image, NSColor* tint) {
    const NSRect all{{0, 0}, image.size()};
    Ref<NSImage> made = make<NSImage>(all.size);
    made->lockFocus();
    const ScopeExit finished([&] { made->unlockFocus(); });
    image.drawInRect_fromRect_operation_fraction(all, NSZeroRect, NSCompositeSourceOver, 1);
    tint->setFill();
    NSRectFillUsingOperation(all, NSCompositeSourceIn);
    return made;
}

} // namespace

void drawControlImage(NSImage& image, const NSRect& rect, CGFloat fraction, NSColor* tint) {
    if (NSIsEmptyRect(rect) || NSIsEmptyRect({{0, 0}, image.size()})) return;
    const bool tinted = image.isTemplate() && tint;
    const Ref<NSImage> shown = tinted ? filled(image, tint) : Ref<NSImage>(&image);
    shown->drawInRect_fromRect_operation_fraction_respectFlipped_hints(rect, NSZeroRect, NSCompositeSourceOver,
                                                                       tinted ? 1 : fraction, YES, nullptr);
}

} // namespace libvue
