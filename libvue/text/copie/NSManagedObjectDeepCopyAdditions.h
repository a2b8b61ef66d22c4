#pragma once

#include <libvue/platform/coredata/NSManagedObject.h>

// The pieces of a deep copy. A class that can be copied overrides `deepCopy`: it makes a new object and calls these on
// it, one for each thing that the copy shall have. The base answers null, so a class without it copies nothing.
//
//     Ref<NSObject> deepCopy() const override {
//         auto copie = NSEntityDescription::insertNewObjectForEntityForName_inManagedObjectContext(entity()->name(),
//                                                                                              managedObjectContext());
//         copyAttributesFromObject(copie, this);
//         copyToManyRelationshipForKey_fromObject_useExisting(copie, u"lignes"_ns, this, NO);
//         return copie;
//     }
//
// The first argument is the new object; null does nothing. Values are primitive ones, announced by both objects.

namespace libvue {

/// Gives the object the values of `src` for every attribute of its own entity. The values themselves are shared. A null
/// `src` takes the values off.
LIBVUE_API void copyAttributesFromObject(NSManagedObject* object, const NSManagedObject* src);

/// Adds `other` to the object's set under `key`, and leaves the other end alone. Null is not added.
LIBVUE_API void addObject_toToManyRelationshipForKey(NSManagedObject* object, NSObject* other, NSString* key);

/// Gives the object what `src` has under `key`, itself where `useExisting` is YES and else its deep copy, and links
/// that back to the object. Where `src` has nothing the object keeps what it has; where the deep copy is null it gets
/// null. What `src` shares goes on being its own, but an inverse to one then points at the new object.
LIBVUE_API void copyToOneRelationshipForKey_fromObject_useExisting(NSManagedObject* object, NSString* key,
                                                                   const NSManagedObject* src, BOOL useExisting);

/// Adds to the object's set under `key` what `src` has in its own, in the same way. Nothing is taken out.
LIBVUE_API void copyToManyRelationshipForKey_fromObject_useExisting(NSManagedObject* object, NSString* key,
                                                                    const NSManagedObject* src, BOOL useExisting);

} // namespace libvue
