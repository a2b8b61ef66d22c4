#include <libvue/text/json/SBJsonParser.h>

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/text/json/JsonEngine.h>

namespace libvue {

namespace {
const ClassRegistration<SBJsonParser> registration;
}

void SBJsonParser::describe(ClassDescription<SBJsonParser, SBJsonBase>& d) {
    d.answers<&SBJsonParser::objectWithString>("objectWithString:");
    d.answers<&SBJsonParser::fragmentWithString>("fragmentWithString:");
}

SBJsonParser::SBJsonParser() = default;
SBJsonParser::~SBJsonParser() = default;

Ref<NSObject> SBJsonParser::fragmentWithString(const NSString* text) {
    clearErrorTrace();
    if (!text) {
        addErrorWithCode_description(SBJSONErrorInput, u"Input was 'nil'"_ns);
        return nullptr;
    }
    const Ref<const NSString> kept(text); // whoever observes the errors may give the text up
    depth_ = 0;
    c = text->UTF8String();

    Ref<NSObject> value;
    bool atEnd = true;
    {
        Engine engine(*this);
        value = adopt(engine.scanValue());
        if (value) atEnd = engine.scanIsAtEnd();
    }
    c = nullptr;
    if (atEnd) return value;
    addErrorWithCode_description(SBJSONErrorTrailingGarbage, u"Garbage after JSON"_ns);
    return nullptr;
}

Ref<NSObject> SBJsonParser::objectWithString(const NSString* text) {
    Ref<NSObject> value = fragmentWithString(text);
    if (!value || as<NSDictionary>(value) || as<NSArray>(value)) return value;
    addErrorWithCode_description(SBJSONErrorFragment, u"Valid fragment, but not JSON"_ns);
    return nullptr;
}

} // namespace libvue
