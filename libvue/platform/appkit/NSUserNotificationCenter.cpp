#include <libvue/platform/appkit/NSUserNotificationCenter.h>

#include <algorithm>
#include <string>
#include <utility>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

static const ClassRegistration<NSUserNotificationCenter> registration;

void NSUserNotificationCenter::describe(ClassDescription<NSUserNotificationCenter>&) {}
NSUserNotificationCenter::NSUserNotificationCenter() = default;
NSUserNotificationCenter::~NSUserNotificationCenter() = default;

NSUserNotificationCenter* NSUserNotificationCenter::defaultUserNotificationCenter() {
    static NSUserNotificationCenter* const centre = [] {
        (void)classOf<NSUserNotificationCenter>();
        return keptForever(adopt(new NSUserNotificationCenter));
    }();
    return centre;
}

namespace {

using Outcome = backend::NotificationService::Outcome;

backend::NotificationService* service() { return backend::Backend::current().notices.get(); }

std::string plain(const NSString* s) { return s ? s->utf8() : std::string(); }

backend::Notice noticeOf(const NSUserNotification& n, NSUInteger number) {
    backend::Notice notice;
    notice.id = number;
    notice.title = plain(n.title());
    notice.body = plain(n.subtitle());
    if (const std::string text = plain(n.informativeText()); !text.empty())
        notice.body += (notice.body.empty() ? "" : "\n") + text;
    notice.sound = n.soundName() != nullptr;
    return notice;
}

} // namespace

void NSUserNotificationCenter::setDelegate(NSObject* delegate) { delegate_ = delegate; }

BOOL NSUserNotificationCenter::isAvailable_() const {
    auto* s = service();
    return s && s->isAvailable();
}

void NSUserNotificationCenter::deliverNotification(NSUserNotification* notification) {
    if (!notification) return;
    const Ref<NSUserNotification> kept(notification);
    removeDeliveredNotification(notification);
    notification->number_ = ++last_;
    notification->presented_ = false;
    delivered_.push_back(kept);
    // What is told comes from amid the wait for events: whoever hears of it does so at the next turn.
    const auto later = [](std::uint64_t number, Outcome outcome) {
        NSRunLoop::mainRunLoop()->performBlock(
            [number, outcome] { defaultUserNotificationCenter()->heard(number, static_cast<int>(outcome)); });
    };
    auto* s = service();
    if (!s) {
        later(last_, Outcome::failed);
        return;
    }
    s->setListener(later);
    s->deliver(noticeOf(*notification, last_));
}

void NSUserNotificationCenter::heard(NSUInteger number, int outcome) {
    const auto at =
        std::find_if(delivered_.begin(), delivered_.end(), [&](const auto& n) { return n->number_ == number; });
    if (at == delivered_.end()) return;
    const Ref<NSUserNotification> n = *at;
    switch (static_cast<Outcome>(outcome)) {
    case Outcome::delivered:
        n->presented_ = true;
        if (const auto told = op::userNotificationCenter_didDeliverNotification.of(delegate_)) told(this, n);
        return;
    case Outcome::activated:
        if (const auto told = op::userNotificationCenter_didActivateNotification.of(delegate_)) told(this, n);
        return;
    case Outcome::failed:
        delivered_.erase(at);
        if (const auto failed = std::exchange(n->failed_, nullptr))
            failed();
        else
            NSLog(u"The notification \"%@\" could not be shown."_ns, n->title());
        return;
    }
}

void NSUserNotificationCenter::withdraw(NSUInteger number) const {
    if (auto* s = service()) s->withdraw(number);
}

void NSUserNotificationCenter::removeDeliveredNotification(NSUserNotification* notification) {
    const auto at = std::find(delivered_.begin(), delivered_.end(), notification);
    if (at == delivered_.end()) return;
    const Ref<NSUserNotification> gone = *at;
    delivered_.erase(at);
    withdraw(gone->number_);
}

void NSUserNotificationCenter::removeAllDeliveredNotifications() {
    for (const auto& gone : std::exchange(delivered_, {}))
        withdraw(gone->number_);
}

Ref<NSArray> NSUserNotificationCenter::deliveredNotifications() const { return NSArray::arrayWithRefs(delivered_); }

} // namespace libvue
