#pragma once

#include <functional>

#include <libvue/platform/appkit/NSPanel.h>

namespace libvue {

/// The window of an alert: a dialogue without a close button, that Escape leaves by the way out that it has, and whose
/// text the page keys scroll.
class AlertPanel : public NSPanel {
public:
    static void describe(ClassDescription<AlertPanel, NSPanel>&) {}
    AlertPanel();

    /// Run by Escape and by a request to close, where no button has the key; NO where there is no way out.
    std::function<BOOL()> leave;
    /// What the page keys move; null for nothing.
    Weak<NSScrollView> scrolled;

    [[nodiscard]] BOOL canBecomeKeyWindow() const override { return YES; }
    void cancelOperation(NSObject* sender) override;
    void performClose(NSObject* sender) override;
    void keyDown(NSEvent* e) override;

protected:
    [[nodiscard]] int nativeKind_() const override { return NSDialogNativeWindow; }
};

/// Scrolls by the key of the event; NO where it is none of those that scroll.
BOOL scrollByKey(NSScrollView* scrolled, NSEvent* e);

} // namespace libvue
