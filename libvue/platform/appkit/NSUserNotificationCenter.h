#pragma once

#include <vector>

#include <libvue/platform/appkit/NSUserNotification.h>
#include <libvue/platform/foundation/NSArray.h>

namespace libvue {

class NSUserNotificationCenter;

/// Optional operations of the centre's delegate.
namespace op {
inline constexpr Operation<void(NSUserNotificationCenter*, NSUserNotification*)>
    userNotificationCenter_didDeliverNotification{"userNotificationCenter:didDeliverNotification:"};
inline constexpr Operation<void(NSUserNotificationCenter*, NSUserNotification*)>
    userNotificationCenter_didActivateNotification{"userNotificationCenter:didActivateNotification:"};
} // namespace op

/// Hands notifications to the desktop's service, and never waits for it: what came of one is told from the run loop.
/// A service that is absent, goes away or does not answer makes the notification fail; see setFailureHandler_.
class LIBVUE_API NSUserNotificationCenter : public NSObject {
public:
    static void describe(ClassDescription<NSUserNotificationCenter>& c);
    /// The one of the process.
    [[nodiscard]] static NSUserNotificationCenter* defaultUserNotificationCenter();

    [[nodiscard]] NSObject* delegate() const noexcept { return delegate_; }
    /// Held weakly.
    void setDelegate(NSObject* delegate);

    /// Whether somebody would show a notification now, as far as is known.
    [[nodiscard]] BOOL isAvailable_() const;
    /// Null is ignored. One that is delivered anew takes its own place.
    void deliverNotification(NSUserNotification* notification);
    void removeDeliveredNotification(NSUserNotification* notification);
    void removeAllDeliveredNotifications();
    /// Those that were delivered and not removed, in order.
    [[nodiscard]] Ref<NSArray> deliveredNotifications() const;

private:
    NSUserNotificationCenter();
    ~NSUserNotificationCenter() override;
    /// What became of a delivery; `outcome` is one of the backend's NotificationService::Outcome.
    void heard(NSUInteger number, int outcome);
    void withdraw(NSUInteger number) const;

    Weak<NSObject> delegate_;
    std::vector<Ref<NSUserNotification>> delivered_;
    NSUInteger last_ = 0;
};

} // namespace libvue
