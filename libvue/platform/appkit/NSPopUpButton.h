#pragma once

#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSPopUpButtonCell.h>

namespace libvue {

/// A button with a menu, see NSPopUpButtonCell.
class LIBVUE_API NSPopUpButton : public NSButton {
public:
    static void describe(ClassDescription<NSPopUpButton, NSButton>& c);
    NSPopUpButton();
    explicit NSPopUpButton(const NSRect& frame, BOOL pullsDown = NO);
    explicit NSPopUpButton(NSCoder& coder);

    [[nodiscard]] NSPopUpButtonCell* popUpCell() const;
    [[nodiscard]] BOOL pullsDown() const;
    void setPullsDown(BOOL f);
    /// The cell's; NSMaxYEdge without one.
    [[nodiscard]] NSRectEdge preferredEdge() const;
    void setPreferredEdge(NSRectEdge e);
    /// The menu that it opens, not one for the right button.
    [[nodiscard]] NSMenu* menu() const override;
    void setMenu(NSMenu* menu);
    [[nodiscard]] NSMenu* menuForEvent(NSEvent*) override { return nullptr; }
    [[nodiscard]] NSInteger numberOfItems() const;
    void addItemWithTitle(NSString* title);
    /// What is no text is left out; null is none.
    void addItemsWithTitles(NSArray* titles);
    // As the menu's: out of range raises NSRangeException.
    void insertItemWithTitle_atIndex(NSString* title, NSInteger i);
    void removeItemAtIndex(NSInteger i);
    [[nodiscard]] NSMenuItem* itemAtIndex(NSInteger i) const;
    void removeAllItems();
    /// -1 where there is none.
    [[nodiscard]] NSInteger indexOfItemWithTitle(NSString* title) const;
    [[nodiscard]] NSMenuItem* selectedItem() const;
    [[nodiscard]] NSInteger indexOfSelectedItem() const;
    /// Null where nothing is selected.
    [[nodiscard]] NSString* titleOfSelectedItem() const;
    // An index, title or tag that no item has selects none.
    void selectItemAtIndex(NSInteger i);
    void selectItemWithTitle(NSString* title);
    void selectItemWithTag(NSInteger tag);

    void mouseDown(NSEvent* e) override;
    void keyDown(NSEvent* e) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;
};

} // namespace libvue
