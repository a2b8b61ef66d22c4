#pragma once

#include <functional>
#include <string>

#include <appkit/AppFixture.h>

#include <libvue/platform/appkit/NSControl.h>

namespace libvue::test {

/// A target that counts its actions and lets a test step in.
class Cible : public NSObject {
public:
    static void describe(ClassDescription<Cible>& c) { c.answers<&Cible::agir>("agir:"); }
    int count = 0;
    Weak<NSObject> sender;
    std::function<void(NSObject*)> onAction;
    void agir(NSObject* from) {
        ++count;
        sender = from;
        if (onAction) onAction(from);
    }
};

/// Queues what the mouse does, so that one event loop finds all of it: a press, the way, a release.
struct Geste {
    backend::MemoryWindowServer& server;
    NSWindow* window;

    Geste& at(CGFloat x, CGFloat y) {
        server.moveMouse(window->convertBaseToScreen({x, y}));
        return *this;
    }
    Geste& down() {
        server.press();
        return *this;
    }
    Geste& up() {
        server.release();
        return *this;
    }
    Geste& click(CGFloat x, CGFloat y) { return at(x, y).down().up(); }
    void end() { NSApp()->drain_(); }
};

} // namespace libvue::test
