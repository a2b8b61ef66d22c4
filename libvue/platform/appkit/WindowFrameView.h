#pragma once

#include <libvue/platform/appkit/NSView.h>

namespace libvue {

/// The view around a window's content: paints the window's background, and keeps the content as large as itself.
class WindowFrameView : public NSView {
public:
    static void describe(ClassDescription<WindowFrameView, NSView>& c);
    explicit WindowFrameView(const NSRect& frame);
    ~WindowFrameView() override;

    [[nodiscard]] BOOL isOpaque() const override;
    [[nodiscard]] BOOL mouseDownCanMoveWindow() const override { return YES; }
    void drawRect(const NSRect& dirtyRect) override;
    void resizeSubviewsWithOldSize(const NSSize& oldSize) override;
};

} // namespace libvue
