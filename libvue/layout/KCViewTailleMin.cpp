#include <libvue/layout/KCViewTailleMin.h>

namespace libvue {

static const ClassRegistration<KCViewTailleMin> enregistrement;

void KCViewTailleMin::describe(ClassDescription<KCViewTailleMin, NSView>& c) {
    c.key<&KCViewTailleMin::tailleMin, &KCViewTailleMin::setTailleMin>("tailleMin");
}

bool KCViewTailleMin::accepte(const NSSize& size) const noexcept {
    // Written so that a NaN fails.
    return size.width >= tailleMin_.width && size.height >= tailleMin_.height;
}

void KCViewTailleMin::setFrame(const NSRect& frame) {
    if (accepte(frame.size)) NSView::setFrame(frame);
}

void KCViewTailleMin::setFrameSize(const NSSize& size) {
    if (accepte(size)) NSView::setFrameSize(size);
}

} // namespace libvue
