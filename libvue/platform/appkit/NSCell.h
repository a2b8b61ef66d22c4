#pragma once

#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSParagraphStyle.h>

namespace libvue {

enum NSCellType : NSUInteger { NSNullCellType = 0, NSTextCellType = 1, NSImageCellType = 2 };
enum NSCellStateValue : NSInteger { NSMixedState = -1, NSOffState = 0, NSOnState = 1 };
enum NSCellImagePosition : NSUInteger {
    NSNoImage = 0,
    NSImageOnly = 1,
    NSImageLeft = 2,
    NSImageRight = 3,
    NSImageBelow = 4,
    NSImageAbove = 5,
    NSImageOverlaps = 6
};
/// What a press or the on state shows.
enum NSCellMask : NSUInteger {
    NSNoCellMask = 0,
    NSContentsCellMask = 1,
    NSPushInCellMask = 2,
    NSChangeGrayCellMask = 4,
    NSChangeBackgroundCellMask = 8
};
enum NSBackgroundStyle : NSInteger {
    NSBackgroundStyleLight = 0,
    NSBackgroundStyleDark = 1,
    NSBackgroundStyleRaised = 2,
    NSBackgroundStyleLowered = 3
};

/// Draws and tracks one control, or one of many places of a view. It belongs to no view tree; the view is given with
/// each call.
class LIBVUE_API NSCell : public NSObject {
public:
    static void describe(ClassDescription<NSCell>& c);
    NSCell();
    explicit NSCell(NSString* text); ///< initTextCell:
    explicit NSCell(NSImage* image); ///< initImageCell:
    explicit NSCell(NSCoder& coder);
    ~NSCell() override;
    void encodeWithCoder(NSCoder& coder) const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;

    [[nodiscard]] NSCellType type() const noexcept { return type_; }
    /// A text cell shows its value, an image cell its image, a null cell nothing; a value makes a text cell of the
    /// last.
    virtual void setType(NSCellType type);
    /// The view that shows it now; not kept.
    [[nodiscard]] NSView* controlView() const noexcept { return controlView_; }
    /// Set by the control that takes the cell.
    void setControlView(NSView* view) { controlView_ = view; }

    // Value. All of these are views on one object value; the formatter turns it into text and back.

    /// Null for none.
    [[nodiscard]] virtual NSObject* objectValue() const noexcept { return value_; }
    virtual void setObjectValue(NSObject* value);
    /// As the formatter writes it, else the text of the value; empty for none, never null.
    [[nodiscard]] virtual Ref<NSString> stringValue() const;
    /// What the formatter reads in the text becomes the value; the text itself where it reads nothing, or where there
    /// is no formatter. Null is the empty text.
    virtual void setStringValue(NSString* text);
    /// With the attributes that it is drawn with.
    [[nodiscard]] virtual Ref<NSAttributedString> attributedStringValue() const;
    virtual void setAttributedStringValue(NSAttributedString* text);
    [[nodiscard]] int intValue() const { return static_cast<int>(integerValue()); }
    void setIntValue(int v) { setIntegerValue(v); }
    /// A number's value, else that of the digits with which the text begins; 0 for none.
    [[nodiscard]] virtual NSInteger integerValue() const;
    virtual void setIntegerValue(NSInteger v);
    [[nodiscard]] virtual double doubleValue() const;
    virtual void setDoubleValue(double v);
    [[nodiscard]] float floatValue() const { return static_cast<float>(doubleValue()); }
    void setFloatValue(float v) { setDoubleValue(v); }
    [[nodiscard]] BOOL hasValidObjectValue() const noexcept { return value_ != nullptr; }
    /// Null for none. Kept by the cell.
    [[nodiscard]] virtual NSFormatter* formatter() const noexcept;
    virtual void setFormatter(NSFormatter* f);
    /// For the program's own use; kept.
    [[nodiscard]] NSObject* representedObject() const noexcept { return represented_; }
    void setRepresentedObject(NSObject* o) { represented_ = o; }
    /// A plain cell's title is its value as text; valid until the next call.
    [[nodiscard]] virtual NSString* title() const;
    virtual void setTitle(NSString* title) { setStringValue(title); }

    // State.

    [[nodiscard]] NSInteger state() const noexcept { return state_; }
    /// Anything but 0 is on; a negative number is mixed where that is allowed.
    virtual void setState(NSInteger state);
    [[nodiscard]] BOOL allowsMixedState() const noexcept { return mixed_; }
    void setAllowsMixedState(BOOL f) noexcept { mixed_ = f; }
    /// Off, on, and mixed between them where it is allowed.
    [[nodiscard]] virtual NSInteger nextState() const noexcept;
    void setNextState() { setState(nextState()); }
    [[nodiscard]] BOOL isEnabled() const noexcept { return enabled_; }
    virtual void setEnabled(BOOL f);
    [[nodiscard]] BOOL isHighlighted() const noexcept { return highlighted_; }
    /// Shown as pressed.
    virtual void setHighlighted(BOOL f);
    /// As setHighlighted, drawing only that frame of the view anew.
    virtual void highlight_withFrame_inView(BOOL f, const NSRect& frame, NSView* view);
    [[nodiscard]] BOOL isEditable() const noexcept { return editable_; }
    /// What can be edited can be selected too.
    virtual void setEditable(BOOL f) noexcept;
    [[nodiscard]] BOOL isSelectable() const noexcept { return selectable_; }
    /// NO ends being editable too.
    virtual void setSelectable(BOOL f) noexcept;
    [[nodiscard]] BOOL isContinuous() const noexcept { return continuous_; }
    /// Whether the action is sent at each step of a drag, or each letter, and not at its end alone.
    virtual void setContinuous(BOOL f) noexcept { continuous_ = f; }
    [[nodiscard]] BOOL refusesFirstResponder() const noexcept { return refusesFirst_; }
    void setRefusesFirstResponder(BOOL f) noexcept { refusesFirst_ = f; }
    [[nodiscard]] virtual BOOL acceptsFirstResponder() const { return enabled_ && !refusesFirst_; }
    /// Whether its control has the keys: set by the control.
    [[nodiscard]] BOOL showsFirstResponder() const noexcept { return showsFirst_; }
    void setShowsFirstResponder(BOOL f) noexcept { showsFirst_ = f; }

    // Looks.

    /// Null for the system font in the size of the control.
    [[nodiscard]] virtual NSFont* font() const noexcept;
    virtual void setFont(NSFont* font);
    [[nodiscard]] virtual NSImage* image() const noexcept;
    virtual void setImage(NSImage* image);
    [[nodiscard]] NSTextAlignment alignment() const noexcept { return alignment_; }
    virtual void setAlignment(NSTextAlignment a);
    [[nodiscard]] NSLineBreakMode lineBreakMode() const noexcept { return lineBreak_; }
    virtual void setLineBreakMode(NSLineBreakMode m);
    [[nodiscard]] BOOL wraps() const noexcept {
        return lineBreak_ == NSLineBreakByWordWrapping || lineBreak_ == NSLineBreakByCharWrapping;
    }
    /// YES breaks lines at words, NO cuts a long line off; nothing where it wraps (or does not) already.
    void setWraps(BOOL f);
    [[nodiscard]] BOOL isScrollable() const noexcept { return scrollable_; }
    void setScrollable(BOOL f) noexcept { scrollable_ = f; }
    [[nodiscard]] BOOL isBordered() const noexcept { return bordered_; }
    virtual void setBordered(BOOL f);
    [[nodiscard]] BOOL isBezeled() const noexcept { return bezeled_; }
    virtual void setBezeled(BOOL f);
    [[nodiscard]] NSControlSize controlSize() const noexcept { return size_; }
    virtual void setControlSize(NSControlSize s);
    [[nodiscard]] NSBackgroundStyle backgroundStyle() const noexcept { return background_; }
    /// What it is drawn on: on a dark one, such as a selected line, the text is light.
    virtual void setBackgroundStyle(NSBackgroundStyle s) { background_ = s; }
    [[nodiscard]] NSFocusRingType focusRingType() const noexcept { return focusRing_; }
    void setFocusRingType(NSFocusRingType t) noexcept;
    [[nodiscard]] NSMenu* menu() const noexcept;
    virtual void setMenu(NSMenu* menu);
    [[nodiscard]] virtual BOOL isOpaque() const { return NO; }

    // Geometry, in the coordinates of the frame that is given.

    /// The natural size, in points, without any limit.
    [[nodiscard]] NSSize cellSize() const;
    /// The natural size in a room of that much; no smaller where the cell cannot shrink.
    [[nodiscard]] virtual NSSize cellSizeForBounds(const NSRect& bounds) const;
    /// What the bezel or border leaves.
    [[nodiscard]] virtual NSRect drawingRectForBounds(const NSRect& bounds) const;
    [[nodiscard]] virtual NSRect titleRectForBounds(const NSRect& bounds) const;
    [[nodiscard]] virtual NSRect imageRectForBounds(const NSRect& bounds) const;

    /// Draws into the current context: border and interior. An empty frame draws nothing.
    virtual void drawWithFrame_inView(const NSRect& frame, NSView* view);
    virtual void drawInteriorWithFrame_inView(const NSRect& frame, NSView* view);

    // Tracking: runs its own event loop until the button goes up, or (unless untilMouseUp) the pointer leaves the
    // frame.

    virtual BOOL trackMouse_inRect_ofView_untilMouseUp(NSEvent* e, const NSRect& frame, NSView* view,
                                                       BOOL untilMouseUp);
    /// NO ends the tracking before it begins. Points are in the view's coordinates.
    virtual BOOL startTrackingAt_inView(NSPoint p, NSView* view);
    /// Sent at each move; where it answers YES, a continuous cell sends its action.
    virtual BOOL continueTracking_at_inView(NSPoint last, NSPoint p, NSView* view);
    /// At the end, at the last point; `up` is NO where the pointer left the frame or the view its window.
    virtual void stopTracking_at_inView_mouseIsUp(NSPoint last, NSPoint p, NSView* view, BOOL up);
    /// What lies under the pointer: the bits of NSCellHitTest.h, 0 for nothing.
    [[nodiscard]] virtual NSUInteger hitTestForEvent_inRect_ofView(NSEvent* e, const NSRect& frame, NSView* view);
    /// Acts as on a press and a release inside of it; a disabled one does nothing.
    virtual void performClick(NSObject* sender);
    virtual void resetCursorRect_inView(const NSRect& frame, NSView* view);

    // Editing in the window's field editor.

    /// Puts the editor over the frame with the cell's text and has it handle the press; `e` may be null.
    virtual void editWithFrame_inView_editor_delegate_event(const NSRect& frame, NSView* view, NSText* editor,
                                                            NSObject* delegate, NSEvent* e);
    /// The same, with that range selected (UTF-16 units).
    virtual void selectWithFrame_inView_editor_delegate_start_length(const NSRect& frame, NSView* view, NSText* editor,
                                                                     NSObject* delegate, NSUInteger start,
                                                                     NSUInteger length);
    /// Gives the editor the cell's font and colour, and says what may be done with the text; answers the editor.
    virtual NSText* setUpFieldEditorAttributes(NSText* editor);
    /// Takes the editor out of the view. The text has been taken over before.
    virtual void endEditing(NSText* editor);

    // A plain cell has none of these; an action cell has.

    [[nodiscard]] virtual NSObject* target() const { return nullptr; }
    virtual void setTarget(NSObject*) {}
    [[nodiscard]] virtual SEL action() const { return nullptr; }
    virtual void setAction(SEL) {}
    [[nodiscard]] virtual NSInteger tag() const { return 0; }
    virtual void setTag(NSInteger) {}
    /// Empty for none.
    [[nodiscard]] virtual Ref<NSString> keyEquivalent() const;
    [[nodiscard]] virtual NSUInteger keyEquivalentModifierMask() const { return 0; }

protected:
    /// Has the control view drawn anew.
    void redisplay();
    /// The attributes that plain text is drawn with in the present state.
    [[nodiscard]] virtual Ref<NSDictionary> textAttributes() const;
    [[nodiscard]] virtual NSColor* effectiveTextColor() const;

private:
    Ref<NSObject> value_;
    Ref<NSFont> font_;
    Ref<NSImage> image_;
    Ref<NSFormatter> formatter_;
    Ref<NSObject> represented_;
    Ref<NSMenu> menu_;
    mutable Ref<NSString> shownTitle_;
    Weak<NSView> controlView_;
    NSInteger state_ = NSOffState;
    NSCellType type_ = NSNullCellType;
    NSTextAlignment alignment_{};
    NSLineBreakMode lineBreak_ = NSLineBreakByWordWrapping;
    NSControlSize size_ = NSRegularControlSize;
    NSBackgroundStyle background_ = NSBackgroundStyleLight;
    NSFocusRingType focusRing_{};
    bool mixed_ : 1 = false;
    bool enabled_ : 1 = true;
    bool highlighted_ : 1 = false;
    bool editable_ : 1 = false;
    bool selectable_ : 1 = false;
    bool continuous_ : 1 = false;
    bool refusesFirst_ : 1 = false;
    bool showsFirst_ : 1 = false;
    bool scrollable_ : 1 = false;
    bool bordered_ : 1 = false;
    bool bezeled_ : 1 = false;
};

} // namespace libvue
