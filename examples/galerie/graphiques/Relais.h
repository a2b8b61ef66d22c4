#pragma once

#include <functional>

#include <libvue/platform/foundation/NSObject.h>

namespace galerie {

using namespace libvue;

/// A target that hands on, for charts and controls that share theirs: whoever made it empties it at the end.
class Relais : public NSObject {
public:
    static void describe(ClassDescription<Relais>& c) { c.answers<&Relais::relaie>("relaie:"); }
    std::function<void()> surAction;

private:
    void relaie(NSObject*) {
        if (surAction) surAction();
    }
};

} // namespace galerie
