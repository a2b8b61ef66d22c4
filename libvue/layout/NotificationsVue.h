#pragma once

#include <libvue/platform/foundation/ConstantString.h>

namespace libvue {

/// Posted by the application's content when it is about to want another size: the object is the popover's content view
/// controller, "size" in the user information an NSValue of an NSSize. The name and its text differ.
inline constexpr ConstantString kContentWouldChangeSizeNotification{u"kViewWouldChangeBounds"};

/// Posted by KCVueAvecNotifications; the object is the view.
inline constexpr ConstantString kNSViewDidMoveToWindowNotification{u"kNSViewDidMoveToWindowNotification"};

} // namespace libvue
