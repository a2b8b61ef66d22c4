#include <libvue/platform/appkit/NSButtonCell.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/ControlImage.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/ThemeDrawing.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/HeldEnum.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/NSStringDrawing.h>

namespace libvue {

static const ClassRegistration<NSButtonCell> registration;

void NSButtonCell::describe(ClassDescription<NSButtonCell, NSActionCell>& c) {
    c.key<&NSButtonCell::title, &NSButtonCell::setTitle>("title");
}

NSButtonCell::NSButtonCell() : NSButtonCell(u"Button"_ns.get()) {}
NSButtonCell::NSButtonCell(NSString* title) : title_(title ? NSString::stringWithString(title) : NSString::string()) {
    setType(NSTextCellType);
    setBordered(YES);
    setAlignment(NSCenterTextAlignment);
    setLineBreakMode(NSLineBreakByClipping);
}
NSButtonCell::NSButtonCell(NSImage* image) : NSButtonCell(NSString::string().get()) {
    setImage(image);
    imagePosition_ = NSImageOnly;
}
NSButtonCell::~NSButtonCell() = default;

// Archives.

namespace {
constexpr ConstantString kTitle{u"NSContents"}, kAlternateTitle{u"NSAlternateContents"},
    kAlternateImage{u"NSAlternateImage"}, kKey{u"NSKeyEquivalent"}, kKeyMask{u"NSKeyEquivalentModifierMask"},
    kHighlightsBy{u"NSHighlightsBy"}, kShowsStateBy{u"NSShowsStateBy"}, kKind{u"NSButtonType"}, kBezel{u"NSBezelStyle"},
    kImagePosition{u"NSImagePosition"}, kLooks{u"NSButtonLooks"};
enum Look : NSInteger { lookTransparent = 1, lookBorderInside = 2, lookFullImageWhenDisabled = 4 };
} // namespace

NSButtonCell::NSButtonCell(NSCoder& coder)
    : NSActionCell(coder),
      title_(coder.decodeObjectOf_forKey<NSString>(kTitle)),
      alternateTitle_(as<NSString>(coder.decodeObjectForKey(kAlternateTitle))),
      key_(as<NSString>(coder.decodeObjectForKey(kKey))),
      alternateImage_(as<NSImage>(coder.decodeObjectForKey(kAlternateImage))),
      highlightsBy_(static_cast<NSUInteger>(coder.decodeIntegerForKey(kHighlightsBy))),
      showsStateBy_(static_cast<NSUInteger>(coder.decodeIntegerForKey(kShowsStateBy))),
      keyMask_(static_cast<NSUInteger>(coder.decodeIntegerForKey(kKeyMask))),
      kind_(heldEnum(coder.decodeIntegerForKey(kKind), NSMomentaryLightButton, NSMomentaryPushInButton,
                     NSMomentaryPushInButton)),
      bezel_(heldEnum(coder.decodeIntegerForKey(kBezel), NSRoundedBezelStyle, NSRoundedDisclosureBezelStyle,
                      NSRoundedBezelStyle)),
      imagePosition_(heldEnum(coder.decodeIntegerForKey(kImagePosition), NSNoImage, NSImageOverlaps, NSNoImage)) {
    if (!title_) title_ = NSString::string();
    // The title stands where other cells have their value, which a button has not.
    NSCell::setObjectValue(nullptr);
    const NSInteger looks = coder.decodeIntegerForKey(kLooks);
    transparent_ = looks & lookTransparent;
    borderInside_ = looks & lookBorderInside;
    imageDims_ = !(looks & lookFullImageWhenDisabled);
}

void NSButtonCell::encodeWithCoder(NSCoder& coder) const {
    NSActionCell::encodeWithCoder(coder);
    coder.encodeObject_forKey(title_, kTitle);
    coder.encodeObject_forKey(alternateTitle_, kAlternateTitle);
    coder.encodeObject_forKey(alternateImage_, kAlternateImage);
    coder.encodeObject_forKey(key_, kKey);
    coder.encodeInteger_forKey(static_cast<NSInteger>(keyMask_), kKeyMask);
    coder.encodeInteger_forKey(static_cast<NSInteger>(highlightsBy_), kHighlightsBy);
    coder.encodeInteger_forKey(static_cast<NSInteger>(showsStateBy_), kShowsStateBy);
    coder.encodeInteger_forKey(static_cast<NSInteger>(kind_), kKind);
    coder.encodeInteger_forKey(static_cast<NSInteger>(bezel_), kBezel);
    coder.encodeInteger_forKey(static_cast<NSInteger>(imagePosition_), kImagePosition);
    NSInteger looks = 0;
    if (transparent_) looks |= lookTransparent;
    if (borderInside_) looks |= lookBorderInside;
    if (!imageDims_) looks |= lookFullImageWhenDisabled;
    coder.encodeInteger_forKey(looks, kLooks);
}

Ref<NSObject> NSButtonCell::copyWithZone() const {
    Ref<NSObject> made = NSActionCell::copyWithZone();
    if (auto* c = as<NSButtonCell>(made)) {
        c->title_ = title_;
        c->alternateTitle_ = alternateTitle_;
        c->key_ = key_;
        c->attributedTitle_ = attributedTitle_;
        c->alternateImage_ = alternateImage_;
        c->highlightsBy_ = highlightsBy_;
        c->showsStateBy_ = showsStateBy_;
        c->keyMask_ = keyMask_;
        c->kind_ = kind_;
        c->bezel_ = bezel_;
        c->imagePosition_ = imagePosition_;
        c->transparent_ = transparent_;
        c->imageDims_ = imageDims_;
        c->borderInside_ = borderInside_;
    }
    return made;
}

// What it shows.

NSString* NSButtonCell::title() const { return title_; }
void NSButtonCell::setTitle(NSString* title) {
    title_ = title ? NSString::stringWithString(title) : NSString::string();
    attributedTitle_ = nullptr;
    if (imagePosition_ == NSImageOnly && title_->length() > 0) imagePosition_ = NSImageLeft;
    redisplay();
}

Ref<NSAttributedString> NSButtonCell::attributedTitle() const {
    if (attributedTitle_) return attributedTitle_;
    return NSAttributedString::initWithString_attributes(title_, textAttributes());
}
void NSButtonCell::setAttributedTitle(NSAttributedString* title) {
    attributedTitle_ = title;
    if (title) title_ = title->string();
    redisplay();
}
NSString* NSButtonCell::alternateTitle() const noexcept { return alternateTitle_; }
void NSButtonCell::setAlternateTitle(NSString* title) {
    alternateTitle_ = title ? NSString::stringWithString(title) : nullptr;
    redisplay();
}
NSImage* NSButtonCell::alternateImage() const noexcept { return alternateImage_; }
void NSButtonCell::setAlternateImage(NSImage* image) {
    alternateImage_ = image;
    redisplay();
}
void NSButtonCell::setImagePosition(NSCellImagePosition p) {
    imagePosition_ = p;
    redisplay();
}

void NSButtonCell::setButtonType(NSButtonType type) {
    kind_ = type;
    switch (type) {
    case NSMomentaryLightButton:
        highlightsBy_ = NSChangeBackgroundCellMask;
        showsStateBy_ = NSNoCellMask;
        break;
    case NSMomentaryPushInButton:
        highlightsBy_ = NSPushInCellMask | NSChangeGrayCellMask;
        showsStateBy_ = NSNoCellMask;
        break;
    case NSMomentaryChangeButton:
        highlightsBy_ = NSContentsCellMask;
        showsStateBy_ = NSNoCellMask;
        break;
    case NSPushOnPushOffButton:
        highlightsBy_ = NSPushInCellMask | NSChangeGrayCellMask;
        showsStateBy_ = NSChangeBackgroundCellMask;
        break;
    case NSOnOffButton:
        highlightsBy_ = NSChangeBackgroundCellMask;
        showsStateBy_ = NSChangeBackgroundCellMask;
        break;
    case NSToggleButton:
        highlightsBy_ = NSPushInCellMask | NSContentsCellMask;
        showsStateBy_ = NSContentsCellMask;
        break;
    case NSSwitchButton:
    case NSRadioButton:
        highlightsBy_ = NSContentsCellMask;
        showsStateBy_ = NSContentsCellMask;
        setBordered(NO);
        setAlignment(NSLeftTextAlignment);
        break;
    }
    redisplay();
}

void NSButtonCell::setBezelStyle(NSBezelStyle s) {
    bezel_ = s;
    redisplay();
}
void NSButtonCell::setTransparent(BOOL f) {
    transparent_ = f;
    redisplay();
}
void NSButtonCell::setShowsBorderOnlyWhileMouseInside(BOOL f) {
    borderInside_ = f;
    redisplay();
}
void NSButtonCell::mouseEntered(NSEvent*) {
    mouseInside_ = true;
    if (borderInside_ || bezel_ == NSRecessedBezelStyle) redisplay();
}
void NSButtonCell::mouseExited(NSEvent*) {
    mouseInside_ = false;
    if (borderInside_ || bezel_ == NSRecessedBezelStyle) redisplay();
}

Ref<NSString> NSButtonCell::keyEquivalent() const { return key_ ? key_ : NSString::string(); }
void NSButtonCell::setKeyEquivalent(NSString* key) {
    key_ = key ? NSString::stringWithString(key) : nullptr;
    redisplay();
}

NSInteger NSButtonCell::nextState() const noexcept {
    if (kind_ == NSRadioButton) return NSOnState;
    if (showsStateBy_ == NSNoCellMask) return state();
    return NSActionCell::nextState();
}

BOOL NSButtonCell::showsAlternate() const noexcept {
    const bool pressed = isHighlighted() && (highlightsBy_ & NSContentsCellMask);
    const bool on = state() != NSOffState && (showsStateBy_ & NSContentsCellMask);
    return pressed != on;
}

NSImage* NSButtonCell::shownImage() const {
    if (alternateImage_ && showsAlternate()) return alternateImage_;
    return image();
}

Ref<NSAttributedString> NSButtonCell::shownTitle() const {
    if (alternateTitle_ && alternateTitle_->length() > 0 && showsAlternate() && !attributedTitle_)
        return NSAttributedString::initWithString_attributes(alternateTitle_, textAttributes());
    return attributedTitle();
}

// Looks.

BOOL NSButtonCell::facesAccent() const {
    if (isCheckBox() || isRadioButton() || !isBordered() || !isEnabled()) return NO;
    if (bezel_ == NSRecessedBezelStyle) return NO;
    NSView* v = controlView();
    NSWindow* w = v ? v->window() : nullptr;
    if (w && !w->isKeyWindow()) return NO;
    const bool isDefault = w && w->defaultButtonCell() == this;
    const bool returns = key_ && key_->length() == 1 && key_->unit(0) == u'\r';
    const bool on = state() == NSOnState && (showsStateBy_ & (NSChangeBackgroundCellMask | NSChangeGrayCellMask));
    return isDefault || returns || on;
}

NSColor* NSButtonCell::effectiveTextColor() const {
    if (isEnabled() && facesAccent()) return NSColor::alternateSelectedControlTextColor();
    return NSActionCell::effectiveTextColor();
}

namespace {
CGFloat markSide(NSControlSize s) {
    return s == NSMiniControlSize    ? theme::kCheckBoxSide - 4
           : s == NSSmallControlSize ? theme::kCheckBoxSide - 2
                                     : theme::kCheckBoxSide;
}
constexpr CGFloat kMarkGap = 6, kSidePadding = 14, kImageGap = 5;
} // namespace

bool NSButtonCell::hasTitle() const noexcept { return imagePosition_ != NSImageOnly && title_->length() > 0; }

NSRect NSButtonCell::markRectForBounds(const NSRect& bounds) const {
    const CGFloat side = markSide(controlSize());
    return {{bounds.origin.x + 1, bounds.origin.y + std::floor((bounds.size.height - side) / 2)}, {side, side}};
}

NSSize NSButtonCell::cellSizeForBounds(const NSRect&) const {
    const NSImage* picture = image();
    const bool hasTitle = this->hasTitle();
    NSSize text{0, 0};
    if (hasTitle) {
        text = size(attributedTitle());
        text = {std::ceil(text.width), std::ceil(text.height)};
    }
    if (isCheckBox() || isRadioButton()) {
        const CGFloat side = markSide(controlSize());
        return {side + 2 + (hasTitle ? kMarkGap + text.width : 0), std::max(side + 3, text.height + 2)};
    }
    NSSize content = text;
    if (picture && imagePosition_ != NSNoImage) {
        const NSSize i = picture->size();
        const bool stacked = imagePosition_ == NSImageAbove || imagePosition_ == NSImageBelow;
        if (imagePosition_ == NSImageOnly || imagePosition_ == NSImageOverlaps)
            content = {std::max(text.width, i.width), std::max(text.height, i.height)};
        else if (stacked)
            content = {std::max(text.width, i.width), text.height + i.height + (hasTitle ? kImageGap : 0)};
        else
            content = {text.width + i.width + (hasTitle ? kImageGap : 0), std::max(text.height, i.height)};
    }
    if (!isBordered()) return content;
    const bool square = bezel_ == NSShadowlessSquareBezelStyle || bezel_ == NSRegularSquareBezelStyle ||
                        bezel_ == NSSmallSquareBezelStyle;
    const CGFloat padding = square                                                                    ? 6
                            : bezel_ == NSRecessedBezelStyle || bezel_ == NSTexturedRoundedBezelStyle ? 9
                                                                                                      : kSidePadding;
    return {content.width + 2 * padding, std::max(theme::controlHeight(controlSize()), content.height + 6)};
}

NSRect NSButtonCell::drawingRectForBounds(const NSRect& bounds) const {
    return isBordered() ? NSInsetRect(bounds, 3, 2) : bounds;
}

NSRect NSButtonCell::contentRectForBounds(const NSRect& bounds) const {
    if (isCheckBox() || isRadioButton()) {
        const NSRect mark = markRectForBounds(bounds);
        const CGFloat x = NSMaxX(mark) + kMarkGap;
        return {{x, bounds.origin.y}, {std::max(0.0, NSMaxX(bounds) - x), bounds.size.height}};
    }
    return isBordered() ? NSInsetRect(bounds, 4, 1) : bounds;
}

void NSButtonCell::placeContents(const NSRect& content, NSRect* imageRect, NSRect* titleRect) const {
    NSImage* picture = imagePosition_ == NSNoImage ? nullptr : shownImage();
    const NSSize i = picture ? picture->size() : NSZeroSize;
    NSSize t{0, 0};
    if (hasTitle()) {
        t = size(shownTitle());
        t = {std::ceil(t.width), std::ceil(t.height)};
    }
    const CGFloat gap = picture && t.width > 0 ? kImageGap : 0;
    const NSView* view = controlView();
    const CGFloat down = view && view->isFlipped() ? 1 : -1;
    const CGFloat midY = NSMidY(content);
    // A block of both, placed by the alignment.
    const bool stacked = imagePosition_ == NSImageAbove || imagePosition_ == NSImageBelow;
    const bool over = imagePosition_ == NSImageOverlaps || imagePosition_ == NSImageOnly;
    const CGFloat block = over || stacked ? std::max(i.width, t.width) : i.width + gap + t.width;
    CGFloat x = content.origin.x;
    if (alignment() == NSCenterTextAlignment)
        x += std::floor(std::max(0.0, content.size.width - block) / 2);
    else if (alignment() == NSRightTextAlignment)
        x += std::max(0.0, content.size.width - block);
    const auto centered = [&](NSSize s, CGFloat left, CGFloat middle) {
        return NSRect{{left, std::floor(middle - s.height / 2 + 0.5)}, s};
    };
    if (over || stacked) {
        CGFloat iy = midY, ty = midY;
        if (stacked) {
            const CGFloat tall = i.height + gap + t.height;
            const CGFloat sign = (imagePosition_ == NSImageAbove ? 1 : -1) * down;
            iy = midY - sign * (tall - i.height) / 2;
            ty = midY + sign * (tall - t.height) / 2;
        }
        *imageRect = centered(i, x + std::floor((block - i.width) / 2), iy);
        *titleRect = centered(t, x + std::floor((block - t.width) / 2), ty);
    } else if (imagePosition_ == NSImageRight) {
        *titleRect = centered(t, x, midY);
        *imageRect = centered(i, x + t.width + gap, midY);
    } else {
        *imageRect = centered(i, x, midY);
        *titleRect = centered(t, x + i.width + gap, midY);
    }
    titleRect->size.width = std::min(titleRect->size.width, std::max(0.0, NSMaxX(content) - titleRect->origin.x));
}

NSRect NSButtonCell::titleRectForBounds(const NSRect& bounds) const {
    NSRect i, t;
    placeContents(contentRectForBounds(bounds), &i, &t);
    return t;
}

NSRect NSButtonCell::imageRectForBounds(const NSRect& bounds) const {
    NSRect i, t;
    placeContents(contentRectForBounds(bounds), &i, &t);
    return i;
}

void NSButtonCell::drawWithFrame_inView(const NSRect& frame, NSView* view) {
    if (NSIsEmptyRect(frame) || transparent_) return;
    if (isBordered() && (!borderInside_ || mouseInside_ || isHighlighted())) drawBezelWithFrame_inView(frame, view);
    drawInteriorWithFrame_inView(frame, view);
}

void NSButtonCell::drawBezelWithFrame_inView(const NSRect& frame, NSView* view) {
    FaceState s = faceStateOf(this, view);
    s.on = s.on && (showsStateBy_ & (NSChangeBackgroundCellMask | NSChangeGrayCellMask));
    s.mixed = false;
    s.isDefault = facesAccent();
    s.hovered = mouseInside_;
    if (s.pressed && !(highlightsBy_ & (NSPushInCellMask | NSChangeGrayCellMask | NSChangeBackgroundCellMask)))
        s.pressed = false;
    switch (bezel_) {
    case NSRecessedBezelStyle:
        drawRecessedBezel(frame, s);
        break;
    case NSShadowlessSquareBezelStyle:
    case NSRegularSquareBezelStyle:
    case NSSmallSquareBezelStyle:
        drawPushButtonBezel(frame, s, 3);
        break;
    case NSCircularBezelStyle:
    case NSHelpButtonBezelStyle:
        drawPushButtonBezel(frame, s, std::min(frame.size.width, frame.size.height) / 2);
        break;
    default:
        drawPushButtonBezel(frame, s, theme::kRadius);
        break;
    }
}

void NSButtonCell::drawInteriorWithFrame_inView(const NSRect& frame, NSView* view) {
    if (isCheckBox() || isRadioButton()) {
        const FaceState s = faceStateOf(this, view);
        const NSRect mark = markRectForBounds(frame);
        if (NSImage* picture = imagePosition_ != NSNoImage ? shownImage() : nullptr)
            drawImage_withFrame_inView(picture, mark, view);
        else if (isCheckBox())
            drawCheckBox(mark, s);
        else
            drawRadioButton(mark, s);
        if (!hasTitle()) return;
        const NSRect room = contentRectForBounds(frame);
        const auto text = shownTitle();
        const NSSize t = size(text);
        if (t.height > 0)
            drawTitle_withFrame_inView(text,
                                       {{room.origin.x, std::floor(NSMidY(room) - t.height / 2 + 0.5)},
                                        {room.size.width, std::ceil(t.height)}},
                                       view);
        return;
    }
    NSRect imageRect, titleRect;
    placeContents(contentRectForBounds(frame), &imageRect, &titleRect);
    if (NSImage* picture = imagePosition_ == NSNoImage ? nullptr : shownImage())
        drawImage_withFrame_inView(picture, imageRect, view);
    if (hasTitle()) drawTitle_withFrame_inView(shownTitle(), titleRect, view);
}

NSRect NSButtonCell::drawTitle_withFrame_inView(NSAttributedString* title, const NSRect& frame, NSView*) {
    drawWithRect_options(title, frame, NSStringDrawingUsesLineFragmentOrigin | NSStringDrawingTruncatesLastVisibleLine);
    return frame;
}

void NSButtonCell::drawImage_withFrame_inView(NSImage* picture, const NSRect& frame, NSView*) {
    if (picture) drawControlImage(*picture, frame, isEnabled() || !imageDims_ ? 1.0 : 0.4, effectiveTextColor());
}

} // namespace libvue
