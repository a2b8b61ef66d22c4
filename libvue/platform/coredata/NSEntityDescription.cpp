#include <libvue/platform/coredata/NSEntityDescription.h>

#include <libvue/platform/coredata/NSManagedObject.h>
#include <libvue/platform/coredata/NSManagedObjectContext.h>
#include <libvue/platform/coredata/NSManagedObjectModel.h>
#include <libvue/platform/foundation/NSException.h>

namespace libvue {

static const ClassRegistration<NSEntityDescription> registration;

void NSEntityDescription::describe(ClassDescription<NSEntityDescription>& c) {
    c.key<&NSEntityDescription::name>("name");
    c.key<&NSEntityDescription::propertiesByName>("propertiesByName");
    c.key<&NSEntityDescription::attributesByName>("attributesByName");
    c.key<&NSEntityDescription::relationshipsByName>("relationshipsByName");
}

NSEntityDescription::NSEntityDescription() : NSEntityDescription(NSString::string()) {}
NSEntityDescription::NSEntityDescription(const NSString* name)
    : className_(u"NSManagedObject"_ns),
      properties_(NSArray::array()),
      byName_(NSDictionary::dictionary()),
      attributes_(NSDictionary::dictionary()),
      relationships_(NSDictionary::dictionary()) {
    setName(name);
}
NSEntityDescription::~NSEntityDescription() = default;

void NSEntityDescription::setName(const NSString* name) {
    name_ = name ? NSString::stringWithString(name) : NSString::string();
}
void NSEntityDescription::setManagedObjectClassName(const NSString* name) {
    className_ = name ? NSString::stringWithString(name) : u"NSManagedObject"_ns;
}

void NSEntityDescription::setProperties(const NSArray* properties) {
    const Ref<NSMutableDictionary> byName = NSMutableDictionary::dictionary(),
                                   attributes = NSMutableDictionary::dictionary(),
                                   relationships = NSMutableDictionary::dictionary();
    const Ref<NSArray> all = properties ? NSArray::arrayWithArray(properties) : NSArray::array();
    for (NSObject* o : *all) {
        auto* p = as<NSPropertyDescription>(o);
        if (!p || !p->name() || byName->objectForKey(p->name()))
            raiseNamed(NSInvalidArgumentException, name_->utf8() + " needs properties with names of their own");
        byName->setObject_forKey(p, p->name());
        (as<NSRelationshipDescription>(p) ? relationships : attributes)->setObject_forKey(p, p->name());
    }
    for (NSObject* o : *all)
        as<NSPropertyDescription>(o)->entity_ = this;
    properties_ = all;
    byName_ = byName;
    attributes_ = attributes;
    relationships_ = relationships;
}

NSEntityDescription* NSEntityDescription::entityForName_inManagedObjectContext(const NSString* name,
                                                                               NSManagedObjectContext* context) {
    return context ? context->managedObjectModel()->entityNamed(name) : nullptr;
}

Ref<NSManagedObject>
NSEntityDescription::insertNewObjectForEntityForName_inManagedObjectContext(const NSString* name,
                                                                            NSManagedObjectContext* context) {
    auto* entity = entityForName_inManagedObjectContext(name, context);
    if (!entity)
        raiseNamed(NSInvalidArgumentException, "there is no entity " + (name ? name->utf8() : std::string("(null)")));
    return NSManagedObject::initWithEntity_insertIntoManagedObjectContext(entity, context);
}

Ref<NSString> NSEntityDescription::description() const {
    return NSString::stringWithFormat(u"<NSEntityDescription %@>"_ns, name_.get());
}

} // namespace libvue
