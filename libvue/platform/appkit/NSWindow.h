#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSResponder.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/foundation/ConstantString.h>

namespace libvue {

enum NSWindowStyleMask : NSUInteger {
    NSBorderlessWindowMask = 0,
    NSTitledWindowMask = 1,
    NSClosableWindowMask = 2,
    NSMiniaturizableWindowMask = 4,
    NSResizableWindowMask = 8,
    NSUtilityWindowMask = 16,
    NSDocModalWindowMask = 64,
    NSNonactivatingPanelMask = 128,
    NSTexturedBackgroundWindowMask = 256,
    NSHUDWindowMask = 8192
};
enum NSBackingStoreType : NSUInteger { NSBackingStoreBuffered = 2 };
enum NSSelectionDirection : NSUInteger { NSDirectSelection = 0, NSSelectingNext = 1, NSSelectingPrevious = 2 };
inline constexpr NSInteger NSNormalWindowLevel = 0, NSFloatingWindowLevel = 3, NSModalPanelWindowLevel = 8,
                           NSPopUpMenuWindowLevel = 101, NSScreenSaverWindowLevel = 1000;

// The object of each is the window.
inline constexpr ConstantString NSWindowDidBecomeKeyNotification{u"NSWindowDidBecomeKeyNotification"};
inline constexpr ConstantString NSWindowDidResignKeyNotification{u"NSWindowDidResignKeyNotification"};
inline constexpr ConstantString NSWindowDidBecomeMainNotification{u"NSWindowDidBecomeMainNotification"};
inline constexpr ConstantString NSWindowDidResignMainNotification{u"NSWindowDidResignMainNotification"};
inline constexpr ConstantString NSWindowDidMoveNotification{u"NSWindowDidMoveNotification"};
inline constexpr ConstantString NSWindowWillMoveNotification{u"NSWindowWillMoveNotification"};
inline constexpr ConstantString NSWindowDidResizeNotification{u"NSWindowDidResizeNotification"};
inline constexpr ConstantString NSWindowWillMiniaturizeNotification{u"NSWindowWillMiniaturizeNotification"};
inline constexpr ConstantString NSWindowDidMiniaturizeNotification{u"NSWindowDidMiniaturizeNotification"};
inline constexpr ConstantString NSWindowDidDeminiaturizeNotification{u"NSWindowDidDeminiaturizeNotification"};
inline constexpr ConstantString NSWindowWillCloseNotification{u"NSWindowWillCloseNotification"};
inline constexpr ConstantString NSWindowWillBeginSheetNotification{u"NSWindowWillBeginSheetNotification"};
inline constexpr ConstantString NSWindowDidEndSheetNotification{u"NSWindowDidEndSheetNotification"};
inline constexpr ConstantString NSWindowDidExposeNotification{u"NSWindowDidExposeNotification"};
inline constexpr ConstantString NSWindowDidUpdateNotification{u"NSWindowDidUpdateNotification"};
inline constexpr ConstantString NSWindowDidChangeScreenNotification{u"NSWindowDidChangeScreenNotification"};
inline constexpr ConstantString NSWindowDidChangeBackingPropertiesNotification{
    u"NSWindowDidChangeBackingPropertiesNotification"};

/// Optional operations of a window's delegate. The delegate hears each notification before its observers do.
namespace op {
inline constexpr Operation<void(NSNotification*)> windowDidBecomeKey{"windowDidBecomeKey:"};
inline constexpr Operation<void(NSNotification*)> windowDidResignKey{"windowDidResignKey:"};
inline constexpr Operation<void(NSNotification*)> windowDidBecomeMain{"windowDidBecomeMain:"};
inline constexpr Operation<void(NSNotification*)> windowDidResignMain{"windowDidResignMain:"};
inline constexpr Operation<void(NSNotification*)> windowDidMove{"windowDidMove:"};
inline constexpr Operation<void(NSNotification*)> windowWillMove{"windowWillMove:"};
inline constexpr Operation<void(NSNotification*)> windowDidResize{"windowDidResize:"};
inline constexpr Operation<void(NSNotification*)> windowWillMiniaturize{"windowWillMiniaturize:"};
inline constexpr Operation<void(NSNotification*)> windowDidMiniaturize{"windowDidMiniaturize:"};
inline constexpr Operation<void(NSNotification*)> windowDidDeminiaturize{"windowDidDeminiaturize:"};
inline constexpr Operation<void(NSNotification*)> windowDidExpose{"windowDidExpose:"};
inline constexpr Operation<void(NSNotification*)> windowDidUpdate{"windowDidUpdate:"};
inline constexpr Operation<void(NSNotification*)> windowDidChangeScreen{"windowDidChangeScreen:"};
inline constexpr Operation<void(NSNotification*)> windowDidChangeBackingProperties{"windowDidChangeBackingProperties:"};
inline constexpr Operation<void(NSNotification*)> windowWillBeginSheet{"windowWillBeginSheet:"};
inline constexpr Operation<void(NSNotification*)> windowDidEndSheet{"windowDidEndSheet:"};
/// Window, sheet and a rectangle in base coordinates, over whose middle of the lower edge the sheet hangs; answers
/// another such rectangle.
inline constexpr Operation<NSRect(NSWindow*, NSWindow*, NSRect)> window_willPositionSheet_usingRect{
    "window:willPositionSheet:usingRect:"};
inline constexpr Operation<BOOL(NSObject*)> windowShouldClose{"windowShouldClose:"};
inline constexpr Operation<void(NSNotification*)> windowWillClose{"windowWillClose:"};
inline constexpr Operation<NSSize(NSWindow*, NSSize)> windowWillResize_toSize{"windowWillResize:toSize:"};
inline constexpr Operation<NSObject*(NSWindow*, NSObject*)> windowWillReturnFieldEditor_toObject{
    "windowWillReturnFieldEditor:toObject:"};
} // namespace op

/// Told the code with which a sheet ended.
using SheetHandler = std::function<void(NSInteger returnCode)>;

/// Makes the editor that the text fields of a window share. Whoever provides it is asked once a window.
using FieldEditorFactory = Ref<NSText> (*)(NSWindow*);
LIBVUE_API void installFieldEditorFactory(FieldEditorFactory factory) noexcept;

/// How a desktop treats a native window; what nativeKind_ answers.
enum : int {
    NSNormalNativeWindow = 0,
    NSUtilityNativeWindow = 1,
    NSDialogNativeWindow = 2,
    NSPopUpNativeWindow = 3,
    NSToolTipNativeWindow = 4,
    NSMenuNativeWindow = 5
};

/// A window: the root of a view tree on a screen. Frames are in screen coordinates, y upward; base coordinates start at
/// the content's bottom left corner.
class LIBVUE_API NSWindow : public NSResponder {
public:
    static void describe(ClassDescription<NSWindow, NSResponder>& c);
    NSWindow();
    /// `contentRect` in screen coordinates; what of it is no finite number counts as 0. The native window is made when
    /// it is first ordered in, whatever `backing` and `defer` say.
    NSWindow(const NSRect& contentRect, NSUInteger styleMask, NSBackingStoreType backing = NSBackingStoreBuffered,
             BOOL defer = YES);
    ~NSWindow() override;

    // Content.

    [[nodiscard]] NSView* contentView() const noexcept { return contentView_; }
    /// As large as the content from now on; null for an empty view.
    virtual void setContentView(NSView* view);
    [[nodiscard]] NSViewController* contentViewController() const noexcept;
    /// Kept; its view becomes the content view.
    void setContentViewController(NSViewController* controller);
    [[nodiscard]] NSString* title() const noexcept { return title_; }
    virtual void setTitle(NSString* title);
    [[nodiscard]] NSObject* delegate() const noexcept { return delegate_; }
    /// Held weakly.
    virtual void setDelegate(NSObject* delegate);
    [[nodiscard]] NSWindowController* windowController() const noexcept;
    /// Not kept; the next responder after the window.
    void setWindowController(NSWindowController* controller);
    [[nodiscard]] NSColor* backgroundColor() const noexcept;
    /// Painted under the content; null for the system's.
    void setBackgroundColor(NSColor* color);
    [[nodiscard]] BOOL isOpaque() const noexcept { return opaque_; }
    void setOpaque(BOOL flag);
    /// Kept and answered; the desktop's compositor decides on shadows.
    [[nodiscard]] BOOL hasShadow() const noexcept { return hasShadow_; }
    void setHasShadow(BOOL flag);
    [[nodiscard]] CGFloat alphaValue() const noexcept { return alpha_; }
    /// Held to 0 … 1, of the whole window; reaches the screen at once.
    virtual void setAlphaValue(CGFloat alpha);
    [[nodiscard]] BOOL isDocumentEdited() const noexcept { return edited_; }
    void setDocumentEdited(BOOL flag);

    // Geometry.

    /// With what the desktop draws round the content.
    [[nodiscard]] NSRect frame() const noexcept { return frame_; }
    /// With `display`, what changed is drawn before it returns. A rectangle that is not finite is ignored.
    virtual void setFrame_display(const NSRect& frame, BOOL display);
    /// With `animate`, a window on the screen goes there within animationResizeTime:, and the call returns then.
    virtual void setFrame_display_animate(const NSRect& frame, BOOL display, BOOL animate);
    /// Seconds that an animated change to that frame takes: the farther a side goes, the longer.
    [[nodiscard]] virtual NSTimeInterval animationResizeTime(const NSRect& frame) const;
    void setFrameOrigin(NSPoint origin);
    void setFrameTopLeftPoint(NSPoint p);
    /// Held to the limits; the top left corner stays.
    void setContentSize(NSSize size);
    /// In the middle of its screen, a little above.
    void center();
    [[nodiscard]] virtual NSRect frameRectForContentRect(const NSRect& content) const;
    [[nodiscard]] virtual NSRect contentRectForFrameRect(const NSRect& frame) const;
    /// Of the content, for the user and setContentSize:. (0, 0) at the start; a NaN counts as 0.
    [[nodiscard]] NSSize minSize() const noexcept { return minSize_; }
    void setMinSize(NSSize s);
    /// The same; `unlimited` each way at the start, and for a NaN.
    [[nodiscard]] NSSize maxSize() const noexcept { return maxSize_; }
    void setMaxSize(NSSize s);
    static constexpr CGFloat unlimited = 1e7;
    /// Base coordinates are those of the content, from its lower left corner.
    [[nodiscard]] NSPoint convertBaseToScreen(NSPoint p) const;
    [[nodiscard]] NSPoint convertScreenToBase(NSPoint p) const;
    [[nodiscard]] NSRect convertRectToScreen(const NSRect& r) const;
    [[nodiscard]] NSRect convertRectFromScreen(const NSRect& r) const;
    /// The screen that shows most of it; null while it is off all screens.
    [[nodiscard]] NSScreen* screen() const;
    /// Pixels a point.
    [[nodiscard]] CGFloat backingScaleFactor() const;
    [[nodiscard]] NSString* frameAutosaveName() const noexcept { return autosaveName_; }
    /// Takes the frame that was saved under that name, and saves it from now on; null ends that. NO where another
    /// window has the name.
    BOOL setFrameAutosaveName(NSString* name);
    void saveFrameUsingName(NSString* name);
    /// NO where none was saved; a frame on a screen that is gone comes back to the main one.
    BOOL setFrameUsingName(NSString* name);

    // Style.

    [[nodiscard]] NSUInteger styleMask() const noexcept { return style_; }
    /// On a live window too: the content keeps its place on the screen.
    virtual void setStyleMask(NSUInteger mask);
    [[nodiscard]] NSInteger level() const noexcept { return level_; }
    /// Windows of a higher level lie above; NSNormalWindowLevel and its kin.
    void setLevel(NSInteger level);
    [[nodiscard]] BOOL isMovable() const noexcept { return movable_; }
    void setMovable(BOOL flag) noexcept { movable_ = flag; }
    [[nodiscard]] BOOL isMovableByWindowBackground() const noexcept { return movableByBackground_; }
    void setMovableByWindowBackground(BOOL flag) noexcept { movableByBackground_ = flag; }
    [[nodiscard]] BOOL isExcludedFromWindowsMenu() const noexcept { return excludedFromMenu_; }
    void setExcludedFromWindowsMenu(BOOL flag) noexcept { excludedFromMenu_ = flag; }
    /// Goes off the screen while another application is active.
    [[nodiscard]] BOOL hidesOnDeactivate() const noexcept { return hidesOnDeactivate_; }
    void setHidesOnDeactivate(BOOL flag) noexcept { hidesOnDeactivate_ = flag; }
    /// Whether it goes off the screen with an application that is hidden; kept and answered, desktops hide none.
    [[nodiscard]] BOOL canHide() const noexcept { return canHide_; }
    void setCanHide(BOOL flag) noexcept { canHide_ = flag; }
    /// Whether its pixels are given up while it is off the screen; kept and answered, the desktop decides.
    [[nodiscard]] BOOL isOneShot() const noexcept { return oneShot_; }
    void setOneShot(BOOL flag) noexcept { oneShot_ = flag; }
    /// That no views overlap within it. Nothing is drawn otherwise for that.
    void useOptimizedDrawing(BOOL) noexcept {}
    [[nodiscard]] BOOL ignoresMouseEvents() const noexcept { return ignoresMouse_; }
    /// Lets the pointer through to what lies below.
    void setIgnoresMouseEvents(BOOL flag);
    [[nodiscard]] BOOL acceptsMouseMovedEvents() const noexcept { return acceptsMouseMoved_; }
    /// Moves without a button go to the first responder, too.
    void setAcceptsMouseMovedEvents(BOOL flag) noexcept { acceptsMouseMoved_ = flag; }
    [[nodiscard]] BOOL isReleasedWhenClosed() const noexcept { return releasedWhenClosed_; }
    void setReleasedWhenClosed(BOOL flag) noexcept { releasedWhenClosed_ = flag; }
    /// Gets events while another window is modal.
    [[nodiscard]] virtual BOOL worksWhenModal() const noexcept { return NO; }
    /// Shown on every desktop of a window manager that has several.
    [[nodiscard]] BOOL isOnAllDesktops() const noexcept { return allDesktops_; }
    void setAllDesktops(BOOL flag);

    // Showing.

    [[nodiscard]] BOOL isVisible() const noexcept { return visible_; }
    /// The number by which events name it; positive, never used again.
    [[nodiscard]] NSInteger windowNumber() const noexcept { return number_; }
    /// `otherNumber` 0 means all the windows of its level. The one operation through which a window goes on
    /// (NSWindowAbove, NSWindowBelow) and off (NSWindowOut) the screen.
    virtual void orderWindow_relativeTo(NSWindowOrderingMode place, NSInteger otherNumber);
    /// In front of its level, without becoming key.
    virtual void orderFront(NSObject* sender);
    virtual void orderBack(NSObject* sender);
    virtual void orderOut(NSObject* sender);
    virtual void orderFrontRegardless();
    virtual void makeKeyAndOrderFront(NSObject* sender);
    /// Where it can be. A window with a sheet hands that on to the sheet.
    virtual void makeKeyWindow();
    virtual void makeMainWindow();
    [[nodiscard]] BOOL isKeyWindow() const noexcept;
    [[nodiscard]] BOOL isMainWindow() const noexcept;
    [[nodiscard]] virtual BOOL canBecomeKeyWindow() const;
    [[nodiscard]] virtual BOOL canBecomeMainWindow() const;
    virtual void becomeKeyWindow();
    virtual void resignKeyWindow();
    virtual void becomeMainWindow();
    virtual void resignMainWindow();
    /// Asks the delegate, then closes.
    virtual void performClose(NSObject* sender);
    /// Sends windowWillClose:, then takes it off the screen. A window with isReleasedWhenClosed keeps itself from its
    /// first showing until then.
    virtual void close();
    /// Into the desktop's list of windows, and back from there.
    virtual void miniaturize(NSObject* sender);
    virtual void deminiaturize(NSObject* sender);
    virtual void performMiniaturize(NSObject* sender);
    /// To the size of the screen, or back.
    virtual void zoom(NSObject* sender);
    [[nodiscard]] BOOL isMiniaturized() const noexcept { return miniaturized_; }

    /// A child moves with its parent and lies above it (NSWindowAbove). The parent keeps its children.
    void addChildWindow_ordered(NSWindow* child, NSWindowOrderingMode place);
    void removeChildWindow(NSWindow* child);
    [[nodiscard]] Ref<NSArray> childWindows() const;
    [[nodiscard]] NSWindow* parentWindow() const noexcept { return parent_; }
    /// As addChildWindow:ordered: above, or removeChildWindow: for null.
    void setParentWindow(NSWindow* parent);

    // Sheets: windows that hang under the title bar of this one, move with it, and keep mouse and keys from it alone.

    /// Shows the sheet, or has it wait until those before it have ended. Both windows and the sheet are kept until
    /// then. `handler` (may be empty) is told the code once the sheet is off the screen. A sheet that is null, this
    /// window or in use already raises NSInvalidArgumentException.
    void beginSheet_completionHandler(NSWindow* sheet, SheetHandler handler);
    /// With NSRunStoppedResponse.
    void endSheet(NSWindow* sheet);
    /// Takes it off the screen, or out of those that wait, tells its handler and shows the next one. A window that is
    /// no sheet of this one is ignored. A sheet that is closed ends with NSRunAbortedResponse, as do those of a window
    /// that is.
    void endSheet_returnCode(NSWindow* sheet, NSInteger code);
    /// The one that is up; null for none.
    [[nodiscard]] NSWindow* attachedSheet() const noexcept { return sheet_; }
    /// The one that is up and those that wait, in order.
    [[nodiscard]] Ref<NSArray> sheets() const;
    /// Whether it is up as a sheet.
    [[nodiscard]] BOOL isSheet() const noexcept { return sheetParent_ != nullptr; }
    /// The window that it hangs on; null where it is no sheet.
    [[nodiscard]] NSWindow* sheetParent() const noexcept { return sheetParent_; }

    // Responders and editing.

    /// The window itself where no view has the keys.
    [[nodiscard]] NSResponder* firstResponder() const noexcept;
    /// Asks the old one to resign and the new one to accept; null makes the window itself first. NO where either
    /// refused.
    virtual BOOL makeFirstResponder(NSResponder* r);
    [[nodiscard]] NSView* initialFirstResponder() const noexcept { return initialFirstResponder_; }
    /// Not kept; it gets the keys when the window becomes key for the first time.
    void setInitialFirstResponder(NSView* v) { initialFirstResponder_ = v; }
    /// Along the loop of key views; where none takes the focus, nothing changes.
    void selectNextKeyView(NSObject* sender);
    void selectPreviousKeyView(NSObject* sender);
    void selectKeyViewFollowingView(NSView* view);
    void selectKeyViewPrecedingView(NSView* view);
    /// Forgets the links between views: the loop follows their places.
    void recalculateKeyViewLoop();
    /// The shared editor of the window's text fields, made on first use when `create`.
    [[nodiscard]] virtual NSText* fieldEditor_forObject(BOOL create, NSObject* object);
    /// Ends the editing in the shared editor, also where it would rather go on.
    void endEditingFor(NSObject* object);
    [[nodiscard]] NSButtonCell* defaultButtonCell() const noexcept;
    /// The one that Return presses; not kept.
    void setDefaultButtonCell(NSButtonCell* cell);
    BOOL acceptsFirstResponder() override { return YES; }

    // Events.

    /// Delivers an event to the view under the pointer, the first responder, or the window itself.
    virtual void sendEvent(NSEvent* e);
    /// Posts NSWindowDidUpdateNotification. The application sends it to each window on the screen after each event.
    virtual void update();
    void postEvent_atStart(NSEvent* e, BOOL atStart);
    /// Waits for it; null where none will come.
    [[nodiscard]] Ref<NSEvent> nextEventMatchingMask(NSEventMask mask);
    /// Only those of this window; the others keep theirs.
    void discardEventsMatchingMask_beforeEvent(NSEventMask mask, NSEvent* last);
    [[nodiscard]] NSEvent* currentEvent() const;
    /// Where the pointer is now, in base coordinates, whatever events wait.
    [[nodiscard]] NSPoint mouseLocationOutsideOfEventStream() const;
    void keyDown(NSEvent* e) override;
    void cursorUpdate(NSEvent* e) override;
    BOOL performKeyEquivalent(NSEvent* e) override;
    /// Escape: presses the button with that key. A panel without one closes.
    virtual void cancelOperation(NSObject* sender);
    /// The view's rectangles are asked for again before the pointer's shape is chosen next.
    void invalidateCursorRectsForView(NSView* view);
    void enableCursorRects();
    void disableCursorRects();
    [[nodiscard]] BOOL areCursorRectsEnabled() const noexcept { return cursorRectsEnabled_; }

    // Drawing.

    [[nodiscard]] BOOL viewsNeedDisplay() const noexcept { return viewsNeedDisplay_; }
    void setViewsNeedDisplay(BOOL flag);
    /// The display pass: draws what is dirty, parents first, and presents only that. Repeats while drawing marks more,
    /// at most a few times; the rest waits for the next cycle.
    virtual void displayIfNeeded();
    /// Draws everything at once.
    virtual void display();
    /// Hands what was drawn to the screen; while disabled (calls count), it is kept.
    void flushWindow();
    void disableFlushWindow() noexcept { ++flushDisabled_; }
    void enableFlushWindow();
    /// The passes that displayIfNeeded has run since the window was made.
    [[nodiscard]] NSUInteger displayPassCount() const noexcept { return passes_; }
    /// What the window shows now; null before it has shown anything.
    [[nodiscard]] Ref<NSImage> captureImage();

    /// The view around the content: base coordinates are its own.
    [[nodiscard]] NSView* frameView_() const noexcept { return root_; }
    /// The window of that number; null where there is none.
    [[nodiscard]] static NSWindow* windowWithNumber(NSInteger number) noexcept;

    // Between the application and its windows.

    void nativeMoved_(const NSRect& content);
    void nativeCloseRequest_();
    void nativeExposed_(const NSRect& rect);
    void nativeMiniaturized_(BOOL mini);
    void nativeScaleChanged_();
    void nativeAppearanceChanged_();
    /// Brackets a fade-out, or several at once: the alpha of before comes back, off the screen, with the last one's
    /// end. One that was stopped half-way leaves it as it is.
    void beginFadeOut_();
    void endFadeOut_(BOOL reached);
    [[nodiscard]] std::uint64_t nativeId_() const noexcept { return native_; }
    void updateMouseTracking_(NSEvent* e);
    void setCaretRect_(BOOL on, const NSRect& rectInWindow);
    /// The innermost sheet in sight, which has the keys of this window; null where nothing hangs on it.
    [[nodiscard]] NSWindow* sheetInFront_() const noexcept;

protected:
    [[nodiscard]] virtual int nativeKind_() const;
    [[nodiscard]] virtual BOOL acceptsNativeFocus_() const { return canBecomeKeyWindow(); }
    /// Presses the button whose key is Escape, where Escape is what was typed. NO where there is none.
    BOOL performCancelButton();
    /// After what acceptsNativeFocus_ or nativeKind_ answer has changed.
    void updateNativeSpec();

private:
    friend class NSApplication;
    friend class NSView;
    struct Inside;
    struct Tracking;
    struct Display;
    struct Sheets;
    void ensureNative();
    void closeNative();
    void postDelegateNotification(NSString* name, const Operation<void(NSNotification*)>& operation);
    void applyFrame(const NSRect& frame, BOOL tellServer);
    void moveChildren(NSPoint delta);
    void orderNative(NSWindowOrderingMode place, NSWindow* other);
    void orderChildren(BOOL in);
    void detachFromParent();
    void passKeyStatusOn();
    void noteScreen();
    void noteInsets();
    void saveFrameSoon();
    void savePendingFrame();
    /// Whether the desktop draws a title bar: a sheet has none, whatever its style says.
    [[nodiscard]] bool isTitled() const noexcept { return (style_ & NSTitledWindowMask) && !sheetParent_; }
    void presentNextSheet();
    void attachSheet(NSWindow* sheet);
    void detachSheet(NSWindow* sheet);
    void placeSheet();
    void endSheets();
    /// Becomes a sheet of that window, or none: the content keeps its place, the frame changes round it.
    void setSheetParent(NSWindow* parent);
    [[nodiscard]] Tracking& tracking();
    /// The active tracking areas of the views on the way down to a point in base coordinates. Views that stand or show
    /// elsewhere than when they were asked last are sent updateTrackingAreas first.
    [[nodiscard]] std::vector<Inside> areasAt(NSPoint p);
    [[nodiscard]] Display& displayState();
    void shapeWithoutCompositor();
    void drawRegion(Display& d, const std::vector<NSRect>& rects);
    [[nodiscard]] NSView* focusRingView() const;
    void sendMouseDown(NSEvent* e);
    void sendMouseDragged(NSEvent* e);
    void sendMouseUp(NSEvent* e);
    void followDrag(NSEvent* e);
    void updateCursor(NSView* hit, NSPoint p);
    void updateToolTip(NSView* hit, NSPoint p);
    void showToolTip();
    void hideToolTip();
    BOOL performDefaultButton();
    void firstResponderChanged();

    Ref<NSView> root_;
    Ref<NSView> contentView_;
    Ref<NSViewController> contentController_;
    Ref<NSString> title_;
    Weak<NSObject> delegate_;
    Weak<NSWindowController> controller_;
    Ref<NSColor> background_;
    Ref<NSString> autosaveName_;
    Weak<NSResponder> firstResponder_;
    Weak<NSView> initialFirstResponder_;
    Ref<NSText> fieldEditor_;
    Weak<NSButtonCell> defaultButton_;
    std::vector<Ref<NSWindow>> children_;
    Weak<NSWindow> parent_;
    Weak<NSWindow> sheet_;
    Weak<NSWindow> sheetParent_;
    std::unique_ptr<Tracking> tracking_;
    std::unique_ptr<Display> display_;
    std::unique_ptr<Sheets> sheets_;
    Ref<NSWindow> self_; ///< while it keeps itself, see isReleasedWhenClosed
    NSRect frame_;
    NSEdgeInsets insets_; ///< what the desktop draws round the content
    NSSize minSize_{0, 0};
    NSSize maxSize_{unlimited, unlimited};
    NSUInteger style_ = NSTitledWindowMask;
    NSInteger number_;
    NSInteger level_ = NSNormalWindowLevel;
    NSUInteger passes_ = 0;
    std::uint64_t native_ = 0;
    CGFloat alpha_ = 1;
    CGFloat alphaBeforeFade_ = 1;
    int fades_ = 0; ///< fade-outs under way
    int flushDisabled_ = 0;
    bool visible_ : 1 = false;
    bool opaque_ : 1 = true;
    bool hasShadow_ : 1 = true;
    bool edited_ : 1 = false;
    bool movable_ : 1 = true;
    bool movableByBackground_ : 1 = false;
    bool excludedFromMenu_ : 1 = false;
    bool hidesOnDeactivate_ : 1 = false;
    bool canHide_ : 1 = true;
    bool oneShot_ : 1 = false;
    bool ignoresMouse_ : 1 = false;
    bool acceptsMouseMoved_ : 1 = false;
    bool releasedWhenClosed_ : 1 = false;
    bool miniaturized_ : 1 = false;
    bool cursorRectsEnabled_ : 1 = true;
    bool viewsNeedDisplay_ : 1 = false;
    bool displaying_ : 1 = false;
    bool allDesktops_ : 1 = false;
    bool closing_ : 1 = false;
    bool hiddenWithParent_ : 1 = false;
    bool showsActivating_ : 1 = false;
};

} // namespace libvue
