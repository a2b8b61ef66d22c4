#pragma once

#include <functional>

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// What tells a delegate of a sheet's end: sends it `didEnd` (what ended, the return code, the context) where it
/// answers that. Keeps neither of the two; a null delegate or selector is told nothing.
template <class Subject>
[[nodiscard]] std::function<void(NSInteger)> sheetEndTeller(Subject* subject, NSObject* delegate, SEL didEnd,
                                                            void* info) {
    return [of = Weak<Subject>(subject), to = Weak<NSObject>(delegate), didEnd, info](NSInteger code) {
        using DidEnd = void(Subject*, NSInteger, void*);
        const Ref<NSObject> told = to.ref();
        const Ref<Subject> ended = of.ref();
        const OperationEntry* e = told && didEnd ? findOperation(told, didEnd, typeid(DidEnd)) : nullptr;
        if (e) reinterpret_cast<typename BoundOperation<DidEnd>::Run>(e->run)(told, ended, code, info);
    };
}

} // namespace libvue
