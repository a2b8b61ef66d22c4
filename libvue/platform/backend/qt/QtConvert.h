#pragma once

#include <cmath>

#include <QColor>
#include <QPainter>
#include <QPointF>
#include <QRect>
#include <QRgba64>
#include <QTransform>

#include <libvue/platform/backend/Drawing.h>

namespace libvue::backend {

[[nodiscard]] inline QTransform toQt(const Transform& t) { return {t.a, t.b, t.c, t.d, t.tx, t.ty}; }
[[nodiscard]] inline QPointF toQt(NSPoint p) { return {p.x, p.y}; }
[[nodiscard]] inline QRectF toQt(const NSRect& r) { return {r.origin.x, r.origin.y, r.size.width, r.size.height}; }

/// Held to 0…1; what is not a number reads as 0.
[[nodiscard]] inline double component(double v) noexcept { return v > 0 ? (v < 1 ? v : 1) : 0; }

[[nodiscard]] inline QRgba64 toRgba64(const Color& c, double alpha = 1) noexcept {
    const auto wide = [](double v) { return static_cast<quint16>(component(v) * 65535 + 0.5); };
    return qRgba64(wide(c.red), wide(c.green), wide(c.blue), wide(component(c.alpha) * component(alpha)));
}
[[nodiscard]] inline QColor toQt(const Color& c, double alpha = 1) { return QColor::fromRgba64(toRgba64(c, alpha)); }
/// As it stands in a picture.
[[nodiscard]] inline QRgb toPremultiplied(const Color& c, double alpha = 1) noexcept {
    return toRgba64(c, alpha).premultiplied().toArgb32();
}
[[nodiscard]] inline Color fromPremultiplied(QRgb p) noexcept {
    const double a = qAlpha(p);
    if (a == 0) return {0, 0, 0, 0};
    const auto straight = [a](int v) { return v >= a ? 1.0 : v / a; };
    return {straight(qRed(p)), straight(qGreen(p)), straight(qBlue(p)), a / 255};
}

[[nodiscard]] inline bool isFinite(NSPoint p) noexcept { return std::isfinite(p.x) && std::isfinite(p.y); }
[[nodiscard]] inline bool isFinite(const NSRect& r) noexcept {
    return isFinite(r.origin) && std::isfinite(r.size.width) && std::isfinite(r.size.height);
}
[[nodiscard]] inline bool isFinite(const Transform& t) noexcept {
    return std::isfinite(t.a + t.b + t.c + t.d + t.tx + t.ty);
}

/// The smallest rectangle of whole pixels that holds it, held to what the rasteriser can address.
[[nodiscard]] inline QRect outward(const QRectF& r) {
    constexpr double limit = 1 << 28;
    const auto held = [](double v) { return static_cast<int>(std::fmin(std::fmax(v, -limit), limit)); };
    const int x = held(std::floor(r.left()));
    const int y = held(std::floor(r.top()));
    return {x, y, held(std::ceil(r.right())) - x, held(std::ceil(r.bottom())) - y};
}
/// The edges at the nearest pixel edges.
[[nodiscard]] inline QRect nearest(const QRectF& r) {
    constexpr double limit = 1 << 28;
    const auto held = [](double v) {
        return static_cast<int>(std::floor(std::fmin(std::fmax(v, -limit), limit) + 0.5));
    };
    const int x = held(r.left());
    const int y = held(r.top());
    return {x, y, held(r.right()) - x, held(r.bottom()) - y};
}

/// Whether the edges lie on pixel edges, or so near to them that nobody can see it.
[[nodiscard]] inline bool isWhole(const QRectF& r) noexcept {
    constexpr double near = 1.0 / 256;
    const auto whole = [](double v) { return std::abs(v - std::floor(v + 0.5)) < near; };
    return whole(r.left()) && whole(r.top()) && whole(r.right()) && whole(r.bottom());
}

/// Plus-darker has no mode of the painter's and is composed apart.
[[nodiscard]] inline QPainter::CompositionMode toQt(Compositing op) noexcept {
    switch (op) {
    case Compositing::clear:
        return QPainter::CompositionMode_Clear;
    case Compositing::copy:
        return QPainter::CompositionMode_Source;
    case Compositing::sourceIn:
        return QPainter::CompositionMode_SourceIn;
    case Compositing::sourceOut:
        return QPainter::CompositionMode_SourceOut;
    case Compositing::sourceAtop:
        return QPainter::CompositionMode_SourceAtop;
    case Compositing::destinationOver:
        return QPainter::CompositionMode_DestinationOver;
    case Compositing::destinationIn:
        return QPainter::CompositionMode_DestinationIn;
    case Compositing::destinationOut:
        return QPainter::CompositionMode_DestinationOut;
    case Compositing::destinationAtop:
        return QPainter::CompositionMode_DestinationAtop;
    case Compositing::exclusiveOr:
        return QPainter::CompositionMode_Xor;
    case Compositing::plusLighter:
        return QPainter::CompositionMode_Plus;
    case Compositing::sourceOver:
    case Compositing::plusDarker:
    case Compositing::highlight:
        break;
    }
    return QPainter::CompositionMode_SourceOver;
}

/// True where a transparent source leaves the destination as it is, so that drawing through a larger picture is the
/// same.
[[nodiscard]] inline bool keepsUncovered(Compositing op) noexcept {
    switch (op) {
    case Compositing::clear:
    case Compositing::copy:
    case Compositing::sourceIn:
    case Compositing::sourceOut:
    case Compositing::destinationIn:
    case Compositing::destinationAtop:
        return false;
    default:
        return true;
    }
}

/// True where the painter's opacity is the same as a source of that much less alpha; else it lets the destination
/// through.
[[nodiscard]] inline bool takesOpacity(Compositing op) noexcept {
    return keepsUncovered(op) && op != Compositing::plusLighter;
}

} // namespace libvue::backend
