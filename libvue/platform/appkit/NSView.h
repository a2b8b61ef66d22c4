#pragma once

#include <memory>

#include <libvue/platform/appkit/NSResponder.h>
#include <libvue/platform/appkit/SubviewList.h>
#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/LinePool.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

enum NSAutoresizingMask : NSUInteger {
    NSViewNotSizable = 0,
    NSViewMinXMargin = 1,
    NSViewWidthSizable = 2,
    NSViewMaxXMargin = 4,
    NSViewMinYMargin = 8,
    NSViewHeightSizable = 16,
    NSViewMaxYMargin = 32
};

enum NSWindowOrderingMode : NSInteger { NSWindowBelow = -1, NSWindowOut = 0, NSWindowAbove = 1 };
enum NSFocusRingType : NSUInteger { NSFocusRingTypeDefault = 0, NSFocusRingTypeNone = 1, NSFocusRingTypeExterior = 2 };
enum NSTrackingAreaOptions : NSUInteger {
    NSTrackingMouseEnteredAndExited = 1,
    NSTrackingMouseMoved = 2,
    NSTrackingCursorUpdate = 4,
    NSTrackingActiveWhenFirstResponder = 0x10,
    NSTrackingActiveInKeyWindow = 0x20,
    NSTrackingActiveInActiveApp = 0x40,
    NSTrackingActiveAlways = 0x80,
    NSTrackingInVisibleRect = 0x200
};

/// The object is the view.
inline constexpr ConstantString NSViewFrameDidChangeNotification{u"NSViewFrameDidChangeNotification"};
inline constexpr ConstantString NSViewBoundsDidChangeNotification{u"NSViewBoundsDidChangeNotification"};

using NSToolTipTag = NSInteger;

namespace op {
/// The text of a tool tip; absent or empty for none. The last argument is what addToolTipRect was given.
inline constexpr Operation<Ref<NSString>(NSView*, NSToolTipTag, NSPoint, void*)> view_stringForToolTip_point_userData{
    "view:stringForToolTip:point:userData:"};
inline constexpr Operation<void(NSObject*)> print{"print:"};
} // namespace op

/// What the desktop's assistive tools are told of a view.
struct AccessibilityDescription {
    Ref<NSString> role;   ///< "button", "check box", "text field", "slider", "group"…; null: not shown
    Ref<NSString> label;  ///< what it is called
    Ref<NSString> value;  ///< what it shows now
    Ref<NSString> action; ///< what pressing it does: "press", "pick", "increment"…; null: nothing
    BOOL enabled = YES;
};

/// A node of the view tree: a rectangle of its superview, with its own coordinates, that draws itself and receives
/// events.
class LIBVUE_API NSView : public NSResponder {
public:
    static void describe(ClassDescription<NSView, NSResponder>& c);
    NSView();
    explicit NSView(const NSRect& frame);
    explicit NSView(NSCoder& coder);
    ~NSView() override;
    void encodeWithCoder(NSCoder& coder) const override;

    /// Views stand in cache lines of their own, beside others of their size.
    static void* operator new(std::size_t size) { return detail::takeLines(size); }
    static void operator delete(void* p, std::size_t size) noexcept { detail::giveLines(p, size); }

    // Geometry, in points.

    /// In the superview's coordinates.
    [[nodiscard]] NSRect frame() const noexcept { return frame_; }
    /// In its own coordinates; its size follows the frame's.
    [[nodiscard]] NSRect bounds() const noexcept { return bounds_; }
    /// Origin and size in one step. A change of size sends resizeSubviewsWithOldSize: before returning; a real change
    /// posts NSViewFrameDidChangeNotification afterwards, within the call.
    virtual void setFrame(const NSRect& frame);
    virtual void setFrameSize(const NSSize& size);
    virtual void setFrameOrigin(const NSPoint& origin);
    /// A size other than the frame's scales what the view shows. Posts NSViewBoundsDidChangeNotification for a real
    /// change.
    virtual void setBounds(const NSRect& bounds);
    void setBoundsOrigin(const NSPoint& origin);
    void setBoundsSize(const NSSize& size);
    /// YES: the origin is at the top left, and y grows downward. Constant for the life of the view.
    [[nodiscard]] virtual BOOL isFlipped() const { return NO; }
    /// Whether drawRect: covers all of the bounds.
    [[nodiscard]] virtual BOOL isOpaque() const { return NO; }

    [[nodiscard]] NSUInteger autoresizingMask() const noexcept { return mask_; }
    void setAutoresizingMask(NSUInteger mask) noexcept { mask_ = static_cast<std::uint8_t>(mask); }
    [[nodiscard]] BOOL autoresizesSubviews() const noexcept { return autoresizes_; }
    void setAutoresizesSubviews(BOOL flag) noexcept { autoresizes_ = flag; }
    /// Sent by a change of size. The base gives each subview its autoresizing step.
    virtual void resizeSubviewsWithOldSize(const NSSize& oldSize);
    /// The autoresizing step: the frame in a superview that had that size before.
    virtual void resizeWithOldSuperviewSize(const NSSize& oldSize);
    [[nodiscard]] BOOL postsFrameChangedNotifications() const noexcept { return postsFrame_; }
    void setPostsFrameChangedNotifications(BOOL flag) noexcept { postsFrame_ = flag; }
    [[nodiscard]] BOOL postsBoundsChangedNotifications() const noexcept { return postsBounds_; }
    void setPostsBoundsChangedNotifications(BOOL flag) noexcept { postsBounds_ = flag; }

    // Between two views of one window; an absent view means the window's base coordinates.

    [[nodiscard]] NSPoint convertPoint_toView(NSPoint p, const NSView* view) const;
    [[nodiscard]] NSPoint convertPoint_fromView(NSPoint p, const NSView* view) const;
    [[nodiscard]] NSSize convertSize_toView(NSSize s, const NSView* view) const;
    [[nodiscard]] NSSize convertSize_fromView(NSSize s, const NSView* view) const;
    [[nodiscard]] NSRect convertRect_toView(const NSRect& r, const NSView* view) const;
    [[nodiscard]] NSRect convertRect_fromView(const NSRect& r, const NSView* view) const;

    // The tree.

    /// Back to front.
    [[nodiscard]] const SubviewList& subviews() const noexcept { return subviews_; }
    [[nodiscard]] NSView* superview() const noexcept { return superview_; }
    [[nodiscard]] NSWindow* window() const noexcept { return window_; }
    /// Appends, after removing the view from any former superview. Null raises NSInvalidArgumentException, an ancestor
    /// too.
    virtual void addSubview(NSView* view);
    /// In front of `other` (NSWindowAbove) or behind it; of all of them for null or a view from elsewhere.
    void addSubview_positioned_relativeTo(NSView* view, NSWindowOrderingMode place, NSView* other);
    /// In its place; a null replacement takes the old one out. An `old` that is no subview raises
    /// NSInvalidArgumentException, as does a replacement above this view.
    void replaceSubview_with(NSView* old, NSView* replacement);
    /// Replaces all of them; views not listed leave the tree.
    void setSubviews(NSArray* views);
    virtual void removeFromSuperview();
    /// As removeFromSuperview, without marking anything for redisplay.
    virtual void removeFromSuperviewWithoutNeedingDisplay();
    // Override points of the tree; an override runs the base first. A superview or window is null for a view that
    // leaves.

    virtual void didAddSubview(NSView* view);
    virtual void willRemoveSubview(NSView* view);
    virtual void viewWillMoveToSuperview(NSView* superview);
    virtual void viewDidMoveToSuperview();
    virtual void viewWillMoveToWindow(NSWindow* window);
    virtual void viewDidMoveToWindow();
    [[nodiscard]] BOOL isDescendantOf(const NSView* view) const noexcept;
    /// The view itself or the first one below it with that tag; null for none.
    [[nodiscard]] NSView* viewWithTag(NSInteger tag);
    [[nodiscard]] virtual NSInteger tag() const { return -1; }
    /// The nearest one above; null for none.
    [[nodiscard]] NSScrollView* enclosingScrollView() const;
    [[nodiscard]] NSString* identifier() const;
    void setIdentifier(NSString* identifier);

    // Showing.

    [[nodiscard]] BOOL isHidden() const noexcept { return hidden_; }
    /// Observable as "hidden".
    virtual void setHidden(BOOL hidden);
    [[nodiscard]] BOOL isHiddenOrHasHiddenAncestor() const noexcept;
    /// Sent after isHiddenOrHasHiddenAncestor has changed: by setHidden:, or as the view (or one above it) comes to
    /// stand below a hidden one or leaves it. Views below hear of it after those above.
    virtual void viewDidHide() {}
    virtual void viewDidUnhide() {}
    [[nodiscard]] CGFloat alphaValue() const noexcept;
    /// Of the view with all that it holds; held to 0…1.
    void setAlphaValue(CGFloat alpha);
    /// Marks all of it for the display pass at the end of the cycle. Nothing is drawn in the call.
    virtual void setNeedsDisplay(BOOL flag);
    virtual void setNeedsDisplayInRect(const NSRect& r);
    [[nodiscard]] BOOL needsDisplay() const noexcept { return dirty_; }
    /// Draws at once, with what lies below it in the tree.
    void display();
    void displayRect(const NSRect& r);
    void displayIfNeeded();
    /// Override point of the display pass: runs before that of the subviews, clipped to what is dirty.
    virtual void drawRect(const NSRect& dirtyRect);
    /// Makes its window, or the canvas of a print job, the current context, with the view's coordinates, until
    /// unlockFocus.
    virtual void lockFocus();
    virtual void unlockFocus();
    /// The part of the bounds that can be seen.
    [[nodiscard]] virtual NSRect visibleRect() const;
    /// Scrolls the clip views above by the shortest way; NO where nothing moved.
    virtual BOOL scrollRectToVisible(const NSRect& r);
    /// Draws that part of the view and of what is below it into the context (null: nothing), hidden or not, in the
    /// view's coordinates; in a context that is not flipped as the view is, y is mirrored within the height of the
    /// bounds.
    void displayRectIgnoringOpacity_inContext(const NSRect& r, NSGraphicsContext* context);
    /// A PDF of one page, as large as that part; null where it is empty or too large.
    [[nodiscard]] Ref<NSData> dataWithPDFInsideRect(const NSRect& r);
    /// PNG bytes of that part at `scale` pixels a point; null where it is empty or too large.
    [[nodiscard]] Ref<NSData> pngDataInsideRect_scale(const NSRect& r, CGFloat scale);
    [[nodiscard]] Ref<NSImage> imageInsideRect_scale(const NSRect& r, CGFloat scale);

    // Printing: sent by the print operation. Pages are counted from 1.

    /// Lays out for the pages of the current print operation, and says which there are. NO, the default, leaves the
    /// division to the operation, through adjustPageHeightNew:top:bottom:limit:. `range` may be null.
    virtual BOOL knowsPageRange(NSRange* range);
    /// The part of the view on that page, for a view that knows its pages. For NSZeroRect, the default, the operation
    /// takes divisionForPage_ instead.
    [[nodiscard]] virtual NSRect rectForPage(NSInteger page);
    /// What stands on a page that the view counts and gives no rectangle for: the default is that part of the whole
    /// view, divided into pages as for a view that does not know its pages. An empty one prints the border alone.
    [[nodiscard]] virtual NSRect divisionForPage_(NSInteger page);
    /// Moves the end of a page that starts at `top` up from `bottom`, so that nothing is cut; not above `limit`, where
    /// that can be helped. The default spares subviews that begin below `limit`.
    virtual void adjustPageHeightNew_top_bottom_limit(CGFloat* newBottom, CGFloat top, CGFloat bottom, CGFloat limit);
    virtual void adjustPageWidthNew_left_right_limit(CGFloat* newRight, CGFloat left, CGFloat right, CGFloat limit);
    /// How much of a page may stay empty so that nothing is cut, as a fraction.
    [[nodiscard]] virtual CGFloat heightAdjustLimit() const { return 0.2; }
    [[nodiscard]] virtual CGFloat widthAdjustLimit() const { return 0.2; }
    /// Where the lower left corner of that part goes on the paper, whose origin is its own lower left corner. The
    /// default follows the margins and the centring of the print info.
    [[nodiscard]] virtual NSPoint locationOfPrintRect(const NSRect& r);
    /// Draws what stands on each sheet beside the view, over the whole paper. The coordinates are those of the paper,
    /// y downward for a flipped view. The default draws nothing.
    virtual void drawPageBorderWithSize(const NSSize& paper);
    virtual void beginDocument() {}
    virtual void endDocument() {}
    virtual void beginPageInRect_atPlacement(const NSRect& r, NSPoint place);
    virtual void endPage() {}
    /// Null, the default: the title of the window.
    [[nodiscard]] virtual Ref<NSString> printJobTitle();
    /// Prints the view with the shared print info, after the panel.
    virtual void print(NSObject* sender);

    // Events.

    /// Deepest view that is not hidden under the point, in the superview's coordinates; null where there is none.
    [[nodiscard]] virtual NSView* hitTest(NSPoint p);
    [[nodiscard]] BOOL mouse_inRect(NSPoint p, const NSRect& r) const;
    /// Whether the click that makes its window key is for the view, too.
    [[nodiscard]] virtual BOOL acceptsFirstMouse(NSEvent* e);
    [[nodiscard]] virtual BOOL mouseDownCanMoveWindow() const { return !isOpaque(); }
    BOOL performKeyEquivalent(NSEvent* e) override;
    /// Whether a click makes a panel key that becomes so only if needed.
    [[nodiscard]] virtual BOOL needsPanelToBecomeKey() { return acceptsFirstResponder(); }
    [[nodiscard]] NSMenu* menu() const override;
    void setMenu(NSMenu* menu);
    /// What a click of the right button opens; the default is menu(), null for none.
    [[nodiscard]] virtual NSMenu* menuForEvent(NSEvent* e);
    void rightMouseDown(NSEvent* e) override;

    /// The link that was set; null for none. Not kept.
    [[nodiscard]] NSView* nextKeyView() const;
    void setNextKeyView(NSView* view);
    [[nodiscard]] NSView* previousKeyView() const;
    /// The next one along the links, or else the places, that takes the keys; null for none.
    [[nodiscard]] NSView* nextValidKeyView();
    [[nodiscard]] NSView* previousValidKeyView();
    [[nodiscard]] virtual BOOL canBecomeKeyView();

    [[nodiscard]] NSFocusRingType focusRingType() const noexcept { return static_cast<NSFocusRingType>(focusRing_); }
    void setFocusRingType(NSFocusRingType t);
    /// What the ring goes round, in bounds; the default is the bounds.
    [[nodiscard]] virtual NSRect focusRingMaskBounds() const { return bounds_; }
    /// The shape filled into the ring's mask; the default is a rounded rectangle round focusRingMaskBounds.
    [[nodiscard]] virtual CGFloat focusRingRadius() const { return 3; }

    /// Override point, sent when the pointer is over the view and its rectangles may be out of date: adds them anew.
    virtual void resetCursorRects();
    void addCursorRect_cursor(const NSRect& r, NSCursor* cursor);
    void discardCursorRects();
    /// Kept until removeTrackingArea:.
    void addTrackingArea(NSTrackingArea* area);
    void removeTrackingArea(NSTrackingArea* area);
    /// For overrides that keep areas by the view's geometry. The window sends it before it tells the areas of the
    /// pointer, to the views under it that stand, or show, elsewhere than at the last time.
    virtual void updateTrackingAreas();
    [[nodiscard]] Ref<NSArray> trackingAreas() const;
    [[nodiscard]] NSString* toolTip() const;
    /// Over the whole view; null for none.
    void setToolTip(NSString* text);
    /// `owner` (not kept) answers view:stringForToolTip:point:userData:, or is itself the text.
    NSToolTipTag addToolTipRect_owner_userData(const NSRect& r, NSObject* owner, void* data);
    /// Unknown tags are ignored.
    void removeToolTip(NSToolTipTag tag);
    void removeAllToolTips();

    /// What assistive tools are told. A label set with setAccessibilityLabel wins over the view's own.
    [[nodiscard]] virtual AccessibilityDescription accessibilityDescription() const;
    void setAccessibilityLabel(NSString* label);
    [[nodiscard]] NSString* accessibilityLabel() const;

    // Between the tree, its window and its display pass.

    /// The window's own hook: moves the whole subtree to another window.
    void moveToWindow_(NSWindow* window);
    /// Draws the subtree, the canvas of the current context being set to the superview's space.
    void drawTree_(NSGraphicsContext* context, const NSRect& clipInSuperview);
    /// Adds the dirty rectangles of the subtree, in the coordinates of the view at the top, and clears the marks.
    struct DirtySink;
    void collectDirty_(DirtySink& sink, const NSRect& visibleInBase);
    /// Where the tree keeps what few views have: tool tips, cursor rectangles, tracking areas, key-view links.
    struct Extras;
    [[nodiscard]] const Extras* extrasIfAny_() const noexcept { return extras_.get(); }

protected:
    /// The change itself, without overridable calls in between: setFrame, setFrameSize and setFrameOrigin end here.
    void applyFrame_(const NSRect& frame);

private:
    friend class NSWindow;
    Extras& extras();
    void markSubtreeDirty() noexcept;
    void link(NSView* view, std::size_t index);
    void unlink(BOOL needsDisplay);

    // What a layout pass reads of each view comes first, so that it stands together.
    NSRect frame_;
    NSView* superview_ = nullptr;
    SubviewList subviews_;
    std::uint8_t mask_ = 0;
    std::uint8_t focusRing_ : 2 = 0;
    bool hidden_ : 1 = false;
    bool autoresizes_ : 1 = true;
    bool postsFrame_ : 1 = true;
    bool postsBounds_ : 1 = true;
    bool dirty_ : 1 = false;        ///< something of this view is to be drawn
    bool wholeDirty_ : 1 = false;   ///< all of it
    bool subtreeDirty_ : 1 = false; ///< something below is
    bool customBounds_ : 1 = false; ///< bounds of another size than the frame's
    NSWindow* window_ = nullptr;
    std::unique_ptr<Extras> extras_;
    NSRect bounds_;
    NSRect dirtyRect_;
};

} // namespace libvue
