#include <libvue/text/json/NSStringSBJSON.h>

#include <libvue/platform/foundation/ClassExtension.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/text/json/SBJsonParser.h>

namespace libvue {

static const ClassExtension<NSString> extension([](ClassExtension<NSString>::Description& c) {
    c.answers<&JSONFragmentValue>("JSONFragmentValue");
    c.answers<&JSONValue>("JSONValue");
});

Ref<NSObject> JSONFragmentValue(const NSString* text) {
    if (!text) return nullptr;
    const auto parser = make<SBJsonParser>();
    Ref<NSObject> value = parser->fragmentWithString(text);
    if (!value) NSLog(u"-JSONFragmentValue failed. Error trace is: %@"_ns, parser->errorTrace().get());
    return value;
}

Ref<NSObject> JSONValue(const NSString* text) {
    if (!text) return nullptr;
    const auto parser = make<SBJsonParser>();
    Ref<NSObject> value = parser->objectWithString(text);
    if (!value) NSLog(u"-JSONValue failed. Error trace is: %@"_ns, parser->errorTrace().get());
    return value;
}

} // namespace libvue
