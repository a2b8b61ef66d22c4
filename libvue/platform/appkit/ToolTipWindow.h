#pragma once

#include <libvue/platform/appkit/NSPanel.h>

namespace libvue {

/// The small window of a tool tip: never key, transparent to the mouse.
class ToolTipWindow : public NSPanel {
public:
    static void describe(ClassDescription<ToolTipWindow, NSPanel>& c);
    explicit ToolTipWindow(NSString* text);
    ~ToolTipWindow() override;

    [[nodiscard]] NSString* text() const noexcept { return text_; }
    /// Shows it below the pointer, on that screen; above it where there is no room.
    void showAtPointer(NSPoint pointer, NSScreen* screen);
    [[nodiscard]] BOOL canBecomeKeyWindow() const override { return NO; }

protected:
    [[nodiscard]] int nativeKind_() const override { return NSToolTipNativeWindow; }

private:
    Ref<NSString> text_;
};

} // namespace libvue
