#include <libvue/text/copie/NSManagedObjectDeepCopyAdditions.h>

#include <libvue/platform/foundation/ClassExtension.h>

namespace libvue {

namespace {

const ClassExtension<NSManagedObject> extension([](ClassExtension<NSManagedObject>::Description& c) {
    c.answers<&copyAttributesFromObject>("copyAttributesFromObject:");
    c.answers<&addObject_toToManyRelationshipForKey>("addObject:toToManyRelationshipForKey:");
    c.answers<&copyToOneRelationshipForKey_fromObject_useExisting>(
        "copyToOneRelationshipForKey:fromObject:useExisting:");
    c.answers<&copyToManyRelationshipForKey_fromObject_useExisting>(
        "copyToManyRelationshipForKey:fromObject:useExisting:");
});

Ref<NSRelationshipDescription> inverse(const NSManagedObject* object, NSString* cle) {
    const Ref<NSEntityDescription> entite = object->entity();
    auto* r = entite ? entite->relationshipsByName()->get<NSRelationshipDescription>(cle) : nullptr;
    return r ? r->inverseRelationship() : nullptr;
}

void pose(NSManagedObject* object, NSObject* valeur, NSString* cle) {
    object->willChangeValueForKey(cle);
    object->setPrimitiveValue_forKey(valeur, cle);
    object->didChangeValueForKey(cle);
}

/// Has `lie`, which may be no managed object, point back at `object`.
void lieEnRetour(NSObject* lie, NSManagedObject* object, const NSRelationshipDescription* inv) {
    auto* autre = as<NSManagedObject>(lie);
    if (!autre || !inv) return;
    if (inv->isToMany())
        addObject_toToManyRelationshipForKey(autre, object, inv->name());
    else
        pose(autre, object, inv->name());
}

} // namespace

void copyAttributesFromObject(NSManagedObject* object, const NSManagedObject* src) {
    if (!object || !object->entity()) return;
    const Ref<NSManagedObject> ici(object);
    const Ref<const NSManagedObject> source(src);
    const Ref<NSArray> cles = object->entity()->attributesByName()->allKeys();
    for (NSObject* o : *cles) {
        auto* cle = as<NSString>(o);
        object->willChangeValueForKey(cle);
        if (src) src->willAccessValueForKey(cle);
        object->setPrimitiveValue_forKey(src ? src->primitiveValueForKey(cle) : nullptr, cle);
        if (src) src->didAccessValueForKey(cle);
        object->didChangeValueForKey(cle);
    }
}

void addObject_toToManyRelationshipForKey(NSManagedObject* object, NSObject* other, NSString* key) {
    if (!object || !other) return;
    const Ref<NSManagedObject> ici(object);
    const Ref<NSSet> un = NSSet::setWithObject(other);
    object->willChangeValueForKey_withSetMutation_usingObjects(key, NSKeyValueUnionSetMutation, un);
    const Ref<NSObject> ensemble = object->primitiveValueForKey(key);
    if (auto* modifiable = as<NSMutableSet>(ensemble)) modifiable->addObject(other);
    object->didChangeValueForKey_withSetMutation_usingObjects(key, NSKeyValueUnionSetMutation, un);
}

void copyToOneRelationshipForKey_fromObject_useExisting(NSManagedObject* object, NSString* key,
                                                        const NSManagedObject* src, BOOL useExisting) {
    if (!object || !src) return;
    const Ref<NSManagedObject> ici(object);
    const Ref<const NSManagedObject> source(src);
    Ref<NSObject> v = src->primitiveValueForKey(key);
    if (!v) return;
    if (!useExisting) v = v->deepCopy();
    pose(object, v, key);
    lieEnRetour(v, object, inverse(object, key));
}

void copyToManyRelationshipForKey_fromObject_useExisting(NSManagedObject* object, NSString* key,
                                                         const NSManagedObject* src, BOOL useExisting) {
    if (!object || !src) return;
    const Ref<NSManagedObject> ici(object);
    const Ref<const NSManagedObject> source(src);
    const Ref<NSObject> valeur = src->primitiveValueForKey(key);
    auto* ensemble = as<NSSet>(valeur);
    if (!ensemble || ensemble->count() == 0) return;
    // A list of its own: copying may change the set.
    const Ref<NSArray> objets = ensemble->allObjects();
    const Ref<NSRelationshipDescription> inv = inverse(object, key);
    for (NSObject* existant : *objets) {
        const Ref<NSObject> o = useExisting ? Ref<NSObject>(existant) : existant->deepCopy();
        addObject_toToManyRelationshipForKey(object, o, key);
        lieEnRetour(o, object, inv);
    }
}

} // namespace libvue
