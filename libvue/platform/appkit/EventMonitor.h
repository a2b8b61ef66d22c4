#pragma once

#include <functional>

#include <libvue/platform/appkit/NSEvent.h>

namespace libvue {

/// A local monitor, and its own token.
class EventMonitor : public NSObject {
public:
    static void describe(ClassDescription<EventMonitor>&) {}
    EventMonitor(NSEventMask events, std::function<Ref<NSEvent>(NSEvent*)> h) : mask(events), handler(std::move(h)) {}

    const NSEventMask mask;
    std::function<Ref<NSEvent>(NSEvent*)> handler;
    bool removed = false;
};

} // namespace libvue
