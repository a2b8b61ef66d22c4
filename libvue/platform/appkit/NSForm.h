#pragma once

#include <vector>

#include <libvue/platform/appkit/NSControl.h>

namespace libvue {

class NSFormCell;
class NSTextField;

/// Rows of titled text fields, from the top down: the titles stand in one column, the fields in another one that takes
/// the rest of the width. Tab goes from row to row.
///
/// Return sends the action of the form, which is the sender; without one it presses the window's default button.
class LIBVUE_API NSForm : public NSControl {
public:
    static void describe(ClassDescription<NSForm, NSControl>& c);
    NSForm();
    explicit NSForm(const NSRect& frame);
    ~NSForm() override;

    /// Adds a row and answers its cell.
    NSFormCell* addEntry(NSString* title) { return insertEntry_atIndex(title, numberOfRows()); }
    /// Null for an index that is no place for a row.
    NSFormCell* insertEntry_atIndex(NSString* title, NSInteger i);
    void removeEntryAtIndex(NSInteger i);
    [[nodiscard]] NSInteger numberOfRows() const noexcept { return static_cast<NSInteger>(rows_.size()); }
    /// Null for an index that no row has.
    [[nodiscard]] NSFormCell* cellAtIndex(NSInteger i) const;
    /// The first row whose cell has the tag; -1 for none.
    [[nodiscard]] NSInteger indexOfCellWithTag(NSInteger tag) const;
    /// The row that is being edited; -1 for none.
    [[nodiscard]] NSInteger indexOfSelectedItem() const;
    /// Edits the row, with all of its text selected.
    void selectTextAtIndex(NSInteger i);
    /// The first row.
    void selectText(NSObject*) { selectTextAtIndex(0); }

    /// Between rows, in points.
    [[nodiscard]] CGFloat interlineSpacing() const noexcept { return spacing_; }
    void setInterlineSpacing(CGFloat spacing);
    [[nodiscard]] NSTextAlignment titleAlignment() const noexcept { return titleAlignment_; }
    void setTitleAlignment(NSTextAlignment a);
    /// Places titles and fields anew.
    void tile();

    /// The cell of the row that is being edited, else of the first one; the form's own where there is no row.
    [[nodiscard]] NSCell* selectedCell() const override;
    void setTarget(NSObject* t) override;
    void setAction(SEL a) override;
    void setEnabled(BOOL f) override;
    void setFont(NSFont* f) override;
    void setControlSize(NSControlSize s) override;
    /// Of the texts in the fields; see titleAlignment.
    void setAlignment(NSTextAlignment a) override;
    [[nodiscard]] NSText* currentEditor() const override;
    BOOL abortEditing() override;
    void validateEditing() override;
    /// As high as its rows; the width stays, or becomes the least at which titles and fields have room.
    void sizeToFit() override;

    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    void drawRect(const NSRect&) override {}
    void mouseDown(NSEvent* e) override;
    [[nodiscard]] BOOL acceptsFirstResponder() override { return NO; }
    void resetCursorRects() override {}
    void resizeSubviewsWithOldSize(const NSSize& oldSize) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    struct Row {
        Ref<NSTextField> title, field;
    };
    void addNibItem(NSObject* item);
    [[nodiscard]] const Row* row(NSInteger i) const;
    [[nodiscard]] CGFloat titleColumn() const;
    [[nodiscard]] CGFloat rowHeight() const;

    std::vector<Row> rows_;
    NSInteger aborted_ = 0; ///< the row that was being edited when that was broken off
    CGFloat spacing_ = 8;
    NSTextAlignment titleAlignment_ = NSRightTextAlignment;
};

} // namespace libvue
