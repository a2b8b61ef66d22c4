#pragma once

#include <libvue/platform/coredata/NSEntityDescription.h>

namespace libvue {

/// The entities that belong together. Owns them.
class LIBVUE_API NSManagedObjectModel : public NSObject {
public:
    static void describe(ClassDescription<NSManagedObjectModel>& c);
    NSManagedObjectModel();
    ~NSManagedObjectModel() override;
    [[nodiscard]] static Ref<NSManagedObjectModel> modelWithEntities(const NSArray* entities);

    [[nodiscard]] NSArray* entities() const noexcept { return entities_; }
    /// Raises NSInvalidArgumentException where one is no entity or has a name that came before.
    void setEntities(const NSArray* entities);
    [[nodiscard]] NSDictionary* entitiesByName() const noexcept { return byName_; }
    /// Null where there is none.
    [[nodiscard]] NSEntityDescription* entityNamed(const NSString* name) const;

private:
    Ref<NSArray> entities_;
    Ref<NSDictionary> byName_;
};

} // namespace libvue
