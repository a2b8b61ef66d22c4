#include <libvue/platform/appkit/NSText.h>

namespace libvue {

void NSText::describe(ClassDescription<NSText, NSView>& c) {
    c.answers<&NSText::cut>("cut:");
    c.answers<&NSText::copy>("copy:");
    c.answers<&NSText::paste>("paste:");
    c.answers<&NSText::selectAll>("selectAll:");
    c.answers<&NSText::undo>("undo:");
    c.answers<&NSText::redo>("redo:");
}

NSText::~NSText() = default;

} // namespace libvue
