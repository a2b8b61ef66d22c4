#include <libvue/platform/graphics/NSBezierPath.h>

#include <algorithm>
#include <cstring>

#include <libvue/platform/foundation/CoderAccess.h>
#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/FiniteGeometry.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/graphics/HeldEnum.h>
#include <libvue/platform/graphics/NSBezierPathState.h>
#include <libvue/platform/graphics/PathGeometry.h>

namespace libvue {

namespace {

constexpr ConstantString verbsKey{u"NSSegments"};
constexpr ConstantString pointsKey{u"NSPoints"};
constexpr ConstantString widthKey{u"NSLineWidth"};
constexpr ConstantString capKey{u"NSLineCap"};
constexpr ConstantString joinKey{u"NSLineJoin"};
constexpr ConstantString miterKey{u"NSMiterLimit"};
constexpr ConstantString ruleKey{u"NSWindingRule"};
constexpr ConstantString dashKey{u"NSDash"};
constexpr ConstantString phaseKey{u"NSDashPhase"};

template <class T> std::vector<T> read(const NSData* data) {
    std::vector<T> out;
    if (!data || data->length() % sizeof(T) != 0 || data->length() == 0) return out;
    out.resize(data->length() / sizeof(T));
    std::memcpy(out.data(), data->bytes(), data->length());
    return out;
}

} // namespace

void NSBezierPath::encodeWithCoder(NSCoder& coder) const {
    const backend::Path& path = s_->path;
    const backend::Stroke& stroke = s_->stroke;
    CoderWriter out(coder);
    out.bytes(path.verbs.data(), path.verbs.size(), verbsKey);
    out.bytes(path.points.data(), path.points.size() * sizeof(NSPoint), pointsKey);
    out.real(stroke.width, widthKey);
    out.integer(static_cast<NSInteger>(stroke.cap), capKey);
    out.integer(static_cast<NSInteger>(stroke.join), joinKey);
    out.real(stroke.miterLimit, miterKey);
    out.integer(static_cast<NSInteger>(s_->rule), ruleKey);
    out.bytes(stroke.dash.data(), stroke.dash.size() * sizeof(double), dashKey);
    out.real(stroke.dashPhase, phaseKey);
}

NSBezierPath::NSBezierPath(NSCoder& coder) : NSBezierPath() {
    CoderReader in(coder, this);
    backend::Path path;
    path.verbs = read<backend::PathVerb>(in.bytes(verbsKey));
    path.points = read<NSPoint>(in.bytes(pointsKey));
    setLineWidth(in.real(widthKey));
    using backend::LineCap;
    using backend::LineJoin;
    s_->stroke.cap = heldEnum(in.integer(capKey), LineCap::butt, LineCap::square, LineCap::butt);
    s_->stroke.join = heldEnum(in.integer(joinKey), LineJoin::miter, LineJoin::bevel, LineJoin::miter);
    s_->stroke.miterLimit = in.real(miterKey);
    s_->rule = heldEnum(in.integer(ruleKey), NSNonZeroWindingRule, NSEvenOddWindingRule, NSNonZeroWindingRule);
    const std::vector<double> dash = read<double>(in.bytes(dashKey));
    setLineDash_count_phase(dash.data(), static_cast<NSInteger>(dash.size()), in.real(phaseKey));

    // Verbs that do not fit their points would be read past the end: the path is empty then.
    std::size_t needed = 0;
    bool good = path.verbs.empty() || path.verbs.front() == backend::PathVerb::move;
    for (backend::PathVerb verb : path.verbs) {
        good = good && verb <= backend::PathVerb::close;
        needed += static_cast<std::size_t>(outline::pointsOf(verb));
    }
    for (const NSPoint& p : path.points)
        good = good && isFinite(p);
    if (!good || needed != path.points.size()) return;
    s_->path = std::move(path);
    s_->findStart();
}

} // namespace libvue
