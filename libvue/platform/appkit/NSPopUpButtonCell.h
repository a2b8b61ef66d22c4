#pragma once

#include <libvue/platform/appkit/NSButtonCell.h>
#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSMenuItem.h>

namespace libvue {

enum NSPopUpArrowPosition : NSUInteger { NSPopUpNoArrow = 0, NSPopUpArrowAtCenter = 1, NSPopUpArrowAtBottom = 2 };

/// A button that opens a menu: a pop-up shows the item that was chosen last, a pull-down its own title, the menu's
/// first item.
class LIBVUE_API NSPopUpButtonCell : public NSButtonCell {
public:
    static void describe(ClassDescription<NSPopUpButtonCell, NSButtonCell>& c);
    NSPopUpButtonCell();
    NSPopUpButtonCell(NSString* title, BOOL pullsDown); ///< initTextCell:pullsDown:
    explicit NSPopUpButtonCell(NSCoder& coder);
    ~NSPopUpButtonCell() override;
    void encodeWithCoder(NSCoder& coder) const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;

    /// The menu that it opens; never null.
    [[nodiscard]] NSMenu* popUpMenu() const noexcept { return items_; }
    /// Null is an empty menu of its own.
    void setMenu(NSMenu* menu) override;
    [[nodiscard]] BOOL pullsDown() const noexcept { return pullsDown_; }
    void setPullsDown(BOOL f);
    [[nodiscard]] NSPopUpArrowPosition arrowPosition() const noexcept { return arrow_; }
    void setArrowPosition(NSPopUpArrowPosition p);
    /// Kept and answered; the menu opens over the button.
    [[nodiscard]] NSRectEdge preferredEdge() const noexcept { return edge_; }
    void setPreferredEdge(NSRectEdge e) noexcept { edge_ = e; }
    /// Whether the chosen item has a mark in the menu; YES at first. Of a pop-up alone.
    [[nodiscard]] BOOL altersStateOfSelectedItem() const noexcept { return alters_; }
    void setAltersStateOfSelectedItem(BOOL f) noexcept { alters_ = f; }

    [[nodiscard]] NSInteger numberOfItems() const;
    void addItemWithTitle(NSString* title) { insertItemWithTitle_atIndex(title, numberOfItems()); }
    /// An item that is chosen by picking it. Raises NSRangeException for a place behind the end.
    void insertItemWithTitle_atIndex(NSString* title, NSInteger i);
    void removeAllItems();
    /// -1 for none; out of range is none.
    void selectItemAtIndex(NSInteger i);
    /// Null, or an item of another menu, is none.
    void selectItem(NSMenuItem* item);
    /// Null for none.
    [[nodiscard]] NSMenuItem* selectedItem() const noexcept { return selected_; }
    [[nodiscard]] NSInteger indexOfSelectedItem() const;
    /// Of the item that shows.
    [[nodiscard]] NSString* title() const override;

    /// Opens the menu over the frame and tracks it; the chosen item is selected and the action sent.
    void performClickWithFrame_inView(const NSRect& frame, NSView* view);
    void performClick(NSObject* sender) override;
    BOOL trackMouse_inRect_ofView_untilMouseUp(NSEvent* e, const NSRect& frame, NSView* view,
                                               BOOL untilMouseUp) override;

    [[nodiscard]] NSSize cellSizeForBounds(const NSRect& bounds) const override;
    void drawInteriorWithFrame_inView(const NSRect& frame, NSView* view) override;

private:
    /// The one whose title and image show; null for none.
    [[nodiscard]] NSMenuItem* shownItem() const;
    /// What stands before the item's title: its image, else the cell's own where its position lets it show.
    [[nodiscard]] NSImage* imageBeside(const NSMenuItem* item) const;
    void menuChosen(NSObject* sender);
    void menuChanged(NSNotification* n);

    Ref<NSMenu> items_;
    Weak<NSMenuItem> selected_;
    NSPopUpArrowPosition arrow_ = NSPopUpArrowAtBottom;
    NSRectEdge edge_ = NSMaxYEdge;
    bool pullsDown_ = false;
    bool alters_ = true;
};

} // namespace libvue
