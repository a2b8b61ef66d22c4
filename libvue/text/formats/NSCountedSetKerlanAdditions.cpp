#include <libvue/text/formats/NSCountedSetKerlanAdditions.h>

#include <libvue/platform/foundation/ClassExtension.h>
#include <libvue/platform/foundation/NSArray.h>

namespace libvue {

static const ClassExtension<NSCountedSet> extension([](ClassExtension<NSCountedSet>::Description& c) {
    c.answers<&objectsByOcccurence>("objectsByOcccurence");
});

Ref<NSArray> objectsByOcccurence(const NSCountedSet* set) {
    if (!set) return nullptr;
    return set->allObjects()->sortedArrayUsingComparator([set](NSObject* a, NSObject* b) {
        const NSUInteger ca = set->countForObject(a), cb = set->countForObject(b);
        return ca > cb ? NSOrderedAscending : ca < cb ? NSOrderedDescending : NSOrderedSame;
    });
}

} // namespace libvue
