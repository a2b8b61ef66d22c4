#include <libvue/platform/appkit/NSScrollView.h>

#include <algorithm>
#include <utility>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/ThemeDrawing.h>
#include <libvue/platform/foundation/FiniteGeometry.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/ScopeExit.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/Palette.h>

namespace libvue {

namespace {
constexpr CGFloat kBorder = 1;
/// What a document may be longer than its room without scrolling: sums of fractions are not exact.
constexpr CGFloat kSlack = 0.01;
} // namespace

void NSScrollView::describe(ClassDescription<NSScrollView, NSView>& c) {
    c.answers<&NSScrollView::scrollerMoved>("scrollerMoved:");
    c.answers<&NSScrollView::pageDown>("scrollPageDown:");
    c.answers<&NSScrollView::pageUp>("scrollPageUp:");
    c.answers<&NSScrollView::pageDown>("pageDown:");
    c.answers<&NSScrollView::pageUp>("pageUp:");
    c.answers<&NSScrollView::scrollLineDown>("scrollLineDown:");
    c.answers<&NSScrollView::scrollLineUp>("scrollLineUp:");
    c.answers<&NSScrollView::scrollToBeginningOfDocument>("scrollToBeginningOfDocument:");
    c.answers<&NSScrollView::scrollToEndOfDocument>("scrollToEndOfDocument:");
}

NSScrollView::NSScrollView() : NSScrollView(NSZeroRect) {}
NSScrollView::NSScrollView(const NSRect& frame) : NSView(frame) {
    setContentView(make<NSClipView>());
    NSNotificationCenter::defaultCenter()->addObserver<&NSScrollView::desktopChanged>(
        this, NSApplicationDidChangeAppearanceNotification, nullptr);
}
NSScrollView::~NSScrollView() { NSNotificationCenter::defaultCenter()->removeObserver(this); }

NSView* NSScrollView::documentView() const { return clip_ ? clip_->documentView() : nullptr; }

void NSScrollView::setDocumentView(NSView* view) {
    const Ref<NSView> kept(view);
    clip_->setDocumentView(view);
    tile();
}

NSClipView* NSScrollView::contentView() const noexcept { return clip_; }

void NSScrollView::setContentView(NSClipView* clip) {
    if (!clip || clip_.get() == clip) return;
    const Ref<NSClipView> kept(clip);
    if (clip_) {
        NSNotificationCenter::defaultCenter()->removeObserver_name_object(this, NSViewBoundsDidChangeNotification,
                                                                          clip_);
        clip_->removeFromSuperview();
    }
    clip_ = clip;
    addSubview_positioned_relativeTo(clip, NSWindowBelow, nullptr);
    NSNotificationCenter::defaultCenter()->addObserver<&NSScrollView::documentChanged>(
        this, NSViewBoundsDidChangeNotification, clip);
    tile();
}

NSRect NSScrollView::documentVisibleRect() const { return clip_->documentVisibleRect(); }
NSSize NSScrollView::contentSize() const { return clip_->frame().size; }

void NSScrollView::setBorderType(NSBorderType t) {
    border_ = t;
    tile();
    setNeedsDisplay(YES);
}
NSColor* NSScrollView::backgroundColor() const { return clip_->backgroundColor(); }
void NSScrollView::setBackgroundColor(NSColor* color) { clip_->setBackgroundColor(color); }
BOOL NSScrollView::drawsBackground() const { return clip_->drawsBackground(); }
void NSScrollView::setDrawsBackground(BOOL f) { clip_->setDrawsBackground(f); }

NSScroller* NSScrollView::verticalScroller() const noexcept { return vertical_; }
NSScroller* NSScrollView::horizontalScroller() const noexcept { return horizontal_; }

void NSScrollView::addScroller(Ref<NSScroller>& scroller, NSSize size) {
    if (scroller) return;
    scroller = make<NSScroller>(NSRect{{0, 0}, size});
    scroller->setTarget(this);
    scroller->setAction(sel("scrollerMoved:"));
    scroller->setScrollerStyle(scrollerStyle());
    addSubview(scroller);
}
void NSScrollView::setHasVerticalScroller(BOOL f) {
    hasVertical_ = f;
    if (f) addScroller(vertical_, {NSScroller::scrollerWidth(), 100});
    tile();
}
void NSScrollView::setHasHorizontalScroller(BOOL f) {
    hasHorizontal_ = f;
    if (f) addScroller(horizontal_, {100, NSScroller::scrollerWidth()});
    tile();
}
void NSScrollView::setAutohidesScrollers(BOOL f) {
    autohides_ = f;
    tile();
}

NSScrollerStyle NSScrollView::scrollerStyle() const { return style_ ? *style_ : NSScroller::preferredScrollerStyle(); }
void NSScrollView::setScrollerStyle(NSScrollerStyle style) {
    style_ = style;
    applyScrollerStyle();
}
void NSScrollView::applyScrollerStyle() {
    const NSScrollerStyle style = scrollerStyle();
    for (NSScroller* s : {vertical_.get(), horizontal_.get()})
        if (s) s->setScrollerStyle(style);
    setNeedsDisplay(YES);
    tile();
}
void NSScrollView::desktopChanged(NSNotification*) {
    const NSScroller* any = vertical_ ? vertical_.get() : horizontal_.get();
    if (any && any->scrollerStyle() != scrollerStyle()) applyScrollerStyle();
}
void NSScrollView::flashScrollers() {
    for (NSScroller* s : {vertical_.get(), horizontal_.get()})
        if (s) s->flash();
}

// Placing.

void NSScrollView::tile() {
    if (tiling_ || !clip_) return;
    const Ref<NSScrollView> self(this);
    {
        tiling_ = true;
        const ScopeExit ended([this] { tiling_ = false; });
        placeParts();
    }
    // Not to be placed again for what was only just found to fit.
    const ScopeExit ended([this, outer = std::exchange(reflectsOnly_, true)] { reflectsOnly_ = outer; });
    reflectScrolledClipView(clip_);
}

NSRect NSScrollView::room() const {
    const CGFloat edge = border_ == NSNoBorder ? 0 : kBorder;
    const NSRect r = NSInsetRect(bounds(), edge, edge);
    return {r.origin, {std::max(0.0, r.size.width), std::max(0.0, r.size.height)}};
}

NSScrollView::Bars NSScrollView::needed() const {
    if (!autohides_) return {hasVertical_, hasHorizontal_};
    const NSSize all = clip_->documentRect().size, shown = clip_->bounds().size, here = clip_->frame().size;
    const Bars part{all.height > shown.height + kSlack, all.width > shown.width + kSlack};
    // Scrollers that take room must not hold each other up: without them there may be room for all.
    if ((part.vertical || part.horizontal) && here.width > 0 && here.height > 0) {
        const NSSize whole = room().size;
        if (all.width <= whole.width * shown.width / here.width + kSlack &&
            all.height <= whole.height * shown.height / here.height + kSlack)
            return {false, false};
    }
    return {hasVertical_ && part.vertical, hasHorizontal_ && part.horizontal};
}

NSScrollView::Bars NSScrollView::shownBars() const {
    return {vertical_ && !vertical_->isHidden(), horizontal_ && !horizontal_->isHidden()};
}

void NSScrollView::placeClip(const NSRect& room, Bars shown) {
    const NSScroller* any = vertical_ ? vertical_.get() : horizontal_.get();
    // Scrollers that fade out lie over the document.
    const CGFloat w = any && any->scrollerStyle() == NSScrollerStyleLegacy ? NSScroller::scrollerWidth() : 0;
    clip_->setFrame({room.origin,
                     {std::max(0.0, room.size.width - (shown.vertical ? w : 0)),
                      std::max(0.0, room.size.height - (shown.horizontal ? w : 0))}});
}

void NSScrollView::placeScrollers(const NSRect& room, Bars shown) {
    const CGFloat w = NSScroller::scrollerWidth();
    if (vertical_) {
        vertical_->setFrame(
            {{NSMaxX(room) - w, room.origin.y}, {w, std::max(w, room.size.height - (shown.horizontal ? w : 0))}});
        vertical_->setHidden(!shown.vertical);
    }
    if (horizontal_) {
        horizontal_->setFrame(
            {{room.origin.x, NSMaxY(room) - w}, {std::max(w, room.size.width - (shown.vertical ? w : 0)), w}});
        horizontal_->setHidden(!shown.horizontal);
    }
}

void NSScrollView::placeParts() {
    const NSRect r = room();
    if (!isFinite(r)) return;
    Bars shown = shownBars();
    placeClip(r, shown);
    Bars wanted = needed();
    // The document may follow its room and become longer or shorter by it. One that was added in this pass stays, so
    // there is an end to it.
    for (int pass = 0; pass < 3 && wanted != shown; ++pass) {
        shown = pass == 0 ? wanted : Bars{shown.vertical || wanted.vertical, shown.horizontal || wanted.horizontal};
        placeClip(r, shown);
        wanted = needed();
    }
    placeScrollers(r, shown);
}

void NSScrollView::reflectScrolledClipView(NSClipView* clip) {
    if (clip != clip_.get() || tiling_) return;
    placeKnobs();
    if (!reflectsOnly_ && needed() != shownBars()) tile();
}

void NSScrollView::placeKnobs() {
    const NSRect d = clip_->documentRect(), b = clip_->bounds();
    const auto set = [](NSScroller* s, CGFloat offset, CGFloat extent, CGFloat shown) {
        if (!s) return;
        s->setKnobProportion(extent > shown ? shown / extent : 1);
        s->setPosition(extent > shown ? offset / (extent - shown) : 0);
    };
    const NSPoint offset = scrolledBy();
    set(vertical_, offset.y, d.size.height, b.size.height);
    set(horizontal_, offset.x, d.size.width, b.size.width);
}

void NSScrollView::documentChanged(NSNotification*) { reflectScrolledClipView(clip_); }

void NSScrollView::drawRect(const NSRect&) {
    const Bars shown = shownBars();
    if (shown.vertical && shown.horizontal && vertical_->scrollerStyle() == NSScrollerStyleLegacy) {
        const CGFloat w = NSScroller::scrollerWidth();
        const NSRect r = room();
        drawScrollerSlot({{NSMaxX(r) - w, NSMaxY(r) - w}, {w, w}}, YES, YES);
    }
    if (border_ != NSNoBorder)
        strokeRoundedInside(alignedToPixels(bounds()), 0, NSColor::systemColor(SystemColor::controlBorder));
}

void NSScrollView::resizeSubviewsWithOldSize(const NSSize&) { tile(); }

AccessibilityDescription NSScrollView::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"scroll area"_ns;
    return d;
}

} // namespace libvue
