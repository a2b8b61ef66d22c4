#pragma once

#include <libvue/platform/appkit/NSActionCell.h>

namespace libvue {

enum NSButtonType : NSUInteger {
    NSMomentaryLightButton = 0,
    NSPushOnPushOffButton = 1,
    NSToggleButton = 2,
    NSSwitchButton = 3,
    NSRadioButton = 4,
    NSMomentaryChangeButton = 5,
    NSOnOffButton = 6,
    NSMomentaryPushInButton = 7
};
enum NSBezelStyle : NSUInteger {
    NSRoundedBezelStyle = 1,
    NSRegularSquareBezelStyle = 2,
    NSDisclosureBezelStyle = 5,
    NSShadowlessSquareBezelStyle = 6,
    NSCircularBezelStyle = 7,
    NSTexturedSquareBezelStyle = 8,
    NSHelpButtonBezelStyle = 9,
    NSSmallSquareBezelStyle = 10,
    NSTexturedRoundedBezelStyle = 11,
    NSRoundRectBezelStyle = 12,
    NSRecessedBezelStyle = 13,
    NSRoundedDisclosureBezelStyle = 14
};

/// A button's face: title and image, what a press shows, how the state changes.
class LIBVUE_API NSButtonCell : public NSActionCell {
public:
    static void describe(ClassDescription<NSButtonCell, NSActionCell>& c);
    NSButtonCell();
    explicit NSButtonCell(NSString* title);
    explicit NSButtonCell(NSImage* image);
    explicit NSButtonCell(NSCoder& coder);
    ~NSButtonCell() override;
    void encodeWithCoder(NSCoder& coder) const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;

    [[nodiscard]] NSString* title() const override;
    void setTitle(NSString* title) override;
    /// Where one was set, else the title with the cell's attributes.
    [[nodiscard]] Ref<NSAttributedString> attributedTitle() const;
    void setAttributedTitle(NSAttributedString* title);
    /// Shown while on or pressed, where highlightsBy or showsStateBy asks for contents.
    [[nodiscard]] NSString* alternateTitle() const noexcept;
    void setAlternateTitle(NSString* title);
    [[nodiscard]] NSImage* alternateImage() const noexcept;
    void setAlternateImage(NSImage* image);
    [[nodiscard]] NSCellImagePosition imagePosition() const noexcept { return imagePosition_; }
    void setImagePosition(NSCellImagePosition p);
    [[nodiscard]] BOOL imageDimsWhenDisabled() const noexcept { return imageDims_; }
    void setImageDimsWhenDisabled(BOOL f) noexcept { imageDims_ = f; }

    virtual void setButtonType(NSButtonType type);
    [[nodiscard]] NSBezelStyle bezelStyle() const noexcept { return bezel_; }
    void setBezelStyle(NSBezelStyle s);
    /// NSCellMask bits.
    [[nodiscard]] NSUInteger highlightsBy() const noexcept { return highlightsBy_; }
    void setHighlightsBy(NSUInteger mask) noexcept { highlightsBy_ = mask; }
    [[nodiscard]] NSUInteger showsStateBy() const noexcept { return showsStateBy_; }
    void setShowsStateBy(NSUInteger mask) noexcept { showsStateBy_ = mask; }
    [[nodiscard]] BOOL isTransparent() const noexcept { return transparent_; }
    void setTransparent(BOOL f);
    [[nodiscard]] BOOL showsBorderOnlyWhileMouseInside() const noexcept { return borderInside_; }
    void setShowsBorderOnlyWhileMouseInside(BOOL f);
    virtual void mouseEntered(NSEvent* e);
    virtual void mouseExited(NSEvent* e);
    [[nodiscard]] Ref<NSString> keyEquivalent() const override;
    void setKeyEquivalent(NSString* key);
    [[nodiscard]] NSUInteger keyEquivalentModifierMask() const override { return keyMask_; }
    void setKeyEquivalentModifierMask(NSUInteger mask) noexcept { keyMask_ = mask; }
    [[nodiscard]] BOOL isCheckBox() const noexcept { return kind_ == NSSwitchButton; }
    [[nodiscard]] BOOL isRadioButton() const noexcept { return kind_ == NSRadioButton; }

    [[nodiscard]] NSSize cellSizeForBounds(const NSRect& bounds) const override;
    [[nodiscard]] NSRect titleRectForBounds(const NSRect& bounds) const override;
    [[nodiscard]] NSRect imageRectForBounds(const NSRect& bounds) const override;
    [[nodiscard]] NSRect drawingRectForBounds(const NSRect& bounds) const override;
    void drawWithFrame_inView(const NSRect& frame, NSView* view) override;
    void drawInteriorWithFrame_inView(const NSRect& frame, NSView* view) override;
    virtual void drawBezelWithFrame_inView(const NSRect& frame, NSView* view);
    virtual NSRect drawTitle_withFrame_inView(NSAttributedString* title, const NSRect& frame, NSView* view);
    virtual void drawImage_withFrame_inView(NSImage* image, const NSRect& frame, NSView* view);
    /// A press turns a radio button on and leaves a momentary one as it is.
    [[nodiscard]] NSInteger nextState() const noexcept override;
    /// Where the mark of a check box or radio button stands.
    [[nodiscard]] NSRect markRectForBounds(const NSRect& bounds) const;

protected:
    [[nodiscard]] NSColor* effectiveTextColor() const override;
    /// Whether the alternate title and image show: on or pressed, not both.
    [[nodiscard]] BOOL showsAlternate() const noexcept;
    /// Whether the face has the accent's colour: the default button of a key window, or one that shows being on.
    [[nodiscard]] BOOL facesAccent() const;

private:
    [[nodiscard]] NSImage* shownImage() const;
    [[nodiscard]] Ref<NSAttributedString> shownTitle() const;
    [[nodiscard]] bool hasTitle() const noexcept;
    [[nodiscard]] NSRect contentRectForBounds(const NSRect& bounds) const;
    void placeContents(const NSRect& content, NSRect* image, NSRect* title) const;

    Ref<NSString> title_, alternateTitle_, key_;
    Ref<NSAttributedString> attributedTitle_;
    Ref<NSImage> alternateImage_;
    NSUInteger highlightsBy_ = NSPushInCellMask | NSChangeGrayCellMask, showsStateBy_ = NSNoCellMask;
    NSUInteger keyMask_ = 0;
    NSButtonType kind_ = NSMomentaryPushInButton;
    NSBezelStyle bezel_ = NSRoundedBezelStyle;
    NSCellImagePosition imagePosition_ = NSNoImage;
    bool transparent_ = false;
    bool imageDims_ = true;
    bool borderInside_ = false;
    bool mouseInside_ = false;
};

} // namespace libvue
