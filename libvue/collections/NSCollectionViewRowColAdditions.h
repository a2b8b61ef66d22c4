#pragma once

#include <cstdint>

#include <libvue/collections/Forward.h>
#include <libvue/platform/appkit/NSCollectionView.h>

namespace libvue {

// Rows, columns and insertion indexes of the platform's collection view: no gap and no margin is counted, and every
// quotient is cut to a whole unsigned number. Points are in window coordinates.

[[nodiscard]] LIBVUE_API std::uint64_t getColCount(const NSCollectionView* vue);
[[nodiscard]] LIBVUE_API std::uint64_t getRowCount(const NSCollectionView* vue);
/// Neither beyond its count: the last one stands for the place behind the end. Either pointer may be null.
LIBVUE_API void getRow_col_forPoint(const NSCollectionView* vue, std::uint64_t* rangee, std::uint64_t* colonne,
                                    NSPoint point);
/// Where an object that is dropped there goes; at most the number of objects.
[[nodiscard]] LIBVUE_API std::uint64_t getIndexForPoint(const NSCollectionView* vue, NSPoint point);

} // namespace libvue
