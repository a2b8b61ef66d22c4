#include <algorithm>

#include <libvue/platform/appkit/DrawingPass.h>
#include <libvue/platform/appkit/NSViewExtras.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/PrintFocus.h>
#include <libvue/platform/appkit/ViewCoordinates.h>
#include <libvue/platform/appkit/ViewPicture.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/ScopeExit.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSImage.h>

namespace libvue {

namespace {

backend::Transform transformOf(const CoordinateMap& m) { return {m.scaleX, 0, 0, m.scaleY, m.x, m.y}; }

} // namespace

// Marking.

void NSView::setNeedsDisplay(BOOL flag) {
    if (!flag) {
        dirty_ = wholeDirty_ = false;
        return;
    }
    // Where the mark already stands and the way up is marked, the display pass will come by.
    if (wholeDirty_ && superview_ && superview_->subtreeDirty_) return;
    if (superview_ && DrawingScope::draws(superview_, frame_)) return;
    dirty_ = wholeDirty_ = true;
    if (superview_)
        superview_->markSubtreeDirty();
    else if (window_)
        window_->setViewsNeedDisplay(YES);
}

void NSView::setNeedsDisplayInRect(const NSRect& r) {
    if (wholeDirty_ && (superview_ ? superview_->subtreeDirty_ : !window_)) return;
    if (superview_ && DrawingScope::draws(superview_, frame_)) return;
    const NSRect part = NSIntersectionRect(r, bounds_);
    if (NSIsEmptyRect(part)) return;
    dirtyRect_ = dirty_ && !wholeDirty_ ? NSUnionRect(dirtyRect_, part) : part;
    dirty_ = true;
    if (superview_)
        superview_->markSubtreeDirty();
    else if (window_)
        window_->setViewsNeedDisplay(YES);
}

void NSView::markSubtreeDirty() noexcept {
    NSView* v = this;
    for (; !v->subtreeDirty_; v = v->superview_) {
        v->subtreeDirty_ = true;
        if (!v->superview_) {
            if (v->window_) v->window_->setViewsNeedDisplay(YES);
            return;
        }
    }
}

void NSView::collectDirty_(DirtySink& sink, const NSRect& visibleInBase) {
    struct Walk {
        DirtySink& sink;
        void go(NSView* v, const CoordinateMap& superToBase, bool superFlipped, const NSRect& visible) {
            if ((!v->dirty_ && !v->subtreeDirty_) || v->hidden_) return;
            if (ViewPicture::any_()) ViewPicture::viewChanged_(v);
            const bool flipped = v->isFlipped();
            const CoordinateMap map =
                CoordinateMap::toSuperview(v->frame_, v->bounds_, flipped, superFlipped).then(superToBase);
            const NSRect seen = NSIntersectionRect(visible, map.apply(v->bounds_));
            if (v->dirty_) sink.add(v->wholeDirty_ ? seen : NSIntersectionRect(seen, map.apply(v->dirtyRect_)));
            const bool below = v->subtreeDirty_;
            v->dirty_ = v->wholeDirty_ = v->subtreeDirty_ = false;
            if (below)
                for (std::size_t i = 0; i < v->subviews_.views_.size(); ++i)
                    go(v->subviews_.views_[i].get(), map, flipped, seen);
        }
    };
    Walk{sink}.go(this, mapToBase(superview_), superview_ && superview_->isFlipped(), visibleInBase);
}

// Drawing.

void NSView::drawRect(const NSRect&) {}

void NSView::drawTree_(NSGraphicsContext* context, const NSRect& clipInSuperview) {
    if (hidden_) return;
    const NSRect inSuper = NSIntersectionRect(clipInSuperview, frame_);
    if (NSIsEmptyRect(inSuper)) return;
    const CGFloat alpha = extras_ ? extras_->alpha : 1;
    if (!(alpha > 0)) return;
    if (const std::vector<NSRect>* region = DrawRegionScope::current()) {
        const NSRect inBase = context->canvas().transform().apply(inSuper);
        if (std::none_of(region->begin(), region->end(), [&](const NSRect& r) { return NSIntersectsRect(r, inBase); }))
            return;
    }

    const Ref<NSView> self(this);
    if (ViewPicture::any_() && ViewPicture::draw_(this, context)) return;
    const CoordinateMap map = mapToSuperview(this);
    const NSRect clip = NSIntersectionRect(map.inverted().apply(inSuper), bounds_);
    backend::Canvas& canvas = context->canvas();

    context->saveState();
    canvas.concat(transformOf(map));
    canvas.clip(clip);
    context->setFlipped(isFlipped());
    const bool layered = alpha < 1;
    if (layered) {
        canvas.setAlpha(alpha);
        canvas.beginLayer();
        canvas.setAlpha(1);
    }
    const bool inPass = DrawRegionScope::isSingle() && context->isDrawingToScreen();
    if (subviews_.empty()) {
        const DrawingScope drawing(inPass ? this : nullptr, clip);
        drawRect(clip);
    } else {
        context->saveState();
        {
            const DrawingScope drawing(inPass ? this : nullptr, clip);
            drawRect(clip);
        }
        context->restoreState();
    }
    // drawRect may have moved what is below, so frames are read now. By index: a drawRect below may change the list.
    for (std::size_t i = 0; i < subviews_.views_.size(); ++i) {
        const Ref<NSView> v = subviews_.views_[i];
        v->drawTree_(context, clip);
    }
    if (layered) canvas.endLayer();
    context->restoreState();
}

void NSView::display() { displayRect(bounds_); }

void NSView::displayRect(const NSRect& r) {
    setNeedsDisplayInRect(r);
    displayIfNeeded();
}

void NSView::displayIfNeeded() {
    if (window_) window_->displayIfNeeded();
}

void NSView::lockFocus() {
    NSGraphicsContext::saveGraphicsState();
    Ref<NSGraphicsContext> context = PrintFocus::contextFor(this);
    if (!context && window_ && window_->nativeId_() != 0) {
        auto& server = *backend::Backend::current().windows;
        if (auto surface = server.surface(window_->nativeId_()))
            if (auto canvas = backend::Backend::current().graphics->canvasOn(surface)) {
                context = make<NSGraphicsContext>(std::move(canvas), isFlipped(), surface);
                context->canvas().concat(transformOf(mapToBase(this)));
                context->canvas().clip(visibleRect());
            }
    }
    NSGraphicsContext::setCurrentContext(context);
}

void NSView::unlockFocus() {
    const bool drew = NSGraphicsContext::currentContextDrawingToScreen();
    NSGraphicsContext::setCurrentContext(nullptr); // ends the drawing before it is shown
    NSGraphicsContext::restoreGraphicsState();
    if (drew && window_ && window_->nativeId_() != 0) {
        const NSRect shown = convertRect_toView(visibleRect(), nullptr);
        backend::Backend::current().windows->present(window_->nativeId_(), {&shown, 1});
    }
}

void NSView::displayRectIgnoringOpacity_inContext(const NSRect& r, NSGraphicsContext* context) {
    if (!context) return;
    const Ref<NSView> self(this);
    const GraphicsContextScope scope(context);
    context->saveState();
    // drawTree_ starts in the superview's space: undo the way from here to there.
    const CoordinateMap map = mapToSuperview(this);
    if (isFlipped() != context->isFlipped()) context->canvas().concat({1, 0, 0, -1, 0, bounds_.size.height});
    context->canvas().concat(transformOf(map.inverted()));
    const ScopeExit asBefore([this, hidden = bool{hidden_}, kept = Ref<NSGraphicsContext>(context)] {
        hidden_ = hidden;
        kept->restoreState();
    });
    hidden_ = false;
    drawTree_(context, map.apply(NSIntersectionRect(r, bounds_)));
}

Ref<NSData> NSView::dataWithPDFInsideRect(const NSRect& r) {
    auto& graphics = *backend::Backend::current().graphics;
    auto pdf = graphics.makePDF(r.size, "");
    if (!pdf.canvas) return nullptr;
    {
        const auto context = make<NSGraphicsContext>(*pdf.canvas);
        bringToOrigin(*pdf.canvas, this, r);
        displayRectIgnoringOpacity_inContext(r, context);
    }
    const auto bytes = graphics.finish(pdf);
    return NSData::dataWithBytes_length(bytes.data(), bytes.size());
}

Ref<NSImage> NSView::imageInsideRect_scale(const NSRect& r, CGFloat scale) {
    auto& graphics = *backend::Backend::current().graphics;
    const auto picture = graphics.makePicture(r.size, scale);
    if (!picture) return nullptr;
    {
        const auto context = make<NSGraphicsContext>(graphics.canvasOn(picture), NO, picture);
        bringToOrigin(context->canvas(), this, r);
        displayRectIgnoringOpacity_inContext(r, context);
    }
    auto image = make<NSImage>(r.size);
    image->addRepresentation(make<NSBitmapImageRep>(picture));
    return image;
}

Ref<NSData> NSView::pngDataInsideRect_scale(const NSRect& r, CGFloat scale) {
    const auto image = imageInsideRect_scale(r, scale);
    return image ? image->PNGRepresentation() : nullptr;
}

} // namespace libvue
