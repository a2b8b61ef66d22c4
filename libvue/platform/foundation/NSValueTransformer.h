#pragma once

#include <functional>

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// Turns one value into another, and back where it can. Known by name to bindings.
class LIBVUE_API NSValueTransformer : public NSObject {
public:
    static void describe(ClassDescription<NSValueTransformer>& c);

    /// A null transformer takes the name off.
    static void setValueTransformer_forName(NSValueTransformer* t, const NSString* name);
    /// The one of that name; else a new instance of the class of that name, kept from then on; else null. Known from
    /// the start: NSNegateBoolean, NSIsNil, NSIsNotNil.
    [[nodiscard]] static NSValueTransformer* valueTransformerForName(const NSString* name);
    [[nodiscard]] static Ref<NSArray> valueTransformerNames();
    /// A transformer made of functions; without `reverse` it does not go back.
    [[nodiscard]] static Ref<NSValueTransformer> withBlocks(std::function<Ref<NSObject>(NSObject*)> transform,
                                                            std::function<Ref<NSObject>(NSObject*)> reverse = {});

    /// What a subclass says of itself under the same names, and has its class answer: what it gives, and whether it
    /// goes back.
    [[nodiscard]] static const Class& transformedValueClass();
    [[nodiscard]] static BOOL allowsReverseTransformation() { return YES; }

    /// The value itself unless overridden.
    [[nodiscard]] virtual Ref<NSObject> transformedValue(NSObject* value);
    /// transformedValue unless overridden. Raises NSInvalidArgumentException where it does not go back.
    [[nodiscard]] virtual Ref<NSObject> reverseTransformedValue(NSObject* value);
    /// What the object's class answers to `allowsReverseTransformation`.
    [[nodiscard]] virtual BOOL allowsReverse() const;
};

} // namespace libvue
