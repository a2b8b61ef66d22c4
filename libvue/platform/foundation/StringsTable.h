#pragma once

#include <string>

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// Reads a table of translations: `"key" = "value";` with comments and escapes. What stands before a fault counts; the
/// fault, with its line, goes to `fault`. Keys that are in `into` already keep their values.
LIBVUE_API void readStringsTable(const NSString& text, NSMutableDictionary& into, std::string& fault);

/// The same from a file: UTF-16 with its mark, or UTF-8. A file that is not there gives nothing and is no fault.
LIBVUE_API void readStringsFile(const std::string& path, NSMutableDictionary& into, std::string& fault);

} // namespace libvue
