#include <libvue/collections/KCNibHelper.h>

#include <libvue/collections/KCCollectionItemView.h>
#include <libvue/platform/appkit/NSNib.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSBundle.h>

namespace libvue {

void KCNibHelper::describe(ClassDescription<KCNibHelper>&) {}
KCNibHelper::KCNibHelper() = default;
KCNibHelper::~KCNibHelper() = default;

Ref<KCNibHelper> KCNibHelper::initAvecNomNib_bundleNib_owner_classeView(NSString* nom, NSBundle* bundle,
                                                                        NSObject* owner, const Class* classe) {
    Ref<KCNibHelper> self = adopt(new KCNibHelper);
    self->monNomNib = nom;
    self->monBundle = bundle;
    self->maClasseVue = classe;
    self->monOwner = owner;
    const Ref<NSNib> nib = NSNib::initWithNibNamed_bundle(nom, bundle);
    if (!nib || !nib->instantiateNibWithOwner_topLevelObjects(owner, &self->nibTopLevelObjects)) return nullptr;
    if (!classe) return self;
    for (NSObject* o : *self->nibTopLevelObjects)
        if (o->isKindOfClass(*classe)) self->maVuePrincipale = o;
    self->vue_ = as<NSView>(self->maVuePrincipale);
    self->vueItem_ = as<KCCollectionItemView>(self->maVuePrincipale);
    if (!self->maVuePrincipale)
        NSLog(u"Impossible de trouver une instance de %@ dans le nib.\n"_ns, NSStringFromClass(*classe).get());
    return self;
}

Ref<NSObject> KCNibHelper::copyWithZone() const {
    return initAvecNomNib_bundleNib_owner_classeView(preteNom(), preteBundle(), preteOwner(), preteClasseVue());
}

} // namespace libvue
