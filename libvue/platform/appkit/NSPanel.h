#pragma once

#include <libvue/platform/appkit/NSWindow.h>

namespace libvue {

/// An auxiliary window: it may be key, never main, and does not count as a window that keeps the application running.
class LIBVUE_API NSPanel : public NSWindow {
public:
    static void describe(ClassDescription<NSPanel, NSWindow>& c);
    NSPanel();
    NSPanel(const NSRect& contentRect, NSUInteger styleMask, NSBackingStoreType backing = NSBackingStoreBuffered,
            BOOL defer = YES);
    ~NSPanel() override;

    /// Lies above the application's normal windows.
    [[nodiscard]] BOOL isFloatingPanel() const noexcept { return floating_; }
    void setFloatingPanel(BOOL flag);
    /// A click makes it key only where the view that was hit needs that, a text field for instance.
    [[nodiscard]] BOOL becomesKeyOnlyIfNeeded() const noexcept { return keyOnlyIfNeeded_; }
    void setBecomesKeyOnlyIfNeeded(BOOL flag);
    /// Gets events while another window is modal.
    [[nodiscard]] BOOL worksWhenModal() const noexcept override { return worksWhenModal_; }
    void setWorksWhenModal(BOOL flag) noexcept { worksWhenModal_ = flag; }

    [[nodiscard]] BOOL canBecomeMainWindow() const override { return NO; }
    void cancelOperation(NSObject* sender) override;

protected:
    [[nodiscard]] int nativeKind_() const override;
    [[nodiscard]] BOOL acceptsNativeFocus_() const override;

private:
    bool floating_ = false;
    bool keyOnlyIfNeeded_ = false;
    bool worksWhenModal_ = false;
};

} // namespace libvue
