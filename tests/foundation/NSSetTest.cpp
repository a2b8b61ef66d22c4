#include "Valeurs.h"

#include <set>

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSIndexPath.h>
#include <libvue/platform/foundation/NSIndexSet.h>
#include <libvue/platform/foundation/NSSet.h>

using namespace libvue;
using namespace libvue::valeurs;

namespace {

Ref<NSMutableSet> setOf(std::initializer_list<NSInteger> values) {
    auto s = NSMutableSet::set();
    for (NSInteger v : values)
        s->addObject(number(v));
    return s;
}

} // namespace

TEST(NSSet, algebra) {
    auto a = setOf({1, 2, 3});
    EXPECT_EQ(raised([&] { a->addObject(nullptr); }), "NSInvalidArgumentException");
    EXPECT_TRUE(a->containsObject(NSNumber::numberWithDouble(2)));
    EXPECT_TRUE(a->intersectsSet(setOf({3, 9})));
    EXPECT_FALSE(a->intersectsSet(setOf({9})));
    EXPECT_TRUE(setOf({1, 3})->isSubsetOfSet(a));
    a->unionSet(setOf({3, 4}));
    EXPECT_TRUE(a->isEqual(setOf({4, 3, 2, 1})));
    a->minusSet(setOf({1, 9}));
    a->intersectSet(setOf({2, 3, 7}));
    EXPECT_TRUE(a->isEqual(setOf({2, 3})));
    a->minusSet(a);
    EXPECT_EQ(a->count(), 0u);
    EXPECT_EQ(a->anyObject(), nullptr);
    auto first = text(u"a"), same = text(u"a");
    auto s = NSMutableSet::setWithObject(first);
    s->addObject(same);
    EXPECT_EQ(s->member(same), first.get()); // the one that was there stays
}

TEST(NSSet, theCountedOneCounts) {
    auto s = NSCountedSet::setWithArray(NSArray::arrayWithObjects({number(1), number(1), number(2)}));
    EXPECT_EQ(s->countForObject(number(1)), 2u);
    s->removeObject(number(1));
    EXPECT_TRUE(s->containsObject(number(1)));
    s->removeObject(number(1));
    EXPECT_FALSE(s->containsObject(number(1)));
    s->removeObject(number(1));
    EXPECT_EQ(s->count(), 1u);
    auto copy = s->mutableCopyWithZone();
    as<NSCountedSet>(copy)->addObject(number(2));
    EXPECT_EQ(as<NSCountedSet>(copy)->countForObject(number(2)), 2u);
    EXPECT_EQ(s->countForObject(number(2)), 1u);
}

TEST(NSIndexSet, behavesAsASetUnderAnySequenceOfChanges) {
    for (std::uint64_t seed = 1; seed <= 4; ++seed) {
        Dice dice(seed);
        std::set<NSUInteger> model;
        auto s = NSMutableIndexSet::indexSet();
        for (int step = 0; step < 1500; ++step) {
            NSUInteger from = dice.below(60), length = dice.below(9);
            switch (dice.below(5)) {
            case 0:
            case 1:
                s->addIndexesInRange({from, length});
                for (NSUInteger i = 0; i < length; ++i)
                    model.insert(from + i);
                break;
            case 2:
            case 3:
                s->removeIndexesInRange({from, length});
                for (NSUInteger i = 0; i < length; ++i)
                    model.erase(from + i);
                break;
            default: {
                auto delta = static_cast<NSInteger>(dice.below(7)) - 3;
                s->shiftIndexesStartingAtIndex_by(from, delta);
                std::set<NSUInteger> moved;
                for (NSUInteger i : model) {
                    auto to = static_cast<NSInteger>(i) + (i >= from ? delta : 0);
                    bool runOver = i < from && delta < 0 && i + static_cast<NSUInteger>(-delta) >= from;
                    if (to >= 0 && !runOver) moved.insert(static_cast<NSUInteger>(to));
                }
                model = moved;
            }
            }
            std::set<NSUInteger> seen;
            for (NSUInteger i : *s)
                seen.insert(i);
            ASSERT_EQ(seen, model) << "step " << step;
            ASSERT_EQ(s->count(), model.size());
            for (std::size_t i = 1; i < s->ranges().size(); ++i)
                ASSERT_LT(NSMaxRange(s->ranges()[i - 1]), s->ranges()[i].location);
            auto next = model.upper_bound(from);
            ASSERT_EQ(s->indexGreaterThanIndex(from), next == model.end() ? nowhere : *next);
            auto here = model.lower_bound(from);
            ASSERT_EQ(s->indexLessThanIndex(from), here == model.begin() ? nowhere : *std::prev(here));
            auto end = model.lower_bound(from + length);
            ASSERT_EQ(s->countOfIndexesInRange({from, length}), static_cast<NSUInteger>(std::distance(here, end)));
            ASSERT_EQ(s->containsIndexesInRange({from, length}),
                      static_cast<NSUInteger>(std::distance(here, end)) == length);
        }
    }
}

TEST(NSIndexSet, theEndsOfAllIndexes) {
    auto s = NSMutableIndexSet::indexSet();
    EXPECT_EQ(raised([&] { s->addIndex(nowhere); }), "NSRangeException");
    EXPECT_EQ(raised([&] { s->addIndexesInRange({5, nowhere}); }), "NSRangeException");
    s->addIndex(nowhere - 1);
    EXPECT_EQ(s->lastIndex(), nowhere - 1);
    EXPECT_EQ(s->indexGreaterThanIndex(nowhere - 1), nowhere);
    EXPECT_EQ(raised([&] { s->shiftIndexesStartingAtIndex_by(0, 1); }), "NSRangeException");
    EXPECT_EQ(s->count(), 1u);
    s->addIndex(3);
    s->removeIndexesInRange({0, ~NSUInteger(0)});
    EXPECT_EQ(s->firstIndex(), nowhere);
    EXPECT_EQ(described(s), "[]");
    s->addIndexesInRange({2, 3});
    s->addIndex(9);
    EXPECT_EQ(described(s), "[2-4, 9]");
    auto copy = s->copyWithZone();
    s->removeAllIndexes();
    EXPECT_EQ(described(copy), "[2-4, 9]");
}

TEST(NSIndexPath, order) {
    auto path = [](std::initializer_list<NSUInteger> i) { return NSIndexPath::indexPathWithIndexes(i); };
    EXPECT_EQ(path({1, 2})->compare(path({1, 2, 0})), NSOrderedAscending);
    EXPECT_EQ(path({2})->compare(path({1, 9})), NSOrderedDescending);
    EXPECT_TRUE(path({1, 2})->isEqual(path({1})->indexPathByAddingIndex(2)));
    EXPECT_EQ(path({1})->item(), nowhere);
    EXPECT_EQ(path({})->indexPathByRemovingLastIndex()->length(), 0u);
}
