#include <libvue/platform/foundation/NSNotification.h>

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

void NSNotification::describe(ClassDescription<NSNotification>& c) {
    c.key<&NSNotification::name>("name");
    c.key<&NSNotification::object>("object");
    c.key<&NSNotification::userInfo>("userInfo");
}

NSNotification::NSNotification(NSString* name, NSObject* object, NSDictionary* userInfo)
    : name_(name), object_(object), userInfo_(userInfo) {}

NSNotification::~NSNotification() = default;

Ref<NSNotification> NSNotification::notificationWithName_object(NSString* name, NSObject* object) {
    return make<NSNotification>(name, object);
}

Ref<NSNotification> NSNotification::notificationWithName_object_userInfo(NSString* name, NSObject* object,
                                                                         NSDictionary* userInfo) {
    return make<NSNotification>(name, object, userInfo);
}

NSString* NSNotification::name() const noexcept { return name_; }
NSDictionary* NSNotification::userInfo() const noexcept { return userInfo_; }

Ref<NSObject> NSNotification::copyWithZone() const { return Ref<NSObject>(const_cast<NSNotification*>(this)); }

} // namespace libvue
