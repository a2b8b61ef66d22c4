#pragma once

#include <libvue/platform/appkit/NSView.h>

namespace libvue {

enum NSBorderType : NSUInteger { NSNoBorder = 0, NSLineBorder = 1, NSBezelBorder = 2, NSGrooveBorder = 3 };

/// A clip view with scrollers round it.
class LIBVUE_API NSScrollView : public NSView {
public:
    static void describe(ClassDescription<NSScrollView, NSView>& c);
    NSScrollView();
    explicit NSScrollView(const NSRect& frame);
    ~NSScrollView() override;

    [[nodiscard]] NSView* documentView() const;
    /// Kept as the clip view's subview; null for none.
    virtual void setDocumentView(NSView* view);
    [[nodiscard]] NSClipView* contentView() const noexcept;
    /// Null is ignored.
    virtual void setContentView(NSClipView* clip);
    /// The part of the document that shows, in its coordinates.
    [[nodiscard]] NSRect documentVisibleRect() const;
    [[nodiscard]] NSSize contentSize() const;
    [[nodiscard]] NSBorderType borderType() const noexcept { return border_; }
    void setBorderType(NSBorderType t);
    [[nodiscard]] NSColor* backgroundColor() const;
    void setBackgroundColor(NSColor* color);
    [[nodiscard]] BOOL drawsBackground() const;
    void setDrawsBackground(BOOL f);
    [[nodiscard]] BOOL hasVerticalScroller() const noexcept { return hasVertical_; }
    void setHasVerticalScroller(BOOL f);
    [[nodiscard]] BOOL hasHorizontalScroller() const noexcept { return hasHorizontal_; }
    void setHasHorizontalScroller(BOOL f);
    [[nodiscard]] BOOL autohidesScrollers() const noexcept { return autohides_; }
    /// Scrollers show only where there is something to scroll.
    void setAutohidesScrollers(BOOL f);
    [[nodiscard]] NSScroller* verticalScroller() const noexcept;
    [[nodiscard]] NSScroller* horizontalScroller() const noexcept;
    /// Points that a line scrolls.
    [[nodiscard]] CGFloat verticalLineScroll() const noexcept { return lineScroll_; }
    void setLineScroll(CGFloat points) noexcept { lineScroll_ = points; }
    /// What of the old page still shows after a page scroll.
    [[nodiscard]] CGFloat verticalPageScroll() const noexcept { return pageScroll_; }
    void setPageScroll(CGFloat points) noexcept { pageScroll_ = points; }

    /// Places the clip view and the scrollers.
    virtual void tile();
    /// Moves the knobs to where the clip view stands.
    virtual void reflectScrolledClipView(NSClipView* clip);
    /// By a page less verticalPageScroll, by a line, or all the way.
    void pageDown(NSObject* sender);
    void pageUp(NSObject* sender);
    void scrollLineDown(NSObject* sender);
    void scrollLineUp(NSObject* sender);
    void scrollToBeginningOfDocument(NSObject* sender);
    void scrollToEndOfDocument(NSObject* sender);

    void scrollWheel(NSEvent* e) override;
    void drawRect(const NSRect& r) override;
    void resizeSubviewsWithOldSize(const NSSize& oldSize) override;
    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    void placeParts();
    void scrollerMoved(NSObject* sender);
    void scrollBy(CGFloat dx, CGFloat dy);
    void addScroller(Ref<NSScroller>& scroller, NSSize size);
    /// From the left and the top, as seen.
    [[nodiscard]] NSPoint scrolledBy() const;
    void documentChanged(NSNotification* n);

    Ref<NSClipView> clip_;
    Ref<NSScroller> vertical_;
    Ref<NSScroller> horizontal_;
    NSBorderType border_ = NSNoBorder;
    CGFloat lineScroll_ = 20;
    CGFloat pageScroll_ = 20;
    bool hasVertical_ = false;
    bool hasHorizontal_ = false;
    bool autohides_ = true;
    bool tiling_ = false;
};

} // namespace libvue
