#pragma once

#include <libvue/platform/foundation/Forward.h>

namespace libvue {

/// Which thread is at work: objects belong to the one of the interface.
class LIBVUE_API NSThread {
public:
    NSThread() = delete;
    /// Whether the calling thread is the one that the process began with, to which the interface belongs.
    [[nodiscard]] static BOOL isMainThread() noexcept;
};

} // namespace libvue
