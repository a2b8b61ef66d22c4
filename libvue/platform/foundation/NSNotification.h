#pragma once

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// What observers are told: a name, the object that it is about, and what more there is to say.
class LIBVUE_API NSNotification : public NSObject {
public:
    static void describe(ClassDescription<NSNotification>& c);
    NSNotification(NSString* name, NSObject* object, NSDictionary* userInfo = nullptr);
    ~NSNotification() override;
    [[nodiscard]] static Ref<NSNotification> notificationWithName_object(NSString* name, NSObject* object);
    [[nodiscard]] static Ref<NSNotification> notificationWithName_object_userInfo(NSString* name, NSObject* object,
                                                                                  NSDictionary* userInfo);

    [[nodiscard]] NSString* name() const noexcept;
    /// Null where the notification is about no object. Kept by the notification.
    [[nodiscard]] NSObject* object() const noexcept { return object_; }
    /// Null where none was given.
    [[nodiscard]] NSDictionary* userInfo() const noexcept;

    [[nodiscard]] Ref<NSObject> copyWithZone() const override;

private:
    friend class NotificationOfPost;

    Ref<NSString> name_;
    Ref<NSObject> object_;
    Ref<NSDictionary> userInfo_;
};

} // namespace libvue
