#include <libvue/platform/foundation/ObjectSide.h>

#include <new>
#include <vector>

namespace libvue {

namespace detail {
ObjectSide* sideChunks[mostSides / sidesPerChunk + 1];
}

namespace {

/// The blocks given back, which are used again first.
std::vector<std::uint32_t>& spares() {
    static auto& s = *new std::vector<std::uint32_t>;
    return s;
}
std::uint32_t used = 1; // index 0 says that an object has none

/// From here on a count means that the object is being destroyed.
constexpr std::uint32_t parked = 0x20000000;

} // namespace

namespace detail {

std::uint32_t newSide() {
    auto& free = spares();
    if (!free.empty()) {
        const std::uint32_t index = free.back();
        free.pop_back();
        return index;
    }
    if (used > mostSides) throw std::bad_alloc();
    ObjectSide*& chunk = sideChunks[used / sidesPerChunk];
    if (!chunk) {
        // So that giving a block back never needs memory.
        free.reserve(std::size_t{used} + sidesPerChunk);
        chunk = new ObjectSide[sidesPerChunk]{};
    }
    return used++;
}

void freeSide(std::uint32_t index) noexcept {
    *sideAt(index) = {};
    spares().push_back(index);
}

bool isBeingDestroyed(const NSObject* object) noexcept { return object->retainCount() >= parked; }

} // namespace detail

ObjectSide* NSObject::sideAt(std::uint32_t index) noexcept { return detail::sideAt(index); }

ObjectSide& NSObject::side() {
    if (!side_) side_ = detail::newSide() & detail::mostSides;
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
