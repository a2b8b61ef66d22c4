#include <libvue/platform/graphics/NSShadow.h>

#include <functional>

#include <libvue/platform/backend/Canvas.h>
#include <libvue/platform/foundation/CoderAccess.h>
#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>

namespace libvue {

namespace {

const ClassRegistration<NSShadow> registration;

constexpr ConstantString offsetKey{u"NSShadowOffset"};
constexpr ConstantString blurKey{u"NSShadowBlurRadius"};
constexpr ConstantString colorKey{u"NSShadowColor"};

NSColor* standardColor() {
    static NSColor* const c = keptForever(NSColor::colorWithCalibratedWhite_alpha(0, 1.0 / 3));
    return c;
}

} // namespace

void NSShadow::describe(ClassDescription<NSShadow>& c) { c.answers<&NSShadow::set>("set"); }

NSShadow::NSShadow() : color_(standardColor()) {}

NSShadow::~NSShadow() = default;

void NSShadow::setShadowColor(NSColor* color) { color_ = color; }

bool NSShadow::resolve(backend::Shadow& out) const {
    if (!color_) return false;
    out.offset = offset_;
    out.blur = blur_;
    out.color = color_->resolved();
    return out.color.alpha > 0 && (blur_ > 0 || offset_.width != 0 || offset_.height != 0);
}

void NSShadow::set() const {
    NSGraphicsContext* c = NSGraphicsContext::currentContext();
    if (!c) return;
    backend::Shadow shadow;
    c->canvas().setShadow(resolve(shadow) ? &shadow : nullptr);
}

BOOL NSShadow::isEqual(const NSObject* other) const {
    const auto* o = as<const NSShadow>(other);
    return o && offset_ == o->offset_ && blur_ == o->blur_ && libvue::isEqual(color_, o->color_);
}

NSUInteger NSShadow::hash() const {
    const std::hash<double> h;
    return (h(offset_.width) * 31 + h(offset_.height)) * 31 + h(blur_);
}

Ref<NSObject> NSShadow::copyWithZone() const {
    Ref<NSShadow> s = make<NSShadow>();
    s->offset_ = offset_;
    s->blur_ = blur_;
    s->color_ = color_;
    return s;
}

void NSShadow::encodeWithCoder(NSCoder& coder) const {
    CoderWriter out(coder);
    out.size(offset_, offsetKey);
    out.real(blur_, blurKey);
    out.object(color_, colorKey);
}

NSShadow::NSShadow(NSCoder& coder) {
    CoderReader in(coder, this);
    offset_ = in.size(offsetKey);
    setShadowBlurRadius(in.real(blurKey));
    color_ = in.object<NSColor>(colorKey);
}

} // namespace libvue
