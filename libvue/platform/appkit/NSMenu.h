#pragma once

#include <vector>

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

/// Optional operations of a menu's delegate, and of its items' targets.
namespace op {
inline constexpr Operation<void(NSMenu*)> menuNeedsUpdate{"menuNeedsUpdate:"};
inline constexpr Operation<void(NSMenu*)> menuWillOpen{"menuWillOpen:"};
inline constexpr Operation<void(NSMenu*)> menuDidClose{"menuDidClose:"};
inline constexpr Operation<BOOL(NSMenuItem*)> validateMenuItem{"validateMenuItem:"};
} // namespace op

// The object of each is the menu.
inline constexpr ConstantString NSMenuDidChangeItemNotification{u"NSMenuDidChangeItemNotification"};
inline constexpr ConstantString NSMenuDidAddItemNotification{u"NSMenuDidAddItemNotification"};
inline constexpr ConstantString NSMenuDidRemoveItemNotification{u"NSMenuDidRemoveItemNotification"};
inline constexpr ConstantString NSMenuDidSendActionNotification{u"NSMenuDidSendActionNotification"};

/// A list of commands, opened in a window of its own and tracked in a nested event loop.
class LIBVUE_API NSMenu : public NSObject {
public:
    static void describe(ClassDescription<NSMenu>& c);
    NSMenu();
    explicit NSMenu(NSString* title); ///< initWithTitle:
    explicit NSMenu(NSCoder& coder);
    /// With its items. The delegate is written only where something else in the archive writes it.
    void encodeWithCoder(NSCoder& coder) const override;
    ~NSMenu() override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;

    [[nodiscard]] NSString* title() const noexcept { return title_; }
    void setTitle(NSString* s);
    [[nodiscard]] NSObject* delegate() const noexcept { return delegate_; }
    /// Held weakly.
    void setDelegate(NSObject* d) { delegate_ = d; }
    /// The menu whose item opens this one; null for none.
    [[nodiscard]] NSMenu* supermenu() const noexcept { return supermenu_; }

    [[nodiscard]] NSInteger numberOfItems() const noexcept { return static_cast<NSInteger>(items_.size()); }
    /// Raises NSRangeException out of range.
    [[nodiscard]] NSMenuItem* itemAtIndex(NSInteger i) const;
    [[nodiscard]] Ref<NSArray> itemArray() const;
    /// -1 where there is none.
    [[nodiscard]] NSInteger indexOfItem(const NSMenuItem* item) const noexcept;
    [[nodiscard]] NSInteger indexOfItemWithTitle(const NSString* title) const noexcept;
    [[nodiscard]] NSInteger indexOfItemWithTag(NSInteger tag) const noexcept;
    [[nodiscard]] NSInteger indexOfItemWithRepresentedObject(const NSObject* o) const noexcept;
    [[nodiscard]] NSMenuItem* itemWithTitle(const NSString* title) const noexcept;
    [[nodiscard]] NSMenuItem* itemWithTag(NSInteger tag) const noexcept;
    /// Null, an item that already stands in a menu, and one whose submenu holds this menu raise
    /// NSInvalidArgumentException.
    void addItem(NSMenuItem* item);
    NSMenuItem* addItemWithTitle_action_keyEquivalent(NSString* title, SEL action, NSString* key);
    /// Raises NSRangeException for a place behind the end.
    void insertItem_atIndex(NSMenuItem* item, NSInteger i);
    NSMenuItem* insertItemWithTitle_action_keyEquivalent_atIndex(NSString* title, SEL action, NSString* key,
                                                                 NSInteger i);
    void removeItem(NSMenuItem* item);
    void removeItemAtIndex(NSInteger i);
    void removeAllItems();
    void setSubmenu_forItem(NSMenu* menu, NSMenuItem* item);

    [[nodiscard]] BOOL autoenablesItems() const noexcept { return autoenables_; }
    /// Items are enabled by whether somebody answers their action, and validateMenuItem: of that one.
    void setAutoenablesItems(BOOL f) noexcept { autoenables_ = f; }
    [[nodiscard]] BOOL menuChangedMessagesEnabled() const noexcept { return messages_; }
    /// NO holds back the notifications of items that change, come and go.
    void setMenuChangedMessagesEnabled(BOOL f) noexcept { messages_ = f; }
    [[nodiscard]] NSFont* font() const noexcept;
    /// Null for the menus' own.
    void setFont(NSFont* f);
    [[nodiscard]] CGFloat minimumWidth() const noexcept { return minimumWidth_; }
    /// Points; nothing or less for none.
    void setMinimumWidth(CGFloat w) noexcept { minimumWidth_ = w; }
    /// What all of it takes, in points; a screen that is smaller shows a part.
    [[nodiscard]] NSSize size() const;
    [[nodiscard]] NSMenuItem* highlightedItem() const noexcept { return highlighted_; }

    /// Asks the delegate and the targets, and enables the items accordingly.
    void update();
    /// Runs the item whose key equivalent the event is.
    BOOL performKeyEquivalent(NSEvent* e);
    /// Sends the action of an item that is enabled. Raises NSRangeException out of range.
    void performActionForItemAtIndex(NSInteger i);

    /// Opens it with the item (null: its top) at a point of the view (null: of the screen) and tracks it until
    /// something was chosen or it was left. YES where something was chosen; its action has been sent then.
    BOOL popUpMenuPositioningItem_atLocation_inView(NSMenuItem* item, NSPoint p, NSView* view);
    /// At the place of the event.
    static void popUpContextMenu_withEvent_forView(NSMenu* menu, NSEvent* e, NSView* view);
    /// Closes it, and the menus that were opened with it, without a choice.
    void cancelTracking();
    [[nodiscard]] BOOL isTracking() const noexcept { return tracking_; }

    // Between a menu, its items and what shows it.

    void itemChanged_(NSMenuItem* item);
    void setSupermenu_(NSMenu* m) { supermenu_ = m; }
    void setHighlightedItem_(NSMenuItem* item);
    /// Whether the menu is that one or opens from an item of it, however far down.
    [[nodiscard]] BOOL isInside_(const NSMenu* menu) const noexcept;

private:
    Ref<NSString> title_;
    Weak<NSObject> delegate_;
    Weak<NSMenu> supermenu_;
    std::vector<Ref<NSMenuItem>> items_;
    Weak<NSMenuItem> highlighted_;
    Ref<NSFont> font_;
    CGFloat minimumWidth_ = 0;
    bool autoenables_ = true;
    bool messages_ = true;
    bool tracking_ = false;
};

} // namespace libvue
