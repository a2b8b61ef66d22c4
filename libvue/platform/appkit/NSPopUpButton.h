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
    [[nodiscard]] NSMenu* menu() const override;
    void setMenu(NSMenu* menu);
    [[nodiscard]] NSMenu* menuForEvent(NSEvent*) override { return nullptr; }
    [[nodiscard]] NSInteger numberOfItems() const;
    void addItemWithTitle(NSString* title);
    void addItemsWithTitles(NSArray* titles);
    void insertItemWithTitle_atIndex(NSString* title, NSInteger i);
    void removeItemAtIndex(NSInteger i);
    void removeAllItems();
    [[nodiscard]] NSMenuItem* itemAtIndex(NSInteger i) const;
    [[nodiscard]] NSInteger indexOfItemWithTitle(NSString* title) const;
    [[nodiscard]] NSMenuItem* selectedItem() const;
    [[nodiscard]] NSInteger indexOfSelectedItem() const;
    /// Null where nothing is selected.
    [[nodiscard]] NSString* titleOfSelectedItem() const;
    void selectItemAtIndex(NSInteger i);
    void selectItemWithTitle(NSString* title);
    void selectItemWithTag(NSInteger tag);

    void mouseDown(NSEvent* e) override;
    void keyDown(NSEvent* e) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;
};

} // namespace libvue
