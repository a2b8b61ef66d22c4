#pragma once

#include <functional>
#include <typeinfo>
#include <vector>

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// True when the second must come before the first.
using MustSwap = std::function<bool(NSObject* first, NSObject* second)>;

/// A stable merge sort. Whatever the comparison answers or raises, the result is a permutation and nothing out of the
/// list is read.
void sortObjects(std::vector<Ref<NSObject>>& objects, const MustSwap& mustSwap);

/// Compares by the operation of that name, found once for each class that is met. Raises NSInvalidArgumentException
/// where an object does not answer it with a comparison of one object.
class SelectorComparison {
public:
    explicit SelectorComparison(SEL selector) noexcept : selector_(selector) {}
    NSComparisonResult operator()(NSObject* a, NSObject* b);

private:
    void resolve(const NSObject& o);

    SEL selector_;
    const std::type_info* type_ = nullptr;
    NSComparisonResult (*compare_)(void (*run)(), NSObject*, NSObject*) = nullptr;
    void (*run_)() = nullptr;
};

} // namespace libvue
