#include <libvue/platform/appkit/NSView.h>

#include <cmath>

#include <libvue/platform/appkit/NSPrintOperation.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/PrintPages.h>
#include <libvue/platform/appkit/PrintState.h>

namespace libvue {

namespace {

/// The end of a page in one direction, moved up to the start of what it would cut. `sign` is the direction of reading.
template <class Start, class End>
CGFloat spared(const SubviewList& views, CGFloat from, CGFloat to, CGFloat limit, CGFloat sign, const Start& start,
               const End& end) {
    // Another view may be cut at the new place, so it goes round until none is.
    for (bool moved = true; moved;) {
        moved = false;
        for (const NSView* v : views) {
            const NSRect frame = v->frame();
            if (v->isHidden() || NSIsEmptyRect(frame)) continue;
            const CGFloat begins = start(frame);
            const bool isCut = (to - begins) * sign > 0 && (end(frame) - to) * sign > 0;
            if (!isCut || (begins - limit) * sign < 0 || (begins - from) * sign <= 0) continue;
            to = begins;
            moved = true;
        }
    }
    return to;
}

} // namespace

BOOL NSView::knowsPageRange(NSRange*) { return NO; }

NSRect NSView::rectForPage(NSInteger) { return NSZeroRect; }

NSRect NSView::divisionForPage_(NSInteger page) {
    auto* operation = NSPrintOperation::currentOperation();
    auto* pages = operation && operation->view() == this ? operation->pages_() : nullptr;
    return pages ? pages->automaticPage(page) : NSZeroRect;
}

void NSView::adjustPageHeightNew_top_bottom_limit(CGFloat* newBottom, CGFloat top, CGFloat bottom, CGFloat limit) {
    if (!newBottom) return;
    const auto low = [](const NSRect& r) { return NSMinY(r); };
    const auto high = [](const NSRect& r) { return NSMaxY(r); };
    *newBottom = isFlipped() ? spared(subviews_, top, bottom, limit, 1, low, high)
                             : spared(subviews_, top, bottom, limit, -1, high, low);
}

void NSView::adjustPageWidthNew_left_right_limit(CGFloat* newRight, CGFloat left, CGFloat right, CGFloat limit) {
    if (!newRight) return;
    *newRight = spared(
        subviews_, left, right, limit, 1, [](const NSRect& r) { return NSMinX(r); },
        [](const NSRect& r) { return NSMaxX(r); });
}

NSPoint NSView::locationOfPrintRect(const NSRect& r) {
    auto* operation = NSPrintOperation::currentOperation();
    if (!operation || operation->isCopyingOperation()) return NSZeroPoint;
    const NSPrintInfo* info = operation->printInfo();
    const NSRect area = info->areaWithinMargins();
    const CGFloat scale = operation->drawnScale_();
    const NSSize size{r.size.width * scale, r.size.height * scale};
    const CGFloat top = info->paperSize().height - info->topMargin();
    return {info->isHorizontallyCentered() ? area.origin.x + (area.size.width - size.width) / 2 : area.origin.x,
            info->isVerticallyCentered() ? area.origin.y + (area.size.height - size.height) / 2 : top - size.height};
}

void NSView::drawPageBorderWithSize(const NSSize&) {}

void NSView::beginPageInRect_atPlacement(const NSRect&, NSPoint) {}

Ref<NSString> NSView::printJobTitle() { return window_ ? Ref<NSString>(window_->title()) : nullptr; }

void NSView::print(NSObject*) {
    const Ref<NSView> self(this);
    const auto operation = NSPrintOperation::printOperationWithView(this);
    operation->runOperation();
}

} // namespace libvue
