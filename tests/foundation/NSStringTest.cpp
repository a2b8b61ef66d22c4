#include "Textes.h"

#include <cmath>
#include <functional>
#include <vector>

#include <libvue/platform/foundation/NSCharacterSet.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/StringBuilder.h>

using namespace libvue;
using namespace libvue::textes;

namespace {

using namespace std::string_view_literals;

// Latin-1 texts with what trips an implementation: nothing, one unit, embedded zeros, lengths around the block sizes of
// the fast paths, the letters whose other case is out of Latin-1, line ends, digits.
const std::vector<std::u16string_view> latinTexts = {u""sv,
                                                     u"a"sv,
                                                     u"\0"sv,
                                                     u"a\0b\0"sv,
                                                     u"ABC"sv,
                                                     u"\u00C9l\u00E8ve \u00E0 l'\u00E9cole"sv,
                                                     u"stra\u00DFe"sv,
                                                     u"STRASSE"sv,
                                                     u"\u00FFx\u00B5"sv,
                                                     u"a\r\nb\nc\rd\u0085e"sv,
                                                     u"  12.5e1 "sv,
                                                     u"-2147483649"sv,
                                                     u"/tmp/un.deux/"sv,
                                                     u"0123456789abcde"sv,
                                                     u"0123456789abcdef"sv,
                                                     u"0123456789abcdefg"sv,
                                                     u"x\u00D7y\u00F7z\u00DE\u00FE"sv,
                                                     u"fichier 10"sv,
                                                     u"a%20b c/\u00E9?"sv};

/// What a text answers to operations that go over its units.
std::vector<std::string> answersOf(const NSString& s) {
    const NSCharacterSet* blanks = NSCharacterSet::whitespaceAndNewlineCharacterSet();
    const NSUInteger half = s.length() / 2;
    std::vector<std::string> out = {
        std::to_string(s.hash()),
        s.utf8(),
        s.UTF8String(),
        std::to_string(s.intValue()) + " " + std::to_string(s.doubleValue()) + (s.boolValue() ? " yes" : " no"),
        s.dataUsingEncoding_allowLossyConversion(NSMacOSRomanStringEncoding, YES)->description()->utf8(),
        shown(s.componentsSeparatedByCharactersInSet(blanks)),
    };
    for (const Ref<NSString>& derived :
         {s.lowercaseString(), s.uppercaseString(), s.capitalizedString(), s.decomposedStringWithCanonicalMapping(),
          s.precomposedStringWithCompatibilityMapping(),
          s.stringByFoldingWithOptions(NSCaseInsensitiveSearch | NSDiacriticInsensitiveSearch), s.lastPathComponent(),
          s.pathExtension(), s.stringByDeletingLastPathComponent(), s.stringByDeletingPathExtension(),
          s.stringByTrimmingCharactersInSet(blanks), s.stringByAddingPercentEscapesUsingEncoding(NSUTF8StringEncoding),
          s.substringToIndex(half), s.substringFromIndex(half)})
        out.push_back(shown(derived));
    for (NSUInteger i = 0; i < s.length(); ++i)
        out.push_back(shown(s.lineRangeForRange({i, 0})) + shown(s.paragraphRangeForRange({i, 0})) +
                      shown(s.rangeOfComposedCharacterSequenceAtIndex(i)));
    return out;
}

/// And of two texts.
std::vector<std::string> answersOf(const NSString& a, const NSString& b) {
    std::vector<std::string> out = {
        std::string(a.isEqual(&b) ? "equal " : "") + (a.hasPrefix(&b) ? "prefix " : "") +
            (a.hasSuffix(&b) ? "suffix" : ""),
        std::to_string(a.localizedCompare(&b)) + std::to_string(a.localizedCaseInsensitiveCompare(&b)),
        shown(a.stringByAppendingString(&b)),
        shown(a.stringByAppendingPathComponent(&b)),
        shown(a.stringByReplacingOccurrencesOfString_withString(&b, text(u"\u2019"))),
        shown(a.componentsSeparatedByString(&b)),
    };
    for (const NSUInteger how : {0, 4, 8, 12})
        for (const NSUInteger sees : {0, 1, 2, 3, 129, 256})
            out.push_back(shown(a.rangeOfString_options(&b, how | sees)));
    for (const NSUInteger options : {0, 1, 2, 3, 64, 65, 128, 129, 256, 512, 513})
        out.push_back(std::to_string(a.compare_options(&b, options)));
    return out;
}

} // namespace

TEST(NSStringTest, bothStoragesAnswerAlike) {
    for (const std::u16string_view units : latinTexts) {
        const Ref<NSString> narrow = text(units), wide = wideText(units);
        ASSERT_EQ(narrow->_fastCharacterContents(), nullptr);
        ASSERT_NE(wide->_fastCharacterContents(), nullptr);
        EXPECT_EQ(answersOf(*narrow), answersOf(*wide)) << shown(units);
        for (const std::u16string_view others : latinTexts) {
            const Ref<NSString> narrowOther = text(others), wideOther = wideText(others);
            const std::vector<std::string> expected = answersOf(*narrow, *narrowOther);
            const std::string where = shown(units) + " and " + shown(others);
            EXPECT_EQ(answersOf(*narrow, *wideOther), expected) << where;
            EXPECT_EQ(answersOf(*wide, *narrowOther), expected) << where;
            EXPECT_EQ(answersOf(*wide, *wideOther), expected) << where;
        }
    }
}

TEST(NSStringTest, equalityIsThatOfUnits) {
    for (const std::u16string_view a : latinTexts)
        for (const std::u16string_view b : latinTexts)
            EXPECT_EQ(text(a)->isEqual(wideText(b)), a == b);
    // Canonically equivalent is not equal.
    EXPECT_FALSE(text(u"\u00E9")->isEqual(text(u"e\u0301")));
    EXPECT_FALSE(text(u"a")->isEqual(NSData::from("a")));
}

TEST(NSStringTest, aTextThatFitsIsStoredAsEightBit) {
    const Ref<NSString> s = text(u"ab\u2019cd");
    EXPECT_NE(s->_fastCharacterContents(), nullptr);
    EXPECT_EQ(s->latin1Contents(), nullptr);
    EXPECT_NE(s->substringToIndex(2)->latin1Contents(), nullptr);
    const Ref<NSObject> copy = wideText(u"caf\u00E9")->copyWithZone();
    EXPECT_NE(as<NSString>(copy)->latin1Contents(), nullptr);
}

TEST(NSStringTest, utf8ComesInAndGoesOut) {
    const struct {
        std::string_view bytes;
        const char* lenient; // with U+FFFD for each ill-formed part
        bool wellFormed;
    } rows[] = {
        {"", "", true},
        {"abc"sv, "abc", true},
        {"a\0b"sv, "a\\u0000b", true},
        {"\xC3\xA9", "\\u00E9", true},
        {"\xE2\x82\xAC", "\\u20AC", true},
        {"\xF0\x9F\x98\x80", "\\uD83D\\uDE00", true},
        {"\xF4\x8F\xBF\xBF", "\\uDBFF\\uDFFF", true},
        {"\xEF\xBF\xBF", "\\uFFFF", true},
        {"\xC0\x80", "\\uFFFD\\uFFFD", false}, // overlong
        {"\xE0\x80\x80", "\\uFFFD\\uFFFD\\uFFFD", false},
        {"\xED\xA0\x80", "\\uFFFD\\uFFFD\\uFFFD", false}, // a surrogate
        {"\xF4\x90\x80\x80", "\\uFFFD\\uFFFD\\uFFFD\\uFFFD", false},
        {"\xF5x", "\\uFFFDx", false},
        {"a\xE2\x82", "a\\uFFFD", false}, // cut short
        {"\xE2\x82x", "\\uFFFDx", false},
        {"\x80", "\\uFFFD", false},
        {"\xFF\xFE", "\\uFFFD\\uFFFD", false},
    };
    for (const auto& row : rows) {
        const Ref<NSString> lenient = NSString::fromUTF8(row.bytes);
        EXPECT_EQ(shown(lenient), row.lenient);
        const Ref<NSString> strict =
            NSString::initWithBytes_length_encoding(row.bytes.data(), row.bytes.size(), NSUTF8StringEncoding);
        EXPECT_EQ(strict.get() != nullptr, row.wellFormed) << row.lenient;
        if (strict) {
            EXPECT_EQ(strict->utf8(), row.bytes);
            EXPECT_EQ(strict->dataUsingEncoding(NSUTF8StringEncoding)->view(), row.bytes);
        }
    }
    // Stretches of ASCII of any length between others, in both storages.
    for (std::size_t n = 0; n < 12; ++n)
        for (const char* other : {"é", "日", "😀"}) {
            const std::string bytes = std::string(n, 'a') + other + std::string(n, 'b') + other + std::string(n, 'c');
            EXPECT_EQ(NSString::fromUTF8(bytes)->utf8(), bytes);
        }
    // Lone surrogates are kept in the text, and have no UTF-8.
    const Ref<NSString> lone = text(u"a\xD800z\xDC00");
    EXPECT_EQ(lone->characterAtIndex(1), 0xD800);
    EXPECT_EQ(lone->utf8(), "a\xEF\xBF\xBDz\xEF\xBF\xBD");
    EXPECT_EQ(lone->dataUsingEncoding(NSUTF8StringEncoding), nullptr);
    EXPECT_EQ(lone->dataUsingEncoding_allowLossyConversion(NSUTF8StringEncoding, YES)->length(), 8u);
}

TEST(NSStringTest, utf8StringLastsAsLongAsTheText) {
    const Ref<NSString> accented = text(u"\u00E9t\u00E9");
    const char* bytes = accented->UTF8String();
    for (int i = 0; i < 100; ++i)
        EXPECT_STREQ(text(u"\u00E8")->UTF8String(), "\xC3\xA8");
    EXPECT_EQ(accented->UTF8String(), bytes);
    EXPECT_STREQ(bytes, "\xC3\xA9t\xC3\xA9");

    // That of one that changes follows it.
    Ref<NSMutableString> s = NSMutableString::stringWithString(text(u"abc"));
    EXPECT_STREQ(s->UTF8String(), "abc");
    s->appendString(text(u"\u00E9"));
    EXPECT_STREQ(s->UTF8String(), "abc\xC3\xA9");
    s->deleteCharactersInRange({1, 3});
    EXPECT_STREQ(s->UTF8String(), "a");
}

TEST(NSStringTest, encodings) {
    const std::u16string_view sample = u"\u00E9\u20AC\u0153";
    const struct {
        NSUInteger encoding;
        const char *exact, *lossy; // "(null)" where the text cannot be written
    } rows[] = {
        {NSUTF8StringEncoding, "<c3a9e282 acc593>", "<c3a9e282 acc593>"},
        {NSUTF16LittleEndianStringEncoding, "<e900ac20 5301>", "<e900ac20 5301>"},
        {NSUTF16BigEndianStringEncoding, "<00e920ac 0153>", "<00e920ac 0153>"},
        {NSWindowsCP1252StringEncoding, "<e9809c>", "<e9809c>"},
        {NSMacOSRomanStringEncoding, "<8edbcf>", "<8edbcf>"},
        {NSISOLatin1StringEncoding, "(null)", "<e93f3f>"},
        {NSASCIIStringEncoding, "(null)", "<653f3f>"},
        {99, "(null)", "(null)"},
    };
    const auto described = [](const Ref<NSData>& d) { return d ? d->description()->utf8() : "(null)"; };
    for (const auto& row : rows) {
        const auto encoding = static_cast<NSStringEncoding>(row.encoding);
        const Ref<NSData> exact = text(sample)->dataUsingEncoding(encoding);
        EXPECT_EQ(described(exact), row.exact) << row.encoding;
        if (exact) {
            EXPECT_TRUE(NSString::initWithData_encoding(exact, encoding)->isEqualTo(sample)) << row.encoding;
        }
        EXPECT_EQ(described(text(sample)->dataUsingEncoding_allowLossyConversion(encoding, YES)), row.lossy)
            << row.encoding;
    }
    const auto read = [](std::string_view bytes, NSStringEncoding encoding) {
        return shown(NSString::initWithBytes_length_encoding(bytes.data(), bytes.size(), encoding));
    };
    EXPECT_EQ(read("\xFE\xFF\x20\xAC", NSUTF16StringEncoding), "\\u20AC");
    EXPECT_EQ(read("\xFF\xFE\xAC\x20", NSUTF16StringEncoding), "\\u20AC");
    EXPECT_EQ(read("odd", NSUTF16StringEncoding), "(null)");
    EXPECT_EQ(read("\xE9", NSASCIIStringEncoding), "(null)");
}

TEST(NSStringTest, whatIsOutOfTheTextRaises) {
    const Ref<NSString> s = text(u"abc");
    const Ref<NSMutableString> m = make<NSMutableString>(s);
    expectRaised("NSRangeException",
                 {[&] { (void)s->characterAtIndex(3); }, [&] { (void)s->substringFromIndex(4); },
                  [&] { (void)s->substringToIndex(4); }, [&] { (void)s->substringWithRange(NSMakeRange(2, 2)); },
                  [&] { (void)s->substringWithRange(NSMakeRange(1, ~NSUInteger{0})); }, // the end wraps round
                  [&] { (void)s->rangeOfString_options_range(s, 0, NSMakeRange(0, 4)); },
                  [&] { (void)s->lineRangeForRange(NSMakeRange(4, 0)); },
                  [&] { (void)s->rangeOfComposedCharacterSequenceAtIndex(3); },
                  [&] { (void)s->compare_options_range(s, 0, NSMakeRange(3, 1)); },
                  [&] { (void)s->stringByPaddingToLength_withString_startingAtIndex(9, s, 3); },
                  [&] { m->insertString_atIndex(s, 4); },
                  [&] { m->deleteCharactersInRange(NSMakeRange(static_cast<NSUInteger>(NSNotFound), 0)); }});
    expectRaised("NSInvalidArgumentException",
                 {[&] { (void)s->stringByAppendingString(nullptr); }, [&] { (void)s->rangeOfString(nullptr); },
                  [&] { (void)s->stringByReplacingOccurrencesOfString_withString(s, nullptr); },
                  [&] { (void)NSString::stringWithUTF8String(nullptr); }, [&] { m->appendString(nullptr); },
                  [&] { (void)NSString::initWithFormat_arguments(nullptr, {}); }});
    // The end itself is in the text.
    EXPECT_EQ(s->substringFromIndex(3)->length(), 0u);
}

TEST(NSStringTest, aMutableTextKeepsItsUnitsThroughEveryChange) {
    Ref<NSMutableString> s = make<NSMutableString>();
    s->appendLatin1("caf\xE9");
    const NSUInteger before = s->hash();
    s->appendCharacter(u'!');
    EXPECT_NE(s->hash(), before);
    EXPECT_NE(s->latin1Contents(), nullptr);
    s->appendCharacter(u'\u2019');
    EXPECT_EQ(s->latin1Contents(), nullptr);
    s->insertString_atIndex(text(u"<\u00E8>"), 1);
    EXPECT_EQ(shown(s), "c<\\u00E8>af\\u00E9!\\u2019");
    s->replaceCharactersInRange_withString({1, 3}, text(u""));
    s->deleteCharactersInRange({4, 2});
    EXPECT_EQ(s->hash(), before);
    EXPECT_TRUE(s->isEqual(text(u"caf\u00E9")));

    // Into itself, at the ends and in the middle.
    s->setString(text(u"ab"));
    s->appendString(s);
    s->insertString_atIndex(s, 1);
    s->replaceCharactersInRange_withString({0, 1}, s);
    EXPECT_EQ(shown(s), "aababbabababbab");
    s->setString(s);
    EXPECT_EQ(s->length(), 15u);

    EXPECT_EQ(s->replaceOccurrencesOfString_withString_options_range(text(u"ab"), text(u"\u2026"), 0, {2, 10}), 4u);
    EXPECT_EQ(shown(s), "aab\\u2026b\\u2026\\u2026\\u2026bab");
}

TEST(NSStringTest, aCopyOfAMutableTextStandsApart) {
    Ref<NSMutableString> s = NSMutableString::stringWithString(text(u"un"));
    const Ref<NSObject> copy = s->copyWithZone();
    const Ref<NSString> part = s->substringWithRange({0, 2}), with = NSString::stringWithString(s);
    s->appendString(text(u" deux"));
    for (const NSString* kept : {as<NSString>(copy), part.get(), with.get()})
        EXPECT_EQ(shown(kept), "un");
    // What cannot change is its own copy.
    EXPECT_EQ(part->copyWithZone().get(), part.get());
    EXPECT_NE(part->mutableCopyWithZone().get(), part.get());
}

TEST(NSStringTest, linesEndWhereTheyShould) {
    //                  0 12 3 45 67 8
    const auto s = text(u"a\r\nb\n\rc\u2028d\u2029\u0085");
    const struct {
        NSRange range;
        NSUInteger start, end, contentsEnd;
    } rows[] = {
        {{0, 0}, 0, 3, 1},  {{1, 0}, 0, 3, 1},     {{2, 0}, 0, 3, 1},     {{3, 0}, 3, 5, 4},
        {{5, 0}, 5, 6, 5},  {{6, 1}, 6, 8, 7},     {{0, 4}, 0, 5, 4},     {{0, 3}, 0, 3, 1},
        {{8, 1}, 8, 10, 9}, {{10, 0}, 10, 11, 10}, {{11, 0}, 11, 11, 11},
    };
    for (const auto& row : rows) {
        NSUInteger start = 99, end = 99, contentsEnd = 99;
        s->getLineStart_end_contentsEnd_forRange(&start, &end, &contentsEnd, row.range);
        EXPECT_EQ(start, row.start) << shown(row.range);
        EXPECT_EQ(end, row.end) << shown(row.range);
        EXPECT_EQ(contentsEnd, row.contentsEnd) << shown(row.range);
    }
    // A paragraph goes on over U+2028 and U+0085.
    EXPECT_EQ(s->paragraphRangeForRange({6, 0}), (NSRange{6, 4}));
    EXPECT_EQ(s->paragraphRangeForRange({10, 0}), (NSRange{10, 1}));
}

TEST(NSStringTest, numbersAreReadAsFarAsTheyGo) {
    const struct {
        const char16_t* text;
        int integer;
        double real;
        bool truth;
    } rows[] = {
        {u"", 0, 0, false},
        {u"  42abc", 42, 42, true},
        {u"+7", 7, 7, true},
        {u"- 7", 0, 0, false},
        {u"1.5e2x", 1, 150, true},
        {u"1e", 1, 1, true},
        {u".5", 0, 0.5, false},
        {u".", 0, 0, false},
        {u"inf", 0, 0, false},
        {u"nan", 0, 0, false},
        {u"0x10", 0, 0, false},
        {u"2147483648", 2147483647, 2147483648.0, true},
        {u"-2147483648", -2147483647 - 1, -2147483648.0, true},
        {u"-99999999999999999999", -2147483647 - 1, -1e20, true},
        {u"1e400", 1, HUGE_VAL, true},
        {u"1e-400", 1, 0, true},
        {u"YES", 0, 0, true},
        {u"-007", -7, -7, true},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(text(row.text)->intValue(), row.integer) << shown(row.text);
        EXPECT_EQ(text(row.text)->doubleValue(), row.real) << shown(row.text);
        EXPECT_EQ(text(row.text)->boolValue(), row.truth) << shown(row.text);
    }
    EXPECT_EQ(text(u"9223372036854775808")->integerValue(), NSNotFound);
    EXPECT_EQ(text(u"-9223372036854775808")->integerValue(), -NSNotFound - 1);
}

TEST(NSStringTest, paths) {
    const struct {
        const char16_t* path;
        const char *last, *extension, *folder, *bare;
    } rows[] = {
        {u"", "", "", "", ""},
        {u"/", "/", "", "/", "/"},
        {u"/tmp/scratch.tiff", "scratch.tiff", "tiff", "/tmp", "/tmp/scratch"},
        {u"/tmp/lock/", "lock", "", "/tmp", "/tmp/lock"},
        {u"scratch.bundle///", "scratch.bundle", "bundle", "", "scratch"},
        {u"scratch..tiff", "scratch..tiff", "tiff", "", "scratch."},
        {u".bashrc", ".bashrc", "", "", ".bashrc"},
        {u"a.b/c", "c", "", "a.b", "a.b/c"},
        {u"a//b.c", "b.c", "c", "a", "a//b"},
    };
    for (const auto& [path, last, extension, folder, bare] : rows) {
        const Ref<NSString> s = text(path);
        EXPECT_EQ(shown(s->lastPathComponent()), last) << shown(s);
        EXPECT_EQ(shown(s->pathExtension()), extension) << shown(s);
        EXPECT_EQ(shown(s->stringByDeletingLastPathComponent()), folder) << shown(s);
        EXPECT_EQ(shown(s->stringByDeletingPathExtension()), bare) << shown(s);
    }
    const char16_t* const joins[][3] = {
        {u"/tmp", u"a", u"/tmp/a"}, {u"/tmp/", u"/a/", u"/tmp/a"}, {u"/", u"a", u"/a"},
        {u"", u"a", u"a"},          {u"", u"/a", u"/a"},           {u"a", u"", u"a"},
        {u"a/", u"b/c", u"a/b/c"},
    };
    for (const auto& [path, part, joined] : joins)
        EXPECT_EQ(shown(text(path)->stringByAppendingPathComponent(text(part))), shown(joined));
    EXPECT_EQ(shown(text(u"/tmp/")->stringByAppendingPathExtension(text(u"tiff"))), "/tmp.tiff");
    EXPECT_EQ(shown(text(u"~nobody-of-that-name/x")->stringByExpandingTildeInPath()), "~nobody-of-that-name/x");
    EXPECT_TRUE(text(u"~/x")->stringByExpandingTildeInPath()->hasSuffix(text(u"/x")));
    EXPECT_FALSE(text(u"~/x")->stringByExpandingTildeInPath()->hasPrefix(text(u"~")));
}

TEST(NSStringTest, splittingGivesEmptyPiecesToo) {
    const char16_t* const rows[][3] = {
        {u"", u",", u"||"},
        {u"a", u",", u"|a|"},
        {u",a,,b,", u",", u"||a||b||"},
        {u"aXYbXY", u"XY", u"|a|b||"},
        {u"aaa", u"aa", u"||a|"},
        {u"a,b", u"", u"|a,b|"},
    };
    for (const auto& [whole, separator, pieces] : rows)
        EXPECT_EQ(shown(text(whole)->componentsSeparatedByString(text(separator))), shown(pieces)) << shown(whole);
    // A separator is taken by its units, marks or not.
    EXPECT_EQ(shown(text(u"ae\u0301b")->componentsSeparatedByString(text(u"e"))), "|a|\\u0301b|");
    EXPECT_EQ(shown(text(u"a\U0001F600b c")
                        ->componentsSeparatedByCharactersInSet(
                            NSCharacterSet::characterSetWithCharactersInString(text(u" \U0001F600")))),
              "|a|b|c|");
}

TEST(NSStringTest, paddingTruncatesAndRepeats) {
    const Ref<NSString> s = text(u"abc"), pad = text(u"12");
    EXPECT_EQ(shown(s->stringByPaddingToLength_withString_startingAtIndex(2, pad, 0)), "ab");
    EXPECT_EQ(shown(s->stringByPaddingToLength_withString_startingAtIndex(8, pad, 1)), "abc21212");
    EXPECT_EQ(shown(s->stringByPaddingToLength_withString_startingAtIndex(4, text(u"\u2026"), 0)), "abc\\u2026");
}

TEST(NSStringTest, aBuilderGoesWideInTheMiddle) {
    for (const std::size_t before : {0u, 1u, 127u, 128u, 129u, 255u, 256u, 257u, 5000u}) {
        StringBuilder b;
        std::u16string expected;
        for (std::size_t i = 0; i < before; ++i) {
            b.append(static_cast<unichar>(u'a' + i % 26));
            expected.push_back(static_cast<unichar>(u'a' + i % 26));
        }
        b.append("\xE9");
        b.append(u"\u2019\u00E9");
        b.appendCodePoint(0x1F600);
        b.appendNumber(-12);
        b.append("fin");
        expected += u"\u00E9\u2019\u00E9\U0001F600-12fin";
        EXPECT_TRUE(b.build()->isEqualTo(expected)) << before;
        b.truncate(before);
        EXPECT_TRUE(b.build()->isEqualTo(std::u16string_view(expected).substr(0, before))) << before;
    }
}
