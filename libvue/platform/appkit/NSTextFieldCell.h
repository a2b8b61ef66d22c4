#pragma once

#include <libvue/platform/appkit/NSActionCell.h>

namespace libvue {

/// Shows a text, and lets it be edited in the window's field editor.
class LIBVUE_API NSTextFieldCell : public NSActionCell {
public:
    static void describe(ClassDescription<NSTextFieldCell, NSActionCell>& c);
    NSTextFieldCell();
    explicit NSTextFieldCell(NSString* text);
    explicit NSTextFieldCell(NSCoder& coder);
    ~NSTextFieldCell() override;
    void encodeWithCoder(NSCoder& coder) const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;

    [[nodiscard]] NSColor* textColor() const noexcept;
    /// Null for the colour of the theme.
    virtual void setTextColor(NSColor* c);
    [[nodiscard]] NSColor* backgroundColor() const noexcept;
    /// Null for the colour of the theme. It is drawn only where drawsBackground, and not under a bezel.
    virtual void setBackgroundColor(NSColor* c);
    [[nodiscard]] BOOL drawsBackground() const noexcept { return drawsBackground_; }
    virtual void setDrawsBackground(BOOL f);
    /// Shown, pale, while the text is empty; null for none.
    [[nodiscard]] NSString* placeholderString() const noexcept;
    void setPlaceholderString(NSString* s);

    [[nodiscard]] NSSize cellSizeForBounds(const NSRect& bounds) const override;
    [[nodiscard]] NSRect drawingRectForBounds(const NSRect& bounds) const override;
    [[nodiscard]] NSRect titleRectForBounds(const NSRect& bounds) const override;
    void drawWithFrame_inView(const NSRect& frame, NSView* view) override;
    void drawInteriorWithFrame_inView(const NSRect& frame, NSView* view) override;
    NSText* setUpFieldEditorAttributes(NSText* editor) override;

protected:
    [[nodiscard]] NSColor* effectiveTextColor() const override;

private:
    Ref<NSColor> textColor_, backgroundColor_;
    Ref<NSString> placeholder_;
    bool drawsBackground_ = false;
};

} // namespace libvue
