#pragma once

#include <libvue/platform/foundation/Types.h>

namespace libvue {

/// What NSCell::hitTestForEvent_inRect_ofView answers, as a sum.
enum NSCellHit : NSUInteger {
    NSCellHitNone = 0,
    NSCellHitContentArea = 1,
    /// A text that can be edited.
    NSCellHitEditableTextArea = 2,
    /// The press belongs to the cell, which tracks it.
    NSCellHitTrackableArea = 4
};

} // namespace libvue
