#pragma once

#include <libvue/platform/appkit/NSCell.h>
#include <libvue/platform/appkit/NSView.h>

namespace libvue {

// The object is the control; "NSFieldEditor" in the user information is the editor.
inline constexpr ConstantString NSControlTextDidBeginEditingNotification{u"NSControlTextDidBeginEditingNotification"};
inline constexpr ConstantString NSControlTextDidChangeNotification{u"NSControlTextDidChangeNotification"};
inline constexpr ConstantString NSControlTextDidEndEditingNotification{u"NSControlTextDidEndEditingNotification"};

/// A view that shows a value, lets the user change it and sends an action. Its cell draws and tracks.
class LIBVUE_API NSControl : public NSView {
public:
    static void describe(ClassDescription<NSControl, NSView>& c);
    NSControl();
    explicit NSControl(const NSRect& frame);
    explicit NSControl(NSCoder& coder);
    ~NSControl() override;
    void encodeWithCoder(NSCoder& coder) const override;

    /// Null for a control without one: it then has no value, shows nothing and is enabled.
    [[nodiscard]] virtual NSCell* cell() const;
    virtual void setCell(NSCell* cell);
    /// The cell in use: for a control of several, the selected one.
    [[nodiscard]] virtual NSCell* selectedCell() const { return cell(); }

    /// The cell's; null for the first responder that answers the action, or once the target is gone.
    [[nodiscard]] NSObject* target() const;
    /// Held weakly.
    virtual void setTarget(NSObject* t);
    /// The cell's; null for none.
    [[nodiscard]] SEL action() const;
    virtual void setAction(SEL a);
    [[nodiscard]] NSInteger tag() const override { return tag_; }
    virtual void setTag(NSInteger t) { tag_ = t; }
    /// Hands the value to what it is bound to, then sends the action; NO where nobody answered, or for a null action. A
    /// null target means the chain of responders.
    virtual BOOL sendAction_to(SEL action, NSObject* target);

    [[nodiscard]] BOOL isEnabled() const;
    /// NO ends editing, and passes the keys on.
    virtual void setEnabled(BOOL f);
    [[nodiscard]] BOOL isContinuous() const;
    /// See NSCell.
    void setContinuous(BOOL f);
    [[nodiscard]] BOOL refusesFirstResponder() const;
    void setRefusesFirstResponder(BOOL f);

    /// The values are the cell's, what is being typed among them; setting one ends editing.
    [[nodiscard]] NSObject* objectValue() const;
    virtual void setObjectValue(NSObject* v);
    [[nodiscard]] Ref<NSString> stringValue() const;
    virtual void setStringValue(NSString* s);
    [[nodiscard]] Ref<NSAttributedString> attributedStringValue() const;
    virtual void setAttributedStringValue(NSAttributedString* s);
    [[nodiscard]] int intValue() const { return static_cast<int>(integerValue()); }
    void setIntValue(int v) { setIntegerValue(v); }
    [[nodiscard]] NSInteger integerValue() const;
    virtual void setIntegerValue(NSInteger v);
    [[nodiscard]] double doubleValue() const;
    virtual void setDoubleValue(double v);
    [[nodiscard]] float floatValue() const { return static_cast<float>(doubleValue()); }
    void setFloatValue(float v) { setDoubleValue(v); }
    [[nodiscard]] NSFormatter* formatter() const;
    void setFormatter(NSFormatter* f);
    /// Null for the system font in the size of the control.
    [[nodiscard]] NSFont* font() const;
    virtual void setFont(NSFont* f);
    [[nodiscard]] NSTextAlignment alignment() const;
    virtual void setAlignment(NSTextAlignment a);
    [[nodiscard]] NSControlSize controlSize() const;
    virtual void setControlSize(NSControlSize s);

    /// Actions that take over the value of a control; other senders are ignored.
    void takeStringValueFrom(NSObject* sender);
    void takeDoubleValueFrom(NSObject* sender);
    void takeIntegerValueFrom(NSObject* sender);

    /// Takes its natural size; the origin stays.
    virtual void sizeToFit();
    /// Has the control drawn anew, for a cell whose looks changed.
    virtual void updateCell(NSCell* cell);
    /// See NSCell.
    virtual void performClick(NSObject* sender);

    // Editing.

    /// The window's editor while it edits this control, else null.
    [[nodiscard]] virtual NSText* currentEditor() const;
    /// Ends editing without taking the text over; NO where nothing was edited.
    virtual BOOL abortEditing();
    /// Takes over what has been typed so far, unless the formatter refuses it; editing goes on.
    virtual void validateEditing();

    void drawRect(const NSRect& r) override;
    void mouseDown(NSEvent* e) override;
    [[nodiscard]] BOOL acceptsFirstResponder() override;
    BOOL becomeFirstResponder() override;
    BOOL resignFirstResponder() override;
    void resetCursorRects() override;
    [[nodiscard]] BOOL mouseDownCanMoveWindow() const override { return NO; }
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    Ref<NSCell> cell_;
    NSInteger tag_ = 0;
};

} // namespace libvue
