#pragma once

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

class NSScroller;
class NSTimer;

/// Lets a scroller that lies over its document fade out once it has not been used for a while. Between a use and the
/// fading nothing runs but one timer.
class ScrollerFade {
public:
    explicit ScrollerFade(NSScroller& scroller) noexcept : scroller_(scroller) {}
    ~ScrollerFade();
    ScrollerFade(const ScrollerFade&) = delete;
    ScrollerFade& operator=(const ScrollerFade&) = delete;

    /// Shows the scroller, and again for a while.
    void show();
    /// It stays while it is held: under the pointer, or dragged.
    void hold(bool held);
    /// Shows it without an end.
    void stop();

private:
    void tick();
    void wakeAt(NSTimeInterval time);

    NSScroller& scroller_;
    Ref<NSTimer> timer_;
    NSTimeInterval until_ = 0;
    bool held_ = false;
};

} // namespace libvue
