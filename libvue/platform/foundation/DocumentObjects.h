#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <span>
#include <typeinfo>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDecimalNumber.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/SmallBlocks.h>

namespace libvue::detail {

/// How a reader of documents makes its objects: each is made once it is known whole, in one block as large as it needs,
/// and takes over the counts of what it is given. All can change afterwards like any other of their class.
struct DocumentObjects {
    /// Before anything else.
    static void prepare();
    static NSMutableArray* array(NSObject* const* items, std::size_t count);
    /// Keys are texts that cannot change, each followed by its value. A key that comes again replaces its value.
    static NSMutableDictionary* dictionary(NSObject* const* keysAndValues, const std::uint32_t* hashes,
                                           std::size_t count);
    /// The hash that goes with a key.
    static std::uint32_t hashOf(const NSString* key);
    static NSMutableString* text(const std::uint8_t* latin1, std::size_t count);
    static NSMutableString* text(const unichar* units, std::size_t count);
    /// Where `shortText` bytes can be read at `latin1`, however few the text has.
    static NSMutableString* textWithMoreBehind(const std::uint8_t* latin1, std::size_t count);
    static constexpr std::size_t shortText = 16;
    /// Gives one count up, quickly where that ends a number, a short text or a short list on which nothing hangs.
    static void release(NSObject* object) noexcept;
    using Entry = ObjectTable<Beside::object>::Entry;
    /// The entries of a dictionary as they lie, in order; those without a key are passed over. Good until it changes.
    static std::span<const Entry> entries(const NSDictionary& d) noexcept {
        return {d.table_.entry(0), d.table_.used()};
    }

private:
    static bool isLastOf(const NSObject* object) noexcept;
    static bool releasedLeaf(NSObject* object, const std::type_info* type) noexcept;
    static NSMutableArray* longArray(NSObject* const* items, std::size_t count);
    /// Room for that many units; the caller fills it.
    static NSMutableString* blank(std::size_t count, bool wide);
};

inline NSMutableArray* DocumentObjects::array(NSObject* const* items, std::size_t count) {
    constexpr std::size_t mostNear = (SmallBlocks::most - sizeof(NSMutableArray)) / sizeof(void*) + 1;
    static_assert(mostNear <= 0xFF, "the tag holds the capacity");
    if (count == 0 || count > mostNear) return longArray(items, count);
    void* const room = SmallBlocks::takeFast(sizeof(NSMutableArray) + (count - 1) * sizeof(void*));
    auto* a = new (room) NSMutableArray;
    a->setTag_(static_cast<std::uint8_t>(count));
    a->count_ = static_cast<std::uint32_t>(count);
    NSObject** const to = a->near_;
    for (std::size_t i = 0; i < count; ++i)
        to[i] = items[i];
    return a;
}

inline NSMutableString* DocumentObjects::textWithMoreBehind(const std::uint8_t* latin1, std::size_t count) {
    static_assert(sizeof(NSMutableString) - sizeof(NSString) >= shortText);
    if (count >= shortText) return text(latin1, count);
    auto* s = new (SmallBlocks::takeFast(sizeof(NSMutableString))) NSMutableString;
    std::memcpy(s->near_, latin1, shortText);
    s->length_ = static_cast<std::uint32_t>(count);
    return s;
}

inline bool DocumentObjects::isLastOf(const NSObject* object) noexcept {
    return object->retainCount() == 1 && !object->sideIfAny();
}

inline bool DocumentObjects::releasedLeaf(NSObject* object, const std::type_info* type) noexcept {
    if (type != &typeid(NSDecimalNumber)) {
        if (type != &typeid(NSMutableString)) return false;
        auto* s = static_cast<NSMutableString*>(object);
        if (s->external_ || s->tag() != 0) return false;
    }
    SmallBlocks::giveFast(object);
    return true;
}

inline void DocumentObjects::release(NSObject* object) noexcept {
#ifdef NDEBUG
    if (isLastOf(object)) {
        const std::type_info* const type = &typeid(*object);
        if (releasedLeaf(object, type)) return;
        if (type == &typeid(NSMutableArray)) {
            auto* a = static_cast<NSMutableArray*>(object);
            if (a->isNear()) {
                // Collections within go the usual way, which holds back what nests too deep.
                NSObject* const* const items = a->near_;
                for (std::uint32_t i = 0; i < a->count_; ++i) {
                    NSObject* const item = items[i];
                    if (!isLastOf(item) || !releasedLeaf(item, &typeid(*item))) item->release();
                }
                SmallBlocks::giveFast(a);
                return;
            }
        }
    }
#endif
    object->release();
}

} // namespace libvue::detail
