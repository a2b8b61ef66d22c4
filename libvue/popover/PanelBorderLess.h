#pragma once

#include <libvue/platform/appkit/NSBox.h>
#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/popover/Forward.h>

namespace libvue {

/// A slightly see-through panel without a frame, which takes the keys all the same.
class LIBVUE_API PanelBorderLess : public NSPanel {
public:
    static void describe(ClassDescription<PanelBorderLess, NSPanel>& c);
    /// The rectangle counts; style, backing and the making of the native window are the panel's own.
    explicit PanelBorderLess(const NSRect& contentRect, NSUInteger styleMask = NSBorderlessWindowMask,
                             NSBackingStoreType backing = NSBackingStoreBuffered, BOOL defer = NO);
    ~PanelBorderLess() override;

    [[nodiscard]] BOOL canBecomeKeyWindow() const override { return YES; }
    /// For whoever fills the panel; not kept, and not read here.
    [[nodiscard]] NSBox* rectangle() const noexcept { return rectangle_; }
    void setRectangle(NSBox* rectangle) { rectangle_ = rectangle; }

private:
    Weak<NSBox> rectangle_;
};

} // namespace libvue
