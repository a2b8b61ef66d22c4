#pragma once

#include <memory>

#include <libvue/platform/backend/NotificationService.h>

namespace libvue::backend {

/// The desktop's notification service on the session bus; null in a build without D-Bus. It is asked when the first
/// notice is about to be shown, and never waited for.
[[nodiscard]] std::unique_ptr<NotificationService> makeQtNotices();

} // namespace libvue::backend
