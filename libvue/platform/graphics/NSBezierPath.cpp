#include <libvue/platform/graphics/NSBezierPath.h>

#include <algorithm>
#include <cmath>
#include <string>

#include <libvue/platform/foundation/FiniteGeometry.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/graphics/NSAffineTransform.h>
#include <libvue/platform/graphics/NSBezierPathState.h>
#include <libvue/platform/graphics/PathGeometry.h>

namespace libvue {

using backend::PathVerb;

namespace {
const ClassRegistration<NSBezierPath> registration;
} // namespace

backend::Stroke& NSBezierPath::defaultStroke() {
    static backend::Stroke stroke;
    return stroke;
}

void NSBezierPath::State::findStart() {
    // The last move, from the end: subpaths are appended one by one.
    std::size_t at = path.points.size();
    for (std::size_t i = path.verbs.size(); i-- > 0;) {
        at -= static_cast<std::size_t>(outline::pointsOf(path.verbs[i]));
        if (path.verbs[i] != PathVerb::move) continue;
        start = path.points[at];
        return;
    }
}

NSBezierPath::State::Place NSBezierPath::State::placeOf(NSInteger index) const {
    if (index < 0 || index >= static_cast<NSInteger>(path.verbs.size()))
        raiseNamed(NSRangeException, "no path element of that index");
    Place place;
    for (std::size_t i = 0; i < static_cast<std::size_t>(index); ++i) {
        if (path.verbs[i] == PathVerb::move) place.start = path.points[place.point];
        place.point += static_cast<std::size_t>(outline::pointsOf(path.verbs[i]));
    }
    return place;
}

void NSBezierPath::describe(ClassDescription<NSBezierPath>& c) {
    c.answers<&NSBezierPath::fill>("fill");
    c.answers<&NSBezierPath::stroke>("stroke");
    c.classAnswers<&NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius>(
        "bezierPathWithRoundedRect:xRadius:yRadius:");
}

NSBezierPath::NSBezierPath() : s_(std::make_unique<State>()) { s_->stroke = defaultStroke(); }

NSBezierPath::~NSBezierPath() = default;

Ref<NSBezierPath> NSBezierPath::bezierPath() { return make<NSBezierPath>(); }

Ref<NSBezierPath> NSBezierPath::bezierPathWithRect(const NSRect& rect) {
    Ref<NSBezierPath> p = make<NSBezierPath>();
    p->appendBezierPathWithRect(rect);
    return p;
}

Ref<NSBezierPath> NSBezierPath::bezierPathWithOvalInRect(const NSRect& rect) {
    Ref<NSBezierPath> p = make<NSBezierPath>();
    p->appendBezierPathWithOvalInRect(rect);
    return p;
}

Ref<NSBezierPath> NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(const NSRect& rect, CGFloat xRadius,
                                                                          CGFloat yRadius) {
    Ref<NSBezierPath> p = make<NSBezierPath>();
    p->appendBezierPathWithRoundedRect_xRadius_yRadius(rect, xRadius, yRadius);
    return p;
}

void NSBezierPath::requireCurrentPoint(const char* operation) const {
    if (!s_->hasCurrentPoint())
        raiseNamed(NSGenericException, std::string(operation) + ": the path has no current point");
}

void NSBezierPath::moveToPoint(NSPoint p) {
    if (isFinite(p)) s_->move(p);
}

void NSBezierPath::lineToPoint(NSPoint p) {
    requireCurrentPoint("lineToPoint:");
    if (isFinite(p)) s_->line(p);
}

void NSBezierPath::curveToPoint_controlPoint1_controlPoint2(NSPoint end, NSPoint c1, NSPoint c2) {
    requireCurrentPoint("curveToPoint:controlPoint1:controlPoint2:");
    if (!isFinite(end) || !isFinite(c1) || !isFinite(c2)) return;
    s_->reopen();
    s_->path.verbs.push_back(PathVerb::curve);
    s_->path.points.insert(s_->path.points.end(), {c1, c2, end});
}

void NSBezierPath::closePath() { s_->close(); }

void NSBezierPath::removeAllPoints() {
    s_->path.verbs.clear();
    s_->path.points.clear();
}

void NSBezierPath::relativeMoveToPoint(NSPoint d) {
    const NSPoint c = currentPoint();
    moveToPoint({c.x + d.x, c.y + d.y});
}

void NSBezierPath::relativeLineToPoint(NSPoint d) {
    const NSPoint c = currentPoint();
    lineToPoint({c.x + d.x, c.y + d.y});
}

void NSBezierPath::relativeCurveToPoint_controlPoint1_controlPoint2(NSPoint end, NSPoint c1, NSPoint c2) {
    const NSPoint c = currentPoint();
    curveToPoint_controlPoint1_controlPoint2({c.x + end.x, c.y + end.y}, {c.x + c1.x, c.y + c1.y},
                                             {c.x + c2.x, c.y + c2.y});
}

void NSBezierPath::appendBezierPath(const NSBezierPath* path) {
    if (!path || path->isEmpty()) return;
    // By value: a path may be appended to itself.
    const backend::Path other = path->s_->path;
    const NSPoint start = path->s_->start;
    backend::Path& p = s_->path;
    p.verbs.insert(p.verbs.end(), other.verbs.begin(), other.verbs.end());
    p.points.insert(p.points.end(), other.points.begin(), other.points.end());
    s_->start = start;
}

void NSBezierPath::appendBezierPathWithRect(const NSRect& rect) {
    if (!isFinite(rect)) return;
    outline::appendRect(s_->path, rect);
    s_->start = rect.origin;
}

void NSBezierPath::appendBezierPathWithOvalInRect(const NSRect& rect) {
    if (!isFinite(rect)) return;
    outline::appendOval(s_->path, rect);
    s_->findStart();
}

void NSBezierPath::appendBezierPathWithRoundedRect_xRadius_yRadius(const NSRect& rect, CGFloat xRadius,
                                                                   CGFloat yRadius) {
    if (!isFinite(rect)) return;
    outline::appendRoundedRect(s_->path, rect, xRadius, yRadius);
    s_->findStart();
}

void NSBezierPath::appendBezierPathWithArcWithCenter_radius_startAngle_endAngle(NSPoint center, CGFloat radius,
                                                                                CGFloat start, CGFloat end) {
    appendBezierPathWithArcWithCenter_radius_startAngle_endAngle_clockwise(center, radius, start, end, NO);
}

void NSBezierPath::appendBezierPathWithArcWithCenter_radius_startAngle_endAngle_clockwise(NSPoint center,
                                                                                          CGFloat radius, CGFloat start,
                                                                                          CGFloat end, BOOL clockwise) {
    if (!isFinite(center) || !std::isfinite(start) || !std::isfinite(end) || !std::isfinite(radius)) return;
    const NSPoint d = outline::directionAtDegrees(start);
    const NSPoint from{center.x + radius * d.x, center.y + radius * d.y};
    if (!s_->hasCurrentPoint())
        s_->move(from);
    else if (!(s_->current() == from))
        s_->line(from);
    else
        s_->reopen();
    outline::appendArc(s_->path, center, radius, start, end,
                       clockwise ? outline::Turn::clockwise : outline::Turn::counterClockwise);
}

void NSBezierPath::appendBezierPathWithArcFromPoint_toPoint_radius(NSPoint corner, NSPoint to, CGFloat radius) {
    requireCurrentPoint("appendBezierPathWithArcFromPoint:toPoint:radius:");
    if (!isFinite(corner) || !isFinite(to)) return;
    const auto arc = outline::roundCorner(s_->current(), corner, to, radius);
    if (!arc) {
        s_->line(corner);
        return;
    }
    s_->line(arc->from);
    outline::appendArc(s_->path, arc->center, radius, arc->start, arc->end, arc->turn);
    // Exactly where the side is touched, whatever the angles lost.
    s_->path.points.back() = arc->to;
}

BOOL NSBezierPath::isEmpty() const { return s_->path.empty(); }

NSInteger NSBezierPath::elementCount() const { return static_cast<NSInteger>(s_->path.verbs.size()); }

NSBezierPathElement NSBezierPath::elementAtIndex_associatedPoints(NSInteger index, NSPoint* points) const {
    const backend::Path& p = s_->path;
    const State::Place place = s_->placeOf(index);
    const PathVerb verb = p.verbs[static_cast<std::size_t>(index)];
    if (points && verb == PathVerb::close)
        points[0] = place.start;
    else if (points)
        std::copy_n(p.points.begin() + static_cast<std::ptrdiff_t>(place.point), outline::pointsOf(verb), points);
    return static_cast<NSBezierPathElement>(verb);
}

NSPoint NSBezierPath::currentPoint() const {
    requireCurrentPoint("currentPoint");
    return s_->current();
}

NSRect NSBezierPath::bounds() const { return outline::bounds(s_->path); }

BOOL NSBezierPath::containsPoint(NSPoint p) const {
    return outline::contains(s_->path, p, static_cast<backend::FillRule>(s_->rule));
}

void NSBezierPath::transformUsingAffineTransform(const NSAffineTransform* t) {
    if (!t) return;
    const NSAffineTransformStruct m = t->transformStruct();
    for (const CGFloat v : {m.m11, m.m12, m.m21, m.m22, m.tX, m.tY})
        if (!std::isfinite(v)) return;
    for (NSPoint& p : s_->path.points)
        p = t->transformPoint(p);
    s_->start = t->transformPoint(s_->start);
}

Ref<NSBezierPath> NSBezierPath::bezierPathByFlatteningPath() const {
    Ref<NSBezierPath> p = make<NSBezierPath>();
    *p->s_ = *s_;
    p->s_->path = outline::flattened(s_->path, s_->flatness);
    return p;
}

Ref<NSBezierPath> NSBezierPath::bezierPathByReversingPath() const {
    Ref<NSBezierPath> p = make<NSBezierPath>();
    *p->s_ = *s_;
    p->s_->path = outline::reversed(s_->path);
    p->s_->findStart();
    return p;
}

CGFloat NSBezierPath::lineWidth() const { return s_->stroke.width; }
void NSBezierPath::setLineWidth(CGFloat width) { s_->stroke.width = width > 0 ? width : 0; }
NSLineCapStyle NSBezierPath::lineCapStyle() const { return static_cast<NSLineCapStyle>(s_->stroke.cap); }
void NSBezierPath::setLineCapStyle(NSLineCapStyle style) { s_->stroke.cap = static_cast<backend::LineCap>(style); }
NSLineJoinStyle NSBezierPath::lineJoinStyle() const { return static_cast<NSLineJoinStyle>(s_->stroke.join); }
void NSBezierPath::setLineJoinStyle(NSLineJoinStyle style) { s_->stroke.join = static_cast<backend::LineJoin>(style); }
CGFloat NSBezierPath::miterLimit() const { return s_->stroke.miterLimit; }
void NSBezierPath::setMiterLimit(CGFloat limit) { s_->stroke.miterLimit = limit; }
NSWindingRule NSBezierPath::windingRule() const { return s_->rule; }
void NSBezierPath::setWindingRule(NSWindingRule rule) { s_->rule = rule; }
CGFloat NSBezierPath::flatness() const { return s_->flatness; }
void NSBezierPath::setFlatness(CGFloat flatness) {
    constexpr CGFloat finest = 0.01;
    s_->flatness = flatness > finest ? flatness : finest;
}

void NSBezierPath::getLineDash_count_phase(CGFloat* pattern, NSInteger* count, CGFloat* phase) const {
    if (pattern) std::copy(s_->stroke.dash.begin(), s_->stroke.dash.end(), pattern);
    if (count) *count = static_cast<NSInteger>(s_->stroke.dash.size());
    if (phase) *phase = s_->stroke.dashPhase;
}

void NSBezierPath::setLineDash_count_phase(const CGFloat* pattern, NSInteger count, CGFloat phase) {
    s_->stroke.dash.clear();
    s_->stroke.dashPhase = std::isfinite(phase) ? phase : 0;
    if (!pattern || count <= 0) return;
    // A pattern that never advances would be walked for ever: the line is solid then.
    const auto good = [](CGFloat v) { return std::isfinite(v) && v >= 0; };
    if (!std::all_of(pattern, pattern + count, good)) return;
    if (std::none_of(pattern, pattern + count, [](CGFloat v) { return v > 0; })) return;
    s_->stroke.dash.assign(pattern, pattern + count);
}

void NSBezierPath::setDefaultLineWidth(CGFloat width) { defaultStroke().width = width > 0 ? width : 0; }
CGFloat NSBezierPath::defaultLineWidth() { return defaultStroke().width; }

BOOL NSBezierPath::isEqual(const NSObject* other) const {
    if (this == other) return YES;
    const auto* o = as<const NSBezierPath>(other);
    return o && s_->path == o->s_->path && s_->stroke == o->s_->stroke && s_->rule == o->s_->rule;
}

NSUInteger NSBezierPath::hash() const { return s_->path.verbs.size() * 31 + s_->path.points.size(); }

Ref<NSString> NSBezierPath::description() const {
    static constexpr const char* names[] = {"moveto", "lineto", "curveto", "closepath"};
    std::string text;
    std::size_t at = 0;
    for (PathVerb verb : s_->path.verbs) {
        if (!text.empty()) text += '\n';
        for (int i = 0; i < outline::pointsOf(verb); ++i) {
            const NSPoint p = s_->path.points[at++];
            text += std::to_string(p.x) + " " + std::to_string(p.y) + " ";
        }
        text += names[static_cast<std::size_t>(verb)];
    }
    return NSString::fromUTF8(text);
}

Ref<NSObject> NSBezierPath::copyWithZone() const {
    Ref<NSBezierPath> p = make<NSBezierPath>();
    *p->s_ = *s_;
    return p;
}

const backend::Path& NSBezierPath::backendPath() const noexcept { return s_->path; }

} // namespace libvue
