#include <libvue/platform/graphics/NSBezierPath.h>

#include <libvue/platform/backend/Canvas.h>
#include <libvue/platform/foundation/FiniteGeometry.h>
#include <libvue/platform/graphics/NSBezierPathState.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/PathGeometry.h>

// What paths do to the current context.

namespace libvue {

void NSBezierPath::fillRect(const NSRect& rect) {
    if (NSGraphicsContext* c = NSGraphicsContext::currentContext()) c->fillRects(&rect, 1);
}

void NSBezierPath::strokeRect(const NSRect& rect) {
    NSGraphicsContext* c = NSGraphicsContext::currentContext();
    if (!c || !isFinite(rect.origin) || !isFinite(NSPoint{NSMaxX(rect), NSMaxY(rect)})) return;
    // Kept for its memory.
    static backend::Path path;
    path.verbs.clear();
    path.points.clear();
    outline::appendRect(path, rect);
    c->strokePath(path, defaultStroke());
}

void NSBezierPath::clipRect(const NSRect& rect) {
    if (NSGraphicsContext* c = NSGraphicsContext::currentContext()) c->canvas().clip(rect);
}

void NSBezierPath::strokeLineFromPoint_toPoint(NSPoint from, NSPoint to) {
    NSGraphicsContext* c = NSGraphicsContext::currentContext();
    if (c && isFinite(from) && isFinite(to)) c->strokeLine(from, to, defaultStroke());
}

void NSBezierPath::fill() const {
    NSGraphicsContext* c = NSGraphicsContext::currentContext();
    if (c && !s_->path.empty()) c->fillPath(s_->path, s_->rule == NSEvenOddWindingRule);
}

void NSBezierPath::stroke() const {
    NSGraphicsContext* c = NSGraphicsContext::currentContext();
    if (c && !s_->path.empty()) c->strokePath(s_->path, s_->stroke);
}

void NSBezierPath::addClip() const {
    if (NSGraphicsContext* c = NSGraphicsContext::currentContext())
        c->canvas().clip(s_->path, static_cast<backend::FillRule>(s_->rule));
}

} // namespace libvue
