#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <libvue/platform/foundation/NSString.h>

// Texts in the form in which they are compared and searched, for the sources of the text classes.

namespace libvue::detail {

/// The options that change how units are seen, as opposed to where they are looked for.
inline constexpr NSUInteger foldingOptions =
    NSCaseInsensitiveSearch | NSDiacriticInsensitiveSearch | NSWidthInsensitiveSearch;

/// A part of a text, canonically decomposed (unless the search is literal) and folded as the options say.
///
/// It knows which folded unit begins a segment of the text, that is a character with its marks, so that what is found
/// in it can be told in units of the text, and so that half a character is never found.
struct FoldedText {
    FoldedText(const NSString& s, NSRange range, NSUInteger options);

    static constexpr std::uint32_t inside = 0xFFFFFFFF;
    std::u16string units;
    /// For each folded unit, and for the end: where its segment begins in the text, or `inside` a segment.
    std::vector<std::uint32_t> origins;
};

/// One unit of Latin-1 without its case. U+00DF, which has no single counterpart, is itself.
[[nodiscard]] std::uint8_t foldLatin1(std::uint8_t unit) noexcept;

/// Whether canonical equivalence cannot make two different texts of such units equal: no marks, nothing that decomposes
/// to what another unit is.
[[nodiscard]] bool areInert(const std::uint8_t* units, std::size_t count) noexcept;
[[nodiscard]] bool areInert(const unichar* units, std::size_t count) noexcept;

} // namespace libvue::detail
