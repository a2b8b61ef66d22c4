#pragma once

#include <typeinfo>

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// Whether objects are of class `T` or derive from it, for a loop over objects that are mostly alike: the answer for
/// the last dynamic type is kept. Main thread.
template <class T> class KindTest {
public:
    [[nodiscard]] bool operator()(const NSObject* object) {
        const std::type_info& type = typeid(*object);
        if (&type != last_) {
            last_ = &type;
            answer_ = object->isKindOfClass(classOf<T>());
        }
        return answer_;
    }

private:
    const std::type_info* last_ = nullptr;
    bool answer_ = false;
};

} // namespace libvue
