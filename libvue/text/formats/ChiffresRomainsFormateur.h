#pragma once

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSNumberFormatter.h>
#include <libvue/text/formats/Forward.h>

namespace libvue {

/// The name of the exception that numbers out of 1 to 3999 raise.
inline constexpr ConstantString kNombreTropGrandException{u"Number to large"};

/// Numbers from 1 to 3999 in Roman numerals, in capitals.
class LIBVUE_API ChiffresRomainsFormateur : public NSNumberFormatter {
public:
    static void describe(ClassDescription<ChiffresRomainsFormateur, NSNumberFormatter>& c);
    ChiffresRomainsFormateur() = default;
    explicit ChiffresRomainsFormateur(NSCoder& coder) : NSNumberFormatter(coder) {}

    /// The empty text for what is no number. Raises kNombreTropGrandException out of 1 to 3999.
    [[nodiscard]] Ref<NSString> stringForObjectValue(NSObject* value) override;
    /// YES for the one canonical writing of a number. A text whose letters add up to nothing that can be written, the
    /// empty one and "abc" among them, raises as stringForObjectValue does. `error` gets null, whatever the answer.
    BOOL getObjectValue_forString_errorDescription(Ref<NSObject>* value, NSString* string,
                                                   Ref<NSString>* error) override;
    /// Null: the plain text is drawn.
    [[nodiscard]] Ref<NSAttributedString>
    attributedStringForObjectValue_withDefaultAttributes(NSObject* value, NSDictionary* attributes) override;
};

} // namespace libvue
