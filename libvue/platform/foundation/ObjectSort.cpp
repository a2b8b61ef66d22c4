#include <libvue/platform/foundation/ObjectSort.h>

#include <libvue/platform/foundation/KindTest.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSDate.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSIndexPath.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

void sortObjects(std::vector<Ref<NSObject>>& objects, const MustSwap& mustSwap) {
    const std::size_t n = objects.size();
    std::vector<NSObject*> from(n);
    std::transform(objects.begin(), objects.end(), from.begin(), [](const auto& r) { return r.get(); });
    mergeSort(from, mustSwap);
    // The references change hands without being counted.
    for (Ref<NSObject>& r : objects)
        (void)r.leak();
    for (std::size_t i = 0; i < n; ++i)
        objects[i] = adopt(from[i]);
}

namespace {

template <class Argument> NSComparisonResult compareAs(void (*run)(), NSObject* a, NSObject* b) {
    using Run = NSComparisonResult (*)(NSObject*, Argument);
    static KindTest<std::remove_const_t<std::remove_pointer_t<Argument>>> isOne;
    return reinterpret_cast<Run>(run)(a, b && isOne(b) ? static_cast<Argument>(b) : nullptr);
}

struct Candidate {
    const std::type_info* signature;
    NSComparisonResult (*compare)(void (*)(), NSObject*, NSObject*);
};
template <class Argument> Candidate candidate() {
    return {&typeid(NSComparisonResult(Argument)), &compareAs<Argument>};
}

} // namespace

void SelectorComparison::resolve(const NSObject& o) {
    const Class& c = o.isa();
    static const Candidate candidates[] = {
        candidate<NSObject*>(),          candidate<const NSObject*>(),
        candidate<const NSString*>(),    candidate<NSString*>(),
        candidate<const NSNumber*>(),    candidate<NSNumber*>(),
        candidate<const NSDate*>(),      candidate<NSDate*>(),
        candidate<const NSIndexPath*>(), candidate<const NSAttributedString*>(),
    };
    const OperationEntry* e = c.operation(selector_);
    if (e)
        for (const Candidate& known : candidates)
            if (*known.signature == *e->signature) {
                type_ = &typeid(o);
                compare_ = known.compare;
                run_ = e->run;
                return;
            }
    raiseNamed(NSInvalidArgumentException,
               c.name() + (e ? " does not compare with " : " does not answer ") +
                   (selector_ ? std::string(selector_->name) : std::string("a null selector")));
}

NSComparisonResult SelectorComparison::operator()(NSObject* a, NSObject* b) {
    if (&typeid(*a) != type_) resolve(*a);
    return compare_(run_, a, b);
}

} // namespace libvue
