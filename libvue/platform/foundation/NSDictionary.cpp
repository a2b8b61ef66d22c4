#include <libvue/platform/foundation/NSDictionary.h>

#include <libvue/platform/foundation/CollectionText.h>
#include <libvue/platform/foundation/ComparisonLevel.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/ObjectSort.h>
#include <libvue/platform/foundation/SmallBlocks.h>

namespace libvue {

namespace {
const ClassRegistration<NSDictionary> registration;
}

void NSDictionary::describe(ClassDescription<NSDictionary>&) {}

NSDictionary::NSDictionary(NSCoder& coder) {
    coder.beginDecoding(this);
    Ref<NSObject> key;
    bool atValue = false;
    decodeElements(coder, [&](NSObject* o) {
        if (!std::exchange(atValue, !atValue)) {
            key = o;
            return;
        }
        if (!key || !o) return;
        // An archive may hold anything, also keys that cannot be copied; and nothing may be raised from here.
        try {
            put(o, key);
        } catch (const NSExceptionRaised&) {
        }
    });
}

NSDictionary::~NSDictionary() = default;

void* NSDictionary::operator new(std::size_t size) { return detail::SmallBlocks::takeAny(size); }
void NSDictionary::operator delete(void* object, std::size_t size) noexcept {
    detail::SmallBlocks::giveAny(object, size);
}

Ref<NSDictionary> NSDictionary::dictionary() {
    static NSDictionary* const empty = keptForever(make<NSDictionary>());
    return empty;
}
Ref<NSDictionary> NSDictionary::dictionaryWithObject_forKey(NSObject* value, const NSObject* key) {
    return dictionaryWithObjectsAndKeys({{key, value}});
}
Ref<NSDictionary> NSDictionary::dictionaryWithObjectsAndKeys(std::initializer_list<KeyAndValue> pairs) {
    auto d = make<NSDictionary>();
    d->table_.reserve(pairs.size());
    for (const auto& [key, value] : pairs)
        d->put(value, key);
    return d;
}
Ref<NSDictionary> NSDictionary::dictionaryWithObjects_forKeys(const NSArray* values, const NSArray* keys) {
    NSUInteger n = values ? values->count() : 0;
    if (n != (keys ? keys->count() : 0))
        raiseNamed(NSInvalidArgumentException, "dictionaryWithObjects:forKeys: the lists differ in length");
    auto d = make<NSDictionary>();
    d->table_.reserve(n);
    for (NSUInteger i = 0; i < n; ++i)
        d->put(values->objectAtIndex(i), keys->objectAtIndex(i));
    return d;
}
Ref<NSDictionary> NSDictionary::dictionaryWithDictionary(const NSDictionary* other) {
    auto d = make<NSDictionary>();
    if (other) d->table_.copy(other->table_);
    return d;
}

void NSDictionary::put(NSObject* value, const NSObject* key) {
    if (!key) raiseNamed(NSInvalidArgumentException, "a null key for a dictionary");
    if (!value) raiseNamed(NSInvalidArgumentException, "a null value for a dictionary");
    bool made = false;
    auto* e = table_.insert(key, made);
    value->retain();
    NSObject* old = std::exchange(e->value, value);
    if (old) old->release();
}

NSObject* NSDictionary::objectForKey(const NSObject* key) const {
    auto* e = table_.find(key);
    return e ? e->value : nullptr;
}

Ref<NSArray> NSDictionary::allKeys() const {
    std::vector<NSObject*> keys;
    keys.reserve(count());
    for (auto [key, value] : *this)
        keys.push_back(key);
    return NSArray::arrayWithObjects_count(keys.data(), keys.size());
}

Ref<NSArray> NSDictionary::allValues() const {
    std::vector<NSObject*> values;
    values.reserve(count());
    for (auto [key, value] : *this)
        values.push_back(value);
    return NSArray::arrayWithObjects_count(values.data(), values.size());
}

Ref<NSArray> NSDictionary::allKeysForObject(const NSObject* wanted) const {
    auto keys = NSMutableArray::array();
    for (auto [key, value] : *this)
        if (libvue::isEqual(value, wanted)) keys->addObject(key);
    return keys;
}

Ref<NSArray> NSDictionary::objectsForKeys_notFoundMarker(const NSArray* keys, NSObject* marker) const {
    auto values = NSMutableArray::array();
    if (keys)
        for (NSObject* key : *keys) {
            NSObject* v = objectForKey(key);
            values->addObject(v ? v : marker);
        }
    return values;
}

Ref<NSArray> NSDictionary::keysSortedByValueUsingSelector(SEL comparison) const {
    std::vector<Ref<NSObject>> keys;
    for (auto [key, value] : *this)
        keys.emplace_back(key);
    SelectorComparison compare(comparison);
    sortObjects(keys, [&](NSObject* a, NSObject* b) {
        NSObject *x = objectForKey(a), *y = objectForKey(b);
        return x && y && compare(x, y) > NSOrderedSame;
    });
    return NSArray::arrayWithRefs(keys);
}

BOOL NSDictionary::isEqualToDictionary(const NSDictionary* other) const {
    if (this == other) return YES;
    if (!other || other->count() != count()) return NO;
    const ComparisonLevel level(this, other);
    if (const auto known = level.known()) return *known;
    for (auto [key, value] : *this) {
        NSObject* v = other->objectForKey(key);
        if (!v || (v != value && !value->isEqual(v))) return level.found(NO);
    }
    return level.found(YES);
}

void NSDictionary::enumerateKeysAndObjectsUsingBlock(
    const std::function<void(NSObject*, NSObject*, BOOL*)>& block) const {
    BOOL stop = NO;
    for (auto it = begin(); it != end() && !stop; ++it) {
        const Ref<NSObject> key((*it).key), value((*it).value);
        block(key, value, &stop);
    }
}

Ref<NSEnumerator> NSDictionary::keyEnumerator() const {
    Ref<const NSDictionary> kept(this);
    return make<BlockEnumerator>([kept, it = begin()]() mutable -> Ref<NSObject> {
        if (it == kept->end()) return nullptr;
        Ref<NSObject> key = (*it).key;
        ++it;
        return key;
    });
}

Ref<NSEnumerator> NSDictionary::objectEnumerator() const {
    Ref<const NSDictionary> kept(this);
    return make<BlockEnumerator>([kept, it = begin()]() mutable -> Ref<NSObject> {
        if (it == kept->end()) return nullptr;
        Ref<NSObject> value = (*it).value;
        ++it;
        return value;
    });
}

BOOL NSDictionary::isEqual(const NSObject* other) const {
    return isEqualToDictionary(dynamic_cast<const NSDictionary*>(other));
}
NSUInteger NSDictionary::hash() const { return count(); }
Ref<NSString> NSDictionary::description() const { return collectionText(this); }
Ref<NSObject> NSDictionary::copyWithZone() const { return Ref<NSObject>(const_cast<NSDictionary*>(this)); }
Ref<NSObject> NSDictionary::mutableCopyWithZone() const { return NSMutableDictionary::dictionaryWithDictionary(this); }

void NSDictionary::encodeWithCoder(NSCoder& coder) const {
    auto keys = allKeys(), values = allValues();
    encodeElements(coder, 2 * keys->count(),
                   [&](NSUInteger i) { return (i % 2 ? values : keys)->objectAtIndex(i / 2); });
}

Ref<NSObject> NSDictionary::valueForKey(NSString* key) {
    if (key && key->length() && key->unit(0) == u'@') {
        if (key->isEqualTo(u"@count")) return NSNumber::numberWithInteger(static_cast<NSInteger>(count()));
        return NSObject::valueForKey(key->substringFromIndex(1));
    }
    return objectForKey(key);
}

// The one that can change.

namespace {
const ClassRegistration<NSMutableDictionary> mutableRegistration;
}

void NSMutableDictionary::describe(ClassDescription<NSMutableDictionary, NSDictionary>&) {}

Ref<NSMutableDictionary> NSMutableDictionary::dictionary() { return make<NSMutableDictionary>(); }
Ref<NSMutableDictionary> NSMutableDictionary::dictionaryWithCapacity(NSUInteger capacity) {
    constexpr NSUInteger mostReserved = 1u << 16;
    auto d = dictionary();
    d->table_.reserve(capacity < mostReserved ? capacity : mostReserved);
    return d;
}
Ref<NSMutableDictionary> NSMutableDictionary::dictionaryWithObject_forKey(NSObject* value, const NSObject* key) {
    return dictionaryWithObjectsAndKeys({{key, value}});
}
Ref<NSMutableDictionary> NSMutableDictionary::dictionaryWithObjectsAndKeys(std::initializer_list<KeyAndValue> pairs) {
    auto d = dictionary();
    for (const auto& [key, value] : pairs)
        d->put(value, key);
    return d;
}
Ref<NSMutableDictionary> NSMutableDictionary::dictionaryWithDictionary(const NSDictionary* other) {
    auto d = dictionary();
    if (other) d->table_.copy(other->table_);
    return d;
}

void NSMutableDictionary::addEntriesFromDictionary(const NSDictionary* other) {
    if (!other || other == this) return;
    for (auto [key, value] : *other)
        put(value, key);
}

void NSMutableDictionary::setDictionary(const NSDictionary* other) {
    if (other == this) return;
    Table fresh;
    if (other) fresh.copy(other->table_);
    table_.swap(fresh);
}

void NSMutableDictionary::removeObjectForKey(const NSObject* key) {
    if (!key) raiseNamed(NSInvalidArgumentException, "removeObjectForKey: a null key");
    table_.remove(key);
}

void NSMutableDictionary::removeObjectsForKeys(const NSArray* keys) {
    if (!keys) return;
    auto all = NSArray::arrayWithArray(keys);
    for (NSObject* key : *all)
        table_.remove(key);
}

void NSMutableDictionary::removeAllObjects() { table_.clear(); }
Ref<NSObject> NSMutableDictionary::copyWithZone() const { return NSDictionary::dictionaryWithDictionary(this); }

void NSMutableDictionary::setValue_forKey(NSObject* value, NSString* key) {
    if (!key) raiseNamed(NSInvalidArgumentException, "setValue:forKey: a null key");
    const Ref<NSMutableDictionary> self(this);
    willChangeValueForKey(key);
    if (value)
        put(value, key);
    else
        removeObjectForKey(key);
    didChangeValueForKey(key);
}

} // namespace libvue
