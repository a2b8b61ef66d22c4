#include <libvue/platform/appkit/NSAccessibility.h>

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

void NSAccessibilityPostNotificationWithUserInfo(NSObject* element, NSString* notification, NSDictionary* userInfo) {
    if (!element || !notification) return;
    NSNotificationCenter::defaultCenter()->postNotificationName_object_userInfo(notification, element, userInfo);
}

void announceForAccessibility(NSObject* element, NSString* text, NSAccessibilityPriorityLevel priority) {
    if (!text || text->length() == 0) return;
    const auto info = NSMutableDictionary::dictionary();
    info->setObject_forKey(text, NSAccessibilityAnnouncementKey.get());
    info->setObject_forKey(NSNumber::numberWithInteger(priority), NSAccessibilityPriorityKey.get());
    NSAccessibilityPostNotificationWithUserInfo(element, NSAccessibilityAnnouncementRequestedNotification, info);
}

} // namespace libvue
