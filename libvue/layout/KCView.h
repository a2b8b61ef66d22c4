#pragma once

#include <libvue/layout/Forward.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/appkit/NSViewController.h>

namespace libvue {

/// A view that keeps its controller between itself and whatever follows it in the responder chain, also when the
/// platform rewires the view.
class LIBVUE_API KCView : public NSView {
public:
    static void describe(ClassDescription<KCView, NSView>& c);
    using NSView::NSView;

    /// The controller spliced into the chain; held weakly.
    [[nodiscard]] NSViewController* monVC() const { return monVC_; }
    /// Takes the controller before out of the chain; null leaves none in it.
    void setMonVC(NSViewController* vc);
    /// With a controller, the link goes to the controller and the view keeps pointing at it.
    void setNextResponder(NSResponder* r) override;

private:
    Weak<NSViewController> monVC_;
};

} // namespace libvue
