#include <libvue/layout/KCView.h>

namespace libvue {

static const ClassRegistration<KCView> enregistrement;

void KCView::describe(ClassDescription<KCView, NSView>& c) { c.key<&KCView::monVC, &KCView::setMonVC>("monVC"); }

void KCView::setMonVC(NSViewController* vc) {
    // The view's own link is set by the base operation: the overridden one would pass it on to the controller.
    if (const Ref<NSViewController> ancien = monVC_.ref()) {
        NSView::setNextResponder(ancien->nextResponder());
        ancien->setNextResponder(nullptr);
    }
    monVC_ = vc;
    if (!vc) return;
    vc->setNextResponder(nextResponder());
    NSView::setNextResponder(vc);
}

void KCView::setNextResponder(NSResponder* r) {
    if (const Ref<NSViewController> vc = monVC_.ref())
        vc->setNextResponder(r);
    else
        NSView::setNextResponder(r);
}

} // namespace libvue
