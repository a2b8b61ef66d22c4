#include <appkit/AppFixture.h>

#include <libvue/collections/NSCollectionViewRowColAdditions.h>
#include <libvue/platform/appkit/NSViewController.h>
#include <libvue/platform/foundation/NSIndexSet.h>
#include <libvue/platform/foundation/NSNumber.h>

using namespace libvue;
using namespace libvue::test;

namespace {

class CollectionTest : public AppFixture {};

TEST_F(CollectionTest, PointsHaveRowsColumnsAndPlacesToDropAt) {
    const auto fenetre = windowAt({{100, 100}, {350, 230}});
    const auto vue = make<NSCollectionView>(NSMakeRect(0, 0, 350, 230));
    vue->setMinItemSize({100, 50});
    fenetre->contentView()->addSubview(vue);
    const Ref<NSMutableArray> objets = NSMutableArray::array();
    for (int i = 0; i < 9; ++i)
        objets->addObject(NSNumber::numberWithInt(i));
    vue->setContent(objets);
    EXPECT_EQ(getColCount(vue), 3u);
    EXPECT_EQ(getRowCount(vue), 4u);
    EXPECT_EQ(vue->itemAtIndex(4)->view()->frame(), NSMakeRect(100, 50, 100, 50));
    const struct {
        CGFloat x, y; ///< from the top left corner
        std::uint64_t rangee, colonne, index;
    } cas[] = {
        {5, 5, 0, 0, 0},     {199, 49, 0, 1, 1},
        {200, 50, 1, 2, 5},  {320, 60, 1, 3, 6}, // beside the last column: the next row
        {20, 210, 4, 0, 9},                      // below the last row: the end, as far as there is content
        {120, 110, 2, 1, 7}, {-5, -5, 0, 0, 0},
    };
    for (const auto& c : cas) {
        std::uint64_t rangee = 99, colonne = 99;
        const NSPoint p{c.x, 230 - c.y};
        getRow_col_forPoint(vue, &rangee, &colonne, p);
        EXPECT_EQ(rangee, c.rangee) << c.x << " " << c.y;
        EXPECT_EQ(colonne, c.colonne) << c.x << " " << c.y;
        EXPECT_EQ(getIndexForPoint(vue, p), c.index) << c.x << " " << c.y;
    }
    vue->setMinItemSize({0, 0});
    EXPECT_EQ(getColCount(vue), 9'000'000'000'000'000u);
    vue->setMinItemSize({100, 50});
    vue->setSelectable(YES);
    show(fenetre);
    click(fenetre, 150, 230 - 60);
    EXPECT_TRUE(vue->selectionIndexes()->containsIndex(4));
    vue->setContent(nullptr);
    EXPECT_EQ(vue->selectionIndexes()->count(), 0u);
    EXPECT_EQ(getIndexForPoint(vue, {20, 20}), 0u);
}

} // namespace
