#include <libvue/platform/appkit/NSCell.h>

#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSFormatter.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/graphics/HeldEnum.h>
#include <libvue/platform/graphics/NSImage.h>

namespace libvue {

static const ClassRegistration<NSCell> registration;

void NSCell::describe(ClassDescription<NSCell>& c) {
    c.key<&NSCell::objectValue, &NSCell::setObjectValue>("objectValue");
    c.key<&NSCell::stringValue, &NSCell::setStringValue>("stringValue");
    c.key<&NSCell::isEnabled, &NSCell::setEnabled>("enabled");
    c.key<&NSCell::state, &NSCell::setState>("state");
    c.key<&NSCell::representedObject, &NSCell::setRepresentedObject>("representedObject");
}

NSCell::NSCell() = default;
NSCell::NSCell(NSString* text)
    : value_(text ? Ref<NSObject>(NSString::stringWithString(text)) : nullptr), type_(NSTextCellType) {}
NSCell::NSCell(NSImage* image) : image_(image), type_(NSImageCellType) {}
NSCell::~NSCell() = default;

namespace {
constexpr ConstantString kContents{u"NSContents"}, kImage{u"NSNormalImage"}, kFont{u"NSSupport"}, kState{u"NSState"},
    kAlign{u"NSAlignment"}, kLineBreak{u"NSLineBreakMode"}, kFlags{u"NSCellFlags"}, kSize{u"NSControlSize"},
    kType{u"NSCellType"};
enum Flag : NSInteger {
    flagMixed = 1,
    flagDisabled = 2,
    flagEditable = 4,
    flagSelectable = 8,
    flagContinuous = 16,
    flagRefusesFirst = 32,
    flagScrollable = 64,
    flagBordered = 128,
    flagBezeled = 256
};

NSInteger heldState(NSInteger state, bool allowsMixed) noexcept {
    return state == NSOffState ? NSOffState : state < 0 && allowsMixed ? NSMixedState : NSOnState;
}
} // namespace

// Archives.

NSCell::NSCell(NSCoder& coder)
    : value_((coder.beginDecoding(this), coder.decodeObjectForKey(kContents))),
      font_(as<NSFont>(coder.decodeObjectForKey(kFont))),
      image_(as<NSImage>(coder.decodeObjectForKey(kImage))),
      type_(heldEnum(coder.decodeIntegerForKey(kType), NSNullCellType, NSImageCellType, NSNullCellType)),
      alignment_(heldEnum(coder.decodeIntegerForKey(kAlign), NSLeftTextAlignment, NSNaturalTextAlignment,
                          NSLeftTextAlignment)),
      lineBreak_(heldEnum(coder.decodeIntegerForKey(kLineBreak), NSLineBreakByWordWrapping,
                          NSLineBreakByTruncatingMiddle, NSLineBreakByWordWrapping)),
      size_(heldEnum(coder.decodeIntegerForKey(kSize), NSRegularControlSize, NSMiniControlSize, NSRegularControlSize)) {
    const NSInteger f = coder.decodeIntegerForKey(kFlags);
    mixed_ = f & flagMixed;
    state_ = heldState(coder.decodeIntegerForKey(kState), mixed_);
    enabled_ = !(f & flagDisabled);
    editable_ = f & flagEditable;
    selectable_ = f & flagSelectable;
    continuous_ = f & flagContinuous;
    refusesFirst_ = f & flagRefusesFirst;
    scrollable_ = f & flagScrollable;
    bordered_ = f & flagBordered;
    bezeled_ = f & flagBezeled;
}

void NSCell::encodeWithCoder(NSCoder& coder) const {
    coder.encodeObject_forKey(value_, kContents);
    coder.encodeObject_forKey(font_, kFont);
    coder.encodeObject_forKey(image_, kImage);
    coder.encodeInteger_forKey(state_, kState);
    coder.encodeInteger_forKey(type_, kType);
    coder.encodeInteger_forKey(static_cast<NSInteger>(alignment_), kAlign);
    coder.encodeInteger_forKey(static_cast<NSInteger>(lineBreak_), kLineBreak);
    coder.encodeInteger_forKey(static_cast<NSInteger>(size_), kSize);
    NSInteger f = 0;
    if (mixed_) f |= flagMixed;
    if (!enabled_) f |= flagDisabled;
    if (editable_) f |= flagEditable;
    if (selectable_) f |= flagSelectable;
    if (continuous_) f |= flagContinuous;
    if (refusesFirst_) f |= flagRefusesFirst;
    if (scrollable_) f |= flagScrollable;
    if (bordered_) f |= flagBordered;
    if (bezeled_) f |= flagBezeled;
    coder.encodeInteger_forKey(f, kFlags);
}

Ref<NSObject> NSCell::copyWithZone() const {
    // Of the same class, with everything that this class holds; subclasses with fields of their own add them.
    Ref<NSObject> made = isa().alloc();
    auto* c = as<NSCell>(made);
    if (!c) return nullptr;
    c->value_ = value_;
    c->font_ = font_;
    c->image_ = image_;
    c->formatter_ = formatter_;
    c->represented_ = represented_;
    c->menu_ = menu_;
    c->controlView_ = controlView_;
    c->state_ = state_;
    c->type_ = type_;
    c->alignment_ = alignment_;
    c->lineBreak_ = lineBreak_;
    c->size_ = size_;
    c->background_ = background_;
    c->focusRing_ = focusRing_;
    c->mixed_ = mixed_;
    c->enabled_ = enabled_;
    c->editable_ = editable_;
    c->selectable_ = selectable_;
    c->continuous_ = continuous_;
    c->refusesFirst_ = refusesFirst_;
    c->scrollable_ = scrollable_;
    c->bordered_ = bordered_;
    c->bezeled_ = bezeled_;
    return made;
}

void NSCell::redisplay() {
    if (NSView* v = controlView_) v->setNeedsDisplay(YES);
}

void NSCell::setType(NSCellType type) {
    type_ = type;
    redisplay();
}

// Value.

void NSCell::setObjectValue(NSObject* value) {
    value_ = value;
    if (type_ == NSNullCellType && value) type_ = NSTextCellType;
    redisplay();
}

Ref<NSString> NSCell::stringValue() const {
    NSObject* v = objectValue();
    if (!v) return NSString::string();
    if (formatter_)
        if (auto s = formatter_->stringForObjectValue(v)) return s;
    if (auto* s = as<NSString>(v)) return s;
    if (auto* a = as<NSAttributedString>(v)) return a->string();
    return v->description();
}

void NSCell::setStringValue(NSString* text) {
    const Ref<NSString> s = text ? NSString::stringWithString(text) : NSString::string();
    if (formatter_) {
        Ref<NSObject> value;
        if (formatter_->getObjectValue_forString_errorDescription(&value, s, nullptr)) {
            setObjectValue(value);
            return;
        }
    }
    setObjectValue(s);
}

Ref<NSAttributedString> NSCell::attributedStringValue() const {
    NSObject* v = objectValue();
    if (auto* a = as<NSAttributedString>(v)) return a;
    const auto attributes = textAttributes();
    if (formatter_ && v)
        if (auto a = formatter_->attributedStringForObjectValue_withDefaultAttributes(v, attributes)) return a;
    return NSAttributedString::initWithString_attributes(stringValue(), attributes);
}

void NSCell::setAttributedStringValue(NSAttributedString* text) { setObjectValue(text); }

NSInteger NSCell::integerValue() const {
    if (auto* n = as<NSNumber>(objectValue())) return n->integerValue();
    return stringValue()->integerValue();
}
void NSCell::setIntegerValue(NSInteger v) { setObjectValue(NSNumber::numberWithInteger(v)); }
double NSCell::doubleValue() const {
    if (auto* n = as<NSNumber>(objectValue())) return n->doubleValue();
    return stringValue()->doubleValue();
}
void NSCell::setDoubleValue(double v) { setObjectValue(NSNumber::numberWithDouble(v)); }

NSFormatter* NSCell::formatter() const noexcept { return formatter_; }
void NSCell::setFormatter(NSFormatter* f) {
    formatter_ = f;
    redisplay();
}

NSString* NSCell::title() const {
    shownTitle_ = stringValue();
    return shownTitle_;
}

// State.

NSInteger NSCell::nextState() const noexcept {
    switch (state_) {
    case NSOnState:
        return NSOffState;
    case NSMixedState:
        return NSOnState;
    default:
        return mixed_ ? NSMixedState : NSOnState;
    }
}

void NSCell::setState(NSInteger state) {
    const NSInteger s = heldState(state, mixed_);
    if (s == state_) return;
    state_ = s;
    redisplay();
}

void NSCell::setEnabled(BOOL f) {
    if (enabled_ == f) return;
    enabled_ = f;
    redisplay();
}

void NSCell::setHighlighted(BOOL f) {
    if (highlighted_ == f) return;
    highlighted_ = f;
    redisplay();
}

void NSCell::highlight_withFrame_inView(BOOL f, const NSRect& frame, NSView* view) {
    if (highlighted_ == f) return;
    highlighted_ = f;
    if (view) view->setNeedsDisplayInRect(frame);
}

void NSCell::setEditable(BOOL f) noexcept {
    editable_ = f;
    if (f) selectable_ = true;
}

void NSCell::setSelectable(BOOL f) noexcept {
    selectable_ = f;
    if (!f) editable_ = false;
}

// Looks.

NSFont* NSCell::font() const noexcept { return font_; }
void NSCell::setFont(NSFont* font) {
    font_ = font;
    redisplay();
}
NSImage* NSCell::image() const noexcept { return image_; }
void NSCell::setImage(NSImage* image) {
    image_ = image;
    redisplay();
}

void NSCell::setAlignment(NSTextAlignment a) {
    alignment_ = a;
    redisplay();
}
void NSCell::setLineBreakMode(NSLineBreakMode m) {
    lineBreak_ = m;
    redisplay();
}
void NSCell::setWraps(BOOL f) {
    if (f != wraps()) setLineBreakMode(f ? NSLineBreakByWordWrapping : NSLineBreakByClipping);
}
void NSCell::setBordered(BOOL f) {
    bordered_ = f;
    redisplay();
}
void NSCell::setBezeled(BOOL f) {
    bezeled_ = f;
    redisplay();
}

void NSCell::setControlSize(NSControlSize s) {
    size_ = s;
    redisplay();
}

void NSCell::setFocusRingType(NSFocusRingType t) noexcept { focusRing_ = t; }

NSMenu* NSCell::menu() const noexcept { return menu_; }
void NSCell::setMenu(NSMenu* menu) { menu_ = menu; }

Ref<NSString> NSCell::keyEquivalent() const { return NSString::string(); }

} // namespace libvue
