#include "Valeurs.h"

#include <limits>

using namespace libvue;
using namespace libvue::valeurs;

namespace {
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr NSUInteger most = std::numeric_limits<NSUInteger>::max();
} // namespace

TEST(NSGeometry, twoRectangles) {
    const struct {
        NSRect a, b, common, both;
        bool meet;
    } rows[] = {
        {{{0, 0}, {10, 10}}, {{5, 5}, {10, 10}}, {{5, 5}, {5, 5}}, {{0, 0}, {15, 15}}, true},
        {{{0, 0}, {10, 10}}, {{10, 0}, {5, 5}}, {}, {{0, 0}, {15, 10}}, false}, // they only touch
        {{{0, 0}, {10, 10}}, {{2, 3}, {4, 5}}, {{2, 3}, {4, 5}}, {{0, 0}, {10, 10}}, true},
        {{{0, 0}, {10, 10}}, {{3, 3}, {0, 5}}, {}, {{0, 0}, {10, 10}}, false},
        {{{9, 9}, {-1, 5}}, {{1, 2}, {3, 4}}, {}, {{1, 2}, {3, 4}}, false},
        {{{9, 9}, {-1, 5}}, {{1, 2}, {0, 4}}, {}, {}, false},
        {{{-5, -5}, {5, 5}}, {{-1, -1}, {1, 1}}, {{-1, -1}, {1, 1}}, {{-5, -5}, {5, 5}}, true},
        {{{notANumber, 0}, {1, 1}}, {{0, 0}, {1, 1}}, {}, {}, false},
        {{{0, 0}, {notANumber, 1}}, {{2, 2}, {1, 1}}, {}, {{2, 2}, {1, 1}}, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(NSIntersectionRect(row.a, row.b), row.common) << testing::PrintToString(row.a);
        EXPECT_EQ(NSIntersectionRect(row.b, row.a), row.common) << testing::PrintToString(row.a);
        EXPECT_EQ(NSIntersectsRect(row.a, row.b), row.meet) << testing::PrintToString(row.a);
        if (row.a.origin.x == row.a.origin.x) {
            EXPECT_EQ(NSUnionRect(row.a, row.b), row.both) << testing::PrintToString(row.a);
            EXPECT_EQ(NSUnionRect(row.b, row.a), row.both) << testing::PrintToString(row.a);
        }
    }
}

TEST(NSGeometry, aStripIsCutFromEachEdgeAndHeldToTheExtent) {
    const NSRect r{{10, 20}, {100, 50}};
    const struct {
        double amount;
        NSRectEdge edge;
        NSRect slice, rest;
    } rows[] = {
        {30, NSMinXEdge, {{10, 20}, {30, 50}}, {{40, 20}, {70, 50}}},
        {30, NSMaxXEdge, {{80, 20}, {30, 50}}, {{10, 20}, {70, 50}}},
        {30, NSMinYEdge, {{10, 20}, {100, 30}}, {{10, 50}, {100, 20}}},
        {30, NSMaxYEdge, {{10, 40}, {100, 30}}, {{10, 20}, {100, 20}}},
        {51, NSMinYEdge, {{10, 20}, {100, 50}}, {{10, 70}, {100, 0}}},
        {infinite, NSMaxXEdge, {{10, 20}, {100, 50}}, {{10, 20}, {0, 50}}},
        {-1, NSMinXEdge, {{10, 20}, {0, 50}}, {{10, 20}, {100, 50}}},
        {notANumber, NSMaxYEdge, {{10, 70}, {100, 0}}, {{10, 20}, {100, 50}}},
    };
    for (const auto& row : rows) {
        NSRect slice, rest;
        NSDivideRect(r, &slice, &rest, row.amount, row.edge);
        EXPECT_EQ(slice, row.slice) << row.amount << " from " << row.edge;
        EXPECT_EQ(rest, row.rest) << row.amount << " from " << row.edge;
        NSRect both = r; // a result may be the rectangle itself
        NSDivideRect(both, nullptr, &both, row.amount, row.edge);
        EXPECT_EQ(both, row.rest);
    }
}

TEST(NSGeometry, pointsOnTheEdges) {
    const NSRect r{{0, 0}, {10, 10}};
    const struct {
        NSPoint p;
        bool in, mouse, mouseFlipped;
    } rows[] = {
        {{0, 0}, true, false, true},      {{5, 10}, false, true, false}, {{10, 5}, false, false, false},
        {{0, 5}, true, true, true},       {{5, 0}, true, false, true},   {{notANumber, 5}, false, false, false},
        {{-0.1, 5}, false, false, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(NSPointInRect(row.p, r), row.in) << testing::PrintToString(row.p);
        EXPECT_EQ(NSMouseInRect(row.p, r, NO), row.mouse) << testing::PrintToString(row.p);
        EXPECT_EQ(NSMouseInRect(row.p, r, YES), row.mouseFlipped) << testing::PrintToString(row.p);
    }
    EXPECT_TRUE(NSContainsRect(r, r));
    EXPECT_FALSE(NSContainsRect(r, {{5, 5}, {5.1, 1}}));
    EXPECT_FALSE(NSContainsRect(r, {{5, 5}, {0, 1}}));
    EXPECT_EQ(NSIntegralRect({{-0.5, 1.2}, {2, 2}}), (NSRect{{-1, 1}, {3, 3}}));
    EXPECT_EQ(NSIntegralRect({{0.5, 0.5}, {0, 2}}), NSZeroRect);
}

TEST(NSGeometry, rangesNearTheEndOfAllIndexes) {
    EXPECT_EQ(NSIntersectionRange({2, 5}, {4, 10}), (NSRange{4, 3}));
    EXPECT_EQ(NSIntersectionRange({2, 2}, {4, 10}), (NSRange{0, 0}));
    EXPECT_EQ(NSIntersectionRange({most - 1, 9}, {0, most}), (NSRange{most - 1, 1}));
    EXPECT_EQ(NSUnionRange({2, 2}, {8, 2}), (NSRange{2, 8}));
    EXPECT_EQ(NSUnionRange({5, most}, {3, 1}), (NSRange{3, most - 3}));
}

TEST(NSGeometry, textThereAndBack) {
    const NSRect exact{{0.1, -1e-300}, {1e22, 123456.75}};
    EXPECT_EQ(NSRectFromString(NSStringFromRect(exact)), exact);
    EXPECT_EQ(shown(NSStringFromRect({{1, 2.5}, {100000, -4}})), "{{1, 2.5}, {100000, -4}}");
    const struct {
        const char16_t* text;
        NSRect rect;
    } rows[] = {
        {u"", {}},
        {u"no numbers", {}},
        {u"{{1, 2}, {3", {{1, 2}, {3, 0}}},
        {u"1;2;3;4;5", {{1, 2}, {3, 4}}},
        {u"{{-1.5e1, .5}, {7, 8}}", {{-15, 0.5}, {7, 8}}},
        {u"{{1e999, 2}, {3, 4}}", {{0, 2}, {3, 4}}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(NSRectFromString(text(row.text)), row.rect) << shown(row.text);
    EXPECT_EQ(NSRectFromString(nullptr), NSZeroRect);
    EXPECT_EQ(NSRangeFromString(text(u"{3, 18446744073709551615}")), (NSRange{3, most}));
    EXPECT_EQ(NSRangeFromString(text(u"{99999999999999999999, 1}")), (NSRange{nowhere, 1}));
}
