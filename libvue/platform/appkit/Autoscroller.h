#pragma once

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

class NSClipView;
class NSEvent;
class NSTimer;

/// Scrolls a clip view while a drag is held outside of it: the further, the faster, and as fast with a still pointer as
/// with a restless one. While the pointer is still its last drag is posted again and again, so that whoever follows the
/// drag follows the document too.
class Autoscroller {
public:
    explicit Autoscroller(NSClipView& clip) noexcept : clip_(clip) {}
    ~Autoscroller();
    Autoscroller(const Autoscroller&) = delete;
    Autoscroller& operator=(const Autoscroller&) = delete;

    /// NO where the drag is inside, or the document at its end.
    BOOL step(NSEvent* drag);

private:
    void stop();
    void repeat();

    NSClipView& clip_;
    Ref<NSTimer> timer_;
    Ref<NSEvent> last_;
    NSTimeInterval at_ = 0;
    int unanswered_ = 0; ///< drags posted since the last step
};

} // namespace libvue
