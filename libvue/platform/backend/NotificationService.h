#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include <libvue/platform/foundation/Export.h>

namespace libvue::backend {

/// What the desktop shows beside its windows. Texts are plain, in UTF-8.
struct Notice {
    std::uint64_t id = 0; ///< the caller's own, never used again
    std::string title, body;
    bool sound = false;
};

/// The desktop's notices. Nothing here waits: what comes of a notice is told later.
class LIBVUE_API NotificationService {
public:
    enum class Outcome : std::uint8_t {
        delivered,
        failed, ///< nobody shows it: there is no service, or it went away, or it does not answer
        activated
    };
    /// Told on the main thread, from within the wait for events or from `deliver` itself.
    using Listener = std::function<void(std::uint64_t id, Outcome outcome)>;

    NotificationService() = default;
    NotificationService(const NotificationService&) = delete;
    NotificationService& operator=(const NotificationService&) = delete;
    virtual ~NotificationService() = default;

    /// Whether a notice has a chance to be shown. As long as the desktop has not answered, that is so wherever it can
    /// be asked.
    [[nodiscard]] virtual bool isAvailable() = 0;
    virtual void deliver(const Notice& notice) = 0;
    /// Takes it off the screen, or never shows it. An unknown one is ignored.
    virtual void withdraw(std::uint64_t id) = 0;

    void setListener(Listener listener) { listener_ = std::move(listener); }

protected:
    void tell(std::uint64_t id, Outcome outcome) const {
        // It may set another one while it runs.
        if (const Listener told = listener_) told(id, outcome);
    }

private:
    Listener listener_;
};

} // namespace libvue::backend
