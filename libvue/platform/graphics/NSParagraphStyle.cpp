#include <libvue/platform/graphics/NSParagraphStyle.h>

#include <array>
#include <cmath>
#include <functional>
#include <string>

#include <libvue/platform/foundation/CoderAccess.h>
#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/graphics/HeldEnum.h>

namespace libvue {

namespace {

const ClassRegistration<NSTextTab> tabRegistration;
const ClassRegistration<NSParagraphStyle> registration;
const ClassRegistration<NSMutableParagraphStyle> mutableRegistration;

constexpr ConstantString alignmentKey{u"NSAlignment"};
constexpr ConstantString lineBreakKey{u"NSLineBreakMode"};
constexpr ConstantString directionKey{u"NSWritingDirection"};
constexpr ConstantString stopsKey{u"NSTabStops"};
constexpr ConstantString locationKey{u"NSLocation"};
constexpr ConstantString lengthKeys[] = {
    ConstantString{u"NSLineSpacing"},
    ConstantString{u"NSParagraphSpacing"},
    ConstantString{u"NSParagraphSpacingBefore"},
    ConstantString{u"NSFirstLineHeadIndent"},
    ConstantString{u"NSHeadIndent"},
    ConstantString{u"NSTailIndent"},
    ConstantString{u"NSMinLineHeight"},
    ConstantString{u"NSMaxLineHeight"},
    ConstantString{u"NSLineHeightMultiple"},
    ConstantString{u"NSDefaultTabInterval"},
};

NSTextAlignment heldAlignment(NSInteger v, NSTextAlignment otherwise) {
    return heldEnum(v, NSLeftTextAlignment, NSNaturalTextAlignment, otherwise);
}

template <class V> auto lengths(V& v) {
    return std::array{&v.lineSpacing,        &v.paragraphSpacing,  &v.paragraphSpacingBefore, &v.firstLineHeadIndent,
                      &v.headIndent,         &v.tailIndent,        &v.minimumLineHeight,      &v.maximumLineHeight,
                      &v.lineHeightMultiple, &v.defaultTabInterval};
}

} // namespace

void NSTextTab::describe(ClassDescription<NSTextTab>&) {}

NSTextTab::NSTextTab(NSCoder& coder) {
    CoderReader in(coder, this);
    location_ = in.real(locationKey);
    alignment_ = heldAlignment(in.integer(alignmentKey), NSLeftTextAlignment);
}

BOOL NSTextTab::isEqual(const NSObject* other) const {
    const auto* o = as<const NSTextTab>(other);
    return o && location_ == o->location_ && alignment_ == o->alignment_;
}

NSUInteger NSTextTab::hash() const { return std::hash<double>()(location_) + alignment_; }

Ref<NSObject> NSTextTab::copyWithZone() const { return const_cast<NSTextTab*>(this); }

void NSTextTab::encodeWithCoder(NSCoder& coder) const {
    CoderWriter out(coder);
    out.real(location_, locationKey);
    out.integer(static_cast<NSInteger>(alignment_), alignmentKey);
}

void NSParagraphStyle::describe(ClassDescription<NSParagraphStyle>& c) {
    c.key<&NSParagraphStyle::alignment>("alignment");
    c.key<&NSParagraphStyle::lineBreakMode>("lineBreakMode");
}

NSParagraphStyle::NSParagraphStyle() = default;
NSParagraphStyle::~NSParagraphStyle() = default;

NSParagraphStyle* NSParagraphStyle::defaultParagraphStyle() {
    static NSParagraphStyle* const style = keptForever(make<NSParagraphStyle>());
    return style;
}

void NSParagraphStyle::take(const NSParagraphStyle& other) {
    v_ = other.v_;
    tabStops_ = other.tabStops_;
}

BOOL NSParagraphStyle::isEqual(const NSObject* other) const {
    if (this == other) return YES;
    const auto* o = as<const NSParagraphStyle>(other);
    return o && v_ == o->v_ && libvue::isEqual(tabStops_, o->tabStops_);
}

NSUInteger NSParagraphStyle::hash() const {
    NSUInteger h = v_.alignment * 7 + v_.lineBreakMode;
    for (const CGFloat* v : lengths(v_))
        h = h * 31 + std::hash<double>()(*v);
    return h;
}

Ref<NSString> NSParagraphStyle::description() const {
    std::string s = "alignment " + std::to_string(v_.alignment) + ", line break " + std::to_string(v_.lineBreakMode);
    for (const CGFloat* v : lengths(v_))
        s += ", " + std::to_string(*v);
    return NSString::fromUTF8(s);
}

Ref<NSObject> NSParagraphStyle::copyWithZone() const { return const_cast<NSParagraphStyle*>(this); }

Ref<NSMutableParagraphStyle> NSParagraphStyle::mutableCopy() const {
    Ref<NSMutableParagraphStyle> copy = make<NSMutableParagraphStyle>();
    copy->setParagraphStyle(this);
    return copy;
}

Ref<NSObject> NSParagraphStyle::mutableCopyWithZone() const { return mutableCopy(); }

void NSParagraphStyle::encodeWithCoder(NSCoder& coder) const {
    CoderWriter out(coder);
    out.integer(static_cast<NSInteger>(v_.alignment), alignmentKey);
    out.integer(static_cast<NSInteger>(v_.lineBreakMode), lineBreakKey);
    out.integer(v_.baseWritingDirection, directionKey);
    std::size_t i = 0;
    for (const CGFloat* v : lengths(v_))
        out.real(*v, lengthKeys[i++]);
    out.object(tabStops_, stopsKey);
}

NSParagraphStyle::NSParagraphStyle(NSCoder& coder) {
    CoderReader in(coder, this);
    v_.alignment = heldAlignment(in.integer(alignmentKey), NSNaturalTextAlignment);
    v_.lineBreakMode = heldEnum(in.integer(lineBreakKey), NSLineBreakByWordWrapping, NSLineBreakByTruncatingMiddle,
                                NSLineBreakByWordWrapping);
    v_.baseWritingDirection = heldEnum(in.integer(directionKey), NSWritingDirectionNatural,
                                       NSWritingDirectionRightToLeft, NSWritingDirectionNatural);
    std::size_t i = 0;
    for (CGFloat* v : lengths(v_))
        if (const CGFloat read = in.real(lengthKeys[i++]); std::isfinite(read)) *v = read;
    tabStops_ = in.object<NSArray>(stopsKey);
}

void NSMutableParagraphStyle::describe(ClassDescription<NSMutableParagraphStyle, NSParagraphStyle>&) {}

NSMutableParagraphStyle::NSMutableParagraphStyle() = default;

NSMutableParagraphStyle::NSMutableParagraphStyle(NSCoder& coder) : NSParagraphStyle(coder) {}

void NSMutableParagraphStyle::setParagraphStyle(const NSParagraphStyle* style) {
    if (style) take(*style);
}

void NSMutableParagraphStyle::setTabStops(NSArray* stops) {
    tabStops_ = stops ? NSArray::arrayWithArray(stops) : nullptr;
}

void NSMutableParagraphStyle::addTabStop(NSTextTab* stop) {
    if (!stop) return;
    Ref<NSMutableArray> stops = tabStops_ ? NSMutableArray::arrayWithArray(tabStops_) : NSMutableArray::array();
    NSUInteger at = 0;
    while (at < stops->count()) {
        const auto* other = stops->at<NSTextTab>(at);
        if (other && other->location() > stop->location()) break;
        ++at;
    }
    stops->insertObject_atIndex(stop, at);
    tabStops_ = NSArray::arrayWithArray(stops);
}

Ref<NSObject> NSMutableParagraphStyle::copyWithZone() const {
    Ref<NSParagraphStyle> copy = make<NSParagraphStyle>();
    copy->take(*this);
    return copy;
}

} // namespace libvue
