#pragma once

#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/platform/appkit/NSPopover.h>

namespace libvue {

/// The window of an NSPopover. Its content view draws the balloon round the popover's view.
class PopoverWindow : public NSPanel {
public:
    static void describe(ClassDescription<PopoverWindow, NSPanel>& c);
    explicit PopoverWindow(NSPopover* popover);
    ~PopoverWindow() override;

    [[nodiscard]] NSPopover* popover() const noexcept { return popover_; }
    /// The side of the anchor that it stands on: the arrow is on the opposite side of the balloon.
    void setEdge(NSRectEdge edge);
    /// Where the content is, in base coordinates.
    [[nodiscard]] NSRect body() const;
    /// Takes the view in, as large as the body from now on; null takes the present one out.
    void setContent(NSView* view);

    [[nodiscard]] BOOL canBecomeKeyWindow() const override { return YES; }
    void cancelOperation(NSObject* sender) override;

private:
    Weak<NSPopover> popover_;
};

} // namespace libvue
