#include <libvue/platform/foundation/DocumentObjects.h>

#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/StringUnits.h>

namespace libvue::detail {

void DocumentObjects::prepare() {
    (void)classOf<NSMutableArray>();
    (void)classOf<NSMutableDictionary>();
    (void)classOf<NSMutableString>();
    (void)classOf<NSDecimalNumber>();
}

NSMutableArray* DocumentObjects::longArray(NSObject* const* items, std::size_t count) {
    auto* a = new NSMutableArray;
    if (count == 0) return a;
    a->grow(count);
    std::memcpy(a->far_, items, count * sizeof(void*));
    a->count_ = static_cast<std::uint32_t>(count);
    return a;
}

NSMutableDictionary* DocumentObjects::dictionary(NSObject* const* keysAndValues, const std::uint32_t* hashes,
                                                 std::size_t count) {
    auto* d = new (SmallBlocks::takeFast(sizeof(NSMutableDictionary))) NSMutableDictionary;
    d->table_.adopt(keysAndValues, hashes, static_cast<std::uint32_t>(count));
    return d;
}

std::uint32_t DocumentObjects::hashOf(const NSString* key) { return ObjectTable<Beside::object>::hashOf(key); }

NSMutableString* DocumentObjects::blank(std::size_t count, bool wide) {
    if (count > std::numeric_limits<std::uint32_t>::max() - 1)
        raiseNamed(NSInvalidArgumentException, "a text is too long");
    const std::size_t unitBytes = (count + 1) * (wide ? sizeof(unichar) : 1);
    const std::size_t bytes = std::max(sizeof(NSMutableString), sizeof(NSString) + unitBytes);
    const bool near = bytes <= SmallBlocks::most;
    auto* s = new (SmallBlocks::takeFast(near ? bytes : sizeof(NSMutableString))) NSMutableString;
    s->wide_ = wide;
    if (!near) {
        s->buffer_ = {std::malloc(unitBytes), count};
        s->external_ = s->buffer_.units != nullptr;
        if (!s->external_) {
            s->release();
            throw std::bad_alloc();
        }
    }
    s->length_ = static_cast<std::uint32_t>(count);
    return s;
}

NSMutableString* DocumentObjects::text(const std::uint8_t* latin1, std::size_t count) {
    NSMutableString* s = blank(count, false);
    std::memcpy(s->ownUnits(), latin1, count);
    return s;
}

NSMutableString* DocumentObjects::text(const unichar* units, std::size_t count) {
    const bool wide = !fitsLatin1(units, count);
    NSMutableString* s = blank(count, wide);
    if (wide)
        std::memcpy(s->ownUnits(), units, count * sizeof(unichar));
    else
        narrowUnits(units, count, static_cast<std::uint8_t*>(s->ownUnits()));
    return s;
}

} // namespace libvue::detail
