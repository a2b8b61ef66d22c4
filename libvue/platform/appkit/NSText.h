#pragma once

#include <libvue/platform/appkit/NSView.h>

namespace libvue {

inline constexpr ConstantString NSTextDidBeginEditingNotification{u"NSTextDidBeginEditingNotification"};
inline constexpr ConstantString NSTextDidChangeNotification{u"NSTextDidChangeNotification"};
inline constexpr ConstantString NSTextDidEndEditingNotification{u"NSTextDidEndEditingNotification"};
/// In the user information of the end: an NSNumber, one of the movements below.
inline constexpr ConstantString NSTextMovementKey{u"NSTextMovement"};

enum NSTextMovement : NSInteger {
    NSIllegalTextMovement = 0,
    NSReturnTextMovement = 0x10,
    NSTabTextMovement = 0x11,
    NSBacktabTextMovement = 0x12,
    NSCancelTextMovement = 0x17,
    NSOtherTextMovement = 0
};

/// Optional operations of an editor's delegate.
namespace op {
inline constexpr Operation<BOOL(NSText*)> textShouldBeginEditing{"textShouldBeginEditing:"};
inline constexpr Operation<BOOL(NSText*)> textShouldEndEditing{"textShouldEndEditing:"};
inline constexpr Operation<void(NSNotification*)> textDidBeginEditing{"textDidBeginEditing:"};
inline constexpr Operation<void(NSNotification*)> textDidChange{"textDidChange:"};
inline constexpr Operation<void(NSNotification*)> textDidEndEditing{"textDidEndEditing:"};
/// YES where the delegate has done it.
inline constexpr Operation<BOOL(NSText*, SEL)> textView_doCommandBySelector{"textView:doCommandBySelector:"};
} // namespace op

/// What every editor of text answers. The window's field editor is one; so are the text views.
class LIBVUE_API NSText : public NSView {
public:
    static void describe(ClassDescription<NSText, NSView>& c);
    using NSView::NSView;
    ~NSText() override;

    [[nodiscard]] virtual Ref<NSString> string() const = 0;
    virtual void setString(NSString* s) = 0;
    /// Replaces a range without asking or telling anyone.
    virtual void replaceCharactersInRange_withString(NSRange range, NSString* s) = 0;
    [[nodiscard]] virtual NSRange selectedRange() const = 0;
    /// Out of range is held to the text.
    virtual void setSelectedRange(NSRange range) = 0;
    virtual void scrollRangeToVisible(NSRange range) = 0;
    [[nodiscard]] virtual BOOL isFieldEditor() const { return NO; }
    [[nodiscard]] virtual BOOL isEditable() const { return YES; }
    virtual void setEditable(BOOL) {}
    [[nodiscard]] virtual BOOL isSelectable() const { return YES; }
    virtual void setSelectable(BOOL) {}
    [[nodiscard]] virtual NSFont* font() const { return nullptr; }
    virtual void setFont(NSFont*) {}
    [[nodiscard]] virtual NSColor* textColor() const { return nullptr; }
    virtual void setTextColor(NSColor*) {}
    [[nodiscard]] NSObject* delegate() const noexcept { return delegate_; }
    /// Held weakly.
    virtual void setDelegate(NSObject* d) { delegate_ = d; }

    virtual void cut(NSObject* sender) = 0;
    virtual void copy(NSObject* sender) = 0;
    virtual void paste(NSObject* sender) = 0;
    virtual void selectAll(NSObject* sender) = 0;
    virtual void undo(NSObject* sender) = 0;
    virtual void redo(NSObject* sender) = 0;

private:
    Weak<NSObject> delegate_;
};

} // namespace libvue
