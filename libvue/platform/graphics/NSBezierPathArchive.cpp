#include <libvue/platform/graphics/NSBezierPath.h>

#include <algorithm>
#include <cstring>

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSCoder.h>
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
    const State& s = *s_;
    const std::size_t verbs = s.path.verbs.size();
    const std::size_t points = s.path.points.size() * sizeof(NSPoint);
    const std::size_t dash = s.stroke.dash.size() * sizeof(double);
    if (coder.allowsKeyedCoding()) {
        coder.encodeBytes_length_forKey(s.path.verbs.data(), verbs, verbsKey);
        coder.encodeBytes_length_forKey(s.path.points.data(), points, pointsKey);
        coder.encodeDouble_forKey(s.stroke.width, widthKey);
        coder.encodeInteger_forKey(static_cast<NSInteger>(s.stroke.cap), capKey);
        coder.encodeInteger_forKey(static_cast<NSInteger>(s.stroke.join), joinKey);
        coder.encodeDouble_forKey(s.stroke.miterLimit, miterKey);
        coder.encodeInteger_forKey(static_cast<NSInteger>(s.rule), ruleKey);
        coder.encodeBytes_length_forKey(s.stroke.dash.data(), dash, dashKey);
        coder.encodeDouble_forKey(s.stroke.dashPhase, phaseKey);
        return;
    }
    coder.encodeBytes_length(s.path.verbs.data(), verbs);
    coder.encodeBytes_length(s.path.points.data(), points);
    coder.encodeDouble(s.stroke.width);
    coder.encodeInteger(static_cast<NSInteger>(s.stroke.cap));
    coder.encodeInteger(static_cast<NSInteger>(s.stroke.join));
    coder.encodeDouble(s.stroke.miterLimit);
    coder.encodeInteger(static_cast<NSInteger>(s.rule));
    coder.encodeBytes_length(s.stroke.dash.data(), dash);
    coder.encodeDouble(s.stroke.dashPhase);
}

NSBezierPath::NSBezierPath(NSCoder& coder) : NSBezierPath() {
    coder.beginDecoding(this);
    const bool keyed = coder.allowsKeyedCoding();
    const auto bytes = [&](const ConstantString& key) {
        return keyed ? coder.decodeBytesForKey(key) : coder.decodeBytes();
    };
    const auto real = [&](const ConstantString& key) {
        return keyed ? coder.decodeDoubleForKey(key) : coder.decodeDouble();
    };
    const auto whole = [&](const ConstantString& key) {
        return keyed ? coder.decodeIntegerForKey(key) : coder.decodeInteger();
    };
    backend::Path path;
    path.verbs = read<backend::PathVerb>(bytes(verbsKey));
    path.points = read<NSPoint>(bytes(pointsKey));
    setLineWidth(real(widthKey));
    using backend::LineCap;
    using backend::LineJoin;
    s_->stroke.cap = heldEnum(whole(capKey), LineCap::butt, LineCap::square, LineCap::butt);
    s_->stroke.join = heldEnum(whole(joinKey), LineJoin::miter, LineJoin::bevel, LineJoin::miter);
    s_->stroke.miterLimit = real(miterKey);
    s_->rule = heldEnum(whole(ruleKey), NSNonZeroWindingRule, NSEvenOddWindingRule, NSNonZeroWindingRule);
    const std::vector<double> dash = read<double>(bytes(dashKey));
    setLineDash_count_phase(dash.data(), static_cast<NSInteger>(dash.size()), real(phaseKey));

    // Verbs that do not fit their points would be read past the end: the path is empty then.
    std::size_t needed = 0;
    bool good = path.verbs.empty() || path.verbs.front() == backend::PathVerb::move;
    for (backend::PathVerb verb : path.verbs) {
        good = good && verb <= backend::PathVerb::close;
        needed += static_cast<std::size_t>(outline::pointsOf(verb));
    }
    for (const NSPoint& p : path.points)
        good = good && outline::isFinite(p);
    if (!good || needed != path.points.size()) return;
    s_->path = std::move(path);
    s_->findStart();
}

} // namespace libvue
