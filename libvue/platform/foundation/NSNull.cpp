#include <libvue/platform/foundation/NSNull.h>

#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {
const ClassRegistration<NSNull> registration;
}

void NSNull::describe(ClassDescription<NSNull>&) {}

NSNull* NSNull::null() {
    static NSNull* const one = keptForever(adopt(new NSNull()));
    return one;
}

Ref<NSNull> NSNull::initWithCoder(NSCoder&) { return null(); }
Ref<NSString> NSNull::description() const { return u"<null>"_ns; }
Ref<NSObject> NSNull::copyWithZone() const { return Ref<NSObject>(null()); }

} // namespace libvue
