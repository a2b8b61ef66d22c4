#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/ControlImage.h>
#include <libvue/platform/appkit/NSCell.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/NSStringDrawing.h>

namespace libvue {

namespace {
constexpr CGFloat kBezelInset = 4; ///< between a bezel and its text
constexpr CGFloat kBorderInset = 2;
} // namespace

NSColor* NSCell::effectiveTextColor() const {
    if (!enabled_) return NSColor::disabledControlTextColor();
    return background_ == NSBackgroundStyleDark ? NSColor::alternateSelectedControlTextColor()
                                                : NSColor::controlTextColor();
}

Ref<NSDictionary> NSCell::textAttributes() const {
    auto paragraph = make<NSMutableParagraphStyle>();
    paragraph->setAlignment(alignment_);
    paragraph->setLineBreakMode(lineBreak_);
    const Ref<NSFont> f = font_ ? font_ : NSFont::systemFontOfSize(NSFont::systemFontSizeForControlSize(size_));
    return NSDictionary::dictionaryWithObjectsAndKeys({{NSFontAttributeName.get(), f.get()},
                                                       {NSForegroundColorAttributeName.get(), effectiveTextColor()},
                                                       {NSParagraphStyleAttributeName.get(), paragraph.get()}});
}

NSSize NSCell::cellSize() const { return cellSizeForBounds({{0, 0}, {1e5, 1e5}}); }

NSSize NSCell::cellSizeForBounds(const NSRect& bounds) const {
    NSSize s{0, 0};
    if (type_ == NSImageCellType) {
        if (image_) s = image_->size();
    } else {
        const auto text = attributedStringValue();
        if (wraps()) {
            const NSRect room = drawingRectForBounds({{0, 0}, bounds.size});
            s = boundingRectWithSize_options(text, {std::max(1.0, room.size.width), 0},
                                             NSStringDrawingUsesLineFragmentOrigin)
                    .size;
        } else
            s = size(text);
        s = {std::ceil(s.width), std::ceil(s.height)};
    }
    const NSRect probe{{0, 0}, {1000, 1000}};
    const NSRect inner = drawingRectForBounds(probe);
    return {s.width + probe.size.width - inner.size.width, s.height + probe.size.height - inner.size.height};
}

NSRect NSCell::drawingRectForBounds(const NSRect& bounds) const {
    const CGFloat inset = bezeled_ ? kBezelInset : bordered_ ? kBorderInset : 0;
    return NSInsetRect(bounds, inset, std::min(inset, 3.0));
}

NSRect NSCell::titleRectForBounds(const NSRect& bounds) const { return drawingRectForBounds(bounds); }

NSRect NSCell::imageRectForBounds(const NSRect& bounds) const {
    NSRect r = drawingRectForBounds(bounds);
    if (!image_) return {r.origin, {0, 0}};
    const NSSize s = image_->size();
    r.origin.x += std::floor((r.size.width - s.width) / 2);
    r.origin.y += std::floor((r.size.height - s.height) / 2);
    r.size = s;
    return r;
}

void NSCell::drawWithFrame_inView(const NSRect& frame, NSView* view) {
    if (NSIsEmptyRect(frame)) return;
    drawInteriorWithFrame_inView(frame, view);
}

void NSCell::drawInteriorWithFrame_inView(const NSRect& frame, NSView*) {
    if (type_ == NSImageCellType) {
        if (image_) drawControlImage(*image_, imageRectForBounds(frame), enabled_ ? 1.0 : 0.5, effectiveTextColor());
        return;
    }
    if (type_ != NSTextCellType) return;
    const NSRect r = titleRectForBounds(frame);
    drawWithRect_options(attributedStringValue(), r,
                         NSStringDrawingUsesLineFragmentOrigin | NSStringDrawingTruncatesLastVisibleLine);
}

} // namespace libvue
