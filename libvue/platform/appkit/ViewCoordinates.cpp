#include <libvue/platform/appkit/ViewCoordinates.h>

#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/backend/Canvas.h>

namespace libvue {

CoordinateMap mapToSuperview(const NSView* view) {
    const NSView* s = view->superview();
    return CoordinateMap::toSuperview(view->frame(), view->bounds(), view->isFlipped(), s && s->isFlipped());
}

CoordinateMap mapToBase(const NSView* view) {
    CoordinateMap m;
    for (; view; view = view->superview())
        m = m.then(mapToSuperview(view));
    return m;
}

void bringToOrigin(backend::Canvas& canvas, const NSView* view, const NSRect& part) {
    const CGFloat bottom = view->isFlipped() ? view->bounds().size.height - NSMaxY(part) : part.origin.y;
    canvas.concat(backend::Transform::translation(-part.origin.x, -bottom));
}

} // namespace libvue
