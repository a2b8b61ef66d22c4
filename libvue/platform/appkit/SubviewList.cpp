#include <libvue/platform/appkit/SubviewList.h>

#include <cstdio>
#include <cstdlib>

#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSException.h>

namespace libvue {

NSView* SubviewList::objectAtIndex(NSUInteger i) const {
    if (i >= views_.size())
        raiseNamed(NSRangeException, "subview " + std::to_string(i) + " of " + std::to_string(views_.size()));
    return views_[i].get();
}

NSUInteger SubviewList::indexOfObject(const NSView* v) const noexcept {
    for (std::size_t i = 0; i < views_.size(); ++i)
        if (views_[i].get() == v) return i;
    return NSNotFound;
}

bool SubviewList::containsObject(const NSView* v) const noexcept { return indexOfObject(v) != NSUInteger{NSNotFound}; }

Ref<NSArray> SubviewList::array() const {
    std::vector<NSObject*> objects;
    objects.reserve(views_.size());
    for (const auto& v : views_)
        objects.push_back(v.get());
    return NSArray::arrayWithObjects_count(objects.data(), objects.size());
}

void SubviewList::changedWhileEnumerated() noexcept {
    std::fputs("libvue: a list of subviews changed while it was enumerated\n", stderr);
    std::abort();
}

} // namespace libvue
