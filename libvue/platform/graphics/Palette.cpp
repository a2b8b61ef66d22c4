#include <libvue/platform/graphics/Palette.h>

#include <array>
#include <cstddef>

namespace libvue {

namespace {

struct Row {
    SystemColor role;
    std::string_view name;
    PaletteValue light;
    PaletteValue dark;
};

using enum SystemColor;

// Cool greys with one blue. Texts keep a contrast of 4.5 with the backgrounds that they stand on.
constexpr std::array rows{
    Row{accent, "controlAccentColor", 0x2563EBFF, 0x2F6FE4FF},
    Row{alternateSelectedControl, "alternateSelectedControlColor", 0x2563EBFF, 0x2F6FE4FF},
    Row{alternateSelectedControlText, "alternateSelectedControlTextColor", 0xFFFFFFFF, 0xFFFFFFFF},
    Row{alternatingRowEven, "alternatingRowEvenColor", 0xFFFFFFFF, 0x17191DFF},
    Row{alternatingRowOdd, "alternatingRowOddColor", 0xF5F7F9FF, 0x1C1F24FF},
    Row{controlBackground, "controlBackgroundColor", 0xFFFFFFFF, 0x17191DFF},
    Row{control, "controlColor", 0xFFFFFFFF, 0x31353CFF},
    Row{controlDarkShadow, "controlDarkShadowColor", 0x9AA3AEFF, 0x08090BFF},
    Row{controlHighlight, "controlHighlightColor", 0xF3F5F7FF, 0x3A3F47FF},
    Row{controlLightHighlight, "controlLightHighlightColor", 0xFFFFFFFF, 0x454B54FF},
    Row{controlShadow, "controlShadowColor", 0xC3CAD2FF, 0x101216FF},
    Row{controlText, "controlTextColor", 0x1B1F24FF, 0xE8EAEDFF},
    Row{disabledControlText, "disabledControlTextColor", 0x9199A3FF, 0x6B737DFF},
    Row{grid, "gridColor", 0xE2E6EAFF, 0x2C3036FF},
    Row{header, "headerColor", 0xF1F3F5FF, 0x22252AFF},
    Row{headerText, "headerTextColor", 0x4B545EFF, 0xB4BBC4FF},
    Row{highlight, "highlightColor", 0xFFFFFFFF, 0xFFFFFFFF},
    Row{keyboardFocusIndicator, "keyboardFocusIndicatorColor", 0x2563EB80, 0x4C8DFF99},
    Row{knob, "knobColor", 0x9AA3AEFF, 0x6B737DFF},
    Row{label, "labelColor", 0x1B1F24FF, 0xE8EAEDFF},
    Row{link, "linkColor", 0x1D4FD7FF, 0x79A8FFFF},
    Row{placeholderText, "placeholderTextColor", 0x69727DFF, 0x8D96A1FF},
    Row{quaternaryLabel, "quaternaryLabelColor", 0xC3CAD2FF, 0x474D56FF},
    Row{scrollBar, "scrollBarColor", 0xF1F3F5FF, 0x1E2126FF},
    Row{secondaryLabel, "secondaryLabelColor", 0x57606AFF, 0xA6AEB8FF},
    Row{secondarySelectedControl, "secondarySelectedControlColor", 0xDDE3EAFF, 0x363B43FF},
    Row{selectedControl, "selectedControlColor", 0xCFE0FFFF, 0x27457EFF},
    Row{selectedControlText, "selectedControlTextColor", 0x1B1F24FF, 0xF4F6F8FF},
    Row{selectedKnob, "selectedKnobColor", 0x69727DFF, 0x8D96A1FF},
    Row{selectedMenuItem, "selectedMenuItemColor", 0x2563EBFF, 0x2F6FE4FF},
    Row{selectedMenuItemText, "selectedMenuItemTextColor", 0xFFFFFFFF, 0xFFFFFFFF},
    Row{selectedTextBackground, "selectedTextBackgroundColor", 0xBED6FFFF, 0x2B4F93FF},
    Row{selectedText, "selectedTextColor", 0x1B1F24FF, 0xF4F6F8FF},
    Row{separator, "separatorColor", 0xD6DBE1FF, 0x34393FFF},
    Row{shadow, "shadowColor", 0x000000FF, 0x000000FF},
    Row{tertiaryLabel, "tertiaryLabelColor", 0x828B96FF, 0x7D858FFF},
    Row{textBackground, "textBackgroundColor", 0xFFFFFFFF, 0x17191DFF},
    Row{text, "textColor", 0x1B1F24FF, 0xE8EAEDFF},
    Row{underPageBackground, "underPageBackgroundColor", 0xDDE1E6FF, 0x121417FF},
    Row{windowBackground, "windowBackgroundColor", 0xF4F5F7FF, 0x1E2126FF},
    Row{windowFrame, "windowFrameColor", 0xC3CAD2FF, 0x3A3F47FF},
    Row{windowFrameText, "windowFrameTextColor", 0x1B1F24FF, 0xE8EAEDFF},
    Row{controlBorder, "controlBorderColor", 0xC3CAD2FF, 0x454B54FF},
    Row{controlTop, "controlTopColor", 0xFFFFFFFF, 0x363B43FF},
    Row{controlBottom, "controlBottomColor", 0xF6F7F9FF, 0x2F343AFF},
    Row{controlPressed, "controlPressedColor", 0xE4E8EDFF, 0x474D56FF},
    Row{menuBackground, "menuBackgroundColor", 0xFFFFFFFF, 0x24272DFF},
    Row{tooltipBackground, "tooltipBackgroundColor", 0xFFFFFFFF, 0x2B2F36FF},
    Row{success, "systemGreenColor", 0x1A7F37FF, 0x3FB950FF},
    Row{warning, "systemOrangeColor", 0xB35900FF, 0xE3A03AFF},
    Row{danger, "systemRedColor", 0xC9302CFF, 0xFF7B72FF},
};

consteval bool inOrder() {
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (static_cast<std::size_t>(rows[i].role) != i) return false;
    return rows.size() == static_cast<std::size_t>(SystemColor::count);
}
static_assert(inOrder(), "one row a role, in the order of the enumeration");

} // namespace

PaletteValue paletteValue(SystemColor role, Appearance appearance) noexcept {
    const auto i = static_cast<std::size_t>(role);
    if (i >= rows.size()) return 0;
    return appearance == Appearance::dark ? rows[i].dark : rows[i].light;
}

std::string_view paletteName(SystemColor role) noexcept {
    const auto i = static_cast<std::size_t>(role);
    return i < rows.size() ? rows[i].name : std::string_view();
}

SystemColor paletteRole(std::string_view name) noexcept {
    for (const Row& r : rows)
        if (r.name == name) return r.role;
    return SystemColor::count;
}

} // namespace libvue
