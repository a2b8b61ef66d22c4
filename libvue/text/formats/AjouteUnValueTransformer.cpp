#include <libvue/text/formats/AjouteUnValueTransformer.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

const ClassRegistration<AjouteUnValueTransformer> enregistrement;

using Entier = std::numeric_limits<std::int32_t>;

std::int64_t tronque(double v) {
    if (std::isnan(v)) return 0;
    return static_cast<std::int64_t>(std::clamp<double>(v, Entier::min(), Entier::max()));
}

Ref<NSObject> decale(NSObject* value, std::int64_t pas) {
    if (!value) return nullptr;
    if (!value->respondsToSelector(sel("intValue")))
        NSException::raise_format(NSInternalInconsistencyException, u"Valeur (%@) ne répond pas à -intValue."_ns,
                                  value->className().get());
    // A fraction is cut off after it was read in single precision, whatever intValue would have said.
    const auto lu = static_cast<float>(unboxed<double>(value->performSelector(sel("floatValue"))));
    const std::int64_t resultat = std::clamp<std::int64_t>(tronque(lu) + pas, Entier::min(), Entier::max());
    return NSNumber::numberWithInt(static_cast<std::int32_t>(resultat));
}

} // namespace

void AjouteUnValueTransformer::describe(ClassDescription<AjouteUnValueTransformer, NSValueTransformer>& c) {
    c.classAnswers<&AjouteUnValueTransformer::transformedValueClass>("transformedValueClass");
    c.classAnswers<&AjouteUnValueTransformer::allowsReverseTransformation>("allowsReverseTransformation");
}

const Class& AjouteUnValueTransformer::transformedValueClass() { return classOf<NSNumber>(); }

Ref<NSObject> AjouteUnValueTransformer::transformedValue(NSObject* value) { return decale(value, 1); }
Ref<NSObject> AjouteUnValueTransformer::reverseTransformedValue(NSObject* value) { return decale(value, -1); }

} // namespace libvue
