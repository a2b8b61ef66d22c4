#pragma once

#include <libvue/platform/appkit/NSView.h>
#include <libvue/popover/Forward.h>

namespace libvue {

/// An invisible view in the anchor's window that has the key focus there while a balloon is up. Escape closes the
/// balloon, and so does the loss of the focus.
class LIBVUE_API VueFirstResponder : public NSView {
public:
    static void describe(ClassDescription<VueFirstResponder, NSView>& c);
    using NSView::NSView;
    ~VueFirstResponder() override;

    /// Held weakly.
    [[nodiscard]] KCPopover* popover() const noexcept;
    void setPopover(KCPopover* popover);

    [[nodiscard]] BOOL canBecomeKeyView() override { return YES; }
    [[nodiscard]] BOOL becomeFirstResponder() override;
    [[nodiscard]] BOOL resignFirstResponder() override;
    /// What is not Escape goes up the chain, which leads through the balloon.
    void keyDown(NSEvent* e) override;

private:
    Weak<KCPopover> popover_;
};

} // namespace libvue
