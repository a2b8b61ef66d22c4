#pragma once

#include <libvue/platform/graphics/Forward.h>

namespace libvue {

/// How what is drawn meets what is there.
enum NSCompositingOperation : NSUInteger {
    NSCompositeClear = 0,
    NSCompositeCopy = 1,
    NSCompositeSourceOver = 2,
    NSCompositeSourceIn = 3,
    NSCompositeSourceOut = 4,
    NSCompositeSourceAtop = 5,
    NSCompositeDestinationOver = 6,
    NSCompositeDestinationIn = 7,
    NSCompositeDestinationOut = 8,
    NSCompositeDestinationAtop = 9,
    NSCompositeXOR = 10,
    NSCompositePlusDarker = 11,
    NSCompositeHighlight = 12,
    NSCompositePlusLighter = 13
};

enum NSImageInterpolation : NSUInteger {
    NSImageInterpolationDefault = 0,
    NSImageInterpolationNone = 1,
    NSImageInterpolationLow = 2,
    NSImageInterpolationMedium = 4,
    NSImageInterpolationHigh = 3
};

} // namespace libvue
