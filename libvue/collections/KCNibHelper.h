#pragma once

#include <libvue/collections/Forward.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// One private instance of an interface resource, with the view of a given class picked out of its top-level objects.
/// A copy is another instance of the same resource.
class LIBVUE_API KCNibHelper : public NSObject {
public:
    static void describe(ClassDescription<KCNibHelper>& c);
    ~KCNibHelper() override;

    /// Null where the resource cannot be found or built. Among several views of the class the last one is picked; where
    /// there is none, the log says so. The bundle (null: the application's) and the class (null: none) are kept, the
    /// owner is not.
    [[nodiscard]] static Ref<KCNibHelper>
    initAvecNomNib_bundleNib_owner_classeView(NSString* nom, NSBundle* bundle, NSObject* owner, const Class* classe);
    /// Builds the resource anew, connected to the same owner; null where that fails.
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;

    [[nodiscard]] NSString* preteNom() const noexcept { return monNomNib; }
    [[nodiscard]] NSBundle* preteBundle() const noexcept { return monBundle; }
    [[nodiscard]] NSObject* preteOwner() const noexcept { return monOwner; }
    [[nodiscard]] const Class* preteClasseVue() const noexcept { return maClasseVue; }
    /// Null where the class was null or had no instance.
    [[nodiscard]] NSObject* preteVuePrincipale() const noexcept { return maVuePrincipale; }
    /// The main view as what a grid needs of it; null where it is none.
    [[nodiscard]] NSView* vue() const noexcept { return vue_; }
    [[nodiscard]] KCCollectionItemView* vueItem() const noexcept { return vueItem_; }

private:
    KCNibHelper();

    Ref<NSBundle> monBundle;
    Ref<NSString> monNomNib;
    Ref<NSArray> nibTopLevelObjects;
    const Class* maClasseVue = nullptr;
    NSObject* maVuePrincipale = nullptr; // kept by nibTopLevelObjects
    Weak<NSObject> monOwner;
    NSView* vue_ = nullptr;
    KCCollectionItemView* vueItem_ = nullptr;
};

} // namespace libvue
