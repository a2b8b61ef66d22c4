#pragma once

#include <vector>

#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSView.h>

namespace libvue {

/// The dirty rectangles of a display pass, in base coordinates. Few: those that come too close are united.
struct NSView::DirtySink {
    static constexpr std::size_t most = 12;
    std::vector<NSRect> rects;

    void add(const NSRect& r);
    [[nodiscard]] NSRect bounds() const noexcept;
};

/// The rectangles that the display pass under way draws, in base coordinates: views that touch none of them are left
/// out.
class DrawRegionScope {
public:
    explicit DrawRegionScope(const std::vector<NSRect>& rects) noexcept : former_(current_) {
        current_ = rects.size() > 1 ? &rects : nullptr;
    }
    ~DrawRegionScope() { current_ = former_; }
    DrawRegionScope(const DrawRegionScope&) = delete;
    DrawRegionScope& operator=(const DrawRegionScope&) = delete;

    /// Null where there is one rectangle, or no pass.
    [[nodiscard]] static const std::vector<NSRect>* current() noexcept { return current_; }

private:
    inline static const std::vector<NSRect>* current_ = nullptr;
    const std::vector<NSRect>* former_;
};

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
    std::vector<std::pair<NSTrackingRectTag, Ref<NSObject>>> trackingRects;
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
