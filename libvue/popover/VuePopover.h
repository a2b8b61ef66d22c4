#pragma once

#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/popover/Forward.h>

namespace libvue {

/// Draws the balloon of a KCPopover: a rounded rectangle with an arrow towards what can be seen of the anchor.
///
/// Outlines are kept until invalidateContour. An anchor that moves by itself does not have them built anew: whoever
/// moves it invalidates.
class LIBVUE_API VuePopover : public NSView {
public:
    static void describe(ClassDescription<VuePopover, NSView>& c);
    using NSView::NSView;
    ~VuePopover() override;

    /// The stroked border, built on demand.
    [[nodiscard]] NSBezierPath* contourExterieur();
    void setContourExterieur(NSBezierPath* contour);
    /// Fill and highlight, built on demand.
    [[nodiscard]] NSBezierPath* contourInterieur();
    void setContourInterieur(NSBezierPath* contour);
    /// Gives up both outlines and has the view drawn.
    void invalidateContour();
    /// A new outline in `r`. Without an arrow where nothing of the anchor can be seen.
    [[nodiscard]] Ref<NSBezierPath> contourAvecRectInterieur(const NSRect& r);

    /// Held weakly.
    [[nodiscard]] KCPopover* popover() const noexcept;
    void setPopover(KCPopover* popover);

    void setBounds(const NSRect& bounds) override;
    /// Nothing while the popover is detached: the window has a frame of its own then.
    void drawRect(const NSRect& rect) override;

private:
    [[nodiscard]] NSRect ancreVueDIci();

    Ref<NSBezierPath> contourExterieur_;
    Ref<NSBezierPath> contourInterieur_;
    Weak<KCPopover> popover_;
};

} // namespace libvue
