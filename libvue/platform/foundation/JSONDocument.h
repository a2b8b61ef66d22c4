#pragma once

#include <string>
#include <string_view>

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// JSON text as objects and back, for the files that this library writes itself: strict UTF-8, no recursion, nesting
/// held to `deepest`. Objects keep their order; whole numbers that fit 64 bits stay whole, all others are doubles.
class JSONDocument {
public:
    static constexpr int deepest = 200;

    /// Null where the text is no JSON, with the reason in `fault`. null is NSNull.
    static Ref<NSObject> read(std::string_view utf8, std::string* fault);

    /// Texts, numbers, NSNull, lists, and dictionaries with text keys. False where there is anything else, a number
    /// that is not finite or too deep a nesting. `indented` puts each value of the outer objects on its own line.
    enum class Layout : std::uint8_t { compact, indented };
    static bool write(const NSObject* value, Layout layout, std::string& out);
};

} // namespace libvue
