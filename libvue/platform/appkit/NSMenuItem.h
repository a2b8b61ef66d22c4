#pragma once

#include <libvue/platform/appkit/NSCell.h>
#include <libvue/platform/appkit/NSEvent.h>

namespace libvue {

/// A line of a menu.
class LIBVUE_API NSMenuItem : public NSObject {
public:
    static void describe(ClassDescription<NSMenuItem>& c);
    NSMenuItem();
    /// A title or a key of null is empty.
    NSMenuItem(NSString* title, SEL action, NSString* keyEquivalent);
    explicit NSMenuItem(NSCoder& coder);
    /// With its submenu. The target is written only where something else in the archive writes it.
    void encodeWithCoder(NSCoder& coder) const override;
    ~NSMenuItem() override;
    [[nodiscard]] static Ref<NSMenuItem> separatorItem();
    /// A copy in no menu, with the same target, which is not kept.
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;

    /// The one that it stands in; null for none.
    [[nodiscard]] NSMenu* menu() const noexcept { return menu_; }
    [[nodiscard]] BOOL isSeparatorItem() const noexcept { return separator_; }
    [[nodiscard]] NSString* title() const noexcept { return title_; }
    void setTitle(NSString* s);
    [[nodiscard]] NSAttributedString* attributedTitle() const noexcept;
    /// Drawn in place of the title, which it also sets; null for the plain one.
    void setAttributedTitle(NSAttributedString* s);
    [[nodiscard]] NSString* keyEquivalent() const noexcept { return key_; }
    /// A capital asks for Shift.
    void setKeyEquivalent(NSString* s);
    [[nodiscard]] NSUInteger keyEquivalentModifierMask() const noexcept { return keyMask_; }
    /// NSEventModifierFlags; Command at first.
    void setKeyEquivalentModifierMask(NSUInteger m);
    [[nodiscard]] NSImage* image() const noexcept;
    void setImage(NSImage* i);
    [[nodiscard]] NSInteger state() const noexcept { return state_; }
    /// An NSCellStateValue.
    void setState(NSInteger s);
    [[nodiscard]] BOOL isEnabled() const noexcept { return enabled_; }
    void setEnabled(BOOL f);
    [[nodiscard]] BOOL isHidden() const noexcept { return hidden_; }
    void setHidden(BOOL f);
    [[nodiscard]] NSMenu* submenu() const noexcept;
    /// A menu that holds the item raises NSInvalidArgumentException.
    void setSubmenu(NSMenu* m);
    [[nodiscard]] BOOL hasSubmenu() const noexcept { return submenu() != nullptr; }
    [[nodiscard]] NSObject* target() const noexcept { return target_; }
    /// Held weakly.
    void setTarget(NSObject* t) { target_ = t; }
    [[nodiscard]] SEL action() const noexcept { return action_; }
    void setAction(SEL a) noexcept { action_ = a; }
    [[nodiscard]] NSInteger tag() const noexcept { return tag_; }
    void setTag(NSInteger t) noexcept { tag_ = t; }
    [[nodiscard]] NSObject* representedObject() const noexcept { return represented_; }
    void setRepresentedObject(NSObject* o) { represented_ = o; }
    [[nodiscard]] NSInteger indentationLevel() const noexcept { return indentation_; }
    /// Held to 0 … 15.
    void setIndentationLevel(NSInteger n) noexcept { indentation_ = n < 0 ? 0 : n > 15 ? 15 : n; }
    [[nodiscard]] NSString* toolTip() const noexcept { return toolTip_; }
    void setToolTip(NSString* s);

private:
    friend class NSMenu;
    void changed();

    Weak<NSMenu> menu_;
    Ref<NSString> title_, key_, toolTip_;
    Ref<NSAttributedString> attributed_;
    Ref<NSImage> image_;
    Ref<NSMenu> submenu_;
    Weak<NSObject> target_;
    Ref<NSObject> represented_;
    SEL action_ = nullptr;
    NSUInteger keyMask_ = NSCommandKeyMask;
    NSInteger state_ = NSOffState, tag_ = 0, indentation_ = 0;
    bool separator_ = false, enabled_ = true, hidden_ = false;
};

} // namespace libvue
