#include <libvue/platform/graphics/CGContext.h>

#include <algorithm>
#include <array>
#include <cmath>

#include <libvue/platform/backend/Canvas.h>
#include <libvue/platform/graphics/ColorConversion.h>

namespace libvue {

void CGContextSaveGState(CGContextRef context) {
    if (context) context->saveState();
}

void CGContextRestoreGState(CGContextRef context) {
    if (context) context->restoreState();
}

void CGContextTranslateCTM(CGContextRef context, CGFloat tx, CGFloat ty) {
    if (context) context->canvas().concat(backend::Transform::translation(tx, ty));
}

void CGContextScaleCTM(CGContextRef context, CGFloat sx, CGFloat sy) {
    if (context) context->canvas().concat(backend::Transform::scaling(sx, sy));
}

Ref<CGFunction> CGFunctionCreate(void* info, NSUInteger inputs, const CGFloat* domain, NSUInteger outputs,
                                 const CGFloat* range, const CGFunctionCallbacks* callbacks) {
    if (inputs != 1 || outputs == 0 || outputs > CGFunction::maximumOutputs || !callbacks || !callbacks->evaluate)
        return nullptr;
    Ref<CGFunction> f = adopt(new CGFunction());
    f->info_ = info;
    f->callbacks_ = *callbacks;
    f->outputs_ = outputs;
    if (domain) std::copy_n(domain, 2, f->domain_);
    if (range) {
        std::copy_n(range, 2 * outputs, f->range_);
        f->ranged_ = true;
    }
    return f;
}

CGFunction::~CGFunction() {
    if (callbacks_.releaseInfo) callbacks_.releaseInfo(info_);
}

void CGFunction::evaluate(CGFloat in, CGFloat* out) const {
    callbacks_.evaluate(info_, &in, out);
    if (!ranged_) return;
    for (NSUInteger i = 0; i < outputs_; ++i)
        out[i] = std::min(std::max(out[i], range_[2 * i]), range_[2 * i + 1]);
}

namespace {

class Sampler {
public:
    Sampler(CGColorSpaceRef space, const CGFunction& function) : space_(space), function_(function) {}

    [[nodiscard]] backend::Color at(double t) const {
        std::array<CGFloat, CGFunction::maximumOutputs> out{};
        const double low = function_.domainStart(), high = function_.domainEnd();
        function_.evaluate(low + (high - low) * t, out.data());
        if (space_ == CGColorSpace::deviceGray) {
            const double w = unitInterval(out[0]);
            return {w, w, w, unitInterval(out[1])};
        }
        return {unitInterval(out[0]), unitInterval(out[1]), unitInterval(out[2]), unitInterval(out[3])};
    }

    /// The stops after `from`, up to and with `to`.
    void between(const backend::GradientStop& from, const backend::GradientStop& to, int depth,
                 std::vector<backend::GradientStop>& stops) const {
        const backend::GradientStop middle{(from.position + to.position) / 2, at((from.position + to.position) / 2)};
        // Even stretches are looked into a little as well: a function may be the same at both ends and in the middle.
        constexpr int evenDepth = 3, deepest = 9;
        if (depth < deepest && (depth < evenDepth || bends(from.color, middle.color, to.color))) {
            between(from, middle, depth + 1, stops);
            between(middle, to, depth + 1, stops);
        } else
            stops.push_back(to);
    }

private:
    static bool bends(const backend::Color& a, const backend::Color& m, const backend::Color& b) {
        constexpr double halfStep = 0.5 / 255;
        const auto off = [](double x, double y, double z) { return std::abs((x + z) / 2 - y) > halfStep; };
        return off(a.red, m.red, b.red) || off(a.green, m.green, b.green) || off(a.blue, m.blue, b.blue) ||
               off(a.alpha, m.alpha, b.alpha);
    }

    CGColorSpaceRef space_;
    const CGFunction& function_;
};

/// Drops the stops that lie on the line between their neighbours.
void thinOut(std::vector<backend::GradientStop>& stops) {
    const auto close = [](double a, double b) { return std::abs(a - b) < 1e-9; };
    std::size_t kept = 0;
    for (std::size_t i = 1; i < stops.size(); ++i) {
        if (i + 1 < stops.size()) {
            const auto& a = stops[kept];
            const auto& m = stops[i];
            const auto& b = stops[i + 1];
            const double f = (m.position - a.position) / (b.position - a.position);
            const auto on = [&](double x, double y, double z) { return close(x + (z - x) * f, y); };
            if (on(a.color.red, m.color.red, b.color.red) && on(a.color.green, m.color.green, b.color.green) &&
                on(a.color.blue, m.color.blue, b.color.blue) && on(a.color.alpha, m.color.alpha, b.color.alpha))
                continue;
        }
        stops[++kept] = stops[i];
    }
    stops.resize(kept + 1);
}

} // namespace

CGShading::CGShading(CGColorSpaceRef space, CGPoint start, CGPoint end, CGFunction* function, BOOL extendStart,
                     BOOL extendEnd)
    : space_(space), start_(start), end_(end), function_(function), extendStart_(extendStart), extendEnd_(extendEnd) {}

CGShading::~CGShading() = default;

void CGShading::draw(NSGraphicsContext& context) const {
    const Sampler sampler(space_, *function_);
    backend::AxialGradient gradient{start_, end_, {}, extendStart_, extendEnd_};
    const backend::GradientStop first{0, sampler.at(0)}, last{1, sampler.at(1)};
    if (const NSUInteger knots = function_->knots()) {
        gradient.stops.reserve(knots);
        gradient.stops.push_back(first);
        if (knots == 3) gradient.stops.push_back({0.5, sampler.at(0.5)});
        gradient.stops.push_back(last);
    } else {
        constexpr std::size_t usual = 32;
        gradient.stops.reserve(usual);
        gradient.stops.push_back(first);
        sampler.between(first, last, 0, gradient.stops);
        thinOut(gradient.stops);
    }
    context.canvas().drawGradient(gradient);
}

Ref<CGShading> CGShadingCreateAxial(CGColorSpaceRef space, CGPoint start, CGPoint end, CGFunction* function,
                                    BOOL extendStart, BOOL extendEnd) {
    if (!function || function->outputs() != CGColorSpaceGetNumberOfComponents(space) + 1) return nullptr;
    return make<CGShading>(space, start, end, function, extendStart, extendEnd);
}

void CGContextDrawShading(CGContextRef context, const CGShading* shading) {
    if (context && shading) shading->draw(*context);
}

} // namespace libvue
