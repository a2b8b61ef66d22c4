#include <libvue/platform/graphics/NSAffineTransform.h>

#include <cmath>
#include <string>

#include <libvue/platform/backend/Canvas.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/PathGeometry.h>

namespace libvue {

namespace {

NSAffineTransformStruct fromBackend(const backend::Transform& t) noexcept { return {t.a, t.b, t.c, t.d, t.tx, t.ty}; }
backend::Transform toBackend(const NSAffineTransformStruct& m) noexcept {
    return {m.m11, m.m12, m.m21, m.m22, m.tX, m.tY};
}

} // namespace

void NSAffineTransform::describe(ClassDescription<NSAffineTransform>& c) {
    c.answers<&NSAffineTransform::set>("set");
    c.answers<&NSAffineTransform::concat>("concat");
}

NSAffineTransform::NSAffineTransform(const NSAffineTransform* other) noexcept {
    if (other) m_ = other->m_;
}

NSAffineTransform::NSAffineTransform(const backend::Transform& t) noexcept : m_(fromBackend(t)) {}

Ref<NSAffineTransform> NSAffineTransform::transform() { return make<NSAffineTransform>(); }

backend::Transform NSAffineTransform::backendTransform() const noexcept { return toBackend(m_); }

void NSAffineTransform::translateXBy_yBy(CGFloat dx, CGFloat dy) noexcept {
    m_ = fromBackend(backend::Transform::translation(dx, dy).then(toBackend(m_)));
}

void NSAffineTransform::scaleXBy_yBy(CGFloat sx, CGFloat sy) noexcept {
    m_ = fromBackend(backend::Transform::scaling(sx, sy).then(toBackend(m_)));
}

void NSAffineTransform::rotateByDegrees(CGFloat degrees) noexcept {
    const NSPoint d = outline::directionAtDegrees(degrees);
    m_ = fromBackend(backend::Transform{d.x, d.y, -d.y, d.x, 0, 0}.then(toBackend(m_)));
}

void NSAffineTransform::rotateByRadians(CGFloat radians) noexcept {
    m_ = fromBackend(backend::Transform::rotation(radians).then(toBackend(m_)));
}

void NSAffineTransform::appendTransform(const NSAffineTransform* other) noexcept {
    if (other) m_ = fromBackend(toBackend(m_).then(toBackend(other->m_)));
}

void NSAffineTransform::prependTransform(const NSAffineTransform* other) noexcept {
    if (other) m_ = fromBackend(toBackend(other->m_).then(toBackend(m_)));
}

void NSAffineTransform::invert() {
    const double determinant = m_.m11 * m_.m22 - m_.m12 * m_.m21;
    if (determinant == 0 || !std::isfinite(determinant))
        raiseNamed(NSInternalInconsistencyException, "a transform without an inverse");
    m_ = fromBackend(toBackend(m_).inverted());
}

NSPoint NSAffineTransform::transformPoint(NSPoint p) const noexcept { return toBackend(m_).apply(p); }

NSSize NSAffineTransform::transformSize(NSSize s) const noexcept {
    return {m_.m11 * s.width + m_.m21 * s.height, m_.m12 * s.width + m_.m22 * s.height};
}

Ref<NSBezierPath> NSAffineTransform::transformBezierPath(const NSBezierPath* path) const {
    if (!path) return nullptr;
    Ref<NSBezierPath> p = as<NSBezierPath>(path->copyWithZone().get());
    p->transformUsingAffineTransform(this);
    return p;
}

void NSAffineTransform::set() const {
    NSGraphicsContext* c = NSGraphicsContext::currentContext();
    if (!c) return;
    backend::Canvas& canvas = c->canvas();
    canvas.concat(toBackend(m_).then(canvas.transform().inverted()));
}

void NSAffineTransform::concat() const {
    if (NSGraphicsContext* c = NSGraphicsContext::currentContext()) c->canvas().concat(toBackend(m_));
}

BOOL NSAffineTransform::isEqual(const NSObject* other) const {
    const auto* o = as<const NSAffineTransform>(other);
    return o && m_ == o->m_;
}

NSUInteger NSAffineTransform::hash() const {
    NSUInteger h = 17;
    for (CGFloat v : {m_.m11, m_.m12, m_.m21, m_.m22, m_.tX, m_.tY})
        h = h * 31 + std::hash<double>()(v);
    return h;
}

Ref<NSString> NSAffineTransform::description() const {
    std::string s = "{";
    for (CGFloat v : {m_.m11, m_.m12, m_.m21, m_.m22, m_.tX, m_.tY})
        s += (s.size() > 1 ? ", " : "") + std::to_string(v);
    return NSString::fromUTF8(s + "}");
}

Ref<NSObject> NSAffineTransform::copyWithZone() const { return make<NSAffineTransform>(this); }

} // namespace libvue
