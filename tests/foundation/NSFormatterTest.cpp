#include "Valeurs.h"

#include <cmath>

#include <libvue/platform/foundation/NSDate.h>
#include <libvue/platform/foundation/NSDateFormatter.h>
#include <libvue/platform/foundation/NSDecimalNumber.h>
#include <libvue/platform/foundation/NSLocale.h>
#include <libvue/platform/foundation/NSNumberFormatter.h>
#include <libvue/platform/foundation/NSValueTransformer.h>

using namespace libvue;
using namespace libvue::valeurs;

namespace {

Ref<NSLocale> locale(const char16_t* name) { return NSLocale::localeWithLocaleIdentifier(text(name)); }

Ref<NSNumberFormatter> formatter(const char16_t* name, NSNumberFormatterStyle style = NSNumberFormatterDecimalStyle) {
    auto f = make<NSNumberFormatter>();
    f->setLocale(locale(name));
    f->setNumberStyle(style);
    return f;
}

} // namespace

TEST(NSNumberFormatter, numbersInTheWordsOfALocale) {
    auto two = [](Ref<NSNumberFormatter> f) {
        f->setMinimumFractionDigits(2);
        f->setMaximumFractionDigits(2);
        return f;
    };
    auto pattern = [](Ref<NSNumberFormatter> f, const char16_t* p) {
        f->setFormat(text(p));
        return f;
    };
    auto ungrouped = formatter(u"fr_FR");
    ungrouped->setUsesGroupingSeparator(NO);
    auto big = NSDecimalNumber::decimalNumberWithText("12345678901234567890123.5");
    const struct {
        Ref<NSNumberFormatter> f;
        Ref<NSNumber> n;
        const char* text;
    } rows[] = {
        {formatter(u"fr_FR"), number(1234567), "1\\u202F234\\u202F567"},
        {formatter(u"en_US"), NSNumber::numberWithDouble(-1234.5678), "-1,234.568"},
        {formatter(u"de_DE"), NSNumber::numberWithDouble(0.5), "0,5"},
        {two(formatter(u"fr_FR")), number(3), "3,00"},
        {two(formatter(u"en_US")), NSNumber::numberWithDouble(2.345), "2.34"}, // half to even
        {formatter(u"en_US"), big, "12,345,678,901,234,567,890,123.5"},
        {formatter(u"en_US"), NSNumber::numberWithUnsignedInteger(~NSUInteger(0)), "18,446,744,073,709,551,615"},
        {formatter(u"en_US"), NSNumber::numberWithDouble(1e22), "10,000,000,000,000,000,000,000"},
        {formatter(u"fr_FR"), NSNumber::numberWithDouble(HUGE_VAL), "\\u221E"},
        {formatter(u"en_US", NSNumberFormatterPercentStyle), NSNumber::numberWithDouble(0.25), "25%"},
        {formatter(u"fr_FR", NSNumberFormatterNoStyle), NSNumber::numberWithDouble(1234.4), "1234"},
        {ungrouped, number(1234567), "1234567"},
        {pattern(formatter(u"en_US"), u"#,##0.00;(#,##0.00)"), NSNumber::numberWithDouble(-1234.5), "(1,234.50)"},
        {pattern(formatter(u"en_US"), u"000.#"), NSNumber::numberWithDouble(7.25), "007.2"},
        {pattern(formatter(u"en_US"), u"#.#.#"), number(7), "7"}, // no pattern: the style's own
    };
    for (const auto& row : rows)
        EXPECT_EQ(described(row.f->stringFromNumber(row.n)), row.text) << described(row.n);
    EXPECT_EQ(formatter(u"fr")->stringFromNumber(nullptr), nullptr);
    EXPECT_EQ(described(formatter(u"fr")->stringForObjectValue(nullptr)), "");
    EXPECT_EQ(formatter(u"fr")->stringForObjectValue(text(u"12")), nullptr);
}

TEST(NSNumberFormatter, onlyAWholeTextIsANumber) {
    const struct {
        const char16_t *locale, *text;
        const char* number;
    } rows[] = {
        {u"fr_FR", u"1 234,5", "1234.5"},
        {u"fr_FR", u"1\u00A0234", "1234"},
        {u"fr_FR", u" 12 ", "12"},
        {u"fr_FR", u"12 pommes", "none"},
        {u"fr_FR", u"", "none"},
        {u"fr_FR", u"   ", "none"},
        {u"fr_FR", u"abc", "none"},
        {u"fr_FR", u"-3", "-3"},
        {u"en_US", u"1,234.5", "1234.5"},
        {u"en_US", u"9223372036854775807", "9223372036854775807"},
        {u"en_US", u"9223372036854775808", "9223372036854775808"},
    };
    for (const auto& row : rows) {
        auto n = formatter(row.locale)->numberFromString(text(row.text));
        EXPECT_EQ(n ? n->isFloating() && n->doubleValue() == 0x1p63 ? "9223372036854775808" : described(n) : "none",
                  row.number)
            << shown(row.text);
    }
    auto f = formatter(u"fr_FR");
    f->setGeneratesDecimalNumbers(YES);
    EXPECT_EQ(described(f->numberFromString(text(u"0,12345678901234567890123456789"))),
              "0.12345678901234567890123456789");
}

TEST(NSNumberFormatter, editedValuesAreHeldToTheLimits) {
    auto f = formatter(u"fr_FR");
    f->setAllowsFloats(NO);
    f->setMinimum(number(1));
    f->setMaximum(number(10));
    const struct {
        const char16_t* text;
        bool accepted;
    } rows[] = {{u"1", true},    {u"10", true}, {u"0", false}, {u"11", false},
                {u"2,5", false}, {u"x", false}, {u"", true}};
    for (const auto& row : rows) {
        Ref<NSObject> value = number(99);
        Ref<NSString> error;
        EXPECT_EQ(f->getObjectValue_forString_errorDescription(&value, text(row.text), &error), row.accepted)
            << shown(row.text);
        EXPECT_EQ(error == nullptr, row.accepted) << shown(row.text);
    }
    EXPECT_FALSE(f->getObjectValue_forString_errorDescription(nullptr, text(u"x"), nullptr));
}

TEST(NSDateFormatter, datesInTheWordsOfALocale) {
    auto d = NSDate::dateWithTimeIntervalSince1970(1700000000); // 14 November 2023, 22:13:20 UTC
    auto f = make<NSDateFormatter>();
    f->setTimeZoneName(text(u"UTC"));
    f->setLocale(locale(u"fr_FR"));
    EXPECT_EQ(described(f->stringFromDate(d)), "");
    f->setDateStyle(NSDateFormatterLongStyle);
    EXPECT_EQ(described(f->stringFromDate(d)), "14 novembre 2023");
    f->setDateStyle(NSDateFormatterShortStyle);
    f->setTimeStyle(NSDateFormatterShortStyle);
    EXPECT_EQ(described(f->stringFromDate(d)), "14/11/2023 22:13");
    f->setDateFormat(text(u"EEEE d MMMM y, HH:mm:ss"));
    EXPECT_EQ(described(f->stringFromDate(d)), "mardi 14 novembre 2023, 22:13:20");
    EXPECT_TRUE(isEqual(f->dateFromString(f->stringFromDate(d)), d));
    EXPECT_EQ(f->dateFromString(text(u"mardi")), nullptr);
    f->setDateFormat(text(u"dd/MM/y"));
    EXPECT_EQ(described(f->dateFromString(text(u"29/02/2024"))), "2024-02-29 00:00:00 +0000");
    EXPECT_EQ(described(f->dateFromString(text(u"1/3/2024"))), "2024-03-01 00:00:00 +0000");
    for (const char16_t* none : {u"29/02/2023", u"31/04/2024", u"1/13/2024"})
        EXPECT_EQ(f->dateFromString(text(none)), nullptr) << shown(none);
    EXPECT_EQ(f->dateFromString(text(u"")), nullptr);
    EXPECT_EQ(f->stringFromDate(nullptr), nullptr);
    auto far = NSDate::dateWithTimeIntervalSinceReferenceDate(HUGE_VAL);
    EXPECT_EQ(described(f->stringFromDate(far)), "");
    Ref<NSString> error;
    EXPECT_FALSE(f->getObjectValue_forString_errorDescription(nullptr, text(u"hier"), &error));
    EXPECT_NE(error, nullptr);
}

TEST(NSDate, descriptions) {
    const struct {
        double since1970;
        const char* text;
    } rows[] = {
        {0, "1970-01-01 00:00:00 +0000"},           {-1, "1969-12-31 23:59:59 +0000"},
        {951782400, "2000-02-29 00:00:00 +0000"},   {4107542400, "2100-03-01 00:00:00 +0000"},
        {-2203977600, "1900-02-28 00:00:00 +0000"}, {1700000000.75, "2023-11-14 22:13:20 +0000"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(described(NSDate::dateWithTimeIntervalSince1970(row.since1970)), row.text);
    EXPECT_EQ(described(NSDate::distantPast()), "0001-01-01 00:00:00 +0000");
    EXPECT_EQ(described(NSDate::distantFuture()), "4001-01-01 00:00:00 +0000");
}

TEST(NSValueTransformer, byName) {
    auto* negate = NSValueTransformer::valueTransformerForName(text(u"NSNegateBoolean"));
    ASSERT_NE(negate, nullptr);
    EXPECT_EQ(unboxed<bool>(negate->transformedValue(boxed(true))), false);
    EXPECT_EQ(unboxed<bool>(negate->transformedValue(nullptr)), true);
    auto* isNil = NSValueTransformer::valueTransformerForName(text(u"NSIsNil"));
    EXPECT_EQ(unboxed<bool>(isNil->transformedValue(nullptr)), true);
    EXPECT_EQ(raised([&] { (void)isNil->reverseTransformedValue(boxed(true)); }), "NSInvalidArgumentException");
    EXPECT_EQ(NSValueTransformer::valueTransformerForName(text(u"NSArray")), nullptr); // a class of another kind
    EXPECT_EQ(NSValueTransformer::valueTransformerForName(text(u"Nowhere")), nullptr);
    EXPECT_EQ(NSValueTransformer::valueTransformerForName(nullptr), nullptr);
    auto plus = NSValueTransformer::withBlocks([](NSObject* v) { return boxed(unboxed<NSInteger>(v) + 1); },
                                               [](NSObject* v) { return boxed(unboxed<NSInteger>(v) - 1); });
    NSValueTransformer::setValueTransformer_forName(plus, text(u"plus"));
    EXPECT_EQ(NSValueTransformer::valueTransformerForName(text(u"plus")), plus.get());
    EXPECT_EQ(unboxed<NSInteger>(plus->reverseTransformedValue(number(3))), 2);
    NSValueTransformer::setValueTransformer_forName(nullptr, text(u"plus"));
    EXPECT_EQ(NSValueTransformer::valueTransformerForName(text(u"plus")), nullptr);
}
