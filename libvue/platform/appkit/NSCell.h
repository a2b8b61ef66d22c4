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
    virtual void setType(NSCellType type);
    /// The view that shows it now; not kept.
    [[nodiscard]] NSView* controlView() const noexcept { return controlView_; }
    void setControlView(NSView* view) { controlView_ = view; }

    // Value. All of these are views on one object value; the formatter turns it into text and back.

    [[nodiscard]] virtual NSObject* objectValue() const noexcept { return value_; }
    virtual void setObjectValue(NSObject* value);
    [[nodiscard]] virtual Ref<NSString> stringValue() const;
    virtual void setStringValue(NSString* text);
    [[nodiscard]] virtual Ref<NSAttributedString> attributedStringValue() const;
    virtual void setAttributedStringValue(NSAttributedString* text);
    [[nodiscard]] int intValue() const { return static_cast<int>(integerValue()); }
    void setIntValue(int v) { setIntegerValue(v); }
    [[nodiscard]] virtual NSInteger integerValue() const;
    virtual void setIntegerValue(NSInteger v);
    [[nodiscard]] virtual double doubleValue() const;
    virtual void setDoubleValue(double v);
    [[nodiscard]] float floatValue() const { return static_cast<float>(doubleValue()); }
    void setFloatValue(float v) { setDoubleValue(v); }
    [[nodiscard]] BOOL hasValidObjectValue() const noexcept { return value_ != nullptr; }
    [[nodiscard]] virtual NSFormatter* formatter() const noexcept;
    virtual void setFormatter(NSFormatter* f);
    [[nodiscard]] NSObject* representedObject() const noexcept { return represented_; }
    void setRepresentedObject(NSObject* o) { represented_ = o; }
    [[nodiscard]] virtual NSString* title() const;
    virtual void setTitle(NSString* title) { setStringValue(title); }

    // State.

    [[nodiscard]] NSInteger state() const noexcept { return state_; }
    virtual void setState(NSInteger state);
    [[nodiscard]] BOOL allowsMixedState() const noexcept { return mixed_; }
    void setAllowsMixedState(BOOL f) noexcept { mixed_ = f; }
    /// Off, on, and mixed between them where it is allowed.
    [[nodiscard]] virtual NSInteger nextState() const noexcept;
    void setNextState() { setState(nextState()); }
    [[nodiscard]] BOOL isEnabled() const noexcept { return enabled_; }
    virtual void setEnabled(BOOL f);
    [[nodiscard]] BOOL isHighlighted() const noexcept { return highlighted_; }
    virtual void setHighlighted(BOOL f);
    virtual void highlight_withFrame_inView(BOOL f, const NSRect& frame, NSView* view);
    [[nodiscard]] BOOL isEditable() const noexcept { return editable_; }
    virtual void setEditable(BOOL f) noexcept;
    [[nodiscard]] BOOL isSelectable() const noexcept { return selectable_; }
    virtual void setSelectable(BOOL f) noexcept;
    [[nodiscard]] BOOL isContinuous() const noexcept { return continuous_; }
    virtual void setContinuous(BOOL f) noexcept { continuous_ = f; }
    [[nodiscard]] BOOL refusesFirstResponder() const noexcept { return refusesFirst_; }
    void setRefusesFirstResponder(BOOL f) noexcept { refusesFirst_ = f; }
    [[nodiscard]] virtual BOOL acceptsFirstResponder() const { return enabled_ && !refusesFirst_; }
    [[nodiscard]] BOOL showsFirstResponder() const noexcept { return showsFirst_; }
    void setShowsFirstResponder(BOOL f) noexcept { showsFirst_ = f; }

    // Looks.

    [[nodiscard]] virtual NSFont* font() const noexcept;
    virtual void setFont(NSFont* font);
    [[nodiscard]] virtual NSImage* image() const noexcept;
    virtual void setImage(NSImage* image);
    [[nodiscard]] NSTextAlignment alignment() const noexcept { return alignment_; }
    virtual void setAlignment(NSTextAlignment a) noexcept { alignment_ = a; }
    [[nodiscard]] NSLineBreakMode lineBreakMode() const noexcept { return lineBreak_; }
    virtual void setLineBreakMode(NSLineBreakMode m) noexcept { lineBreak_ = m; }
    [[nodiscard]] BOOL wraps() const noexcept {
        return lineBreak_ == NSLineBreakByWordWrapping || lineBreak_ == NSLineBreakByCharWrapping;
    }
    void setWraps(BOOL f);
    [[nodiscard]] BOOL isScrollable() const noexcept { return scrollable_; }
    void setScrollable(BOOL f) noexcept { scrollable_ = f; }
    [[nodiscard]] BOOL isBordered() const noexcept { return bordered_; }
    virtual void setBordered(BOOL f) noexcept { bordered_ = f; }
    [[nodiscard]] BOOL isBezeled() const noexcept { return bezeled_; }
    virtual void setBezeled(BOOL f) noexcept { bezeled_ = f; }
    [[nodiscard]] NSControlSize controlSize() const noexcept { return size_; }
    virtual void setControlSize(NSControlSize s);
    [[nodiscard]] NSBackgroundStyle backgroundStyle() const noexcept { return background_; }
    virtual void setBackgroundStyle(NSBackgroundStyle s) { background_ = s; }
    [[nodiscard]] NSFocusRingType focusRingType() const noexcept { return focusRing_; }
    void setFocusRingType(NSFocusRingType t) noexcept;
    [[nodiscard]] NSMenu* menu() const noexcept;
    virtual void setMenu(NSMenu* menu);
    [[nodiscard]] virtual BOOL isOpaque() const { return NO; }

    // Geometry, in the coordinates of the frame that is given.

    [[nodiscard]] NSSize cellSize() const;
    /// The natural size in a room of that much; no smaller where the cell cannot shrink.
    [[nodiscard]] virtual NSSize cellSizeForBounds(const NSRect& bounds) const;
    [[nodiscard]] virtual NSRect drawingRectForBounds(const NSRect& bounds) const;
    [[nodiscard]] virtual NSRect titleRectForBounds(const NSRect& bounds) const;
    [[nodiscard]] virtual NSRect imageRectForBounds(const NSRect& bounds) const;
    virtual void calcDrawInfo(const NSRect&) {}

    virtual void drawWithFrame_inView(const NSRect& frame, NSView* view);
    virtual void drawInteriorWithFrame_inView(const NSRect& frame, NSView* view);

    // Tracking: runs its own event loop until the button goes up, or (unless untilMouseUp) the pointer leaves the
    // frame.

    virtual BOOL trackMouse_inRect_ofView_untilMouseUp(NSEvent* e, const NSRect& frame, NSView* view,
                                                       BOOL untilMouseUp);
    virtual BOOL startTrackingAt_inView(NSPoint p, NSView* view);
    virtual BOOL continueTracking_at_inView(NSPoint last, NSPoint p, NSView* view);
    virtual void stopTracking_at_inView_mouseIsUp(NSPoint last, NSPoint p, NSView* view, BOOL up);
    [[nodiscard]] virtual NSUInteger hitTestForEvent_inRect_ofView(NSEvent* e, const NSRect& frame, NSView* view);
    virtual void performClick(NSObject* sender);
    virtual void resetCursorRect_inView(const NSRect& frame, NSView* view);

    // Editing in the window's field editor.

    virtual void editWithFrame_inView_editor_delegate_event(const NSRect& frame, NSView* view, NSText* editor,
                                                            NSObject* delegate, NSEvent* e);
    virtual void selectWithFrame_inView_editor_delegate_start_length(const NSRect& frame, NSView* view, NSText* editor,
                                                                     NSObject* delegate, NSUInteger start,
                                                                     NSUInteger length);
    virtual NSText* setUpFieldEditorAttributes(NSText* editor);
    virtual void endEditing(NSText* editor);

    // A plain cell has none of these; an action cell has.

    [[nodiscard]] virtual NSObject* target() const { return nullptr; }
    virtual void setTarget(NSObject*) {}
    [[nodiscard]] virtual SEL action() const { return nullptr; }
    virtual void setAction(SEL) {}
    [[nodiscard]] virtual NSInteger tag() const { return 0; }
    virtual void setTag(NSInteger) {}
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
