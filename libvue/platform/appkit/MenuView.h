#pragma once

#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSMenuItem.h>
#include <libvue/platform/appkit/NSView.h>

namespace libvue {

/// The lines of an open menu.
class LIBVUE_API MenuView : public NSView {
public:
    explicit MenuView(NSMenu* menu);
    ~MenuView() override;

    [[nodiscard]] static NSSize naturalSize(const NSMenu& menu);
    [[nodiscard]] NSRect rectOfItem(const NSMenuItem* item) const;
    /// Null between items, on separators too.
    [[nodiscard]] NSMenuItem* itemAt(NSPoint p) const;
    /// Scrolls a menu that is higher than its window.
    void scrollBy(CGFloat dy);
    void showItem(const NSMenuItem* item);
    [[nodiscard]] CGFloat scroll() const noexcept { return scroll_; }
    void setScroll(CGFloat s);

    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    void drawRect(const NSRect& r) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    void drawItem(const NSMenuItem* item, const NSRect& row) const;

    Ref<NSMenu> menu_;
    CGFloat scroll_ = 0;
};

} // namespace libvue
