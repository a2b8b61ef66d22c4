#include "Valeurs.h"

#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSDecimalNumber.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSIndexSet.h>
#include <libvue/platform/foundation/NSNull.h>
#include <libvue/platform/foundation/NSSet.h>
#include <libvue/platform/foundation/NSSortDescriptor.h>

using namespace libvue;
using namespace libvue::textes;
using namespace libvue::valeurs;

namespace {

Ref<NSMutableArray> numbers(std::initializer_list<NSInteger> values) {
    auto a = NSMutableArray::array();
    for (NSInteger v : values)
        a->addObject(number(v));
    return a;
}

std::string joined(const NSArray* a) { return shown(a->componentsJoinedByString(text(u" ")).get()); }
template <class T> std::string joined(const Ref<T>& a) { return joined(a.get()); }

/// Looks at the list that holds it when it goes, as a destructor may.
class Departing : public NSObject {
public:
    explicit Departing(NSMutableArray* list) : list_(list) {}
    ~Departing() override { seen = list_->count(); }
    static inline NSUInteger seen = 0;

private:
    NSMutableArray* list_;
};

} // namespace

TEST(NSArray, wrongIndexesAndNullAreRaised) {
    auto a = numbers({1, 2, 3});
    expectRaised("NSRangeException",
                 {[&] { (void)a->objectAtIndex(3); }, [&] { a->insertObject_atIndex(number(0), 4); },
                  [&] { a->replaceObjectAtIndex_withObject(3, number(0)); },
                  [&] { a->exchangeObjectAtIndex_withObjectAtIndex(0, 3); }, [&] { a->removeObjectAtIndex(3); },
                  [&] { NSMutableArray::array()->removeLastObject(); },
                  [&] { (void)a->subarrayWithRange(NSMakeRange(2, 2)); },
                  [&] { (void)a->subarrayWithRange(NSMakeRange(2, ~NSUInteger(0))); },
                  [&] { a->removeObjectsInRange(NSMakeRange(4, 0)); },
                  [&] { a->removeObjectsAtIndexes(NSIndexSet::indexSetWithIndex(3)); }});
    expectRaised("NSInvalidArgumentException",
                 {[&] { a->addObject(nullptr); }, [&] { a->insertObject_atIndex(nullptr, 0); },
                  [&] { a->replaceObjectAtIndex_withObject(0, nullptr); },
                  [&] { (void)NSArray::arrayWithObject(nullptr); }, [&] { a->sortUsingSelector(sel("nothing:")); },
                  [&] { a->sortUsingSelector(nullptr); }});
    EXPECT_EQ(joined(a), "1 2 3");
}

TEST(NSArray, changes) {
    auto a = numbers({1, 2, 3, 2, 5});
    a->removeObject(number(2));
    EXPECT_EQ(joined(a), "1 3 5");
    a->insertObject_atIndex(number(0), 0);
    a->insertObject_atIndex(number(9), 4);
    EXPECT_EQ(joined(a), "0 1 3 5 9");
    a->removeObjectsInRange({1, 2});
    EXPECT_EQ(joined(a), "0 5 9");
    a->replaceObjectsInRange_withObjectsFromArray({1, 1}, numbers({6, 7, 8}));
    EXPECT_EQ(joined(a), "0 6 7 8 9");
    a->addObjectsFromArray(a);
    EXPECT_EQ(joined(a), "0 6 7 8 9 0 6 7 8 9");
    auto indexes = NSMutableIndexSet::indexSet();
    indexes->addIndexesInRange({0, 4});
    indexes->addIndex(6);
    a->removeObjectsAtIndexes(indexes);
    EXPECT_EQ(joined(a), "9 0 7 8 9");
    a->removeObjectsInArray(a);
    EXPECT_EQ(a->count(), 0u);

    auto b = numbers({1, 2});
    auto places = NSMutableIndexSet::indexSet();
    places->addIndex(0);
    places->addIndex(3);
    b->insertObjects_atIndexes(numbers({8, 9}), places);
    EXPECT_EQ(joined(b), "8 1 2 9");
    b->exchangeObjectAtIndex_withObjectAtIndex(0, 3);
    EXPECT_EQ(joined(b), "9 1 2 8");
    b->removeObject(b->objectAtIndex(1)); // it lives by the list alone
    EXPECT_EQ(joined(b), "9 2 8");
}

TEST(NSArray, aDestructorSeesTheListWhole) {
    auto list = NSMutableArray::array();
    const struct {
        const char* what;
        std::function<void()> remove;
        NSUInteger left;
    } rows[] = {
        {"one", [&] { list->removeObjectAtIndex(0); }, 1},
        {"a range", [&] { list->removeObjectsInRange(NSMakeRange(0, 1)); }, 1},
        {"all", [&] { list->removeAllObjects(); }, 0},
        {"replaced", [&] { list->replaceObjectAtIndex_withObject(0, number(1)); }, 2},
    };
    for (const auto& row : rows) {
        list->setArray(nullptr);
        list->addObject(make<Departing>(list));
        list->addObject(number(1));
        Departing::seen = 99;
        row.remove();
        EXPECT_EQ(Departing::seen, row.left) << row.what;
    }
}

TEST(NSArray, sortsAreStableAndSurviveMadComparisons) {
    auto words = NSArray::arrayWithObjects({text(u"b"), text(u"A"), text(u"a"), text(u"B"), text(u"C")});
    EXPECT_EQ(joined(words->sortedArrayUsingSelector(sel("caseInsensitiveCompare:"))), "A a b B C");
    EXPECT_EQ(joined(words->sortedArrayUsingSelector(sel("compare:"))), "A B C a b");
    EXPECT_EQ(joined(numbers({3, -1, 2})->sortedArrayUsingSelector(sel("compare:"))), "-1 2 3");

    Dice dice(7);
    auto many = NSMutableArray::array();
    for (int i = 0; i < 1000; ++i)
        many->addObject(boxed(NSPoint{static_cast<double>(dice.below(50)), static_cast<double>(i)}));
    auto byX = [](NSObject* a, NSObject* b) {
        double x = unboxed<NSPoint>(a).x, y = unboxed<NSPoint>(b).x;
        return x < y ? NSOrderedAscending : x > y ? NSOrderedDescending : NSOrderedSame;
    };
    auto sorted = many->sortedArrayUsingComparator(byX);
    for (NSUInteger i = 1; i < sorted->count(); ++i) {
        NSPoint a = unboxed<NSPoint>(sorted->objectAtIndex(i - 1)), b = unboxed<NSPoint>(sorted->objectAtIndex(i));
        ASSERT_TRUE(a.x < b.x || (a.x == b.x && a.y < b.y)) << i;
    }
    // Whatever it answers, everything is there afterwards.
    auto mad = many->sortedArrayUsingComparator(
        [&](NSObject*, NSObject*) { return dice.below(2) ? NSOrderedDescending : NSOrderedAscending; });
    EXPECT_EQ(NSSet::setWithArray(mad)->count(), 1000u);
    int calls = 0;
    EXPECT_THROW(many->sortUsingComparator([&](NSObject*, NSObject*) -> NSComparisonResult {
        if (++calls == 500) throw 1;
        return NSOrderedDescending;
    }),
                 int);
    EXPECT_TRUE(NSSet::setWithArray(many)->isEqualToSet(NSSet::setWithArray(mad)));
}

TEST(NSArray, sortsByDescriptors) {
    auto person = [](const char16_t* name, NSInteger age) {
        auto d = NSMutableDictionary::dictionaryWithObject_forKey(text(name), text(u"name"));
        if (age >= 0) d->setObject_forKey(number(age), text(u"age"));
        return d;
    };
    auto people =
        NSArray::arrayWithObjects({person(u"Zoe", 30), person(u"Ali", 20), person(u"Eve", -1), person(u"Bob", 30)});
    auto age = NSSortDescriptor::sortDescriptorWithKey_ascending(text(u"age"), NO);
    auto name = NSSortDescriptor::sortDescriptorWithKey_ascending(text(u"name"), YES);
    // Any number of the right sign will do, and what is absent is nobody's to compare.
    auto byFunction =
        NSSortDescriptor::sortDescriptorWithKey_ascending_comparator(text(u"age"), YES, [](NSObject* a, NSObject* b) {
            return static_cast<NSComparisonResult>(unboxed<NSInteger>(b) - unboxed<NSInteger>(a));
        });
    const struct {
        std::vector<Ref<NSSortDescriptor>> order;
        const char* names;
    } rows[] = {
        {{age, name}, "Bob Zoe Ali Eve"},  {{age->reversedSortDescriptor()}, "Eve Ali Zoe Bob"},
        {{byFunction}, "Eve Zoe Bob Ali"}, {{byFunction->reversedSortDescriptor()}, "Ali Zoe Bob Eve"},
        {{}, "Zoe Ali Eve Bob"},
    };
    for (const auto& row : rows) {
        auto sorted = people->sortedArrayUsingDescriptors(NSArray::arrayWithRefs(row.order));
        auto names = sorted->valueForKey(text(u"name"));
        EXPECT_EQ(joined(as<NSArray>(names)), row.names);
    }
}

TEST(NSArray, aListWithinItselfIsDescribedOnce) {
    auto list = NSMutableArray::array();
    list->addObject(list);
    list->addObject(list);
    EXPECT_EQ(described(list), "(\\u000A    ...,\\u000A    ...\\u000A)");
    // Also by way of an object that describes what it holds.
    auto attributes = NSDictionary::dictionaryWithObject_forKey(list, text(u"k"));
    list->removeLastObject();
    list->replaceObjectAtIndex_withObject(0, NSAttributedString::initWithString_attributes(text(u"a"), attributes));
    EXPECT_EQ(described(list), "(\\u000A    a{\\u000A    k = ...;\\u000A}\\u000A)");
    list->removeAllObjects();
}

TEST(NSArray, keyPathsOverTheElements) {
    auto list = NSArray::arrayWithObjects({NSDictionary::dictionaryWithObject_forKey(number(3), text(u"n")),
                                           NSDictionary::dictionary(),
                                           NSDictionary::dictionaryWithObject_forKey(number(5), text(u"n")),
                                           NSDictionary::dictionaryWithObject_forKey(number(3), text(u"n"))});
    const struct {
        const char16_t* path;
        const char* result;
    } rows[] = {
        {u"@count", "4"},
        {u"@sum.n", "11"},
        {u"@avg.n", "3.6666666666666665"},
        {u"@min.n", "3"},
        {u"@max.n", "5"},
        {u"@unionOfObjects.n", "(\\u000A    3,\\u000A    5,\\u000A    3\\u000A)"},
        {u"@max.n.nothing", ""},
    };
    for (const auto& row : rows) {
        std::string got;
        std::string name = raised([&] { got = described(list->valueForKeyPath(text(row.path))); });
        EXPECT_EQ(name.empty() ? got : std::string(), row.result) << shown(row.path);
    }
    auto values = list->valueForKey(text(u"n"));
    EXPECT_EQ(as<NSArray>(values)->objectAtIndex(1), NSNull::null());
    EXPECT_EQ(raised([&] { (void)list->valueForKeyPath(text(u"@nonsense.n")); }), "NSUndefinedKeyException");
    EXPECT_EQ(described(NSArray::array()->valueForKeyPath(text(u"@avg.n"))), "0");
    EXPECT_EQ(NSArray::array()->valueForKeyPath(text(u"@max.n")), nullptr);
    const auto decimal = [](const char* s) { return NSDecimalNumber::decimalNumberWithText(s); };
    const struct {
        Ref<NSArray> values;
        const char *sum, *average;
    } sums[] = {
        {NSArray::arrayWithObjects({NSNumber::numberWithUnsignedInteger(~NSUInteger{0}), number(1)}),
         "1.8446744073709552e+19", "9.223372036854776e+18"},
        {NSArray::arrayWithObjects({decimal("0.1"), decimal("0.2")}), "0.3", "0.15"},
        {NSArray::arrayWithObjects({number(1), decimal("12345678901234567890123.5"), NSNumber::numberWithFloat(0.1f)}),
         "12345678901234567890124.6", "4115226300411522630041.5333333333333333"},
        {NSArray::arrayWithObjects({decimal("1"), text(u"rien")}), "1", "0.5"},
    };
    for (const auto& row : sums) {
        EXPECT_EQ(described(row.values->valueForKeyPath(text(u"@sum"))), row.sum);
        EXPECT_EQ(described(row.values->valueForKeyPath(text(u"@avg"))), row.average);
    }
}

TEST(NSArray, enumeration) {
    auto a = NSArray::arrayWithObjects({number(1), text(u"x"), number(2)});
    NSInteger sum = 0;
    for (NSNumber* n : a->as<NSNumber>())
        sum += n->integerValue();
    EXPECT_EQ(sum, 3);
    EXPECT_EQ(joined(a->reverseObjectEnumerator()->allObjects()), "2 x 1");
    auto e = a->objectEnumerator();
    (void)e->nextObject();
    EXPECT_EQ(joined(e->allObjects()), "x 2"); // what is left
    std::string seen;
    a->enumerateObjectsUsingBlock([&](NSObject* o, NSUInteger i, BOOL* stop) {
        seen += std::to_string(i) + described(o);
        *stop = i == 1;
    });
    EXPECT_EQ(seen, "011x");
}

TEST(NSArray, aChangeUnderAnEnumerationIsCaught) {
    auto walk = [] {
        auto a = numbers({1, 2, 3});
        int turns = 0;
        for (NSObject* o : *a) {
            (void)o;
            ++turns;
            a->addObject(number(4));
        }
        return turns;
    };
#ifdef NDEBUG
    EXPECT_EQ(walk(), 1);
#else
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_DEATH((void)walk(), "changed while it was enumerated");
#endif
}

TEST(NSArray, copiesAndDescriptions) {
    auto a = NSArray::arrayWithObjects(
        {text(u"mot"), text(u"deux mots"), NSArray::arrayWithObject(number(1)),
         NSDictionary::dictionaryWithObject_forKey(NSSet::setWithObject(number(2)), text(u"k"))});
    EXPECT_EQ(a->copyWithZone().get(), a.get());
    auto m = a->mutableCopyWithZone();
    EXPECT_TRUE(m->isEqual(a));
    EXPECT_NE(m->copyWithZone().get(), m.get());
    EXPECT_EQ(as<NSMutableArray>(m->copyWithZone()), nullptr);
    EXPECT_EQ(a->description()->utf8(),
              "(\n    mot,\n    \"deux mots\",\n    (\n        1\n    ),\n    {\n        k = {(\n"
              "            2\n        )};\n    }\n)");
}
