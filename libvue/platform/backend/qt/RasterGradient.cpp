#include <libvue/platform/backend/qt/RasterGradient.h>

#include <algorithm>
#include <cmath>

#include <QLinearGradient>

#include <libvue/platform/backend/qt/QtConvert.h>

namespace libvue::backend {

namespace {

enum class Along { x, y, neither };

/// An angle of π/2 leaves a trace of the other axis, which is none of it.
Along alongAxis(const AxialGradient& gradient) {
    constexpr double trace = 1e-9;
    const double dx = std::abs(gradient.end.x - gradient.start.x);
    const double dy = std::abs(gradient.end.y - gradient.start.y);
    if (dy <= trace * dx) return Along::x;
    return dx <= trace * dy ? Along::y : Along::neither;
}

} // namespace

std::optional<QBrush> makeGradientBrush(const AxialGradient& gradient, const Transform& device, double alpha) {
    if (gradient.stops.empty() || !isFinite(gradient.start) || !isFinite(gradient.end) ||
        gradient.start == gradient.end)
        return std::nullopt;
    // Where perpendiculars stay so, the two ends say all; the painter is quicker with them than with a transform.
    const bool straight = device.b == 0 && device.c == 0 &&
                          (std::abs(device.a) == std::abs(device.d) || alongAxis(gradient) != Along::neither);
    const Transform ends = straight ? device : Transform{};
    QLinearGradient brush(toQt(ends.apply(gradient.start)), toQt(ends.apply(gradient.end)));
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
    if (!straight) result.setTransform(toQt(device));
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

std::optional<NSRect> gradientStripAlongAxis(const AxialGradient& gradient, const NSRect& bounds) {
    const Along axis = alongAxis(gradient);
    const bool across = axis == Along::x;
    const double start = across ? gradient.start.x : gradient.start.y;
    const double end = across ? gradient.end.x : gradient.end.y;
    if (axis == Along::neither || start == end) return std::nullopt;
    const NSRect box = NSInsetRect(bounds, -1, -1);
    double low = across ? box.origin.x : box.origin.y;
    double high = across ? NSMaxX(box) : NSMaxY(box);
    const bool forward = start < end;
    if (!(forward ? gradient.extendStart : gradient.extendEnd)) low = std::max(low, std::min(start, end));
    if (!(forward ? gradient.extendEnd : gradient.extendStart)) high = std::min(high, std::max(start, end));
    const double extent = std::max(high - low, 0.0);
    return across ? NSRect{{low, box.origin.y}, {extent, box.size.height}}
                  : NSRect{{box.origin.x, low}, {box.size.width, extent}};
}

bool isOpaque(const AxialGradient& gradient, double alpha) noexcept {
    return std::all_of(gradient.stops.begin(), gradient.stops.end(),
                       [=](const GradientStop& stop) { return stop.color.alpha * alpha >= 1; });
}

void gradientRamp(const AxialGradient& gradient, double start, double end, int first, int count, QRgb* out) {
    const std::vector<GradientStop>& stops = gradient.stops;
    // The pixels may run against the axis: colours are looked up in its own sense.
    const bool forward = start < end;
    std::size_t next = 0;
    for (int i = 0; i < count; ++i) {
        const int pixel = forward ? i : count - 1 - i;
        const double t = (first + pixel + 0.5 - start) / (end - start);
        while (next < stops.size() && stops[next].position < t)
            ++next;
        const GradientStop& to = stops[std::min(next, stops.size() - 1)];
        const GradientStop& from = next > 0 ? stops[next - 1] : to;
        const double span = to.position - from.position;
        const double f = span > 0 ? (t - from.position) / span : 0;
        const auto mixed = [f](double a, double b) {
            return static_cast<int>((component(a) + (component(b) - component(a)) * f) * 255 + 0.5);
        };
        out[pixel] = qRgb(mixed(from.color.red, to.color.red), mixed(from.color.green, to.color.green),
                          mixed(from.color.blue, to.color.blue));
    }
}

} // namespace libvue::backend
