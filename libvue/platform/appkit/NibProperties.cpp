#include <libvue/platform/appkit/NibProperties.h>

#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <span>
#include <string_view>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSBox.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSButtonCell.h>
#include <libvue/platform/appkit/NSImageView.h>
#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSMenuItem.h>
#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSSlider.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSBundle.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNull.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSValue.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/Palette.h>

namespace libvue::detail {

namespace {

/// A view larger than this is a mistake of the file.
constexpr CGFloat kFarthest = 1e7;

struct Word {
    std::string_view word;
    NSInteger number;
};
using Words = std::span<const Word>;

constexpr Word kAlignments[] = {{"left", NSLeftTextAlignment},
                                {"right", NSRightTextAlignment},
                                {"center", NSCenterTextAlignment},
                                {"justified", NSJustifiedTextAlignment},
                                {"natural", NSNaturalTextAlignment}};
constexpr Word kControlSizes[] = {
    {"regular", NSRegularControlSize}, {"small", NSSmallControlSize}, {"mini", NSMiniControlSize}};
constexpr Word kLineBreaks[] = {{"wrap", NSLineBreakByWordWrapping},
                                {"wrapCharacters", NSLineBreakByCharWrapping},
                                {"clip", NSLineBreakByClipping},
                                {"truncateHead", NSLineBreakByTruncatingHead},
                                {"truncateTail", NSLineBreakByTruncatingTail},
                                {"truncateMiddle", NSLineBreakByTruncatingMiddle}};
constexpr Word kButtonTypes[] = {{"push", NSMomentaryPushInButton},
                                 {"switch", NSSwitchButton},
                                 {"radio", NSRadioButton},
                                 {"toggle", NSToggleButton},
                                 {"onOff", NSOnOffButton},
                                 {"pushOnPushOff", NSPushOnPushOffButton},
                                 {"momentary", NSMomentaryChangeButton},
                                 {"light", NSMomentaryLightButton}};
constexpr Word kBezels[] = {{"rounded", NSRoundedBezelStyle},
                            {"square", NSRegularSquareBezelStyle},
                            {"disclosure", NSDisclosureBezelStyle},
                            {"shadowlessSquare", NSShadowlessSquareBezelStyle},
                            {"circular", NSCircularBezelStyle},
                            {"texturedSquare", NSTexturedSquareBezelStyle},
                            {"help", NSHelpButtonBezelStyle},
                            {"smallSquare", NSSmallSquareBezelStyle},
                            {"texturedRounded", NSTexturedRoundedBezelStyle},
                            {"roundRect", NSRoundRectBezelStyle},
                            {"recessed", NSRecessedBezelStyle},
                            {"roundedDisclosure", NSRoundedDisclosureBezelStyle}};
constexpr Word kImagePositions[] = {{"none", NSNoImage},          {"only", NSImageOnly},   {"left", NSImageLeft},
                                    {"right", NSImageRight},      {"below", NSImageBelow}, {"above", NSImageAbove},
                                    {"overlaps", NSImageOverlaps}};
constexpr Word kBorders[] = {
    {"none", NSNoBorder}, {"line", NSLineBorder}, {"bezel", NSBezelBorder}, {"groove", NSGrooveBorder}};
constexpr Word kBoxTypes[] = {
    {"primary", NSBoxPrimary}, {"secondary", NSBoxSecondary}, {"separator", NSBoxSeparator}, {"custom", NSBoxCustom}};
constexpr Word kTitlePositions[] = {
    {"none", NSNoTitle},           {"aboveTop", NSAboveTop},       {"atTop", NSAtTop},
    {"belowTop", NSBelowTop},      {"aboveBottom", NSAboveBottom}, {"atBottom", NSAtBottom},
    {"belowBottom", NSBelowBottom}};
constexpr Word kLevels[] = {
    {"normal", NSNormalWindowLevel}, {"floating", NSFloatingWindowLevel}, {"modal", NSModalPanelWindowLevel}};
constexpr Word kAutoresizing[] = {{"minX", NSViewMinXMargin},      {"width", NSViewWidthSizable},
                                  {"maxX", NSViewMaxXMargin},      {"minY", NSViewMinYMargin},
                                  {"height", NSViewHeightSizable}, {"maxY", NSViewMaxYMargin}};
constexpr Word kStyles[] = {{"borderless", NSBorderlessWindowMask}, {"titled", NSTitledWindowMask},
                            {"closable", NSClosableWindowMask},     {"miniaturizable", NSMiniaturizableWindowMask},
                            {"resizable", NSResizableWindowMask},   {"utility", NSUtilityWindowMask}};

bool numberOf(Words words, const NSString* text, NSInteger& number) {
    const std::string s = text->utf8();
    for (const Word& w : words)
        if (w.word == s) {
            number = w.number;
            return true;
        }
    return false;
}

template <class T> bool fits(NSObject* v) {
    if constexpr (std::is_pointer_v<T>)
        return !v || dynamic_cast<T>(v);
    else if constexpr (std::is_arithmetic_v<T> || std::is_enum_v<T>)
        return as<NSNumber>(v) != nullptr;
    else
        return as<NSValue>(v) && !as<NSNumber>(v);
}

template <class M> struct MemberOf;
template <class C, class R, class A> struct MemberOf<R (C::*)(A)> {
    using Owner = C;
    using Argument = std::remove_cvref_t<A>;
};
template <class C, class R, class A> struct MemberOf<R (C::*)(A) noexcept> : MemberOf<R (C::*)(A)> {};

/// A key of a platform class: how it is set, and which words its numbers have.
struct Property {
    std::string_view key;
    bool (*isOf)(NSObject*);
    bool (*put)(NSObject*, NSObject*);
    Words words;
};

template <class C> bool isOf(NSObject* o) { return dynamic_cast<C*>(o) != nullptr; }

template <auto Set> constexpr Property property(std::string_view key, Words words = {}) {
    using Owner = typename MemberOf<decltype(Set)>::Owner;
    using Argument = typename MemberOf<decltype(Set)>::Argument;
    return {key, &isOf<Owner>,
            [](NSObject* o, NSObject* v) {
                if (!fits<Argument>(v)) return false;
                (dynamic_cast<Owner*>(o)->*Set)(unboxed<Argument>(v));
                return true;
            },
            words};
}

/// One whose setter takes more than the value.
template <class C> constexpr Property special(std::string_view key, bool (*put)(NSObject*, NSObject*)) {
    return {key, &isOf<C>, put, {}};
}

bool putLabel(NSObject* o, NSObject* v) {
    auto* text = as<NSString>(v);
    if (!text) return false;
    auto* field = as<NSTextField>(o);
    field->setStringValue(text);
    field->setEditable(NO);
    field->setSelectable(NO);
    field->setBezeled(NO);
    field->setBordered(NO);
    field->setDrawsBackground(NO);
    return true;
}

bool putLineBreak(NSObject* o, NSObject* v) {
    auto* word = as<NSString>(v);
    NSInteger mode = 0;
    NSCell* cell = as<NSControl>(o)->cell();
    if (!cell || !word || !numberOf(kLineBreaks, word, mode)) return false;
    cell->setLineBreakMode(static_cast<NSLineBreakMode>(mode));
    return true;
}

bool putWraps(NSObject* o, NSObject* v) {
    auto* n = as<NSNumber>(v);
    NSCell* cell = as<NSControl>(o)->cell();
    if (!cell || !n) return false;
    cell->setWraps(n->boolValue());
    return true;
}

bool putDefaultButton(NSObject* o, NSObject* v) {
    auto* button = as<NSButton>(v);
    if (!button) return false;
    as<NSWindow>(o)->setDefaultButtonCell(button->buttonCell());
    return true;
}

// A class stands before its bases where both have a key.
constexpr Property kProperties[] = {
    property<&NSView::setHidden>("hidden"),
    property<&NSView::setToolTip>("toolTip"),
    property<&NSView::setIdentifier>("identifier"),
    property<&NSView::setAlphaValue>("alphaValue"),
    property<&NSView::setAutoresizesSubviews>("autoresizesSubviews"),
    property<&NSView::setNextKeyView>("nextKeyView"),
    property<&NSView::setAccessibilityLabel>("accessibilityLabel"),
    property<&NSControl::setTag>("tag"),
    property<&NSControl::setFont>("font"),
    property<&NSControl::setAlignment>("alignment", kAlignments),
    property<&NSControl::setControlSize>("controlSize", kControlSizes),
    property<&NSControl::setContinuous>("continuous"),
    property<&NSControl::setEnabled>("enabled"),
    property<&NSControl::setRefusesFirstResponder>("refusesFirstResponder"),
    property<&NSControl::setStringValue>("stringValue"),
    property<&NSControl::setTarget>("target"),
    special<NSControl>("lineBreakMode", &putLineBreak),
    special<NSControl>("wraps", &putWraps),
    special<NSTextField>("label", &putLabel),
    property<&NSTextField::setEditable>("editable"),
    property<&NSTextField::setSelectable>("selectable"),
    property<&NSTextField::setBezeled>("bezeled"),
    property<&NSTextField::setBordered>("bordered"),
    property<&NSTextField::setDrawsBackground>("drawsBackground"),
    property<&NSTextField::setTextColor>("textColor"),
    property<&NSTextField::setBackgroundColor>("backgroundColor"),
    property<&NSTextField::setPlaceholderString>("placeholderString"),
    property<&NSTextField::setDelegate>("delegate"),
    property<&NSButton::setTitle>("title"),
    property<&NSButton::setAlternateTitle>("alternateTitle"),
    property<&NSButton::setButtonType>("buttonType", kButtonTypes),
    property<&NSButton::setBezelStyle>("bezelStyle", kBezels),
    property<&NSButton::setBordered>("bordered"),
    property<&NSButton::setTransparent>("transparent"),
    property<&NSButton::setShowsBorderOnlyWhileMouseInside>("showsBorderOnlyWhileMouseInside"),
    property<&NSButton::setKeyEquivalent>("keyEquivalent"),
    property<&NSButton::setKeyEquivalentModifierMask>("keyEquivalentModifierMask"),
    property<&NSButton::setImage>("image"),
    property<&NSButton::setAlternateImage>("alternateImage"),
    property<&NSButton::setImagePosition>("imagePosition", kImagePositions),
    property<&NSButton::setState>("state"),
    property<&NSButton::setAllowsMixedState>("allowsMixedState"),
    property<&NSPopUpButton::setPullsDown>("pullsDown"),
    property<&NSImageView::setImage>("image"),
    property<&NSImageView::setEditable>("editable"),
    property<&NSSlider::setMinValue>("minValue"),
    property<&NSSlider::setMaxValue>("maxValue"),
    property<&NSSlider::setNumberOfTickMarks>("numberOfTickMarks"),
    property<&NSSlider::setAllowsTickMarkValuesOnly>("allowsTickMarkValuesOnly"),
    property<&NSBox::setTitle>("title"),
    property<&NSBox::setTitleFont>("titleFont"),
    property<&NSBox::setTitlePosition>("titlePosition", kTitlePositions),
    property<&NSBox::setBoxType>("boxType", kBoxTypes),
    property<&NSBox::setBorderType>("borderType", kBorders),
    property<&NSBox::setContentViewMargins>("contentViewMargins"),
    property<&NSBox::setTransparent>("transparent"),
    property<&NSScrollView::setBorderType>("borderType", kBorders),
    property<&NSScrollView::setHasVerticalScroller>("hasVerticalScroller"),
    property<&NSScrollView::setHasHorizontalScroller>("hasHorizontalScroller"),
    property<&NSScrollView::setAutohidesScrollers>("autohidesScrollers"),
    property<&NSScrollView::setDrawsBackground>("drawsBackground"),
    property<&NSScrollView::setBackgroundColor>("backgroundColor"),
    property<&NSMenu::setTitle>("title"),
    property<&NSMenu::setDelegate>("delegate"),
    property<&NSMenu::setAutoenablesItems>("autoenablesItems"),
    property<&NSWindow::setTitle>("title"),
    property<&NSWindow::setDelegate>("delegate"),
    property<&NSWindow::setInitialFirstResponder>("initialFirstResponder"),
    special<NSWindow>("defaultButton", &putDefaultButton),
    property<&NSWindow::setBackgroundColor>("backgroundColor"),
    property<&NSWindow::setHasShadow>("hasShadow"),
    property<&NSWindow::setOpaque>("opaque"),
    property<&NSWindow::setAlphaValue>("alphaValue"),
    property<&NSWindow::setMinSize>("minSize"),
    property<&NSWindow::setMaxSize>("maxSize"),
    property<&NSWindow::setLevel>("level", kLevels),
    property<&NSWindow::setFrameAutosaveName>("frameAutosaveName"),
    property<&NSPanel::setFloatingPanel>("floatingPanel"),
    property<&NSPanel::setBecomesKeyOnlyIfNeeded>("becomesKeyOnlyIfNeeded"),
    property<&NSPanel::setWorksWhenModal>("worksWhenModal"),
};

struct NamedColor {
    std::string_view name;
    NSColor* (*get)();
};
/// Beside those of the palette.
constexpr NamedColor kColors[] = {
    {"blackColor", &NSColor::blackColor},
    {"whiteColor", &NSColor::whiteColor},
    {"grayColor", &NSColor::grayColor},
    {"darkGrayColor", &NSColor::darkGrayColor},
    {"lightGrayColor", &NSColor::lightGrayColor},
    {"clearColor", &NSColor::clearColor},
    {"redColor", &NSColor::redColor},
};

Ref<NSColor> colorNamed(const std::string& name) {
    for (const NamedColor& c : kColors)
        if (c.name == name) return c.get();
    if (const SystemColor role = paletteRole(name); role != SystemColor::count) return NSColor::systemColor(role);
    if ((name.size() != 7 && name.size() != 9) || name[0] != '#') return nullptr;
    char* end = nullptr;
    unsigned long n = std::strtoul(name.c_str() + 1, &end, 16);
    if (*end || name.find_first_of("+-xX ") != std::string::npos) return nullptr;
    if (name.size() == 7) n = n << 8 | 0xFF;
    const auto part = [n](int shift) { return static_cast<CGFloat>(n >> shift & 0xFF) / 255; };
    return NSColor::colorWithCalibratedRed_green_blue_alpha(part(24), part(16), part(8), part(0));
}

Ref<NSFont> fontFrom(const NSString* name, const NSDictionary* d) {
    auto* n = d->get<NSNumber>(u"size"_ns);
    const CGFloat size = n ? n->doubleValue() : 0;
    if (!std::isfinite(size) || size < 0 || size > 1000) return nullptr;
    const std::string s = name->utf8();
    if (s == "system") return NSFont::systemFontOfSize(size);
    if (s == "bold") return NSFont::boldSystemFontOfSize(size);
    if (s == "fixed") return NSFont::userFixedPitchFontOfSize(size);
    return NSFont::fontWithName_size(name, size);
}

/// A dictionary that stands for one value: its distinguishing key tells for which.
Ref<NSObject> valueOf(NSDictionary* d, NSBundle* bundle) {
    CGFloat n[4];
    if (auto* name = d->get<NSString>(u"color"_ns)) return colorNamed(name->utf8());
    if (auto* name = d->get<NSString>(u"font"_ns)) return fontFrom(name, d);
    if (auto* name = d->get<NSString>(u"image"_ns)) {
        const Ref<NSString> path = pathForImageResource(bundle, name);
        if (const Ref<NSImage> image = NSImage::initWithContentsOfFile(path)) return image;
        return NSImage::imageNamed(name);
    }
    if (auto* key = d->get<NSString>(u"localized"_ns))
        return (bundle ? bundle : NSBundle::mainBundle())->localizedStringForKey_value_table(key, nullptr, nullptr);
    if (nibNumbers(d->objectForKey(u"size"_ns), 2, n)) return NSValue::valueWithSize({n[0], n[1]});
    if (nibNumbers(d->objectForKey(u"point"_ns), 2, n)) return NSValue::valueWithPoint({n[0], n[1]});
    if (nibNumbers(d->objectForKey(u"rect"_ns), 4, n)) return NSValue::valueWithRect({{n[0], n[1]}, {n[2], n[3]}});
    if (nibNumbers(d->objectForKey(u"range"_ns), 2, n) && n[0] >= 0 && n[1] >= 0)
        return NSValue::valueWithRange({static_cast<NSUInteger>(n[0]), static_cast<NSUInteger>(n[1])});
    return nullptr;
}

bool bitsFrom(NSObject* json, Words words, NSUInteger& mask) {
    auto* list = as<NSArray>(json);
    if (!list) return false;
    mask = 0;
    for (NSObject* o : *list) {
        NSInteger bit = 0;
        auto* word = as<NSString>(o);
        if (!word || !numberOf(words, word, bit)) return false;
        mask |= static_cast<NSUInteger>(bit);
    }
    return true;
}

bool isGeometry(NSObject* o) { return as<NSValue>(o) && !as<NSNumber>(o); }

} // namespace

bool nibNumbers(NSObject* json, NSUInteger count, CGFloat* numbers) {
    auto* list = as<NSArray>(json);
    if (!list || list->count() != count) return false;
    for (NSUInteger i = 0; i < count; ++i) {
        auto* n = list->at<NSNumber>(i);
        if (!n || n->isBoolean() || !(std::abs(n->doubleValue()) <= kFarthest)) return false;
        numbers[i] = n->doubleValue();
    }
    return true;
}

bool nibAutoresizing(NSObject* json, NSUInteger& mask) {
    if (auto* n = as<NSNumber>(json)) {
        mask = n->unsignedIntegerValue();
        return mask < 64;
    }
    return bitsFrom(json, kAutoresizing, mask);
}

bool nibWindowStyle(NSObject* json, NSUInteger& mask) { return bitsFrom(json, kStyles, mask); }

bool nibValue(NSObject* json, NSBundle* bundle, Ref<NSObject>& value, std::string& fault) {
    value = nullptr;
    if (as<NSNull>(json)) return true;
    if (auto* list = as<NSArray>(json)) {
        const Ref<NSMutableArray> out = NSMutableArray::arrayWithCapacity(list->count());
        for (NSObject* o : *list) {
            Ref<NSObject> v;
            if (!nibValue(o, bundle, v, fault)) return false;
            if (!v) v = NSNull::null();
            out->addObject(v);
        }
        value = out;
        return true;
    }
    if (auto* d = as<NSDictionary>(json)) {
        value = valueOf(d, bundle);
        if (!value) fault = "no known colour, font, size, rectangle or text: " + d->description()->utf8();
        return value != nullptr;
    }
    value = json;
    return true;
}

bool setNibProperty(NSObject* object, NSString* key, NSObject* value, std::string& fault) {
    const std::string name = key->utf8();
    for (const Property& p : kProperties) {
        if (p.key != name || !p.isOf(object)) continue;
        Ref<NSObject> v(value);
        NSInteger number = 0;
        if (auto* word = as<NSString>(value); word && !p.words.empty()) {
            if (!numberOf(p.words, word, number)) {
                fault = "\"" + word->utf8() + "\" is no " + name;
                return false;
            }
            v = NSNumber::numberWithInteger(number);
        } else if (!p.words.empty()) {
            fault = name + " is one of a few words";
            return false;
        }
        if (p.put(object, v)) return true;
        fault = "a value of the wrong type for " + name;
        return false;
    }
    object->setValue_forKey(value, key);
    // Key-value coding makes nothing of a value that does not fit: what is read back tells.
    const KeyEntry* entry = object->isa().key(sel(name));
    if (!value || !entry || !entry->get) return true;
    const Ref<NSObject> now = object->valueForKey(key);
    if (!now || (as<NSNumber>(now) && !as<NSNumber>(value)) || isGeometry(now) != isGeometry(value)) {
        fault = "a value of the wrong type for " + name;
        return false;
    }
    return true;
}

} // namespace libvue::detail
