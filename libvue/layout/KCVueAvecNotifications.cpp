#include <libvue/layout/KCVueAvecNotifications.h>

#include <libvue/platform/foundation/NSNotificationCenter.h>

namespace libvue {

static const ClassRegistration<KCVueAvecNotifications> enregistrement;

void KCVueAvecNotifications::viewDidMoveToWindow() {
    KCView::viewDidMoveToWindow();
    NSNotificationCenter::defaultCenter()->postNotificationName_object(kNSViewDidMoveToWindowNotification, this);
}

} // namespace libvue
