#pragma once

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/ConstantString.h>

namespace libvue {

/// Assistive tools are to say something that no change of the focus would have them say. The user information holds
/// the text, and how much it matters.
inline constexpr ConstantString NSAccessibilityAnnouncementRequestedNotification{u"AXAnnouncementRequested"};
/// NSString.
inline constexpr ConstantString NSAccessibilityAnnouncementKey{u"AXAnnouncementKey"};
/// NSNumber, an NSAccessibilityPriorityLevel; low where absent.
inline constexpr ConstantString NSAccessibilityPriorityKey{u"AXPriorityKey"};

enum NSAccessibilityPriorityLevel : NSInteger {
    NSAccessibilityPriorityLow = 10,
    NSAccessibilityPriorityMedium = 50,
    NSAccessibilityPriorityHigh = 90
};

/// Tells assistive tools, through the notification centre: `element` is the object. A null element or name is ignored.
LIBVUE_API void NSAccessibilityPostNotificationWithUserInfo(NSObject* element, NSString* notification,
                                                            NSDictionary* userInfo);
/// Has the text said. A null or empty one is ignored.
LIBVUE_API void announceForAccessibility(NSObject* element, NSString* text, NSAccessibilityPriorityLevel priority);

} // namespace libvue
