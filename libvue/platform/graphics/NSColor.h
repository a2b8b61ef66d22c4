#pragma once

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/graphics/Forward.h>

namespace libvue {

// Colour space names.
inline constexpr ConstantString NSCalibratedWhiteColorSpace{u"NSCalibratedWhiteColorSpace"};
inline constexpr ConstantString NSCalibratedRGBColorSpace{u"NSCalibratedRGBColorSpace"};
inline constexpr ConstantString NSDeviceWhiteColorSpace{u"NSDeviceWhiteColorSpace"};
inline constexpr ConstantString NSDeviceRGBColorSpace{u"NSDeviceRGBColorSpace"};
inline constexpr ConstantString NSNamedColorSpace{u"NSNamedColorSpace"};
inline constexpr ConstantString NSPatternColorSpace{u"NSPatternColorSpace"};

/// A role of the system palette.
enum class SystemColor : unsigned char;

/// A colour: immutable and shared. Components are held between 0 and 1 (a NaN reads as 0).
///
/// A system colour (controlTextColor, …) has no components of its own: it resolves by the current appearance at each
/// use, and its space is NSNamedColorSpace. Asking a colour for a component that its space does not have raises
/// NSInternalInconsistencyException; convert it first by colorUsingColorSpaceName.
class LIBVUE_API NSColor : public NSObject {
public:
    static void describe(ClassDescription<NSColor>& c);
    explicit NSColor(NSCoder& coder);
    ~NSColor() override;

    [[nodiscard]] static Ref<NSColor> colorWithCalibratedRed_green_blue_alpha(CGFloat r, CGFloat g, CGFloat b,
                                                                              CGFloat a);
    [[nodiscard]] static Ref<NSColor> colorWithDeviceRed_green_blue_alpha(CGFloat r, CGFloat g, CGFloat b, CGFloat a);
    [[nodiscard]] static Ref<NSColor> colorWithSRGBRed_green_blue_alpha(CGFloat r, CGFloat g, CGFloat b, CGFloat a);
    [[nodiscard]] static Ref<NSColor> colorWithRed_green_blue_alpha(CGFloat r, CGFloat g, CGFloat b, CGFloat a);
    [[nodiscard]] static Ref<NSColor> colorWithCalibratedWhite_alpha(CGFloat white, CGFloat alpha);
    [[nodiscard]] static Ref<NSColor> colorWithDeviceWhite_alpha(CGFloat white, CGFloat alpha);
    [[nodiscard]] static Ref<NSColor> colorWithWhite_alpha(CGFloat white, CGFloat alpha);
    [[nodiscard]] static Ref<NSColor> colorWithCalibratedHue_saturation_brightness_alpha(CGFloat h, CGFloat s,
                                                                                         CGFloat b, CGFloat a);
    [[nodiscard]] static Ref<NSColor> colorWithDeviceHue_saturation_brightness_alpha(CGFloat h, CGFloat s, CGFloat b,
                                                                                     CGFloat a);
    [[nodiscard]] static Ref<NSColor> colorWithHue_saturation_brightness_alpha(CGFloat h, CGFloat s, CGFloat b,
                                                                               CGFloat a);
    /// Tiles the image from the origin of the user space. Null for a null image.
    [[nodiscard]] static Ref<NSColor> colorWithPatternImage(NSImage* image);

    // The standard colours, shared.

    [[nodiscard]] static NSColor* blackColor();
    [[nodiscard]] static NSColor* darkGrayColor();
    [[nodiscard]] static NSColor* lightGrayColor();
    [[nodiscard]] static NSColor* whiteColor();
    [[nodiscard]] static NSColor* grayColor();
    [[nodiscard]] static NSColor* redColor();
    [[nodiscard]] static NSColor* greenColor();
    [[nodiscard]] static NSColor* blueColor();
    [[nodiscard]] static NSColor* cyanColor();
    [[nodiscard]] static NSColor* yellowColor();
    [[nodiscard]] static NSColor* magentaColor();
    [[nodiscard]] static NSColor* orangeColor();
    [[nodiscard]] static NSColor* purpleColor();
    [[nodiscard]] static NSColor* brownColor();
    [[nodiscard]] static NSColor* clearColor();

    // System colours, shared; each use resolves them by the current appearance.

    [[nodiscard]] static NSColor* alternateSelectedControlColor();
    [[nodiscard]] static NSColor* alternateSelectedControlTextColor();
    [[nodiscard]] static NSColor* controlAccentColor();
    [[nodiscard]] static NSColor* controlBackgroundColor();
    [[nodiscard]] static NSColor* controlColor();
    [[nodiscard]] static NSColor* controlDarkShadowColor();
    [[nodiscard]] static NSColor* controlHighlightColor();
    [[nodiscard]] static NSColor* controlLightHighlightColor();
    [[nodiscard]] static NSColor* controlShadowColor();
    [[nodiscard]] static NSColor* controlTextColor();
    [[nodiscard]] static NSColor* disabledControlTextColor();
    [[nodiscard]] static NSColor* gridColor();
    [[nodiscard]] static NSColor* headerColor();
    [[nodiscard]] static NSColor* headerTextColor();
    [[nodiscard]] static NSColor* highlightColor();
    [[nodiscard]] static NSColor* keyboardFocusIndicatorColor();
    [[nodiscard]] static NSColor* labelColor();
    [[nodiscard]] static NSColor* linkColor();
    [[nodiscard]] static NSColor* placeholderTextColor();
    [[nodiscard]] static NSColor* quaternaryLabelColor();
    [[nodiscard]] static NSColor* scrollBarColor();
    [[nodiscard]] static NSColor* knobColor();
    [[nodiscard]] static NSColor* secondaryLabelColor();
    [[nodiscard]] static NSColor* secondarySelectedControlColor();
    [[nodiscard]] static NSColor* selectedControlColor();
    [[nodiscard]] static NSColor* selectedControlTextColor();
    [[nodiscard]] static NSColor* selectedKnobColor();
    [[nodiscard]] static NSColor* selectedMenuItemColor();
    [[nodiscard]] static NSColor* selectedMenuItemTextColor();
    [[nodiscard]] static NSColor* selectedTextBackgroundColor();
    [[nodiscard]] static NSColor* selectedTextColor();
    [[nodiscard]] static NSColor* separatorColor();
    [[nodiscard]] static NSColor* shadowColor();
    [[nodiscard]] static NSColor* tertiaryLabelColor();
    [[nodiscard]] static NSColor* textBackgroundColor();
    [[nodiscard]] static NSColor* textColor();
    [[nodiscard]] static NSColor* underPageBackgroundColor();
    [[nodiscard]] static NSColor* windowBackgroundColor();
    [[nodiscard]] static NSColor* windowFrameColor();
    [[nodiscard]] static NSColor* windowFrameTextColor();
    /// The backgrounds of the rows of a list, in turn.
    [[nodiscard]] static Ref<NSArray> controlAlternatingRowBackgroundColors();
    /// The shared colour of any role of the palette, see Palette.h.
    [[nodiscard]] static NSColor* systemColor(SystemColor role);

    // Reading.

    [[nodiscard]] NSString* colorSpaceName() const;
    /// The same colour in the named space; itself when it is in that space already, null where it cannot be expressed
    /// there (a pattern, an unknown name). RGB goes to white by luminance.
    [[nodiscard]] Ref<NSColor> colorUsingColorSpaceName(const NSString* name);
    [[nodiscard]] CGFloat redComponent() const;
    [[nodiscard]] CGFloat greenComponent() const;
    [[nodiscard]] CGFloat blueComponent() const;
    /// Any pointer may be null.
    void getRed_green_blue_alpha(CGFloat* r, CGFloat* g, CGFloat* b, CGFloat* a) const;
    /// 0 to 1 for the whole circle; 0 for a grey.
    [[nodiscard]] CGFloat hueComponent() const;
    [[nodiscard]] CGFloat saturationComponent() const;
    [[nodiscard]] CGFloat brightnessComponent() const;
    void getHue_saturation_brightness_alpha(CGFloat* h, CGFloat* s, CGFloat* b, CGFloat* a) const;
    [[nodiscard]] CGFloat whiteComponent() const;
    void getWhite_alpha(CGFloat* white, CGFloat* alpha) const;
    /// Of any colour.
    [[nodiscard]] CGFloat alphaComponent() const;
    [[nodiscard]] NSInteger numberOfComponents() const;
    void getComponents(CGFloat* components) const;
    /// Null unless made from an image.
    [[nodiscard]] NSImage* patternImage() const;

    // Deriving. A fraction is held between 0 and 1; null where a colour cannot be expressed in calibrated RGB.

    /// The same colour with that alpha in place of its own.
    [[nodiscard]] Ref<NSColor> colorWithAlphaComponent(CGFloat alpha);
    /// 0 gives this colour, 1 the other one.
    [[nodiscard]] Ref<NSColor> blendedColorWithFraction_ofColor(CGFloat fraction, NSColor* color);
    /// Towards highlightColor.
    [[nodiscard]] Ref<NSColor> highlightWithLevel(CGFloat level);
    /// Towards shadowColor.
    [[nodiscard]] Ref<NSColor> shadowWithLevel(CGFloat level);

    // Drawing: into the graphics state of the current context. Without one, nothing.

    void set();
    void setFill();
    void setStroke();
    /// Fills the rectangle, composed over what is there.
    void drawSwatchInRect(const NSRect& rect);

    /// What the backend draws now, by the current appearance; a pattern gives transparent black.
    [[nodiscard]] backend::Color resolved() const;

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSString> description() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;

    /// Not for callers: which components stand in a colour.
    enum class Space : unsigned char { calibratedRGB, deviceRGB, calibratedWhite, deviceWhite, system, pattern };
    NSColor(Space space, CGFloat c0, CGFloat c1, CGFloat c2, CGFloat alpha);
    explicit NSColor(SystemColor role);

private:
    [[nodiscard]] bool isRGB() const noexcept { return space_ <= Space::deviceRGB; }
    [[nodiscard]] bool isWhite() const noexcept {
        return space_ == Space::calibratedWhite || space_ == Space::deviceWhite;
    }
    [[noreturn]] void raiseNoSuchComponent(const char* component) const;
    void requireRGB(const char* component) const {
        if (!isRGB()) raiseNoSuchComponent(component);
    }

    Space space_ = Space::calibratedRGB;
    SystemColor role_{};
    CGFloat c_[4] = {0, 0, 0, 1}; // red, green, blue, alpha; or white thrice and alpha
    Ref<NSImage> image_;
};

} // namespace libvue
