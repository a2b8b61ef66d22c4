#include <libvue/platform/foundation/LiveObjects.h>

#include <map>
#include <string>
#include <unordered_map>

#include <libvue/platform/foundation/NSString.h>

namespace libvue {

#ifndef NDEBUG

const bool detail::countsLiveObjects = true;

namespace {

enum class Fate : bool { reported, excused };

/// The objects alive and whether their presence is expected. Addresses are stored inverted: a leak checker that looks
/// for pointers must not take this table for an owner.
using LiveObjects = std::unordered_map<std::uintptr_t, Fate>;

LiveObjects& live() {
    static auto& l = *new LiveObjects;
    return l;
}

std::uintptr_t keyOf(const NSObject* object) noexcept { return ~reinterpret_cast<std::uintptr_t>(object); }

} // namespace

void detail::noteCreatedObject(const NSObject* object) noexcept {
    live().insert_or_assign(keyOf(object), Fate::reported);
}

void detail::noteDestroyedObject(const NSObject* object) noexcept { live().erase(keyOf(object)); }

Ref<NSString> liveObjectsReport() {
    std::map<std::string, unsigned> numbers;
    for (const auto& [key, fate] : live())
        if (fate == Fate::reported) ++numbers[reinterpret_cast<const NSObject*>(~key)->isa().name()];
    std::string report;
    for (const auto& [name, number] : numbers)
        report += name + " " + std::to_string(number) + "\n";
    return NSString::fromUTF8(report);
}

void markLiveObjectAsExpected(NSObject* object) {
    if (object) live().insert_or_assign(keyOf(object), Fate::excused);
}

void markLiveObjectsAsExpected() {
    for (auto& [key, fate] : live())
        fate = Fate::excused;
}

NSUInteger liveObjectCount() { return live().size(); }

#else

const bool detail::countsLiveObjects = false;

void detail::noteCreatedObject(const NSObject*) noexcept {}
void detail::noteDestroyedObject(const NSObject*) noexcept {}
Ref<NSString> liveObjectsReport() { return NSString::string(); }
void markLiveObjectAsExpected(NSObject*) {}
void markLiveObjectsAsExpected() {}
NSUInteger liveObjectCount() { return 0; }

#endif

} // namespace libvue
