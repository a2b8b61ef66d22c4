#pragma once

#include <libvue/layout/KCView.h>
#include <libvue/layout/NotificationsVue.h>

namespace libvue {

/// Posts kNSViewDidMoveToWindowNotification each time its window changes, also when it becomes absent.
class LIBVUE_API KCVueAvecNotifications : public KCView {
public:
    static void describe(ClassDescription<KCVueAvecNotifications, KCView>&) {}
    using KCView::KCView;

    void viewDidMoveToWindow() override;
};

} // namespace libvue
