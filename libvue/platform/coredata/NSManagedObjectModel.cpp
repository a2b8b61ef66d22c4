#include <libvue/platform/coredata/NSManagedObjectModel.h>

#include <libvue/platform/foundation/NSException.h>

namespace libvue {

static const ClassRegistration<NSManagedObjectModel> registration;

void NSManagedObjectModel::describe(ClassDescription<NSManagedObjectModel>&) {}

NSManagedObjectModel::NSManagedObjectModel() : entities_(NSArray::array()), byName_(NSDictionary::dictionary()) {}
NSManagedObjectModel::~NSManagedObjectModel() = default;

Ref<NSManagedObjectModel> NSManagedObjectModel::modelWithEntities(const NSArray* entities) {
    auto m = make<NSManagedObjectModel>();
    m->setEntities(entities);
    return m;
}

void NSManagedObjectModel::setEntities(const NSArray* entities) {
    const Ref<NSMutableDictionary> byName = NSMutableDictionary::dictionary();
    const Ref<NSArray> all = entities ? NSArray::arrayWithArray(entities) : NSArray::array();
    for (NSObject* o : *all) {
        auto* e = as<NSEntityDescription>(o);
        if (!e || byName->objectForKey(e->name()))
            raiseNamed(NSInvalidArgumentException, "a model needs entities with names of their own");
        byName->setObject_forKey(e, e->name());
    }
    for (NSObject* o : *all)
        as<NSEntityDescription>(o)->model_ = this;
    entities_ = all;
    byName_ = byName;
}

NSEntityDescription* NSManagedObjectModel::entityNamed(const NSString* name) const {
    return byName_->get<NSEntityDescription>(name);
}

} // namespace libvue
