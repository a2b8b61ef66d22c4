#pragma once

#include <functional>
#include <vector>

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/NSGeometry.h>

namespace libvue {

/// What an alert is made of. Lengths in points; an absent part has no size.
struct AlertParts {
    /// The height of a text that wraps to a width; never asked of an empty function.
    using HeightOfText = std::function<CGFloat(CGFloat width)>;
    HeightOfText message, informative;
    NSSize accessory{0, 0};
    NSSize suppression{0, 0};
    std::vector<CGFloat> buttonWidths; ///< in their order, the first one foremost
    CGFloat buttonHeight = 24;
    bool help = false;
    CGFloat maxHeight = 600;    ///< texts beyond it scroll
    CGFloat scrollerWidth = 12; ///< what a text that scrolls has less of its width
};

/// Where they go, y downward from the top left corner of the content.
struct AlertPlaces {
    NSSize size;
    NSRect icon, message, informative, accessory, suppression, help;
    /// Of the whole text where it scrolls inside its rectangle, else 0.
    CGFloat messageScrolls = 0, informativeScrolls = 0;
    std::vector<NSRect> buttons;
    bool stacked = false; ///< the buttons lie below each other: they are too wide for a row
};

/// An icon on the left, texts beside it, the buttons in a row from the right.
[[nodiscard]] LIBVUE_API AlertPlaces placeAlert(const AlertParts& parts);

} // namespace libvue
