#pragma once

#include <libvue/platform/appkit/NSControl.h>
#include <libvue/platform/appkit/NSImageCell.h>

namespace libvue {

/// Shows an image. It lets clicks through to what lies behind it.
class LIBVUE_API NSImageView : public NSControl {
public:
    static void describe(ClassDescription<NSImageView, NSControl>& c);
    NSImageView();
    explicit NSImageView(const NSRect& frame);
    explicit NSImageView(NSCoder& coder);
    void encodeWithCoder(NSCoder& coder) const override;
    /// At the size of the image.
    [[nodiscard]] static Ref<NSImageView> imageViewWithImage(NSImage* image);

    /// The cell where it is an image cell, which it is unless another was set.
    [[nodiscard]] NSImageCell* imageCell() const;

    /// Null for none.
    [[nodiscard]] NSImage* image() const;
    virtual void setImage(NSImage* image);
    [[nodiscard]] NSImageScaling imageScaling() const;
    void setImageScaling(NSImageScaling s);
    [[nodiscard]] NSImageAlignment imageAlignment() const;
    void setImageAlignment(NSImageAlignment a);
    [[nodiscard]] NSImageFrameStyle imageFrameStyle() const;
    void setImageFrameStyle(NSImageFrameStyle s);
    /// Whether a person may give it another image; NO at first.
    [[nodiscard]] BOOL isEditable() const noexcept { return editable_; }
    void setEditable(BOOL f) noexcept { editable_ = f; }

    [[nodiscard]] BOOL acceptsFirstResponder() override { return editable_ && NSControl::acceptsFirstResponder(); }
    /// Nothing to press: it goes to the view behind.
    void mouseDown(NSEvent* e) override;
    [[nodiscard]] BOOL mouseDownCanMoveWindow() const override { return !editable_; }
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    bool editable_ = false;
};

} // namespace libvue
