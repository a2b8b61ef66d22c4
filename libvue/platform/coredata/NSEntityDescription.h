#pragma once

#include <libvue/platform/coredata/NSPropertyDescription.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>

namespace libvue {

/// A kind of managed objects: its name, its class and what its objects have.
class LIBVUE_API NSEntityDescription : public NSObject {
public:
    static void describe(ClassDescription<NSEntityDescription>& c);
    NSEntityDescription();
    explicit NSEntityDescription(const NSString* name);
    ~NSEntityDescription() override;

    /// The entity of that name in the context's model, or null.
    [[nodiscard]] static NSEntityDescription* entityForName_inManagedObjectContext(const NSString* name,
                                                                                   NSManagedObjectContext* context);
    /// A new object of the entity's class, with its default values, owned by the context. Raises
    /// NSInvalidArgumentException for an unknown name or a null context.
    static Ref<NSManagedObject> insertNewObjectForEntityForName_inManagedObjectContext(const NSString* name,
                                                                                       NSManagedObjectContext* context);

    [[nodiscard]] NSString* name() const noexcept { return name_; }
    void setName(const NSString* name);
    /// The class of its objects, a subclass of NSManagedObject that can be made without arguments. "NSManagedObject"
    /// unless set, and in place of a name that no such class has.
    [[nodiscard]] NSString* managedObjectClassName() const noexcept { return className_; }
    void setManagedObjectClassName(const NSString* name);
    /// Null until a model has it. Held weakly.
    [[nodiscard]] NSManagedObjectModel* managedObjectModel() const { return model_; }

    /// In the order in which they were given. Objects that exist already do not follow a change.
    [[nodiscard]] NSArray* properties() const noexcept { return properties_; }
    /// Raises NSInvalidArgumentException where one is no property, has no name or a name that came before.
    void setProperties(const NSArray* properties);
    [[nodiscard]] NSDictionary* propertiesByName() const noexcept { return byName_; }
    [[nodiscard]] NSDictionary* attributesByName() const noexcept { return attributes_; }
    [[nodiscard]] NSDictionary* relationshipsByName() const noexcept { return relationships_; }

    [[nodiscard]] Ref<NSString> description() const override;

private:
    friend class NSManagedObjectModel;
    Ref<NSString> name_, className_;
    Weak<NSManagedObjectModel> model_;
    Ref<NSArray> properties_;
    Ref<NSDictionary> byName_, attributes_, relationships_;
};

} // namespace libvue
