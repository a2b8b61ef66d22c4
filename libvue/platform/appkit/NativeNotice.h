#pragma once

#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/backend/WindowServer.h>

namespace libvue {

/// What a window server says of its windows (moved, exposed, focused…) on its way through the event queue, so that it
/// keeps its place between the clicks and the keys. The application handles it itself: no monitor and no window sees
/// it.
class NativeNotice : public NSEvent {
public:
    static void describe(ClassDescription<NativeNotice, NSEvent>&) {}
    explicit NativeNotice(const backend::Event& e) : NSEvent(fieldsOf(e)), native(e) {}

    const backend::Event native;

    [[nodiscard]] bool isFocus() const noexcept {
        return native.kind == backend::Event::Kind::focusIn || native.kind == backend::Event::Kind::focusOut;
    }

private:
    static Fields fieldsOf(const backend::Event& e) {
        Fields f;
        f.type = NSAppKitDefined;
        f.timestamp = e.time;
        return f;
    }
};

} // namespace libvue
