#pragma once

#include <libvue/platform/foundation/UnicodeCollation.h>

namespace libvue {

/// Sorts borrowed texts by the collator's order; equal ones keep theirs.
LIBVUE_API void sortTexts(CollatorRef collator, NSString** texts, NSUInteger count);

using TextSort = void (*)(NSString** texts, NSUInteger count);
/// A whole sort by a comparison that is installed in NSString::installLocalizedCaseInsensitiveCompare, faster than
/// comparing in pairs and with the same result. Lists of texts use it for as long as that comparison is installed.
LIBVUE_API void installTextSort(NSString::Comparison comparison, TextSort sort) noexcept;

namespace detail {

/// The sort of localizedCaseInsensitiveCompare, or null where there is none for the comparison in use.
[[nodiscard]] TextSort installedTextSort() noexcept;
/// Null for the platform's own.
[[nodiscard]] NSString::Comparison installedTextComparison() noexcept;

} // namespace detail

} // namespace libvue
