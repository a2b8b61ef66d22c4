#include <libvue/platform/foundation/NSArray.h>

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <span>
#include <unordered_map>
#include <vector>

#include <libvue/platform/foundation/KindTest.h>
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

SEL localizedComparison() {
    static const SEL selector = sel("localizedCaseInsensitiveCompare:");
    return selector;
}

/// The whole sort that stands for a comparison of all the objects by that selector, or null. It does where all are
/// texts that answer as NSString itself does; absent ones are passed over.
TextSort wholeSortFor(SEL selector, std::span<NSObject* const> objects) {
    const TextSort sort = selector == localizedComparison() ? detail::installedTextSort() : nullptr;
    if (!sort) return nullptr;
    const OperationEntry* own = classOf<NSString>().operation(selector);
    const std::type_info* known = nullptr;
    KindTest<NSString> isText;
    for (const NSObject* o : objects) {
        if (!o || &typeid(*o) == known) continue;
        const OperationEntry* e = isText(o) ? o->isa().operation(selector) : nullptr;
        if (!e || e->run != own->run) return nullptr;
        known = &typeid(*o);
    }
    return sort;
}

Ref<NSArray> sortedTexts(const NSArray& a, TextSort sort) {
    std::vector<NSString*> texts(a.count());
    std::transform(a.data(), a.data() + a.count(), texts.begin(),
                   [](NSObject* o) { return static_cast<NSString*>(o); });
    sort(texts.data(), texts.size());
    const std::vector<NSObject*> objects(texts.begin(), texts.end());
    return NSArray::arrayWithObjects_count(objects.data(), objects.size());
}

/// One criterion of a sort by descriptors. Each object is asked for its value once, and only where the criteria before
/// leave a tie.
class Criterion {
public:
    Criterion(const NSSortDescriptor& descriptor, const std::vector<NSObject*>& objects)
        : descriptor_(&descriptor), objects_(objects), comparison_(descriptor.selector()) {}

    /// Below 0, 0 or above it, for the objects at these places.
    NSInteger order(std::uint32_t a, std::uint32_t b) {
        if (!prepared_) prepare();
        const NSInteger c = compare(a, b);
        return descriptor_->ascending() ? c : c < 0 ? 1 : c > 0 ? -1 : 0;
    }

private:
    NSInteger compare(std::uint32_t a, std::uint32_t b) {
        if (!ranks_.empty()) return NSInteger{ranks_[a]} - NSInteger{ranks_[b]};
        NSObject *x = values_[a], *y = values_[b];
        return descriptor_->comparator() ? compareWithAbsent(x, y, descriptor_->comparator())
                                         : compareWithAbsent(x, y, comparison_);
    }

    void prepare() {
        values_.reserve(objects_.size());
        kept_.reserve(objects_.size());
        for (NSObject* o : objects_) {
            if (NSString* key = descriptor_->key()) {
                kept_.push_back(o->valueForKeyPath(key));
                o = kept_.back();
            }
            values_.push_back(o);
        }
        if (!descriptor_->comparator())
            if (const TextSort sort = wholeSortFor(descriptor_->selector(), values_)) rank(sort);
        prepared_ = true;
    }

    /// Numbers the texts in their order, equal ones alike; 0 is the place of absent ones.
    void rank(TextSort sort) {
        std::vector<NSString*> texts;
        texts.reserve(values_.size());
        for (NSObject* v : values_)
            if (v) texts.push_back(static_cast<NSString*>(v));
        sort(texts.data(), texts.size());
        std::unordered_map<const NSObject*, std::uint32_t> places;
        places.reserve(texts.size());
        std::uint32_t place = 1;
        for (std::size_t i = 0; i < texts.size(); ++i) {
            if (i && texts[i - 1]->localizedCaseInsensitiveCompare(texts[i]) != NSOrderedSame) ++place;
            places.emplace(texts[i], place);
        }
        ranks_.reserve(values_.size());
        for (const NSObject* v : values_)
            ranks_.push_back(v ? places.at(v) : 0);
    }

    Ref<const NSSortDescriptor> descriptor_;
    const std::vector<NSObject*>& objects_;
    SelectorComparison comparison_;
    bool prepared_ = false;
    std::vector<Ref<NSObject>> kept_;
    std::vector<NSObject*> values_;
    std::vector<std::uint32_t> ranks_; ///< empty where values are compared in pairs
};

} // namespace

Ref<NSArray> NSArray::sortedArrayUsingSelector(SEL comparison) const {
    if (const TextSort sort = wholeSortFor(comparison, {data(), count()})) return sortedTexts(*this, sort);
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
    // What is asked for its values may change this list.
    const Ref<NSArray> all = arrayWithArray(this);
    const std::vector<NSObject*> objects(all->data(), all->data() + all->count());
    std::vector<Criterion> criteria;
    if (descriptors)
        for (NSSortDescriptor* d : descriptors->as<NSSortDescriptor>())
            criteria.emplace_back(*d, objects);
    std::vector<std::uint32_t> places(objects.size());
    std::iota(places.begin(), places.end(), 0u);
    mergeSort(places, [&](std::uint32_t a, std::uint32_t b) {
        for (Criterion& c : criteria)
            if (const NSInteger order = c.order(a, b)) return order > 0;
        return false;
    });
    std::vector<NSObject*> sorted(objects.size());
    std::transform(places.begin(), places.end(), sorted.begin(), [&](std::uint32_t place) { return objects[place]; });
    return arrayWithObjects_count(sorted.data(), sorted.size());
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
