#include <libvue/platform/coredata/NSManagedObjectContext.h>

#include <vector>

#include <libvue/platform/coredata/NSManagedObject.h>
#include <libvue/platform/coredata/NSManagedObjectModel.h>
#include <libvue/platform/foundation/NSException.h>

namespace libvue {

static const ClassRegistration<NSManagedObjectContext> registration;

void NSManagedObjectContext::describe(ClassDescription<NSManagedObjectContext>&) {}

NSManagedObjectContext::NSManagedObjectContext(NSManagedObjectModel* model)
    : model_(model), objects_(NSMutableSet::set()) {
    if (!model) raiseNamed(NSInvalidArgumentException, "a context needs a model");
}

NSManagedObjectContext::~NSManagedObjectContext() {
    // What an object gives up may run code that comes by the set.
    const Ref<NSArray> all = objects_->allObjects();
    for (auto* o : all->as<NSManagedObject>())
        o->leaveContext();
}

NSManagedObjectModel* NSManagedObjectContext::managedObjectModel() const noexcept { return model_; }

void NSManagedObjectContext::insertObject(NSManagedObject* o) {
    if (!o || o->managedObjectContext() == this) return;
    if (!o->entity()) raiseNamed(NSInvalidArgumentException, "the object has no entity");
    if (o->managedObjectContext()) raiseNamed(NSInvalidArgumentException, "the object belongs to another context");
    o->context_ = this;
    objects_->addObject(o);
}

void NSManagedObjectContext::deleteObject(NSManagedObject* o) {
    const Ref<NSManagedObjectContext> self(this);
    // Cascades wait in a list: a long chain costs no stack.
    std::vector<Ref<NSManagedObject>> waiting{o};
    while (!waiting.empty()) {
        const Ref<NSManagedObject> gone = std::move(waiting.back());
        waiting.pop_back();
        if (!gone || gone->managedObjectContext() != this) continue;
        const Ref<NSDictionary> relationships = gone->entity()->relationshipsByName();
        for (auto [name, description] : *relationships) {
            auto* r = as<NSRelationshipDescription>(description);
            if (r->deleteRule() == NSNoActionDeleteRule) continue;
            for (const Ref<NSManagedObject>& related : gone->related(r)) {
                if (related == gone) continue;
                if (r->deleteRule() == NSCascadeDeleteRule) waiting.push_back(related);
                if (auto* back = r->inverseRelationship()) related->takeOut(gone, back);
            }
        }
        objects_->removeObject(gone);
        gone->leaveContext();
    }
}

Ref<NSSet> NSManagedObjectContext::registeredObjects() const { return NSSet::setWithSet(objects_); }

Ref<NSArray> NSManagedObjectContext::objectsForEntityName(const NSString* name) const {
    return objects_->allObjects()->filteredArray(
        [name](NSObject* o) { return as<NSManagedObject>(o)->entity()->name()->isEqualToString(name); });
}

} // namespace libvue
