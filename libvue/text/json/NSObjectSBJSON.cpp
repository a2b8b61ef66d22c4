#include <libvue/text/json/NSObjectSBJSON.h>

#include <libvue/platform/foundation/ClassExtension.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/text/json/SBJsonWriter.h>

namespace libvue {

static const ClassExtension<NSObject> extension([](ClassExtension<NSObject>::Description& c) {
    c.answers<&JSONFragment>("JSONFragment");
    c.answers<&JSONRepresentation>("JSONRepresentation");
});

Ref<NSString> JSONFragment(NSObject* value) {
    if (!value) return nullptr;
    const auto writer = make<SBJsonWriter>();
    auto text = writer->stringWithFragment(value);
    if (!text) {
        const auto trace = writer->errorTrace();
        NSLog(u"-JSONFragment failed. Error trace is: %@"_ns, trace.get());
    }
    return text;
}

Ref<NSString> JSONRepresentation(NSObject* value) {
    if (!value) return nullptr;
    const auto writer = make<SBJsonWriter>();
    auto text = writer->stringWithObject(value);
    if (!text) {
        const auto trace = writer->errorTrace();
        NSLog(u"-JSONRepresentation failed. Error trace is: %@"_ns, trace.get());
    }
    return text;
}

} // namespace libvue
