#pragma once

#include <libvue/platform/foundation/NSString.h>

namespace libvue {

// Small rewrites of a text. A null text gives null.

/// The text without the occurrences of `partie`, found from left to right; all of it where `partie` is null or empty.
[[nodiscard]] LIBVUE_API Ref<NSString> stringByRemovingOccurencesOfString(const NSString* s, const NSString* partie);
/// The UTF-16 units in reverse order: surrogate pairs come apart and marks change their bases.
[[nodiscard]] LIBVUE_API Ref<NSString> stringByReversing(const NSString* s);
/// The text itself where single spaces part it into at most `nombre` pieces, else its first `nombre` pieces followed by
/// " …". Between two neighbouring spaces lies an empty piece, which counts.
[[nodiscard]] LIBVUE_API Ref<NSString> stringEnTronquantApresXEspaces(const NSString* s, NSUInteger nombre);
/// Spaces, tabs and line feeds become one space for each run, and none at the ends. A carriage return becomes a
/// no-break space, which is no part of such a run.
[[nodiscard]] LIBVUE_API Ref<NSString> stringAvecEspacesSimples(const NSString* s);

} // namespace libvue
