#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSSet.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {
const ClassRegistration<NSMutableSet> registration;
const ClassRegistration<NSCountedSet> countedRegistration;
} // namespace

void NSMutableSet::describe(ClassDescription<NSMutableSet, NSSet>&) {}

Ref<NSMutableSet> NSMutableSet::set() { return make<NSMutableSet>(); }
Ref<NSMutableSet> NSMutableSet::setWithObject(NSObject* o) {
    auto s = set();
    s->addObject(o);
    return s;
}
Ref<NSMutableSet> NSMutableSet::setWithArray(const NSArray* a) {
    auto s = set();
    s->addObjectsFromArray(a);
    return s;
}
Ref<NSMutableSet> NSMutableSet::setWithSet(const NSSet* other) {
    auto s = set();
    if (other) s->unionSet(other);
    return s;
}

void NSMutableSet::addObject(NSObject* o) { put(o); }
void NSMutableSet::removeObject(const NSObject* o) { table_.remove(o); }

void NSMutableSet::addObjectsFromArray(const NSArray* a) {
    if (a)
        for (NSObject* o : *a)
            addObject(o);
}

void NSMutableSet::removeAllObjects() { table_.clear(); }

void NSMutableSet::unionSet(const NSSet* other) {
    if (!other) return;
    auto all = other->allObjects(); // it may be this set
    addObjectsFromArray(all);
}

void NSMutableSet::minusSet(const NSSet* other) {
    if (!other) return;
    auto all = other->allObjects();
    for (NSObject* o : *all)
        removeObject(o);
}

void NSMutableSet::intersectSet(const NSSet* other) {
    if (other == this) return;
    auto all = allObjects();
    for (NSObject* o : *all)
        if (!other || !other->containsObject(o)) table_.remove(o);
}

Ref<NSObject> NSMutableSet::copyWithZone() const { return NSSet::setWithSet(this); }

// The one that counts: the number beside each object is how often it was added.

void NSCountedSet::describe(ClassDescription<NSCountedSet, NSMutableSet>&) {}

NSCountedSet::NSCountedSet(NSCoder& coder) {
    coder.beginDecoding(this);
    Ref<NSObject> o;
    bool atCount = false;
    decodeElements(coder, [&](NSObject* next) {
        if (!std::exchange(atCount, !atCount)) {
            o = next;
            return;
        }
        auto n = unboxed<NSInteger>(next);
        if (!o || n <= 0) return;
        bool made = false;
        table_.insert(o, made)->value = static_cast<NSUInteger>(n);
    });
}

Ref<NSCountedSet> NSCountedSet::set() { return make<NSCountedSet>(); }
Ref<NSCountedSet> NSCountedSet::setWithArray(const NSArray* a) {
    auto s = set();
    s->addObjectsFromArray(a);
    return s;
}

void NSCountedSet::addObject(NSObject* o) {
    if (!o) raiseNamed(NSInvalidArgumentException, "null into a set");
    bool made = false;
    ++table_.insert(o, made)->value;
}

void NSCountedSet::removeObject(const NSObject* o) {
    auto* e = table_.find(o);
    if (e && --e->value == 0) table_.remove(e->key);
}

NSUInteger NSCountedSet::countForObject(const NSObject* o) const {
    auto* e = table_.find(o);
    return e ? e->value : 0;
}

Ref<NSObject> NSCountedSet::copyWithZone() const { return mutableCopyWithZone(); }

Ref<NSObject> NSCountedSet::mutableCopyWithZone() const {
    auto s = set();
    s->table_.copy(table_);
    return s;
}

void NSCountedSet::encodeWithCoder(NSCoder& coder) const {
    auto all = allObjects();
    std::vector<Ref<NSObject>> counts;
    for (NSObject* o : *all)
        counts.push_back(NSNumber::numberWithUnsignedInteger(countForObject(o)));
    encodeElements(coder, 2 * all->count(),
                   [&](NSUInteger i) { return i % 2 ? counts[i / 2].get() : all->objectAtIndex(i / 2); });
}

} // namespace libvue
