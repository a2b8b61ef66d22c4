#include <libvue/popover/NSPopoverDelegateDimension.h>

#include <libvue/platform/foundation/ClassExtension.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNotification.h>
#include <libvue/platform/foundation/NSValue.h>

namespace libvue {

namespace {

const ClassExtension<NSPopover> extension([](ClassExtension<NSPopover>::Description& c) {
    c.answers<&contentWouldChangeSize>("contentWouldChangeSize:");
});

} // namespace

void contentWouldChangeSize(NSPopover* popover, NSNotification* notification) {
    const NSDictionary* info = popover && notification ? notification->userInfo() : nullptr;
    const auto* taille = info ? info->get<NSValue>(u"size"_ns) : nullptr;
    if (!taille) return;
    popover->setAnimates(NO);
    popover->setContentSize(taille->sizeValue());
    popover->setAnimates(YES);
}

} // namespace libvue
