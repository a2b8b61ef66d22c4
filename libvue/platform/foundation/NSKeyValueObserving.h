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

/// How a set is changed by another one.
enum NSKeyValueSetMutationKind : NSUInteger {
    NSKeyValueUnionSetMutation = 1,
    NSKeyValueMinusSetMutation = 2,
    NSKeyValueIntersectSetMutation = 3,
    NSKeyValueSetSetMutation = 4
};

/// willChangeValueForKey and didChangeValueForKey around a change of the set under `key`, which is what `valueForKey`
/// answers: observers hear what was inserted (NSKeyValueChangeNewKey) and removed (NSKeyValueChangeOldKey), as sets.
/// Objects that were there already, or never were, are not among them.
LIBVUE_API void announceSetWillChange(NSObject* object, NSString* key, NSKeyValueSetMutationKind kind,
                                      const NSSet* objects);
/// Ends the change that was announced last for that key.
LIBVUE_API void announceSetDidChange(NSObject* object, NSString* key);

inline constexpr ConstantString NSKeyValueChangeKindKey{u"kind"};
/// The values after and before; NSNull where there was none.
inline constexpr ConstantString NSKeyValueChangeNewKey{u"new"};
inline constexpr ConstantString NSKeyValueChangeOldKey{u"old"};
/// An NSIndexSet, where the change concerns a part of a list.
inline constexpr ConstantString NSKeyValueChangeIndexesKey{u"indexes"};
/// True in what is told before the change.
inline constexpr ConstantString NSKeyValueChangeNotificationIsPriorKey{u"notificationIsPrior"};

} // namespace libvue
