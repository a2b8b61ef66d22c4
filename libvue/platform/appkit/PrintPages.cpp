#include <libvue/platform/appkit/PrintPages.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSPrintOperation.h>
#include <libvue/platform/appkit/PrintFocus.h>
#include <libvue/platform/appkit/PrintState.h>
#include <libvue/platform/appkit/ViewCoordinates.h>
#include <libvue/platform/backend/Canvas.h>
#include <libvue/platform/foundation/ScopeExit.h>
#include <libvue/platform/graphics/Appearance.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>

namespace libvue {

namespace {

// A view that counts more than that means an endless range.
constexpr NSUInteger mostPages = 1000000;

/// Pages that are hardly larger than the area are not made smaller.
constexpr CGFloat tolerance = 0.01;

CGFloat fit(CGFloat area, CGFloat extent) { return area > 0 && extent > area + tolerance ? area / extent : 1; }

} // namespace

PrintPages::PrintPages(NSPrintOperation& operation, NSView* view) : operation_(operation), view_(view) {
    const Ref<NSPrintInfo> info(operation.printInfo());
    scale_ = info->scalingFactor();
    NSRange range{1, 1};
    const auto units = operation.state_->inViewUnits(scale_);
    knows_ = view->knowsPageRange(&range);
    if (knows_) {
        range.length = std::clamp<NSUInteger>(range.length, 1, mostPages);
        range_ = range;
        return;
    }
    // What is to fit is drawn smaller, with pages that are larger in the view's units.
    const NSSize whole = view->bounds().size;
    const NSRect area = info->areaWithinMargins();
    CGFloat smaller = 1;
    if (info->horizontalPagination() == NSFitPagination) smaller = fit(area.size.width, whole.width * scale_);
    if (info->verticalPagination() == NSFitPagination)
        smaller = std::min(smaller, fit(area.size.height, whole.height * scale_));
    scale_ *= smaller;
    divide();
    range_ = {1, std::max<NSUInteger>(1, (columns_.size() - 1) * (rows_.size() - 1))};
}

NSRange PrintPages::wanted(const NSPrintInfo& info) const noexcept {
    if (info.printsAllPages()) return range_;
    const auto first = std::max(range_.location, static_cast<NSUInteger>(info.firstPage()));
    const auto end = std::min(NSMaxRange(range_), static_cast<NSUInteger>(info.lastPage()) + 1);
    return first < end ? NSRange{first, end - first} : NSRange{first, 0};
}

NSRect PrintPages::rectForPage(NSInteger page) {
    if (!knows_) return automaticPage(page);
    const NSRect own = view_->rectForPage(page);
    return NSEqualRects(own, NSZeroRect) ? view_->divisionForPage_(page) : own;
}

template <class Adjust>
std::vector<CGFloat> PrintPages::cuts(CGFloat from, CGFloat to, CGFloat extent, CGFloat limit,
                                      const Adjust& adjust) const {
    std::vector<CGFloat> edges{from};
    const CGFloat sign = to < from ? -1 : 1;
    // A page of nearly no size would never come to an end.
    if (!(extent >= 1)) extent = std::abs(to - from);
    CGFloat at = from;
    while ((to - at) * sign > tolerance && edges.size() <= mostPages) {
        CGFloat end = at + sign * extent;
        if ((to - end) * sign <= tolerance)
            end = to;
        else {
            CGFloat moved = end;
            adjust(&moved, at, end, end - sign * extent * limit);
            // A view may ask for a shorter page and for nothing else.
            if (std::isfinite(moved) && (moved - at) * sign > tolerance && (end - moved) * sign >= 0) end = moved;
        }
        edges.push_back(end);
        at = end;
    }
    if (edges.size() == 1) edges.push_back(to);
    return edges;
}

void PrintPages::divide() {
    divided_ = true;
    const Ref<NSPrintInfo> info(operation_.state_->info);
    const auto units = operation_.state_->inViewUnits(scale_);
    const NSSize area = operation_.printInfo()->areaWithinMargins().size;
    const NSRect whole = view_->bounds();
    const auto one = [](CGFloat a, CGFloat b) { return std::vector<CGFloat>{a, b}; };
    switch (info->horizontalPagination()) {
    case NSAutoPagination:
        columns_ = cuts(NSMinX(whole), NSMaxX(whole), area.width, view_->widthAdjustLimit(),
                        [&](CGFloat* moved, CGFloat left, CGFloat right, CGFloat limit) {
                            view_->adjustPageWidthNew_left_right_limit(moved, left, right, limit);
                        });
        break;
    case NSClipPagination:
        columns_ = one(NSMinX(whole),
                       NSMinX(whole) + (area.width > 0 ? std::min(area.width, whole.size.width) : whole.size.width));
        break;
    default:
        columns_ = one(NSMinX(whole), NSMaxX(whole));
    }
    const bool flipped = view_->isFlipped();
    const CGFloat top = flipped ? NSMinY(whole) : NSMaxY(whole);
    const CGFloat bottom = flipped ? NSMaxY(whole) : NSMinY(whole);
    switch (info->verticalPagination()) {
    case NSAutoPagination:
        rows_ = cuts(top, bottom, area.height, view_->heightAdjustLimit(),
                     [&](CGFloat* moved, CGFloat from, CGFloat to, CGFloat limit) {
                         view_->adjustPageHeightNew_top_bottom_limit(moved, from, to, limit);
                     });
        break;
    case NSClipPagination: {
        const CGFloat height = area.height > 0 ? std::min(area.height, whole.size.height) : whole.size.height;
        rows_ = one(top, flipped ? top + height : top - height);
        break;
    }
    default:
        rows_ = one(top, bottom);
    }
}

NSRect PrintPages::automaticPage(NSInteger page) {
    if (!divided_) divide();
    const auto columns = static_cast<NSInteger>(columns_.size()) - 1;
    const auto rows = static_cast<NSInteger>(rows_.size()) - 1;
    const NSInteger at = page - static_cast<NSInteger>(range_.location);
    if (at < 0 || at >= columns * rows) return NSZeroRect;
    const auto row = static_cast<std::size_t>(at / columns), column = static_cast<std::size_t>(at % columns);
    const CGFloat y0 = std::min(rows_[row], rows_[row + 1]), y1 = std::max(rows_[row], rows_[row + 1]);
    return {{columns_[column], y0}, {columns_[column + 1] - columns_[column], y1 - y0}};
}

CGFloat PrintPages::scaleFor(const NSSize& part) const noexcept {
    const NSSize area = operation_.state_->info->areaWithinMargins().size;
    return scale_ * std::min(fit(area.width, part.width * scale_), fit(area.height, part.height * scale_));
}

void PrintPages::draw(NSInteger page, backend::Canvas& canvas) {
    const Ref<NSView> kept(view_);
    operation_.state_->page = page;
    const auto context = make<NSGraphicsContext>(canvas);
    const GraphicsContextScope scope(context);
    const AppearanceScope onPaper(Appearance::light);
    const PrintFocus focus(view_, context);
    NSRect part;
    {
        const auto units = operation_.state_->inViewUnits(scale_);
        part = rectForPage(page);
    }
    operation_.state_->drawnScale = scaleFor(part.size);
    const NSPoint place = view_->locationOfPrintRect(part);
    view_->beginPageInRect_atPlacement(part, place);
    if (!NSIsEmptyRect(part)) drawContent(view_, part, place, operation_.state_->drawnScale, context);
    drawBorder(context);
    view_->endPage();
}

void PrintPages::drawCopy(NSPrintOperation& operation, const NSRect& part, backend::Canvas& canvas) {
    const Ref<NSView> view(operation.view());
    operation.state_->page = 1;
    const auto context = make<NSGraphicsContext>(canvas);
    const GraphicsContextScope scope(context);
    const AppearanceScope onPaper(Appearance::light);
    const PrintFocus focus(view, context);
    drawContent(view, part, NSZeroPoint, 1, context);
}

void PrintPages::drawContent(NSView* view, const NSRect& part, NSPoint place, CGFloat scale,
                             NSGraphicsContext* context) {
    context->saveState();
    const ScopeExit asBefore([context] { context->restoreState(); });
    context->canvas().concat(backend::Transform::translation(place.x, place.y));
    context->canvas().concat(backend::Transform::scaling(scale, scale));
    bringToOrigin(context->canvas(), view, part);
    view->displayRectIgnoringOpacity_inContext(part, context);
}

void PrintPages::drawBorder(NSGraphicsContext* context) {
    if (operation_.isCopyingOperation()) return;
    const NSSize paper = operation_.printInfo()->paperSize();
    context->saveState();
    const ScopeExit asBefore([context] { context->restoreState(); });
    if (view_->isFlipped()) {
        context->canvas().concat({1, 0, 0, -1, 0, paper.height});
        context->setFlipped(YES);
    }
    view_->drawPageBorderWithSize(paper);
}

} // namespace libvue
