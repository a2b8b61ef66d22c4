#include <libvue/platform/foundation/ObjectTable.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>
#include <utility>

#include <libvue/platform/foundation/DocumentObjects.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/SmallBlocks.h>

namespace libvue::detail {

template <Beside beside> std::uint32_t ObjectTable<beside>::slotCount(std::uint32_t capacity) noexcept {
    return capacity <= flatLimit ? 0 : 2 * capacity;
}

template <Beside beside> std::uint32_t ObjectTable<beside>::hashOf(const NSObject* key) {
    // Hashes of texts and pointers differ in few bits: a multiplication spreads them.
    auto h = static_cast<std::uint64_t>(key->hash()) * 0x9E3779B97F4A7C15u;
    return static_cast<std::uint32_t>(h >> 32);
}

template <Beside beside>
typename ObjectTable<beside>::Entry* ObjectTable<beside>::findHashed(const NSObject* key, std::uint32_t hash) const {
    if (std::uint32_t n = slotCount(capacity_)) {
        const std::uint32_t* const slot = hashSlots();
        for (std::uint32_t i = hash & (n - 1); slot[i] != 0; i = (i + 1) & (n - 1)) {
            std::uint32_t at = slot[i] - 1;
            NSObject* k = entries_[at].key;
            if (hashes()[at] == hash && k && (k == key || k->isEqual(key))) return entries_ + at;
        }
        return nullptr;
    }
    for (std::uint32_t i = 0; i < used_; ++i) {
        NSObject* k = entries_[i].key;
        if (hashes()[i] == hash && k && (k == key || k->isEqual(key))) return entries_ + i;
    }
    return nullptr;
}

template <Beside beside> typename ObjectTable<beside>::Entry* ObjectTable<beside>::find(const NSObject* key) const {
    return key && count_ ? findHashed(key, hashOf(key)) : nullptr;
}

template <Beside beside> void ObjectTable<beside>::link(std::uint32_t index) noexcept {
    std::uint32_t n = slotCount(capacity_);
    if (n == 0) return;
    std::uint32_t i = hashes()[index] & (n - 1);
    while (hashSlots()[i])
        i = (i + 1) & (n - 1);
    hashSlots()[i] = index + 1;
}

template <Beside beside> void ObjectTable<beside>::rebuild(std::uint32_t capacity) {
    if (capacity > flatLimit) capacity = std::bit_ceil(capacity); // the index masks with it
    void* block = SmallBlocks::takeAny(blockBytes(capacity));
    Entry* old = entries_;
    const std::uint32_t oldCapacity = capacity_;
    const std::uint32_t* oldHashes = old ? hashes() : nullptr;
    entries_ = static_cast<Entry*>(block);
    capacity_ = capacity;
    std::memset(hashSlots(), 0, slotCount(capacity) * sizeof(std::uint32_t));
    std::uint32_t at = 0;
    for (std::uint32_t i = 0; old && i < used_; ++i) {
        if (!old[i].key) continue;
        entries_[at] = old[i];
        hashes()[at] = oldHashes[i];
        link(at++);
    }
    used_ = at;
    if (old) SmallBlocks::giveAny(old, blockBytes(oldCapacity));
}

template <Beside beside> std::size_t ObjectTable<beside>::blockBytes(std::uint32_t capacity) noexcept {
    return capacity * (sizeof(Entry) + sizeof(std::uint32_t)) + slotCount(capacity) * sizeof(std::uint32_t);
}

template <Beside beside> void ObjectTable<beside>::reserve(std::size_t count) {
    constexpr std::size_t most = 1u << 29;
    if (count > most) throw std::bad_alloc();
    if (count > capacity_) rebuild(static_cast<std::uint32_t>(count));
}

template <Beside beside>
typename ObjectTable<beside>::Entry* ObjectTable<beside>::insert(const NSObject* key, bool& made) {
    std::uint32_t hash = hashOf(key);
    made = false;
    if (count_)
        if (Entry* e = findHashed(key, hash)) return e;
    Ref<NSObject> kept;
    if constexpr (beside == Beside::object) {
        kept = key->copyWithZone();
        if (!kept) raiseNamed(NSInvalidArgumentException, "a key has no copy");
    } else
        kept = const_cast<NSObject*>(key);
    if (used_ == capacity_) {
        // Half full of holes: the same room will do.
        std::size_t wanted =
            capacity_ && count_ <= used_ / 2 ? capacity_ : std::max<std::size_t>(4, std::size_t(capacity_) * 2);
        if (wanted == capacity_)
            rebuild(capacity_);
        else
            reserve(wanted);
    }
    ++mutations_;
    ++count_;
    Entry& e = entries_[used_];
    e.key = kept.leak();
    e.value = Value{};
    hashes()[used_] = hash;
    link(used_++);
    made = true;
    return &e;
}

template <Beside beside> bool ObjectTable<beside>::remove(const NSObject* key) {
    Entry* e = find(key);
    if (!e) return false;
    // The slot keeps pointing at the hole, so that searches go on past it.
    Entry taken = std::exchange(*e, Entry{});
    ++mutations_;
    if (--count_ == 0) {
        used_ = 0;
        std::memset(hashSlots(), 0, slotCount(capacity_) * sizeof(std::uint32_t));
    }
    taken.key->release();
    if constexpr (beside == Beside::object)
        if (taken.value) taken.value->release();
    return true;
}

template <Beside beside> void ObjectTable<beside>::clear() noexcept {
    Entry* entries = std::exchange(entries_, nullptr);
    std::uint32_t used = std::exchange(used_, 0);
    const std::uint32_t capacity = std::exchange(capacity_, 0);
    count_ = 0;
    if (!entries) return;
    ++mutations_;
    for (std::uint32_t i = 0; i < used; ++i) {
        if (!entries[i].key) continue;
        entries[i].key->release();
        if constexpr (beside == Beside::object)
            if (entries[i].value) DocumentObjects::release(entries[i].value);
    }
    SmallBlocks::giveAny(entries, blockBytes(capacity));
}

template <Beside beside>
void ObjectTable<beside>::adopt(NSObject* const* keysAndValues, const std::uint32_t* keyHashes,
                                std::uint32_t count) requires(beside == Beside::object) {
    // An explicit instantiation takes every member in, whatever it requires.
    if constexpr (beside == Beside::object) {
        if (count == 0) return;
        rebuild(count);
        ++mutations_;
        const std::uint32_t n = slotCount(capacity_);
        std::uint32_t* const kept = hashes();
        std::uint32_t* const slot = hashSlots();
        for (std::uint32_t i = 0; i < count; ++i) {
            NSObject* const key = keysAndValues[2 * i];
            NSObject* const value = keysAndValues[2 * i + 1];
            const std::uint32_t hash = keyHashes[i];
            Entry* same = nullptr;
            std::uint32_t at = hash & (n - 1);
            if (n == 0) {
                for (std::uint32_t k = 0; k < used_; ++k)
                    if (kept[k] == hash && (entries_[k].key == key || entries_[k].key->isEqual(key)))
                        same = entries_ + k;
            } else
                for (; slot[at] != 0; at = (at + 1) & (n - 1)) {
                    Entry* const e = entries_ + (slot[at] - 1);
                    if (kept[slot[at] - 1] == hash && (e->key == key || e->key->isEqual(key))) {
                        same = e;
                        break;
                    }
                }
            if (same) [[unlikely]] {
                NSObject* const old = std::exchange(same->value, value);
                key->release();
                old->release();
                continue;
            }
            entries_[used_] = {key, value};
            kept[used_++] = hash;
            if (n != 0) slot[at] = used_;
        }
        count_ = used_;
    }
}

template <Beside beside> void ObjectTable<beside>::copy(const ObjectTable& other) {
    if (this == &other) return;
    ObjectTable fresh;
    if (other.count_) {
        fresh.rebuild(other.count_);
        for (std::uint32_t i = 0; i < other.used_; ++i) {
            const Entry& e = other.entries_[i];
            if (!e.key) continue;
            e.key->retain();
            if constexpr (beside == Beside::object)
                if (e.value) e.value->retain();
            fresh.entries_[fresh.used_] = e;
            fresh.hashes()[fresh.used_] = other.hashes()[i];
            fresh.link(fresh.used_++);
        }
        fresh.count_ = fresh.used_;
    }
    swap(fresh);
}

template <Beside beside> void ObjectTable<beside>::swap(ObjectTable& other) noexcept {
    std::swap(entries_, other.entries_);
    std::swap(count_, other.count_);
    std::swap(used_, other.used_);
    std::swap(capacity_, other.capacity_);
    ++mutations_;
    ++other.mutations_;
}

template class ObjectTable<Beside::object>;
template class ObjectTable<Beside::number>;

} // namespace libvue::detail
