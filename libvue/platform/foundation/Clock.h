#pragma once

#include <libvue/platform/foundation/Forward.h>

namespace libvue {

/// Where the time comes from. A virtual clock moves only when its owner says so.
class LIBVUE_API Clock {
public:
    virtual ~Clock();
    /// Seconds on the clock's own scale; never goes back. The system's counts from 1 January 2001, 00:00 UTC, as of
    /// when the process began.
    [[nodiscard]] virtual NSTimeInterval now() = 0;

    /// The clock of the process: the system's, unless another was installed.
    [[nodiscard]] static Clock& current();
    /// The caller keeps the clock, and installs null (the system's) before it goes.
    static void install(Clock* clock) noexcept;
};

} // namespace libvue
