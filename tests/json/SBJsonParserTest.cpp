#include "Json.h"

#include "../fuzz/json/Epreuve.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include <libvue/text/json/NSStringSBJSON.h>
#include <libvue/text/json/SBJsonParser.h>

using namespace libvue;
using namespace libvue::json;

namespace {

std::string read(const Ref<SBJsonParser>& parser, std::string_view json) {
    const auto value = parser->fragmentWithString(NSString::fromUTF8(json));
    return value ? essai::enTexte(value) : trace(*parser);
}
std::string read(std::string_view json) { return read(make<SBJsonParser>(), json); }

std::string repeated(std::string_view s, std::size_t times) {
    std::string all;
    all.reserve(s.size() * times);
    for (std::size_t i = 0; i < times; ++i)
        all += s;
    return all;
}

const std::string inArray = "3 Expected value while parsing array\n";
std::string underKey(const std::string& key) { return "3 Object value expected for key: " + key + "\n"; }

} // namespace

TEST(SBJsonParser, everyRuleOfTheLanguage) {
    using namespace std::string_literals;
    const std::string endOfString = "11 Unexpected end of string\n",
                      endOfArray = "11 End of input while parsing array\n",
                      endOfObject = "11 End of input while parsing object\n",
                      endInText = "11 Unexpected EOF while parsing string\n", noKey = "3 Object key string expected\n",
                      noColon = "3 Expected ':' separating key and value\n",
                      unknown = "3 Unrecognised leading character\n", garbage = "10 Garbage after JSON\n",
                      arrayComma = "9 Trailing comma disallowed in array\n",
                      objectComma = "9 Trailing comma disallowed in object\n", broken = "6 Broken unicode character\n",
                      noQuad = "6 Missing hex digit in quad\n6 Missing hex quad\n",
                      noLow = "6 Missing low character in surrogate pair\n";
    const struct {
        std::string json, expected;
    } rows[] = {
        // What begins a value.
        {"", endOfString},
        {" \t\n\v\f\r", endOfString},
        {"\0[]"s, endOfString},
        {"[1]\0]"s, "[1,]"},
        {"\v\f[\v1\f,\v2\f]\v\f", "[1,2,]"},
        {"\xC2\xA0[]", unknown},
        {"x", unknown},
        {"]", unknown},
        {",", unknown},
        {"[] x", garbage},
        {"1 2", garbage},
        {"[1]]", garbage},
        // Words: what follows them is not looked at.
        {"true", "true"},
        {"false", "false"},
        {"null", "null"},
        {"tru", "3 Expected 'true'\n"},
        {"falsE", "3 Expected 'false'\n"},
        {"n", "3 Expected 'null'\n"},
        {"truex", garbage},
        {"[truefalsenull]", "[true,false,null,]"},
        {"[truex]", unknown + inArray},
        // Arrays.
        {"[]", "[]"},
        {"[ ]", "[]"},
        {"[1 2 3]", "[1,2,3,]"},
        {"[1[2]\"a\"]", "[1,[2,],'a',]"},
        {"[1\"a\"{}null]", "[1,'a',{},null,]"},
        {"[", endOfArray},
        {"[ ", endOfString + inArray},
        {"[1", endOfArray},
        {"[1 ", endOfArray},
        {"[1,", endOfArray},
        {"[1, ", endOfArray},
        {"[1,]", arrayComma},
        {"[1 , ]", arrayComma},
        {"[,]", unknown + inArray},
        {"[1,,2]", unknown + inArray},
        {"[[1,]]", arrayComma + inArray},
        {"[[[x]]]", unknown + inArray + inArray + inArray},
        {"[}", unknown + inArray},
        // Objects.
        {"{}", "{}"},
        {"{ }", "{}"},
        {"{\"a\":1}", "{a:1,}"},
        {"{\"a\" : 1 , \"b\" : 2}", "{a:1,b:2,}"},
        {"{\"a\":1 \"b\":2}", "{a:1,b:2,}"},
        {"{\"a\":1,\"b\":2,\"a\":3}", "{a:3,b:2,}"},
        {"{\"\":{\"\":[]}}", "{:{:[],},}"},
        {"{", endOfObject},
        {"{ ", noKey},
        {"{\"a\":1", endOfObject},
        {"{\"a\":1,", endOfObject},
        {"{\"a\":1,}", objectComma},
        {"{,}", noKey},
        {"{1:2}", noKey},
        {"{a:2}", noKey},
        {"{\"a", "5 Unescaped control character '0x0'\n" + noKey},
        {"{\"\\x\":1}", "8 Illegal escape sequence '0x78'\n" + noKey},
        {"{\"a\"}", noColon},
        {"{\"a\"", noColon},
        {"{\"a\" 1}", noColon},
        {"{\"a\":", endOfString + underKey("a")},
        {"{\"a\":}", unknown + underKey("a")},
        {"{\"a\":{\"b\":[1,{\"c\":x}]}}", unknown + underKey("c") + inArray + underKey("b") + underKey("a")},
        {"{\"a\":{\"b\" 1}}", noColon + underKey("a")},
        {"[{\"a\":1,}]", objectComma + inArray},
        {"[1,{\"é\\n\":x}]", unknown + underKey("é\n") + inArray},
        // Texts.
        {"\"\"", "''"},
        {"\"é名😊\"", "'\\u00e9\\u540d\\ud83d\\ude0a'"},
        {R"("\"\\\/\b\f\n\r\t")", "'\"\\u005c/\\u0008\\u000c\\u000a\\u000d\\u0009'"},
        {R"("\u0041\u00e9\uABCD\uabcd\u0000z")", "'A\\u00e9\\uabcd\\uabcd\\u0000z'"},
        {"\"a", "5 Unescaped control character '0x0'\n"},
        {"\"é", "5 Unescaped control character '0x0'\n"},
        {"\"a\\n", endInText},
        {"\"\\u0041", endInText},
        {"\"\\", "8 Illegal escape sequence '0x0'\n"},
        {"\"\\x\"", "8 Illegal escape sequence '0x78'\n"},
        {"\"\\\xC3\xA9\"", "8 Illegal escape sequence '0xc3'\n"},
        {"\"\\U0041\"", "8 Illegal escape sequence '0x55'\n"},
        {"\"a\tb\"", "5 Unescaped control character '0x9'\n"},
        {"\"\x01\"", "5 Unescaped control character '0x1'\n"},
        {"\"\x19\"", "5 Unescaped control character '0x19'\n"},
        {"\"\x1A\x1B\x1F\x7F\"", "'\\u001a\\u001b\\u001f\\u007f'"},
        {"\"\\ud83d\\ude00\"", "'\\uf600'"},
        {"\"\\uD800\\uDC00\"", "'\\u0000'"},
        {"\"\\uDBFF\\uDFFE\"", "'\\ufffe'"},
        {"\"\\ud800\\udfff\"", "6 Invalid low surrogate char\n" + broken},
        {"\"\\ud800\\u0041\"", "6 Invalid low surrogate char\n" + broken},
        {"\"\\ud800\"", noLow + broken},
        {"\"\\ud800\\n\"", noLow + broken},
        {"\"\\ud800\\u12\"", "6 Missing hex digit in quad\n" + noLow + broken},
        {"\"\\udc00\"", "6 Invalid high character in surrogate pair\n" + broken},
        {"\"\\udfff\\ud800\"", "6 Invalid high character in surrogate pair\n" + broken},
        {"\"\\u12g4\"", noQuad + broken},
        {"\"\\u", noQuad + broken},
        {"[\"\\u123\"]", noQuad + broken + inArray},
        // Numbers.
        {"0", "0"},
        {"-0", "0"},
        {"0.0", "0"},
        {"-12.50", "-12.5"},
        {"1E-2", "0.01"},
        {"1e+3", "1000"},
        {"0e5", "0"},
        {"123456789012345678901234567890", "123456789012345678901234567890"},
        {"1e999", "NaN"},
        {"1e-999", "0"},
        {"+1", "2 Leading + disallowed in number\n"},
        {"-", "2 No digits after initial minus\n"},
        {"-a", "2 No digits after initial minus\n"},
        {"-+1", "2 No digits after initial minus\n"},
        {"01", "2 Leading 0 disallowed in number\n"},
        {"-01", "2 Leading 0 disallowed in number\n"},
        {"1.", "2 No digits after decimal point\n"},
        {"0.e1", "2 No digits after decimal point\n"},
        {"1e", "2 No digits after exponent\n"},
        {"1e+", "2 No digits after exponent\n"},
        {"1.5E-x", "2 No digits after exponent\n"},
        {"[1.,2]", "2 No digits after decimal point\n" + inArray},
        {"1.2.3", garbage},
        {"[1-2]", "[1,-2,]"},
        {"[0-0.5e1]", "[0,-5,]"},
        {".5", unknown},
    };
    for (const auto& row : rows)
        EXPECT_EQ(read(row.json), row.expected) << row.json;
}

TEST(SBJsonParser, theRootMayHaveToBeACollection) {
    const auto parser = make<SBJsonParser>();
    const auto object = [&](std::u16string_view s) { return parser->objectWithString(text(s)); };
    EXPECT_EQ(object(u"42"), nullptr);
    EXPECT_EQ(trace(*parser), "4 Valid fragment, but not JSON\n");
    EXPECT_EQ(object(u"null"), nullptr);
    EXPECT_EQ(object(u"4 2"), nullptr);
    EXPECT_EQ(trace(*parser), "10 Garbage after JSON\n");
    EXPECT_EQ(essai::enTexte(object(u"[42]").get()), "[42,]");
    EXPECT_EQ(parser->errorTrace(), nullptr);
    EXPECT_EQ(essai::enTexte(object(u"{}").get()), "{}");
    EXPECT_EQ(parser->objectWithString(nullptr), nullptr);
    EXPECT_EQ(trace(*parser), "12 Input was 'nil'\n");
    EXPECT_EQ(parser->fragmentWithString(nullptr), nullptr);
    EXPECT_EQ(trace(*parser), "12 Input was 'nil'\n");
}

TEST(SBJsonParser, nestingIsHeldToTheLimit) {
    const auto parser = make<SBJsonParser>();
    EXPECT_EQ(parser->maxDepth(), 512u);
    EXPECT_EQ(read(parser, repeated("[", 512) + repeated("]", 512)),
              repeated("[", 512) + repeated(",]", 512).substr(1));
    EXPECT_EQ(read(parser, repeated("[", 513) + repeated("]", 513)), "7 Nested too deep\n" + repeated(inArray, 512));
    // A failure leaves nothing behind for the next reading, and siblings do not add up.
    EXPECT_NE(read(parser, "[" + repeated("[[]]", 600) + "]").substr(0, 1), "7");
    parser->setMaxDepth(2);
    EXPECT_EQ(read(parser, "[{\"a\":1},{\"b\":2}]"), "[{a:1,},{b:2,},]");
    EXPECT_EQ(read(parser, "[{\"a\":[]}]"), "7 Nested too deep\n" + underKey("a") + inArray);
    EXPECT_EQ(read(parser, "[[{}]]"), "7 Nested too deep\n" + inArray + inArray);
}

TEST(SBJsonParser, withoutALimitAMillionLevelsAreReadAndGivenUp) {
    const struct {
        const char *begin, *end;
        std::size_t times, levels;
    } rows[] = {{"[", "]", 1000000, 1000000}, {"[1,{\"b\":", ",\"c\":[]}]", 200000, 400000}};
    const auto parser = make<SBJsonParser>();
    parser->setMaxDepth(0);
    for (const auto& [begin, end, deep, expected] : rows) {
        const auto value =
            parser->fragmentWithString(NSString::fromLatin1(repeated(begin, deep) + "0" + repeated(end, deep)));
        const auto key = u"b"_ns;
        std::size_t levels = 0;
        for (NSObject* o = value; o; ++levels)
            if (auto* a = as<NSArray>(o))
                o = a->lastObject();
            else if (auto* d = as<NSDictionary>(o))
                o = d->objectForKey(key);
            else
                break;
        EXPECT_EQ(levels, expected);
    }
}

TEST(SBJsonParser, aLongChainOfErrorsIsWhole) {
    constexpr std::size_t deep = 100000;
    const auto parser = make<SBJsonParser>();
    parser->setMaxDepth(0);
    EXPECT_EQ(parser->fragmentWithString(NSString::fromLatin1(repeated("[{\"a\":", deep))), nullptr);
    const auto errors = parser->errorTrace();
    ASSERT_EQ(errors->count(), 2 * deep + 1);
    EXPECT_EQ(as<NSError>(errors->firstObject())->code(), 11);
    std::size_t chain = 0;
    for (NSError* e = as<NSError>(errors->lastObject()); e; ++chain)
        e = as<NSError>(e->userInfo()->objectForKey(NSUnderlyingErrorKey));
    EXPECT_EQ(chain, 2 * deep + 1);
}

TEST(SBJsonParser, theTraceCanBeObserved) {
    class Observer : public NSObject {
    public:
        void observeValueForKeyPath_ofObject_change_context(NSString* path, NSObject* object, NSDictionary*,
                                                            void*) override {
            EXPECT_TRUE(path->isEqualTo(u"errorTrace"));
            const auto errors = static_cast<SBJsonParser*>(object)->errorTrace();
            counts.push_back(errors ? errors->count() : 0);
        }
        std::vector<NSUInteger> counts;
    };
    const auto parser = make<SBJsonParser>();
    const auto observer = make<Observer>();
    parser->addObserver_forKeyPath_options_context(observer, u"errorTrace"_ns, 0, nullptr);
    (void)parser->objectWithString(u"[[x]]"_ns);
    EXPECT_EQ(observer->counts, (std::vector<NSUInteger>{0, 1, 2, 3}));
    const auto before = parser->errorTrace();
    (void)parser->objectWithString(u"[1]"_ns);
    EXPECT_EQ(observer->counts.back(), 0u);
    EXPECT_EQ(parser->errorTrace(), nullptr);
    EXPECT_EQ(before->count(), 3u); // what was handed out is a copy
    parser->removeObserver_forKeyPath(observer, u"errorTrace"_ns);
}

TEST(SBJsonParser, whatIsReadCanChange) {
    // Around the sizes at which texts and lists stand in their objects, and beyond.
    for (const std::size_t n :
         {0u, 1u, 7u, 8u, 14u, 15u, 16u, 17u, 30u, 31u, 59u, 60u, 61u, 300u, 486u, 487u, 488u, 600u}) {
        for (const std::string letter : {"a", "é", "名"}) {
            const auto value =
                make<SBJsonParser>()->fragmentWithString(NSString::fromUTF8("\"" + repeated(letter, n) + "\""));
            auto* s = as<NSMutableString>(value);
            ASSERT_TRUE(s);
            const auto whole = NSString::fromUTF8(repeated(letter, n));
            EXPECT_TRUE(s->isEqualToString(whole));
            EXPECT_EQ(s->hash(), whole->hash());
            EXPECT_EQ(std::string(s->UTF8String()), whole->utf8());
            const auto kept = s->copyWithZone();
            s->appendString(u"b名"_ns);
            s->insertString_atIndex(u"c"_ns, 0);
            EXPECT_EQ(s->utf8(), "c" + whole->utf8() + "b名");
            s->deleteCharactersInRange({0, s->length() - 1});
            s->appendLatin1(repeated("d", 20));
            EXPECT_EQ(s->utf8(), "名" + repeated("d", 20));
            EXPECT_TRUE(kept->isEqual(whole));
        }
        const auto value = make<SBJsonParser>()->fragmentWithString(NSString::fromUTF8("[" + repeated("1 ", n) + "]"));
        auto* a = as<NSMutableArray>(value);
        ASSERT_TRUE(a);
        EXPECT_EQ(a->count(), n);
        const auto kept = a->copyWithZone();
        a->addObject(u"end"_ns);
        a->insertObject_atIndex(u"begin"_ns, 0);
        EXPECT_EQ(a->count(), n + 2);
        a->removeObjectAtIndex(0);
        a->sortUsingComparator([](NSObject*, NSObject*) { return NSOrderedSame; });
        EXPECT_TRUE(a->lastObject()->isEqual(u"end"_ns));
        a->removeAllObjects();
        a->setArray(as<NSArray>(kept));
        EXPECT_TRUE(a->isEqual(kept));
    }
    const auto value = make<SBJsonParser>()->fragmentWithString(u"{\"a\":1,\"b\":2}"_ns);
    auto* d = as<NSMutableDictionary>(value);
    for (int i = 0; i < 40; ++i)
        d->setObject_forKey(u"x"_ns, NSString::fromUTF8(std::to_string(i)));
    d->removeObjectForKey(u"a"_ns);
    EXPECT_EQ(d->count(), 41u);
    EXPECT_TRUE(d->objectForKey(u"b"_ns)->isEqual(decimal("2")));
}

TEST(SBJsonParser, objectsOfManyKeysKeepTheLastOfEach) {
    std::string json = "{", expected = "{";
    for (int round = 0; round < 3; ++round)
        for (int i = 0; i < 100; ++i)
            json += "\"key " + std::to_string(i) + "\":" + std::to_string(1000 * round + i) + ",";
    for (int i = 0; i < 100; ++i)
        expected += "key " + std::to_string(i) + ":" + std::to_string(2000 + i) + ",";
    json.back() = '}';
    const auto value = make<SBJsonParser>()->objectWithString(NSString::fromLatin1(json));
    EXPECT_EQ(essai::enTexte(value), expected + "}");
    const auto* d = as<NSDictionary>(value);
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(d->objectForKey(NSString::fromUTF8("key " + std::to_string(i)))
                        ->isEqual(decimal(std::to_string(2000 + i))));
}

TEST(SBJsonParser, agreesWithThePlainReaderOnEveryShortText) {
    const std::string letters = "[]{},:\"1 a\\";
    std::string json;
    const auto all = [&](auto& self, std::size_t length) -> void {
        if (length == 0) {
            const std::string fault = essai::epreuve(json);
            ASSERT_EQ(fault, "") << json;
            return;
        }
        for (const char letter : letters) {
            json.push_back(letter);
            self(self, length - 1);
            json.pop_back();
        }
    };
    for (std::size_t length = 0; length <= 4; ++length)
        all(all, length);
}

TEST(SBJsonParser, agreesWithThePlainReaderOnTheCorpusAndItsMutations) {
    std::mt19937 random(1);
    const auto below = [&](std::size_t n) { return random() % n; };
    const std::string letters = "[]{},:\"\\/ \t01-+.eEu9dDtrfnlé\x01";
    std::vector<std::string> documents;
    const auto corpus = std::filesystem::path(LIBVUE_TEST_IMAGES).parent_path() / "fuzz" / "json" / "corpus";
    for (const auto& file : std::filesystem::directory_iterator(corpus)) {
        std::ifstream in(file.path(), std::ios::binary);
        documents.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    ASSERT_GT(documents.size(), 30u);
    for (const std::string& document : documents) {
        EXPECT_EQ(essai::epreuve(document), "") << document;
        for (int i = 0; i < 200; ++i) {
            std::string json = document;
            for (std::size_t changes = 1 + below(3); changes > 0; --changes) {
                const std::size_t at = below(json.size() + 1);
                if (at < json.size() && below(2))
                    json.erase(at, 1 + below(3));
                else
                    json.insert(at, 1, letters[below(letters.size())]);
            }
            ASSERT_EQ(essai::epreuve(json), "") << json;
        }
    }
}

TEST(NSStringSBJSON, conveniencesLogWhyTheyFail) {
    static std::string logged;
    logged.clear();
    installLogSink([](const NSString* line, void*) { logged += line->utf8() + "\n"; }, nullptr);
    EXPECT_EQ(essai::enTexte(JSONValue(u"[1]"_ns).get()), "[1,]");
    EXPECT_EQ(essai::enTexte(JSONFragmentValue(u"1"_ns).get()), "1");
    EXPECT_EQ(JSONValue(nullptr), nullptr);
    EXPECT_EQ(logged, "");
    EXPECT_EQ(JSONValue(u"1"_ns), nullptr);
    EXPECT_EQ(JSONFragmentValue(u"x"_ns), nullptr);
    installLogSink(nullptr, nullptr);
    EXPECT_EQ(logged.find("-JSONValue failed. Error trace is: ("), 0u);
    EXPECT_NE(logged.find("Valid fragment, but not JSON"), std::string::npos);
    EXPECT_NE(logged.find("-JSONFragmentValue failed. Error trace is: ("), std::string::npos);
    EXPECT_NE(logged.find("Unrecognised leading character"), std::string::npos);
}
