#include <libvue/text/chaines/NSStringTri.h>

#include <libvue/platform/foundation/ClassExtension.h>
#include <libvue/text/chaines/ZerlCharacterSet.h>

namespace libvue {

namespace {

const ClassExtension<NSString> extension([](ClassExtension<NSString>::Description& c) {
    c.answers<&comparaisonTrimmay>("comparaisonTrimmay:");
    c.answers<&comparaisonPlusLongueChaine>("comparaisonPlusLongueChaine:");
});

} // namespace

NSComparisonResult comparaisonTrimmay(const NSString* s, const NSString* other) {
    static const NSCharacterSet* const horsMots = keptForever(ZerlCharacterSet::motCharacterSet()->invertedSet());
    const Ref<NSString> a = s ? s->stringByTrimmingCharactersInSet(horsMots) : NSString::string();
    const Ref<NSString> b = other ? other->stringByTrimmingCharactersInSet(horsMots) : nullptr;
    return a->localizedCaseInsensitiveCompare(b);
}

NSComparisonResult comparaisonPlusLongueChaine(const NSString* s, const NSString* other) {
    const NSUInteger a = s ? s->length() : 0, b = other ? other->length() : 0;
    if (a != b) return a > b ? NSOrderedAscending : NSOrderedDescending;
    return s ? s->localizedCaseInsensitiveCompare(other) : NSOrderedSame;
}

} // namespace libvue
