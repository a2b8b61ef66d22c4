#include <libvue/platform/appkit/PopoverWindow.h>

#include <cmath>

#include <libvue/platform/appkit/BalloonDrawing.h>
#include <libvue/platform/appkit/BalloonPlacement.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/Palette.h>

namespace libvue {

using namespace balloon;

namespace {

constexpr CGFloat kDragStart = 4; ///< points that the pointer moves before a press becomes a drag
constexpr CGFloat kTipRounding = 3;
constexpr BalloonDrawing::Shadow kShadow{.blur = 10, .drop = 3, .alpha = 0.28};
/// A quarter of a circle, as the control points of a curve.
constexpr CGFloat kRound = 0.5523;

/// The balloon's outline: as of the lower edge, turned and mirrored to the edge that is meant.
class Outline {
public:
    Outline(const NSRect& body, NSRectEdge edge) : body_(body), edge_(edge), path_(NSBezierPath::bezierPath()) {}

    /// `centre` of the arrow, from the beginning of the side.
    Ref<NSBezierPath> withArrow(CGFloat centre) {
        const CGFloat w = across() ? body_.size.width : body_.size.height;
        const CGFloat h = across() ? body_.size.height : body_.size.width;
        constexpr CGFloat r = kRadius, a = kArrowHalf, l = kArrowLength, t = kTipRounding;
        path_->moveToPoint(at(r, 0));
        if (w >= 2 * (r + a)) {
            path_->lineToPoint(at(centre - a, 0));
            // Hollow flanks and a tip that does not prick.
            curve({centre - t, -l + t * 0.5}, {centre - a * 0.45, 0}, {centre - t - 1.5, -l + t});
            curve({centre + t, -l + t * 0.5}, {centre - t * 0.4, -l - 0.4}, {centre + t * 0.4, -l - 0.4});
            curve({centre + a, 0}, {centre + t + 1.5, -l + t}, {centre + a * 0.45, 0});
        }
        path_->lineToPoint(at(w - r, 0));
        curve({w, r}, {w - r + r * kRound, 0}, {w, r - r * kRound});
        path_->lineToPoint(at(w, h - r));
        curve({w - r, h}, {w, h - r + r * kRound}, {w - r + r * kRound, h});
        path_->lineToPoint(at(r, h));
        curve({0, h - r}, {r - r * kRound, h}, {0, h - r + r * kRound});
        path_->lineToPoint(at(0, r));
        curve({r, 0}, {0, r - r * kRound}, {r - r * kRound, 0});
        path_->closePath();
        return path_;
    }

private:
    /// The arrow points down on a balloon above its anchor, and so on.
    [[nodiscard]] bool across() const noexcept { return edge_ == NSMinYEdge || edge_ == NSMaxYEdge; }
    /// Along the arrow's side, and from it into the body.
    [[nodiscard]] NSPoint at(CGFloat along, CGFloat in) const noexcept {
        switch (edge_) {
        case NSMinYEdge:
            return {NSMinX(body_) + along, NSMaxY(body_) - in};
        case NSMaxXEdge:
            return {NSMinX(body_) + in, NSMinY(body_) + along};
        case NSMinXEdge:
            return {NSMaxX(body_) - in, NSMinY(body_) + along};
        default:
            return {NSMinX(body_) + along, NSMinY(body_) + in};
        }
    }
    void curve(NSPoint end, NSPoint c1, NSPoint c2) {
        path_->curveToPoint_controlPoint1_controlPoint2(at(end.x, end.y), at(c1.x, c1.y), at(c2.x, c2.y));
    }

    NSRect body_;
    NSRectEdge edge_;
    Ref<NSBezierPath> path_;
};

/// Draws the balloon, and holds the popover's view as its only subview.
class PopoverView : public NSView {
public:
    static void describe(ClassDescription<PopoverView, NSView>&) {}
    explicit PopoverView(PopoverWindow* window) : window_(window) {}

    NSRectEdge edge = NSMinYEdge;

    [[nodiscard]] NSRect body() const noexcept {
        NSRect r = NSInsetRect(bounds(), kShadowRoom, kShadowRoom);
        constexpr CGFloat more = kShadowRoom - kArrowLength;
        // The arrow's side has no shadow: it would lie over the anchor, and take its clicks away.
        if (edge == NSMinXEdge) r.size.width += more;
        if (edge == NSMinYEdge) r.size.height += more;
        if (edge == NSMaxXEdge) r.origin.x -= more, r.size.width += more;
        if (edge == NSMaxYEdge) r.origin.y -= more, r.size.height += more;
        return r;
    }

    void drawRect(const NSRect&) override {
        const Ref<NSPopover> p(window_ ? window_->popover() : nullptr);
        if (!p || !window()) return;
        const NSRect r = body();
        const bool across = edge == NSMinYEdge || edge == NSMaxYEdge;
        const NSRect anchor = window()->convertRectFromScreen(p->anchorOnScreen_());
        const CGFloat centre = balloonArrowCentre(r, anchor, edge) - (across ? NSMinX(r) : NSMinY(r));
        const Ref<NSBezierPath> outline = Outline(r, edge).withArrow(centre);
        outline->setLineWidth(1);
        const Ref<NSColor> fill(NSColor::systemColor(SystemColor::menuBackground));
        const BalloonDrawing::Line border{outline, NSColor::separatorColor()};
        drawBalloon(window(), {bounds().size, NSInsetRect(r, kRadius, kRadius), outline, fill, {&border, 1}, kShadow});
    }

    void resizeSubviewsWithOldSize(const NSSize&) override { fit(); }
    void fit() {
        if (!subviews().empty()) subviews()[0]->setFrame(body());
    }

    void mouseDown(NSEvent* e) override { press_ = e->fields().screenLocation, pressed_ = true; }
    void mouseDragged(NSEvent* e) override {
        const NSPoint p = e->fields().screenLocation;
        if (!pressed_ || std::hypot(p.x - press_.x, p.y - press_.y) < kDragStart) return;
        pressed_ = false;
        if (const Ref<NSPopover> popover{window_ ? window_->popover() : nullptr}) popover->draggedFrom_(press_);
    }
    void mouseUp(NSEvent*) override { pressed_ = false; }

private:
    Weak<PopoverWindow> window_;
    NSPoint press_;
    bool pressed_ = false;
};

PopoverView* viewOf(const PopoverWindow* w) { return static_cast<PopoverView*>(w->contentView()); }

} // namespace

void PopoverWindow::describe(ClassDescription<PopoverWindow, NSPanel>&) {}

PopoverWindow::PopoverWindow(NSPopover* popover) : NSPanel(NSZeroRect, NSBorderlessWindowMask), popover_(popover) {
    setContentView(make<PopoverView>(this));
    setOpaque(NO);
    setBackgroundColor(NSColor::clearColor());
    setMovable(NO);
    setExcludedFromWindowsMenu(YES);
    setBecomesKeyOnlyIfNeeded(YES);
}

PopoverWindow::~PopoverWindow() = default;

void PopoverWindow::setEdge(NSRectEdge edge) {
    PopoverView* view = viewOf(this);
    view->setNeedsDisplay(YES);
    if (view->edge == edge) return;
    view->edge = edge;
    view->fit();
}

NSRect PopoverWindow::body() const { return viewOf(this)->body(); }

void PopoverWindow::setContent(NSView* view) {
    PopoverView* own = viewOf(this);
    while (!own->subviews().empty() && own->subviews()[0] != view)
        own->subviews()[0]->removeFromSuperview();
    if (!view) return;
    own->addSubview(view);
    own->fit();
}

void PopoverWindow::cancelOperation(NSObject* sender) {
    if (performCancelButton()) return;
    if (const Ref<NSPopover> p = popover_.ref(); p && p->behavior() != NSPopoverBehaviorApplicationDefined)
        p->performClose(sender);
}

} // namespace libvue
