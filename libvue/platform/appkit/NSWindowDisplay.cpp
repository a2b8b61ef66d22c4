#include <algorithm>
#include <cmath>
#include <span>

#include <libvue/platform/appkit/FocusRing.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSControl.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSText.h>
#include <libvue/platform/appkit/NSWindowPrivate.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/ScopeExit.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSImage.h>

namespace libvue {

namespace {

/// How often a pass starts over while drawing marks more; what is left then waits for the next cycle.
constexpr int mostRounds = 4;

/// Outward to whole pixels.
NSRect toPixels(const NSRect& r, CGFloat scale, const NSRect& bounds) {
    const CGFloat left = std::floor(NSMinX(r) * scale) / scale, bottom = std::floor(NSMinY(r) * scale) / scale;
    const CGFloat right = std::ceil(NSMaxX(r) * scale) / scale, top = std::ceil(NSMaxY(r) * scale) / scale;
    return NSIntersectionRect({{left, bottom}, {right - left, top - bottom}}, bounds);
}

} // namespace

void NSWindow::Display::moveRing(const NSRect& to, CGFloat radius, const NSRect& bounds, NSView::DirtySink& dirty) {
    if (to == ring && radius == ringRadius) return;
    for (const NSRect& r : {ring, to})
        if (!NSIsEmptyRect(r)) dirty.add(NSIntersectionRect(focusRingBounds(r), bounds));
    ring = to;
    ringRadius = radius;
}

NSWindow::Display& NSWindow::displayState() {
    if (!display_) display_ = std::make_unique<Display>();
    return *display_;
}

void NSWindow::setViewsNeedDisplay(BOOL flag) {
    viewsNeedDisplay_ = flag;
    if (flag && visible_ && !displaying_) NSApp()->windowNeedsDisplay_(this);
}

void NSWindow::display() {
    root_->setNeedsDisplay(YES);
    displayIfNeeded();
}

void NSWindow::displayIfNeeded() {
    if (!visible_ || !native_ || displaying_) return;
    if (!viewsNeedDisplay_ && !displayState().whole) {
        flushWindow();
        return;
    }
    const Ref<NSWindow> self(this);
    auto& server = windowServer();
    ++passes_;
    {
        displaying_ = true;
        const ScopeExit ends([this] { displaying_ = false; });
        for (int round = 0; round < mostRounds && (viewsNeedDisplay_ || displayState().whole); ++round) {
            viewsNeedDisplay_ = false;
            Display& d = displayState();
            const NSRect bounds = root_->bounds();
            NSView::DirtySink dirty;
            root_->collectDirty_(dirty, bounds);
            if (d.whole) dirty.rects.assign(1, bounds);
            const NSView* ringed = focusRingView();
            const NSRect ring =
                ringed ? ringed->convertRect_toView(ringed->focusRingMaskBounds(), nullptr) : NSZeroRect;
            d.moveRing(ring, ringed ? ringed->focusRingRadius() : 0, bounds, dirty);
            const CGFloat scale = server.scale(native_);
            for (NSRect& r : dirty.rects)
                r = toPixels(r, scale, bounds);
            std::erase_if(dirty.rects, [](const NSRect& r) { return NSIsEmptyRect(r); });
            // What is held back is drawn, and not shown.
            const std::span<const NSRect> shownAtOnce = flushDisabled_ > 0 ? std::span<NSRect>() : dirty.rects;
            const auto surface = server.surfaceToDrawAnew(native_, shownAtOnce);
            d.whole = !surface;
            if (!surface) break;
            if (d.surface.lock() != surface) {
                dirty.rects.assign(1, bounds);
                d.surface = surface;
            }
            if (dirty.rects.empty()) break;
            drawRegion(d, dirty.rects);
            // Drawing may have closed the window, and with it what it showed.
            if (!native_ || !display_) return;
            for (const NSRect& r : dirty.rects)
                display_->present.add(r);
        }
    }
    if (!visible_ || !native_) return;
    if (!opaque_ || !displayState().shape.empty()) shapeWithoutCompositor();
    flushWindow();
    if (viewsNeedDisplay_) NSApp()->displayLater(this);
}

void NSWindow::drawRegion(Display& d, const std::vector<NSRect>& rects) {
    auto& b = backend::Backend::current();
    const auto surface = d.surface.lock();
    auto canvas = b.graphics->canvasOn(surface);
    if (!canvas) return;
    const Ref<NSGraphicsContext> context = make<NSGraphicsContext>(std::move(canvas), NO, surface);
    const GraphicsContextScope scope(context);
    NSRect all = NSZeroRect;
    for (const NSRect& r : rects)
        all = NSUnionRect(all, r);
    const NSRect ring = d.ring;
    const CGFloat radius = d.ringRadius;
    context->saveState();
    const NSRect bounds = root_->bounds();
    const NSSize pixels = surface->size();
    if (pixels.width > bounds.size.width || pixels.height > bounds.size.height) {
        // At a fractional scale the last row or column of pixels is only partly content: no hole may shine through
        // there.
        std::vector<NSRect> grown = rects;
        for (NSRect& r : grown) {
            if (NSMaxX(r) >= NSMaxX(bounds)) r.size.width = pixels.width - r.origin.x;
            if (NSMaxY(r) >= NSMaxY(bounds)) r.size.height = pixels.height - r.origin.y;
        }
        context->canvas().clip(grown.data(), grown.size());
        backgroundColor()->set();
        NSRectFill({{0, 0}, pixels});
    } else
        context->canvas().clip(rects.data(), rects.size());
    {
        const DrawRegionScope region(rects);
        root_->drawTree_(context, all);
    }
    if (!NSIsEmptyRect(ring) && NSIntersectsRect(focusRingBounds(ring), all))
        if (const NSView* ringed = focusRingView()) {
            // What scrolls keeps its ring inside of what it scrolls in.
            if (const NSView* clip = ringed->enclosingScrollView())
                context->canvas().clip(clip->convertRect_toView(clip->visibleRect(), nullptr));
            drawFocusRing(ring, radius);
        }
    context->restoreState();
}

NSView* NSWindow::focusRingView() const {
    if (!isKeyWindow()) return nullptr;
    auto* v = as<NSView>(firstResponder());
    if (!v) return nullptr;
    if (static_cast<const NSResponder*>(v) == static_cast<const NSResponder*>(fieldEditor_.get())) {
        while (v && !as<NSControl>(v))
            v = v->superview();
        if (!v) return nullptr;
    }
    if (v->isHiddenOrHasHiddenAncestor()) return nullptr;
    switch (v->focusRingType()) {
    case NSFocusRingTypeNone:
        return nullptr;
    case NSFocusRingTypeExterior:
        return v;
    // Of itself a control shows where the keys go; a view that draws its own content may show it in its own way.
    default:
        return as<NSControl>(v) ? v : nullptr;
    }
}

void NSWindow::flushWindow() {
    if (flushDisabled_ > 0 || !display_ || !native_ || display_->present.rects.empty()) return;
    const std::vector<NSRect> rects = std::exchange(display_->present.rects, {});
    windowServer().present(native_, rects);
}

void NSWindow::enableFlushWindow() {
    if (flushDisabled_ == 0) return;
    if (--flushDisabled_ == 0) flushWindow();
}

void NSWindow::nativeExposed_(const NSRect& rect) {
    if (!native_ || !visible_ || NSIsEmptyRect(rect)) return;
    const Ref<NSWindow> self(this);
    Display& d = displayState();
    // What was drawn is on the surface still; showing it again is enough.
    if (!d.whole) d.present.add(NSIntersectionRect(rect, root_->bounds()));
    NSApp()->windowNeedsDisplay_(this);
    postDelegateNotification(NSWindowDidExposeNotification, op::windowDidExpose);
}

void NSWindow::nativeAppearanceChanged_() { root_->setNeedsDisplay(YES); }

Ref<NSImage> NSWindow::captureImage() {
    if (!native_) return nullptr;
    const auto picture = windowServer().capture(native_);
    if (!picture) return nullptr;
    Ref<NSImage> image = make<NSImage>(picture->size());
    image->addRepresentation(make<NSBitmapImageRep>(picture));
    return image;
}

} // namespace libvue
