#pragma once

#include <libvue/platform/foundation/NSCharacterSet.h>
#include <libvue/text/chaines/Forward.h>

namespace libvue {

/// The two sets that tell what a French word is. They are made once and owned by the process; the class has no
/// instances.
class LIBVUE_API ZerlCharacterSet : public NSCharacterSet {
public:
    static void describe(ClassDescription<ZerlCharacterSet, NSCharacterSet>& c);
    ZerlCharacterSet() = delete;

    /// Makes the sets where the receiver is this class; does nothing for a class derived from it.
    static void initialize(const Class& receiver);
    /// U+0027 and U+2019.
    [[nodiscard]] static NSCharacterSet* apostropheCharacterSet();
    /// Letters, marks and digits of every script, and the hyphen U+002D: a compound is one word.
    [[nodiscard]] static NSCharacterSet* motCharacterSet();
};

} // namespace libvue
