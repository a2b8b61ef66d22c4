#include <libvue/platform/coredata/NSManagedObject.h>

#include <libvue/platform/coredata/NSManagedObjectContext.h>
#include <libvue/platform/foundation/NSException.h>

namespace libvue {

static const ClassRegistration<NSManagedObject> registration;

void NSManagedObject::describe(ClassDescription<NSManagedObject>&) {}

NSManagedObject::NSManagedObject() noexcept = default;
NSManagedObject::~NSManagedObject() = default;

Ref<NSManagedObject> NSManagedObject::initWithEntity_insertIntoManagedObjectContext(NSEntityDescription* entity,
                                                                                    NSManagedObjectContext* context) {
    if (!entity) raiseNamed(NSInvalidArgumentException, "a managed object needs an entity");
    const Class* c = NSClassFromString(entity->managedObjectClassName());
    const Ref<NSObject> made = c && c->isSubclassOfClass(classOf<NSManagedObject>()) ? c->alloc() : nullptr;
    Ref<NSManagedObject> object(as<NSManagedObject>(made));
    if (!object) object = make<NSManagedObject>();
    object->entity_ = entity;
    object->values_ = NSMutableDictionary::dictionary();
    for (auto [name, description] : *entity->attributesByName())
        if (auto* attribute = as<NSAttributeDescription>(description); attribute && attribute->defaultValue())
            object->values_->setObject_forKey(attribute->defaultValue(), name);
    if (context) context->insertObject(object);
    object->awakeFromInsert();
    return object;
}

NSManagedObjectContext* NSManagedObject::managedObjectContext() const { return context_; }

NSPropertyDescription* NSManagedObject::property(NSString* key) const {
    return entity_ && key ? entity_->propertiesByName()->get<NSPropertyDescription>(key) : nullptr;
}

// Primitive values.

Ref<NSObject> NSManagedObject::primitiveValueForKey(NSString* key) const {
    NSPropertyDescription* p = property(key);
    if (!p) return const_cast<NSManagedObject*>(this)->NSObject::valueForUndefinedKey(key);
    if (NSObject* value = values_->objectForKey(key)) return value;
    auto* r = as<NSRelationshipDescription>(p);
    if (!r || !r->isToMany()) return nullptr;
    const Ref<NSMutableSet> none = NSMutableSet::set();
    values_->setObject_forKey(none, key);
    return none;
}

void NSManagedObject::setPrimitiveValue_forKey(NSObject* value, NSString* key) {
    NSPropertyDescription* p = property(key);
    if (!p) {
        NSObject::setValue_forUndefinedKey(value, key);
        return;
    }
    const Ref<NSObject> former(values_->objectForKey(key)); // goes last: it may run code that comes back here
    auto* r = as<NSRelationshipDescription>(p);
    auto* set = as<NSSet>(value);
    if (!value)
        values_->removeObjectForKey(key);
    else if (r && r->isToMany() && set && !as<NSMutableSet>(set))
        values_->setObject_forKey(NSMutableSet::setWithSet(set), key);
    else
        values_->setObject_forKey(value, key);
}

// Notices.

void NSManagedObject::willChangeValueForKey_withSetMutation_usingObjects(NSString* key, NSKeyValueSetMutationKind kind,
                                                                         const NSSet* objects) {
    announceSetWillChange(this, key, kind, objects);
}

void NSManagedObject::didChangeValueForKey_withSetMutation_usingObjects(NSString* key, NSKeyValueSetMutationKind,
                                                                        const NSSet*) {
    announceSetDidChange(this, key);
}

// Values by key.

Ref<NSObject> NSManagedObject::valueForUndefinedKey(NSString* key) {
    NSPropertyDescription* p = property(key);
    if (!p) return NSObject::valueForUndefinedKey(key);
    const Ref<NSManagedObject> self(this);
    willAccessValueForKey(key);
    Ref<NSObject> value = primitiveValueForKey(key);
    auto* r = as<NSRelationshipDescription>(p);
    if (auto* set = r && r->isToMany() ? as<NSSet>(value) : nullptr) value = NSSet::setWithSet(set);
    didAccessValueForKey(key);
    return value;
}

void NSManagedObject::setValue_forUndefinedKey(NSObject* value, NSString* key) {
    const Ref<NSPropertyDescription> p = property(key);
    const Ref<NSManagedObject> self(this);
    auto* r = as<NSRelationshipDescription>(p);
    if (!p)
        NSObject::setValue_forUndefinedKey(value, key);
    else if (!r)
        store(value, key);
    else if (r->isToMany())
        setToMany(r, value);
    else
        setToOne(r, value);
}

void NSManagedObject::store(NSObject* value, NSString* key) {
    willChangeValueForKey(key);
    setPrimitiveValue_forKey(value, key);
    didChangeValueForKey(key);
}

NSManagedObject* NSManagedObject::checked(const Relationship* r, NSObject* value) {
    auto* object = as<NSManagedObject>(value);
    if (object && (!r->destinationEntity() || object->entity() == r->destinationEntity())) return object;
    const std::string what = value ? value->description()->utf8() : "(null)";
    raiseNamed(NSInvalidArgumentException, r->name()->utf8() + " does not lead to " + what);
}

void NSManagedObject::setToOne(Relationship* r, NSObject* value) {
    const Ref<NSManagedObject> next = value ? checked(r, value) : nullptr;
    const Ref<NSObject> standing = primitiveValueForKey(r->name());
    if (standing == next) return;
    store(next, r->name());
    Relationship* back = r->inverseRelationship();
    if (!back) return;
    if (auto* former = as<NSManagedObject>(standing)) former->takeOut(this, back);
    if (next) next->putIn(this, back);
}

void NSManagedObject::setToMany(Relationship* r, NSObject* value) {
    const auto* given = as<NSSet>(value);
    if (value && !given) raiseNamed(NSInvalidArgumentException, r->name()->utf8() + " takes a set");
    const Ref<NSMutableSet> next = given ? NSMutableSet::setWithSet(given) : NSMutableSet::set();
    for (NSObject* o : *next)
        (void)checked(r, o);
    const std::vector<Ref<NSManagedObject>> before = related(r);
    willChangeValueForKey_withSetMutation_usingObjects(r->name(), NSKeyValueSetSetMutation, next);
    // A copy, so that what the observers hear does not change with the value.
    setPrimitiveValue_forKey(NSMutableSet::setWithSet(next), r->name());
    didChangeValueForKey_withSetMutation_usingObjects(r->name(), NSKeyValueSetSetMutation, next);
    Relationship* back = r->inverseRelationship();
    if (!back) return;
    for (const Ref<NSManagedObject>& former : before)
        if (!next->containsObject(former)) former->takeOut(this, back);
    const Ref<NSArray> all = next->allObjects();
    for (NSObject* o : *all)
        as<NSManagedObject>(o)->putIn(this, back);
}

// Inverses.

std::vector<Ref<NSManagedObject>> NSManagedObject::related(Relationship* r) const {
    std::vector<Ref<NSManagedObject>> all;
    const Ref<NSObject> value = primitiveValueForKey(r->name());
    if (auto* set = as<NSSet>(value)) {
        for (auto* o : set->as<NSManagedObject>())
            all.emplace_back(o);
    } else if (auto* one = as<NSManagedObject>(value)) {
        all.emplace_back(one);
    }
    return all;
}

Ref<NSMutableSet> NSManagedObject::setOf(Relationship* r) const {
    const Ref<NSObject> value = primitiveValueForKey(r->name());
    return Ref<NSMutableSet>(as<NSMutableSet>(value));
}

void NSManagedObject::putIn(NSManagedObject* other, Relationship* r) {
    const Ref<NSManagedObject> self(this);
    if (r->isToMany()) {
        const Ref<NSMutableSet> set = setOf(r);
        if (!set || set->containsObject(other)) return;
        const Ref<NSSet> one = NSSet::setWithObject(other);
        willChangeValueForKey_withSetMutation_usingObjects(r->name(), NSKeyValueUnionSetMutation, one);
        set->addObject(other);
        didChangeValueForKey_withSetMutation_usingObjects(r->name(), NSKeyValueUnionSetMutation, one);
        return;
    }
    const Ref<NSObject> standing = primitiveValueForKey(r->name());
    if (standing == other) return;
    store(other, r->name());
    // Whoever was there before has lost this object to the new one.
    auto* former = as<NSManagedObject>(standing);
    if (former && r->inverseRelationship()) former->takeOut(this, r->inverseRelationship());
}

void NSManagedObject::takeOut(NSManagedObject* other, Relationship* r) {
    const Ref<NSManagedObject> self(this);
    if (r->isToMany()) {
        const Ref<NSMutableSet> set = setOf(r);
        if (!set || !set->containsObject(other)) return;
        const Ref<NSSet> one = NSSet::setWithObject(other);
        willChangeValueForKey_withSetMutation_usingObjects(r->name(), NSKeyValueMinusSetMutation, one);
        set->removeObject(other);
        didChangeValueForKey_withSetMutation_usingObjects(r->name(), NSKeyValueMinusSetMutation, one);
        return;
    }
    const Ref<NSObject> standing = primitiveValueForKey(r->name());
    if (standing == other) store(nullptr, r->name());
}

void NSManagedObject::leaveContext() {
    context_ = nullptr;
    const Ref<NSManagedObject> self(this);
    const Ref<NSArray> names = entity_->relationshipsByName()->allKeys();
    for (NSObject* name : *names)
        values_->removeObjectForKey(name);
}

Ref<NSString> NSManagedObject::description() const {
    return NSString::stringWithFormat(u"<%@ %p (entity %@)>"_ns, className().get(), static_cast<const void*>(this),
                                      entity_ ? entity_->name() : nullptr);
}

} // namespace libvue
