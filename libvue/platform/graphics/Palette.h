#pragma once

#include <cstdint>
#include <string_view>

#include <libvue/platform/graphics/Appearance.h>

namespace libvue {

/// The roles of the system palette. New ones go before `count`; archives name them by text.
enum class SystemColor : unsigned char {
    accent,
    alternateSelectedControl,
    alternateSelectedControlText,
    alternatingRowEven,
    alternatingRowOdd,
    controlBackground,
    control,
    controlDarkShadow,
    controlHighlight,
    controlLightHighlight,
    controlShadow,
    controlText,
    disabledControlText,
    grid,
    header,
    headerText,
    highlight,
    keyboardFocusIndicator,
    knob,
    label,
    link,
    placeholderText,
    quaternaryLabel,
    scrollBar,
    secondaryLabel,
    secondarySelectedControl,
    selectedControl,
    selectedControlText,
    selectedKnob,
    selectedMenuItem,
    selectedMenuItemText,
    selectedTextBackground,
    selectedText,
    separator,
    shadow,
    tertiaryLabel,
    textBackground,
    text,
    underPageBackground,
    windowBackground,
    windowFrame,
    windowFrameText,
    // What the platform's own controls are drawn with.
    controlBorder,
    controlTop,
    controlBottom,
    controlPressed,
    menuBackground,
    tooltipBackground,
    success,
    warning,
    danger,
    count
};

/// 0xRRGGBBAA, straight sRGB.
using PaletteValue = std::uint32_t;

/// What the role looks like. An unknown role is transparent.
[[nodiscard]] LIBVUE_API PaletteValue paletteValue(SystemColor role, Appearance appearance) noexcept;
/// The role's name, such as "controlTextColor"; empty for an unknown one.
[[nodiscard]] LIBVUE_API std::string_view paletteName(SystemColor role) noexcept;
/// `count` where no role has that name.
[[nodiscard]] LIBVUE_API SystemColor paletteRole(std::string_view name) noexcept;

} // namespace libvue
