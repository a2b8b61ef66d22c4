#include <cmath>
#include <string>
#include <vector>

#include "Dessin.h"

#include <libvue/platform/graphics/Appearance.h>
#include <libvue/platform/graphics/ColorConversion.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/Palette.h>

using namespace libvue;
using namespace libvue::test;

TEST(NSColorTest, theHueCircleHasItsSixCorners) {
    struct Row {
        RGB rgb;
        HSB hsb;
    };
    const Row rows[] = {
        {{1, 0, 0}, {0, 1, 1}},
        {{1, 1, 0}, {1.0 / 6, 1, 1}},
        {{0, 1, 0}, {2.0 / 6, 1, 1}},
        {{0, 1, 1}, {3.0 / 6, 1, 1}},
        {{0, 0, 1}, {4.0 / 6, 1, 1}},
        {{1, 0, 1}, {5.0 / 6, 1, 1}},
        {{0, 0, 0}, {0, 0, 0}},
        {{1, 1, 1}, {0, 0, 1}},
        {{0.25, 0.25, 0.25}, {0, 0, 0.25}},
        {{0.5, 0.25, 0.25}, {0, 0.5, 0.5}},
        {{0.25, 0.5, 0.25}, {2.0 / 6, 0.5, 0.5}},
    };
    for (const Row& row : rows) {
        const HSB hsb = hsbFromRGB(row.rgb);
        EXPECT_NEAR(hsb.hue, row.hsb.hue, 1e-12);
        EXPECT_NEAR(hsb.saturation, row.hsb.saturation, 1e-12);
        EXPECT_NEAR(hsb.brightness, row.hsb.brightness, 1e-12);
    }
    const RGB turned = rgbFromHSB({1, 1, 1});
    EXPECT_EQ(turned.red, 1);
    EXPECT_EQ(turned.green, 0);
    EXPECT_EQ(turned.blue, 0);
}

TEST(NSColorTest, hueAndBackIsTheSameColour) {
    for (int r = 0; r <= 255; r += 15)
        for (int g = 0; g <= 255; g += 17)
            for (int b = 0; b <= 255; b += 5) {
                const RGB c{r / 255.0, g / 255.0, b / 255.0};
                const HSB hsb = hsbFromRGB(c);
                ASSERT_TRUE(hsb.hue >= 0 && hsb.hue < 1 && hsb.saturation <= 1) << r << ' ' << g << ' ' << b;
                const RGB back = rgbFromHSB(hsb);
                ASSERT_NEAR(back.red, c.red, 1e-9) << r << ' ' << g << ' ' << b;
                ASSERT_NEAR(back.green, c.green, 1e-9) << r << ' ' << g << ' ' << b;
                ASSERT_NEAR(back.blue, c.blue, 1e-9) << r << ' ' << g << ' ' << b;
            }
}

TEST(NSColorTest, coloursGoFromSpaceToSpaceWhereTheyCan) {
    struct Row {
        Ref<NSColor> color;
        const ConstantString& space;
        std::string expected; // of description; empty for null
    };
    const Ref<NSColor> device = NSColor::colorWithDeviceRed_green_blue_alpha(0.25, 0.5, 0.75, 0.5);
    const Ref<NSColor> pattern = NSColor::colorWithPatternImage(make<NSImage>(NSMakeSize(4, 4)));
    const Row rows[] = {
        {device, NSCalibratedRGBColorSpace, "NSCalibratedRGBColorSpace 0.250000 0.500000 0.750000 0.500000"},
        {device, NSCalibratedWhiteColorSpace, "NSCalibratedWhiteColorSpace 0.453750 0.500000"},
        {device, NSNamedColorSpace, ""},
        {NSColor::grayColor(), NSDeviceRGBColorSpace, "NSDeviceRGBColorSpace 0.500000 0.500000 0.500000 1.000000"},
        {NSColor::darkGrayColor(), NSDeviceWhiteColorSpace, "NSDeviceWhiteColorSpace 0.333333 1.000000"},
        {NSColor::clearColor(), NSDeviceRGBColorSpace, "NSDeviceRGBColorSpace 0.000000 0.000000 0.000000 0.000000"},
        {NSColor::controlAccentColor(), NSNamedColorSpace, "NSNamedColorSpace controlAccentColor"},
        {pattern, NSDeviceRGBColorSpace, ""},
        {pattern, NSPatternColorSpace, "NSPatternColorSpace"},
    };
    for (const Row& row : rows) {
        const Ref<NSColor> c = row.color->colorUsingColorSpaceName(row.space);
        EXPECT_EQ(c ? c->description()->utf8() : "", row.expected) << row.space->utf8();
    }
    EXPECT_EQ(device->colorUsingColorSpaceName(u"NSDeviceCMYKColorSpace"_ns), nullptr);
    EXPECT_EQ(device->colorUsingColorSpaceName(nullptr), nullptr);
    EXPECT_EQ(device->colorUsingColorSpaceName(NSDeviceRGBColorSpace), device) << "itself where it is there already";
}

TEST(NSColorTest, aComponentOfAnotherSpaceRaises) {
    const Ref<NSColor> rgb = NSColor::colorWithCalibratedRed_green_blue_alpha(0.1, 0.2, 0.3, 0.4);
    const std::string wrong = NSInternalInconsistencyException->utf8();
    EXPECT_EQ(raised([&] { (void)NSColor::blackColor()->redComponent(); }), wrong);
    EXPECT_EQ(raised([&] { (void)NSColor::blackColor()->hueComponent(); }), wrong);
    EXPECT_EQ(raised([&] { NSColor::textColor()->getRed_green_blue_alpha(nullptr, nullptr, nullptr, nullptr); }),
              wrong);
    EXPECT_EQ(raised([&] { (void)rgb->whiteComponent(); }), wrong);
    EXPECT_EQ(raised([&] { (void)NSColor::textColor()->numberOfComponents(); }), wrong);
    CGFloat blue = 0;
    rgb->getRed_green_blue_alpha(nullptr, nullptr, &blue, nullptr);
    EXPECT_EQ(blue, 0.3);
    EXPECT_EQ(NSColor::textColor()->alphaComponent(), 1) << "every colour has an alpha";
}

TEST(NSColorTest, componentsAreHeldBetweenZeroAndOne) {
    const Ref<NSColor> c = NSColor::colorWithDeviceRed_green_blue_alpha(-1, 2, std::nan(""), INFINITY);
    EXPECT_EQ(c->description()->utf8(), "NSDeviceRGBColorSpace 0.000000 1.000000 0.000000 1.000000");
}

TEST(NSColorTest, derivedColoursKeepWhatIsNotChanged) {
    const Ref<NSColor> half = NSColor::whiteColor()->colorWithAlphaComponent(0.5);
    EXPECT_TRUE(half->colorSpaceName()->isEqualToString(NSCalibratedWhiteColorSpace));
    EXPECT_EQ(half->alphaComponent(), 0.5);
    const Ref<NSColor> mixed = NSColor::redColor()->blendedColorWithFraction_ofColor(0.25, NSColor::whiteColor());
    EXPECT_EQ(mixed->description()->utf8(), "NSCalibratedRGBColorSpace 1.000000 0.250000 0.250000 1.000000");
    EXPECT_EQ(NSColor::redColor()->blendedColorWithFraction_ofColor(0.5, nullptr), nullptr);
    EXPECT_EQ(NSColor::redColor()->shadowWithLevel(2)->redComponent(), 0) << "a level over 1 is 1";
}

TEST(NSColorTest, systemColoursFollowTheAppearanceAtEachUse) {
    NSColor* const color = NSColor::textBackgroundColor();
    const Ref<NSColor> light = color->colorUsingColorSpaceName(NSCalibratedWhiteColorSpace);
    Enregistrement r;
    color->set();
    NSRectFill({{0, 0}, {10, 10}});
    {
        AppearanceScope dark(Appearance::dark);
        EXPECT_LT(color->colorUsingColorSpaceName(NSCalibratedWhiteColorSpace)->whiteComponent(), 0.2);
        EXPECT_TRUE(color->isEqual(NSColor::textBackgroundColor())) << "the colour itself stays the same";
        color->set();
        NSRectFill({{0, 0}, {10, 10}});
    }
    EXPECT_GT(light->whiteComponent(), 0.9);
    const auto& ops = r.canvas.operations();
    ASSERT_EQ(ops.size(), 2u);
    EXPECT_GT(ops[0].color.red, 0.9);
    EXPECT_LT(ops[1].color.red, 0.2);
    EXPECT_EQ(currentAppearance(), Appearance::light);
}

TEST(NSColorTest, textsCanBeReadOnTheirBackgrounds) {
    struct Row {
        SystemColor text, background;
    };
    using enum SystemColor;
    const Row rows[] = {
        {text, textBackground},
        {controlText, control},
        {controlText, windowBackground},
        {label, windowBackground},
        {secondaryLabel, windowBackground},
        {secondaryLabel, controlBackground},
        {headerText, header},
        {link, textBackground},
        {placeholderText, textBackground},
        {selectedText, selectedTextBackground},
        {selectedControlText, selectedControl},
        {selectedControlText, secondarySelectedControl},
        {alternateSelectedControlText, alternateSelectedControl},
        {selectedMenuItemText, selectedMenuItem},
        {controlText, menuBackground},
        {text, tooltipBackground},
        {text, alternatingRowOdd},
        {success, textBackground},
        {warning, textBackground},
        {danger, textBackground},
    };
    const auto luminance = [](PaletteValue v) {
        const auto linear = [](unsigned byte) {
            const double c = byte / 255.0;
            return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(v >> 24) + 0.7152 * linear(v >> 16 & 0xFF) + 0.0722 * linear(v >> 8 & 0xFF);
    };
    for (const Appearance appearance : {Appearance::light, Appearance::dark})
        for (const Row& row : rows) {
            const double a = luminance(paletteValue(row.text, appearance));
            const double b = luminance(paletteValue(row.background, appearance));
            const double contrast = (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
            EXPECT_GE(contrast, 4.5) << paletteName(row.text) << " on " << paletteName(row.background)
                                     << (appearance == Appearance::dark ? ", dark" : ", light");
        }
}

TEST(NSColorTest, coloursComeBackFromArchives) {
    const Ref<NSColor> colors[] = {
        NSColor::colorWithDeviceRed_green_blue_alpha(0.1, 0.2, 0.3, 0.4),
        NSColor::colorWithCalibratedWhite_alpha(0.7, 0.5),
        NSColor::gridColor(),
    };
    for (const Ref<NSColor>& c : colors) {
        EXPECT_TRUE(isEqual(throughKeyedArchive(*c), c)) << c->description()->utf8();
        EXPECT_TRUE(isEqual(throughArchive(*c), c)) << c->description()->utf8();
        EXPECT_EQ(c->hash(), throughArchive(*c)->hash());
    }
}
