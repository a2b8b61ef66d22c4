#include <libvue/platform/graphics/NSImageRep.h>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>

namespace libvue {

void NSImageRep::describe(ClassDescription<NSImageRep>& c) { c.key<&NSImageRep::size>("size"); }

Ref<NSImageRep> NSImageRep::imageRepWithContentsOfFile(const NSString* path) {
    if (!path) return nullptr;
    const Ref<NSData> data = NSData::dataWithContentsOfFile(path);
    return imageRepWithData(data);
}

Ref<NSImageRep> NSImageRep::imageRepWithData(NSData* data) { return NSBitmapImageRep::initWithData(data); }

std::shared_ptr<backend::Picture> NSImageRep::picture(CGFloat scale) {
    backend::GraphicsEngine& engine = *backend::Backend::current().graphics;
    auto picture = engine.makePicture(size_, scale);
    auto canvas = picture ? engine.canvasOn(picture) : nullptr;
    if (!canvas) return nullptr;
    const Ref<NSGraphicsContext> context = make<NSGraphicsContext>(std::move(canvas), NO, picture);
    GraphicsContextScope current(context);
    return draw() ? picture : nullptr;
}

BOOL NSImageRep::drawAtPoint(NSPoint point) { return drawInRect({point, size_}); }

BOOL NSImageRep::drawInRect(const NSRect& rect) {
    NSGraphicsContext* c = NSGraphicsContext::currentContext();
    if (!c || NSIsEmptyRect(rect) || !(size_.width > 0) || !(size_.height > 0)) return NO;
    const Ref<NSGraphicsContext> context = c;
    const double sx = rect.size.width / size_.width, sy = rect.size.height / size_.height;
    context->saveState();
    context->canvas().concat({sx, 0, 0, sy, rect.origin.x, rect.origin.y});
    const BOOL drawn = draw();
    context->restoreState();
    return drawn;
}

} // namespace libvue
