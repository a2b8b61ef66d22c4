#pragma once

#include <vector>

#include <libvue/platform/appkit/NSPopoverDelegate.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/foundation/ConstantString.h>

namespace libvue {

class PopoverMotion;
class PopoverWindow;

enum NSPopoverBehavior : NSInteger {
    NSPopoverBehaviorApplicationDefined = 0, ///< closes when it is told to
    NSPopoverBehaviorTransient = 1,          ///< closes when the user turns to anything else
    NSPopoverBehaviorSemitransient = 2       ///< closes when the user turns to the window that it hangs on
};

// The object is the popover. The last two have a reason in their user information.
inline constexpr ConstantString NSPopoverWillShowNotification{u"NSPopoverWillShowNotification"};
inline constexpr ConstantString NSPopoverDidShowNotification{u"NSPopoverDidShowNotification"};
inline constexpr ConstantString NSPopoverWillCloseNotification{u"NSPopoverWillCloseNotification"};
inline constexpr ConstantString NSPopoverDidCloseNotification{u"NSPopoverDidCloseNotification"};
inline constexpr ConstantString NSPopoverCloseReasonKey{u"NSPopoverCloseReasonKey"};
inline constexpr ConstantString NSPopoverCloseReasonStandard{u"NSPopoverCloseReasonStandard"};
inline constexpr ConstantString NSPopoverCloseReasonDetachToWindow{u"NSPopoverCloseReasonDetachToWindow"};

/// The system's balloon: shows a view controller's view beside a rectangle of an anchor view, follows the anchor, and
/// closes by its behaviour, or with the anchor's window. It keeps itself while it is shown.
///
/// Dragged off its anchor it becomes the window that its delegate answers to detachableWindowForPopover:. A window
/// without content of its own takes the popover's view over.
class LIBVUE_API NSPopover : public NSResponder {
public:
    static void describe(ClassDescription<NSPopover, NSResponder>& c);
    NSPopover();
    ~NSPopover() override;

    /// `rect` in the coordinates of `view` (empty for its bounds), `edge` one of its sides: in a flipped view
    /// NSMinYEdge is the upper one. Shown already, it goes there. A view that is null or in no window raises
    /// NSInvalidArgumentException.
    void showRelativeToRect_ofView_preferredEdge(const NSRect& rect, NSView* view, NSUInteger edge);
    /// Without asking the delegate. It is shown until it has faded out.
    void close();
    /// Asks the delegate first.
    void performClose(NSObject* sender);
    [[nodiscard]] BOOL isShown() const noexcept { return shown_; }

    [[nodiscard]] NSViewController* contentViewController() const noexcept { return controller_; }
    /// Kept. While it is shown, the new view takes the place of the old one.
    void setContentViewController(NSViewController* controller);
    /// Of the content, in points; that of the content view where none was set.
    [[nodiscard]] NSSize contentSize() const;
    /// Nothing or less forgets what was set.
    void setContentSize(NSSize size);
    /// An NSPopoverBehavior.
    [[nodiscard]] NSInteger behavior() const noexcept { return behavior_; }
    /// Another value than an NSPopoverBehavior is ignored.
    void setBehavior(NSInteger behavior);
    /// Whether it fades in and out, and glides to a new size. YES at the start.
    [[nodiscard]] BOOL animates() const noexcept { return animates_; }
    void setAnimates(BOOL flag) noexcept { animates_ = flag; }
    /// In the anchor view's coordinates.
    [[nodiscard]] NSRect positioningRect() const noexcept { return rect_; }
    void setPositioningRect(const NSRect& rect);
    [[nodiscard]] NSObject* delegate() const noexcept { return delegate_; }
    /// Held weakly.
    void setDelegate(NSObject* delegate) { delegate_ = delegate; }
    /// The window of the balloon; null while it is not shown.
    [[nodiscard]] NSWindow* window_() const noexcept;

    // Between the popover and its window.

    /// What of the anchor can be seen, in screen coordinates; all of it where nothing can.
    [[nodiscard]] NSRect anchorOnScreen_() const;
    /// The user drags the balloon, having pressed there on the screen; returns at the end of the drag where it came
    /// off.
    void draggedFrom_(NSPoint press);
    void motionEnded_(PopoverMotion* motion);

private:
    enum class Reason : unsigned char { standard, detachToWindow };
    enum class Manner : unsigned char { atOnce, animated };
    void notify(const ConstantString& name, const Operation<void(NSNotification*)>& operation);
    void notifyEnd(const ConstantString& name, const Operation<void(NSNotification*)>& operation);
    void send(NSNotification* n, const Operation<void(NSNotification*)>& operation);
    void open();
    void watchAnchor();
    void stopWatching();
    void place(Manner manner);
    void takeKeys();
    void end(Reason reason, Manner manner);
    void ended();
    [[nodiscard]] BOOL isAnchorInSight() const;
    void anchorMoved(NSNotification* n);
    void windowWillClose(NSNotification* n);
    void applicationWillResignActive(NSNotification* n);
    [[nodiscard]] Ref<NSEvent> sees(NSEvent* e);
    [[nodiscard]] BOOL seesEscape(const NSEvent* e);
    /// Whether the window is the balloon, or hangs on it.
    [[nodiscard]] BOOL holds(const NSWindow* w) const noexcept;

    Weak<NSObject> delegate_;
    Weak<NSView> anchor_;
    Weak<NSWindow> host_;                 ///< the anchor's window
    std::vector<Weak<NSObject>> watched_; ///< what it observes while it is shown
    Ref<NSViewController> controller_;
    Ref<PopoverWindow> balloon_;
    Ref<NSObject> monitor_;
    Ref<PopoverMotion> motion_; ///< a fade or a change of size under way
    Ref<NSPopover> self_;       ///< while it is shown
    NSRect rect_;
    NSSize size_;    ///< empty where none was set
    NSSize natural_; ///< of the content view when it was taken in
    NSRectEdge edge_ = NSMinYEdge;
    NSPopoverBehavior behavior_ = NSPopoverBehaviorApplicationDefined;
    BOOL animates_ = YES;
    BOOL shown_ = NO;
    BOOL closing_ = NO;
    Reason reason_ = Reason::standard;
};

} // namespace libvue
