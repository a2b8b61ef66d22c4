#pragma once

#include <vector>

#include <libvue/platform/coredata/NSEntityDescription.h>
#include <libvue/platform/foundation/NSKeyValueObserving.h>
#include <libvue/platform/foundation/NSSet.h>

namespace libvue {

/// An object whose attributes and relationships its entity names. They answer to key-value coding and are observable.
///
/// `setValue_forKey` announces the change and keeps the inverse of a relationship in step; the primitive operations do
/// neither. A context owns the object and takes its relationships apart in the end; without a context, related objects
/// own each other, and a circle of them has to be taken apart by whoever made it.
///
/// Two objects are equal where they are the same one.
class LIBVUE_API NSManagedObject : public NSObject {
public:
    static void describe(ClassDescription<NSManagedObject>& c);
    /// Without an entity, for the entity to make; it has no keys.
    NSManagedObject() noexcept;
    ~NSManagedObject() override;
    /// An object of the entity's class with its default values. A null context leaves it to the caller alone. Raises
    /// NSInvalidArgumentException for a null entity.
    [[nodiscard]] static Ref<NSManagedObject>
    initWithEntity_insertIntoManagedObjectContext(NSEntityDescription* entity, NSManagedObjectContext* context);

    [[nodiscard]] NSEntityDescription* entity() const noexcept { return entity_; }
    /// Null where it was deleted, the context is gone or there never was one.
    [[nodiscard]] NSManagedObjectContext* managedObjectContext() const;
    /// Sent once, when it is new and has its default values.
    virtual void awakeFromInsert() {}

    // The value as it is kept, without notices or inverses. A key that the entity does not name raises
    // NSUndefinedKeyException.

    /// Null where there is none. A relationship to many has its NSMutableSet, which changes in place.
    [[nodiscard]] virtual Ref<NSObject> primitiveValueForKey(NSString* key) const;
    /// Null takes the value off. A set that cannot change is copied into one that can.
    virtual void setPrimitiveValue_forKey(NSObject* value, NSString* key);

    // Announcing, around a primitive operation. Changes of single values are NSObject's.

    virtual void willAccessValueForKey(NSString*) const {}
    virtual void didAccessValueForKey(NSString*) const {}
    virtual void willChangeValueForKey_withSetMutation_usingObjects(NSString* key, NSKeyValueSetMutationKind kind,
                                                                    const NSSet* objects);
    virtual void didChangeValueForKey_withSetMutation_usingObjects(NSString* key, NSKeyValueSetMutationKind kind,
                                                                   const NSSet* objects);

    /// The properties of the entity are keys, behind those that the class describes. A relationship to many gives a
    /// set that does not follow changes, and takes any set.
    [[nodiscard]] Ref<NSObject> valueForUndefinedKey(NSString* key) override;
    /// An object that the relationship does not lead to raises NSInvalidArgumentException.
    void setValue_forUndefinedKey(NSObject* value, NSString* key) override;

    [[nodiscard]] Ref<NSString> description() const override;

private:
    friend class NSManagedObjectContext;
    using Relationship = NSRelationshipDescription;

    [[nodiscard]] NSPropertyDescription* property(NSString* key) const;
    [[nodiscard]] std::vector<Ref<NSManagedObject>> related(Relationship* r) const;
    [[nodiscard]] Ref<NSMutableSet> setOf(Relationship* r) const;
    /// Stores a value with notices.
    void store(NSObject* value, NSString* key);
    void setToOne(Relationship* r, NSObject* value);
    void setToMany(Relationship* r, NSObject* value);
    /// Raises where the relationship does not lead to such objects.
    static NSManagedObject* checked(const Relationship* r, NSObject* value);
    // The other end of a link: this object's own relationship `r` gets, or loses, `other`.
    void putIn(NSManagedObject* other, Relationship* r);
    void takeOut(NSManagedObject* other, Relationship* r);
    void leaveContext();

    Ref<NSEntityDescription> entity_;
    Weak<NSManagedObjectContext> context_;
    Ref<NSMutableDictionary> values_;
};

} // namespace libvue
