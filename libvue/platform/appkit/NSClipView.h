#pragma once

#include <libvue/platform/appkit/NSView.h>

namespace libvue {

/// Shows a part of its document view: its bounds origin is what scrolls.
class LIBVUE_API NSClipView : public NSView {
public:
    static void describe(ClassDescription<NSClipView, NSView>& c);
    NSClipView();
    explicit NSClipView(const NSRect& frame);
    ~NSClipView() override;

    [[nodiscard]] NSView* documentView() const noexcept { return document_; }
    virtual void setDocumentView(NSView* view);
    [[nodiscard]] NSRect documentRect() const;
    /// The part of the document that shows, in its coordinates.
    [[nodiscard]] NSRect documentVisibleRect() const;
    [[nodiscard]] NSColor* backgroundColor() const noexcept;
    void setBackgroundColor(NSColor* color);
    [[nodiscard]] BOOL drawsBackground() const noexcept { return drawsBackground_; }
    void setDrawsBackground(BOOL f);

    /// The nearest origin that does not scroll past the document.
    [[nodiscard]] virtual NSPoint constrainScrollPoint(NSPoint p) const;
    /// Moves the bounds origin there, as it is; tells the scroll view nothing.
    virtual void scrollToPoint(NSPoint p);
    /// Scrolls as little as shows the rectangle, and reflects it. NO where nothing moved.
    BOOL scrollRectToVisible_ofView(const NSRect& r, NSView* view);

    /// As its document.
    [[nodiscard]] BOOL isFlipped() const override;
    [[nodiscard]] BOOL isOpaque() const override { return drawsBackground_; }
    void drawRect(const NSRect& r) override;
    void resizeSubviewsWithOldSize(const NSSize& oldSize) override;
    void willRemoveSubview(NSView* view) override;

private:
    void documentFrameDidChange(NSNotification* n);

    Weak<NSView> document_;
    Ref<NSColor> background_;
    bool drawsBackground_ = true;
};

} // namespace libvue
