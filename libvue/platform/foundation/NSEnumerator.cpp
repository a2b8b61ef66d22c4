#include <libvue/platform/foundation/NSEnumerator.h>

#include <cassert>

#include <libvue/platform/foundation/NSArray.h>

namespace libvue {

namespace {
const ClassRegistration<NSEnumerator> registration;
}

void NSEnumerator::describe(ClassDescription<NSEnumerator>&) {}

Ref<NSArray> NSEnumerator::allObjects() {
    auto all = make<NSMutableArray>();
    while (auto o = nextObject())
        all->addObject(o);
    return all;
}

BlockEnumerator::BlockEnumerator(std::function<Ref<NSObject>()> next) : next_(std::move(next)) {}
BlockEnumerator::~BlockEnumerator() = default;
Ref<NSObject> BlockEnumerator::nextObject() { return next_ ? next_() : nullptr; }

void detail::noteMutationDuringEnumeration() noexcept { assert(!"a collection was changed while it was enumerated"); }

} // namespace libvue
