#include "Textes.h"

#include <climits>

#include <libvue/platform/foundation/NSCharacterSet.h>
#include <libvue/platform/foundation/NSScanner.h>

using namespace libvue;
using namespace libvue::textes;

TEST(NSScannerTest, readsFromLeftToRight) {
    const Ref<NSScanner> s = NSScanner::scannerWithString(text(u" 12, -3.5e1x NOM = \u00E9t\u00E9; 0xFFfin"));
    int i = 0;
    double d = 0;
    unsigned h = 0;
    Ref<NSString> v;
    EXPECT_FALSE(s->scanString_intoString(text(u","), nullptr));
    EXPECT_EQ(s->scanLocation(), 0u); // a scan that fails stays
    EXPECT_TRUE(s->scanInt(&i) && i == 12);
    EXPECT_FALSE(s->scanInt(&i));
    EXPECT_TRUE(s->scanString_intoString(text(u","), &v));
    EXPECT_TRUE(s->scanDouble(&d) && d == -35);
    EXPECT_TRUE(s->scanString_intoString(text(u"X"), &v));
    EXPECT_EQ(shown(v), "x"); // the text's own letters
    EXPECT_TRUE(s->scanUpToString_intoString(text(u"="), &v));
    EXPECT_EQ(shown(v), "NOM ");
    EXPECT_FALSE(s->scanUpToString_intoString(text(u"="), &v));
    s->setCaseSensitive(YES);
    EXPECT_TRUE(s->scanString_intoString(text(u"="), nullptr));
    EXPECT_TRUE(s->scanCharactersFromSet_intoString(NSCharacterSet::letterCharacterSet(), &v));
    EXPECT_EQ(shown(v), "\\u00E9t\\u00E9");
    EXPECT_TRUE(s->scanUpToCharactersFromSet_intoString(NSCharacterSet::decimalDigitCharacterSet(), &v));
    EXPECT_EQ(shown(v), "; ");
    EXPECT_TRUE(s->scanHexInt(&h) && h == 0xFFF);
    EXPECT_FALSE(s->isAtEnd());
    EXPECT_TRUE(s->scanUpToString_intoString(text(u"absent"), &v));
    EXPECT_EQ(shown(v), "in");
    EXPECT_TRUE(s->isAtEnd());
    EXPECT_FALSE(s->scanUpToString_intoString(text(u"x"), nullptr));
    EXPECT_EQ(raised([&] { s->setScanLocation(100); }), "NSRangeException");
    EXPECT_EQ(raised([] { (void)NSScanner::scannerWithString(nullptr); }), "NSInvalidArgumentException");
}

TEST(NSScannerTest, numbersStopWhereTheyEnd) {
    const struct {
        const char16_t* text;
        bool found;
        double value;
        NSUInteger end;
    } rows[] = {{u"1e", true, 1, 1}, {u"1e+", true, 1, 1}, {u".5.", true, 0.5, 2},   {u"-.", false, 0, 0},
                {u"", false, 0, 0},  {u"1.", true, 1, 2},  {u"+2e-1z", true, 0.2, 5}};
    for (const auto& [in, found, value, end] : rows) {
        const Ref<NSScanner> s = NSScanner::scannerWithString(text(in));
        double d = 0;
        EXPECT_EQ(s->scanDouble(&d), found) << shown(in);
        EXPECT_EQ(d, value) << shown(in);
        EXPECT_EQ(s->scanLocation(), end) << shown(in);
    }
    int i = 0;
    EXPECT_TRUE(NSScanner::scannerWithString(text(u"-99999999999"))->scanInt(&i));
    EXPECT_EQ(i, INT_MIN);
    unsigned h = 0;
    EXPECT_TRUE(NSScanner::scannerWithString(text(u"fffffffff"))->scanHexInt(&h));
    EXPECT_EQ(h, UINT_MAX);
    EXPECT_FALSE(NSScanner::scannerWithString(text(u"xyz"))->scanHexInt(&h));
    const Ref<NSScanner> s = NSScanner::scannerWithString(text(u" 1"));
    s->setCharactersToBeSkipped(nullptr);
    EXPECT_FALSE(s->scanInt(&i));
}
