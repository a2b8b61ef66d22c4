#include <libvue/platform/foundation/ObjectSide.h>

#include <array>
#include <new>
#include <vector>

namespace libvue {

namespace {

constexpr std::uint32_t perChunk = 1024;
constexpr std::uint32_t maximum = (1u << 24) - 1; // what NSObject can hold

/// The side blocks of the process. Blocks never move, and those given back are used again first.
struct SideTable {
    std::vector<std::array<ObjectSide, perChunk>*> chunks;
    std::vector<std::uint32_t> free;
    std::uint32_t used = 1; // index 0 says that an object has none

    ObjectSide& at(std::uint32_t index) noexcept { return (*chunks[index / perChunk])[index % perChunk]; }
};

SideTable& table() {
    static auto& t = *new SideTable;
    return t;
}

/// From here on a count means that the object is being destroyed.
constexpr std::uint32_t parked = 0x20000000;

} // namespace

namespace detail {

std::uint32_t newSide() {
    SideTable& t = table();
    if (!t.free.empty()) {
        const std::uint32_t index = t.free.back();
        t.free.pop_back();
        return index;
    }
    if (t.used > maximum) throw std::bad_alloc();
    if (t.used / perChunk >= t.chunks.size()) {
        t.chunks.push_back(new std::array<ObjectSide, perChunk>{});
        // So that giving a block back never needs memory.
        t.free.reserve(t.chunks.size() * perChunk);
    }
    return t.used++;
}

void freeSide(std::uint32_t index) noexcept {
    table().at(index) = {};
    table().free.push_back(index);
}

bool isBeingDestroyed(const NSObject* object) noexcept { return object->retainCount() >= parked; }

} // namespace detail

ObjectSide* NSObject::sideAt(std::uint32_t index) noexcept { return &table().at(index); }

ObjectSide& NSObject::side() {
    if (!side_) side_ = detail::newSide() & maximum;
    return *sideAt(side_);
}

WeakBlock* WeakBlock::of(NSObject* object) {
    // An object on its way out is absent for those who would hold it weakly.
    if (!object || detail::isBeingDestroyed(object)) return nullptr;
    ObjectSide& side = object->side();
    if (!side.weak) side.weak = new WeakBlock{object, 1};
    side.weak->hold();
    return side.weak;
}

} // namespace libvue
