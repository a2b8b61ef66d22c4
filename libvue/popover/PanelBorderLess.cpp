#include <libvue/popover/PanelBorderLess.h>

namespace libvue {

static const ClassRegistration<PanelBorderLess> enregistrement;

namespace {

constexpr CGFloat kAlpha = 0.92;

} // namespace

void PanelBorderLess::describe(ClassDescription<PanelBorderLess, NSPanel>& c) {
    c.key<&PanelBorderLess::rectangle, &PanelBorderLess::setRectangle>("rectangle");
}

PanelBorderLess::PanelBorderLess(const NSRect& contentRect, NSUInteger, NSBackingStoreType, BOOL)
    : NSPanel(contentRect, NSBorderlessWindowMask, NSBackingStoreBuffered, NO) {
    setOpaque(NO);
    setAlphaValue(kAlpha);
}

PanelBorderLess::~PanelBorderLess() = default;

} // namespace libvue
