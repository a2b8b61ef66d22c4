#pragma once

#include <libvue/platform/appkit/NSControl.h>

namespace libvue {

/// Optional operations of a text field's delegate. The last three are the notifications of NSControl, which reach it
/// before other observers.
namespace op {
inline constexpr Operation<BOOL(NSControl*, NSText*)> control_textShouldBeginEditing{"control:textShouldBeginEditing:"};
/// NO keeps the focus in the field.
inline constexpr Operation<BOOL(NSControl*, NSText*)> control_textShouldEndEditing{"control:textShouldEndEditing:"};
/// YES where the delegate has done it.
inline constexpr Operation<BOOL(NSControl*, NSText*, SEL)> control_textView_doCommandBySelector{
    "control:textView:doCommandBySelector:"};
/// YES has a text that the formatter refused end all the same, without becoming the value. The last text says why.
inline constexpr Operation<BOOL(NSControl*, NSString*, NSString*)> control_didFailToFormatString_errorDescription{
    "control:didFailToFormatString:errorDescription:"};
inline constexpr Operation<void(NSNotification*)> controlTextDidBeginEditing{"controlTextDidBeginEditing:"};
inline constexpr Operation<void(NSNotification*)> controlTextDidChange{"controlTextDidChange:"};
inline constexpr Operation<void(NSNotification*)> controlTextDidEndEditing{"controlTextDidEndEditing:"};
} // namespace op

/// A label, or a field of one line that can be edited.
class LIBVUE_API NSTextField : public NSControl {
public:
    static void describe(ClassDescription<NSTextField, NSControl>& c);
    NSTextField();
    explicit NSTextField(const NSRect& frame);
    explicit NSTextField(NSCoder& coder);
    ~NSTextField() override;
    /// A text that is neither edited nor selected, without background or border, at its natural size.
    [[nodiscard]] static Ref<NSTextField> labelWithString(NSString* text);
    /// An editable, bezeled field.
    [[nodiscard]] static Ref<NSTextField> textFieldWithString(NSString* text);

    [[nodiscard]] BOOL isEditable() const;
    void setEditable(BOOL f);
    [[nodiscard]] BOOL isSelectable() const;
    void setSelectable(BOOL f);
    /// A bezel is the theme's frame of a field; a border is a plain line.
    [[nodiscard]] BOOL isBezeled() const;
    void setBezeled(BOOL f);
    [[nodiscard]] BOOL isBordered() const;
    void setBordered(BOOL f);
    [[nodiscard]] BOOL drawsBackground() const;
    void setDrawsBackground(BOOL f);
    [[nodiscard]] NSColor* textColor() const;
    /// Null for the colour of the theme.
    void setTextColor(NSColor* c);
    [[nodiscard]] NSColor* backgroundColor() const;
    /// Null for the colour of the theme.
    void setBackgroundColor(NSColor* c);
    /// Shown, pale, while the field is empty; null for none.
    [[nodiscard]] NSString* placeholderString() const;
    void setPlaceholderString(NSString* s);
    [[nodiscard]] NSObject* delegate() const noexcept { return delegate_; }
    /// Held weakly.
    void setDelegate(NSObject* d) { delegate_ = d; }

    /// Starts editing with everything selected; does nothing in no window, or where the field is disabled or a label.
    virtual void selectText(NSObject* sender);
    [[nodiscard]] NSText* currentEditor() const override;
    BOOL abortEditing() override;
    void validateEditing() override;

    // From the field editor.
    virtual BOOL textShouldBeginEditing(NSText* editor);
    virtual BOOL textShouldEndEditing(NSText* editor);
    virtual void textDidBeginEditing(NSNotification* n);
    virtual void textDidChange(NSNotification* n);
    virtual void textDidEndEditing(NSNotification* n);
    virtual BOOL textView_doCommandBySelector(NSText* editor, SEL command);

    void mouseDown(NSEvent* e) override;
    [[nodiscard]] BOOL acceptsFirstResponder() override;
    BOOL becomeFirstResponder() override;
    [[nodiscard]] BOOL isOpaque() const override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    /// The window's editor, taken for this field; null where the field cannot be edited now.
    [[nodiscard]] Ref<NSText> takeEditor();
    void postEditing(NSString* name, const Operation<void(NSNotification*)>& operation, NSText* editor);

    Weak<NSObject> delegate_;
    Weak<NSText> editor_;
    Ref<NSObject> former_; ///< the value when editing began, for Escape
};

} // namespace libvue
