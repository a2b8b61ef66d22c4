#pragma once

#include <libvue/platform/appkit/NSButtonCell.h>
#include <libvue/platform/appkit/NSControl.h>

namespace libvue {

/// A push button, check box or radio button. Radio buttons of one superview with one action form a group.
class LIBVUE_API NSButton : public NSControl {
public:
    static void describe(ClassDescription<NSButton, NSControl>& c);
    NSButton();
    explicit NSButton(const NSRect& frame);
    explicit NSButton(NSCoder& coder);
    ~NSButton() override;
    /// At their natural size; `target` is held weakly.
    [[nodiscard]] static Ref<NSButton> buttonWithTitle_target_action(NSString* title, NSObject* target, SEL action);
    [[nodiscard]] static Ref<NSButton> checkboxWithTitle_target_action(NSString* title, NSObject* target, SEL action);
    [[nodiscard]] static Ref<NSButton> radioButtonWithTitle_target_action(NSString* title, NSObject* target,
                                                                          SEL action);

    /// The cell where it is a button cell, which it is unless another was set.
    [[nodiscard]] NSButtonCell* buttonCell() const;

    /// Null where the cell is no button cell, as with the other texts and images.
    [[nodiscard]] NSString* title() const;
    virtual void setTitle(NSString* title);
    /// Shown in the on state, or while pressed, in place of the title; null for none.
    [[nodiscard]] NSString* alternateTitle() const;
    virtual void setAlternateTitle(NSString* title);
    [[nodiscard]] Ref<NSAttributedString> attributedTitle() const;
    virtual void setAttributedTitle(NSAttributedString* title);
    [[nodiscard]] NSImage* image() const;
    /// Shows it: an image position of NSNoImage becomes NSImageLeft, or NSImageOnly where there is no title.
    virtual void setImage(NSImage* image);
    [[nodiscard]] NSImage* alternateImage() const;
    virtual void setAlternateImage(NSImage* image);
    [[nodiscard]] NSCellImagePosition imagePosition() const;
    virtual void setImagePosition(NSCellImagePosition p);
    /// How a press shows and what it does to the state.
    virtual void setButtonType(NSButtonType type);
    [[nodiscard]] NSInteger state() const;
    /// See NSCell. A radio button that comes on turns the others of its group off.
    virtual void setState(NSInteger state);
    [[nodiscard]] BOOL allowsMixedState() const;
    virtual void setAllowsMixedState(BOOL f);
    void setNextState();
    [[nodiscard]] BOOL isBordered() const;
    virtual void setBordered(BOOL f);
    /// Draws nothing, and can be pressed all the same.
    [[nodiscard]] BOOL isTransparent() const;
    void setTransparent(BOOL f);
    [[nodiscard]] BOOL showsBorderOnlyWhileMouseInside() const;
    void setShowsBorderOnlyWhileMouseInside(BOOL f);
    [[nodiscard]] NSBezelStyle bezelStyle() const;
    virtual void setBezelStyle(NSBezelStyle s);
    [[nodiscard]] Ref<NSString> keyEquivalent() const;
    /// The characters without modifiers; "\r" makes it the window's default button, any other key ends that.
    void setKeyEquivalent(NSString* key);
    [[nodiscard]] NSUInteger keyEquivalentModifierMask() const;
    void setKeyEquivalentModifierMask(NSUInteger mask);
    /// Shows it pressed, or no longer.
    virtual void highlight(BOOL f);

    BOOL performKeyEquivalent(NSEvent* e) override;
    void keyDown(NSEvent* e) override;
    void mouseDown(NSEvent* e) override;
    void mouseEntered(NSEvent* e) override;
    void mouseExited(NSEvent* e) override;
    void updateTrackingAreas() override;
    void viewDidMoveToWindow() override;
    BOOL sendAction_to(SEL action, NSObject* target) override;
    [[nodiscard]] NSRect focusRingMaskBounds() const override;
    [[nodiscard]] CGFloat focusRingRadius() const override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    /// The radio buttons of its superview with its action, itself among them.
    [[nodiscard]] std::vector<Ref<NSButton>> radioGroup() const;
    /// Turns the other buttons of its group off; answers those that were on.
    std::vector<Ref<NSButton>> clearRadioGroup();
    /// Goes to the next button of the group that can be used, and presses it.
    void chooseInGroup(std::ptrdiff_t step);

    Ref<NSTrackingArea> hover_;
};

} // namespace libvue
