#include <libvue/platform/backend/qt/PdfCanvas.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include <QPainter>
#include <QPainterPath>

#include <libvue/platform/backend/qt/PdfPage.h>
#include <libvue/platform/backend/qt/PdfSide.h>
#include <libvue/platform/backend/qt/QtConvert.h>
#include <libvue/platform/backend/qt/RasterCanvas.h>
#include <libvue/platform/backend/qt/RasterGradient.h>
#include <libvue/platform/backend/qt/RasterPath.h>
#include <libvue/platform/backend/qt/RasterPicture.h>
#include <libvue/platform/backend/qt/RasterShadow.h>
#include <libvue/platform/backend/qt/RasterTextLayout.h>

namespace libvue::backend {

namespace {

/// Of pixels beside a page: three a point, fewer on a page so large that they would not stay within reason.
double pixelsAPointOf(NSSize page) {
    constexpr double usual = 3, mostPixels = 36e6, longestSide = 32767;
    return std::min(
        {usual, std::sqrt(mostPixels / (page.width * page.height)), longestSide / std::max(page.width, page.height)});
}

/// Whether it lies over what is there without reading it, as a page can.
bool covers(Compositing op, double alpha) {
    return op == Compositing::sourceOver || op == Compositing::highlight || (op == Compositing::copy && alpha >= 1);
}

/// The box of all control points, and something around it.
NSRect boxOf(const Path& path, double margin) {
    if (path.points.empty()) return {};
    double x0 = path.points[0].x;
    double x1 = x0;
    double y0 = path.points[0].y;
    double y1 = y0;
    for (const NSPoint p : path.points) {
        x0 = std::min(x0, p.x);
        x1 = std::max(x1, p.x);
        y0 = std::min(y0, p.y);
        y1 = std::max(y1, p.y);
    }
    return {{x0 - margin, y0 - margin}, {x1 - x0 + 2 * margin, y1 - y0 + 2 * margin}};
}

} // namespace

struct PdfCanvas::Page : PdfPage {
    double pixelsAPoint; ///< of what is drawn in pixels
    std::optional<PdfSide> side;

    Page(NSSize size, std::string_view title, QIODevice* device)
        : PdfPage(size, title, device), pixelsAPoint(pixelsAPointOf(size)) {}
};

PdfCanvas::PdfCanvas(NSSize page, std::string_view title, QIODevice* device)
    : page_(std::make_unique<Page>(page, title, device)) {
    resetPage();
}
PdfCanvas::~PdfCanvas() = default;

void PdfCanvas::resetPage() {
    page_->side.emplace(page_->size(), page_->pixelsAPoint);
    state_ = {};
    state_.clip = {{{0, 0}, page_->size()}, nullptr};
    saved_.clear();
    layers_.clear();
    layerInk_ = {};
}

void PdfCanvas::beginPage() {
    page_->startNext();
    resetPage();
}

std::vector<std::uint8_t> PdfCanvas::finish() { return page_->finish(); }

void PdfCanvas::save() {
    saved_.push_back(state_);
    page_->side->draw([](RasterCanvas& c) { c.save(); });
}

void PdfCanvas::restore() {
    if (saved_.size() <= (layers_.empty() ? 0 : layers_.back())) return;
    state_ = saved_.back();
    saved_.pop_back();
    page_->side->draw([](RasterCanvas& c) { c.restore(); });
}

void PdfCanvas::concat(const Transform& t) {
    if (!isFinite(t)) return;
    state_.user = t.then(state_.user);
    page_->side->draw([t](RasterCanvas& c) { c.concat(t); });
}

Transform PdfCanvas::toShared() const { return state_.user.then(page_->fromUpward()); }

void PdfCanvas::clip(const Path& path, FillRule rule) {
    page_->side->draw([path, rule](RasterCanvas& c) { c.clip(path, rule); });
    QPainterPath converted;
    if (!convertPath(path, {}, rule, converted)) converted.clear();
    narrow(boxOf(path, 0), converted);
}

bool PdfCanvas::narrowToBox(const NSRect& rect) {
    const Transform& t = state_.user;
    if ((t.b != 0 || t.c != 0) && (t.a != 0 || t.d != 0)) return false;
    state_.clip.box = NSIntersectionRect(state_.clip.box, t.apply(rect));
    return true;
}

void PdfCanvas::narrow(const NSRect& box, const QPainterPath& shape) {
    state_.clip.box = NSIntersectionRect(state_.clip.box, state_.user.apply(box));
    state_.clip.shape =
        std::make_shared<const PdfClipShape>(PdfClipShape{toQt(toShared()).map(shape), state_.clip.shape});
}

void PdfCanvas::clip(const NSRect& rect) { clip(&rect, 1); }

void PdfCanvas::clip(const NSRect* rects, std::size_t count) {
    page_->side->draw(
        [all = std::vector<NSRect>(rects, rects + count)](RasterCanvas& c) { c.clip(all.data(), all.size()); });
    NSRect box = NSZeroRect;
    for (std::size_t i = 0; i < count; ++i)
        if (isFinite(rects[i])) box = NSUnionRect(box, rects[i]);
    if (count == 1 && narrowToBox(box)) return;
    QPainterPath converted;
    converted.setFillRule(Qt::WindingFill);
    for (std::size_t i = 0; i < count; ++i)
        if (!NSIsEmptyRect(rects[i]) && isFinite(rects[i])) converted.addRect(toQt(rects[i]));
    narrow(box, converted);
}

bool PdfCanvas::useClip(const NSRect& ink) { return page_->clipFor(state_.user.apply(ink), state_.clip); }

NSRect PdfCanvas::clipBounds() const {
    const NSRect& box = state_.clip.box;
    return NSIsEmptyRect(box) ? NSRect{} : state_.user.inverted().apply(box);
}

void PdfCanvas::setCompositing(Compositing op) {
    state_.op = op;
    page_->side->draw([op](RasterCanvas& c) { c.setCompositing(op); });
}
void PdfCanvas::setAlpha(double alpha) {
    state_.alpha = component(alpha);
    page_->side->draw([alpha](RasterCanvas& c) { c.setAlpha(alpha); });
}
void PdfCanvas::setShadow(const Shadow* shadow) {
    state_.hasShadow = shadow != nullptr && shadow->color.alpha > 0 && std::isfinite(shadow->offset.width) &&
                       std::isfinite(shadow->offset.height) && std::isfinite(shadow->blur);
    if (state_.hasShadow) state_.shadow = *shadow;
    page_->side->draw([kept = shadow ? std::optional<Shadow>(*shadow) : std::nullopt](RasterCanvas& c) {
        c.setShadow(kept ? &*kept : nullptr);
    });
}
void PdfCanvas::setAntialiasing(bool on) {
    page_->side->draw([on](RasterCanvas& c) { c.setAntialiasing(on); });
}
void PdfCanvas::setInterpolation(Interpolation quality) {
    state_.smooth = quality != Interpolation::none;
    page_->side->draw([quality](RasterCanvas& c) { c.setInterpolation(quality); });
}

NSRect PdfCanvas::withShadow(const NSRect& box) const {
    if (!state_.hasShadow) return box;
    const Shadow& s = state_.shadow;
    const NSRect cast = NSInsetRect(NSOffsetRect(box, s.offset.width, s.offset.height), -2 * s.blur, -2 * s.blur);
    return NSUnionRect(box, cast);
}

bool PdfCanvas::isPlain(Compositing op, double alpha, const NSRect& bounds, const Drawing& again) {
    if (layers_.empty() && covers(op, alpha)) {
        if (!state_.hasShadow) return true;
        if (again && op != Compositing::copy) {
            castShadow(bounds, again);
            return true;
        }
    }
    const NSRect box = withShadow(state_.user.apply(bounds));
    if (layers_.empty())
        patch(box);
    else
        layerInk_ = NSUnionRect(layerInk_, box);
    return false;
}

/// Whole pixels on the side of a box of the page that may cast its shadow into the page.
struct PdfCanvas::Pixels {
    NSPoint corner; // in points of the page
    QSize size;

    Pixels(const NSRect& box, const NSRect& within, double pixelsAPoint) {
        const NSRect held = isFinite(box) ? NSIntersectionRect(box, within) : NSRect{};
        constexpr double mostPixels = 9e7;
        if (NSIsEmptyRect(held) || !(held.size.width * held.size.height * pixelsAPoint * pixelsAPoint < mostPixels))
            return;
        const auto down = [=](double v) { return std::floor(v * pixelsAPoint); };
        const auto up = [=](double v) { return std::ceil(v * pixelsAPoint); };
        corner = {down(held.origin.x) / pixelsAPoint, down(held.origin.y) / pixelsAPoint};
        size = {static_cast<int>(up(NSMaxX(held)) - down(held.origin.x)),
                static_cast<int>(up(NSMaxY(held)) - down(held.origin.y))};
    }
    [[nodiscard]] QImage blank() const {
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(0);
        return image;
    }
};

void PdfCanvas::castShadow(const NSRect& bounds, const Drawing& again) {
    const Shadow& s = state_.shadow;
    const NSRect casting = NSOffsetRect({{}, page_->size()}, -s.offset.width, -s.offset.height);
    const double pixelsAPoint = page_->pixelsAPoint;
    const Pixels pixels(state_.user.apply(bounds), NSInsetRect(casting, -2 * s.blur, -2 * s.blur), pixelsAPoint);
    if (pixels.size.isEmpty()) return;
    const auto picture = std::make_shared<RasterPicture>(
        pixels.blank(), NSSize{pixels.size.width() / pixelsAPoint, pixels.size.height() / pixelsAPoint});
    {
        RasterCanvas canvas(picture);
        canvas.concat({1, 0, 0, 1, -pixels.corner.x, -pixels.corner.y});
        canvas.concat(state_.user);
        canvas.setAlpha(state_.alpha);
        again(canvas);
    }
    const BlurredShadow cast = shadowOf(picture->image(), std::max(0.0, s.blur) * pixelsAPoint, s.color, 1);
    const int below = cast.image.height() + cast.offset.y() - pixels.size.height();
    place(cast.image, {pixels.corner.x + cast.offset.x() / pixelsAPoint + s.offset.width,
                       pixels.corner.y - below / pixelsAPoint + s.offset.height});
}

void PdfCanvas::castRunShadows(const RasterTextLayout& layout, const Transform& toUser, const NSRect& ink) {
    const double pixelsAPoint = page_->pixelsAPoint;
    const Pixels pixels(state_.user.apply(toUser.apply(ink)), {{}, page_->size()}, pixelsAPoint);
    if (pixels.size.isEmpty()) return;
    QImage image = pixels.blank();
    {
        const double height = pixels.size.height();
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setWorldTransform(toQt(toUser.then(state_.user)
                                           .then({pixelsAPoint, 0, 0, -pixelsAPoint, -pixels.corner.x * pixelsAPoint,
                                                  height + pixels.corner.y * pixelsAPoint})));
        layout.paint(painter, ink, state_.alpha, RasterTextLayout::Shadows::alone);
    }
    place(image, pixels.corner);
}

void PdfCanvas::place(const QImage& pixels, NSPoint corner) {
    const double pixelsAPoint = page_->pixelsAPoint;
    const NSSize size{pixels.width() / pixelsAPoint, pixels.height() / pixelsAPoint};
    if (!page_->clipFor({corner, size}, state_.clip)) return;
    page_->painter().drawImage(toQt(page_->fromUpward().apply(NSRect{corner, size})), pixels);
}

void PdfCanvas::patch(const NSRect& bounds) {
    const NSRect clipped = NSIntersectionRect(bounds, state_.clip.box);
    if (NSIsEmptyRect(clipped) || !isFinite(clipped)) return;
    const RasterPicture& pixels = page_->side->pixels();
    const double height = pixels.pixelHeight(), pixelsAPoint = page_->pixelsAPoint;
    const QRect area = outward(QRectF(clipped.origin.x * pixelsAPoint, height - NSMaxY(clipped) * pixelsAPoint,
                                      clipped.size.width * pixelsAPoint, clipped.size.height * pixelsAPoint)) &
                       pixels.image().rect();
    if (area.isEmpty()) return;
    QImage image(area.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter(&image).drawImage(QPoint(), pixels.image(), area);
    page_->clipNothing();
    // The lower edge of the pixels is that of the page, whose height may be no whole number of them.
    const double top = page_->size().height - (height - area.top()) / pixelsAPoint;
    page_->painter().drawImage(
        QRectF(area.left() / pixelsAPoint, top, area.width() / pixelsAPoint, area.height() / pixelsAPoint), image);
}

void PdfCanvas::fill(const Path& path, FillRule rule, const Color& color) {
    page_->side->draw([path, rule, color](RasterCanvas& c) { c.fill(path, rule, color); });
    if (!isPlain(state_.op, color.alpha * state_.alpha, boxOf(path, 1), [&](Canvas& c) { c.fill(path, rule, color); }))
        return;
    QPainterPath converted;
    if (!convertPath(path, toShared(), rule, converted) || !useClip(boxOf(path, 0))) return;
    page_->fill(converted, toQt(color, state_.alpha));
}

void PdfCanvas::fillRect(const NSRect& rect, const Color& color, Compositing op) {
    if (NSIsEmptyRect(rect) || !isFinite(rect)) return;
    page_->side->draw([rect, color, op](RasterCanvas& c) { c.fillRect(rect, color, op); });
    if (!isPlain(op, color.alpha * state_.alpha, NSInsetRect(rect, -1, -1),
                 [&](Canvas& c) { c.fillRect(rect, color); }) ||
        !useClip(rect))
        return;
    const QColor ink = toQt(color, state_.alpha);
    const Transform shared = toShared();
    if (shared.b == 0 && shared.c == 0) return page_->fill(mapRect(rect, shared), ink);
    QPainterPath turned;
    turned.addPolygon(toQt(shared).map(QPolygonF(toQt(rect))));
    turned.closeSubpath();
    page_->fill(turned, ink);
}

void PdfCanvas::stroke(const Path& path, const Stroke& stroke, const Color& color) {
    page_->side->draw([path, stroke, color](RasterCanvas& c) { c.stroke(path, stroke, color); });
    if (!isPlain(state_.op, color.alpha * state_.alpha, boxOf(path, reach(stroke) + 1),
                 [&](Canvas& c) { c.stroke(path, stroke, color); }))
        return;
    // A pen that is deformed draws in its own space.
    const double scale = similarity(state_.user);
    QPainterPath converted;
    if (!convertPath(path, scale > 0 ? toShared() : Transform{}, FillRule::nonZero, converted) ||
        !useClip(boxOf(path, reach(stroke))))
        return;
    QPen pen = makePen(stroke, scale > 0 ? scale : 1);
    pen.setColor(toQt(color, state_.alpha));
    if (scale > 0)
        page_->stroke(converted, pen);
    else
        page_->painter(state_.user).strokePath(converted, pen);
}

void PdfCanvas::strokeLine(NSPoint from, NSPoint to, const Stroke& line, const Color& color) {
    stroke({{PathVerb::move, PathVerb::line}, {from, to}}, line, color);
}

void PdfCanvas::drawGradient(const AxialGradient& gradient) {
    const NSRect bounds = clipBounds();
    page_->side->draw([gradient](RasterCanvas& c) { c.drawGradient(gradient); });
    double least = state_.alpha;
    for (const GradientStop& stop : gradient.stops)
        least = std::min(least, stop.color.alpha * state_.alpha);
    if (!isPlain(state_.op, least, bounds, nullptr)) return;
    const auto brush = makeGradientBrush(gradient, {}, state_.alpha);
    const auto strip = brush ? gradientStrip(gradient, bounds) : std::nullopt;
    QPainterPath converted;
    if (!strip || !convertPath(*strip, {}, FillRule::nonZero, converted) || !useClip(boxOf(*strip, 0))) return;
    page_->painter(state_.user).fillPath(converted, *brush);
}

void PdfCanvas::drawPicture(const Picture& picture, const NSRect& source, const NSRect& destination, Compositing op,
                            double fraction, YAxis axis) {
    const auto placement = placePicture(picture, source, destination, axis);
    if (!placement) return;
    // The picture may be drawn into, or be gone, when the side is made.
    const auto kept = std::make_shared<RasterPicture>(pixelsOf(picture).copy(), picture.size());
    page_->side->draw([=](RasterCanvas& c) { c.drawPicture(*kept, source, destination, op, fraction, axis); });
    const double opacity = component(fraction) * state_.alpha;
    if (!isPlain(op, picture.hasAlpha() ? 0 : opacity, destination, [&](Canvas& c) {
            c.drawPicture(picture, source, destination, Compositing::sourceOver, fraction, axis);
        }))
        return;
    const QImage image = pixelsOf(picture);
    if (image.isNull() || opacity <= 0 || !useClip(destination)) return;
    QPainter& painter = page_->painter(placement->toUser.then(state_.user));
    painter.setRenderHint(QPainter::SmoothPixmapTransform, state_.smooth);
    painter.setOpacity(opacity);
    painter.drawImage(placement->pixels, image, placement->pixels);
    painter.setOpacity(1);
}

void PdfCanvas::drawText(const TextLayout& text, NSPoint origin, YAxis axis) {
    const auto* layout = dynamic_cast<const RasterTextLayout*>(&text);
    if (layout == nullptr || !isFinite(origin)) return;
    if (const auto kept = layout->weak_from_this().lock())
        page_->side->draw([kept, origin, axis](RasterCanvas& c) { c.drawText(*kept, origin, axis); });
    else
        page_->side->canvas().drawText(text, origin, axis);
    const Transform toUser{1, 0, 0, axis == YAxis::up ? -1.0 : 1.0, origin.x, origin.y};
    const NSRect ink = layout->inkBounds();
    // A reader of the page would find words that nobody sees.
    if (!NSIntersectsRect(state_.clip.box, state_.user.apply(toUser.apply(ink)))) return;
    if (!isPlain(state_.op, 0, toUser.apply(ink), [&](Canvas& c) { c.drawText(text, origin, axis); })) return;
    if (layout->hasShadows()) castRunShadows(*layout, toUser, ink);
    const PdfClip before = state_.clip;
    if (const auto clipped = layout->clippedTo()) {
        const NSRect box = toUser.apply(*clipped);
        QPainterPath outline;
        outline.addRect(toQt(box));
        if (!narrowToBox(box)) narrow(box, outline);
    }
    if (useClip(toUser.apply(ink))) {
        const Transform toPage = toUser.then(state_.user), shared = toUser.then(toShared());
        // Of a long text only what this page shows.
        const NSRect visible = NSIntersectionRect(ink, toPage.inverted().apply(state_.clip.box));
        const bool isMoved = shared.a == 1 && shared.b == 0 && shared.c == 0 && shared.d == 1;
        if (!isMoved || !layout->paintBareGlyphs(page_->painter(), {shared.tx, shared.ty}, visible, state_.alpha))
            layout->paint(page_->painter(toPage), visible, state_.alpha, RasterTextLayout::Shadows::leave);
    }
    state_.clip = before;
}

void PdfCanvas::beginLayer() {
    page_->side->draw([](RasterCanvas& c) { c.beginLayer(); });
    if (layers_.empty()) layerInk_ = {};
    save();
    layers_.push_back(saved_.size());
    state_.op = Compositing::sourceOver;
    state_.alpha = 1;
    state_.hasShadow = false;
}

void PdfCanvas::endLayer() {
    if (layers_.empty()) return;
    while (saved_.size() > layers_.back())
        restore();
    layers_.pop_back();
    restore();
    page_->side->draw([](RasterCanvas& c) { c.endLayer(); });
    if (!layers_.empty()) return;
    // The layer's own state, with its shadow, decides how far it reaches.
    patch(withShadow(layerInk_));
}

namespace pdf {

GraphicsEngine::PDF make(NSSize page, std::string_view title) { return {open(page, title, nullptr)}; }

std::unique_ptr<PdfCanvas> open(NSSize page, std::string_view title, QIODevice* device) {
    constexpr double largest = 14400; // of a page description, in points
    const auto held = [=](double v) { return v >= 1 ? std::min(v, largest) : 1; };
    return std::make_unique<PdfCanvas>(NSSize{held(page.width), held(page.height)}, title, device);
}

void beginPage(GraphicsEngine::PDF& document) {
    if (auto* canvas = dynamic_cast<PdfCanvas*>(document.canvas.get())) canvas->beginPage();
}

std::vector<std::uint8_t> finish(GraphicsEngine::PDF& document) {
    auto* canvas = dynamic_cast<PdfCanvas*>(document.canvas.get());
    return canvas != nullptr ? canvas->finish() : std::vector<std::uint8_t>{};
}

} // namespace pdf

} // namespace libvue::backend
