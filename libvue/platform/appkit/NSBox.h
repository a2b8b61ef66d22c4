#pragma once

#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSView.h>

namespace libvue {

enum NSTitlePosition : NSUInteger {
    NSNoTitle = 0,
    NSAboveTop = 1,
    NSAtTop = 2,
    NSBelowTop = 3,
    NSAboveBottom = 4,
    NSAtBottom = 5,
    NSBelowBottom = 6
};
enum NSBoxType : NSUInteger {
    NSBoxPrimary = 0,
    NSBoxSecondary = 1,
    NSBoxSeparator = 2,
    NSBoxOldStyle = 3,
    NSBoxCustom = 4
};

/// A frame with a title round a content view, a separator line, or a filled shape.
class LIBVUE_API NSBox : public NSView {
public:
    static void describe(ClassDescription<NSBox, NSView>& c);
    NSBox();
    explicit NSBox(const NSRect& frame);
    explicit NSBox(NSCoder& coder);
    ~NSBox() override;
    void encodeWithCoder(NSCoder& coder) const override;

    [[nodiscard]] NSBoxType boxType() const noexcept { return type_; }
    virtual void setBoxType(NSBoxType t);
    [[nodiscard]] NSBorderType borderType() const noexcept { return border_; }
    virtual void setBorderType(NSBorderType t);
    [[nodiscard]] NSTitlePosition titlePosition() const noexcept { return titlePosition_; }
    void setTitlePosition(NSTitlePosition p);
    [[nodiscard]] Ref<NSString> title() const;
    void setTitle(NSString* s);
    [[nodiscard]] NSFont* titleFont() const;
    void setTitleFont(NSFont* f);
    [[nodiscard]] NSCell* titleCell() const noexcept;
    /// In bounds.
    [[nodiscard]] NSRect borderRect() const;
    /// Empty where no title shows.
    [[nodiscard]] NSRect titleRect() const;
    /// Points between the border and the content view.
    [[nodiscard]] NSSize contentViewMargins() const noexcept { return margins_; }
    void setContentViewMargins(NSSize s);
    [[nodiscard]] NSView* contentView() const noexcept { return content_; }
    /// Kept as a subview, as large as the border, the title and the margins leave; null for none. One that is taken
    /// elsewhere is no longer the box's.
    void setContentView(NSView* v);
    /// The frame with which the content view stands there, in the superview's coordinates.
    void setFrameFromContentFrame(const NSRect& r);
    /// Large enough for the subviews of the content view.
    void sizeToFit();
    [[nodiscard]] BOOL isTransparent() const noexcept { return transparent_; }
    void setTransparent(BOOL f);
    // Of a custom box.
    [[nodiscard]] NSColor* fillColor() const noexcept;
    void setFillColor(NSColor* c);
    [[nodiscard]] NSColor* borderColor() const noexcept;
    void setBorderColor(NSColor* c);
    [[nodiscard]] CGFloat borderWidth() const noexcept { return borderWidth_; }
    void setBorderWidth(CGFloat w);
    [[nodiscard]] CGFloat cornerRadius() const noexcept { return radius_; }
    void setCornerRadius(CGFloat r);

    void drawRect(const NSRect& r) override;
    void resizeSubviewsWithOldSize(const NSSize& oldSize) override;
    void willRemoveSubview(NSView* view) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    void placeContent();
    // In a box of those bounds.
    [[nodiscard]] NSRect borderRectIn(const NSRect& bounds) const;
    [[nodiscard]] NSRect titleRectIn(const NSRect& bounds) const;
    [[nodiscard]] NSRect contentFrameIn(const NSRect& bounds) const;

    Ref<NSView> content_;
    Ref<NSCell> titleCell_;
    Ref<NSColor> fill_, borderColor_;
    NSSize margins_{5, 5};
    CGFloat borderWidth_ = 1, radius_ = 0;
    NSBoxType type_ = NSBoxPrimary;
    NSBorderType border_ = NSGrooveBorder;
    NSTitlePosition titlePosition_ = NSAtTop;
    bool transparent_ = false;
};

} // namespace libvue
