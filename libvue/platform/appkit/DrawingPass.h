#pragma once

#include <cstddef>
#include <vector>

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
    explicit DrawRegionScope(const std::vector<NSRect>& rects) noexcept : former_(current_), wasSingle_(single_) {
        current_ = rects.size() > 1 ? &rects : nullptr;
        single_ = rects.size() == 1;
    }
    ~DrawRegionScope() {
        current_ = former_;
        single_ = wasSingle_;
    }
    DrawRegionScope(const DrawRegionScope&) = delete;
    DrawRegionScope& operator=(const DrawRegionScope&) = delete;

    /// Null where there is one rectangle, or no pass.
    [[nodiscard]] static const std::vector<NSRect>* current() noexcept { return current_; }
    /// Whether a pass is under way that draws one rectangle.
    [[nodiscard]] static bool isSingle() noexcept { return single_; }

private:
    inline static const std::vector<NSRect>* current_ = nullptr;
    inline static bool single_ = false;
    const std::vector<NSRect>* former_;
    bool wasSingle_;
};

/// The drawRect that a display pass is in. The views below are drawn right after it: what it changes of them, within
/// what is drawn anyway, needs no mark and no second round.
class DrawingScope {
public:
    /// `clip` in the bounds of the view. Null for drawing that is no display pass.
    DrawingScope(const NSView* view, const NSRect& clip) noexcept : view_(view), clip_(clip), outer_(current_) {
        current_ = this;
    }
    ~DrawingScope() { current_ = outer_; }
    DrawingScope(const DrawingScope&) = delete;
    DrawingScope& operator=(const DrawingScope&) = delete;

    /// Whether that part of the bounds of `superview` is drawn after the drawRect under way, for what stands below it.
    [[nodiscard]] static bool draws(const NSView* superview, const NSRect& r) {
        return current_ && current_->view_ && current_->drawsBelow(superview, r);
    }

private:
    [[nodiscard]] bool drawsBelow(const NSView* superview, const NSRect& r);

    inline static DrawingScope* current_ = nullptr;
    const NSView* view_;
    NSRect clip_, visible_;
    bool asked_ = false;
    DrawingScope* outer_;
};

} // namespace libvue
