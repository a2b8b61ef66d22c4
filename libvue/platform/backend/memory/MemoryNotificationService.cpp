#include <libvue/platform/backend/memory/MemoryNotificationService.h>

#include <libvue/platform/backend/Backend.h>

namespace libvue::backend {

void MemoryNotificationService::deliver(const Notice& notice) {
    if (service_ != Service::present) {
        if (service_ == Service::vanishing) service_ = Service::absent;
        tell(notice.id, Outcome::failed);
        return;
    }
    ++count_;
    shown_.push_back(notice);
    tell(notice.id, Outcome::delivered);
}

void MemoryNotificationService::withdraw(std::uint64_t id) {
    std::erase_if(shown_, [&](const Notice& n) { return n.id == id; });
}

std::unique_ptr<NotificationService> makeMemoryNotices() { return std::make_unique<MemoryNotificationService>(); }

} // namespace libvue::backend
