#pragma once

#include <memory>
#include <vector>

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/Export.h>
#include <libvue/platform/foundation/NSGeometry.h>

namespace libvue {

/// Keeps what a view draws, subviews and all, in a picture for as long as it lives: where the view only moves, the
/// display passes of its window copy the picture, at the nearest whole pixel, and send no drawRect:. What changes in
/// the view has it drawn anew. A second one of the same view does nothing.
///
/// For views that are moved frame by frame. Drawing elsewhere than to a window is as ever.
class LIBVUE_API ViewPicture {
public:
    /// Keeps the view; null does nothing.
    explicit ViewPicture(NSView* view);
    ViewPicture(ViewPicture&& other) noexcept;
    ViewPicture(const ViewPicture&) = delete;
    ViewPicture& operator=(const ViewPicture&) = delete;
    ViewPicture& operator=(ViewPicture&&) = delete;
    ~ViewPicture();

    // Between the pictures and the display pass.

    [[nodiscard]] static bool any_() noexcept { return count_ != 0; }
    /// Something of the view is to be drawn anew.
    static void viewChanged_(const NSView* view) noexcept;
    /// Whether the view was drawn by its picture into the context, which is in the space of its superview.
    [[nodiscard]] static bool draw_(NSView* view, NSGraphicsContext* context);
    /// Whether pictures without any hole will be drawn over all of that part of the window, in base coordinates.
    [[nodiscard]] static bool cover_(const NSWindow* window, const NSRect& rect);

private:
    struct Kept;
    /// A few at a time: searched from end to end.
    static std::vector<Kept*>& all();
    static Kept* of(const NSView* view) noexcept;
    static std::size_t count_;
    std::unique_ptr<Kept> kept_;
};

} // namespace libvue
