#include <libvue/platform/graphics/NSColor.h>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/Palette.h>

#include <array>

// The shared colours: the standard ones and those of the palette.

namespace libvue {

namespace {

using Space = NSColor::Space;

NSColor* keptWhite(CGFloat white, CGFloat alpha) {
    return keptForever(make<NSColor>(Space::calibratedWhite, white, white, white, alpha));
}

NSColor* keptRGB(CGFloat r, CGFloat g, CGFloat b) {
    return keptForever(make<NSColor>(Space::calibratedRGB, r, g, b, 1.0));
}

} // namespace

NSColor* NSColor::blackColor() {
    static NSColor* const c = keptWhite(0, 1);
    return c;
}
NSColor* NSColor::darkGrayColor() {
    static NSColor* const c = keptWhite(1.0 / 3, 1);
    return c;
}
NSColor* NSColor::lightGrayColor() {
    static NSColor* const c = keptWhite(2.0 / 3, 1);
    return c;
}
NSColor* NSColor::whiteColor() {
    static NSColor* const c = keptWhite(1, 1);
    return c;
}
NSColor* NSColor::grayColor() {
    static NSColor* const c = keptWhite(0.5, 1);
    return c;
}
NSColor* NSColor::redColor() {
    static NSColor* const c = keptRGB(1, 0, 0);
    return c;
}
NSColor* NSColor::greenColor() {
    static NSColor* const c = keptRGB(0, 1, 0);
    return c;
}
NSColor* NSColor::blueColor() {
    static NSColor* const c = keptRGB(0, 0, 1);
    return c;
}
NSColor* NSColor::cyanColor() {
    static NSColor* const c = keptRGB(0, 1, 1);
    return c;
}
NSColor* NSColor::yellowColor() {
    static NSColor* const c = keptRGB(1, 1, 0);
    return c;
}
NSColor* NSColor::magentaColor() {
    static NSColor* const c = keptRGB(1, 0, 1);
    return c;
}
NSColor* NSColor::orangeColor() {
    static NSColor* const c = keptRGB(1, 0.5, 0);
    return c;
}
NSColor* NSColor::purpleColor() {
    static NSColor* const c = keptRGB(0.5, 0, 0.5);
    return c;
}
NSColor* NSColor::brownColor() {
    static NSColor* const c = keptRGB(0.6, 0.4, 0.2);
    return c;
}
NSColor* NSColor::clearColor() {
    static NSColor* const c = keptWhite(0, 0);
    return c;
}

NSColor* NSColor::systemColor(SystemColor role) {
    static std::array<NSColor*, static_cast<std::size_t>(SystemColor::count)> made{};
    const auto i = static_cast<std::size_t>(role);
    if (i >= made.size()) return clearColor();
    if (!made[i]) made[i] = keptForever(make<NSColor>(role));
    return made[i];
}

NSColor* NSColor::alternateSelectedControlColor() { return systemColor(SystemColor::alternateSelectedControl); }
NSColor* NSColor::alternateSelectedControlTextColor() { return systemColor(SystemColor::alternateSelectedControlText); }
NSColor* NSColor::controlAccentColor() { return systemColor(SystemColor::accent); }
NSColor* NSColor::controlBackgroundColor() { return systemColor(SystemColor::controlBackground); }
NSColor* NSColor::controlColor() { return systemColor(SystemColor::control); }
NSColor* NSColor::controlDarkShadowColor() { return systemColor(SystemColor::controlDarkShadow); }
NSColor* NSColor::controlHighlightColor() { return systemColor(SystemColor::controlHighlight); }
NSColor* NSColor::controlLightHighlightColor() { return systemColor(SystemColor::controlLightHighlight); }
NSColor* NSColor::controlShadowColor() { return systemColor(SystemColor::controlShadow); }
NSColor* NSColor::controlTextColor() { return systemColor(SystemColor::controlText); }
NSColor* NSColor::disabledControlTextColor() { return systemColor(SystemColor::disabledControlText); }
NSColor* NSColor::gridColor() { return systemColor(SystemColor::grid); }
NSColor* NSColor::headerColor() { return systemColor(SystemColor::header); }
NSColor* NSColor::headerTextColor() { return systemColor(SystemColor::headerText); }
NSColor* NSColor::highlightColor() { return systemColor(SystemColor::highlight); }
NSColor* NSColor::keyboardFocusIndicatorColor() { return systemColor(SystemColor::keyboardFocusIndicator); }
NSColor* NSColor::labelColor() { return systemColor(SystemColor::label); }
NSColor* NSColor::linkColor() { return systemColor(SystemColor::link); }
NSColor* NSColor::placeholderTextColor() { return systemColor(SystemColor::placeholderText); }
NSColor* NSColor::quaternaryLabelColor() { return systemColor(SystemColor::quaternaryLabel); }
NSColor* NSColor::scrollBarColor() { return systemColor(SystemColor::scrollBar); }
NSColor* NSColor::knobColor() { return systemColor(SystemColor::knob); }
NSColor* NSColor::secondaryLabelColor() { return systemColor(SystemColor::secondaryLabel); }
NSColor* NSColor::secondarySelectedControlColor() { return systemColor(SystemColor::secondarySelectedControl); }
NSColor* NSColor::selectedControlColor() { return systemColor(SystemColor::selectedControl); }
NSColor* NSColor::selectedControlTextColor() { return systemColor(SystemColor::selectedControlText); }
NSColor* NSColor::selectedKnobColor() { return systemColor(SystemColor::selectedKnob); }
NSColor* NSColor::selectedMenuItemColor() { return systemColor(SystemColor::selectedMenuItem); }
NSColor* NSColor::selectedMenuItemTextColor() { return systemColor(SystemColor::selectedMenuItemText); }
NSColor* NSColor::selectedTextBackgroundColor() { return systemColor(SystemColor::selectedTextBackground); }
NSColor* NSColor::selectedTextColor() { return systemColor(SystemColor::selectedText); }
NSColor* NSColor::separatorColor() { return systemColor(SystemColor::separator); }
NSColor* NSColor::shadowColor() { return systemColor(SystemColor::shadow); }
NSColor* NSColor::tertiaryLabelColor() { return systemColor(SystemColor::tertiaryLabel); }
NSColor* NSColor::textBackgroundColor() { return systemColor(SystemColor::textBackground); }
NSColor* NSColor::textColor() { return systemColor(SystemColor::text); }
NSColor* NSColor::underPageBackgroundColor() { return systemColor(SystemColor::underPageBackground); }
NSColor* NSColor::windowBackgroundColor() { return systemColor(SystemColor::windowBackground); }
NSColor* NSColor::windowFrameColor() { return systemColor(SystemColor::windowFrame); }
NSColor* NSColor::windowFrameTextColor() { return systemColor(SystemColor::windowFrameText); }

Ref<NSArray> NSColor::controlAlternatingRowBackgroundColors() {
    return NSArray::arrayWithObjects(
        {systemColor(SystemColor::alternatingRowEven), systemColor(SystemColor::alternatingRowOdd)});
}

} // namespace libvue
