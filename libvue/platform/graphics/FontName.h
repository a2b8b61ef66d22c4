#pragma once

#include <string>
#include <string_view>

#include <libvue/platform/foundation/Types.h>

namespace libvue {

/// A font name taken apart: "Helvetica-BoldOblique" is the family "Helvetica", bold and italic.
struct FontName {
    std::string family;
    NSUInteger traits = 0; ///< NSFontTraitMask
    friend bool operator==(const FontName&, const FontName&) = default;
};

/// A suffix that names no trait belongs to the family. A family that is installed under the same name with spaces gets
/// them ("DejaVuSans" is "DejaVu Sans"); the installed families are remembered. Good until the next call.
[[nodiscard]] const FontName& parseFontName(const std::string& name);
/// The other way: without spaces, traits behind a hyphen.
[[nodiscard]] std::string fullFontName(std::string_view family, NSUInteger traits);

} // namespace libvue
