#pragma once

#include <cstddef>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue::detail {

/// How a reader of documents makes its objects: each is made once it is known whole, in one block as large as it needs,
/// and takes over the counts of what it is given. All can change afterwards like any other of their class.
struct DocumentObjects {
    /// Before anything else.
    static void prepare();
    static NSMutableArray* array(NSObject* const* items, std::size_t count);
    /// Keys are texts that cannot change, each followed by its value. A key that comes again replaces its value.
    static NSMutableDictionary* dictionary(NSObject* const* keysAndValues, std::size_t count);
    static NSMutableString* text(const std::uint8_t* latin1, std::size_t count);
    static NSMutableString* text(const unichar* units, std::size_t count);

private:
    /// Room for that many units; the caller fills it.
    static NSMutableString* blank(std::size_t count, bool wide);
};

} // namespace libvue::detail
