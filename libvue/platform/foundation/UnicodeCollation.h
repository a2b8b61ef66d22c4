#pragma once

#include <libvue/platform/foundation/NSString.h>

// Collators: the order of texts in a language.

namespace libvue {

using OSStatus = std::int32_t;
using SInt32 = std::int32_t;
using Boolean = std::uint8_t;
using UniChar = unichar;
using UniCharCount = NSUInteger;
using LocaleOperationVariant = std::uint32_t;
using UCCollateOptions = std::uint32_t;
using LocaleRef = const struct OpaqueLocaleRef*;
using CollatorRef = struct OpaqueCollatorRef*;

enum : OSStatus { noErr = 0, paramErr = -50, memFullErr = -108 };

/// What a collator ignores. Case and width are one level here: each of the two masks stands for both.
enum : UCCollateOptions {
    kUCCollateComposeInsensitiveMask = 2,
    kUCCollateWidthInsensitiveMask = 4,
    kUCCollateCaseInsensitiveMask = 8,
    kUCCollateDiacritInsensitiveMask = 16
};

/// The locale of that name, such as "fr_CA", which the process keeps. paramErr for null.
LIBVUE_API OSStatus LocaleRefFromLocaleString(const char* name, LocaleRef* locale);
/// A collator of the locale's order, given up with UCDisposeCollator. `variant` is 0; a language without an order of
/// its own gets the one that is common to all. paramErr and null where there is none.
LIBVUE_API OSStatus UCCreateCollator(LocaleRef locale, LocaleOperationVariant variant, UCCollateOptions options,
                                     CollatorRef* collator);
/// Disposes of the collator and sets the reference to null.
LIBVUE_API OSStatus UCDisposeCollator(CollatorRef* collator);
/// `order` becomes negative, 0 or positive, `equivalent` whether it is 0; either may be null. A text of length 0 may
/// be null. Where the collator is null or a text too long nothing is written, and the status is paramErr.
LIBVUE_API OSStatus UCCompareText(CollatorRef collator, const UniChar* text1, UniCharCount length1,
                                  const UniChar* text2, UniCharCount length2, Boolean* equivalent, SInt32* order);

/// The same for two texts, in place however they are stored. 0 where the collator is null.
[[nodiscard]] LIBVUE_API SInt32 compareTexts(CollatorRef collator, const NSString& a, const NSString& b);

namespace detail {

class CollationWeights;
/// The weights of common characters, for someone who would need that many comparisons. Null where so few do not pay, or
/// the collator's order cannot be told from weights.
[[nodiscard]] const CollationWeights* weightsFor(CollatorRef collator, std::uint64_t comparisons);

} // namespace detail

} // namespace libvue
