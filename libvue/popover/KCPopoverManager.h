#pragma once

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/popover/Forward.h>

namespace libvue {

/// The popovers of the process, by key. Main thread.
class LIBVUE_API KCPopoverManager : public NSObject {
public:
    static void describe(ClassDescription<KCPopoverManager>& c);
    KCPopoverManager() = delete;

    /// In no particular order.
    [[nodiscard]] static Ref<NSArray> popovers();
    /// Null where there is none.
    [[nodiscard]] static NSObject* popoverAvecCle(NSObject* cle);
    /// Keeps the popover, in the place of the one that had the key. Null for either raises
    /// NSInvalidArgumentException.
    static void associePopover_avecCle(NSObject* popover, NSObject* cle);
    static void enlevePopoverAvecCle(NSObject* cle);
};

} // namespace libvue
