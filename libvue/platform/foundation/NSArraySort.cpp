#include <libvue/platform/foundation/NSArray.h>

#include <algorithm>

#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSSortDescriptor.h>
#include <libvue/platform/foundation/ObjectSort.h>
#include <libvue/platform/foundation/TextSort.h>

namespace libvue {

namespace {

Ref<NSArray> sorted(const NSArray& a, const MustSwap& mustSwap) {
    std::vector<Ref<NSObject>> objects(a.data(), a.data() + a.count());
    sortObjects(objects, mustSwap);
    return NSArray::arrayWithRefs(objects);
}

/// Whether all are texts that answer the selector as NSString itself does.
bool areTextsThatAnswer(const NSArray& a, SEL selector) {
    const OperationEntry* own = classOf<NSString>().operation(selector);
    const std::type_info* known = nullptr;
    for (NSUInteger i = 0; i < a.count(); ++i) {
        const NSObject& o = *a.data()[i];
        if (&typeid(o) == known) continue;
        const OperationEntry* e = dynamic_cast<const NSString*>(&o) ? o.isa().operation(selector) : nullptr;
        if (!e || e->run != own->run) return false;
        known = &typeid(o);
    }
    return true;
}

Ref<NSArray> sortedTexts(const NSArray& a, TextSort sort) {
    std::vector<NSString*> texts(a.count());
    std::transform(a.data(), a.data() + a.count(), texts.begin(),
                   [](NSObject* o) { return static_cast<NSString*>(o); });
    sort(texts.data(), texts.size());
    const std::vector<NSObject*> objects(texts.begin(), texts.end());
    return NSArray::arrayWithObjects_count(objects.data(), objects.size());
}

} // namespace

Ref<NSArray> NSArray::sortedArrayUsingSelector(SEL comparison) const {
    static const SEL localized = sel("localizedCaseInsensitiveCompare:");
    if (comparison == localized)
        if (const TextSort sort = detail::installedTextSort(); sort && areTextsThatAnswer(*this, comparison))
            return sortedTexts(*this, sort);
    SelectorComparison compare(comparison);
    return sorted(*this, [&compare](NSObject* a, NSObject* b) { return compare(a, b) > NSOrderedSame; });
}

Ref<NSArray> NSArray::sortedArrayUsingComparator(const NSComparator& comparison) const {
    if (!comparison) raiseNamed(NSInvalidArgumentException, "a sort without a comparison");
    return sorted(*this, [&](NSObject* a, NSObject* b) { return comparison(a, b) > NSOrderedSame; });
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
            if (auto c = d->compareObject_toObject(a, b); c != NSOrderedSame) return c > NSOrderedSame;
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
