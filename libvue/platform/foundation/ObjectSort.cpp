#include <libvue/platform/foundation/ObjectSort.h>

#include <algorithm>

#include <libvue/platform/foundation/NSDate.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSIndexPath.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

void sortObjects(std::vector<Ref<NSObject>>& objects, const MustSwap& mustSwap) {
    // The standard sorts may run out of bounds where a comparison contradicts itself, and comparisons here are the
    // caller's.
    constexpr std::size_t run = 8;
    const std::size_t n = objects.size();
    std::vector<NSObject*> from(n), to(n);
    std::transform(objects.begin(), objects.end(), from.begin(), [](const auto& r) { return r.get(); });
    for (std::size_t begin = 0; begin < n; begin += run)
        for (std::size_t i = begin + 1, end = std::min(begin + run, n); i < end; ++i) {
            NSObject* o = from[i];
            std::size_t at = i;
            for (; at > begin && mustSwap(from[at - 1], o); --at)
                from[at] = from[at - 1];
            from[at] = o;
        }
    for (std::size_t width = run; width < n; width *= 2) {
        for (std::size_t begin = 0; begin < n; begin += 2 * width) {
            std::size_t middle = std::min(begin + width, n), end = std::min(begin + 2 * width, n);
            std::size_t left = begin, right = middle, at = begin;
            if (middle == end || !mustSwap(from[middle - 1], from[middle])) {
                std::copy(from.begin() + static_cast<std::ptrdiff_t>(begin),
                          from.begin() + static_cast<std::ptrdiff_t>(end),
                          to.begin() + static_cast<std::ptrdiff_t>(begin));
                continue;
            }
            while (left < middle && right < end)
                to[at++] = mustSwap(from[left], from[right]) ? from[right++] : from[left++];
            while (left < middle)
                to[at++] = from[left++];
            while (right < end)
                to[at++] = from[right++];
        }
        from.swap(to);
    }
    // The references change hands without being counted.
    for (Ref<NSObject>& r : objects)
        (void)r.leak();
    for (std::size_t i = 0; i < n; ++i)
        objects[i] = adopt(from[i]);
}

namespace {

template <class Argument> NSComparisonResult compareAs(void (*run)(), NSObject* a, NSObject* b) {
    using Run = NSComparisonResult (*)(NSObject*, Argument);
    return reinterpret_cast<Run>(run)(a, dynamic_cast<Argument>(b));
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
        candidate<NSObject*>(),     candidate<const NSObject*>(), candidate<const NSString*>(),
        candidate<NSString*>(),     candidate<const NSNumber*>(), candidate<NSNumber*>(),
        candidate<const NSDate*>(), candidate<NSDate*>(),         candidate<const NSIndexPath*>(),
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
