#pragma once

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

// One-line forms of CSRegex: the text first. Each compiles its pattern anew, so keep a CSRegex for what is matched
// often. A pattern that does not compile raises CSRegexException; a null text gives no match, whatever the pattern.

[[nodiscard]] LIBVUE_API BOOL matchedByPattern_options(const NSString* s, const NSString* pattern, int options);
[[nodiscard]] LIBVUE_API BOOL matchedByPattern(const NSString* s, const NSString* pattern);
/// Null where there is no match.
[[nodiscard]] LIBVUE_API Ref<NSString> substringMatchedByPattern_options(const NSString* s, const NSString* pattern,
                                                                         int options);
[[nodiscard]] LIBVUE_API Ref<NSString> substringMatchedByPattern(const NSString* s, const NSString* pattern);
/// See CSRegex::capturedSubstringsOfString.
[[nodiscard]] LIBVUE_API Ref<NSArray> substringsCapturedByPattern_options(const NSString* s, const NSString* pattern,
                                                                          int options);
[[nodiscard]] LIBVUE_API Ref<NSArray> substringsCapturedByPattern(const NSString* s, const NSString* pattern);
/// The text with a backslash before each of $ ( ) * + . ? [ \ ^ { |, so that it matches itself. Null for null.
[[nodiscard]] LIBVUE_API Ref<NSString> escapedPattern(const NSString* s);

} // namespace libvue
