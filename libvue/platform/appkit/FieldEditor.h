#pragma once

#include <memory>
#include <string>
#include <vector>

#include <libvue/platform/appkit/NSText.h>
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

/// From an editor whose caret or selection moved, by the user or by a program; the editor is the object.
inline constexpr ConstantString NSTextViewDidChangeSelectionNotification{u"NSTextViewDidChangeSelectionNotification"};

/// The editor of one line that a window lends to the text field with the focus.
class LIBVUE_API FieldEditor : public NSText {
public:
    static void describe(ClassDescription<FieldEditor, NSText>& c);
    FieldEditor();
    ~FieldEditor() override;

    [[nodiscard]] Ref<NSString> string() const override;
    /// Forgets what could be undone, and puts the caret at the start.
    void setString(NSString* s) override;
    void replaceCharactersInRange_withString(NSRange range, NSString* s) override;
    [[nodiscard]] NSRange selectedRange() const override;
    void setSelectedRange(NSRange range) override;
    void scrollRangeToVisible(NSRange range) override;
    [[nodiscard]] BOOL isFieldEditor() const override { return YES; }
    [[nodiscard]] BOOL isEditable() const override { return editable_; }
    void setEditable(BOOL f) override { editable_ = f; }
    [[nodiscard]] BOOL isSelectable() const override { return selectable_; }
    void setSelectable(BOOL f) override { selectable_ = f; }
    [[nodiscard]] NSFont* font() const override;
    void setFont(NSFont* f) override;
    [[nodiscard]] NSColor* textColor() const override;
    void setTextColor(NSColor* c) override;
    void setAlignment(NSTextAlignment a);

    void cut(NSObject* sender) override;
    void copy(NSObject* sender) override;
    void paste(NSObject* sender) override;
    void selectAll(NSObject* sender) override;
    void undo(NSObject* sender) override;
    void redo(NSObject* sender) override;

    /// The text that an input method is composing at the caret; empty for none.
    [[nodiscard]] const std::u16string& preedit() const noexcept { return preedit_; }
    /// False half of the time while it blinks.
    [[nodiscard]] BOOL caretIsShown() const noexcept { return caretShown_; }
    /// In bounds, of the caret or the start of the selection.
    [[nodiscard]] NSRect caretRect() const;

    void doCommandBySelector(SEL command) override;
    void insertText(NSObject* text) override;
    void textInput(NSEvent* e) override;
    void keyDown(NSEvent* e) override;
    void mouseDown(NSEvent* e) override;
    [[nodiscard]] NSMenu* menuForEvent(NSEvent* e) override;
    [[nodiscard]] BOOL acceptsFirstResponder() override { return selectable_; }
    BOOL becomeFirstResponder() override;
    BOOL resignFirstResponder() override;
    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    [[nodiscard]] BOOL mouseDownCanMoveWindow() const override { return NO; }
    void drawRect(const NSRect& r) override;
    void resetCursorRects() override;
    void viewDidMoveToWindow() override;
    void resizeSubviewsWithOldSize(const NSSize& oldSize) override;

private:
    enum class Move { left, right, wordLeft, wordRight, start, end };
    enum class Extend { no, yes };
    enum class Edit { none, typing, deleting, other };
    struct Snapshot {
        std::u16string text;
        NSUInteger caret, anchor;
    };

    template <Move M, Extend E> void moveBy(NSObject*) { move(M, E); }
    template <Move M> void deleteBy(NSObject*) { deleteTo(M); }
    void move(Move m, Extend e);
    void deleteTo(Move m);
    [[nodiscard]] NSUInteger target(Move m, NSUInteger from) const;
    void insertTab(NSObject*);
    void insertBacktab(NSObject*);
    void insertNewline(NSObject*);
    void windowKeyStatusChanged(NSNotification*);

    /// Replaces the selection or a range as the user's edit: asks, keeps for undo, tells.
    void edit(NSRange range, std::u16string_view with, Edit kind);
    [[nodiscard]] bool mayEdit();
    /// Shows the formatter what an edit would lead to. False keeps the text that stands; else the formatter may have
    /// put both right.
    [[nodiscard]] bool passesFormatter(std::u16string& proposed, NSRange& selection);
    void changed();
    void endEditing(NSInteger movement);
    /// Keeps the text for undo, and lets go of what is too old or too much.
    void remember();
    void restore(const Snapshot& s);
    void select(NSUInteger anchor, NSUInteger caret);
    void selectionChanged();
    void startBlinking();
    void stopBlinking();

    [[nodiscard]] const backend::TextLayout& layout() const;
    void invalidateLayout();
    [[nodiscard]] NSPoint textOrigin() const;
    /// Where the caret goes for a click at that point: before or behind the character there, whichever is nearer.
    [[nodiscard]] NSUInteger indexAt(NSPoint p) const;
    /// The word, or what else a double click at that point selects.
    [[nodiscard]] NSRange wordAt(NSPoint p) const;
    void keepCaretVisible();
    [[nodiscard]] bool isActive() const;

    std::u16string text_;
    std::u16string preedit_;
    NSUInteger preeditCaret_ = 0;
    NSUInteger caret_ = 0, anchor_ = 0;
    NSUInteger toldCaret_ = 0, toldAnchor_ = 0; ///< of the last notice
    CGFloat scroll_ = 0;
    Ref<NSFont> font_;
    Ref<NSColor> color_;
    Ref<NSTimer> blinker_;
    Ref<NSMenu> contextMenu_;
    mutable std::shared_ptr<const backend::TextLayout> layout_;
    mutable bool layoutDark_ = false;
    std::vector<Snapshot> undo_, redo_;
    Edit last_ = Edit::none;
    NSTextAlignment alignment_ = NSNaturalTextAlignment;
    bool editable_ = true, selectable_ = true;
    bool began_ = false, ending_ = false;
    bool caretShown_ = true;
};

} // namespace libvue
