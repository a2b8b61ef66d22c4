#include <libvue/platform/appkit/NSBox.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSTextFieldCell.h>
#include <libvue/platform/appkit/ThemeDrawing.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/graphics/HeldEnum.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>

namespace libvue {

static const ClassRegistration<NSBox> registration;

namespace {
constexpr CGFloat kTitleInset = 2;
constexpr ConstantString kType{u"NSBoxType"}, kBorderType{u"NSBorderType"}, kTitlePosition{u"NSTitlePosition"},
    kTitle{u"NSTitleCell"}, kMargins{u"NSOffsets"}, kContent{u"NSContentView"}, kFill{u"NSFillColor2"},
    kBorderColor{u"NSBorderColor2"}, kBorderWidth{u"NSBorderWidth2"}, kRadius{u"NSCornerRadius2"},
    kTransparent{u"NSTransparent"};
} // namespace

void NSBox::describe(ClassDescription<NSBox, NSView>& c) {
    c.key<&NSBox::title, &NSBox::setTitle>("title");
    c.key<&NSBox::fillColor, &NSBox::setFillColor>("fillColor");
    c.key<&NSBox::borderColor, &NSBox::setBorderColor>("borderColor");
    c.key<&NSBox::cornerRadius, &NSBox::setCornerRadius>("cornerRadius");
    c.key<&NSBox::borderWidth, &NSBox::setBorderWidth>("borderWidth");
}

NSBox::NSBox() : NSBox(NSZeroRect) {}
NSBox::NSBox(const NSRect& frame) : NSView(frame) {
    auto title = make<NSTextFieldCell>(u"Title"_ns.get());
    title->setFont(NSFont::systemFontOfSize(NSFont::smallSystemFontSize()));
    title->setTextColor(NSColor::secondaryLabelColor());
    titleCell_ = title;
    setContentView(make<NSView>());
}
NSBox::NSBox(NSCoder& coder)
    : NSView(coder),
      margins_(coder.decodeSizeForKey(kMargins)),
      borderWidth_(coder.decodeDoubleForKey(kBorderWidth)),
      radius_(coder.decodeDoubleForKey(kRadius)),
      type_(heldEnum(coder.decodeIntegerForKey(kType), NSBoxPrimary, NSBoxCustom, NSBoxPrimary)),
      border_(heldEnum(coder.decodeIntegerForKey(kBorderType), NSNoBorder, NSGrooveBorder, NSGrooveBorder)),
      titlePosition_(heldEnum(coder.decodeIntegerForKey(kTitlePosition), NSNoTitle, NSBelowBottom, NSAtTop)),
      transparent_(coder.decodeBoolForKey(kTransparent)) {
    titleCell_ = as<NSCell>(coder.decodeObjectForKey(kTitle));
    if (!titleCell_) titleCell_ = make<NSTextFieldCell>();
    fill_ = as<NSColor>(coder.decodeObjectForKey(kFill));
    borderColor_ = as<NSColor>(coder.decodeObjectForKey(kBorderColor));
    if (const Ref<NSView> content = as<NSView>(coder.decodeObjectForKey(kContent))) {
        if (content->superview() != this && !isDescendantOf(content)) addSubview(content);
        if (content->superview() == this) content_ = content;
    }
}
NSBox::~NSBox() = default;

void NSBox::encodeWithCoder(NSCoder& coder) const {
    NSView::encodeWithCoder(coder);
    coder.encodeInteger_forKey(static_cast<NSInteger>(type_), kType);
    coder.encodeInteger_forKey(static_cast<NSInteger>(border_), kBorderType);
    coder.encodeInteger_forKey(static_cast<NSInteger>(titlePosition_), kTitlePosition);
    coder.encodeObject_forKey(titleCell_, kTitle);
    coder.encodeSize_forKey(margins_, kMargins);
    coder.encodeObject_forKey(content_, kContent);
    coder.encodeObject_forKey(fill_, kFill);
    coder.encodeObject_forKey(borderColor_, kBorderColor);
    coder.encodeDouble_forKey(borderWidth_, kBorderWidth);
    coder.encodeDouble_forKey(radius_, kRadius);
    coder.encodeBool_forKey(transparent_, kTransparent);
}

void NSBox::setBoxType(NSBoxType t) {
    type_ = t;
    placeContent();
}
void NSBox::setBorderType(NSBorderType t) {
    border_ = t;
    placeContent();
}
void NSBox::setTitlePosition(NSTitlePosition p) {
    titlePosition_ = p;
    placeContent();
}
Ref<NSString> NSBox::title() const { return titleCell_->stringValue(); }
void NSBox::setTitle(NSString* s) {
    titleCell_->setStringValue(s);
    placeContent();
}
NSFont* NSBox::titleFont() const { return titleCell_->font(); }
void NSBox::setTitleFont(NSFont* f) {
    titleCell_->setFont(f);
    placeContent();
}
NSCell* NSBox::titleCell() const noexcept { return titleCell_; }

// Geometry.

NSRect NSBox::titleRect() const { return titleRectIn(bounds()); }
NSRect NSBox::borderRect() const { return borderRectIn(bounds()); }

NSRect NSBox::titleRectIn(const NSRect& b) const {
    if (type_ == NSBoxSeparator || titlePosition_ == NSNoTitle || title()->length() == 0) return NSZeroRect;
    const NSSize s = titleCell_->cellSize();
    const bool top = titlePosition_ == NSAboveTop || titlePosition_ == NSAtTop || titlePosition_ == NSBelowTop;
    const NSRect edge = borderRectIn(b);
    CGFloat y = top ? NSMaxY(b) - s.height : NSMinY(b);
    if (titlePosition_ == NSBelowTop) y = NSMaxY(edge) - s.height - kTitleInset;
    if (titlePosition_ == NSAboveBottom) y = NSMinY(edge) + kTitleInset;
    return {{b.origin.x + theme::kRadius, y},
            {std::min(s.width, std::max(0.0, b.size.width - 2 * theme::kRadius)), s.height}};
}

NSRect NSBox::borderRectIn(const NSRect& b) const {
    NSRect r = b;
    const bool outside = titlePosition_ == NSAboveTop || titlePosition_ == NSAtTop || titlePosition_ == NSAtBottom ||
                         titlePosition_ == NSBelowBottom;
    if (type_ == NSBoxSeparator || !outside || title()->length() == 0) return r;
    // The title stands over the frame with a little air.
    const CGFloat taken = titleCell_->cellSize().height + kTitleInset;
    const bool top = titlePosition_ == NSAboveTop || titlePosition_ == NSAtTop;
    r.size.height = std::max(0.0, r.size.height - taken);
    if (!top) r.origin.y += taken;
    return r;
}

NSRect NSBox::contentFrameIn(const NSRect& b) const {
    const CGFloat edge = border_ == NSNoBorder ? 0 : type_ == NSBoxCustom ? borderWidth_ : 1;
    NSRect r = NSInsetRect(borderRectIn(b), margins_.width + edge, margins_.height + edge);
    r.size = {std::max(0.0, r.size.width), std::max(0.0, r.size.height)};
    // A title inside of the border takes its room from the content.
    const NSRect title = titleRectIn(b);
    if (NSIsEmptyRect(title)) return r;
    const CGFloat low = titlePosition_ == NSAboveBottom ? std::max(NSMinY(r), NSMaxY(title)) : NSMinY(r);
    const CGFloat high = titlePosition_ == NSBelowTop ? std::min(NSMaxY(r), NSMinY(title)) : NSMaxY(r);
    r.origin.y = low;
    r.size.height = std::max(0.0, high - low);
    return r;
}

void NSBox::placeContent() {
    setNeedsDisplay(YES);
    if (content_ && type_ != NSBoxSeparator) content_->setFrame(contentFrameIn(bounds()));
}

void NSBox::setContentViewMargins(NSSize s) {
    margins_ = s;
    placeContent();
}

void NSBox::setContentView(NSView* v) {
    const Ref<NSView> kept(v);
    if (content_.get() == v) return;
    if (const Ref<NSView> old = content_) old->removeFromSuperview();
    // A view that comes from another place of this box is forgotten as it leaves.
    if (v && v->superview() == this) v->removeFromSuperview();
    content_ = v;
    if (v) addSubview(v);
    placeContent();
}

void NSBox::willRemoveSubview(NSView* view) {
    NSView::willRemoveSubview(view);
    if (content_.get() == view) content_ = nullptr;
}

void NSBox::setFrameFromContentFrame(const NSRect& r) {
    if (!content_ || type_ == NSBoxSeparator) {
        setFrame(r);
        return;
    }
    // Measured in a room where nothing is held: a box that is too small now tells nothing.
    const NSSize room{1e4, 1e4};
    const NSRect c = contentFrameIn({NSZeroPoint, room});
    setFrame({{r.origin.x - c.origin.x, r.origin.y - c.origin.y},
              {r.size.width + room.width - c.size.width, r.size.height + room.height - c.size.height}});
}

void NSBox::sizeToFit() {
    if (!content_) return;
    NSRect all = NSZeroRect;
    for (NSView* v : content_->subviews())
        all = NSUnionRect(all, v->frame());
    const NSRect c = content_->frame();
    setFrameSize({frame().size.width - c.size.width + NSMaxX(all), frame().size.height - c.size.height + NSMaxY(all)});
}

void NSBox::resizeSubviewsWithOldSize(const NSSize&) { placeContent(); }

// Looks.

void NSBox::setTransparent(BOOL f) {
    transparent_ = f;
    setNeedsDisplay(YES);
}
NSColor* NSBox::fillColor() const noexcept { return fill_ ? fill_.get() : NSColor::clearColor(); }
void NSBox::setFillColor(NSColor* c) {
    fill_ = c;
    setNeedsDisplay(YES);
}
NSColor* NSBox::borderColor() const noexcept { return borderColor_ ? borderColor_.get() : NSColor::separatorColor(); }
void NSBox::setBorderColor(NSColor* c) {
    borderColor_ = c;
    setNeedsDisplay(YES);
}
void NSBox::setBorderWidth(CGFloat w) {
    borderWidth_ = w;
    placeContent();
}
void NSBox::setCornerRadius(CGFloat r) {
    radius_ = r;
    setNeedsDisplay(YES);
}

void NSBox::drawRect(const NSRect&) {
    if (transparent_) return;
    if (type_ == NSBoxSeparator) {
        drawSeparator(bounds());
        return;
    }
    const NSRect edge = borderRect();
    if (type_ == NSBoxCustom) {
        const CGFloat w = border_ == NSNoBorder ? 0 : borderWidth_;
        const auto path =
            NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(NSInsetRect(edge, w / 2, w / 2), radius_, radius_);
        fillColor()->setFill();
        path->fill();
        if (w > 0) {
            borderColor()->setStroke();
            path->setLineWidth(w);
            path->stroke();
        }
    } else if (border_ != NSNoBorder)
        drawGroupBox(edge);
    const NSRect t = titleRect();
    if (!NSIsEmptyRect(t)) titleCell_->drawWithFrame_inView(t, this);
}

AccessibilityDescription NSBox::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    if (type_ == NSBoxSeparator) {
        d.role = u"separator"_ns;
        return d;
    }
    d.role = u"group"_ns;
    if (!d.label && titlePosition_ != NSNoTitle) d.label = title();
    return d;
}

} // namespace libvue
