#include <libvue/platform/appkit/NSImageCell.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/ControlImage.h>
#include <libvue/platform/appkit/ThemeDrawing.h>
#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/graphics/HeldEnum.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/Palette.h>

namespace libvue {

static const ClassRegistration<NSImageCell> registration;

namespace {

constexpr ConstantString kScaling{u"NSScale"}, kPlaced{u"NSAlign"}, kFrame{u"NSStyle"};
constexpr CGFloat kPhotoMargin = 4, kBezelMargin = 2, kButtonMargin = 4;

CGFloat marginOf(NSImageFrameStyle style) {
    switch (style) {
    case NSImageFramePhoto:
        return kPhotoMargin;
    case NSImageFrameGrayBezel:
    case NSImageFrameGroove:
        return kBezelMargin;
    case NSImageFrameButton:
        return kButtonMargin;
    default:
        return 0;
    }
}

/// How much of the free room lies before the image: none, half or all of it.
struct Share {
    CGFloat left, below;
};
Share shareOf(NSImageAlignment a) {
    const bool left = a == NSImageAlignTopLeft || a == NSImageAlignLeft || a == NSImageAlignBottomLeft;
    const bool right = a == NSImageAlignTopRight || a == NSImageAlignRight || a == NSImageAlignBottomRight;
    const bool top = a == NSImageAlignTop || a == NSImageAlignTopLeft || a == NSImageAlignTopRight;
    const bool bottom = a == NSImageAlignBottom || a == NSImageAlignBottomLeft || a == NSImageAlignBottomRight;
    return {left ? 0 : right ? 1 : 0.5, bottom ? 0 : top ? 1 : 0.5};
}

} // namespace

NSSize scaledImageSize(NSImageScaling scaling, NSSize image, NSSize room) noexcept {
    if (!(image.width > 0) || !(image.height > 0) || !(room.width > 0) || !(room.height > 0)) return NSZeroSize;
    if (scaling == NSImageScaleNone) return image;
    if (scaling == NSImageScaleAxesIndependently) return room;
    CGFloat k = std::min(room.width / image.width, room.height / image.height);
    if (scaling == NSImageScaleProportionallyDown) k = std::min(k, 1.0);
    return {image.width * k, image.height * k};
}

void NSImageCell::describe(ClassDescription<NSImageCell, NSCell>&) {}

NSImageCell::NSImageCell() : NSImageCell(nullptr) {}
NSImageCell::NSImageCell(NSImage* image) : NSCell(image) { setAlignment(NSCenterTextAlignment); }

NSImageCell::NSImageCell(NSCoder& coder)
    : NSCell(coder),
      scaling_(heldEnum(coder.decodeIntegerForKey(kScaling), NSImageScaleProportionallyDown,
                        NSImageScaleProportionallyUpOrDown, NSImageScaleProportionallyDown)),
      placed_(heldEnum(coder.decodeIntegerForKey(kPlaced), NSImageAlignCenter, NSImageAlignRight, NSImageAlignCenter)),
      frameStyle_(heldEnum(coder.decodeIntegerForKey(kFrame), NSImageFrameNone, NSImageFrameButton, NSImageFrameNone)) {
}

void NSImageCell::encodeWithCoder(NSCoder& coder) const {
    NSCell::encodeWithCoder(coder);
    coder.encodeInteger_forKey(static_cast<NSInteger>(scaling_), kScaling);
    coder.encodeInteger_forKey(static_cast<NSInteger>(placed_), kPlaced);
    coder.encodeInteger_forKey(static_cast<NSInteger>(frameStyle_), kFrame);
}

Ref<NSObject> NSImageCell::copyWithZone() const {
    Ref<NSObject> made = NSCell::copyWithZone();
    if (auto* c = as<NSImageCell>(made)) {
        c->scaling_ = scaling_;
        c->placed_ = placed_;
        c->frameStyle_ = frameStyle_;
    }
    return made;
}

void NSImageCell::setImageScaling(NSImageScaling s) {
    scaling_ = s;
    redisplay();
}
void NSImageCell::setImageAlignment(NSImageAlignment a) {
    placed_ = a;
    redisplay();
}
void NSImageCell::setImageFrameStyle(NSImageFrameStyle s) {
    frameStyle_ = s;
    redisplay();
}

NSObject* NSImageCell::objectValue() const noexcept { return image(); }
void NSImageCell::setObjectValue(NSObject* value) { setImage(as<NSImage>(value)); }

// Geometry.

NSRect NSImageCell::drawingRectForBounds(const NSRect& bounds) const {
    const CGFloat margin = marginOf(frameStyle_);
    NSRect r = NSInsetRect(bounds, margin, margin);
    r.size = {std::max(0.0, r.size.width), std::max(0.0, r.size.height)};
    return r;
}

NSSize NSImageCell::cellSizeForBounds(const NSRect&) const {
    const NSSize s = image() ? image()->size() : NSZeroSize;
    const CGFloat margin = marginOf(frameStyle_);
    return {s.width + 2 * margin, s.height + 2 * margin};
}

NSRect NSImageCell::imageRectForBounds(const NSRect& bounds) const {
    const NSRect room = drawingRectForBounds(bounds);
    const NSSize s = scaledImageSize(scaling_, image() ? image()->size() : NSZeroSize, room.size);
    const Share share = shareOf(placed_);
    const NSView* view = controlView();
    const CGFloat before = view && view->isFlipped() ? 1 - share.below : share.below;
    // On whole points, as long as the image is not to fill the room.
    return {{room.origin.x + std::floor((room.size.width - s.width) * share.left),
             room.origin.y + std::floor((room.size.height - s.height) * before)},
            s};
}

// Drawing.

void NSImageCell::drawWithFrame_inView(const NSRect& frame, NSView* view) {
    if (NSIsEmptyRect(frame)) return;
    switch (frameStyle_) {
    case NSImageFramePhoto:
        NSColor::controlBackgroundColor()->setFill();
        NSRectFillUsingOperation(alignedToPixels(frame), NSCompositeSourceOver);
        strokeRoundedInside(alignedToPixels(frame), 0, NSColor::systemColor(SystemColor::controlBorder));
        break;
    case NSImageFrameGrayBezel:
        drawTextFieldBezel(frame, isEnabled());
        break;
    case NSImageFrameGroove:
        drawGroupBox(frame);
        break;
    case NSImageFrameButton:
        drawPushButtonBezel(frame, faceStateOf(this, view), 3);
        break;
    default:
        break;
    }
    drawInteriorWithFrame_inView(frame, view);
}

void NSImageCell::drawInteriorWithFrame_inView(const NSRect& frame, NSView*) {
    NSImage* shown = image();
    if (!shown) return;
    const NSRect room = drawingRectForBounds(frame), r = imageRectForBounds(frame);
    const GraphicsStateScope saved;
    if (!NSContainsRect(room, r)) NSRectClip(room);
    drawControlImage(*shown, r, isEnabled() ? 1.0 : 0.5, effectiveTextColor());
}

} // namespace libvue
