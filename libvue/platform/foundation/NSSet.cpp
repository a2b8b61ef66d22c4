#include <libvue/platform/foundation/NSSet.h>

#include <libvue/platform/foundation/CollectionText.h>
#include <libvue/platform/foundation/ComparisonLevel.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {
const ClassRegistration<NSSet> registration;
}

void NSSet::describe(ClassDescription<NSSet>&) {}

NSSet::NSSet(NSCoder& coder) {
    coder.beginDecoding(this);
    decodeElements(coder, [this](NSObject* o) {
        if (o) put(o);
    });
}

NSSet::~NSSet() = default;

Ref<NSSet> NSSet::set() { return make<NSSet>(); }
Ref<NSSet> NSSet::setWithObject(NSObject* o) { return setWithObjects({o}); }
Ref<NSSet> NSSet::setWithObjects(std::initializer_list<NSObject*> objects) {
    auto s = make<NSSet>();
    s->table_.reserve(objects.size());
    for (NSObject* o : objects)
        s->put(o);
    return s;
}
Ref<NSSet> NSSet::setWithArray(const NSArray* a) {
    auto s = make<NSSet>();
    if (a)
        for (NSObject* o : *a)
            s->put(o);
    return s;
}
Ref<NSSet> NSSet::setWithSet(const NSSet* other) {
    auto s = make<NSSet>();
    if (other) s->table_.copy(other->table_);
    return s;
}

void NSSet::put(NSObject* o) {
    if (!o) raiseNamed(NSInvalidArgumentException, "null into a set");
    bool made = false;
    auto* e = table_.insert(o, made);
    if (made) e->value = 1;
}

NSObject* NSSet::member(const NSObject* o) const {
    auto* e = table_.find(o);
    return e ? e->key : nullptr;
}

NSObject* NSSet::anyObject() const {
    for (NSObject* o : *this)
        return o;
    return nullptr;
}

Ref<NSArray> NSSet::allObjects() const {
    std::vector<NSObject*> all;
    all.reserve(count());
    for (NSObject* o : *this)
        all.push_back(o);
    return NSArray::arrayWithObjects_count(all.data(), all.size());
}

BOOL NSSet::isEqualToSet(const NSSet* other) const {
    return this == other || (other && other->count() == count() && isSubsetOfSet(other));
}

BOOL NSSet::isSubsetOfSet(const NSSet* other) const {
    const ComparisonLevel level(this, other);
    if (const auto known = level.known()) return *known;
    for (NSObject* o : *this)
        if (!other || !other->containsObject(o)) return level.found(NO);
    return level.found(YES);
}

BOOL NSSet::intersectsSet(const NSSet* other) const {
    if (other)
        for (NSObject* o : *this)
            if (other->containsObject(o)) return YES;
    return NO;
}

Ref<NSSet> NSSet::filteredSet(const std::function<BOOL(NSObject*)>& keep) const {
    auto all = allObjects();
    auto s = make<NSSet>();
    for (NSObject* o : *all)
        if (keep(o)) s->put(o);
    return s;
}

void NSSet::makeObjectsPerformSelector(SEL selector) const { allObjects()->makeObjectsPerformSelector(selector); }
void NSSet::makeObjectsPerformSelector_withObject(SEL selector, NSObject* argument) const {
    allObjects()->makeObjectsPerformSelector_withObject(selector, argument);
}

Ref<NSEnumerator> NSSet::objectEnumerator() const {
    Ref<const NSSet> kept(this);
    return make<BlockEnumerator>([kept, it = begin()]() mutable -> Ref<NSObject> {
        if (it == kept->end()) return nullptr;
        Ref<NSObject> o = *it;
        ++it;
        return o;
    });
}

Ref<NSArray> NSSet::sortedArrayUsingDescriptors(const NSArray* descriptors) const {
    return allObjects()->sortedArrayUsingDescriptors(descriptors);
}

BOOL NSSet::isEqual(const NSObject* other) const { return isEqualToSet(dynamic_cast<const NSSet*>(other)); }
NSUInteger NSSet::hash() const { return count(); }
Ref<NSString> NSSet::description() const { return collectionText(this); }
Ref<NSObject> NSSet::copyWithZone() const { return Ref<NSObject>(const_cast<NSSet*>(this)); }
Ref<NSObject> NSSet::mutableCopyWithZone() const { return NSMutableSet::setWithSet(this); }
void NSSet::encodeWithCoder(NSCoder& coder) const {
    auto all = allObjects();
    encodeElements(coder, all->count(), [&](NSUInteger i) { return all->objectAtIndex(i); });
}

} // namespace libvue
