#include <libvue/platform/appkit/NSTextFieldCell.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/FieldEditor.h>
#include <libvue/platform/appkit/NSCursor.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/ThemeDrawing.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/Palette.h>

namespace libvue {

static const ClassRegistration<NSTextFieldCell> registration;

namespace {
constexpr CGFloat kBezelPadding = 7; ///< between the side of a bezel and its text
constexpr ConstantString kTextColor{u"NSTextColor"}, kBackgroundColor{u"NSBackgroundColor"},
    kPlaceholder{u"NSPlaceholderString"}, kDrawsBackground{u"NSDrawsBackground"};
} // namespace

void NSTextFieldCell::describe(ClassDescription<NSTextFieldCell, NSActionCell>& c) {
    c.key<&NSTextFieldCell::placeholderString, &NSTextFieldCell::setPlaceholderString>("placeholderString");
    c.key<&NSTextFieldCell::textColor, &NSTextFieldCell::setTextColor>("textColor");
}

NSTextFieldCell::NSTextFieldCell() : NSTextFieldCell(NSString::string().get()) {}
NSTextFieldCell::NSTextFieldCell(NSString* text) : NSActionCell(text) {
    setLineBreakMode(NSLineBreakByClipping);
    setAlignment(NSNaturalTextAlignment);
}
NSTextFieldCell::NSTextFieldCell(NSCoder& coder)
    : NSActionCell(coder),
      textColor_(as<NSColor>(coder.decodeObjectForKey(kTextColor))),
      backgroundColor_(as<NSColor>(coder.decodeObjectForKey(kBackgroundColor))),
      placeholder_(as<NSString>(coder.decodeObjectForKey(kPlaceholder))),
      drawsBackground_(coder.decodeBoolForKey(kDrawsBackground)) {}
NSTextFieldCell::~NSTextFieldCell() = default;

void NSTextFieldCell::encodeWithCoder(NSCoder& coder) const {
    NSActionCell::encodeWithCoder(coder);
    coder.encodeObject_forKey(textColor_, kTextColor);
    coder.encodeObject_forKey(backgroundColor_, kBackgroundColor);
    coder.encodeObject_forKey(placeholder_, kPlaceholder);
    coder.encodeBool_forKey(drawsBackground_, kDrawsBackground);
}

Ref<NSObject> NSTextFieldCell::copyWithZone() const {
    Ref<NSObject> made = NSActionCell::copyWithZone();
    if (auto* c = as<NSTextFieldCell>(made)) {
        c->textColor_ = textColor_;
        c->backgroundColor_ = backgroundColor_;
        c->placeholder_ = placeholder_;
        c->drawsBackground_ = drawsBackground_;
    }
    return made;
}

NSColor* NSTextFieldCell::textColor() const noexcept { return textColor_ ? textColor_.get() : NSColor::textColor(); }
void NSTextFieldCell::setTextColor(NSColor* c) {
    textColor_ = c;
    redisplay();
}
NSColor* NSTextFieldCell::backgroundColor() const noexcept {
    return backgroundColor_ ? backgroundColor_.get() : NSColor::textBackgroundColor();
}
void NSTextFieldCell::setBackgroundColor(NSColor* c) {
    backgroundColor_ = c;
    redisplay();
}
void NSTextFieldCell::setDrawsBackground(BOOL f) {
    drawsBackground_ = f;
    redisplay();
}
NSString* NSTextFieldCell::placeholderString() const noexcept { return placeholder_; }
void NSTextFieldCell::setPlaceholderString(NSString* s) {
    placeholder_ = s;
    redisplay();
}

NSColor* NSTextFieldCell::effectiveTextColor() const {
    if (!isEnabled()) return NSColor::disabledControlTextColor();
    if (backgroundStyle() == NSBackgroundStyleDark) return NSColor::alternateSelectedControlTextColor();
    return textColor();
}

NSSize NSTextFieldCell::cellSizeForBounds(const NSRect& bounds) const {
    NSSize s = NSActionCell::cellSizeForBounds(bounds);
    if (isBezeled()) s.height = std::max(s.height, theme::controlHeight(controlSize()));
    return s;
}

NSRect NSTextFieldCell::drawingRectForBounds(const NSRect& bounds) const {
    if (isBezeled()) return NSInsetRect(bounds, kBezelPadding, 2);
    if (isBordered()) return NSInsetRect(bounds, 3, 1);
    return bounds;
}

NSRect NSTextFieldCell::titleRectForBounds(const NSRect& bounds) const {
    NSRect r = drawingRectForBounds(bounds);
    if (wraps() || (!isBezeled() && !isBordered())) return r;
    // One line stands in the middle of its field.
    const CGFloat line = std::ceil(sizeWithAttributes(u"Hg"_ns, textAttributes()).height);
    if (line < r.size.height) {
        // The odd point goes below the text, as in buttons.
        const NSView* view = controlView();
        r.origin.y += std::floor((r.size.height - line) / 2 + (view && view->isFlipped() ? 0 : 0.5));
        r.size.height = line;
    }
    return r;
}

void NSTextFieldCell::drawWithFrame_inView(const NSRect& frame, NSView* view) {
    if (NSIsEmptyRect(frame)) return;
    if (isBezeled()) {
        drawTextFieldBezel(frame, isEnabled());
    } else {
        if (drawsBackground_) {
            backgroundColor()->setFill();
            NSRectFillUsingOperation(frame, NSCompositeSourceOver);
        }
        if (isBordered())
            strokeRoundedInside(alignedToPixels(frame), 0, NSColor::systemColor(SystemColor::controlBorder));
    }
    drawInteriorWithFrame_inView(frame, view);
}

void NSTextFieldCell::drawInteriorWithFrame_inView(const NSRect& frame, NSView* view) {
    // While the field editor stands in the field, it draws the text.
    if (auto* field = as<NSTextField>(view); field && field->cell() == this && field->currentEditor()) return;
    const auto text = attributedStringValue();
    const NSUInteger options = NSStringDrawingUsesLineFragmentOrigin | NSStringDrawingTruncatesLastVisibleLine;
    if (text->length() == 0 && placeholder_) {
        const auto attributes = NSMutableDictionary::dictionaryWithDictionary(textAttributes());
        attributes->setObject_forKey(isEnabled() ? NSColor::placeholderTextColor()
                                                 : NSColor::disabledControlTextColor(),
                                     NSForegroundColorAttributeName);
        drawWithRect_options(NSAttributedString::initWithString_attributes(placeholder_, attributes),
                             titleRectForBounds(frame), options);
        return;
    }
    drawWithRect_options(text, titleRectForBounds(frame), options);
}

NSText* NSTextFieldCell::setUpFieldEditorAttributes(NSText* editor) {
    if (auto* e = as<FieldEditor>(editor)) e->setAlignment(alignment());
    return NSActionCell::setUpFieldEditorAttributes(editor);
}

} // namespace libvue
