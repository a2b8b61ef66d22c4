#pragma once

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

// Names of bindings. Any key that an object offers to key-value coding can be bound; these are those of controls.
inline constexpr ConstantString NSValueBinding{u"value"};
inline constexpr ConstantString NSEnabledBinding{u"enabled"};
inline constexpr ConstantString NSHiddenBinding{u"hidden"};
inline constexpr ConstantString NSEditableBinding{u"editable"};
inline constexpr ConstantString NSTitleBinding{u"title"};
inline constexpr ConstantString NSToolTipBinding{u"toolTip"};
inline constexpr ConstantString NSSelectedIndexBinding{u"selectedIndex"};

// Options of a binding.
/// An NSValueTransformer, or the name of one.
inline constexpr ConstantString NSValueTransformerBindingOption{u"NSValueTransformer"};
inline constexpr ConstantString NSValueTransformerNameBindingOption{u"NSValueTransformerName"};
/// A number: true has a text field hand on what is typed while it is typed, and not at the end.
inline constexpr ConstantString NSContinuouslyUpdatesValueBindingOption{u"NSContinuouslyUpdatesValue"};
/// What is shown where there is no value.
inline constexpr ConstantString NSNullPlaceholderBindingOption{u"NSNullPlaceholder"};

// Keys of infoForBinding.
inline constexpr ConstantString NSObservedObjectKey{u"NSObservedObject"};
inline constexpr ConstantString NSObservedKeyPathKey{u"NSObservedKeyPath"};
inline constexpr ConstantString NSOptionsKey{u"NSOptions"};

/// Binds the key `binding` of `object` to the value at `keyPath` of `observed`: shows it at once, through the
/// transformer of the options (may be null), and again whenever it is announced to have changed. What the user changes
/// in a control goes the other way, see setBoundValue; the model announces its changes itself.
///
/// Neither object keeps the other. The binding ends with `object`, by unbind, or where the same key is bound anew; when
/// `observed` goes, the last value stays. Raises NSInvalidArgumentException where an object, a name or the named
/// transformer is missing; what else the first showing raises leaves nothing bound.
LIBVUE_API void bind_toObject_withKeyPath_options(NSObject* object, NSString* binding, NSObject* observed,
                                                  NSString* keyPath, NSDictionary* options);
/// Nothing happens where the key is not bound.
LIBVUE_API void unbind(NSObject* object, NSString* binding);
/// The observed object, the key path and the options; null where the key is not bound.
[[nodiscard]] LIBVUE_API Ref<NSDictionary> infoForBinding(const NSObject* object, NSString* binding);
/// The names that the object's class and its ancestors are known to offer.
[[nodiscard]] LIBVUE_API Ref<NSArray> exposedBindings(const NSObject* object);

/// Makes a binding of a class known from the start of the process: one line in its source.
struct LIBVUE_API ExposedBinding {
    ExposedBinding(const Class& (*owner)(), const ConstantString& name) noexcept;
    const Class& (*owner)();
    const ConstantString& name;
    const ExposedBinding* next;
};

/// What is done where the model took another value than it was given.
enum class ShowAfterwards { modelValue, nothing };

/// For controls whose user changed the key `binding`: hands the value back through the transformer and sets it on the
/// bound object. Nothing happens where the key is not bound, the transformer does not go back, or the value is the one
/// that was shown.
LIBVUE_API void setBoundValue(NSObject* object, NSString* binding, ShowAfterwards afterwards);
/// Whether the binding asks for what is typed while it is typed.
[[nodiscard]] LIBVUE_API BOOL bindingUpdatesContinuously(const NSObject* object, NSString* binding);

} // namespace libvue
