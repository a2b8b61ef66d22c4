#pragma once

#include <libvue/layout/Forward.h>
#include <libvue/platform/appkit/NSView.h>

namespace libvue {

/// A view whose origin is its top left corner.
class LIBVUE_API KCFlippedView : public NSView {
public:
    static void describe(ClassDescription<KCFlippedView, NSView>&) {}
    using NSView::NSView;

    [[nodiscard]] BOOL isFlipped() const override { return YES; }
};

} // namespace libvue
