#pragma once

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// How the value changed, an NSNumber under NSKeyValueChangeKindKey.
enum NSKeyValueChange : NSUInteger {
    NSKeyValueChangeSetting = 1,
    NSKeyValueChangeInsertion = 2,
    NSKeyValueChangeRemoval = 3,
    NSKeyValueChangeReplacement = 4
};

inline constexpr ConstantString NSKeyValueChangeKindKey{u"kind"};
/// The values after and before; NSNull where there was none.
inline constexpr ConstantString NSKeyValueChangeNewKey{u"new"};
inline constexpr ConstantString NSKeyValueChangeOldKey{u"old"};
/// An NSIndexSet, where the change concerns a part of a list.
inline constexpr ConstantString NSKeyValueChangeIndexesKey{u"indexes"};
/// True in what is told before the change.
inline constexpr ConstantString NSKeyValueChangeNotificationIsPriorKey{u"notificationIsPrior"};

} // namespace libvue
