#include <libvue/platform/foundation/NSFormatter.h>

#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {
const ClassRegistration<NSFormatter> registration;
}

void NSFormatter::describe(ClassDescription<NSFormatter>&) {}
NSFormatter::NSFormatter(NSCoder&) {}

Ref<NSString> NSFormatter::stringForObjectValue(NSObject*) { return nullptr; }
Ref<NSString> NSFormatter::editingStringForObjectValue(NSObject* value) { return stringForObjectValue(value); }
Ref<NSAttributedString> NSFormatter::attributedStringForObjectValue_withDefaultAttributes(NSObject*, NSDictionary*) {
    return nullptr;
}
BOOL NSFormatter::getObjectValue_forString_errorDescription(Ref<NSObject>*, NSString*, Ref<NSString>*) { return NO; }
BOOL NSFormatter::isPartialStringValid_newEditingString_errorDescription(NSString*, Ref<NSString>*, Ref<NSString>*) {
    return YES;
}

BOOL NSFormatter::isPartialStringValid_proposedSelectedRange_originalString_originalSelectedRange_errorDescription(
    Ref<NSString>* partial, NSRange* proposed, NSString*, NSRange, Ref<NSString>* error) {
    if (!partial || !*partial) return YES;
    Ref<NSString> replacement;
    if (isPartialStringValid_newEditingString_errorDescription(*partial, &replacement, error)) return YES;
    if (replacement) {
        *partial = replacement;
        if (proposed) *proposed = {replacement->length(), 0};
    }
    return NO;
}

} // namespace libvue
