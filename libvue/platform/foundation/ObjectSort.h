#pragma once

#include <algorithm>
#include <functional>
#include <typeinfo>
#include <vector>

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// A stable merge sort of small values. Whatever the comparison answers, the result is a permutation and nothing out of
/// the list is read: the standard sorts may run out of bounds where a comparison contradicts itself.
template <class T, class F> void mergeSort(std::vector<T>& items, F&& mustSwap) {
    constexpr std::size_t run = 8;
    const std::size_t n = items.size();
    std::vector<T>& from = items;
    std::vector<T> to(n);
    for (std::size_t begin = 0; begin < n; begin += run)
        for (std::size_t i = begin + 1, end = std::min(begin + run, n); i < end; ++i) {
            const T o = from[i];
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
}

/// True when the second must come before the first.
using MustSwap = std::function<bool(NSObject* first, NSObject* second)>;

/// A stable sort, as mergeSort. Where the comparison raises, the list is as it was.
void sortObjects(std::vector<Ref<NSObject>>& objects, const MustSwap& mustSwap);

/// The order of two values of which any may be absent: what is absent comes first.
template <class F> NSComparisonResult compareWithAbsent(NSObject* a, NSObject* b, F&& compare) {
    if (a && b) return compare(a, b);
    return a ? NSOrderedDescending : b ? NSOrderedAscending : NSOrderedSame;
}

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
