#pragma once

#include <memory>

#include <libvue/platform/appkit/NSView.h>

namespace libvue {

class Autoscroller;

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

    /// The nearest origin that does not scroll past the document. A part that is no number stays as it is.
    [[nodiscard]] virtual NSPoint constrainScrollPoint(NSPoint p) const;
    /// Moves the bounds origin there, as it is; tells the scroll view nothing. What is not finite is ignored.
    virtual void scrollToPoint(NSPoint p);
    /// Scrolls as little as shows the rectangle, and reflects it. NO where nothing moved.
    BOOL scrollRectToVisible_ofView(const NSRect& r, NSView* view);
    /// While the mouse is dragged outside: scrolls towards it, the faster the further it is, and has the drag sent
    /// again until it comes in, ends, or nothing is left to show. NO where nothing moved.
    BOOL autoscroll(NSEvent* e);

    /// Moves the bounds origin by that much, to whole pixels, and reflects it; what is finer than a pixel is kept for
    /// the next step. NO at the end of the document.
    BOOL scrollBy_(NSSize distance);
    /// To that origin, to whole pixels.
    BOOL scrollTo_(NSPoint origin);

    /// As its document.
    [[nodiscard]] BOOL isFlipped() const override;
    [[nodiscard]] BOOL isOpaque() const override { return drawsBackground_; }
    void drawRect(const NSRect& r) override;
    void resizeSubviewsWithOldSize(const NSSize& oldSize) override;
    void willRemoveSubview(NSView* view) override;

private:
    void documentFrameDidChange(NSNotification* n);
    [[nodiscard]] NSPoint onPixels(NSPoint p) const;
    /// Where steps add up: the bounds origin, and what was lost to whole pixels.
    [[nodiscard]] NSPoint exactOrigin() const noexcept;
    void reflect();

    Weak<NSView> document_;
    Ref<NSColor> background_;
    std::unique_ptr<Autoscroller> autoscroller_;
    NSPoint exact_, placed_; ///< where a step led, and the origin that it was rounded to
    bool drawsBackground_ = true;
    bool resizing_ = false;
};

/// Sends the drag to the clip view that the view stands in; NO where there is none.
LIBVUE_API BOOL autoscroll(NSView* view, NSEvent* drag);

} // namespace libvue
