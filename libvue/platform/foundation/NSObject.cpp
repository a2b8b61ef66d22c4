#include <libvue/platform/foundation/NSObject.h>

#include <cassert>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include <libvue/platform/foundation/LiveObjects.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/ObjectSide.h>

namespace libvue {

namespace {

/// While an object is destroyed its count stands here, so that references taken and given up meanwhile change nothing.
constexpr std::uint32_t parkedCount = 0x40000000;
/// Destructions inside destructions beyond this depth wait for the outermost one, so that a long chain does not use up
/// the stack.
constexpr int deepest = 256;

int depth = 0;
std::vector<NSObject*>& waiting() {
    static auto& w = *new std::vector<NSObject*>;
    return w;
}

void forgetWeakReferences(ObjectSide& side) noexcept {
    if (!side.weak) return;
    WeakBlock* block = std::exchange(side.weak, nullptr);
    block->object = nullptr;
    block->drop();
}

} // namespace

void NSObject::destroy() noexcept {
    count_ = parkedCount;
    if (ObjectSide* side = sideIfAny()) {
        forgetWeakReferences(*side);
        detail::dropNotifications(*side);
        detail::dropKeyValueObservers(*side);
        detail::dropKeyValueBindings(*side);
    }
    if (depth >= deepest) {
        waiting().push_back(this);
        return;
    }
    ++depth;
    delete this;
    if (depth == 1) {
        while (!waiting().empty()) {
            NSObject* next = waiting().back();
            waiting().pop_back();
            delete next;
        }
    }
    --depth;
}

NSObject::~NSObject() {
#ifndef NDEBUG
    detail::noteDestroyedObject(this);
    // A constructor that threw comes here with the count it began with.
    assert((count_ == parkedCount || count_ <= 1) && "a reference to an object was kept by its own destructor");
#endif
    if (ObjectSide* side = sideIfAny()) {
        // What its own destructor still hung on the object, or its constructor before it threw.
        forgetWeakReferences(*side);
        detail::dropNotifications(*side);
        detail::dropKeyValueObservers(*side);
        detail::dropKeyValueBindings(*side);
        detail::freeSide(side_);
    }
}

void NSObject::noteCreated() noexcept { detail::noteCreatedObject(this); }

NSUInteger NSObject::hash() const { return reinterpret_cast<std::uintptr_t>(this) >> 4; }

BOOL NSObject::isMemberOfClass(const Class& c) const { return &isa() == &c; }

BOOL NSObject::respondsToSelector(SEL selector) const { return isa().operation(selector) != nullptr; }

Ref<NSString> NSObject::className() const { return NSStringFromClass(isa()); }

Ref<NSString> NSObject::description() const {
    char address[32];
    std::snprintf(address, sizeof address, ": %p>", static_cast<const void*>(this));
    return NSString::fromUTF8("<" + isa().name() + address);
}

Ref<NSObject> NSObject::copyWithZone() const {
    raiseNamed(NSInvalidArgumentException, isa().name() + " cannot be copied");
}

Ref<NSObject> NSObject::mutableCopyWithZone() const {
    raiseNamed(NSInvalidArgumentException, isa().name() + " has no mutable copy");
}

Ref<NSObject> NSObject::deepCopy() const { return nullptr; }

void NSObject::encodeWithCoder(NSCoder&) const {}

Ref<NSObject> NSObject::performSelector_withObject(SEL selector, NSObject* argument) {
    const OperationEntry* e = isa().operation(selector);
    if (!e || !e->perform) {
        const std::string name(selector ? selector->name : "(null)");
        raiseNamed(NSInvalidArgumentException, isa().name() + (e ? " cannot perform " : " does not answer ") + name);
    }
    const Ref<NSObject> self(this);
    const Ref<NSObject> kept(argument);
    return e->perform(this, argument);
}

void NSObject::performSelector_withObject_afterDelay(SEL selector, NSObject* argument, NSTimeInterval delay) {
    NSRunLoop::currentRunLoop()->performSelector_target_argument_afterDelay(selector, this, argument, delay);
}

void NSObject::cancelPreviousPerformRequestsWithTarget(NSObject* target) {
    NSRunLoop::currentRunLoop()->cancelPerformSelector_target_argument(nullptr, target, nullptr);
}

void NSObject::cancelPreviousPerformRequestsWithTarget_selector_object(NSObject* target, SEL selector,
                                                                       NSObject* argument) {
    if (selector) NSRunLoop::currentRunLoop()->cancelPerformSelector_target_argument(selector, target, argument);
}

BOOL isEqual(const NSObject* a, const NSObject* b) { return a == b || (a && b && a->isEqual(b)); }

} // namespace libvue
