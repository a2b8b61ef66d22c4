#pragma once

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/graphics/Forward.h>

namespace libvue {

/// A shadow under what is drawn. Offset and blur in points of the base space, y upward, whatever the transform.
class LIBVUE_API NSShadow : public NSObject {
public:
    static void describe(ClassDescription<NSShadow>& c);
    /// No offset, no blur, black at a third.
    NSShadow();
    explicit NSShadow(NSCoder& coder);
    ~NSShadow() override;

    [[nodiscard]] NSSize shadowOffset() const noexcept { return offset_; }
    void setShadowOffset(NSSize offset) noexcept { offset_ = offset; }
    [[nodiscard]] CGFloat shadowBlurRadius() const noexcept { return blur_; }
    /// A negative radius counts as 0.
    void setShadowBlurRadius(CGFloat radius) noexcept { blur_ = radius > 0 ? radius : 0; }
    [[nodiscard]] NSColor* shadowColor() const noexcept { return color_.get(); }
    /// Null casts no shadow.
    void setShadowColor(NSColor* color);

    /// Puts it into the graphics state of the current context. Without one, nothing.
    void set() const;
    /// What the backend casts now. False where there is nothing to see.
    [[nodiscard]] bool resolve(backend::Shadow& out) const;

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;

private:
    NSSize offset_;
    CGFloat blur_ = 0;
    Ref<NSColor> color_;
};

} // namespace libvue
