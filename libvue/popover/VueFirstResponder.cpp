#include <libvue/popover/VueFirstResponder.h>

#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/popover/KCPopover.h>

namespace libvue {

static const ClassRegistration<VueFirstResponder> enregistrement;

void VueFirstResponder::describe(ClassDescription<VueFirstResponder, NSView>&) {}

VueFirstResponder::~VueFirstResponder() = default;

KCPopover* VueFirstResponder::popover() const noexcept { return popover_; }
void VueFirstResponder::setPopover(KCPopover* popover) { popover_ = popover; }

BOOL VueFirstResponder::becomeFirstResponder() { return NSView::becomeFirstResponder(); }

BOOL VueFirstResponder::resignFirstResponder() {
    const Ref<VueFirstResponder> moi(this);
    if (const Ref<KCPopover> p = popover_.ref()) p->close();
    return NSView::resignFirstResponder();
}

void VueFirstResponder::keyDown(NSEvent* e) {
    const Ref<VueFirstResponder> moi(this);
    const NSString* touches = e->charactersIgnoringModifiers();
    if (touches && touches->length() > 0 && touches->characterAtIndex(0) == NSEscapeCharacter) {
        if (const Ref<KCPopover> p = popover_.ref()) p->close();
        return;
    }
    if (const Ref<NSResponder> suivant = nextResponder()) (void)suivant->tryToPerform_with(sel("keyDown:"), e);
}

} // namespace libvue
