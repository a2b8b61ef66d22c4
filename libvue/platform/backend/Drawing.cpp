#include <libvue/platform/backend/Drawing.h>

#include <algorithm>
#include <cmath>

namespace libvue::backend {

Transform Transform::rotation(double radians) noexcept {
    const double c = std::cos(radians);
    const double s = std::sin(radians);
    return {c, s, -s, c, 0, 0};
}

Transform Transform::then(const Transform& n) const noexcept {
    return {n.a * a + n.c * b, n.b * a + n.d * b,          n.a * c + n.c * d,
            n.b * c + n.d * d, n.a * tx + n.c * ty + n.tx, n.b * tx + n.d * ty + n.ty};
}

Transform Transform::inverted() const noexcept {
    const double determinant = a * d - b * c;
    if (determinant == 0 || !std::isfinite(determinant)) return {};
    const double r = 1 / determinant;
    if (!std::isfinite(r)) return {};
    return {d * r, -b * r, -c * r, a * r, (c * ty - d * tx) * r, (b * tx - a * ty) * r};
}

NSRect Transform::apply(const NSRect& r) const noexcept {
    const double w = a * r.size.width;
    const double h = d * r.size.height;
    const NSPoint o = apply(r.origin);
    if (b == 0 && c == 0) return {{std::min(o.x, o.x + w), std::min(o.y, o.y + h)}, {std::abs(w), std::abs(h)}};
    const double wy = b * r.size.width;
    const double hx = c * r.size.height;
    const double x0 = o.x + std::min({0.0, w, hx, w + hx});
    const double x1 = o.x + std::max({0.0, w, hx, w + hx});
    const double y0 = o.y + std::min({0.0, wy, h, wy + h});
    const double y1 = o.y + std::max({0.0, wy, h, wy + h});
    return {{x0, y0}, {x1 - x0, y1 - y0}};
}

} // namespace libvue::backend
