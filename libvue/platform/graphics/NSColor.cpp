#include <libvue/platform/graphics/NSColor.h>

#include <algorithm>
#include <string>

#include <libvue/platform/backend/Drawing.h>
#include <libvue/platform/foundation/CoderAccess.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/graphics/ColorConversion.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/Palette.h>

namespace libvue {

namespace {

const ClassRegistration<NSColor> registration;

constexpr ConstantString spaceKey{u"NSColorSpace"};
constexpr ConstantString componentsKey[] = {ConstantString{u"NSRed"}, ConstantString{u"NSGreen"},
                                            ConstantString{u"NSBlue"}, ConstantString{u"NSAlpha"}};
constexpr ConstantString roleKey{u"NSColorName"};
constexpr ConstantString imageKey{u"NSImage"};

CGFloat channel(PaletteValue v, int shift) { return ((v >> shift) & 0xFF) / 255.0; }

} // namespace

void NSColor::describe(ClassDescription<NSColor>& c) {
    c.answers<&NSColor::set>("set");
    c.answers<&NSColor::setFill>("setFill");
    c.answers<&NSColor::setStroke>("setStroke");
}

NSColor::NSColor(Space space, CGFloat c0, CGFloat c1, CGFloat c2, CGFloat alpha)
    : space_(space), c_{unitInterval(c0), unitInterval(c1), unitInterval(c2), unitInterval(alpha)} {}

NSColor::NSColor(SystemColor role) : space_(Space::system), role_(role) {}

NSColor::~NSColor() = default;

Ref<NSColor> NSColor::colorWithCalibratedRed_green_blue_alpha(CGFloat r, CGFloat g, CGFloat b, CGFloat a) {
    return make<NSColor>(Space::calibratedRGB, r, g, b, a);
}

Ref<NSColor> NSColor::colorWithDeviceRed_green_blue_alpha(CGFloat r, CGFloat g, CGFloat b, CGFloat a) {
    return make<NSColor>(Space::deviceRGB, r, g, b, a);
}

Ref<NSColor> NSColor::colorWithSRGBRed_green_blue_alpha(CGFloat r, CGFloat g, CGFloat b, CGFloat a) {
    return make<NSColor>(Space::calibratedRGB, r, g, b, a);
}

Ref<NSColor> NSColor::colorWithRed_green_blue_alpha(CGFloat r, CGFloat g, CGFloat b, CGFloat a) {
    return make<NSColor>(Space::calibratedRGB, r, g, b, a);
}

Ref<NSColor> NSColor::colorWithCalibratedWhite_alpha(CGFloat white, CGFloat alpha) {
    return make<NSColor>(Space::calibratedWhite, white, white, white, alpha);
}

Ref<NSColor> NSColor::colorWithDeviceWhite_alpha(CGFloat white, CGFloat alpha) {
    return make<NSColor>(Space::deviceWhite, white, white, white, alpha);
}

Ref<NSColor> NSColor::colorWithWhite_alpha(CGFloat white, CGFloat alpha) {
    return colorWithCalibratedWhite_alpha(white, alpha);
}

Ref<NSColor> NSColor::colorWithCalibratedHue_saturation_brightness_alpha(CGFloat h, CGFloat s, CGFloat b, CGFloat a) {
    const RGB c = rgbFromHSB({unitInterval(h), unitInterval(s), unitInterval(b)});
    return make<NSColor>(Space::calibratedRGB, c.red, c.green, c.blue, a);
}

Ref<NSColor> NSColor::colorWithDeviceHue_saturation_brightness_alpha(CGFloat h, CGFloat s, CGFloat b, CGFloat a) {
    const RGB c = rgbFromHSB({unitInterval(h), unitInterval(s), unitInterval(b)});
    return make<NSColor>(Space::deviceRGB, c.red, c.green, c.blue, a);
}

Ref<NSColor> NSColor::colorWithHue_saturation_brightness_alpha(CGFloat h, CGFloat s, CGFloat b, CGFloat a) {
    return colorWithCalibratedHue_saturation_brightness_alpha(h, s, b, a);
}

Ref<NSColor> NSColor::colorWithPatternImage(NSImage* image) {
    if (!image) return nullptr;
    Ref<NSColor> c = make<NSColor>(Space::pattern, 0, 0, 0, 1);
    c->image_ = image;
    return c;
}

NSString* NSColor::colorSpaceName() const {
    switch (space_) {
    case Space::calibratedRGB:
        return NSCalibratedRGBColorSpace;
    case Space::deviceRGB:
        return NSDeviceRGBColorSpace;
    case Space::calibratedWhite:
        return NSCalibratedWhiteColorSpace;
    case Space::deviceWhite:
        return NSDeviceWhiteColorSpace;
    case Space::system:
        return NSNamedColorSpace;
    case Space::pattern:
        break;
    }
    return NSPatternColorSpace;
}

Ref<NSColor> NSColor::colorUsingColorSpaceName(const NSString* name) {
    if (!name) return nullptr;
    if (name->isEqualToString(colorSpaceName())) return this;
    Space to;
    if (name->isEqualToString(NSCalibratedRGBColorSpace))
        to = Space::calibratedRGB;
    else if (name->isEqualToString(NSDeviceRGBColorSpace))
        to = Space::deviceRGB;
    else if (name->isEqualToString(NSCalibratedWhiteColorSpace))
        to = Space::calibratedWhite;
    else if (name->isEqualToString(NSDeviceWhiteColorSpace))
        to = Space::deviceWhite;
    else
        return nullptr;
    if (space_ == Space::pattern) return nullptr;
    const backend::Color c = resolved();
    if (to == Space::calibratedRGB || to == Space::deviceRGB) return make<NSColor>(to, c.red, c.green, c.blue, c.alpha);
    const double white = whiteFromRGB({c.red, c.green, c.blue});
    return make<NSColor>(to, white, white, white, c.alpha);
}

void NSColor::raiseNoSuchComponent(const char* component) const {
    raiseNamed(NSInternalInconsistencyException, std::string("a colour of ") + colorSpaceName()->UTF8String() +
                                                     " has no " + component + " component; convert it first");
}

CGFloat NSColor::redComponent() const {
    requireRGB("red");
    return c_[0];
}

CGFloat NSColor::greenComponent() const {
    requireRGB("green");
    return c_[1];
}

CGFloat NSColor::blueComponent() const {
    requireRGB("blue");
    return c_[2];
}

void NSColor::getRed_green_blue_alpha(CGFloat* r, CGFloat* g, CGFloat* b, CGFloat* a) const {
    requireRGB("red");
    if (r) *r = c_[0];
    if (g) *g = c_[1];
    if (b) *b = c_[2];
    if (a) *a = c_[3];
}

CGFloat NSColor::hueComponent() const {
    requireRGB("hue");
    return hsbFromRGB({c_[0], c_[1], c_[2]}).hue;
}

CGFloat NSColor::saturationComponent() const {
    requireRGB("saturation");
    return hsbFromRGB({c_[0], c_[1], c_[2]}).saturation;
}

CGFloat NSColor::brightnessComponent() const {
    requireRGB("brightness");
    return std::max({c_[0], c_[1], c_[2]});
}

void NSColor::getHue_saturation_brightness_alpha(CGFloat* h, CGFloat* s, CGFloat* b, CGFloat* a) const {
    requireRGB("hue");
    const HSB c = hsbFromRGB({c_[0], c_[1], c_[2]});
    if (h) *h = c.hue;
    if (s) *s = c.saturation;
    if (b) *b = c.brightness;
    if (a) *a = c_[3];
}

CGFloat NSColor::whiteComponent() const {
    if (!isWhite()) raiseNoSuchComponent("white");
    return c_[0];
}

void NSColor::getWhite_alpha(CGFloat* white, CGFloat* alpha) const {
    if (!isWhite()) raiseNoSuchComponent("white");
    if (white) *white = c_[0];
    if (alpha) *alpha = c_[3];
}

CGFloat NSColor::alphaComponent() const { return space_ == Space::system ? resolved().alpha : c_[3]; }

NSInteger NSColor::numberOfComponents() const {
    if (isRGB()) return 4;
    if (isWhite()) return 2;
    raiseNoSuchComponent("countable");
}

void NSColor::getComponents(CGFloat* components) const {
    const NSInteger n = numberOfComponents();
    if (!components) return;
    std::copy_n(c_, n - 1, components);
    components[n - 1] = c_[3];
}

NSImage* NSColor::patternImage() const { return image_; }

Ref<NSColor> NSColor::colorWithAlphaComponent(CGFloat alpha) {
    if (space_ == Space::pattern) return this;
    if (space_ == Space::system) {
        const backend::Color c = resolved();
        return make<NSColor>(Space::calibratedRGB, c.red, c.green, c.blue, alpha);
    }
    return make<NSColor>(space_, c_[0], c_[1], c_[2], alpha);
}

Ref<NSColor> NSColor::blendedColorWithFraction_ofColor(CGFloat fraction, NSColor* color) {
    if (!color || space_ == Space::pattern || color->space_ == Space::pattern) return nullptr;
    const double f = unitInterval(fraction);
    const backend::Color a = resolved();
    const backend::Color b = color->resolved();
    const auto mix = [f](double x, double y) { return x + (y - x) * f; };
    return make<NSColor>(Space::calibratedRGB, mix(a.red, b.red), mix(a.green, b.green), mix(a.blue, b.blue),
                         mix(a.alpha, b.alpha));
}

Ref<NSColor> NSColor::highlightWithLevel(CGFloat level) {
    return blendedColorWithFraction_ofColor(level, highlightColor());
}

Ref<NSColor> NSColor::shadowWithLevel(CGFloat level) { return blendedColorWithFraction_ofColor(level, shadowColor()); }

void NSColor::set() {
    if (NSGraphicsContext* c = NSGraphicsContext::currentContext()) {
        c->setFillColor(this);
        c->setStrokeColor(this);
    }
}

void NSColor::setFill() {
    if (NSGraphicsContext* c = NSGraphicsContext::currentContext()) c->setFillColor(this);
}

void NSColor::setStroke() {
    if (NSGraphicsContext* c = NSGraphicsContext::currentContext()) c->setStrokeColor(this);
}

void NSColor::drawSwatchInRect(const NSRect& rect) {
    GraphicsStateScope saved;
    setFill();
    NSRectFillUsingOperation(rect, NSCompositeSourceOver);
}

backend::Color NSColor::resolved() const {
    if (space_ == Space::system) {
        const PaletteValue v = paletteValue(role_, currentAppearance());
        return {channel(v, 24), channel(v, 16), channel(v, 8), channel(v, 0)};
    }
    if (space_ == Space::pattern) return {0, 0, 0, 0};
    return {c_[0], c_[1], c_[2], c_[3]};
}

BOOL NSColor::isEqual(const NSObject* other) const {
    if (this == other) return YES;
    const auto* o = as<const NSColor>(other);
    if (!o || space_ != o->space_) return NO;
    if (space_ == Space::system) return role_ == o->role_;
    return image_ == o->image_ && std::equal(std::begin(c_), std::end(c_), std::begin(o->c_));
}

NSUInteger NSColor::hash() const {
    NSUInteger h = static_cast<NSUInteger>(space_) * 31 + static_cast<NSUInteger>(role_);
    for (CGFloat v : c_)
        h = h * 1000003 + static_cast<NSUInteger>(v * 65535);
    return h;
}

Ref<NSString> NSColor::description() const {
    std::string s = colorSpaceName()->UTF8String();
    if (space_ == Space::system)
        s += std::string(" ") + std::string(paletteName(role_));
    else if (isWhite())
        s += " " + std::to_string(c_[0]) + " " + std::to_string(c_[3]);
    else if (isRGB())
        for (CGFloat v : c_)
            s += " " + std::to_string(v);
    return NSString::fromUTF8(s);
}

Ref<NSObject> NSColor::copyWithZone() const { return const_cast<NSColor*>(this); }

void NSColor::encodeWithCoder(NSCoder& coder) const {
    CoderWriter out(coder);
    out.integer(static_cast<NSInteger>(space_), spaceKey);
    if (space_ == Space::system) {
        const Ref<NSString> name = NSString::fromLatin1(paletteName(role_));
        out.object(name, roleKey);
    } else if (space_ == Space::pattern)
        out.object(image_, imageKey);
    else
        for (int i = 0; i < 4; ++i)
            out.real(c_[i], componentsKey[i]);
}

NSColor::NSColor(NSCoder& coder) {
    CoderReader in(coder, this);
    const NSInteger space = in.integer(spaceKey);
    // A number that is no space reads as black.
    if (space < 0 || space > static_cast<NSInteger>(Space::pattern)) return;
    space_ = static_cast<Space>(space);
    if (space_ == Space::system) {
        const auto name = in.object<NSString>(roleKey);
        role_ = name ? paletteRole(name->utf8()) : SystemColor::count;
        if (role_ == SystemColor::count) role_ = SystemColor::text;
    } else if (space_ == Space::pattern) {
        image_ = in.object<NSImage>(imageKey);
        if (!image_) space_ = Space::calibratedRGB;
    } else
        for (int i = 0; i < 4; ++i)
            c_[i] = unitInterval(in.real(componentsKey[i]));
}

} // namespace libvue
