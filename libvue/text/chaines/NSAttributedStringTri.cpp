#include <libvue/text/chaines/NSAttributedStringTri.h>

#include <libvue/platform/foundation/ClassExtension.h>

namespace libvue {

namespace {

using Comparaison = NSComparisonResult(const NSAttributedString*, const NSAttributedString*);

const ClassExtension<NSAttributedString> extension([](ClassExtension<NSAttributedString>::Description& c) {
    c.answers<static_cast<Comparaison*>(&localizedCaseInsensitiveCompare)>("localizedCaseInsensitiveCompare:");
    c.answers<static_cast<Comparaison*>(&localizedCompare)>("localizedCompare:");
    c.answers<static_cast<Comparaison*>(&caseInsensitiveCompare)>("caseInsensitiveCompare:");
    c.answers<static_cast<Comparaison*>(&compare)>("compare:");
});

template <NSComparisonResult (NSString::*Operation)(const NSString*) const>
NSComparisonResult comparees(const NSAttributedString* s, const NSAttributedString* other) {
    const Ref<NSString> a = s ? Ref<NSString>(s->string()) : NSString::string();
    return (a.get()->*Operation)(other ? other->string() : nullptr);
}

} // namespace

NSComparisonResult localizedCaseInsensitiveCompare(const NSAttributedString* s, const NSAttributedString* other) {
    return comparees<&NSString::localizedCaseInsensitiveCompare>(s, other);
}

NSComparisonResult localizedCompare(const NSAttributedString* s, const NSAttributedString* other) {
    return comparees<&NSString::localizedCompare>(s, other);
}

NSComparisonResult caseInsensitiveCompare(const NSAttributedString* s, const NSAttributedString* other) {
    return comparees<&NSString::caseInsensitiveCompare>(s, other);
}

NSComparisonResult compare(const NSAttributedString* s, const NSAttributedString* other) {
    return comparees<&NSString::compare>(s, other);
}

} // namespace libvue
