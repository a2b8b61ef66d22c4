#pragma once

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// A display, as it was when it was asked for. Rectangles are in screen coordinates: points, y upward, the origin in
/// the bottom left corner of the first screen.
class LIBVUE_API NSScreen : public NSObject {
public:
    static void describe(ClassDescription<NSScreen>& c);
    NSScreen(const NSRect& frame, const NSRect& visibleFrame, CGFloat scale, NSString* name);
    ~NSScreen() override;

    /// The first is the one whose origin is (0, 0).
    [[nodiscard]] static Ref<NSArray> screens();
    /// The screen of the key window, else the first one; null where there is none.
    [[nodiscard]] static NSScreen* mainScreen();
    /// The one that shows most of the rectangle; null where none shows any of it.
    [[nodiscard]] static NSScreen* screenForRect_(const NSRect& rect);

    [[nodiscard]] NSRect frame() const noexcept { return frame_; }
    /// What windows may use: the frame without bars and docks.
    [[nodiscard]] NSRect visibleFrame() const noexcept { return visibleFrame_; }
    /// Pixels a point.
    [[nodiscard]] CGFloat backingScaleFactor() const noexcept { return scale_; }
    [[nodiscard]] NSString* localizedName() const noexcept;

    /// Asks the desktop anew at the next use; equal screens keep their objects.
    static void invalidate_();

private:
    NSRect frame_;
    NSRect visibleFrame_;
    CGFloat scale_;
    Ref<NSString> name_;
};

} // namespace libvue
