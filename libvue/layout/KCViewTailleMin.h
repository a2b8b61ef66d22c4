#pragma once

#include <libvue/layout/Forward.h>
#include <libvue/platform/appkit/NSView.h>

namespace libvue {

/// A view that refuses to become smaller than `tailleMin`: a frame that is too small in either direction is ignored as
/// a whole, origin included. setFrameOrigin: always moves it.
class LIBVUE_API KCViewTailleMin : public NSView {
public:
    static void describe(ClassDescription<KCViewTailleMin, NSView>& c);
    using NSView::NSView;

    /// The smallest size that it takes, itself included; (0, 0) at the start.
    [[nodiscard]] NSSize tailleMin() const noexcept { return tailleMin_; }
    /// Leaves the current frame as it is.
    void setTailleMin(NSSize taille) noexcept { tailleMin_ = taille; }

    void setFrame(const NSRect& frame) override;
    void setFrameSize(const NSSize& size) override;

private:
    [[nodiscard]] bool accepte(const NSSize& size) const noexcept;

    NSSize tailleMin_;
};

} // namespace libvue
