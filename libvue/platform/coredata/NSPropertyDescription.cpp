#include <libvue/platform/coredata/NSPropertyDescription.h>

#include <libvue/platform/coredata/NSEntityDescription.h>

namespace libvue {

namespace {
const ClassRegistration<NSAttributeDescription> registrationOfAttributes;
const ClassRegistration<NSRelationshipDescription> registrationOfRelationships;
} // namespace

void NSPropertyDescription::describe(ClassDescription<NSPropertyDescription>& c) {
    c.key<&NSPropertyDescription::name>("name");
    c.key<&NSPropertyDescription::entity>("entity");
}

NSPropertyDescription::NSPropertyDescription() noexcept = default;
NSPropertyDescription::~NSPropertyDescription() = default;
void NSPropertyDescription::setName(const NSString* name) { name_ = name ? NSString::stringWithString(name) : nullptr; }

void NSAttributeDescription::describe(ClassDescription<NSAttributeDescription, NSPropertyDescription>&) {}

Ref<NSAttributeDescription> NSAttributeDescription::attribute(const NSString* name, NSObject* defaultValue) {
    auto a = make<NSAttributeDescription>();
    a->setName(name);
    a->setDefaultValue(defaultValue);
    return a;
}

void NSRelationshipDescription::describe(ClassDescription<NSRelationshipDescription, NSPropertyDescription>&) {}

NSRelationshipDescription::NSRelationshipDescription() noexcept = default;
NSRelationshipDescription::~NSRelationshipDescription() = default;

Ref<NSRelationshipDescription> NSRelationshipDescription::toOne(const NSString* name,
                                                                NSEntityDescription* destination) {
    auto r = toMany(name, destination);
    r->setMaxCount(1);
    return r;
}

Ref<NSRelationshipDescription> NSRelationshipDescription::toMany(const NSString* name,
                                                                 NSEntityDescription* destination) {
    auto r = make<NSRelationshipDescription>();
    r->setName(name);
    r->setDestinationEntity(destination);
    return r;
}

void NSRelationshipDescription::makeInverse(NSRelationshipDescription* a, NSRelationshipDescription* b) {
    if (a) a->inverse_ = b;
    if (b) b->inverse_ = a;
}

void NSRelationshipDescription::setDestinationEntity(NSEntityDescription* e) { destination_ = e; }

} // namespace libvue
