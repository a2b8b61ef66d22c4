#pragma once

#include <libvue/text/json/SBJsonBase.h>
#include <libvue/text/json/SBJsonProtocols.h>

namespace libvue {

/// Reads JSON text: strict but for a few laxities that are part of the language it takes (elements without a comma
/// between them, vertical tab and form feed as white space, control characters from 0x1A to 0x1F in texts).
///
/// Objects come out as NSMutableDictionary, arrays as NSMutableArray, texts as NSMutableString, numbers as
/// NSDecimalNumber, true and false as NSNumber, null as NSNull. Reading never recurses, however deep the text nests.
class LIBVUE_API SBJsonParser : public SBJsonBase, public SBJsonParserProtocol {
public:
    static void describe(ClassDescription<SBJsonParser, SBJsonBase>& c);
    SBJsonParser();
    ~SBJsonParser() override;

    /// Any JSON value, or null with the reasons in `errorTrace`.
    [[nodiscard]] Ref<NSObject> fragmentWithString(const NSString* text);
    /// The same for a text whose root is an object or an array.
    [[nodiscard]] Ref<NSObject> objectWithString(const NSString* text) override;

private:
    class Engine;

    /// The cursor into the text under way, which ends with a zero.
    const char* c = nullptr;
};

} // namespace libvue
