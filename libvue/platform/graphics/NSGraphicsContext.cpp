#include <libvue/platform/graphics/NSGraphicsContext.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/graphics/Compositing.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSImage.h>

namespace libvue {

namespace {

// Both are never torn down: a process may end in the middle of a drawing, after its backend.

Ref<NSGraphicsContext>& current() {
    static auto& c = *new Ref<NSGraphicsContext>;
    return c;
}

std::vector<Ref<NSGraphicsContext>>& savedContexts() {
    static auto& v = *new std::vector<Ref<NSGraphicsContext>>;
    return v;
}

struct Tile {
    std::shared_ptr<backend::Picture> picture;
    NSSize size;
};

/// Up to so many tiles side by side in one picture, so that a large area takes few drawings. The tile itself where it
/// is large, or cannot be repeated pixel by pixel.
Tile repeated(Tile tile, double columns, double rows) {
    constexpr double enough = 256; // pixels
    auto& engine = *backend::Backend::current().graphics;
    const double scale = tile.picture->pixelWidth() / tile.size.width;
    for (const bool across : {true, false}) {
        const int wide = tile.picture->pixelWidth(), high = tile.picture->pixelHeight();
        const int n = static_cast<int>(std::min(across ? columns : rows, std::ceil(enough / (across ? wide : high))));
        if (n < 2) continue;
        const int columnsNow = across ? n : 1, rowsNow = across ? 1 : n;
        const NSSize size{tile.size.width * columnsNow, tile.size.height * rowsNow};
        auto block = engine.makePicture(size, scale);
        if (!block || block->pixelWidth() != wide * columnsNow || block->pixelHeight() != high * rowsNow) return tile;
        const auto canvas = engine.canvasOn(block);
        if (!canvas) return tile;
        for (int i = 0; i < n; ++i) {
            const NSPoint at{across ? i * tile.size.width : 0, across ? 0 : i * tile.size.height};
            canvas->drawPicture(*tile.picture, NSZeroRect, {at, tile.size}, backend::Compositing::copy, 1,
                                backend::YAxis::up);
        }
        tile = {std::move(block), size};
    }
    return tile;
}

} // namespace

void NSGraphicsContext::describe(ClassDescription<NSGraphicsContext>&) {}

NSGraphicsContext::NSGraphicsContext(backend::Canvas& canvas, BOOL flipped, std::shared_ptr<backend::Picture> picture)
    : canvas_(&canvas), picture_(std::move(picture)) {
    state_.flipped = flipped;
}

NSGraphicsContext::NSGraphicsContext(std::unique_ptr<backend::Canvas> canvas, BOOL flipped,
                                     std::shared_ptr<backend::Picture> picture)
    : owned_(std::move(canvas)), canvas_(owned_.get()), picture_(std::move(picture)) {
    state_.flipped = flipped;
}

NSGraphicsContext::~NSGraphicsContext() = default;

NSGraphicsContext* NSGraphicsContext::currentContext() noexcept { return current(); }

void NSGraphicsContext::setCurrentContext(NSGraphicsContext* context) { current() = context; }

BOOL NSGraphicsContext::currentContextDrawingToScreen() { return current() && current()->isDrawingToScreen(); }

void NSGraphicsContext::saveGraphicsState() {
    savedContexts().push_back(current());
    if (current()) current()->saveState();
}

void NSGraphicsContext::restoreGraphicsState() {
    auto& saved = savedContexts();
    if (saved.empty()) return;
    const Ref<NSGraphicsContext> context = saved.back();
    saved.pop_back();
    current() = context;
    if (context) context->restoreState();
}

Ref<NSGraphicsContext> NSGraphicsContext::graphicsContextWithBitmapImageRep(NSBitmapImageRep* rep) {
    if (!rep) return nullptr;
    const std::shared_ptr<backend::Picture>& picture = rep->pictureForWriting();
    auto canvas = backend::Backend::current().graphics->canvasOn(picture);
    if (!canvas) return nullptr;
    return make<NSGraphicsContext>(std::move(canvas), NO, picture);
}

Ref<NSGraphicsContext> NSGraphicsContext::graphicsContextWithGraphicsPort_flipped(CGContextRef port, BOOL flipped) {
    if (!port || port->isFlipped() == flipped) return port;
    Ref<NSGraphicsContext> context = make<NSGraphicsContext>(port->canvas(), flipped, port->picture());
    context->port_ = port;
    return context;
}

void NSGraphicsContext::saveState() {
    saved_.push_back(state_);
    canvas_->save();
}

void NSGraphicsContext::restoreState() {
    if (saved_.empty()) return;
    state_ = std::move(saved_.back());
    saved_.pop_back();
    canvas_->restore();
}

BOOL NSGraphicsContext::isDrawingToScreen() const { return canvas_->drawsToScreen(); }

void NSGraphicsContext::setCompositingOperation(NSCompositingOperation operation) {
    state_.operation = operation;
    canvas_->setCompositing(compositingOf(operation));
}

void NSGraphicsContext::setShouldAntialias(BOOL on) {
    state_.antialias = on;
    canvas_->setAntialiasing(on);
}

void NSGraphicsContext::setImageInterpolation(NSImageInterpolation quality) {
    state_.interpolation = quality;
    switch (quality) {
    case NSImageInterpolationNone:
        canvas_->setInterpolation(backend::Interpolation::none);
        break;
    case NSImageInterpolationDefault:
    case NSImageInterpolationLow:
        canvas_->setInterpolation(backend::Interpolation::low);
        break;
    default:
        canvas_->setInterpolation(backend::Interpolation::high);
    }
}

void NSGraphicsContext::store(Ink& ink, NSColor* color) {
    if (!color) return;
    const backend::Color c = color->resolved();
    ink.red = c.red;
    ink.green = c.green;
    ink.blue = c.blue;
    ink.alpha = c.alpha;
    ink.pattern = color->patternImage() ? color : nullptr;
}

void NSGraphicsContext::setFillColor(NSColor* color) { store(state_.fill, color); }

void NSGraphicsContext::setStrokeColor(NSColor* color) { store(state_.stroke, color); }

void NSGraphicsContext::fillPath(const backend::Path& path, bool evenOdd) {
    const auto rule = evenOdd ? backend::FillRule::evenOdd : backend::FillRule::nonZero;
    const Ink& ink = state_.fill;
    if (!ink.pattern) {
        canvas_->fill(path, rule, {ink.red, ink.green, ink.blue, ink.alpha});
        return;
    }
    const Ref<NSImage> image = ink.pattern->patternImage();
    canvas_->save();
    canvas_->clip(path, rule);
    tilePattern(image, state_.operation);
    canvas_->restore();
}

void NSGraphicsContext::fillRects(const NSRect* rects, NSUInteger count) {
    fillRects_operation(rects, count, state_.operation);
}

void NSGraphicsContext::fillRects_operation(const NSRect* rects, NSUInteger count, NSCompositingOperation operation) {
    const Ink& ink = state_.fill;
    const Ref<NSImage> image = ink.pattern ? ink.pattern->patternImage() : nullptr;
    for (NSUInteger i = 0; i < count; ++i) {
        if (!image) {
            canvas_->fillRect(rects[i], {ink.red, ink.green, ink.blue, ink.alpha}, compositingOf(operation));
            continue;
        }
        canvas_->save();
        canvas_->clip(rects[i]);
        tilePattern(image, operation);
        canvas_->restore();
    }
}

void NSGraphicsContext::strokePath(const backend::Path& path, const backend::Stroke& stroke) {
    const Ink& ink = state_.stroke;
    canvas_->stroke(path, stroke, {ink.red, ink.green, ink.blue, ink.alpha});
}

void NSGraphicsContext::strokeLine(NSPoint from, NSPoint to, const backend::Stroke& stroke) {
    const Ink& ink = state_.stroke;
    canvas_->strokeLine(from, to, stroke, {ink.red, ink.green, ink.blue, ink.alpha});
}

void NSGraphicsContext::tilePattern(NSImage* image, NSCompositingOperation operation) {
    Tile tile{image->picture(canvas_->scale()), image->size()};
    const NSRect box = canvas_->clipBounds();
    if (!tile.picture || !(tile.size.width > 0) || !(tile.size.height > 0) || NSIsEmptyRect(box)) return;
    const NSPoint phase = state_.patternPhase;
    const auto first = [](double low, double origin, double step) { return std::floor((low - origin) / step); };
    double i0 = 0, j0 = 0, columns = 0, rows = 0;
    const auto count = [&] {
        i0 = first(NSMinX(box), phase.x, tile.size.width);
        j0 = first(NSMinY(box), phase.y, tile.size.height);
        columns = first(NSMaxX(box), phase.x, tile.size.width) - i0 + 1;
        rows = first(NSMaxY(box), phase.y, tile.size.height) - j0 + 1;
    };
    count();
    constexpr double few = 64;
    if (columns * rows > few) {
        tile = repeated(std::move(tile), columns, rows);
        count();
    }
    // A tile of nearly no size would never come to an end.
    constexpr double most = 1e5;
    if (!(columns * rows <= most)) return;
    const auto axis = isFlipped() ? backend::YAxis::down : backend::YAxis::up;
    for (int j = 0; j < rows; ++j)
        for (int i = 0; i < columns; ++i) {
            const NSPoint at{phase.x + (i0 + i) * tile.size.width, phase.y + (j0 + j) * tile.size.height};
            canvas_->drawPicture(*tile.picture, NSZeroRect, {at, tile.size}, compositingOf(operation), 1, axis);
        }
}

} // namespace libvue
