#include "Valeurs.h"

#include <cmath>
#include <limits>

#include <libvue/platform/foundation/NSDecimalNumber.h>
#include <libvue/platform/foundation/NSNull.h>

using namespace libvue;
using namespace libvue::valeurs;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr auto most = std::numeric_limits<NSInteger>::max();
constexpr auto least = std::numeric_limits<NSInteger>::min();

Ref<NSNumber> real(double v) { return NSNumber::numberWithDouble(v); }
Ref<NSNumber> decimal(const char* s) { return NSDecimalNumber::decimalNumberWithText(s); }

} // namespace

TEST(NSNumber, valuesAreOrderedWhateverTheirKinds) {
    // Each row is smaller than the next; the numbers of a row are equal.
    const std::vector<std::vector<Ref<NSNumber>>> rows = {
        {real(notANumber), decimal("x")},
        {real(-infinite)},
        {decimal("-1e100"), real(-1e100)},
        {number(least), real(-0x1p63), decimal("-9223372036854775808")},
        {number(least + 1)},
        {real(-1.5), NSNumber::numberWithFloat(-1.5f), decimal("-1.5")},
        {number(-1), NSNumber::numberWithChar(-1), real(-1)},
        {number(0), real(-0.0), NSNumber::numberWithBool(NO), decimal("-0"), NSNumber::numberWithUnsignedInteger(0)},
        {decimal("1e-128")},
        {real(0.1), decimal("0.1")},
        {NSNumber::numberWithFloat(0.1f)}, // a little more than 0.1
        {number(1), NSNumber::numberWithBool(YES), NSNumber::numberWithInt(1), NSNumber::numberWithShort(1),
         decimal("1.000")},
        {number((NSInteger(1) << 53)), real(0x1p53)},
        {number((NSInteger(1) << 53) + 1), decimal("9007199254740993")},
        {number(most), NSNumber::numberWithUnsignedInteger(static_cast<NSUInteger>(most))},
        {real(0x1p63), NSNumber::numberWithUnsignedInteger(NSUInteger(1) << 63)},
        {NSNumber::numberWithUnsignedInteger(std::numeric_limits<NSUInteger>::max()), decimal("18446744073709551615")},
        {real(0x1p64)},
        {decimal("1e150")},
        {real(1e200)},
        {real(infinite)},
    };
    for (std::size_t i = 0; i < rows.size(); ++i)
        for (std::size_t j = 0; j < rows.size(); ++j)
            for (const auto& a : rows[i])
                for (const auto& b : rows[j]) {
                    EXPECT_EQ(a->compare(b), i < j   ? NSOrderedAscending
                                             : i > j ? NSOrderedDescending
                                                     : NSOrderedSame)
                        << described(a) << " and " << described(b);
                    EXPECT_EQ(a->isEqual(b), i == j) << described(a) << " and " << described(b);
                    if (i == j) {
                        EXPECT_EQ(a->hash(), b->hash()) << described(a) << " and " << described(b);
                    }
                }
    EXPECT_EQ(raised([] { (void)number(1)->compare(nullptr); }), "NSInvalidArgumentException");
    EXPECT_FALSE(number(0)->isEqual(NSNull::null()));
    EXPECT_FALSE(number(0)->isEqual(nullptr));
}

TEST(NSNumber, conversionsHoldToTheLimits) {
    const struct {
        Ref<NSNumber> n;
        NSInteger integer;
        NSUInteger natural;
        double value;
        bool truth;
    } rows[] = {
        {real(notANumber), 0, 0, notANumber, true},
        {real(1e30), most, std::numeric_limits<NSUInteger>::max(), 1e30, true},
        {real(-1e30), least, NSUInteger(1) << 63, -1e30, true},
        {real(-2.9), -2, static_cast<NSUInteger>(-2), -2.9, true},
        {real(0x1p63 + 4096), most, (NSUInteger(1) << 63) + 4096, 0x1p63 + 4096, true},
        {NSNumber::numberWithUnsignedInteger(~NSUInteger(0)), most, ~NSUInteger(0), 0x1p64, true},
        {number(-1), -1, ~NSUInteger(0), -1, true},
        {decimal("-0.9"), 0, 0, -0.9, true},
        {decimal("18446744073709551616.5"), most, ~NSUInteger(0), 0x1p64, true},
        {decimal("-99999999999999999999"), least, NSUInteger(1) << 63, -1e20, true},
        {decimal("123.99e1"), 1239, 1239, 1239.9, true},
        {decimal("0"), 0, 0, 0, false},
        {NSNumber::numberWithBool(NO), 0, 0, 0, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.n->integerValue(), row.integer) << described(row.n);
        EXPECT_EQ(row.n->unsignedIntegerValue(), row.natural) << described(row.n);
        if (std::isnan(row.value))
            EXPECT_TRUE(std::isnan(row.n->doubleValue()));
        else
            EXPECT_EQ(row.n->doubleValue(), row.value) << described(row.n);
        EXPECT_EQ(row.n->boolValue(), row.truth) << described(row.n);
    }
}

TEST(NSNumber, textAndTypeCodes) {
    const struct {
        Ref<NSNumber> n;
        const char *text, *type;
    } rows[] = {
        {NSNumber::numberWithBool(YES), "1", "c"},
        {NSNumber::numberWithChar(-5), "-5", "c"},
        {NSNumber::numberWithUnsignedChar(255), "255", "C"},
        {NSNumber::numberWithInt(-7), "-7", "i"},
        {number(least), "-9223372036854775808", "q"},
        {NSNumber::numberWithUnsignedInteger(~NSUInteger(0)), "18446744073709551615", "Q"},
        {NSNumber::numberWithFloat(0.1f), "0.1", "f"},
        {real(0.1), "0.1", "d"},
        {real(100000), "100000", "d"},
        {real(-0.00001), "-1e-05", "d"},
        {real(1e16), "10000000000000000", "d"},
        {real(1.5e300), "1.5e+300", "d"},
        {real(1.0 / 3), "0.3333333333333333", "d"},
        {real(infinite), "inf", "d"},
        {decimal("1.50"), "1.5", "d"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(described(row.n), row.text);
        EXPECT_STREQ(row.n->objCType(), row.type) << row.text;
    }
    EXPECT_EQ(number(7).get(), number(7).get());
    EXPECT_TRUE(NSNumber::numberWithBool(YES)->isBoolean());
    EXPECT_FALSE(NSNumber::numberWithInt(1)->isBoolean());
    EXPECT_LE(sizeof(NSNumber), 24u);
}

TEST(NSNumber, boxesGoThereAndBack) {
    EXPECT_EQ(unboxed<double>(boxed(2.5)), 2.5);
    EXPECT_EQ(unboxed<NSRect>(boxed(NSRect{{1, 2}, {3, 4}})), (NSRect{{1, 2}, {3, 4}}));
    EXPECT_EQ(unboxed<NSSize>(boxed(NSRect{{1, 2}, {3, 4}})), NSZeroSize); // another kind
    EXPECT_EQ(unboxed<NSInteger>(text(u"  42 pommes")), 42);
    EXPECT_EQ(unboxed<double>(nullptr), 0);
    EXPECT_EQ(unboxed<bool>(NSNull::null()), false);
    EXPECT_TRUE(isEqual(boxed(NSPoint{0.0, 1}), boxed(NSPoint{-0.0, 1})));
    EXPECT_EQ(boxed(NSPoint{0.0, 1})->hash(), boxed(NSPoint{-0.0, 1})->hash());
    EXPECT_FALSE(isEqual(boxed(NSPoint{1, 2}), boxed(NSSize{1, 2})));
}
