#include <libvue/platform/appkit/NSViewCapture.h>

#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/ViewCoordinates.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSImage.h>

namespace libvue {

Ref<NSBitmapImageRep> bitmapImageRepForCachingDisplayInRect(NSView* view, const NSRect& rect) {
    if (!view) return nullptr;
    const CGFloat scale = view->window() ? view->window()->backingScaleFactor() : NSImage::screenScale();
    auto picture = backend::Backend::current().graphics->makePicture(rect.size, scale);
    return picture ? make<NSBitmapImageRep>(std::move(picture)) : nullptr;
}

void cacheDisplayInRect_toBitmapImageRep(NSView* view, const NSRect& rect, NSBitmapImageRep* rep) {
    if (!view || !rep || NSIsEmptyRect(rect)) return;
    const Ref<NSBitmapImageRep> kept(rep);
    const auto& picture = rep->pictureForWriting();
    auto canvas = picture ? backend::Backend::current().graphics->canvasOn(picture) : nullptr;
    if (!canvas) return;
    const NSSize points = picture->size();
    canvas->concat(backend::Transform::scaling(points.width / rect.size.width, points.height / rect.size.height));
    bringToOrigin(*canvas, view, rect);
    view->displayRectIgnoringOpacity_inContext(rect, make<NSGraphicsContext>(std::move(canvas), NO, picture));
}

} // namespace libvue
