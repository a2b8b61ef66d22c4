#pragma once

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// Turns values into text and back. The base answers null and NO, and lets every partial text pass.
class LIBVUE_API NSFormatter : public NSObject {
public:
    static void describe(ClassDescription<NSFormatter>& c);
    NSFormatter() noexcept = default;
    explicit NSFormatter(NSCoder& coder);

    /// Null where the value is none of this formatter's.
    [[nodiscard]] virtual Ref<NSString> stringForObjectValue(NSObject* value);
    /// The text while it is edited; stringForObjectValue unless overridden.
    [[nodiscard]] virtual Ref<NSString> editingStringForObjectValue(NSObject* value);
    /// Null: stringForObjectValue is drawn with the attributes at hand.
    [[nodiscard]] virtual Ref<NSAttributedString>
    attributedStringForObjectValue_withDefaultAttributes(NSObject* value, NSDictionary* attributes);
    /// NO where the text is no value; then `error` says why. Either pointer may be null.
    virtual BOOL getObjectValue_forString_errorDescription(Ref<NSObject>* value, NSString* string,
                                                           Ref<NSString>* error);
    /// NO rejects the text; then `newString`, if set, replaces it.
    virtual BOOL isPartialStringValid_newEditingString_errorDescription(NSString* partial, Ref<NSString>* newString,
                                                                        Ref<NSString>* error);
    /// Like the former, with the proposed selection and what stood before. Asks the former unless overridden.
    virtual BOOL isPartialStringValid_proposedSelectedRange_originalString_originalSelectedRange_errorDescription(
        Ref<NSString>* partial, NSRange* proposed, NSString* original, NSRange originalRange, Ref<NSString>* error);
};

} // namespace libvue
