#include <libvue/platform/graphics/PathGeometry.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include <libvue/platform/foundation/FiniteGeometry.h>

namespace libvue::outline {

using backend::Path;
using backend::PathVerb;

namespace {

constexpr double degree = 3.14159265358979323846 / 180;
/// Where the control points of a quarter of a circle stand.
constexpr double kappa = 0.55228474983079339840;

NSPoint operator+(NSPoint a, NSPoint b) { return {a.x + b.x, a.y + b.y}; }
NSPoint operator-(NSPoint a, NSPoint b) { return {a.x - b.x, a.y - b.y}; }
NSPoint operator*(NSPoint a, double f) { return {a.x * f, a.y * f}; }

void addCurve(Path& path, NSPoint c1, NSPoint c2, NSPoint end) {
    path.verbs.push_back(PathVerb::curve);
    path.points.insert(path.points.end(), {c1, c2, end});
}

void add(Path& path, PathVerb verb, NSPoint p) {
    path.verbs.push_back(verb);
    path.points.push_back(p);
}

struct Extent {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();
    void take(double v) noexcept {
        low = std::min(low, v);
        high = std::max(high, v);
    }
};

/// One coordinate of a cubic curve whose ends are taken already.
void takeExtremes(Extent& e, double p0, double p1, double p2, double p3) noexcept {
    if (p1 >= e.low && p1 <= e.high && p2 >= e.low && p2 <= e.high) return;
    // The roots of the derivative, a t² + b t + c.
    const double a = p3 - 3 * p2 + 3 * p1 - p0;
    const double b = 2 * (p2 - 2 * p1 + p0);
    const double c = p1 - p0;
    const auto at = [&](double t) {
        if (!(t > 0 && t < 1)) return;
        const double u = 1 - t;
        e.take(u * u * u * p0 + 3 * u * u * t * p1 + 3 * u * t * t * p2 + t * t * t * p3);
    };
    const double discriminant = b * b - 4 * a * c;
    if (discriminant < 0) return;
    // The form that does not lose digits where a is small.
    const double q = -0.5 * (b + std::copysign(std::sqrt(discriminant), b));
    if (a != 0) at(q / a);
    if (q != 0) at(c / q);
}

/// Calls `point(p)` for the end of each line that stands for the curve.
template <class Point>
void flattenCurve(NSPoint p0, NSPoint p1, NSPoint p2, NSPoint p3, double tolerance, const Point& point) {
    const NSPoint d1 = p0 - p1 * 2 + p2;
    const NSPoint d2 = p1 - p2 * 2 + p3;
    const double bend = std::max(std::hypot(d1.x, d1.y), std::hypot(d2.x, d2.y));
    // Coordinates so large that their differences are no numbers get the most, too.
    constexpr double most = 1000;
    const double pieces = std::ceil(std::sqrt(0.75 * bend / tolerance));
    const int n = pieces < most ? std::max(static_cast<int>(pieces), 1) : static_cast<int>(most);
    for (int i = 1; i < n; ++i) {
        const double t = static_cast<double>(i) / n, u = 1 - t;
        point(p0 * (u * u * u) + p1 * (3 * u * u * t) + p2 * (3 * u * t * t) + p3 * (t * t * t));
    }
    point(p3);
}

/// Calls `line(from, to)` for each side of the flattened outline, closing sides of open subpaths included.
template <class Line> void walk(const Path& path, double tolerance, const Line& line) {
    NSPoint current, start;
    std::size_t at = 0;
    for (PathVerb verb : path.verbs) {
        switch (verb) {
        case PathVerb::move:
            if (!(current == start)) line(current, start);
            current = start = path.points[at];
            break;
        case PathVerb::line:
            line(current, path.points[at]);
            current = path.points[at];
            break;
        case PathVerb::curve:
            flattenCurve(current, path.points[at], path.points[at + 1], path.points[at + 2], tolerance,
                         [&](NSPoint p) { line(std::exchange(current, p), p); });
            break;
        case PathVerb::close:
            if (!(current == start)) line(current, start);
            current = start;
            break;
        }
        at += static_cast<std::size_t>(pointsOf(verb));
    }
    if (!(current == start)) line(current, start);
}

} // namespace

NSPoint directionAtDegrees(double degrees) noexcept {
    const double turn = std::fmod(degrees, 360.0);
    const double quarter = turn / 90;
    if (quarter == std::trunc(quarter)) {
        static constexpr std::array<NSPoint, 4> quarters{NSPoint{1, 0}, NSPoint{0, 1}, NSPoint{-1, 0}, NSPoint{0, -1}};
        return quarters[static_cast<std::size_t>(static_cast<int>(quarter) + 4) % 4];
    }
    return {std::cos(turn * degree), std::sin(turn * degree)};
}

void appendArc(Path& path, NSPoint center, double radius, double start, double end, Turn turn) {
    double sweep = turn == Turn::counterClockwise ? end - start : start - end;
    if (sweep < 0) sweep = std::fmod(sweep, 360.0) + 360;
    sweep = std::min(sweep, 360.0);
    if (!(sweep > 0)) return;
    const int pieces = static_cast<int>(std::ceil(sweep / 90 - 1e-9));
    const double step = (turn == Turn::counterClockwise ? sweep : -sweep) / pieces;
    const double reach = 4.0 / 3 * std::tan(step * degree / 4) * radius;
    NSPoint from = directionAtDegrees(start);
    for (int i = 1; i <= pieces; ++i) {
        const NSPoint to = directionAtDegrees(i == pieces ? end : start + step * i);
        const NSPoint a = center + from * radius;
        const NSPoint b = center + to * radius;
        addCurve(path, a + NSPoint{-from.y, from.x} * reach, b - NSPoint{-to.y, to.x} * reach, b);
        from = to;
    }
}

void appendOval(Path& path, const NSRect& rect) {
    const double rx = rect.size.width / 2, ry = rect.size.height / 2;
    const NSPoint c{NSMidX(rect), NSMidY(rect)};
    const double kx = rx * kappa, ky = ry * kappa;
    const double left = NSMinX(rect), right = NSMaxX(rect), low = NSMinY(rect), high = NSMaxY(rect);
    add(path, PathVerb::move, {right, c.y});
    addCurve(path, {right, c.y + ky}, {c.x + kx, high}, {c.x, high});
    addCurve(path, {c.x - kx, high}, {left, c.y + ky}, {left, c.y});
    addCurve(path, {left, c.y - ky}, {c.x - kx, low}, {c.x, low});
    addCurve(path, {c.x + kx, low}, {right, c.y - ky}, {right, c.y});
    path.verbs.push_back(PathVerb::close);
}

void appendRect(Path& path, const NSRect& rect) {
    add(path, PathVerb::move, rect.origin);
    add(path, PathVerb::line, {NSMaxX(rect), NSMinY(rect)});
    add(path, PathVerb::line, {NSMaxX(rect), NSMaxY(rect)});
    add(path, PathVerb::line, {NSMinX(rect), NSMaxY(rect)});
    path.verbs.push_back(PathVerb::close);
}

void appendRoundedRect(Path& path, const NSRect& rect, double xRadius, double yRadius) {
    const double rx = std::clamp(std::isfinite(xRadius) ? xRadius : 0, 0.0, std::abs(rect.size.width) / 2);
    const double ry = std::clamp(std::isfinite(yRadius) ? yRadius : 0, 0.0, std::abs(rect.size.height) / 2);
    if (rx == 0 || ry == 0) {
        appendRect(path, rect);
        return;
    }
    const double left = std::min(NSMinX(rect), NSMaxX(rect)), right = std::max(NSMinX(rect), NSMaxX(rect));
    const double low = std::min(NSMinY(rect), NSMaxY(rect)), high = std::max(NSMinY(rect), NSMaxY(rect));
    const double kx = rx * (1 - kappa), ky = ry * (1 - kappa);
    add(path, PathVerb::move, {left + rx, low});
    add(path, PathVerb::line, {right - rx, low});
    addCurve(path, {right - kx, low}, {right, low + ky}, {right, low + ry});
    add(path, PathVerb::line, {right, high - ry});
    addCurve(path, {right, high - ky}, {right - kx, high}, {right - rx, high});
    add(path, PathVerb::line, {left + rx, high});
    addCurve(path, {left + kx, high}, {left, high - ky}, {left, high - ry});
    add(path, PathVerb::line, {left, low + ry});
    addCurve(path, {left, low + ky}, {left + kx, low}, {left + rx, low});
    path.verbs.push_back(PathVerb::close);
}

std::optional<CornerArc> roundCorner(NSPoint before, NSPoint corner, NSPoint after, double radius) noexcept {
    const NSPoint u = before - corner, v = after - corner;
    const double lu = std::hypot(u.x, u.y), lv = std::hypot(v.x, v.y);
    if (!(radius > 0) || !std::isfinite(radius) || lu == 0 || lv == 0) return std::nullopt;
    const NSPoint nu = u * (1 / lu), nv = v * (1 / lv);
    const double cross = nu.x * nv.y - nu.y * nv.x;
    const double dot = nu.x * nv.x + nu.y * nv.y;
    if (std::abs(cross) < 1e-9) return std::nullopt;
    const double half = std::atan2(std::abs(cross), dot) / 2;
    const double distance = radius / std::tan(half);
    const NSPoint middle = nu + nv;
    CornerArc arc;
    arc.center = corner + middle * (radius / std::sin(half) / std::hypot(middle.x, middle.y));
    arc.from = corner + nu * distance;
    arc.to = corner + nv * distance;
    arc.start = std::atan2(arc.from.y - arc.center.y, arc.from.x - arc.center.x) / degree;
    arc.end = std::atan2(arc.to.y - arc.center.y, arc.to.x - arc.center.x) / degree;
    // The arc turns as the outline does at the corner.
    arc.turn = cross > 0 ? Turn::clockwise : Turn::counterClockwise;
    return arc;
}

NSRect controlBounds(const Path& path) noexcept {
    if (path.points.empty()) return NSZeroRect;
    Extent x, y;
    for (const NSPoint& p : path.points) {
        x.take(p.x);
        y.take(p.y);
    }
    return {{x.low, y.low}, {x.high - x.low, y.high - y.low}};
}

NSRect bounds(const Path& path) noexcept {
    if (path.points.empty()) return NSZeroRect;
    Extent x, y;
    NSPoint current, start;
    std::size_t at = 0;
    const std::size_t verbs = path.verbs.size();
    for (std::size_t i = 0; i < verbs; ++i) {
        switch (path.verbs[i]) {
        case PathVerb::move:
            start = current = path.points[at];
            // A last point that nothing is drawn from covers nothing, unless it is all that there is.
            if (i + 1 == verbs && i > 0) return {{x.low, y.low}, {x.high - x.low, y.high - y.low}};
            x.take(current.x);
            y.take(current.y);
            break;
        case PathVerb::line:
            current = path.points[at];
            x.take(current.x);
            y.take(current.y);
            break;
        case PathVerb::curve: {
            const NSPoint *p = &path.points[at], end = p[2];
            x.take(end.x);
            y.take(end.y);
            takeExtremes(x, current.x, p[0].x, p[1].x, end.x);
            takeExtremes(y, current.y, p[0].y, p[1].y, end.y);
            current = end;
            break;
        }
        case PathVerb::close:
            current = start;
            break;
        }
        at += static_cast<std::size_t>(pointsOf(path.verbs[i]));
    }
    return {{x.low, y.low}, {x.high - x.low, y.high - y.low}};
}

Path flattened(const Path& path, double tolerance) {
    Path out;
    std::size_t at = 0;
    NSPoint current, start;
    for (PathVerb verb : path.verbs) {
        const auto n = static_cast<std::size_t>(pointsOf(verb));
        if (verb == PathVerb::curve)
            flattenCurve(current, path.points[at], path.points[at + 1], path.points[at + 2], tolerance,
                         [&](NSPoint p) { add(out, PathVerb::line, p); });
        else if (verb == PathVerb::close)
            out.verbs.push_back(verb);
        else
            add(out, verb, path.points[at]);
        if (verb == PathVerb::move) start = path.points[at];
        current = n ? path.points[at + n - 1] : start;
        at += n;
    }
    return out;
}

Path reversed(const Path& path) {
    Path out;
    out.verbs.reserve(path.verbs.size());
    out.points.reserve(path.points.size());
    std::size_t verb = 0, at = 0;
    while (verb < path.verbs.size()) {
        // One subpath: from a move up to the next one.
        std::size_t last = verb + 1, end = at + 1;
        bool closed = false;
        while (last < path.verbs.size() && path.verbs[last] != PathVerb::move) {
            closed = closed || path.verbs[last] == PathVerb::close;
            end += static_cast<std::size_t>(pointsOf(path.verbs[last]));
            ++last;
        }
        std::size_t p = end - 1;
        add(out, PathVerb::move, path.points[p]);
        for (std::size_t v = last - 1; v > verb; --v) {
            switch (path.verbs[v]) {
            case PathVerb::line:
                add(out, PathVerb::line, path.points[--p]);
                break;
            case PathVerb::curve:
                addCurve(out, path.points[p - 1], path.points[p - 2], path.points[p - 3]);
                p -= 3;
                break;
            default:
                break;
            }
        }
        if (closed) out.verbs.push_back(PathVerb::close);
        verb = last;
        at = end;
    }
    return out;
}

bool contains(const Path& path, NSPoint p, backend::FillRule rule) noexcept {
    if (!isFinite(p)) return false;
    const NSRect box = controlBounds(path);
    if (p.x < NSMinX(box) || p.x > NSMaxX(box) || p.y < NSMinY(box) || p.y > NSMaxY(box)) return false;
    const double extent = std::max(box.size.width, box.size.height);
    if (!(extent > 0)) return false;
    int winding = 0;
    walk(path, std::min(1e-3, extent * 1e-5), [&](NSPoint a, NSPoint b) {
        if ((a.y <= p.y) == (b.y <= p.y)) return;
        const double x = a.x + (p.y - a.y) / (b.y - a.y) * (b.x - a.x);
        if (x > p.x) winding += a.y <= p.y ? 1 : -1;
    });
    return rule == backend::FillRule::evenOdd ? (winding & 1) != 0 : winding != 0;
}

} // namespace libvue::outline
