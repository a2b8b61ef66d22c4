#pragma once

#include <memory>

#include <libvue/platform/appkit/PlainTextEditor.h>
#include <libvue/platform/graphics/NSParagraphStyle.h>

namespace libvue {

namespace backend {
class TextLayout;
}

namespace op {
/// For the delegate of a text field: its formatter refused, or put right, what was typed. The last text is the
/// formatter's word of it, which may be null.
inline constexpr Operation<void(NSControl*, NSString*, NSString*)>
    control_didFailToValidatePartialString_errorDescription{"control:didFailToValidatePartialString:errorDescription:"};
} // namespace op

/// The editor of one line that a window lends to the text field with the focus.
class LIBVUE_API FieldEditor : public PlainTextEditor {
public:
    static void describe(ClassDescription<FieldEditor, PlainTextEditor>&) {}
    FieldEditor();

    void setString(NSString* s) override;
    void scrollRangeToVisible(NSRange range) override;
    [[nodiscard]] BOOL isFieldEditor() const override { return YES; }
    void setAlignment(NSTextAlignment a);
    [[nodiscard]] NSRect caretRect() const override;

    BOOL resignFirstResponder() override;
    void drawRect(const NSRect& r) override;
    void resizeSubviewsWithOldSize(const NSSize& oldSize) override;

protected:
    /// On one line: line ends and tabs become spaces, other control characters go.
    [[nodiscard]] std::u16string admitted(std::u16string_view s) const override;
    [[nodiscard]] NSUInteger target(Move m, NSUInteger from) override;
    [[nodiscard]] NSUInteger indexAt(NSPoint p) const override;
    [[nodiscard]] NSUInteger characterAt(NSPoint p) const override;
    [[nodiscard]] NSRange lineAt(NSPoint p) const override;
    void layoutChanged() override;
    void keepCaretVisible() override;
    void insertTab(NSObject* sender) override;
    void insertBacktab(NSObject* sender) override;
    void insertNewline(NSObject* sender) override;
    [[nodiscard]] bool mayEdit() override;
    /// Shows the formatter what an edit would lead to. False keeps the text that stands; else the formatter may have
    /// put both right.
    [[nodiscard]] bool passes(std::u16string& proposed, NSRange& selection) override;

private:
    void endEditing(NSInteger movement);
    [[nodiscard]] const backend::TextLayout& layout() const;
    [[nodiscard]] NSPoint textOrigin() const;

    CGFloat scroll_ = 0;
    mutable std::shared_ptr<const backend::TextLayout> layout_;
    mutable bool layoutDark_ = false;
    NSTextAlignment alignment_ = NSNaturalTextAlignment;
    bool began_ = false, ending_ = false;
};

} // namespace libvue
