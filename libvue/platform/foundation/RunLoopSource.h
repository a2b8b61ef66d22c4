#pragma once

#include <libvue/platform/foundation/Clock.h>

namespace libvue {

/// What a run loop waits on: the native events of a backend, and its clock.
class LIBVUE_API RunLoopSource : public Clock {
public:
    /// Waits for native events until `deadline` (infinity: without end; the past: not at all) and delivers those that
    /// are there. Returns after at least one, at the deadline, or once woken; true when it delivered any.
    virtual bool waitAndDispatch(NSTimeInterval deadline) = 0;
    /// Ends a wait, or the next one if none is under way. From any thread.
    virtual void wake() = 0;
};

} // namespace libvue
