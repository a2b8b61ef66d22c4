#pragma once

#include <vector>

#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSView.h>

namespace libvue {

/// What few views have.
struct NSView::Extras {
    struct CursorRect {
        NSRect rect;
        Ref<NSObject> cursor; ///< an NSCursor
    };
    struct ToolTipRect {
        NSToolTipTag tag;
        NSRect rect;
        BOOL wholeView; ///< set by setToolTip: follows the bounds
        Weak<NSObject> owner;
        Ref<NSString> text; ///< kept where the owner is itself the text
        void* userData;
    };
    std::vector<CursorRect> cursorRects;
    std::vector<ToolTipRect> toolTips;
    std::vector<Ref<NSObject>> trackingAreas; ///< NSTrackingArea
    Ref<NSString> toolTip;
    Ref<NSString> identifier;
    Ref<NSString> accessibilityLabel;
    Ref<NSMenu> menu;
    Weak<NSView> nextKeyView;
    Weak<NSView> previousKeyView;
    CGFloat alpha = 1;
    /// Where the view stood when its tracking areas were brought up to date last: in which window, and there in base
    /// coordinates.
    struct Placed {
        NSInteger window = 0;
        NSRect bounds, inBase, visibleInBase;
        friend bool operator==(const Placed&, const Placed&) = default;
    } trackedAt;
};

} // namespace libvue
