#pragma once

#include <optional>

#include <libvue/platform/appkit/NSScroller.h>
#include <libvue/platform/appkit/NSView.h>

namespace libvue {

enum class ScrollStep : std::uint8_t;

enum NSBorderType : NSUInteger { NSNoBorder = 0, NSLineBorder = 1, NSBezelBorder = 2, NSGrooveBorder = 3 };

/// A clip view with scrollers round it. The wheel, the scrollers, and keys that nobody in the document takes (arrows,
/// space, page keys, Home and End) scroll it, in whole pixels.
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
    /// Beside the document, or over it; as the desktop prefers until it is set.
    [[nodiscard]] NSScrollerStyle scrollerStyle() const;
    void setScrollerStyle(NSScrollerStyle style);
    /// Shows scrollers that have faded out, for a while.
    void flashScrollers();
    /// Points that a line scrolls.
    [[nodiscard]] CGFloat verticalLineScroll() const noexcept { return lineScroll_; }
    /// What is negative or not finite is ignored.
    void setLineScroll(CGFloat points) noexcept;
    /// What of the old page still shows after a page scroll.
    [[nodiscard]] CGFloat verticalPageScroll() const noexcept { return pageScroll_; }
    /// What is negative or not finite is ignored.
    void setPageScroll(CGFloat points) noexcept;

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

    /// NO where it cannot scroll any further that way.
    BOOL perform_(ScrollStep step);
    /// Whether some of the document does not show, on the axis of the step.
    [[nodiscard]] BOOL canScroll_(ScrollStep step) const;

    void scrollWheel(NSEvent* e) override;
    void keyDown(NSEvent* e) override;
    void doCommandBySelector(SEL command) override;
    void insertText(NSObject* text) override;
    void drawRect(const NSRect& r) override;
    void resizeSubviewsWithOldSize(const NSSize& oldSize) override;
    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    struct Bars {
        bool vertical, horizontal;
        friend bool operator==(const Bars&, const Bars&) = default;
    };
    void placeParts();
    [[nodiscard]] Bars needed() const;
    [[nodiscard]] NSRect room() const;
    [[nodiscard]] Bars shownBars() const;
    void placeClip(const NSRect& room, Bars shown);
    void placeScrollers(const NSRect& room, Bars shown);
    void placeKnobs();
    void scrollerMoved(NSObject* sender);
    /// Down and to the right as seen, in the document's points.
    BOOL scrollBy(CGFloat dx, CGFloat dy);
    [[nodiscard]] CGFloat page(CGFloat shown) const noexcept;
    void addScroller(Ref<NSScroller>& scroller, NSSize size);
    void applyScrollerStyle();
    /// From the left and the top, as seen.
    [[nodiscard]] NSPoint scrolledBy() const;
    /// What a key comes to; false passes it on.
    [[nodiscard]] bool takes(ScrollStep step);
    void documentChanged(NSNotification* n);
    void desktopChanged(NSNotification* n);

    Ref<NSClipView> clip_;
    Ref<NSScroller> vertical_;
    Ref<NSScroller> horizontal_;
    NSBorderType border_ = NSNoBorder;
    CGFloat lineScroll_ = 20;
    CGFloat pageScroll_ = 20;
    std::optional<NSScrollerStyle> style_; ///< what was set
    bool hasVertical_ = false;
    bool hasHorizontal_ = false;
    bool autohides_ = true;
    bool tiling_ = false;
    bool reflectsOnly_ = false; ///< parts have just been placed
    bool tookGesture_ = false;  ///< the wheel's gesture under way has scrolled here
};

} // namespace libvue
