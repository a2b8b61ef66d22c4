#pragma once

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/graphics/Forward.h>

namespace libvue {

/// x' = m11·x + m21·y + tX, y' = m12·x + m22·y + tY.
struct NSAffineTransformStruct {
    CGFloat m11 = 1, m12 = 0, m21 = 0, m22 = 1, tX = 0, tY = 0;
    friend bool operator==(const NSAffineTransformStruct&, const NSAffineTransformStruct&) = default;
};

/// A mutable map of the plane. translate…, scale…, rotate… and prependTransform change what happens to a point first.
class LIBVUE_API NSAffineTransform : public NSObject {
public:
    static void describe(ClassDescription<NSAffineTransform>& c);
    /// The identity.
    NSAffineTransform() noexcept = default;
    explicit NSAffineTransform(const NSAffineTransform* other) noexcept;
    explicit NSAffineTransform(const backend::Transform& t) noexcept;
    [[nodiscard]] static Ref<NSAffineTransform> transform();

    void translateXBy_yBy(CGFloat dx, CGFloat dy) noexcept;
    void scaleBy(CGFloat factor) noexcept { scaleXBy_yBy(factor, factor); }
    void scaleXBy_yBy(CGFloat sx, CGFloat sy) noexcept;
    void rotateByDegrees(CGFloat degrees) noexcept;
    void rotateByRadians(CGFloat radians) noexcept;
    /// `other` is applied after this.
    void appendTransform(const NSAffineTransform* other) noexcept;
    /// `other` is applied before this.
    void prependTransform(const NSAffineTransform* other) noexcept;
    /// Raises NSInternalInconsistencyException where there is no inverse.
    void invert();

    [[nodiscard]] NSPoint transformPoint(NSPoint p) const noexcept;
    /// Without the translation.
    [[nodiscard]] NSSize transformSize(NSSize s) const noexcept;
    [[nodiscard]] Ref<NSBezierPath> transformBezierPath(const NSBezierPath* path) const;
    [[nodiscard]] NSAffineTransformStruct transformStruct() const noexcept { return m_; }
    void setTransformStruct(const NSAffineTransformStruct& m) noexcept { m_ = m; }
    [[nodiscard]] backend::Transform backendTransform() const noexcept;

    /// Replaces the transform of the current context.
    void set() const;
    /// Prepends it to the transform of the current context.
    void concat() const;

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSString> description() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;

private:
    NSAffineTransformStruct m_;
};

} // namespace libvue
