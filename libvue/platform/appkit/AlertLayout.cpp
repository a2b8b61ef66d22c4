#include <libvue/platform/appkit/AlertLayout.h>

#include <algorithm>
#include <cmath>

namespace libvue {

namespace {

constexpr CGFloat kMargin = 20, kIcon = 56, kIconGap = 16;
constexpr CGFloat kNarrow = 308, kWide = 440; ///< of the texts
constexpr CGFloat kTall = 150;                ///< texts that are higher at the narrow width get the wide one
constexpr CGFloat kMessageGap = 8, kPartGap = 14, kButtonsGap = 20;
constexpr CGFloat kButton = 84, kBetween = 10, kStackGap = 8, kHelp = 24;
constexpr CGFloat kLeastText = 48;

CGFloat heightOf(const AlertParts::HeightOfText& text, CGFloat width) { return text ? std::ceil(text(width)) : 0; }

CGFloat rowOf(const AlertParts& p, CGFloat button) {
    const auto n = static_cast<CGFloat>(p.buttonWidths.size());
    CGFloat width = p.help ? kHelp + 2 * kBetween : 0;
    for (const CGFloat w : p.buttonWidths)
        width += std::max(button, std::ceil(w));
    return width + std::max(0.0, n - 1) * kBetween;
}

struct Column {
    CGFloat width;
    bool stacked;
};

Column columnOf(const AlertParts& p) {
    CGFloat width = kNarrow;
    if (heightOf(p.message, kNarrow) + heightOf(p.informative, kNarrow) > kTall) width = kWide;
    width = std::max(width, std::min(kWide, std::ceil(p.suppression.width)));
    width = std::max(width, std::ceil(p.accessory.width));
    constexpr CGFloat beside = kIcon + kIconGap;
    const CGFloat row = rowOf(p, kButton);
    if (row <= std::max(width, kWide) + beside) return {std::max(width, row - beside), false};
    for (const CGFloat w : p.buttonWidths)
        width = std::max(width, std::min(kWide, std::ceil(w)));
    return {width, true};
}

/// The rectangle of a text, and what it holds where that is more.
CGFloat placeText(const AlertParts& p, const AlertParts::HeightOfText& text, CGFloat room, NSRect* r) {
    const CGFloat natural = heightOf(text, r->size.width);
    r->size.height = std::min(natural, std::floor(std::max(kLeastText, room)));
    return natural > r->size.height ? heightOf(text, r->size.width - p.scrollerWidth) : 0;
}

} // namespace

AlertPlaces placeAlert(const AlertParts& p) {
    AlertPlaces a;
    const auto [column, stacked] = columnOf(p);
    a.stacked = stacked;
    const auto n = static_cast<CGFloat>(p.buttonWidths.size());
    const CGFloat left = kMargin + kIcon + kIconGap, right = left + column;
    const CGFloat buttons =
        stacked ? n * p.buttonHeight + (n - 1) * kStackGap + (p.help ? kHelp + kStackGap : 0) : p.buttonHeight;
    CGFloat below = kButtonsGap + buttons + kMargin;
    if (p.suppression.height > 0) below += kPartGap + p.suppression.height;
    if (p.accessory.height > 0) below += kPartGap + p.accessory.height;

    a.icon = {{kMargin, kMargin}, {kIcon, kIcon}};
    CGFloat room = p.maxHeight - kMargin - below;
    a.message = {{left, kMargin}, {column, 0}};
    a.messageScrolls = placeText(p, p.message, p.informative ? room / 2 : room, &a.message);
    CGFloat y = NSMaxY(a.message);
    a.informative = {{left, y + kMessageGap}, {column, 0}};
    if (p.informative) {
        room -= a.message.size.height + kMessageGap;
        a.informativeScrolls = placeText(p, p.informative, room, &a.informative);
        y = NSMaxY(a.informative);
    } else
        a.message.origin.y = std::max(kMargin, kMargin + std::floor((kIcon - a.message.size.height) / 2));
    y = std::max({y, NSMaxY(a.message), NSMaxY(a.icon)});
    if (p.accessory.height > 0) {
        a.accessory = {{left, y + kPartGap}, p.accessory};
        y = NSMaxY(a.accessory);
    }
    if (p.suppression.height > 0) {
        a.suppression = {{left, y + kPartGap}, {std::min(column, p.suppression.width), p.suppression.height}};
        y = NSMaxY(a.suppression);
    }
    y += kButtonsGap;
    CGFloat x = right;
    for (const CGFloat w : p.buttonWidths) {
        if (stacked) {
            a.buttons.push_back({{left, y}, {column, p.buttonHeight}});
            y += p.buttonHeight + kStackGap;
            continue;
        }
        const CGFloat width = std::max(kButton, std::ceil(w));
        x -= width;
        a.buttons.push_back({{x, y}, {width, p.buttonHeight}});
        x -= kBetween;
    }
    if (p.help) {
        a.help = {{stacked ? left : kMargin, stacked ? y : y + std::floor((p.buttonHeight - kHelp) / 2)},
                  {kHelp, kHelp}};
        if (stacked) y += kHelp + kStackGap;
    }
    y += stacked ? -kStackGap : p.buttonHeight;
    a.size = {right + kMargin, y + kMargin};
    return a;
}

} // namespace libvue
