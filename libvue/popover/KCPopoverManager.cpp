#include <libvue/popover/KCPopoverManager.h>

#include <libvue/platform/foundation/NSDictionary.h>

namespace libvue {

static const ClassRegistration<KCPopoverManager> enregistrement;

namespace {

NSMutableDictionary* table() {
    static NSMutableDictionary* const popovers = keptForever(NSMutableDictionary::dictionary());
    return popovers;
}

} // namespace

void KCPopoverManager::describe(ClassDescription<KCPopoverManager>&) {}

Ref<NSArray> KCPopoverManager::popovers() { return table()->allValues(); }
NSObject* KCPopoverManager::popoverAvecCle(NSObject* cle) { return cle ? table()->objectForKey(cle) : nullptr; }
void KCPopoverManager::associePopover_avecCle(NSObject* popover, NSObject* cle) {
    table()->setObject_forKey(popover, cle);
}

void KCPopoverManager::enlevePopoverAvecCle(NSObject* cle) {
    if (!cle) return;
    // The last hold on the popover goes when the table is whole again.
    const Ref<NSObject> popover(table()->objectForKey(cle));
    table()->removeObjectForKey(cle);
}

} // namespace libvue
