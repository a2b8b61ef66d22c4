#include <libvue/platform/backend/qt/RasterCanvas.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include <libvue/platform/backend/qt/RasterPath.h>
#include <libvue/platform/backend/qt/RasterShadow.h>
#include <libvue/platform/backend/qt/StrokeRuns.h>

namespace libvue::backend {

RasterCanvas::RasterCanvas(std::shared_ptr<RasterPicture> picture)
    : picture_(std::move(picture)),
      base_(picture_->image().bits(), picture_->pixelWidth(), picture_->pixelHeight(), picture_->image().bytesPerLine(),
            picture_->image().format()),
      target_(&base_) {
    picture_->beginDrawing();
    if (picture_->image().format() != QImage::Format_RGB32) picture_->setOpaque(false);
    state_.device = {picture_->scaleX(), 0, 0, -picture_->scaleY(), 0, static_cast<double>(picture_->pixelHeight())};
    state_.clip.rect = base_.rect();
}

RasterCanvas::~RasterCanvas() {
    while (!layers_.empty())
        endLayer();
    picture_->endDrawing();
}

void RasterCanvas::save() { saved_.push_back(state_); }

void RasterCanvas::restore() {
    // A layer keeps what was saved before it.
    if (saved_.size() <= (layers_.empty() ? 0 : layers_.back().depth)) return;
    state_ = std::move(saved_.back());
    saved_.pop_back();
}

void RasterCanvas::concat(const Transform& t) {
    if (!isFinite(t)) return;
    state_.user = t.then(state_.user);
    state_.device = t.then(state_.device);
}

void RasterCanvas::narrow(const QRect& r) {
    state_.clip.rect &= r;
    if (state_.clip.rect.isEmpty()) state_.clip = {QRect(), nullptr};
}

void RasterCanvas::narrow(const QPainterPath& path) {
    if (path.isEmpty()) return narrow(QRect());
    narrow(outward(path.boundingRect()));
    if (state_.clip.rect.isEmpty()) return;
    auto node = std::make_shared<ClipNode>();
    node->parent = state_.clip.node;
    node->path = path;
    node->isSmooth = true;
    state_.clip.node = std::move(node);
}

void RasterCanvas::clip(const Path& path, FillRule rule) {
    if (const auto r = asRectangle(path, state_.device)) return narrow(nearest(*r));
    QPainterPath converted;
    if (!convertPath(path, state_.device, rule, converted)) converted.clear();
    narrow(converted);
}

void RasterCanvas::clip(const NSRect& rect) {
    if (NSIsEmptyRect(rect)) return narrow(QRect());
    if (state_.device.b == 0 && state_.device.c == 0) return narrow(nearest(mapRect(rect, state_.device)));
    QPainterPath turned;
    turned.addPolygon(toQt(state_.device).map(QPolygonF(toQt(rect))));
    narrow(turned);
}

void RasterCanvas::clip(const NSRect* rects, std::size_t count) {
    if (count == 0 || rects == nullptr) return narrow(QRect());
    if (count == 1) return clip(*rects);
    const bool straight = state_.device.b == 0 && state_.device.c == 0;
    auto node = std::make_shared<ClipNode>();
    node->parent = state_.clip.node;
    node->isRegion = straight;
    node->isSmooth = !straight || (node->parent && node->parent->isSmooth);
    node->path.setFillRule(Qt::WindingFill);
    for (std::size_t i = 0; i < count; ++i) {
        if (NSIsEmptyRect(rects[i])) continue;
        if (straight)
            node->region += nearest(mapRect(rects[i], state_.device)) & state_.clip.rect;
        else
            node->path.addPolygon(toQt(state_.device).map(QPolygonF(toQt(rects[i]))));
    }
    narrow(straight ? node->region.boundingRect() : outward(node->path.boundingRect()));
    if (state_.clip.rect.isEmpty()) return;
    if (straight && node->region.rectCount() == 1) return;
    state_.clip.node = std::move(node);
}

NSRect RasterCanvas::clipBounds() const {
    const QRect& r = state_.clip.rect;
    if (r.isEmpty()) return {};
    const NSRect pixels{{static_cast<double>(r.x()), static_cast<double>(r.y())},
                        {static_cast<double>(r.width()), static_cast<double>(r.height())}};
    return state_.device.inverted().apply(pixels);
}

void RasterCanvas::setAlpha(double alpha) { state_.alpha = component(alpha); }

void RasterCanvas::setShadow(const Shadow* shadow) {
    state_.hasShadow = shadow != nullptr && shadow->color.alpha > 0 && std::isfinite(shadow->offset.width) &&
                       std::isfinite(shadow->offset.height) && std::isfinite(shadow->blur);
    if (state_.hasShadow) state_.shadow = *shadow;
}

// Drawing apart.

void RasterCanvas::compose(const QImage& image, QPoint at, Compositing op, double opacity) {
    if (op == Compositing::plusDarker)
        composePlusDarker(image, at);
    else
        target_->painter(state_.clip, op, true, opacity).drawImage(at, image);
}

void RasterCanvas::composePlusDarker(const QImage& image, QPoint at) {
    const QRect area = QRect(at, image.size()) & state_.clip.rect & target_->rect();
    if (area.isEmpty()) return;
    QImage clipped;
    if (state_.clip.node) {
        RasterTarget apart(area);
        apart.painter({area, state_.clip.node}, Compositing::sourceOver, true).drawImage(at, image);
        clipped = apart.image();
        at = area.topLeft();
    }
    const QImage& source = clipped.isNull() ? image : clipped;
    // Premultiplied, with darkness d = alpha − colour: the darknesses add up, as do the alphas, each held to its bound.
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const QRgb* in = reinterpret_cast<const QRgb*>(source.constScanLine(y - at.y())) - at.x();
        QRgb* out = target_->row(y);
        for (int x = area.left(); x <= area.right(); ++x) {
            const QRgb s = in[x];
            if (qAlpha(s) == 0) continue;
            const QRgb d = target_->isOpaque() ? out[x] | 0xff000000u : out[x];
            const int alpha = std::min(255, qAlpha(s) + qAlpha(d));
            const int total = qAlpha(s) + qAlpha(d);
            const auto channel = [=](int sc, int dc) { return std::max(0, alpha - (total - sc - dc)); };
            out[x] =
                qRgba(channel(qRed(s), qRed(d)), channel(qGreen(s), qGreen(d)), channel(qBlue(s), qBlue(d)), alpha);
        }
    }
}

void RasterCanvas::renderApart(const QRectF& bounds, Compositing op, bool antialias, double opacity,
                               const Paint& paint) {
    const QRect all = outward(bounds);
    const QRect& visible = state_.clip.rect;
    QRect wanted = all & visible;
    QPoint offset;
    double radius = 0;
    if (state_.hasShadow) {
        const double limit = 1 << 20;
        offset = {
            static_cast<int>(std::lround(std::clamp(state_.shadow.offset.width * picture_->scaleX(), -limit, limit))),
            static_cast<int>(
                std::lround(std::clamp(-state_.shadow.offset.height * picture_->scaleY(), -limit, limit)))};
        radius = std::max(0.0, state_.shadow.blur) * picture_->scaleY();
        const int reach = blurReach(radius);
        wanted |= all & visible.translated(-offset).adjusted(-reach, -reach, reach, reach);
    }
    if (wanted.isEmpty()) return;
    RasterTarget apart(wanted);
    paint(apart.painter({wanted, nullptr}, Compositing::sourceOver, antialias, opacity), apart);
    if (!state_.hasShadow) return compose(apart.image(), wanted.topLeft(), op, 1);

    const BlurredShadow shadow = shadowOf(apart.image(), radius, state_.shadow.color, 1);
    const QPoint at = wanted.topLeft() + shadow.offset + offset;
    if (op == Compositing::sourceOver || op == Compositing::highlight) {
        compose(shadow.image, at, op, 1);
        compose(apart.image(), wanted.topLeft(), op, 1);
        return;
    }
    // The other operations see the shadow and what casts it as one.
    const QRect both = (QRect(at, shadow.image.size()) | wanted) & visible;
    if (both.isEmpty()) return;
    RasterTarget together(both);
    QPainter& painter = together.painter({both, nullptr}, Compositing::sourceOver, antialias);
    painter.drawImage(at, shadow.image);
    painter.drawImage(wanted.topLeft(), apart.image());
    compose(together.image(), both.topLeft(), op, 1);
}

// Filling.

void RasterCanvas::fillPixels(const QRect& r, const Color& color, Compositing op) {
    const QRect area = r & state_.clip.rect;
    if (isDirect(op)) {
        if (area.isEmpty()) return;
        const QRgb pixel = op == Compositing::clear ? 0 : toPremultiplied(color, state_.alpha);
        const bool replaces = op == Compositing::copy || op == Compositing::clear ||
                              (op == Compositing::sourceOver && qAlpha(pixel) == 255);
        if (replaces && !state_.clip.node) {
            const QRgb written = target_->isOpaque() ? pixel | 0xff000000u : pixel;
            const auto width = static_cast<std::size_t>(area.width());
            const QRgb* first = target_->row(area.top()) + area.left();
            std::fill_n(target_->row(area.top()) + area.left(), width, written);
            for (int y = area.top() + 1; y <= area.bottom(); ++y)
                std::memcpy(target_->row(y) + area.left(), first, width * sizeof(QRgb));
            return;
        }
        target_->painter(state_.clip, op, false).fillRect(area, toQt(color, state_.alpha));
        return;
    }
    renderApart(r, op, false, 1, [&](QPainter& p, RasterTarget&) { p.fillRect(r, toQt(color, state_.alpha)); });
}

void RasterCanvas::fillDevice(const QRectF& r, const Color& color, Compositing op) {
    if (!std::isfinite(r.left() + r.top() + r.right() + r.bottom())) return;
    if (!state_.antialias || isWhole(r)) return fillPixels(nearest(r), color, op);
    // Far outside, the rasteriser's fixed-point numbers would overflow.
    QRectF held = r;
    if (isDirect(op)) {
        if (!r.intersects(state_.clip.rect)) return;
        const QRectF near = QRectF(state_.clip.rect).adjusted(-1, -1, 1, 1);
        held = r & near;
    }
    render(held, op, true, 1, [&](QPainter& p, RasterTarget&) { p.fillRect(held, toQt(color, state_.alpha)); });
}

void RasterCanvas::fillRect(const NSRect& rect, const Color& color) { fillRect(rect, color, state_.op); }

void RasterCanvas::fillRect(const NSRect& rect, const Color& color, Compositing op) {
    if (NSIsEmptyRect(rect) || state_.clip.rect.isEmpty()) return;
    if (state_.device.b == 0 && state_.device.c == 0) return fillDevice(mapRect(rect, state_.device), color, op);
    if (!isFinite(rect)) return;
    path_.clear();
    path_.addPolygon(toQt(state_.device).map(QPolygonF(toQt(rect))));
    fillConverted(color, op);
}

void RasterCanvas::fillConverted(const Color& color, Compositing op) {
    brush_.setColor(toQt(color, state_.alpha));
    const QRectF bounds = isDirect(op) ? QRectF() : path_.boundingRect();
    render(bounds, op, state_.antialias, 1, [&](QPainter& p, RasterTarget&) { p.fillPath(path_, brush_); });
}

void RasterCanvas::fill(const Path& path, FillRule rule, const Color& color) {
    if (state_.clip.rect.isEmpty()) return;
    if (const auto r = asRectangle(path, state_.device)) return fillDevice(*r, color, state_.op);
    if (!convertPath(path, state_.device, rule, path_)) return;
    fillConverted(color, state_.op);
}

// Stroking.

const QPen& RasterCanvas::penFor(const Stroke& stroke, double scale, const Color& color) {
    if (scale != penScale_ || !(stroke == penStroke_)) {
        pen_ = makePen(stroke, scale);
        penStroke_ = stroke;
        penScale_ = scale;
    }
    const QColor wanted = toQt(color, state_.alpha);
    if (pen_.color() != wanted) pen_.setColor(wanted);
    return pen_;
}

void RasterCanvas::stroke(const Path& path, const Stroke& stroke, const Color& color) {
    if (state_.clip.rect.isEmpty()) return;
    if (path.verbs.size() == 2 && path.verbs[0] == PathVerb::move && path.verbs[1] == PathVerb::line &&
        path.points.size() == 2)
        return strokeLine(path.points[0], path.points[1], stroke, color);
    if (strokeFrame(path, stroke, color)) return;
    const QRect& clip = state_.clip.rect;
    const NSRect seen = NSMakeRect(clip.x(), clip.y(), clip.width(), clip.height());
    if (StrokeRuns runs;
        isDirect(state_.op) && state_.antialias && takeOutRuns(path, stroke, state_.device, seen, runs)) {
        for (const NSRect& r : runs.rects)
            fillDevice({r.origin.x, r.origin.y, r.size.width, r.size.height}, color, state_.op);
        for (const Path& piece : runs.rest)
            strokePieces(piece, stroke, color);
        return;
    }
    strokePieces(path, stroke, color);
}

bool RasterCanvas::strokeFrame(const Path& path, const Stroke& stroke, const Color& color) {
    constexpr double squareCorner = 1.5; // a miter limit that keeps it
    if (path.verbs.empty() || path.verbs.back() != PathVerb::close || !isDirect(state_.op) || !state_.antialias ||
        state_.op != Compositing::sourceOver || !stroke.dash.empty() || stroke.join != LineJoin::miter ||
        !(stroke.miterLimit >= squareCorner))
        return false;
    const auto r = asRectangle(path, state_.device);
    if (!r) return false;
    const double half = stroke.width * similarity(state_.device) / 2;
    const double x[] = {r->left() - half, r->left() + half, r->right() - half, r->right() + half};
    const double y[] = {r->top() - half, r->top() + half, r->bottom() - half, r->bottom() + half};
    constexpr double hair = 1e-6, farthest = 1e6;
    int row[4];
    for (std::size_t i = 0; i < 4; ++i) {
        if (!(std::abs(x[i]) < farthest && std::abs(y[i]) < farthest)) return false;
        if (std::abs(y[i] - std::round(y[i])) > hair) return false;
        row[i] = static_cast<int>(std::lround(y[i]));
    }
    // Each side begins and ends in columns of its own.
    if (!(x[1] - x[0] >= 1 && x[2] - x[1] >= 2 && row[2] > row[1])) return false;
    const auto up = [](double v) { return static_cast<int>(std::ceil(v)); };
    const auto down = [](double v) { return static_cast<int>(std::floor(v)); };
    const auto block = [&](int left, int right, int top, int bottom, double coverage) {
        if (right <= left || coverage < 1.0 / 512) return;
        Color c = color;
        c.alpha *= coverage;
        fillPixels({left, top, right - left, bottom - top}, c, state_.op);
    };
    const int left = up(x[0]), right = down(x[3]), innerLeft = down(x[1]), innerRight = up(x[2]);
    block(left - 1, left, row[0], row[3], left - x[0]);
    block(left, right, row[0], row[1], 1);
    block(left, innerLeft, row[1], row[2], 1);
    block(innerLeft, innerLeft + 1, row[1], row[2], x[1] - innerLeft);
    block(innerRight - 1, innerRight, row[1], row[2], innerRight - x[2]);
    block(innerRight, right, row[1], row[2], 1);
    block(left, right, row[2], row[3], 1);
    block(right, right + 1, row[0], row[3], x[3] - right);
    return true;
}

void RasterCanvas::strokePieces(const Path& path, const Stroke& stroke, const Color& color) {
    if (const double scale = similarity(state_.device); scale > 0) {
        if (!convertPath(path, state_.device, FillRule::nonZero, path_)) return;
        const QPen& pen = penFor(stroke, scale, color);
        const double out = reach(stroke) * scale + 1;
        const QRectF bounds = isDirect(state_.op) ? QRectF() : path_.boundingRect().adjusted(-out, -out, out, out);
        render(bounds, state_.op, state_.antialias, 1, [&](QPainter& p, RasterTarget&) { p.strokePath(path_, pen); });
        return;
    }
    // The pen is deformed like what it draws.
    if (!convertPath(path, {}, FillRule::nonZero, path_)) return;
    const QPen& pen = penFor(stroke, 1, color);
    const QTransform device = toQt(state_.device);
    const double out = reach(stroke);
    const QRectF bounds = device.mapRect(path_.boundingRect().adjusted(-out, -out, out, out)).adjusted(-1, -1, 1, 1);
    render(bounds, state_.op, state_.antialias, 1, [&](QPainter& p, RasterTarget& target) {
        target.pushTransform(device);
        p.strokePath(path_, pen);
        target.popTransform();
    });
}

void RasterCanvas::strokeLine(NSPoint from, NSPoint to, const Stroke& stroke, const Color& color) {
    if (state_.clip.rect.isEmpty()) return;
    const double scale = similarity(state_.device);
    const NSPoint a = state_.device.apply(from);
    const NSPoint b = state_.device.apply(to);
    if (!isFinite(a) || !isFinite(b)) return;
    if (scale > 0 && (a.x == b.x || a.y == b.y) && stroke.dash.empty() && stroke.width > 0 && a != b &&
        stroke.cap != LineCap::round && std::isfinite(stroke.width)) {
        // Along an axis, a line is a rectangle.
        const double half = stroke.width * scale / 2;
        const double cap = stroke.cap == LineCap::square ? half : 0;
        QRectF r;
        if (a.y == b.y)
            r = QRectF(QPointF(std::min(a.x, b.x) - cap, a.y - half), QPointF(std::max(a.x, b.x) + cap, a.y + half));
        else
            r = QRectF(QPointF(a.x - half, std::min(a.y, b.y) - cap), QPointF(a.x + half, std::max(a.y, b.y) + cap));
        if (state_.antialias || (r.width() >= 1 && r.height() >= 1)) return fillDevice(r, color, state_.op);
    }
    if (scale == 0) {
        // The move at the end keeps `stroke` from taking it for a line and handing it back.
        const Path path{{PathVerb::move, PathVerb::line, PathVerb::move}, {from, to, to}};
        return this->stroke(path, stroke, color);
    }
    const QPen& pen = penFor(stroke, scale, color);
    const double out = reach(stroke) * scale + 1;
    const QRectF bounds = QRectF(toQt(a), toQt(b)).normalized().adjusted(-out, -out, out, out);
    render(bounds, state_.op, state_.antialias, 1, [&](QPainter& p, RasterTarget&) {
        p.setPen(pen);
        p.drawLine(QLineF(toQt(a), toQt(b)));
    });
}

// Layers.

void RasterCanvas::beginLayer() {
    const QRect area = state_.clip.rect.isEmpty() ? QRect(0, 0, 1, 1) : state_.clip.rect;
    layers_.push_back({std::make_unique<RasterTarget>(area), state_, saved_.size()});
    target_ = layers_.back().target.get();
    state_.op = Compositing::sourceOver;
    state_.alpha = 1;
    state_.hasShadow = false;
    // The clip's outline applies to the whole layer when it is composed.
    state_.clip.node = nullptr;
}

void RasterCanvas::endLayer() {
    if (layers_.empty()) return;
    const Layer layer = std::move(layers_.back());
    layers_.pop_back();
    saved_.resize(layer.depth);
    state_ = layer.state;
    target_ = layers_.empty() ? &base_ : layers_.back().target.get();
    if (state_.clip.rect.isEmpty()) return;
    const QPoint at = layer.target->origin();
    const bool fades = state_.alpha < 1 && !takesOpacity(state_.op);
    const QImage& whole = layer.target->image();
    const QImage image = fades ? faded(whole, whole.rect(), state_.alpha) : whole;
    render(QRectF(at, image.size()), state_.op, false, fades ? 1 : state_.alpha,
           [&](QPainter& p, RasterTarget&) { p.drawImage(at, image); });
}

} // namespace libvue::backend
