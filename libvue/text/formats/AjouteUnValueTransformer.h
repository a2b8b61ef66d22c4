#pragma once

#include <libvue/platform/foundation/NSValueTransformer.h>
#include <libvue/text/formats/Forward.h>

namespace libvue {

/// One more, and back one less: positions that count from 0 shown to people who count from 1.
class LIBVUE_API AjouteUnValueTransformer : public NSValueTransformer {
public:
    static void describe(ClassDescription<AjouteUnValueTransformer, NSValueTransformer>& c);

    [[nodiscard]] static const Class& transformedValueClass();
    [[nodiscard]] static BOOL allowsReverseTransformation() { return YES; }

    /// The value cut towards zero, plus one, as an NSNumber held to 32 bits; null for null. Raises
    /// NSInternalInconsistencyException for what does not answer `intValue`.
    [[nodiscard]] Ref<NSObject> transformedValue(NSObject* value) override;
    /// The same, minus one.
    [[nodiscard]] Ref<NSObject> reverseTransformedValue(NSObject* value) override;
};

} // namespace libvue
