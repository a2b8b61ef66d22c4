#include <libvue/text/formats/KLimiteFormatter.h>

#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

static const ClassRegistration<KLimiteFormatter> enregistrement;

void KLimiteFormatter::describe(ClassDescription<KLimiteFormatter, NSFormatter>& c) {
    c.key<&KLimiteFormatter::maximumLength, &KLimiteFormatter::setMaximumLength>("maximumLength");
}

Ref<NSString> KLimiteFormatter::stringForObjectValue(NSObject* value) { return Ref<NSString>(as<NSString>(value)); }

BOOL KLimiteFormatter::getObjectValue_forString_errorDescription(Ref<NSObject>* value, NSString* string,
                                                                 Ref<NSString>*) {
    if (value) *value = string;
    return YES;
}

BOOL KLimiteFormatter::isPartialStringValid_newEditingString_errorDescription(NSString* partial,
                                                                              Ref<NSString>* newString,
                                                                              Ref<NSString>*) {
    if (static_cast<std::int32_t>(partial ? partial->length() : 0) <= maxLength) return YES;
    if (newString) *newString = nullptr;
    return NO;
}

Ref<NSAttributedString> KLimiteFormatter::attributedStringForObjectValue_withDefaultAttributes(NSObject*,
                                                                                               NSDictionary*) {
    return nullptr;
}

Ref<NSObject> KLimiteFormatter::copyWithZone() const {
    auto copie = make<KLimiteFormatter>();
    copie->maxLength = maxLength;
    return copie;
}

} // namespace libvue
