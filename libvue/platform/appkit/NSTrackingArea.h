#pragma once

#include <libvue/platform/appkit/NSView.h>

namespace libvue {

/// A rectangle of a view whose owner hears when the pointer enters, moves in and leaves it.
class LIBVUE_API NSTrackingArea : public NSObject {
public:
    static void describe(ClassDescription<NSTrackingArea>& c);
    /// `rect` in the view's coordinates, unused with NSTrackingInVisibleRect. `options` are NSTrackingAreaOptions. The
    /// owner is not kept and hears mouseEntered:, mouseExited:, mouseMoved: and cursorUpdate:.
    NSTrackingArea(const NSRect& rect, NSUInteger options, NSObject* owner, NSDictionary* userInfo);
    ~NSTrackingArea() override;

    [[nodiscard]] NSRect rect() const noexcept { return rect_; }
    [[nodiscard]] NSUInteger options() const noexcept { return options_; }
    [[nodiscard]] NSObject* owner() const noexcept { return owner_; }
    [[nodiscard]] NSDictionary* userInfo() const noexcept;

private:
    NSRect rect_;
    NSUInteger options_;
    Weak<NSObject> owner_;
    Ref<NSDictionary> userInfo_;
};

} // namespace libvue
