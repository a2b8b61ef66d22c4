#pragma once

#include <vector>

#include <libvue/platform/backend/NotificationService.h>

namespace libvue::backend {

/// Notices that are kept instead of shown.
class LIBVUE_API MemoryNotificationService final : public NotificationService {
public:
    /// What becomes of the notices that are delivered from now on.
    enum class Service : std::uint8_t {
        present,
        absent,   ///< and known to be
        vanishing ///< not known to be gone before a notice is delivered
    };

    [[nodiscard]] bool isAvailable() override { return service_ != Service::absent; }
    void deliver(const Notice& notice) override;
    void withdraw(std::uint64_t id) override;

    void setService(Service service) noexcept { service_ = service; }
    /// Those on the screen, in the order of their delivery.
    [[nodiscard]] const std::vector<Notice>& shown() const noexcept { return shown_; }
    /// How many were ever delivered.
    [[nodiscard]] std::size_t count() const noexcept { return count_; }
    /// As if the person had clicked on it.
    void activate(std::uint64_t id) { tell(id, Outcome::activated); }

private:
    Service service_ = Service::present;
    std::vector<Notice> shown_;
    std::size_t count_ = 0;
};

} // namespace libvue::backend
