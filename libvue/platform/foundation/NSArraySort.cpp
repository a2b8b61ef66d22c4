#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSSortDescriptor.h>
#include <libvue/platform/foundation/ObjectSort.h>

namespace libvue {

namespace {

Ref<NSArray> sorted(const NSArray& a, const MustSwap& mustSwap) {
    std::vector<Ref<NSObject>> objects(a.data(), a.data() + a.count());
    sortObjects(objects, mustSwap);
    return NSArray::arrayWithRefs(objects);
}

} // namespace

Ref<NSArray> NSArray::sortedArrayUsingSelector(SEL comparison) const {
    SelectorComparison compare(comparison);
    return sorted(*this, [&compare](NSObject* a, NSObject* b) { return compare(a, b) == NSOrderedDescending; });
}

Ref<NSArray> NSArray::sortedArrayUsingComparator(const NSComparator& comparison) const {
    if (!comparison) raiseNamed(NSInvalidArgumentException, "a sort without a comparison");
    return sorted(*this, [&](NSObject* a, NSObject* b) { return comparison(a, b) == NSOrderedDescending; });
}

Ref<NSArray> NSArray::sortedArrayUsingFunction_context(NSInteger (*comparison)(NSObject*, NSObject*, void*),
                                                       void* context) const {
    if (!comparison) raiseNamed(NSInvalidArgumentException, "a sort without a comparison");
    return sorted(*this, [&](NSObject* a, NSObject* b) { return comparison(a, b, context) > 0; });
}

Ref<NSArray> NSArray::sortedArrayUsingDescriptors(const NSArray* descriptors) const {
    std::vector<Ref<NSSortDescriptor>> criteria;
    if (descriptors)
        for (NSSortDescriptor* d : descriptors->as<NSSortDescriptor>())
            criteria.emplace_back(d);
    return sorted(*this, [&](NSObject* a, NSObject* b) {
        for (const auto& d : criteria)
            if (auto c = d->compareObject_toObject(a, b); c != NSOrderedSame) return c == NSOrderedDescending;
        return false;
    });
}

void NSMutableArray::sortUsingSelector(SEL comparison) { take(*sortedArrayUsingSelector(comparison)); }
void NSMutableArray::sortUsingComparator(const NSComparator& comparison) {
    take(*sortedArrayUsingComparator(comparison));
}
void NSMutableArray::sortUsingFunction_context(NSInteger (*comparison)(NSObject*, NSObject*, void*), void* context) {
    take(*sortedArrayUsingFunction_context(comparison, context));
}
void NSMutableArray::sortUsingDescriptors(const NSArray* descriptors) {
    take(*sortedArrayUsingDescriptors(descriptors));
}

} // namespace libvue
