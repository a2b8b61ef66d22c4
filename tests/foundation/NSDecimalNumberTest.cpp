#include "Valeurs.h"

#include <charconv>
#include <cmath>

#include <libvue/platform/foundation/NSDecimalNumber.h>

using namespace libvue;
using namespace libvue::valeurs;

namespace {

__extension__ typedef __int128 Int128;

Ref<NSDecimalNumber> decimal(std::string_view s) { return NSDecimalNumber::decimalNumberWithText(s); }

std::string digits(Int128 v) {
    if (v < 0) return "-" + digits(-v);
    std::string s;
    do
        s.insert(s.begin(), static_cast<char>('0' + static_cast<int>(v % 10)));
    while ((v /= 10) != 0);
    return s;
}

constexpr const char* nines38 = "99999999999999999999999999999999999999";

} // namespace

TEST(NSDecimalNumber, textIsReadAndRoundedOnce) {
    const std::string zeros(200, '0');
    const struct {
        std::string in, out;
    } rows[] = {
        {"", "NaN"},
        {"abc", "NaN"},
        {"-", "NaN"},
        {".", "NaN"},
        {"e5", "NaN"},
        {"  +12.50kg", "12.5"},
        {"-0.000", "0"},
        {".5", "0.5"},
        {"5.", "5"},
        {"1e", "1"},
        {"1e+", "1"},
        {"12e-3", "0.012"},
        {"1e2", "100"},
        {"1..5", "1"},
        {"0e99999999999999999999", "0"},
        {"1e99999999999999999999", "NaN"},
        {"1e-99999999999999999999", "0"},
        {nines38, nines38},
        {"123456789012345678901234567890123456784", "123456789012345678901234567890123456780"},
        {"123456789012345678901234567890123456785", "123456789012345678901234567890123456790"},
        {"0.999999999999999999999999999999999999995", "1"},
        {"999999999999999999999999999999999999995", "1000000000000000000000000000000000000000"},
        {"1" + zeros.substr(0, 127), "1" + zeros.substr(0, 127)},
        {"1e164", "1" + zeros.substr(0, 164)}, // 10^127 with 37 zeros in front of it
        {"1e165", "NaN"},
        {"1e-128", "0." + zeros.substr(0, 127) + "1"},
        {"4e-129", "0"},
        {"5e-129", "0." + zeros.substr(0, 127) + "1"},
        {"0." + zeros + "1e201", "1"},
        {"1" + zeros + "e-200", "1"},
        {"1" + zeros + "." + zeros + "1e-200", "1"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(described(decimal(row.in)), row.out) << row.in;
    EXPECT_EQ(described(NSDecimalNumber::decimalNumberWithString(text(u"3,5"))), "3");
    EXPECT_EQ(described(NSDecimalNumber::decimalNumberWithString(text(u"\u0663"))), "NaN");
    EXPECT_EQ(described(NSDecimalNumber::decimalNumberWithString(nullptr)), "NaN");
}

TEST(NSDecimalNumber, operationsAtTheEndsOfTheRange) {
    const struct {
        const char *a, *op, *b, *result;
    } rows[] = {
        {nines38, "+", "1", "100000000000000000000000000000000000000"},
        {nines38, "+", "0.5", "100000000000000000000000000000000000000"},
        {nines38, "+", "0.4", nines38},
        {"1", "-", "1e-38", "0.99999999999999999999999999999999999999"},
        {"1", "-", "1e-39", "1"},
        {"1", "-", "6e-39", "0.99999999999999999999999999999999999999"},
        {"1", "+", "1e-128", "1"},
        {"1e127", "-", "1e-128",
         "1"
         "000000000000000000000000000000000000000000000000000000000000000"
         "0000000000000000000000000000000000000000000000000000000000000000"},
        {"0.1", "+", "0.2", "0.3"},
        {"5", "-", "5.0", "0"},
        {"-5", "+", "3", "-2"},
        {"3", "-", "5", "-2"},
        {"1.5", "*", "-4", "-6"},
        {"0", "*", "-4", "0"},
        {"12345678901234567890", "*", "98765432109876543210", "1219326311370217952237463801111263526900"},
        {nines38, "*", nines38, "9999999999999999999999999999999999999800000000000000000000000000000000000000"},
        {"1", "/", "3", "0.33333333333333333333333333333333333333"},
        {"2", "/", "3", "0.66666666666666666666666666666666666667"},
        {"1", "/", nines38, "0.00000000000000000000000000000000000001"},
        {"100", "/", "8", "12.5"},
        {nines38, "/", "0.1", "999999999999999999999999999999999999990"},
        {"1e127", "*", "1e127", "NSDecimalNumberOverflowException"},
        {"1e-128", "*", "1e-128", "NSDecimalNumberUnderflowException"},
        {"1e-128", "/", "1e20", "NSDecimalNumberUnderflowException"},
        {"1", "/", "0", "NSDecimalNumberDivideByZeroException"},
        {"0", "/", "7", "0"},
        {"x", "+", "1", "NaN"},
        {"1", "/", "x", "NaN"},
    };
    for (const auto& row : rows) {
        auto a = decimal(row.a), b = decimal(row.b);
        std::string got;
        std::string name = raised([&] {
            got = described(*row.op == '+'   ? a->decimalNumberByAdding(b)
                            : *row.op == '-' ? a->decimalNumberBySubtracting(b)
                            : *row.op == '*' ? a->decimalNumberByMultiplyingBy(b)
                                             : a->decimalNumberByDividingBy(b));
        });
        EXPECT_EQ(name.empty() ? got : name, row.result) << row.a << ' ' << row.op << ' ' << row.b;
    }
    EXPECT_EQ(raised([] { (void)decimal("1")->decimalNumberByAdding(nullptr); }), "NSInvalidArgumentException");
}

TEST(NSDecimalNumber, agreesWithIntegersOf128Bits) {
    Dice dice(20);
    for (int i = 0; i < 3000; ++i) {
        auto part = [&] {
            auto v = static_cast<NSInteger>(dice.next());
            return Int128(v >> dice.below(63));
        };
        Int128 a = part(), b = part();
        auto x = decimal(digits(a)), y = decimal(digits(b));
        ASSERT_EQ(described(x->decimalNumberByAdding(y)), digits(a + b));
        ASSERT_EQ(described(x->decimalNumberBySubtracting(y)), digits(a - b));
        ASSERT_EQ(x->compare(y), a < b ? NSOrderedAscending : a > b ? NSOrderedDescending : NSOrderedSame);
        if (digits(a * b).size() <= 38) {
            ASSERT_EQ(described(x->decimalNumberByMultiplyingBy(y)), digits(a * b));
        }
        if (b == 0) continue;
        // A quotient to whole units by the other way of cutting.
        auto q = x->decimalNumberByDividingBy(y)->decimalNumberByRounding_scale(
            (a < 0) == (b < 0) ? NSRoundDown : NSRoundUp, 0);
        ASSERT_EQ(described(q), digits(a / b)) << digits(a) << " / " << digits(b);
    }
}

TEST(NSDecimalNumber, roundingModes) {
    const struct {
        const char* in;
        short scale;
        const char *plain, *down, *up, *bankers;
    } rows[] = {
        {"1.25", 1, "1.3", "1.2", "1.3", "1.2"},
        {"1.35", 1, "1.4", "1.3", "1.4", "1.4"},
        {"-1.25", 1, "-1.3", "-1.3", "-1.2", "-1.2"},
        {"1.251", 1, "1.3", "1.2", "1.3", "1.3"},
        {"0.04", 1, "0", "0", "0.1", "0"},
        {"-0.04", 1, "0", "-0.1", "0", "0"},
        {"1250", -2, "1300", "1200", "1300", "1200"},
        {"1250", -9, "0", "0", "1000000000", "0"},
        {"12.5", 5, "12.5", "12.5", "12.5", "12.5"},
        {"NaN", 1, "NaN", "NaN", "NaN", "NaN"},
    };
    for (const auto& row : rows) {
        auto n = decimal(row.in);
        EXPECT_EQ(described(n->decimalNumberByRounding_scale(NSRoundPlain, row.scale)), row.plain) << row.in;
        EXPECT_EQ(described(n->decimalNumberByRounding_scale(NSRoundDown, row.scale)), row.down) << row.in;
        EXPECT_EQ(described(n->decimalNumberByRounding_scale(NSRoundUp, row.scale)), row.up) << row.in;
        EXPECT_EQ(described(n->decimalNumberByRounding_scale(NSRoundBankers, row.scale)), row.bankers) << row.in;
    }
}

TEST(NSDecimalNumber, doublesAreCorrectlyRounded) {
    for (const char* s : {"0.1", "123456789.123456789", "9007199254740993", "9007199254740992.5", "1e23", "5e-128",
                          "2.2250738585072011e-30", "179769313486231570000000000000000000001",
                          "0.500000000000000166533453693773481063545", "-1e127"}) {
        double expected = 0;
        std::from_chars(s, s + std::string_view(s).size(), expected);
        EXPECT_EQ(decimal(s)->doubleValue(), expected) << s;
    }
    for (double v : {0.1, 1.0 / 3, 1e22, -5e-100, 123456789012345680.0})
        EXPECT_EQ(NSDecimalNumber::decimalNumberWithDouble(v)->doubleValue(), v);
    EXPECT_TRUE(std::isnan(NSDecimalNumber::notANumber()->doubleValue()));
    EXPECT_TRUE(NSDecimalNumber::decimalNumberWithDouble(HUGE_VAL)->isNotANumber());
}
