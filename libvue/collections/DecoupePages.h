#pragma once

#include <cstdint>
#include <vector>

#include <libvue/platform/foundation/Export.h>
#include <libvue/platform/foundation/NSGeometry.h>

namespace libvue {

/// What a grid puts on paper, in points.
struct RangeesAImprimer {
    NSSize page;            ///< the paper less its margins
    CGFloat total = 0;      ///< height of the grid
    CGFloat entete = 0;     ///< of the band above the first row
    CGFloat element = 0;    ///< height of an item
    CGFloat espacement = 0; ///< between two rows; negative where they lap over one another
    std::int64_t rangees = 0;
};

/// The part of the grid on each page, from the top: whole rows, the first page with the header. No page where there is
/// no row, or less height than one item.
///
/// A page keeps its full height where fewer rows remain. A header that leaves no room for a row stands alone on the
/// first page. An item higher than the page gets a page of its own, which is then higher than the paper; it is for the
/// drawing to make it smaller. Rows without a step from one to the next are one page.
[[nodiscard]] LIBVUE_API std::vector<NSRect> decoupePages(const RangeesAImprimer& r);

} // namespace libvue
