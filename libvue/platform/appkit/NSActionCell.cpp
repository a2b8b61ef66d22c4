#include <libvue/platform/appkit/NSActionCell.h>

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

static const ClassRegistration<NSActionCell> registration;

namespace {
constexpr ConstantString kTarget{u"NSTarget"}, kAction{u"NSAction"}, kTag{u"NSTag"};
}

void NSActionCell::describe(ClassDescription<NSActionCell, NSCell>& c) {
    c.key<&NSActionCell::tag, &NSActionCell::setTag>("tag");
}

NSActionCell::NSActionCell(NSCoder& coder)
    : NSCell(coder),
      target_(coder.decodeObjectForKey(kTarget)),
      action_(findSelector(coder.decodeObjectOf_forKey<NSString>(kAction))),
      tag_(coder.decodeIntegerForKey(kTag)) {}

void NSActionCell::encodeWithCoder(NSCoder& coder) const {
    NSCell::encodeWithCoder(coder);
    coder.encodeConditionalObject_forKey(target_.get(), kTarget);
    coder.encodeObject_forKey(NSStringFromSelector(action_), kAction);
    coder.encodeInteger_forKey(tag_, kTag);
}

Ref<NSObject> NSActionCell::copyWithZone() const {
    Ref<NSObject> made = NSCell::copyWithZone();
    if (auto* c = as<NSActionCell>(made)) {
        c->target_ = target_;
        c->action_ = action_;
        c->tag_ = tag_;
    }
    return made;
}

} // namespace libvue
