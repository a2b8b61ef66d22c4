#pragma once

#include <cstdint>

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

struct KeyValueBindings;
struct KeyValueObservers;
struct NotificationList;
struct NotificationRegistrations;

/// What hangs on the few objects that are held weakly or observed. Internal to the platform.
struct ObjectSide {
    WeakBlock* weak = nullptr;
    NotificationList* observers = nullptr;              ///< the lists of those that observe this object
    NotificationRegistrations* registrations = nullptr; ///< where this object itself is an observer
    KeyValueObservers* keyValue = nullptr;
    KeyValueBindings* bindings = nullptr; ///< the keys of this object that are bound to others
};

namespace detail {

/// Side blocks stand in chunks and never move.
constexpr std::uint32_t sidesPerChunk = 1024;
constexpr std::uint32_t mostSides = (1u << 24) - 1; ///< what NSObject can number
extern ObjectSide* sideChunks[mostSides / sidesPerChunk + 1];

[[nodiscard]] inline ObjectSide* sideAt(std::uint32_t index) noexcept {
    return sideChunks[index / sidesPerChunk] + index % sidesPerChunk;
}
/// The same as the object's sideIfAny, without a call.
[[nodiscard]] inline ObjectSide* sideOf(const NSObject* object) noexcept {
    const std::uint32_t index = object->sideIndex_();
    return index != 0 ? sideAt(index) : nullptr;
}

/// The index of a new, empty side block; never 0.
std::uint32_t newSide();
/// Gives back an empty side block.
void freeSide(std::uint32_t index) noexcept;

/// Whether the object's destructor is running or about to: references to it that are taken now do not keep it.
[[nodiscard]] bool isBeingDestroyed(const NSObject* object) noexcept;

/// Ends all registrations about the object and of the object.
void dropNotifications(ObjectSide& side) noexcept;
void dropKeyValueObservers(ObjectSide& side) noexcept;
void dropKeyValueBindings(ObjectSide& side) noexcept;

} // namespace detail

} // namespace libvue
