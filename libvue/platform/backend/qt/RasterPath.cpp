#include <libvue/platform/backend/qt/RasterPath.h>

#include <algorithm>
#include <cmath>

#include <QList>

#include <libvue/platform/backend/qt/QtConvert.h>

namespace libvue::backend {

bool convertPath(const Path& path, const Transform& t, FillRule rule, QPainterPath& out) {
    out.clear();
    out.setFillRule(rule == FillRule::evenOdd ? Qt::OddEvenFill : Qt::WindingFill);
    const NSPoint* p = path.points.data();
    const NSPoint* const end = p + path.points.size();
    for (const PathVerb verb : path.verbs) {
        const std::ptrdiff_t needed = verb == PathVerb::curve ? 3 : verb == PathVerb::close ? 0 : 1;
        if (end - p < needed) return true;
        NSPoint q[3];
        for (std::ptrdiff_t i = 0; i < needed; ++i) {
            q[i] = t.apply(p[i]);
            if (!isFinite(q[i])) return false;
        }
        p += needed;
        switch (verb) {
        case PathVerb::move:
            out.moveTo(q[0].x, q[0].y);
            break;
        case PathVerb::line:
            out.lineTo(q[0].x, q[0].y);
            break;
        case PathVerb::curve:
            out.cubicTo(q[0].x, q[0].y, q[1].x, q[1].y, q[2].x, q[2].y);
            break;
        case PathVerb::close:
            if (out.elementCount() > 0) out.closeSubpath();
            break;
        }
    }
    return true;
}

std::optional<QRectF> asRectangle(const Path& path, const Transform& t) {
    if (t.b != 0 || t.c != 0) return std::nullopt;
    const auto& v = path.verbs;
    const auto& p = path.points;
    std::size_t drawing = v.size();
    while (drawing > 0 && (v[drawing - 1] == PathVerb::move || v[drawing - 1] == PathVerb::close))
        --drawing;
    // Closed by a line back to the start, by a close, or left to the filling.
    if ((drawing != 4 && drawing != 5) || p.size() < drawing || v[0] != PathVerb::move) return std::nullopt;
    for (std::size_t i = 1; i < drawing; ++i)
        if (v[i] != PathVerb::line) return std::nullopt;
    if (drawing == 5 && p[4] != p[0]) return std::nullopt;
    const bool horizontalFirst = p[0].y == p[1].y && p[1].x == p[2].x && p[2].y == p[3].y && p[3].x == p[0].x;
    const bool verticalFirst = p[0].x == p[1].x && p[1].y == p[2].y && p[2].x == p[3].x && p[3].y == p[0].y;
    if (!horizontalFirst && !verticalFirst) return std::nullopt;
    const NSRect box{{std::min(p[0].x, p[2].x), std::min(p[0].y, p[2].y)},
                     {std::abs(p[2].x - p[0].x), std::abs(p[2].y - p[0].y)}};
    if (!isFinite(box)) return std::nullopt;
    return mapRect(box, t);
}

QRectF mapRect(const NSRect& r, const Transform& t) {
    // Edges are mapped one by one, so that neighbours meet exactly.
    if (t.b == 0 && t.c == 0) {
        const double x0 = t.a * r.origin.x + t.tx;
        const double x1 = t.a * (r.origin.x + r.size.width) + t.tx;
        const double y0 = t.d * r.origin.y + t.ty;
        const double y1 = t.d * (r.origin.y + r.size.height) + t.ty;
        return {QPointF(std::min(x0, x1), std::min(y0, y1)), QPointF(std::max(x0, x1), std::max(y0, y1))};
    }
    return toQt(t.apply(r));
}

double similarity(const Transform& t) noexcept {
    const double along = std::hypot(t.a, t.b);
    const double across = std::hypot(t.c, t.d);
    const double tolerance = 1e-9 * std::max(along, across);
    if (std::abs(along - across) > tolerance) return 0;
    return std::abs(t.a * t.c + t.b * t.d) > tolerance * along ? 0 : along;
}

QPen makePen(const Stroke& stroke, double scale) {
    QPen pen;
    constexpr double widest = 32000; // what the painter takes
    const double width = std::isfinite(stroke.width) && stroke.width > 0 ? std::min(stroke.width * scale, widest) : 0;
    // The thinnest line is one pixel wide.
    pen.setWidthF(width > 0 ? width : 1);
    if (width == 0) pen.setCosmetic(true);
    pen.setCapStyle(stroke.cap == LineCap::butt    ? Qt::FlatCap
                    : stroke.cap == LineCap::round ? Qt::RoundCap
                                                   : Qt::SquareCap);
    pen.setJoinStyle(stroke.join == LineJoin::miter   ? Qt::SvgMiterJoin
                     : stroke.join == LineJoin::round ? Qt::RoundJoin
                                                      : Qt::BevelJoin);
    // The limit counts the whole width, as the painter's does for this join.
    pen.setMiterLimit(std::isfinite(stroke.miterLimit) ? std::max(stroke.miterLimit, 1.0) : 10);
    if (stroke.dash.empty()) return pen;

    double period = 0;
    for (const double d : stroke.dash) {
        if (!(d >= 0) || !std::isfinite(d)) return pen;
        period += d;
    }
    constexpr double smallestPeriod = 0.05;
    if (period * scale < smallestPeriod) return pen;
    const double unit = pen.widthF();
    QList<qreal> pattern;
    const std::size_t turns = stroke.dash.size() % 2 == 0 ? 1 : 2;
    for (std::size_t turn = 0; turn < turns; ++turn)
        for (const double d : stroke.dash)
            pattern.append(d * scale / unit);
    pen.setDashPattern(pattern);
    if (std::isfinite(stroke.dashPhase)) pen.setDashOffset(stroke.dashPhase * scale / unit);
    return pen;
}

double reach(const Stroke& stroke) noexcept {
    const double half = std::isfinite(stroke.width) ? std::max(stroke.width, 1.0) / 2 : 0.5;
    const double corner = stroke.join == LineJoin::miter && std::isfinite(stroke.miterLimit)
                              ? std::clamp(stroke.miterLimit, 1.5, 20.0)
                              : 1.5;
    return half * corner;
}

} // namespace libvue::backend
