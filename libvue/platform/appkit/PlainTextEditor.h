#pragma once

#include <string>
#include <vector>

#include <libvue/platform/appkit/NSText.h>

namespace libvue {

/// From an editor whose caret or selection moved, by the user or by a program; the editor is the object.
inline constexpr ConstantString NSTextViewDidChangeSelectionNotification{u"NSTextViewDidChangeSelectionNotification"};

/// What editors of plain text share: the text, the selection, what an input method composes, undoing, the clipboard
/// and the caret. A kind of editor lays its text out and says where moves lead.
class LIBVUE_API PlainTextEditor : public NSText {
public:
    static void describe(ClassDescription<PlainTextEditor, NSText>& c);
    ~PlainTextEditor() override;

    [[nodiscard]] Ref<NSString> string() const override;
    /// Forgets what could be undone, and puts the caret at the start.
    void setString(NSString* s) override;
    void replaceCharactersInRange_withString(NSRange range, NSString* s) override;
    [[nodiscard]] NSRange selectedRange() const override;
    void setSelectedRange(NSRange range) override;
    [[nodiscard]] BOOL isEditable() const override { return editable_; }
    void setEditable(BOOL f) override { editable_ = f; }
    [[nodiscard]] BOOL isSelectable() const override { return selectable_; }
    void setSelectable(BOOL f) override { selectable_ = f; }
    [[nodiscard]] NSFont* font() const override;
    void setFont(NSFont* f) override;
    [[nodiscard]] NSColor* textColor() const override;
    void setTextColor(NSColor* c) override;

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
    [[nodiscard]] virtual NSRect caretRect() const = 0;

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
    void resetCursorRects() override;
    void viewDidMoveToWindow() override;

protected:
    enum class Move { left, right, wordLeft, wordRight, up, down, pageUp, pageDown, lineStart, lineEnd, start, end };
    enum class Edit { none, typing, deleting, other };

    static constexpr CGFloat caretWidth = 1.5;

    explicit PlainTextEditor(Ref<NSFont> font);

    // What a kind of editor says.

    /// What it takes of a text that is typed or pasted.
    [[nodiscard]] virtual std::u16string admitted(std::u16string_view s) const = 0;
    /// Where a move leads that words have no part in.
    [[nodiscard]] virtual NSUInteger target(Move m, NSUInteger from) = 0;
    /// Where the caret goes for a click at that point: before or behind the character there, whichever is nearer.
    [[nodiscard]] virtual NSUInteger indexAt(NSPoint p) const = 0;
    /// The character under that point.
    [[nodiscard]] virtual NSUInteger characterAt(NSPoint p) const = 0;
    /// What a triple click at that point selects.
    [[nodiscard]] virtual NSRange lineAt(NSPoint p) const = 0;
    /// The shown text is another one, or looks different.
    virtual void layoutChanged() = 0;
    virtual void keepCaretVisible() = 0;
    virtual void insertTab(NSObject* sender) = 0;
    virtual void insertBacktab(NSObject* sender) = 0;
    virtual void insertNewline(NSObject* sender) = 0;
    /// Whether the user may change the text now.
    [[nodiscard]] virtual bool mayEdit() { return editable_; }
    /// Whether an edit may lead to that text and that selection; it may put both right.
    [[nodiscard]] virtual bool passes(std::u16string& /*proposed*/, NSRange& /*selection*/) { return true; }

    // What it goes by.

    [[nodiscard]] const std::u16string& text() const noexcept { return text_; }
    /// The text, with what is being composed in place of the selection.
    [[nodiscard]] std::u16string shown() const;
    /// Where in the shown text the composed one stands.
    [[nodiscard]] NSRange composed() const { return {selectedRange().location, preedit_.size()}; }
    [[nodiscard]] NSUInteger shownCaret() const;
    [[nodiscard]] bool isActive() const;
    /// Whether the selection is drawn as that of the key window.
    [[nodiscard]] bool isKey() const;

    /// Replaces a range as the user's edit: asks, keeps it for undo, tells.
    void edit(NSRange range, std::u16string_view with, Edit kind);
    void select(NSUInteger anchor, NSUInteger caret);
    void selectionChanged();
    /// Gives up what is being composed, and the caret.
    void leave();

private:
    enum class Extend { no, yes };
    struct Snapshot {
        std::u16string text;
        NSUInteger caret, anchor;
    };

    template <Move M, Extend E> void moveBy(NSObject*) { move(M, E); }
    template <Move M> void deleteBy(NSObject*) { deleteTo(M); }
    void move(Move m, Extend e);
    void deleteTo(Move m);
    [[nodiscard]] NSUInteger reached(Move m);
    [[nodiscard]] NSRange unitAt(NSPoint p, NSInteger clicks) const;
    void changed();
    /// Keeps the text for undo, and lets go of what is too old or too much.
    void remember();
    void restore(const Snapshot& s);
    void startBlinking();
    void stopBlinking();
    void windowKeyStatusChanged(NSNotification*);

    std::u16string text_;
    std::u16string preedit_;
    NSUInteger preeditCaret_ = 0;
    NSUInteger caret_ = 0, anchor_ = 0;
    NSUInteger toldCaret_ = 0, toldAnchor_ = 0; ///< of the last notice
    Ref<NSFont> font_;
    Ref<NSColor> color_;
    Ref<NSTimer> blinker_;
    Ref<NSMenu> contextMenu_;
    std::vector<Snapshot> undo_, redo_;
    Edit last_ = Edit::none;
    bool editable_ = true, selectable_ = true;
    bool caretShown_ = true;
};

} // namespace libvue
