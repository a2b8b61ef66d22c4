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

    /// What all of the menu takes.
    [[nodiscard]] static NSSize naturalSize(const NSMenu& menu);
    /// In bounds, where it is now; NSZeroRect for an item of another menu.
    [[nodiscard]] NSRect rectOfItem(const NSMenuItem* item) const;
    /// Null between items, on separators too.
    [[nodiscard]] NSMenuItem* itemAt(NSPoint p) const;
    /// Scrolls a menu that is higher than its window.
    void scrollBy(CGFloat dy);
    /// Scrolls as little as shows it.
    void showItem(const NSMenuItem* item);
    /// Points that are scrolled off the top.
    [[nodiscard]] CGFloat scroll() const noexcept { return scroll_; }
    void setScroll(CGFloat s);

    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    void drawRect(const NSRect& r) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    void drawItem(const NSMenuItem* item, const NSRect& row) const;
    /// Gives the items and their rectangles from the top, until `take` answers false.
    template <class F> void eachRow(const F& take) const;

    Ref<NSMenu> menu_;
    CGFloat scroll_ = 0;
};

} // namespace libvue
