#include <libvue/platform/backend/qt/RasterGradient.h>

#include <algorithm>
#include <cmath>

#include <QLinearGradient>

#include <libvue/platform/backend/qt/QtConvert.h>

namespace libvue::backend {

std::optional<QBrush> makeGradientBrush(const AxialGradient& gradient, const Transform& device, double alpha) {
    if (gradient.stops.empty() || !isFinite(gradient.start) || !isFinite(gradient.end) ||
        gradient.start == gradient.end)
        return std::nullopt;
    QLinearGradient brush(toQt(gradient.start), toQt(gradient.end));
    QGradientStops stops;
    stops.reserve(static_cast<qsizetype>(gradient.stops.size()));
    // The painter keeps one colour a position: a hard edge is two positions side by side.
    constexpr double step = 1e-5;
    double last = -1;
    for (const GradientStop& stop : gradient.stops) {
        double position = component(stop.position);
        if (position <= last) {
            position = last + step;
            if (position > 1) {
                // No room behind the end: what stands there moves back.
                for (qsizetype i = stops.size() - 1;
                     i >= 0 && stops[i].first > 1 - step * static_cast<double>(stops.size() - i); --i)
                    stops[i].first = 1 - step * static_cast<double>(stops.size() - i);
                position = 1;
            }
        }
        stops.append({position, toQt(stop.color, alpha)});
        last = position;
    }
    brush.setStops(stops);
    QBrush result(brush);
    result.setTransform(toQt(device));
    return result;
}

std::optional<Path> gradientStrip(const AxialGradient& gradient, const NSRect& bounds) {
    // The box of a turned clip is larger than the clip, never smaller.
    const NSRect box = NSInsetRect(bounds, -1, -1);
    if (gradient.extendStart && gradient.extendEnd) {
        const double x1 = NSMaxX(box);
        const double y1 = NSMaxY(box);
        return Path{{PathVerb::move, PathVerb::line, PathVerb::line, PathVerb::line, PathVerb::close},
                    {box.origin, {x1, box.origin.y}, {x1, y1}, {box.origin.x, y1}}};
    }
    const double dx = gradient.end.x - gradient.start.x;
    const double dy = gradient.end.y - gradient.start.y;
    const double length = std::hypot(dx, dy);
    const double ux = dx / length;
    const double uy = dy / length;
    // How far the corners of the box lie along the axis and beside it, in points from the start.
    double near = 0;
    double far = 0;
    double left = 0;
    double right = 0;
    bool first = true;
    for (const NSPoint corner : {box.origin, NSPoint{NSMaxX(box), box.origin.y}, NSPoint{NSMaxX(box), NSMaxY(box)},
                                 NSPoint{box.origin.x, NSMaxY(box)}}) {
        const double x = corner.x - gradient.start.x;
        const double y = corner.y - gradient.start.y;
        const double along = x * ux + y * uy;
        const double beside = y * ux - x * uy;
        near = first ? along : std::min(near, along);
        far = first ? along : std::max(far, along);
        left = first ? beside : std::min(left, beside);
        right = first ? beside : std::max(right, beside);
        first = false;
    }
    if (!gradient.extendStart) near = std::max(near, 0.0);
    if (!gradient.extendEnd) far = std::min(far, length);
    if (!(near < far)) return std::nullopt;
    const auto at = [&](double along, double beside) {
        // Along an axis the products are exact, so that the strip is a rectangle.
        const double x = dy == 0 ? std::copysign(1.0, dx) : dx == 0 ? 0 : ux;
        const double y = dx == 0 ? std::copysign(1.0, dy) : dy == 0 ? 0 : uy;
        return NSPoint{gradient.start.x + x * along - y * beside, gradient.start.y + y * along + x * beside};
    };
    return Path{{PathVerb::move, PathVerb::line, PathVerb::line, PathVerb::line, PathVerb::close},
                {at(near, left), at(far, left), at(far, right), at(near, right)}};
}

} // namespace libvue::backend
