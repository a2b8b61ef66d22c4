#pragma once

#include <libvue/platform/appkit/NSControl.h>

namespace libvue {

struct KnobGeometry;
class ScrollerFade;

enum NSScrollerPart : NSUInteger {
    NSScrollerNoPart = 0,
    NSScrollerDecrementPage = 1,
    NSScrollerKnob = 2,
    NSScrollerIncrementPage = 3,
    NSScrollerKnobSlot = 6
};

enum NSScrollerStyle : NSInteger {
    NSScrollerStyleLegacy = 0, ///< beside the document, always there
    NSScrollerStyleOverlay = 1 ///< over the document, fades out
};

/// A knob in a slot: where a scroll view stands (0 to 1) and how much of the document it shows. Its action is sent
/// while the knob moves and for each page; hitPart says which it was. A press beside the knob pages towards the pointer
/// as long as it is held; with the Option key, or the middle button, the knob comes to the pointer at once.
class LIBVUE_API NSScroller : public NSControl {
public:
    static void describe(ClassDescription<NSScroller, NSControl>& c);
    NSScroller();
    explicit NSScroller(const NSRect& frame);
    ~NSScroller() override;

    [[nodiscard]] static CGFloat scrollerWidth() noexcept;
    /// What the desktop prefers.
    [[nodiscard]] static NSScrollerStyle preferredScrollerStyle();
    [[nodiscard]] NSScrollerStyle scrollerStyle() const noexcept { return style_; }
    /// NSScrollerStyleLegacy at first.
    void setScrollerStyle(NSScrollerStyle style);
    /// Shows a scroller that has faded out, for a while.
    void flash();

    /// The part of the document that shows.
    [[nodiscard]] CGFloat knobProportion() const noexcept { return proportion_; }
    /// Held to 0 … 1; at 1 nothing is drawn.
    void setKnobProportion(CGFloat p);
    /// 0 at the top or the left, 1 at the other end; held to that.
    [[nodiscard]] CGFloat position() const noexcept { return position_; }
    void setPosition(CGFloat p);
    [[nodiscard]] BOOL isVertical() const noexcept { return bounds().size.height >= bounds().size.width; }
    /// What the press under way is on; NSScrollerNoPart between presses.
    [[nodiscard]] NSScrollerPart hitPart() const noexcept { return hitPart_; }
    [[nodiscard]] NSScrollerPart testPart(NSPoint pointInView) const;
    [[nodiscard]] NSRect rectForPart(NSScrollerPart part) const;

    /// As the scroll view: position 0 is at the top.
    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    [[nodiscard]] BOOL acceptsFirstResponder() override { return NO; }
    void drawRect(const NSRect& r) override;
    void mouseDown(NSEvent* e) override;
    void otherMouseDown(NSEvent* e) override;
    void mouseEntered(NSEvent* e) override;
    void mouseExited(NSEvent* e) override;
    void setHidden(BOOL hidden) override;
    void viewDidMoveToWindow() override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    [[nodiscard]] KnobGeometry geometry() const;
    /// Along the slot, from its beginning.
    [[nodiscard]] CGFloat along(NSPoint p) const;
    [[nodiscard]] CGFloat along(NSEvent* e) const;
    void send(NSScrollerPart part);
    void jumpTo(CGFloat at);
    void trackKnob(CGFloat at);
    void trackPages(NSScrollerPart part, NSPoint at);
    void holdWhileUsed();

    CGFloat proportion_ = 1, position_ = 0;
    NSScrollerPart hitPart_ = NSScrollerNoPart;
    NSScrollerStyle style_ = NSScrollerStyleLegacy;
    bool hovered_ = false;
    std::unique_ptr<ScrollerFade> fade_; ///< of one that lies over its document
};

} // namespace libvue
