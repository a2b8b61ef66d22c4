#include <libvue/platform/foundation/NSArray.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include <libvue/platform/foundation/CollectionText.h>
#include <libvue/platform/foundation/ComparisonLevel.h>
#include <libvue/platform/foundation/DocumentObjects.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSIndexSet.h>
#include <libvue/platform/foundation/NSKeyedArchiver.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/SmallBlocks.h>
#include <libvue/platform/foundation/StringBuilder.h>

namespace libvue {

namespace {

const ClassRegistration<NSArray> registration;

constexpr auto notFound = static_cast<NSUInteger>(NSNotFound);

} // namespace

void NSArray::describe(ClassDescription<NSArray>& c) {
    c.key<&NSArray::firstObject>("firstObject");
    c.key<&NSArray::lastObject>("lastObject");
}

NSArray::NSArray(NSCoder& coder) {
    coder.beginDecoding(this);
    decodeElements(coder, [this](NSObject* o) {
        if (o) append(o);
    });
}

NSArray::~NSArray() {
    NSObject** items = this->items();
    std::uint32_t count = count_;
    count_ = 0;
    for (std::uint32_t i = 0; i < count; ++i)
        detail::DocumentObjects::release(items[i]);
    freeItems();
}

void* NSArray::operator new(std::size_t size) { return detail::SmallBlocks::takeAny(size); }
void NSArray::operator delete(void* object, std::size_t size) noexcept { detail::SmallBlocks::giveAny(object, size); }

Ref<NSArray> NSArray::array() {
    static NSArray* const empty = keptForever(make<NSArray>());
    return empty;
}
Ref<NSArray> NSArray::arrayWithObject(NSObject* o) { return arrayWithObjects_count(&o, 1); }
Ref<NSArray> NSArray::arrayWithObjects(std::initializer_list<NSObject*> objects) {
    return arrayWithObjects_count(objects.begin(), objects.size());
}
Ref<NSArray> NSArray::arrayWithObjects_count(NSObject* const* objects, NSUInteger count) {
    auto a = make<NSArray>();
    a->reserve(count);
    for (NSUInteger i = 0; i < count; ++i)
        a->append(objects[i]);
    return a;
}
Ref<NSArray> NSArray::arrayWithArray(const NSArray* a) {
    return a ? arrayWithObjects_count(a->items(), a->count_) : array();
}
Ref<NSArray> NSArray::arrayWithContentsOfFile(const NSString* path) {
    return Ref<NSArray>(dynamic_cast<NSArray*>(NSKeyedUnarchiver::unarchiveObjectWithFile(path).get()));
}

void NSArray::raiseOutOfRange(NSUInteger i) const {
    raiseNamed(NSRangeException, "index " + std::to_string(i) + " is beyond a list of " + std::to_string(count_));
}

void NSArray::checkRange(NSRange range) const {
    if (range.location > count_ || range.length > count_ - range.location)
        raiseNamed(NSRangeException, "the range {" + std::to_string(range.location) + ", " +
                                         std::to_string(range.length) + "} is beyond a list of " +
                                         std::to_string(count_));
}

void NSArray::grow(NSUInteger capacity) {
    constexpr NSUInteger most = 1u << 30;
    if (capacity > most) throw std::bad_alloc();
    const bool wasNear = isNear();
    auto* p = static_cast<NSUInteger*>(std::realloc(
        !wasNear && far_ ? reinterpret_cast<NSUInteger*>(far_) - 1 : nullptr, (capacity + 1) * sizeof(void*)));
    if (!p) throw std::bad_alloc();
    *p = capacity;
    auto* items = reinterpret_cast<NSObject**>(p + 1);
    if (wasNear) std::memcpy(items, this->items(), count_ * sizeof(void*));
    setTag_(0);
    far_ = items;
}

NSUInteger NSArray::capacity() const noexcept {
    if (isNear()) return tag();
    return far_ ? reinterpret_cast<const NSUInteger*>(far_)[-1] : 0;
}

void NSArray::freeItems() noexcept {
    if (!isNear() && far_) std::free(reinterpret_cast<NSUInteger*>(far_) - 1);
}

void NSArray::reserve(NSUInteger capacity) {
    if (capacity > this->capacity()) grow(capacity);
}

void NSArray::append(NSObject* o) {
    if (!o) raiseNamed(NSInvalidArgumentException, "null into a list");
    if (const NSUInteger room = capacity(); count_ == room) grow(std::max<NSUInteger>(4, 2 * room));
    o->retain();
    items()[count_++] = o;
    ++mutations_;
}

NSUInteger NSArray::indexOfObject(const NSObject* o) const { return indexOfObject_inRange(o, {0, count_}); }

NSUInteger NSArray::indexOfObject_inRange(const NSObject* o, NSRange range) const {
    checkRange(range);
    if (!o) return notFound;
    // Equality may run code that shortens the list.
    for (NSUInteger i = range.location; i < NSMaxRange(range) && i < count_; ++i)
        if (items()[i] == o || items()[i]->isEqual(o)) return i;
    return notFound;
}

NSUInteger NSArray::indexOfObjectIdenticalTo(const NSObject* o) const noexcept {
    for (NSUInteger i = 0; i < count_; ++i)
        if (items()[i] == o) return i;
    return notFound;
}

NSUInteger NSArray::indexOfObjectPassingTest(const std::function<BOOL(NSObject*)>& test) const {
    for (NSUInteger i = 0; i < count_; ++i)
        if (Ref<NSObject> o = items()[i]; test(o)) return i;
    return notFound;
}

Ref<NSIndexSet> NSArray::indexesOfObjectsPassingTest(const std::function<BOOL(NSObject*)>& test) const {
    auto indexes = make<NSMutableIndexSet>();
    for (NSUInteger i = 0; i < count_; ++i)
        if (Ref<NSObject> o = items()[i]; test(o)) indexes->addIndex(i);
    return indexes;
}

BOOL NSArray::containsObject(const NSObject* o) const { return indexOfObject(o) != notFound; }

NSObject* NSArray::firstObjectCommonWithArray(const NSArray* other) const {
    if (other)
        for (NSUInteger i = 0; i < count_; ++i)
            if (other->containsObject(items()[i])) return items()[i];
    return nullptr;
}

BOOL NSArray::isEqualToArray(const NSArray* other) const {
    if (this == other) return YES;
    if (!other || other->count_ != count_) return NO;
    const ComparisonLevel level(this, other);
    if (const auto known = level.known()) return *known;
    for (NSUInteger i = 0; i < count_ && i < other->count_; ++i)
        if (items()[i] != other->items()[i] && !items()[i]->isEqual(other->items()[i])) return level.found(NO);
    return level.found(YES);
}

Ref<NSArray> NSArray::arrayByAddingObject(NSObject* o) const {
    auto a = make<NSArray>();
    a->reserve(count_ + 1);
    for (NSObject* each : *this)
        a->append(each);
    a->append(o);
    return a;
}

Ref<NSArray> NSArray::arrayByAddingObjectsFromArray(const NSArray* other) const {
    auto a = make<NSArray>();
    a->reserve(count_ + (other ? other->count_ : 0));
    for (NSObject* each : *this)
        a->append(each);
    if (other)
        for (NSObject* each : *other)
            a->append(each);
    return a;
}

Ref<NSArray> NSArray::subarrayWithRange(NSRange range) const {
    checkRange(range);
    return arrayWithObjects_count(items() + range.location, range.length);
}

Ref<NSArray> NSArray::objectsAtIndexes(const NSIndexSet* indexes) const {
    auto a = make<NSArray>();
    if (indexes)
        for (NSUInteger i : *indexes)
            a->append(objectAtIndex(i));
    return a;
}

Ref<NSArray> NSArray::filteredArray(const std::function<BOOL(NSObject*)>& keep) const {
    auto a = make<NSArray>();
    for (NSUInteger i = 0; i < count_; ++i)
        if (Ref<NSObject> o = items()[i]; keep(o)) a->append(o);
    return a;
}

Ref<NSString> NSArray::componentsJoinedByString(const NSString* separator) const {
    StringBuilder b;
    for (NSUInteger i = 0; i < count_; ++i) {
        if (i) b.append(separator);
        b.append(items()[i]->description());
    }
    return b.build();
}

void NSArray::makeObjectsPerformSelector(SEL selector) const {
    makeObjectsPerformSelector_withObject(selector, nullptr);
}

void NSArray::makeObjectsPerformSelector_withObject(SEL selector, NSObject* argument) const {
    // The operation may well take its object out of this list.
    auto all = arrayWithArray(this);
    for (NSObject* o : *all)
        o->performSelector_withObject(selector, argument);
}

void NSArray::enumerateObjectsUsingBlock(const std::function<void(NSObject*, NSUInteger, BOOL*)>& block) const {
    BOOL stop = NO;
    NSUInteger i = 0;
    for (auto it = begin(); it != end() && !stop; ++it) {
        const Ref<NSObject> kept(*it);
        block(kept, i++, &stop);
    }
}

Ref<NSEnumerator> NSArray::objectEnumerator() const {
    Ref<const NSArray> kept(this);
    return make<BlockEnumerator>([kept, it = begin()]() mutable -> Ref<NSObject> {
        if (it == kept->end()) return nullptr;
        Ref<NSObject> o = *it;
        ++it;
        return o;
    });
}

Ref<NSEnumerator> NSArray::reverseObjectEnumerator() const {
    Ref<const NSArray> kept(this);
    return make<BlockEnumerator>([kept, left = NSUInteger(count_), mutations = mutations_]() mutable -> Ref<NSObject> {
        if (left == 0) return nullptr;
        if (mutations != kept->mutations_) {
            detail::noteMutationDuringEnumeration();
            left = 0;
            return nullptr;
        }
        return kept->items()[--left];
    });
}

BOOL NSArray::isEqual(const NSObject* other) const { return isEqualToArray(dynamic_cast<const NSArray*>(other)); }
NSUInteger NSArray::hash() const { return count_; }
Ref<NSString> NSArray::description() const { return collectionText(this); }
Ref<NSObject> NSArray::copyWithZone() const { return Ref<NSObject>(const_cast<NSArray*>(this)); }
Ref<NSObject> NSArray::mutableCopyWithZone() const { return NSMutableArray::arrayWithArray(this); }
void NSArray::encodeWithCoder(NSCoder& coder) const {
    encodeElements(coder, count_, [this](NSUInteger i) { return items()[i]; });
}

} // namespace libvue
