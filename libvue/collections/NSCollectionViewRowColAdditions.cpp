#include <libvue/collections/NSCollectionViewRowColAdditions.h>

#include <algorithm>

#include <libvue/platform/foundation/NSArray.h>

namespace libvue {

namespace {

/// Whole times that `pas` goes into `longueur`; 0 where that is no number of times.
std::uint64_t quotient(CGFloat longueur, CGFloat pas) {
    const CGFloat q = longueur / pas;
    return q >= 1 ? static_cast<std::uint64_t>(std::min(q, 9e15)) : 0;
}

} // namespace

std::uint64_t getColCount(const NSCollectionView* vue) {
    return vue ? quotient(vue->bounds().size.width, vue->minItemSize().width) : 0;
}

std::uint64_t getRowCount(const NSCollectionView* vue) {
    return vue ? quotient(vue->bounds().size.height, vue->minItemSize().height) : 0;
}

void getRow_col_forPoint(const NSCollectionView* vue, std::uint64_t* rangee, std::uint64_t* colonne, NSPoint point) {
    if (!vue) return;
    const NSPoint p = vue->convertPoint_fromView(point, nullptr);
    if (rangee) *rangee = std::min(quotient(p.y, vue->minItemSize().height), getRowCount(vue));
    if (colonne) *colonne = std::min(quotient(p.x, vue->minItemSize().width), getColCount(vue));
}

std::uint64_t getIndexForPoint(const NSCollectionView* vue, NSPoint point) {
    if (!vue) return 0;
    std::uint64_t rangee = 0, colonne = 0;
    getRow_col_forPoint(vue, &rangee, &colonne, point);
    const std::uint64_t colonnes = getColCount(vue), rangees = getRowCount(vue);
    std::uint64_t index = rangee * colonnes + colonne;
    if (colonne == colonnes)
        index = (rangee + 1) * colonnes;
    else if (rangee == rangees)
        index = (rangees + 1) * colonnes;
    return std::min<std::uint64_t>(index, vue->content() ? vue->content()->count() : 0);
}

} // namespace libvue
