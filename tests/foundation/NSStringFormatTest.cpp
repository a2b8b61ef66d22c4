#include "Valeurs.h"

#include <climits>
#include <clocale>
#include <cmath>
#include <cstdint>

#include <libvue/platform/foundation/NSData.h>

using namespace libvue;
using namespace libvue::textes;

namespace {

template <class... A> std::string format(std::u16string_view f, A... arguments) {
    return shown(NSString::stringWithFormat(text(f), arguments...));
}

} // namespace

TEST(NSStringFormatTest, conversions) {
    const Ref<NSString> mot = text(u"\u00E9t\u00E9");
    EXPECT_EQ(format(u"%d%%", 50), "50%");
    EXPECT_EQ(format(u"%@ et %@", mot.get(), mot.get()), "\\u00E9t\\u00E9 et \\u00E9t\\u00E9");
    EXPECT_EQ(format(u"%@", static_cast<NSObject*>(nullptr)), "(null)");
    EXPECT_EQ(format(u"%@", NSData::from("ab").get()), "<6162>");
    EXPECT_EQ(format(u"%5@|%-5@|%.2@|", mot.get(), mot.get(), mot.get()),
              "  \\u00E9t\\u00E9|\\u00E9t\\u00E9  |\\u00E9t|");
    EXPECT_EQ(format(u"%s %10s|%-6s|%.3s", "abc", "d", "e", "fghij"), "abc          d|e     |fgh");
    EXPECT_EQ(format(u"%s", "\xC3\xA9\xFF"), "\\u00E9\\uFFFD");
    EXPECT_EQ(format(u"%s %S", static_cast<const char*>(nullptr), static_cast<const unichar*>(nullptr)),
              "(null) (null)");
    EXPECT_EQ(format(u"%S|%.2S", u"\u2019xyz", u"abcd"), "\\u2019xyz|ab");
    EXPECT_EQ(format(u"%c%c%C%C", 'a', 0xE9, 0x2019, 0), "a\\u00E9\\u2019\\u0000");
    EXPECT_EQ(format(u"%3c|%-3C|", 'a', u'b'), "  a|b  |");
    EXPECT_EQ(format(u"%p %p", static_cast<void*>(nullptr), reinterpret_cast<void*>(0xBEEF)), "0x0 0xbeef");
}

TEST(NSStringFormatTest, numbersAreWrittenAsTheCLibraryDoes) {
    // The C library is the reference: the two must agree on every combination of flags, widths and precisions.
    const char* const flags[] = {"", "-", "+", " ", "0", "#", "-0", "+0", " 0", "#0", "-#", "+-"};
    const char* const widths[] = {"", "1", "5", "12"};
    const char* const precisions[] = {"", ".", ".0", ".1", ".4", ".9"};
    const auto agrees = [](const std::string& f, auto v) {
        char expected[256];
        std::snprintf(expected, sizeof expected, f.c_str(), v);
        EXPECT_EQ(NSString::stringWithFormat(NSString::fromUTF8(f), v)->utf8(), expected) << f << " " << v;
    };
    for (const char* flag : flags)
        for (const char* width : widths)
            for (const char* precision : precisions) {
                const std::string head = std::string("%") + flag + width + precision;
                for (const char* type : {"d", "i", "u", "x", "X", "o", "hd", "hhu", "hhx"})
                    for (const int v : {0, 1, -1, 42, 255, 65536, INT32_MAX, INT32_MIN})
                        agrees(head + type, v);
                for (const char* type : {"ld", "lld", "lu", "llx", "zu", "jd", "td"})
                    for (const long long v : {0LL, -1LL, LLONG_MAX, LLONG_MIN, 5000000000LL})
                        agrees(head + type, v);
                for (const char* type : {"f", "e", "g", "G", "a", "E"})
                    for (const double v : {0.0, -0.0, 1.5, -2.25, 1e10, 1e-7, HUGE_VAL, -HUGE_VAL})
                        agrees(head + type, v);
            }
    EXPECT_EQ(format(u"%qd %D %U", 5000000000LL, 5000000000L, 5000000000UL), "5000000000 5000000000 5000000000");
    EXPECT_EQ(format(u"%.1Lf", 2.5L), "2.5");
    EXPECT_EQ(format(u"%.2f", 1e300).size(), 304u); // longer than any buffer at hand
}

TEST(NSStringFormatTest, numbersDoNotFollowTheLocale) {
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    for (const char* name : {"fr_FR.UTF-8", "fr_CA.UTF-8", "de_DE.UTF-8"})
        if (std::setlocale(LC_NUMERIC, name)) break;
    EXPECT_EQ(format(u"%.2f", 1234.5), "1234.50");
    EXPECT_EQ(text(u"1.5")->doubleValue(), 1.5);
    std::setlocale(LC_NUMERIC, before.c_str());
}

TEST(NSStringFormatTest, starsAndPositions) {
    EXPECT_EQ(format(u"%*d|%-*d|%.*f", 5, 42, 5, 42, 2, 3.14159), "   42|42   |3.14");
    EXPECT_EQ(format(u"%*d|", -5, 42), "42   |");
    EXPECT_EQ(format(u"%.*d", -3, 7), "7");
    EXPECT_EQ(format(u"%2$@ %1$d %2$@", 7, text(u"x").get()), "x 7 x");
    EXPECT_EQ(format(u"%2$.1f %1$s", "a", 2.5), "2.5 a");
    EXPECT_EQ(format(u"%1$*2$d|", 7, 4), "   7|");
    EXPECT_EQ(format(u"%3$d", 1, 2, 3), "3"); // the places between are integers
}

TEST(NSStringFormatTest, whatIsNoConversionIsText) {
    EXPECT_EQ(format(u"100%"), "100%");
    EXPECT_EQ(format(u"%"), "%");
    EXPECT_EQ(format(u"%%%"), "%%");
    EXPECT_EQ(format(u"%y %d", 3), "%y 3");
    EXPECT_EQ(format(u"%5.2", 1), "%5.2");
    EXPECT_EQ(format(u"%-+ #0*y %d", 1), "%-+ #0*y 1"); // takes no argument either
    EXPECT_EQ(format(u"%0$d %99$d %999999999999$d", 1), "%0$d %99$d %999999999999$d");
    EXPECT_EQ(format(u"%\u00E9 %\u4E00"), "%\\u00E9 %\\u4E00");
    EXPECT_EQ(format(u"a%n%d", static_cast<int*>(nullptr), 4), "a4"); // written through no pointer
    // A width that would ask for all the memory is held.
    EXPECT_EQ(NSString::stringWithFormat(text(u"%999999999999d"), 1)->length(), 100000u);
    EXPECT_EQ(NSString::stringWithFormat(text(u"%*d"), INT32_MIN, 1)->length(), 100000u);
}

TEST(NSStringFormatTest, theLogGoesToTheSink) {
    const valeurs::Log log;
    NSLog(text(u"%@ : %d"), text(u"\u00E9tat").get(), 3);
    NSLog(text(u"100%"));
    EXPECT_EQ(log.lines, (std::vector<std::string>{"\xC3\xA9tat : 3", "100%"}));
    Ref<NSMutableString> s = NSMutableString::stringWithString(text(u"a"));
    s->appendFormat(text(u"%@%@"), s.get(), s.get()); // what is appended is made first
    EXPECT_EQ(shown(s->stringByAppendingFormat(text(u"-%02d"), 5)), "aaa-05");
}
