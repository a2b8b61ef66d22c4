#include <algorithm>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSIndexSet.h>

namespace libvue {

namespace {
const ClassRegistration<NSMutableArray> registration;
}

// What is removed is let go after the list is whole again: a destructor may look at the list, or change it.

void NSMutableArray::describe(ClassDescription<NSMutableArray, NSArray>&) {}

Ref<NSMutableArray> NSMutableArray::array() { return make<NSMutableArray>(); }
Ref<NSMutableArray> NSMutableArray::arrayWithCapacity(NSUInteger capacity) {
    // A hint that is out of all proportion is no reason to fail.
    constexpr NSUInteger mostReserved = 1u << 20;
    auto a = array();
    a->reserve(std::min(capacity, mostReserved));
    return a;
}
Ref<NSMutableArray> NSMutableArray::arrayWithObject(NSObject* o) { return arrayWithObjects({o}); }
Ref<NSMutableArray> NSMutableArray::arrayWithObjects(std::initializer_list<NSObject*> objects) {
    auto a = array();
    a->reserve(objects.size());
    for (NSObject* o : objects)
        a->append(o);
    return a;
}
Ref<NSMutableArray> NSMutableArray::arrayWithArray(const NSArray* other) {
    auto a = array();
    a->addObjectsFromArray(other);
    return a;
}

void NSMutableArray::addObjectsFromArray(const NSArray* other) {
    if (!other) return;
    NSUInteger n = other->count(); // `other` may be this list
    // At least doubled, as one by one: short lists that are added again and again are not copied each time.
    if (count_ + n > capacity()) grow(std::max(count_ + n, 2 * capacity()));
    for (NSUInteger i = 0; i < n; ++i)
        append(other->data()[i]);
}

void NSMutableArray::insertObject_atIndex(NSObject* o, NSUInteger index) {
    if (index > count_) raiseOutOfRange(index);
    append(o);
    std::rotate(items() + index, items() + count_ - 1, items() + count_);
}

void NSMutableArray::insertObjects_atIndexes(const NSArray* objects, const NSIndexSet* indexes) {
    NSUInteger n = objects ? objects->count() : 0;
    if (n != (indexes ? indexes->count() : 0))
        raiseNamed(NSInvalidArgumentException, "insertObjects:atIndexes: as many objects as indexes are needed");
    if (n == 0) return;
    if (indexes->lastIndex() >= count_ + n) raiseOutOfRange(indexes->lastIndex());
    auto all = NSArray::arrayWithArray(objects); // it may be this list
    NSUInteger next = 0;
    for (NSUInteger i : *indexes)
        insertObject_atIndex(all->objectAtIndex(next++), i);
}

void NSMutableArray::replaceObjectAtIndex_withObject(NSUInteger index, NSObject* o) {
    if (!o) raiseNamed(NSInvalidArgumentException, "null into a list");
    if (index >= count_) raiseOutOfRange(index);
    o->retain();
    NSObject* old = std::exchange(items()[index], o);
    old->release();
}

void NSMutableArray::replaceObjectsInRange_withObjectsFromArray(NSRange range, const NSArray* other) {
    checkRange(range);
    auto fresh = make<NSArray>();
    fresh->reserve(count_ - range.length + (other ? other->count() : 0));
    for (NSUInteger i = 0; i < range.location; ++i)
        fresh->append(items()[i]);
    if (other)
        for (NSObject* o : *other)
            fresh->append(o);
    for (NSUInteger i = NSMaxRange(range); i < count_; ++i)
        fresh->append(items()[i]);
    take(*fresh);
}

void NSMutableArray::exchangeObjectAtIndex_withObjectAtIndex(NSUInteger a, NSUInteger b) {
    if (a >= count_) raiseOutOfRange(a);
    if (b >= count_) raiseOutOfRange(b);
    std::swap(items()[a], items()[b]);
}

void NSMutableArray::setArray(const NSArray* other) {
    if (other != this) replaceObjectsInRange_withObjectsFromArray({0, count_}, other);
}

void NSMutableArray::removeObject(const NSObject* o) { removeObject_inRange(o, {0, count_}); }

void NSMutableArray::removeObject_inRange(const NSObject* o, NSRange range) {
    checkRange(range);
    if (!o) return;
    Ref<const NSObject> wanted(o); // it may live by this list alone
    for (NSUInteger i = NSMaxRange(range); i-- > range.location;)
        if (i < count_ && (items()[i] == o || items()[i]->isEqual(o))) removeObjectAtIndex(i);
}

void NSMutableArray::removeObjectIdenticalTo(const NSObject* o) {
    if (!o) return;
    Ref<const NSObject> wanted(o);
    for (NSUInteger i = count_; i-- > 0;)
        if (i < count_ && items()[i] == o) removeObjectAtIndex(i);
}

void NSMutableArray::removeObjectAtIndex(NSUInteger index) {
    if (index >= count_) raiseOutOfRange(index);
    NSObject* old = items()[index];
    std::copy(items() + index + 1, items() + count_, items() + index);
    --count_;
    ++mutations_;
    old->release();
}

void NSMutableArray::removeObjectsInRange(NSRange range) {
    if (range.length == 0) {
        checkRange(range);
        return;
    }
    auto removed = subarrayWithRange(range);
    for (NSUInteger i = range.location; i < NSMaxRange(range); ++i)
        items()[i]->release(); // `removed` still keeps it
    std::copy(items() + NSMaxRange(range), items() + count_, items() + range.location);
    count_ -= static_cast<std::uint32_t>(range.length);
    ++mutations_;
}

void NSMutableArray::removeObjectsAtIndexes(const NSIndexSet* indexes) {
    if (!indexes || indexes->count() == 0) return;
    if (indexes->lastIndex() >= count_) raiseOutOfRange(indexes->lastIndex());
    auto ranges = indexes->ranges();
    auto removed = objectsAtIndexes(indexes); // keeps them until the list is whole
    for (auto r = ranges.rbegin(); r != ranges.rend(); ++r)
        removeObjectsInRange(*r);
}

void NSMutableArray::removeObjectsInArray(const NSArray* other) {
    if (!other) return;
    auto all = NSArray::arrayWithArray(other);
    for (NSObject* o : *all)
        removeObject(o);
}

void NSMutableArray::removeLastObject() {
    if (count_ == 0) raiseNamed(NSRangeException, "removeLastObject: the list is empty");
    removeObjectAtIndex(count_ - 1);
}

void NSMutableArray::removeAllObjects() {
    if (count_) take(*make<NSArray>());
}

void NSMutableArray::filter(const std::function<BOOL(NSObject*)>& keep) { take(*filteredArray(keep)); }

Ref<NSObject> NSMutableArray::copyWithZone() const { return NSArray::arrayWithArray(this); }

void NSMutableArray::take(NSArray& other) {
    // The old elements go with `other`, in the caller's hands. What stands in the objects themselves moves out first.
    if (isNear()) grow(std::max<NSUInteger>(4, count_));
    if (other.isNear()) other.grow(std::max<NSUInteger>(4, other.count_));
    std::swap(far_, other.far_);
    std::swap(count_, other.count_);
    ++mutations_;
}

} // namespace libvue
