#include "Json.h"

#include <cmath>
#include <limits>

#include <libvue/platform/foundation/NSDate.h>
#include <libvue/text/json/NSObjectSBJSON.h>
#include <libvue/text/json/SBJsonWriter.h>

using namespace libvue;
using namespace libvue::json;
using textes::raised;
using textes::shown;

namespace {

std::string fragment(NSObject* value) {
    const auto writer = make<SBJsonWriter>();
    const auto s = writer->stringWithFragment(value);
    return s ? s->utf8() : "error " + trace(*writer);
}

/// Written as something else, which it may change its mind about.
class Proxy : public NSObject {
public:
    static void describe(ClassDescription<Proxy>& c) { c.answers<&Proxy::proxyForJson>(op::proxyForJson); }
    explicit Proxy(Ref<NSObject> value = nullptr) : value_(std::move(value)) {}
    Ref<NSObject> proxyForJson() {
        if (before) before();
        return itself ? Ref<NSObject>(this) : value_;
    }
    std::function<void()> before;
    bool itself = false;

private:
    Ref<NSObject> value_;
};

} // namespace

TEST(SBJsonWriter, everyKindOfValueHasItsText) {
    const struct {
        Ref<NSObject> value;
        const char* text;
    } rows[] = {
        {text(u"/"), "\"/\""},
        {text(u"é\u007F\u0080\u00FF"), "\"é\u007F\u0080ÿ\""},
        {text(u"名前😊"), "\"名前😊\""},
        {text(u"\"\\\b\t\n\f\r"), R"("\"\\\b\t\n\f\r")"},
        {text(std::u16string_view(u"\0\u0001\u000B\u001A\u001F", 5)), R"("\u0000\u0001\u000b\u001a\u001f")"},
        {NSNumber::numberWithBool(YES), "true"},
        {NSNumber::numberWithBool(NO), "false"},
        {NSNumber::numberWithChar(1), "true"},
        {NSNumber::numberWithChar(-7), "true"},
        {NSNumber::numberWithUnsignedChar(1), "1"},
        {NSNumber::numberWithInteger(std::numeric_limits<NSInteger>::min()), "-9223372036854775808"},
        {NSNumber::numberWithUnsignedInteger(std::numeric_limits<NSUInteger>::max()), "18446744073709551615"},
        {NSNumber::numberWithDouble(0.1), "0.1"},
        {NSNumber::numberWithFloat(0.1f), "0.1"},
        {NSNumber::numberWithDouble(std::numeric_limits<double>::infinity()), "inf"},
        {NSNumber::numberWithDouble(std::nan("")), "nan"},
        {NSDecimalNumber::notANumber(), "NaN"},
        {NSNull::null(), "null"},
        {list({NSNull::null(), list({}), text(u"x")}), R"([null,[],"x"])"},
        {object({{text(u"b"), decimal("1")}, {text(u"a\n"), object({})}}), R"({"b":1,"a\n":{}})"},
        {make<Proxy>(text(u"p")), "\"p\""},
        {list({make<Proxy>(make<Proxy>(list({decimal("2")}))), decimal("3")}), "[[2],3]"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(fragment(row.value), row.text);
}

TEST(SBJsonWriter, readableTextIsIndentedByTwoSpacesALevel) {
    const auto writer = make<SBJsonWriter>();
    writer->setHumanReadable(YES);
    const auto value = object({{text(u"k"), list({decimal("1"), decimal("2")})}});
    EXPECT_EQ(shown(writer->stringWithObject(value)), shown(u"{\n  \"k\" : [\n    1,\n    2\n  ]\n}"));
    const auto empty = object({{text(u"a"), list({})}, {text(u"b"), object({})}});
    EXPECT_EQ(shown(writer->stringWithObject(empty)), shown(u"{\n  \"a\" : [],\n  \"b\" : {}\n}"));
    EXPECT_EQ(shown(writer->stringWithFragment(decimal("4"))), "4");
}

TEST(SBJsonWriter, sortedKeysFollowCompareAndOthersTheirDictionary) {
    const auto value = object({{text(u"é"), decimal("1")},
                               {text(u"b"), decimal("2")},
                               {text(u"A"), object({{text(u"z"), decimal("3")}, {text(u"y"), decimal("4")}})},
                               {text(u"名"), decimal("6")},
                               {text(u"a"), decimal("5")}});
    const auto writer = make<SBJsonWriter>();
    EXPECT_EQ(writer->stringWithObject(value)->utf8(), R"({"é":1,"b":2,"A":{"z":3,"y":4},"名":6,"a":5})");
    writer->setSortKeys(YES);
    EXPECT_EQ(writer->stringWithObject(value)->utf8(), R"({"A":{"y":4,"z":3},"a":5,"b":2,"é":1,"名":6})");
}

TEST(SBJsonWriter, everyFailingLevelButAnArrayAddsItsError) {
    const auto date = NSDate::date();
    const auto numberKey = object({{decimal("1"), text(u"v")}});
    const struct {
        Ref<NSObject> value;
        const char* errors;
    } rows[] = {
        {nullptr, "1 JSON serialisation not supported for (null)\n"},
        {date, "1 JSON serialisation not supported for NSDate\n"},
        {list({list({date})}), "1 JSON serialisation not supported for NSDate\n"},
        {object({{text(u"k"), list({date})}}), "1 JSON serialisation not supported for NSDate\n"
                                               "1 Unsupported value for key k in object\n"},
        {numberKey, "1 JSON object key must be string\n"},
        {object({{text(u"o"), list({object({{text(u"i"), numberKey}})})}}),
         "1 JSON object key must be string\n"
         "1 Unsupported value for key i in object\n"
         "1 Unsupported value for key o in object\n"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(fragment(row.value), std::string("error ") + row.errors);
}

TEST(SBJsonWriter, aRootThatIsNoContainerIsRefusedWhateverItsProxyGave) {
    const auto date = NSDate::date();
    const struct {
        Ref<NSObject> value;
        const char* result; // null where it is refused
    } rows[] = {
        {nullptr, nullptr},
        {text(u"a"), nullptr},
        {make<Proxy>(), nullptr},
        {make<Proxy>(text(u"a")), nullptr},
        {make<Proxy>(list({date})), nullptr},
        {make<Proxy>(make<Proxy>(object({{decimal("1"), date}}))), nullptr},
        {make<Proxy>(make<Proxy>(list({text(u"a")}))), "[\"a\"]"},
    };
    for (const auto& row : rows) {
        const auto writer = make<SBJsonWriter>();
        const auto s = writer->stringWithObject(row.value);
        EXPECT_EQ(s ? s->utf8() : "", row.result ? row.result : "");
        EXPECT_EQ(trace(*writer), row.result ? "" : "4 Not valid type for JSON\n");
    }
    // A container says why itself.
    const auto writer = make<SBJsonWriter>();
    EXPECT_FALSE(writer->stringWithObject(list({date})));
    EXPECT_EQ(trace(*writer), "1 JSON serialisation not supported for NSDate\n");
    // The next operation begins without errors.
    EXPECT_TRUE(writer->stringWithObject(list({})));
    EXPECT_FALSE(writer->errorTrace());
}

TEST(SBJsonWriter, aProxyCountsAsWrittenEvenWhereItIsNot) {
    const auto date = NSDate::date();
    const auto writer = make<SBJsonWriter>();
    const auto value = object({{text(u"a"), make<Proxy>(date)},
                               {text(u"b"), make<Proxy>(list({decimal("1"), object({{text(u"k"), date}})}))},
                               {text(u"c"), make<Proxy>()}});
    EXPECT_EQ(writer->stringWithFragment(value)->utf8(), R"({"a":,"b":[1,{"k":,"c":})");
    EXPECT_EQ(trace(*writer), "1 JSON serialisation not supported for NSDate\n"
                              "1 JSON serialisation not supported for NSDate\n"
                              "1 Unsupported value for key k in object\n"
                              "1 JSON serialisation not supported for (null)\n");
    // The levels that failed have not been left: the second proxy begins two levels further down.
    writer->setMaxDepth(4);
    const auto twice = list({make<Proxy>(list({list({date})})), make<Proxy>(list({list({})}))});
    EXPECT_EQ(writer->stringWithFragment(twice)->utf8(), "[[[,[]");
    EXPECT_EQ(trace(*writer), "1 JSON serialisation not supported for NSDate\n7 Nested too deep\n");
}

TEST(SBJsonWriter, proxiesThatLeadToThemselvesEnd) {
    const auto itself = make<Proxy>();
    itself->itself = true;
    const auto writer = make<SBJsonWriter>();
    EXPECT_EQ(writer->stringWithFragment(list({itself}))->utf8(), "[]");
    EXPECT_EQ(trace(*writer), "1 JSON serialisation not supported for Proxy\n");
    EXPECT_FALSE(writer->stringWithObject(itself));
}

TEST(SBJsonWriter, aProxyMayChangeWhatIsBeingWritten) {
    const auto proxy = make<Proxy>(text(u"p"));
    const auto d = object({{text(u"a"), decimal("1")}, {text(u"b"), proxy}, {text(u"c"), decimal("2")}});
    d->setObject_forKey(decimal("3"), text(u"d"));
    proxy->before = [&] {
        d->setObject_forKey(decimal("4"), text(u"c"));
        d->setObject_forKey(decimal("5"), text(u"e"));
        d->removeObjectForKey(text(u"a"));
    };
    EXPECT_EQ(fragment(d), R"({"a":1,"b":"p","c":4,"d":3})");
    proxy->before = [&] { d->removeObjectForKey(text(u"d")); };
    EXPECT_EQ(fragment(d), "error 1 JSON serialisation not supported for (null)\n"
                           "1 Unsupported value for key d in object\n");

    const auto a = NSMutableArray::array();
    proxy->before = [&] { a->removeAllObjects(); };
    for (int i = 0; i < 3; ++i)
        a->addObject(proxy);
    EXPECT_EQ(fragment(list({a, decimal("1")})), R"([["p"],1])");
}

TEST(SBJsonWriter, nestingIsHeldToTheLimit) {
    const auto writer = make<SBJsonWriter>();
    const std::string opening(512, '['), closing(512, ']');
    EXPECT_EQ(writer->stringWithObject(nested(512))->utf8(), opening + closing);
    EXPECT_FALSE(writer->stringWithObject(nested(513)));
    EXPECT_EQ(trace(*writer), "7 Nested too deep\n");
    writer->setMaxDepth(1);
    const auto two = object({{text(u"k"), list({})}});
    EXPECT_FALSE(writer->stringWithObject(two));
    EXPECT_EQ(trace(*writer), "7 Nested too deep\n1 Unsupported value for key k in object\n");
    EXPECT_EQ(writer->stringWithObject(list({decimal("1")}))->utf8(), "[1]");
}

TEST(SBJsonWriter, withoutALimitAMillionLevelsAreWritten) {
    constexpr NSUInteger levels = 1000000;
    const auto writer = make<SBJsonWriter>();
    writer->setMaxDepth(0);
    Ref<NSObject> value = nested(levels);
    const auto s = writer->stringWithObject(value);
    ASSERT_TRUE(s);
    ASSERT_EQ(s->length(), 2 * levels);
    EXPECT_EQ(s->characterAtIndex(levels - 1), u'[');
    EXPECT_EQ(s->characterAtIndex(levels), u']');
    // Taken apart from the outside, so that this test asks nothing of how deep trees are released.
    while (auto* outer = as<NSArray>(value)) {
        Ref<NSObject> inner = outer->firstObject();
        value = inner;
    }
}

TEST(SBJsonWriter, withoutALimitIndentationHasNoDepthToGoBy) {
    const auto writer = make<SBJsonWriter>();
    writer->setMaxDepth(0);
    writer->setHumanReadable(YES);
    EXPECT_EQ(writer->stringWithObject(list({}))->utf8(), "[]");
    EXPECT_EQ(raised([&] { (void)writer->stringWithObject(list({decimal("1")})); }), "NSRangeException");
    EXPECT_EQ(raised([&] { (void)writer->stringWithObject(list({list({}), list({})})); }), "NSRangeException");
    // The writer is none the worse for it.
    writer->setMaxDepth(2);
    EXPECT_EQ(shown(writer->stringWithObject(list({decimal("1")}))), shown(u"[\n  1\n]"));
}

/// Escaped unit by unit, as the rules say it.
static std::u16string escaped(std::u16string_view units) {
    std::u16string out = u"\"";
    for (char16_t c : units) {
        char sequence[8];
        if (c == u'"' || c == u'\\')
            std::snprintf(sequence, sizeof sequence, "\\%c", c);
        else if (c == 8 || c == 9 || c == 10 || c == 12 || c == 13)
            std::snprintf(sequence, sizeof sequence, "\\%c", "btn?fr"[c - 8]);
        else if (c < 0x20)
            std::snprintf(sequence, sizeof sequence, "\\u%04x", c);
        else {
            out += c;
            continue;
        }
        for (const char* p = sequence; *p; ++p)
            out += static_cast<char16_t>(*p);
    }
    return out + u"\"";
}

TEST(SBJsonWriter, escapesAreFoundWhereverTheyStand) {
    // Each awkward unit at each place of texts of each length, in both storages, alone and beside its like.
    constexpr char16_t awkward[] = {0,     1,     8,      9,      0xB,    0x1F,   0x20,   0x21,   u'"',
                                    0x23,  u'\\', 0x5B,   0x5D,   0x7F,   0x80,   0x9F,   0xA2,   0xDC,
                                    0x100, 0x120, 0x2200, 0x5C00, 0x8000, 0xA2A2, 0xD800, 0xDFFF, 0xFFFF};
    const auto writer = make<SBJsonWriter>();
    for (std::size_t length = 1; length < 36; ++length)
        for (std::size_t at = 0; at < length; ++at)
            for (char16_t c : awkward)
                for (char16_t rest : {u'x', u'\u1E00', c}) {
                    std::u16string units(length, rest);
                    units[at] = c;
                    const std::u16string expected = escaped(units);
                    for (const auto& s : {text(units), textes::wideText(units)}) {
                        const auto written = writer->stringWithFragment(s);
                        ASSERT_TRUE(written->isEqualTo(expected)) << shown(written) << " for " << shown(s);
                    }
                }
}

TEST(SBJsonWriter, longTextsChangeTheirStorageWhereTheyMust) {
    // Around the blocks in which text is gathered, and with the first wide unit at every kind of place.
    const auto writer = make<SBJsonWriter>();
    for (std::size_t length : {1022u, 1023u, 1024u, 1025u, 2048u, 8190u, 8191u, 8192u, 8193u, 20000u})
        for (char16_t c : {u'x', u'\n', u'\u0001', u'\u00E9', u'\u4E00'}) {
            const std::u16string units(length, c);
            const auto s = text(units);
            const auto value = list({decimal("123456789.5"), s, text(u"é\""), decimal("-1"), s, text(u"\u4E00"), s});
            const std::u16string part = escaped(units);
            std::u16string expected;
            for (const std::u16string_view each :
                 {u"[123456789.5,", part.c_str(), u",\"é\\\"\",-1,", part.c_str(), u",\"\u4E00\",", part.c_str(), u"]"})
                expected += each;
            const auto written = writer->stringWithFragment(value);
            ASSERT_TRUE(written->isEqualTo(expected)) << length << " times " << static_cast<int>(c);
        }
    EXPECT_TRUE(writer->stringWithFragment(list({text(u"é")}))->latin1Contents());
}

TEST(SBJsonWriter, wideTextsAndLongStretchesWithoutThemAlternate) {
    // Stretches that end before, at and behind the ends of blocks; the wide text is a value, a key, or a value that is
    // longer than a block. A proxy and its comma are as wide as divides a block, which then ends between the two.
    const std::u16string wide = u"\u4E00\n", longWide(9000, u'\u4E01');
    const Ref<NSObject> plain = decimal("987654321"), proxy = make<Proxy>(decimal("7654321"));
    for (int count : {1, 800, 817, 818, 819, 820, 821, 1640, 4000}) {
        Values values;
        std::u16string expected = u"[";
        const auto add = [&](const Ref<NSObject>& value, std::u16string_view printed) {
            if (!values.empty()) expected += u',';
            values.push_back(value);
            expected += printed;
        };
        for (int round = 0; round < 6; ++round) {
            for (int i = 0; i < count; ++i)
                round % 2 ? add(plain, u"987654321") : add(proxy, u"7654321");
            if (round % 3 == 0)
                add(text(wide), u"\"\u4E00\\n\"");
            else if (round % 3 == 1)
                add(object({{text(u"é"), text(u"ÿ")}, {text(wide), object({})}}), u"{\"é\":\"ÿ\",\"\u4E00\\n\":{}}");
            else
                add(text(longWide), u'"' + longWide + u'"');
        }
        const auto written = make<SBJsonWriter>()->stringWithFragment(list(values));
        ASSERT_TRUE(written->isEqualTo(expected + u"]")) << count;
    }
}
