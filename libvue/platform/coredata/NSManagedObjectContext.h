#pragma once

#include <libvue/platform/coredata/Forward.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/foundation/NSSet.h>

namespace libvue {

/// The objects of a model, in memory.
///
/// It owns its objects, and related objects hold each other. When the context goes it takes the relationships apart, so
/// that circles of objects do not keep themselves; what someone else still holds keeps its attributes alone.
class LIBVUE_API NSManagedObjectContext : public NSObject {
public:
    static void describe(ClassDescription<NSManagedObjectContext>& c);
    /// Raises NSInvalidArgumentException for a null model.
    explicit NSManagedObjectContext(NSManagedObjectModel* model);
    ~NSManagedObjectContext() override;

    [[nodiscard]] NSManagedObjectModel* managedObjectModel() const noexcept;
    /// Takes over an object without a context; one of another context, and one without an entity, raise
    /// NSInvalidArgumentException.
    void insertObject(NSManagedObject* o);
    /// Takes the object out, with the related objects that the delete rules name; the other ones lose it, with notices.
    /// Nothing happens for an object of another context.
    void deleteObject(NSManagedObject* o);
    [[nodiscard]] Ref<NSSet> registeredObjects() const;
    /// The objects of that entity, in the order in which they came.
    [[nodiscard]] Ref<NSArray> objectsForEntityName(const NSString* name) const;

private:
    Ref<NSManagedObjectModel> model_;
    Ref<NSMutableSet> objects_;
};

} // namespace libvue
