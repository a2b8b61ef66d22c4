#include <algorithm>
#include <cmath>
#include <cstring>
#include <typeinfo>

#include <QLinearGradient>

#include <libvue/platform/backend/qt/RasterCanvas.h>
#include <libvue/platform/backend/qt/RasterGradient.h>
#include <libvue/platform/backend/qt/RasterPath.h>
#include <libvue/platform/backend/qt/RasterTextLayout.h>

namespace libvue::backend {

namespace {

/// The clip stands on whole pixels: an end of the strip that falls beside one of its edges was meant to be that edge.
QRectF withEdgesOf(const QRect& clip, const QRectF& strip) {
    const QRectF c(clip);
    const auto meets = [](double edge, double of) { return std::abs(edge - of) <= 0.5 + 1e-6 ? of : edge; };
    return QRectF(QPointF(meets(strip.left(), c.left()), meets(strip.top(), c.top())),
                  QPointF(meets(strip.right(), c.right()), meets(strip.bottom(), c.bottom())));
}

} // namespace

void RasterCanvas::drawGradient(const AxialGradient& gradient) {
    if (state_.clip.rect.isEmpty() || !isFinite(gradient.start) || !isFinite(gradient.end)) return;
    const NSRect bounds = clipBounds();
    const bool straight = state_.device.b == 0 && state_.device.c == 0;
    if (const auto along = straight ? gradientStripAlongAxis(gradient, bounds) : std::nullopt) {
        if (NSIsEmptyRect(*along) || gradient.stops.empty()) return;
        drawStraightGradient(gradient, mapRect(*along, state_.device));
        return;
    }
    const auto brush = makeGradientBrush(gradient, state_.device, state_.alpha);
    if (!brush) return;
    const auto strip = gradientStrip(gradient, bounds);
    if (!strip || !convertPath(*strip, state_.device, FillRule::nonZero, path_)) return;
    const QRectF reach = isDirect(state_.op) ? QRectF() : path_.boundingRect() & QRectF(state_.clip.rect);
    render(reach, state_.op, state_.antialias, 1, [&](QPainter& p, RasterTarget&) { p.fillPath(path_, *brush); });
}

void RasterCanvas::drawStraightGradient(const AxialGradient& gradient, const QRectF& strip) {
    const QRectF meeting = withEdgesOf(state_.clip.rect, strip);
    const bool whole = isWhole(meeting) || !state_.antialias;
    const QRect pixels = nearest(meeting) & state_.clip.rect;
    if (whole && !state_.clip.node && fillRamp(gradient, pixels)) return;
    const auto brush = makeGradientBrush(gradient, state_.device, state_.alpha);
    if (!brush || fillClipOutline(strip, *brush)) return;
    if (!whole) {
        const QRectF held = strip & QRectF(state_.clip.rect).adjusted(-1, -1, 1, 1);
        render(held, state_.op, true, 1, [&](QPainter& p, RasterTarget&) { p.fillRect(held, *brush); });
    } else if (pixels.isEmpty()) {
        return;
    } else if (isDirect(state_.op) && !state_.clip.node) {
        // The pixels lie inside of the clip already; one gradient after another leaves the painter as it is.
        target_->painter({target_->rect(), nullptr}, state_.op, false).fillRect(pixels, *brush);
    } else {
        render(pixels, state_.op, false, 1, [&](QPainter& p, RasterTarget&) { p.fillRect(pixels, *brush); });
    }
}

bool RasterCanvas::fillRamp(const AxialGradient& gradient, const QRect& pixels) {
    const bool replaces = state_.op == Compositing::sourceOver || state_.op == Compositing::copy;
    if (!replaces || !isDirect(state_.op) || !isOpaque(gradient, state_.alpha)) return false;
    const QRect area = pixels & target_->rect();
    if (area.isEmpty()) return true;
    const NSPoint start = state_.device.apply(gradient.start);
    const NSPoint end = state_.device.apply(gradient.end);
    const bool across = std::abs(end.x - start.x) > std::abs(end.y - start.y);
    const auto width = static_cast<std::size_t>(area.width());
    if (across) {
        QRgb* first = target_->row(area.top()) + area.left();
        gradientRamp(gradient, start.x, end.x, area.left(), area.width(), first);
        for (int y = area.top() + 1; y <= area.bottom(); ++y)
            std::memcpy(target_->row(y) + area.left(), first, width * sizeof(QRgb));
        return true;
    }
    ramp_.resize(static_cast<std::size_t>(area.height()));
    gradientRamp(gradient, start.y, end.y, area.top(), area.height(), ramp_.data());
    for (int y = area.top(); y <= area.bottom(); ++y)
        std::fill_n(target_->row(y) + area.left(), width, ramp_[static_cast<std::size_t>(y - area.top())]);
    return true;
}

bool RasterCanvas::fillClipOutline(const QRectF& strip, const QBrush& brush) {
    const ClipNode* node = state_.clip.node.get();
    if (node == nullptr || node->parent || node->isRegion || !isDirect(state_.op) || !state_.antialias) return false;
    const QRectF outline = node->path.boundingRect();
    constexpr double same = 1e-6;
    if (!strip.adjusted(-same, -same, same, same).contains(outline)) return false;
    const bool whole = state_.clip.rect.contains(outward(outline));
    const Clip clip{whole ? target_->rect() : state_.clip.rect, nullptr};
    target_->painter(clip, state_.op, true).fillPath(node->path, brush);
    return true;
}

void RasterCanvas::drawImage(const QImage& image, const RasterPicture* owner, const QRectF& source,
                             const Transform& toDevice, Compositing op, double opacity) {
    const bool straight = toDevice.b == 0 && toDevice.c == 0 && toDevice.a > 0 && toDevice.d > 0;
    const QRectF target = mapRect({{source.x(), source.y()}, {source.width(), source.height()}}, toDevice);
    if (!std::isfinite(target.left() + target.top() + target.right() + target.bottom())) return;
    if (!target.adjusted(-1, -1, 1, 1).intersects(QRectF(state_.clip.rect)) && isDirect(op)) return;

    const bool sameSize = std::abs(toDevice.a - 1) < 1e-6 && std::abs(toDevice.d - 1) < 1e-6;
    if (straight && sameSize && isWhole(source)) {
        // Pixels stay pixels, at the nearest ones.
        const QRect part = nearest(source);
        const QPoint at(static_cast<int>(std::floor(target.left() + 0.5)),
                        static_cast<int>(std::floor(target.top() + 0.5)));
        render(QRectF(at, part.size()), op, false, opacity,
               [&](QPainter& p, RasterTarget&) { p.drawImage(at, image, part); });
        return;
    }
    const bool smooth = state_.interpolation != Interpolation::none;
    // Only while pixels are scaled: it slows down those that are not.
    const auto scaling = [&](QPainter& p, bool on) {
        if (smooth) p.setRenderHint(QPainter::SmoothPixmapTransform, on);
    };
    if (straight) {
        QImage smaller;
        QRectF from = source;
        // Below half the size, the painter's four samples miss pixels.
        const bool shrinks = target.width() < source.width() / 2 || target.height() < source.height() / 2;
        if (smooth && shrinks && target.width() >= 1 && target.height() >= 1) {
            const QRect part = outward(source) & image.rect();
            // What grows along one side is left to the painter, which makes no pixels that are not seen.
            const QSize size(static_cast<int>(std::min<double>(std::ceil(target.width()), part.width())),
                             static_cast<int>(std::min<double>(std::ceil(target.height()), part.height())));
            smaller = owner != nullptr ? owner->reduced(part, size)
                                       : image.copy(part).scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            from = QRectF(smaller.rect());
        }
        const QImage& drawn = smaller.isNull() ? image : smaller;
        render(target, op, state_.antialias, opacity, [&](QPainter& p, RasterTarget&) {
            scaling(p, true);
            p.drawImage(target, drawn, from);
            scaling(p, false);
        });
        return;
    }
    render(target.adjusted(-1, -1, 1, 1), op, state_.antialias, opacity, [&](QPainter& p, RasterTarget& t) {
        t.pushTransform(toQt(toDevice));
        scaling(p, true);
        p.drawImage(source, image, source);
        scaling(p, false);
        t.popTransform();
    });
}

bool RasterCanvas::blit(const QImage& image, const NSRect& destination, Compositing op, double opacity, YAxis axis) {
    const Transform& t = state_.device;
    if (t.b != 0 || t.c != 0 || !(t.a > 0) || (axis == YAxis::up) == (t.d > 0)) return false;
    constexpr double same = 1e-6;
    if (!(std::abs(destination.size.width * t.a - image.width()) < same) ||
        !(std::abs(destination.size.height * std::abs(t.d) - image.height()) < same))
        return false;
    const double left = destination.origin.x * t.a + t.tx;
    const double top = (axis == YAxis::up ? NSMaxY(destination) : destination.origin.y) * t.d + t.ty;
    constexpr double far = 1 << 24;
    if (!(std::abs(left) < far) || !(std::abs(top) < far)) return false;
    const QPoint at(static_cast<int>(std::floor(left + 0.5)), static_cast<int>(std::floor(top + 0.5)));
    if (QRect(at, image.size()).intersects(state_.clip.rect))
        target_->painter(state_.clip, op, false, opacity).drawImage(at, image);
    return true;
}

void RasterCanvas::drawPicture(const Picture& picture, const NSRect& source, const NSRect& destination, Compositing op,
                               double fraction, YAxis axis) {
    if (state_.clip.rect.isEmpty()) return;
    const double opacity = component(fraction) * state_.alpha;
    if (opacity <= 0 && keepsUncovered(op)) return;
    const auto* owner =
        typeid(picture) == typeid(RasterPicture) ? static_cast<const RasterPicture*>(&picture) : nullptr;
    if (owner != nullptr && owner != picture_.get() && NSIsEmptyRect(source) && isDirect(op) &&
        (opacity >= 1 || takesOpacity(op)) && blit(owner->image(), destination, op, opacity, axis))
        return;
    const auto placement = placePicture(picture, source, destination, axis);
    if (!placement) return;
    QImage copy;
    if (owner == nullptr)
        copy = pixelsOf(picture);
    else if (owner == picture_.get())
        copy = owner->image().copy(); // drawn into itself, it would read pixels that are being written
    const QImage* image = owner != nullptr && copy.isNull() ? &owner->image() : &copy;
    if (image->isNull()) return;
    const bool fades = opacity < 1 && !takesOpacity(op);
    if (!fades) return drawImage(*image, owner, placement->pixels, placement->toUser.then(state_.device), op, opacity);
    // For these operations the painter's opacity would let the destination through.
    const QRect part = outward(placement->pixels) & image->rect();
    copy = faded(*image, part, opacity);
    drawImage(copy, nullptr, placement->pixels.translated(-part.topLeft()),
              Transform::translation(part.left(), part.top()).then(placement->toUser).then(state_.device), op, 1);
}

// Text.

bool RasterCanvas::drawCachedText(const RasterTextLayout& text, const Transform& toDevice) {
    if (toDevice.b != 0 || toDevice.c != 0 || !(toDevice.a > 0) || toDevice.a != toDevice.d) return false;
    if (state_.alpha < 1 ? !takesOpacity(state_.op) : !keepsUncovered(state_.op)) return false;
    const auto rendered = text.rendered(toDevice.a, {toDevice.tx, toDevice.ty});
    if (!rendered) return false;
    if (rendered->part.isEmpty()) return true;
    const QRect area(rendered->at, rendered->part.size());
    if (isDirect(state_.op) && !state_.clip.node) {
        // Cut here and not by the painter: its clip stays as it is from one text to the next.
        const QRect shown = area & state_.clip.rect;
        if (shown.isEmpty()) return true;
        const QRect part = shown.translated(rendered->part.topLeft() - area.topLeft());
        target_->painter({target_->rect(), nullptr}, state_.op, false, state_.alpha)
            .drawImage(shown.topLeft(), *rendered->image, part);
        return true;
    }
    if (isDirect(state_.op) && !area.intersects(state_.clip.rect)) return true;
    render(area, state_.op, false, state_.alpha,
           [&](QPainter& p, RasterTarget&) { p.drawImage(rendered->at, *rendered->image, rendered->part); });
    return true;
}

void RasterCanvas::drawText(const TextLayout& text, NSPoint origin, YAxis axis) {
    const auto* layout = dynamic_cast<const RasterTextLayout*>(&text);
    if (layout == nullptr || state_.clip.rect.isEmpty() || !isFinite(origin)) return;
    const Transform toUser{1, 0, 0, axis == YAxis::up ? -1.0 : 1.0, origin.x, origin.y};
    const Transform toDevice = toUser.then(state_.device);
    if (!isFinite(toDevice)) return;
    if (const auto clipped = layout->clippedTo()) {
        save();
        const double height = clipped->size.height;
        clip({{origin.x + clipped->origin.x, axis == YAxis::up ? origin.y - height : origin.y},
              {clipped->size.width, height}});
        if (!state_.clip.rect.isEmpty() && !drawCachedText(*layout, toDevice)) drawGlyphs(*layout, toDevice);
        restore();
        return;
    }
    if (!drawCachedText(*layout, toDevice)) drawGlyphs(*layout, toDevice);
}

void RasterCanvas::drawGlyphs(const RasterTextLayout& text, const Transform& toDevice) {
    const NSRect ink = text.inkBounds();
    const QRectF bounds = mapRect(ink, toDevice);
    if (isDirect(state_.op) && !bounds.intersects(QRectF(state_.clip.rect))) return;
    const QRect& r = state_.clip.rect;
    const NSRect clipped =
        toDevice.inverted().apply(NSRect{{static_cast<double>(r.x()), static_cast<double>(r.y())},
                                         {static_cast<double>(r.width()), static_cast<double>(r.height())}});
    // A shadow may fall into the clip from text outside of it.
    const NSRect& visible = state_.hasShadow ? ink : clipped;
    render(bounds, state_.op, state_.antialias, 1, [&](QPainter& p, RasterTarget& t) {
        t.pushTransform(toQt(toDevice));
        text.paint(p, visible, state_.alpha);
        t.popTransform();
    });
}

} // namespace libvue::backend
